// Treats the input as a BNA import profile and, after the first NUL byte, its main
// profile: reads the parameters and the definitions, checks that every definition line
// reads back as it is written, saves the profile and loads it again, and works out each
// field's value for a line made of the profile's first bytes.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "fuzz/fuzz_scratch.h"
#include "import/bna/bna_profile.h"
#include "import/bna/bna_source.h"
#include "import/bna/conversion_list.h"
#include "import/bna/field_value.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// What a profile does to a value it reads back: blanks and CRs at the ends go.
std::string_view TrimAsProfile(std::string_view s) {
  auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!s.empty() && blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && blank(s.back())) s.remove_suffix(1);
  return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  size_t nul = bytes.find('\0');
  std::string_view current = bytes.substr(0, nul);
  std::string_view main = nul == std::string_view::npos ? "" : bytes.substr(nul + 1);

  std::string folder = nv::fuzzing::ScratchFolder("bna_profile");
  if (!nv::WriteFileAtomically(folder + "current.imp", current)) return 0;
  if (!nv::WriteFileAtomically(folder + "main.imp", main)) return 0;

  nv::BnaProfiles profiles = nv::StartBnaProfiles(folder, "current.imp");
  // Only the scratch folder is read: a main profile elsewhere could be any file at all.
  if (!profiles.main.empty()) profiles.main = "main.imp";

  nv::BnaParameters p = nv::ReadBnaParameters(profiles);
  Check(p.file_type == nv::kBnaTabSeparated || p.file_type == nv::kBnaCommaSeparated);
  Check(p.checked_groups.size() <= nv::kGroupBoxLetters.size());

  nv::ImportConversionList list;
  nv::LoadDefinitions(profiles, p.checked_groups, list);
  for (const nv::ConversionDefinition& d : list.entries()) {
    Check(d.name.size() <= nv::kConversionNameLength);
    Check(!d.text || !d.text->empty());
    std::string line = nv::FormatDefinitionLine(d);
    nv::DefinitionLine back = nv::ParseDefinitionLine(TrimAsProfile(line));
    Check(back.no_copy == d.no_copy && back.column == d.column && back.method == d.method &&
          back.number == d.number && back.text == d.text);
  }

  nv::ColumnClass columns(current.substr(0, 200), p.file_type);
  auto special = [](const nv::ConversionDefinition& d) -> std::optional<std::string> {
    return "\"" + d.name + "\"";
  };
  for (const nv::ConversionDefinition& d : list.entries()) {
    std::optional<std::string> value =
        nv::ProduceFieldValue(list, d.name, columns, 30, "Tax", special);
    Check(!value || value->size() <= 30);
  }

  nv::BnaDialogSettings settings{p.checked_groups, "", p.file_type};
  if (nv::SaveBnaProfile(profiles, list, settings)) {
    nv::ImportConversionList again;
    nv::LoadDefinitions(profiles, p.checked_groups, again);
    Check(again.size() >= list.size());
    Check(nv::ReadBnaParameters(profiles).file_type == p.file_type);
  }
  unlink((folder + "current.imp").c_str());
  unlink((folder + "main.imp").c_str());
  return 0;
}
