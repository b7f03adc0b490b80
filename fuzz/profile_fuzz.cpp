// Treats the input as a profile file: lists and reads everything in it, checks that a
// write changes only what it must, then does the same through a real file.
#include <stdlib.h>
#include <unistd.h>

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
  nv::ProfileText removed = text;
  static_cast<void>(removed.RemoveSection(target));
  for (const std::string& s : removed.Sections())
    Check(nv::AsciiUpper(s) != nv::AsciiUpper(target));
  Check(!removed.Find(target, "FuzzKey").has_value());

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
    Check(nv::ReadProfileString(file, target, "FuzzKey", "none") == "none");
  }
  Check(nv::DeleteProfileSection(file, target));
  unlink(file.c_str());
  return 0;
}
