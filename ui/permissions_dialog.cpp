#include "ui/permissions_dialog.h"

#include <algorithm>

#include "base/ascii.h"

namespace nv {

namespace {

// A sorted combo box orders its texts ignoring case.
bool ListOrder(const PermissionEntry& a, const PermissionEntry& b) {
  const std::string x = PermissionsDialogModel::DisplayName(a);
  const std::string y = PermissionsDialogModel::DisplayName(b);
  const std::string ux = AsciiUpper(x);
  const std::string uy = AsciiUpper(y);
  if (ux != uy) return ux < uy;
  return x < y;
}

int RadioOfLetter(char letter) {
  switch (letter) {
    case 'F':
      return kRadioFullAccess;
    case 'W':
      return kRadioReadWrite;
    case 'N':
      return kRadioNoAccess;
    default:
      return kRadioReadOnly;
  }
}

}  // namespace

PermissionsDialogModel::PermissionsDialogModel(std::string_view permissions,
                                               std::string_view user_name) {
  // Without permissions nobody is locked out: every user may read and change the company,
  // and the user who defines the permissions keeps Full Access.
  entries_ =
      ParsePermissions(PermissionsDefined(permissions) ? std::string(permissions)
                                                       : "*:W|" + std::string(user_name) + ":F");
  Sort();
  Select(entries_.empty() ? -1 : 0);
}

std::string PermissionsDialogModel::DisplayName(const PermissionEntry& entry) {
  return entry.name == kDefaultUserName ? kDefaultUserDisplayName : entry.name;
}

std::vector<std::string> PermissionsDialogModel::ListTexts() const {
  std::vector<std::string> texts;
  for (const PermissionEntry& entry : entries_) texts.push_back(DisplayName(entry));
  return texts;
}

void PermissionsDialogModel::Select(int index) {
  if (index < 0 || index >= static_cast<int>(entries_.size())) {
    selection_ = -1;
    return;
  }
  selection_ = index;
  edit_text_ = DisplayName(entries_[static_cast<size_t>(index)]);
}

int PermissionsDialogModel::Find(std::string_view text) const {
  const std::string_view name = TrimBlanks(text);
  for (size_t i = 0; i < entries_.size(); ++i) {
    if (EqualIgnoringCase(entries_[i].name, name) ||
        EqualIgnoringCase(DisplayName(entries_[i]), name))
      return static_cast<int>(i);
  }
  return -1;
}

void PermissionsDialogModel::SetEditText(std::string_view text) {
  edit_text_ = std::string(text);
  selection_ = Find(text);
}

bool PermissionsDialogModel::add_enabled() const {
  const std::string_view name = TrimBlanks(edit_text_);
  return !name.empty() && name.find_first_of("|:") == std::string_view::npos && Find(name) < 0;
}

bool PermissionsDialogModel::remove_enabled() const {
  const int index = Find(edit_text_);
  return index >= 0 && entries_[static_cast<size_t>(index)].name != kDefaultUserName;
}

bool PermissionsDialogModel::Add() {
  if (!add_enabled()) return false;
  const int default_user = Find(kDefaultUserName);
  const char letter = default_user >= 0 ? entries_[static_cast<size_t>(default_user)].letter : 'W';
  entries_.push_back({std::string(TrimBlanks(edit_text_)), letter});
  selection_ = static_cast<int>(entries_.size()) - 1;
  Sort();
  Select(selection_);
  return true;
}

bool PermissionsDialogModel::Remove(Ui& ui) {
  if (!remove_enabled()) return false;
  const size_t index = static_cast<size_t>(Find(edit_text_));
  if (!AskYes(ui, DefaultButton::kNo,
              "Remove user %s?\n\nUser Permissions will revert to default user.",
              entries_[index].name.c_str()))
    return false;
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  selection_ = -1;
  edit_text_.clear();
  return true;
}

void PermissionsDialogModel::Help(Ui& ui) const {
  ui.ShowHelp(kPermissionsHelpTopic);
}

int PermissionsDialogModel::CheckedRadio() const {
  if (selection_ < 0) return 0;
  return RadioOfLetter(entries_[static_cast<size_t>(selection_)].letter);
}

void PermissionsDialogModel::ClickRadio(int radio_id) {
  if (selection_ < 0) return;
  char& letter = entries_[static_cast<size_t>(selection_)].letter;
  switch (radio_id) {
    case kRadioNoAccess:
      letter = 'N';
      break;
    case kRadioReadOnly:
      letter = 'R';
      break;
    case kRadioReadWrite:
      letter = 'W';
      break;
    case kRadioFullAccess:
      letter = 'F';
      break;
    default:
      break;
  }
}

void PermissionsDialogModel::Sort() {
  if (selection_ < 0) {
    std::stable_sort(entries_.begin(), entries_.end(), ListOrder);
    return;
  }
  // Sort positions so that the selection can follow its entry.
  std::vector<size_t> order(entries_.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [this](size_t a, size_t b) { return ListOrder(entries_[a], entries_[b]); });
  const size_t selected = static_cast<size_t>(selection_);
  std::vector<PermissionEntry> sorted;
  for (size_t i = 0; i < order.size(); ++i) {
    sorted.push_back(std::move(entries_[order[i]]));
    if (order[i] == selected) selection_ = static_cast<int>(i);
  }
  entries_ = std::move(sorted);
}

bool EditUserPermissions(NvCompany& company, int my_level, Ui& ui,
                         const PermissionsDialogRunner& run_dialog) {
  return EditUserPermissions(company.context(), &company.record().permissions, my_level, ui,
                             run_dialog);
}

bool EditUserPermissions(const InstallationContext& context, std::string* permissions_text,
                         int my_level, Ui& ui, const PermissionsDialogRunner& run_dialog) {
  if (!context.network_mode) {
    MessageF(ui, "Note", "This feature is only available for network versions of %s",
             context.product_name().c_str());
    return false;
  }
  if (my_level != kFullAccess) {
    RefuseFeature(ui, my_level, kFullAccess);
    return false;
  }
  std::string& permissions = *permissions_text;
  if (!PermissionsDefined(permissions) &&
      !AskYes(ui, DefaultButton::kNo,
              "This company currently has no user permissions defined:  All users\nhave full "
              "access.  If you edit user permissions, by default you (%s)\nwill be given full "
              "access and all other users will only be allowed to\nread or change company.  "
              "That is, other users cannot change user permissions,\nunless you set them to "
              "full access.\n\nAlso note that any of your changes to user permissions are not "
              "actually made\nuntil you save the company data from the company edit "
              "screen.\n\nEdit user permissions?",
              context.user_name.c_str()))
    return false;
  PermissionsDialogModel model(permissions, context.user_name);
  run_dialog(model);
  permissions = model.PermissionsText();
  return true;
}

}  // namespace nv
