#include "store/company/permissions.h"

#include "base/ascii.h"
#include "base/profile.h"

namespace nv {

int PermissionLevelOfLetter(char letter) {
  switch (AsciiUpper(letter)) {
    case 'F':
      return kFullAccess;
    case 'W':
      return kReadWriteAccess;
    case 'R':
      return kReadOnlyAccess;
    default:
      return kNoAccess;
  }
}

char PermissionLetter(int level) {
  switch (level) {
    case kFullAccess:
      return 'F';
    case kReadOnlyAccess:
      return 'R';
    case kNoAccess:
      return 'N';
    default:
      return 'W';
  }
}

const char* PermissionLevelText(int level) {
  switch (level) {
    case kFullAccess:
      return "Full Access";
    case kReadOnlyAccess:
      return "Read Only Access";
    case kNoAccess:
      return "No Access";
    default:
      return "Read/Write Access";
  }
}

bool PermissionsDefined(std::string_view permissions) {
  std::string_view trimmed = TrimBlanks(permissions);
  return !trimmed.empty() && trimmed != "0";
}

int UserPermissionLevel(std::string_view permissions, std::string_view user_name, bool enforced) {
  if (!enforced || !PermissionsDefined(permissions)) return kFullAccess;
  const std::string text = "|" + AsciiUpper(permissions);
  size_t at = text.find("|" + AsciiUpper(user_name) + ":");
  size_t key_length = user_name.size() + 2;
  if (at == std::string::npos) {
    at = text.find("|*:");
    key_length = 3;
  }
  if (at == std::string::npos) return kFullAccess;
  const size_t letter_at = at + key_length;
  // Nothing after the colon reads as the string's end, which is no letter of the four.
  return letter_at < text.size() ? PermissionLevelOfLetter(text[letter_at]) : kNoAccess;
}

bool PermissionsEnforced(const NvCompany& company) {
  if (company.context().network_mode) return true;
  return EqualIgnoringCase(ReadProfileString(company.SettingsPath(), "Misc", "SingleUserUP", ""),
                           "yes");
}

int CurrentUserPermission(const NvCompany& company) {
  const std::string& permissions = company.record().permissions;
  // The settings file is read only when it can matter.
  if (!PermissionsDefined(permissions)) return kFullAccess;
  return UserPermissionLevel(permissions, company.context().user_name,
                             PermissionsEnforced(company));
}

std::vector<PermissionEntry> ParsePermissions(std::string_view permissions) {
  std::vector<PermissionEntry> entries;
  if (!PermissionsDefined(permissions)) return entries;
  while (true) {
    const size_t bar = permissions.find('|');
    std::string_view entry = permissions.substr(0, bar);
    const size_t colon = entry.find(':');
    if (colon != std::string_view::npos) {
      const char letter = colon + 1 < entry.size() ? AsciiUpper(entry[colon + 1]) : 'N';
      entries.push_back({std::string(entry.substr(0, colon)), letter});
    }
    if (bar == std::string_view::npos) break;
    permissions.remove_prefix(bar + 1);
  }
  return entries;
}

std::string FormatPermissions(const std::vector<PermissionEntry>& entries) {
  std::string text;
  for (const PermissionEntry& entry : entries) {
    if (!text.empty()) text += '|';
    text += entry.name;
    text += ':';
    text += entry.letter;
  }
  return text;
}

void RefuseFeature(Ui& ui, int my_level, std::optional<int> required_level) {
  if (required_level) {
    MessageF(ui, "Message",
             "You are not permitted to use this feature.\n\nPermission required for this "
             "feature is %s.  You have %s.",
             PermissionLevelText(*required_level), PermissionLevelText(my_level));
  } else {
    MessageF(ui, "Message",
             "You are not permitted to use this feature.  Your permission for this company "
             "is %s.",
             PermissionLevelText(my_level));
  }
}

}  // namespace nv
