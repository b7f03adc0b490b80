#include "base/profile.h"

#include <optional>

#include "base/file_util.h"
#include "base/profile_text.h"

namespace nv {
namespace {

// The file's text; an empty text when it does not exist; nullopt when it exists but
// cannot be read.
std::optional<ProfileText> Load(const std::string& file) {
  bool missing = false;
  std::optional<std::string> bytes = ReadFileBytes(file, &missing);
  if (bytes) return ProfileText::Parse(*bytes);
  if (missing) return ProfileText();
  return std::nullopt;
}

ProfileText LoadForRead(const std::string& file) {
  std::optional<ProfileText> text = Load(file);
  return text ? std::move(*text) : ProfileText();
}

}  // namespace

std::string ReadProfileString(const std::string& file, std::string_view section,
                              std::string_view key, std::string_view default_value,
                              size_t buffer_size) {
  std::optional<std::string> raw = LoadForRead(file).Find(section, key);
  if (raw) return ProfileValueForRead(*raw, buffer_size);
  while (!default_value.empty() && default_value.back() == ' ') default_value.remove_suffix(1);
  if (buffer_size == 0) return std::string();
  return std::string(default_value.substr(0, buffer_size - 1));
}

std::vector<std::string> ListProfileKeys(const std::string& file, std::string_view section) {
  return LoadForRead(file).Keys(section);
}

std::vector<std::string> ListProfileSections(const std::string& file) {
  return LoadForRead(file).Sections();
}

bool WriteProfileString(const std::string& file, std::string_view section, std::string_view key,
                        std::string_view value) {
  std::optional<ProfileText> text = Load(file);
  if (!text || !text->Set(section, key, value)) return false;
  return WriteFileAtomically(file, text->Serialize());
}

bool DeleteProfileKey(const std::string& file, std::string_view section, std::string_view key) {
  std::optional<ProfileText> text = Load(file);
  if (!text) return false;
  if (!text->RemoveKey(section, key)) return true;
  return WriteFileAtomically(file, text->Serialize());
}

bool DeleteProfileSection(const std::string& file, std::string_view section) {
  std::optional<ProfileText> text = Load(file);
  if (!text) return false;
  if (!text->RemoveSection(section)) return true;
  return WriteFileAtomically(file, text->Serialize());
}

}  // namespace nv
