// Treats the input as KELNVWIN.INI with remembered matchings: the pre-set pairs built from
// whatever it holds pair each destination and each source at most once, and only items
// the panel has; a confirmed panel written into the file reads back as its pairs while
// every other section stays as it was.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/profile_text.h"
#include "fuzz/fuzz_scratch.h"
#include "import/frame/matching.h"
#include "import/frame/remembered_matches.h"
#include "ui/match_panel.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

const std::vector<nv::MatchItem> kDestinations = {
    {201, "Account"}, {202, "User Field 1"}, {203, "User Field 2"}, {204, "Location"}};
const std::vector<nv::MatchItem> kSources = {
    {101, "Acct"}, {102, "Dept"}, {103, ""}, {104, " Misc "}, {105, "Dept"}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string section = "User FUZZ Field Matches tiny";
  const nv::RememberedMatches remembered = nv::ParseRememberedMatches(bytes, section);
  const std::vector<std::pair<int, int>> pairs =
      nv::PresetWithRemembered(remembered, kDestinations, kSources, {{201, 101}, {204, 102}});
  std::set<int> destinations, sources;
  for (const auto& [destination, source] : pairs) {
    Check(destination >= 201 && destination <= 204 && source >= 101 && source <= 105);
    Check(destinations.insert(destination).second && sources.insert(source).second);
  }

  nv::MatchPanel panel("c", "d", "s");
  for (const nv::MatchItem& item : kDestinations) panel.AddDestination(item.id, item.text);
  for (const nv::MatchItem& item : kSources) panel.AddSource(item.id, item.text);
  for (const auto& [destination, source] : pairs) Check(panel.SetMatch(destination, source));
  const std::string path = nv::fuzzing::EmptyScratchFolder("remembered_matches") + "KELNVWIN.INI";
  Check(nv::WriteFileAtomically(path, bytes));
  if (!nv::WriteRememberedMatches(path, section, panel)) return 0;
  const std::string written = nv::ReadFileBytes(path).value_or("");
  // What the panel holds comes back, text for text.
  const nv::RememberedMatches read = nv::ParseRememberedMatches(written, section);
  Check(read.size() == kDestinations.size());
  for (size_t i = 0; i < read.size(); ++i) {
    const int source = panel.GetMatch(kDestinations[i].id);
    Check(read[i].destination == kDestinations[i].text);
    Check(source == 0 ? !read[i].source : read[i].source == panel.ItemText(source));
  }
  // The next panel opens with the same pairs.
  Check(nv::PresetWithRemembered(read, kDestinations, kSources, {}) == panel.Matches());
  // Other sections read as before.
  const nv::ProfileText before = nv::ProfileText::Parse(bytes);
  const nv::ProfileText after = nv::ProfileText::Parse(written);
  for (const std::string& name : before.Sections()) {
    if (nv::EqualIgnoringCase(name, section)) continue;
    for (const std::string& key : before.Keys(name)) {
      Check(before.Find(name, key) == after.Find(name, key));
    }
  }
  return 0;
}
