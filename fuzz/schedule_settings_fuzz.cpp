// Reads schedule definitions and custom accounting years from arbitrary settings files,
// saves them and reads them back. The input is the first byte (source mask in bits 0-2,
// a schedule letter in bits 3-7), then, split at NUL bytes, the company's settings file,
// the installation's KELNVWIN.INI and the company's schedule entries, one a line: letter,
// two type characters and the name ("XCACalif").
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "base/profile.h"
#include "fuzz/fuzz_scratch.h"
#include "store/company/company.h"
#include "store/schedule/accounting_year.h"
#include "store/schedule/schedule_definitions.h"

namespace {

std::string_view NextPart(std::string_view* input) {
  const size_t end = std::min(input->find('\0'), input->size());
  std::string_view part = input->substr(0, end);
  input->remove_prefix(std::min(end + 1, input->size()));
  return part;
}

void AddEntries(std::string_view text, nv::NvCompany* company) {
  while (!text.empty() && company->record().schedules.size() < 30) {
    const size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty()) continue;
    nv::ScheduleEntry entry;
    entry.letter = line[0];
    entry.type = std::string(line.substr(1, 2));
    entry.name = std::string(line.substr(std::min<size_t>(3, line.size())));
    company->record().schedules.push_back(entry);
    company->record().schedule_letters += entry.letter;
  }
}

void CheckDefinitions(const nv::ScheduleDefinitionList& list) {
  std::set<char> effective;
  for (size_t i = 0; i < list.size(); ++i) {
    const nv::ScheduleDefinition& d = list[i];
    if (!nv::IsScheduleLetter(d.letter) || d.type.size() > 2 || d.description.size() > 10) {
      std::abort();
    }
    if (d.effective && !effective.insert(d.letter).second) std::abort();
    if (i > 0 && nv::ByDisplayOrder(d, list[i - 1])) std::abort();
  }
  for (const nv::ScheduleDefinition& d : list) {
    if (!effective.count(d.letter)) std::abort();
  }
}

// Everything a chain holds, current year marked.
std::string Describe(const std::optional<nv::AccountingYearChain>& chain) {
  if (!chain) return "none";
  std::string out;
  for (const nv::CustomAccountingYear* y = chain->first(); y != nullptr; y = y->next()) {
    out += y == chain->current() ? "<" : " ";
    out += nv::FormatAccountingYear(*y) + "/" + std::to_string(y->period_weight);
  }
  return out;
}

void RoundTripYears(const nv::NvCompany& company, char letter) {
  std::optional<nv::AccountingYearChain> first =
      nv::LoadCustomAccountingYear(company.SettingsPath(), letter);
  if (first) {
    const nv::CustomAccountingYear* year = first->first();
    if (year == nullptr || first->current() == nullptr) std::abort();
    nv::MoveDateByPeriods(year->end, letter % 3 - 1, letter % 29, &*first);
  }
  const bool saved =
      nv::SaveCustomAccountingYear(company.SettingsPath(), letter, first ? &*first : nullptr);
  std::optional<nv::AccountingYearChain> again =
      nv::LoadCustomAccountingYear(company.SettingsPath(), letter);
  if (saved && Describe(first) != Describe(again)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string folder = nv::fuzzing::EmptyScratchFolder("schedule_settings");
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const uint8_t flags = size > 0 ? data[0] : 0;
  if (size > 0) input.remove_prefix(1);

  nv::InstallationContext context;
  context.installation_folder = folder;
  context.current.slot.data_path = folder + "data/";
  std::error_code ec;
  std::filesystem::create_directory(context.current.slot.data_path, ec);
  nv::NvCompany company(context);
  company.SetLocation("FUZZ", context.current.slot.data_path);
  std::ofstream(company.SettingsPath(), std::ios::binary) << NextPart(&input);
  std::ofstream(folder + "KELNVWIN.INI", std::ios::binary) << NextPart(&input);
  AddEntries(NextPart(&input), &company);

  const int mask = (flags & 7) != 0 ? (flags & 7) : nv::kAllScheduleSources;
  const nv::ScheduleDefinitionList loaded = nv::LoadScheduleDefinitions(company.Schedules(), mask);
  CheckDefinitions(loaded);
  const bool saved = nv::SaveScheduleDefinitions(company.Schedules(), loaded);
  const nv::ScheduleDefinitionList again = nv::LoadScheduleDefinitions(company.Schedules(), mask);
  CheckDefinitions(again);
  // A type with a comma in it (only a schedule entry can have one) cannot be told from
  // its description in the stored value.
  const bool storable = std::none_of(loaded.begin(), loaded.end(), [](const auto& d) {
    return d.type.find(',') != std::string::npos;
  });
  if (saved && storable && !std::equal(loaded.begin(), loaded.end(), again.begin(), again.end())) {
    std::abort();
  }

  std::set<char> letters = {static_cast<char>('A' + (flags >> 3) % 26)};
  for (const std::string& section : nv::ListProfileSections(company.SettingsPath())) {
    if (section.size() == 24 &&
        nv::EqualIgnoringCase(std::string_view(section).substr(0, 23), "Custom Accounting Year ")) {
      letters.insert(section[23]);
    }
  }
  for (char letter : letters) RoundTripYears(company, letter);
  return 0;
}
