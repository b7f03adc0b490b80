// Treats the input as a profile file: lists and reads everything in it, checks that a
// write changes only what it must, then does the same through a real file.
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/profile.h"
#include "base/profile_text.h"
#include "fuzz/fuzz_scratch.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// Every readable value, keyed by upper-cased section and key (the first spelling wins,
// as for reading).
std::map<std::string, std::string> Snapshot(const nv::ProfileText& text) {
  std::map<std::string, std::string> all;
  for (const std::string& section : text.Sections()) {
    for (const std::string& key : text.Keys(section)) {
      std::optional<std::string> value = text.Find(section, key);
      Check(value.has_value());
      all.emplace(nv::AsciiUpper(section + "\n" + key), *value);
    }
  }
  return all;
}

// Kept for the whole run: the exit handler removes the folder made from it.

}  // namespace

// Statuses dropped with static_cast<void> are dropped on purpose: on arbitrary bytes any
// outcome is fine; only crashes, hangs and the checks count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  nv::ProfileText text = nv::ProfileText::Parse(bytes);
  std::string serialized = text.Serialize();
  Check(nv::ProfileText::Parse(serialized).Serialize() == serialized);

  std::map<std::string, std::string> before = Snapshot(text);
  std::vector<std::string> sections = text.Sections();
  std::string target = sections.empty() ? "Fuzz" : sections.back();
  nv::ProfileText edited = text;
  if (edited.Set(target, "FuzzKey", "value")) {
    Check(edited.Find(target, "fuzzkey") == "value");
    std::map<std::string, std::string> after = Snapshot(edited);
    for (const auto& [id, value] : before) {
      if (id.size() > 8 && id.ends_with("\nFUZZKEY")) continue;
      Check(after.count(id) == 1 && after[id] == value);
    }
  }
  // A delete takes the first matching section only; a second one comes to light.
  auto copies_of_target = [&target](const std::vector<std::string>& names) {
    return std::count_if(names.begin(), names.end(), [&target](const std::string& name) {
      return nv::AsciiUpper(name) == nv::AsciiUpper(target);
    });
  };
  const auto copies = copies_of_target(sections);
  nv::ProfileText removed = text;
  static_cast<void>(removed.RemoveSection(target));
  Check(copies_of_target(removed.Sections()) == (copies > 0 ? copies - 1 : 0));
  if (copies <= 1) Check(!removed.Find(target, "FuzzKey").has_value());
  // Entries named FuzzKey already in the section: the write replaces the first, a delete
  // takes that one, and the next would show.
  const std::vector<std::string> keys = text.Keys(target);
  const bool fuzz_key_there = std::any_of(keys.begin(), keys.end(), [](const std::string& key) {
    return nv::AsciiUpper(key) == "FUZZKEY";
  });

  // The same through a file on disk.
  std::string file = nv::fuzzing::ScratchFolder("profile") + "fuzz.ini";
  if (!nv::WriteFileAtomically(file, bytes)) return 0;
  for (const std::string& section : nv::ListProfileSections(file)) {
    for (const std::string& key : nv::ListProfileKeys(file, section)) {
      nv::ReadProfileString(file, section, key, "", 8);
    }
  }
  if (nv::WriteProfileString(file, target, "FuzzKey", "\"quoted\"")) {
    Check(nv::ReadProfileString(file, target, "FUZZKEY", "none") == "quoted");
    Check(nv::DeleteProfileKey(file, target, "fuzzkey"));
    if (!fuzz_key_there) Check(nv::ReadProfileString(file, target, "FuzzKey", "none") == "none");
  }
  Check(nv::DeleteProfileSection(file, target));
  unlink(file.c_str());
  return 0;
}
