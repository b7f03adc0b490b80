// Treats the input as a BNA import profile and, after the first NUL byte, a report, and
// runs "Import Data" with them into a new company of four schedules, adding to it so that
// the profile's duplicate mode applies to numbers the report repeats. The run must end,
// write the company back, count no more assets than the report has data lines, and leave
// a company the store's check finds whole.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "fuzz/fuzz_scratch.h"
#include "import/bna/bna_import.h"
#include "store/company/company.h"
#include "store/company/company_check.h"
#include "ui/scripted_ui.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

std::unique_ptr<nv::ScriptedUi> Answers(std::string_view script) {
  std::string errors;
  return nv::ScriptedUi::FromString(script, &errors);
}

nv::InstallationContext Context(const std::string& folder) {
  nv::InstallationContext ctx;
  ctx.run.product_name = "NORVANE";
  ctx.installation_folder = folder;
  ctx.current.slot.data_path = folder;
  ctx.user_name = "FUZZER";
  ctx.today = {11, 24, 2026};
  return ctx;
}

// A new company FUZZ as the company steps make it, without the screens.
bool MakeCompany(const nv::InstallationContext& ctx) {
  static_cast<void>(nv::DeleteCompanyFiles(ctx, "FUZZ"));
  nv::NvCompany company(ctx);
  nv::NvCompanyRecord& record = company.record();
  record.number = "FUZZ";
  record.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}, {'A', "A", "AMT"}, {'C', "C", "ACE"}};
  record.schedule_letters = "BTAC";
  record.sort_order = "ACL";
  record.global_loc_cat = 'N';
  nv::InitializeDerivedValues(&record);
  record.months_in_year = 12;
  return company.Create({"FUZZ", ""}, nv::NvCompany::kOpenI1 | nv::NvCompany::kOpenI2) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const size_t nul = bytes.find('\0');
  const std::string_view profile = bytes.substr(0, nul);
  const std::string_view report = nul == std::string_view::npos ? "" : bytes.substr(nul + 1);

  const std::string folder = nv::fuzzing::ScratchFolder("bna_import");
  const nv::InstallationContext ctx = Context(folder);
  if (!nv::WriteFileAtomically(folder + "FUZZ.IMP", profile)) return 0;
  if (!nv::WriteFileAtomically(folder + "REPORT.TXT", report)) return 0;
  if (!MakeCompany(ctx)) return 0;

  // Every duplicate question is confirmed; a "display" box needs no answer.
  auto ui = Answers("yes\n");
  long imported = 0;
  int file_type = nv::kBnaTabSeparated;
  {
    nv::BnaSession session(ctx, *ui);
    nv::BnaImportState& state = session.state;
    state.profiles = nv::StartBnaProfiles(folder, "FUZZ.IMP");
    // Only the scratch folder is read: a main profile elsewhere could be any file at all.
    if (!state.profiles.main.empty()) state.profiles.main = "FUZZ.IMP";
    const nv::BnaParameters params = nv::ReadBnaParameters(state.profiles);
    state.file_type = file_type = params.file_type;
    state.checked_groups = params.checked_groups;
    nv::LoadDefinitions(state.profiles, state.checked_groups, state.definitions);
    state.company_number = "FUZZ";
    state.adding_to_existing = true;
    state.source_path = folder + "REPORT.TXT";
    const nv::BnaImportResult result = nv::RunBnaImportData(session);
    Check(result.started);
    if (state.definitions.Find("Asset No.") != nullptr) Check(result.completed);
    imported = result.imported;
  }
  // Updated assets count too, so the count is bound by the lines, not by the assets.
  Check(imported <= nv::MeasureBnaSource(report, file_type).data_lines);

  nv::NvCompany company(ctx);
  Check(company.Open("FUZZ",
                     nv::NvCompany::kOpenI1 | nv::NvCompany::kOpenI2 | nv::NvCompany::kReadOnly,
                     *Answers("")) > 0);
  const nv::CompanyCheck check = nv::CheckCompany(company);
  Check(check.problems.empty());
  return 0;
}
