// Feeds arbitrary bytes to the answers-script parser, then plays the parsed answers
// against one prompt of each kind, the matching panel and the company screen of a company
// about to be made until they run out, so that every answer kind meets every prompt kind and
// every field rule meets whatever text a `field` line carries; then the selection window,
// whose OK must never hand over a criterion that its checks refuse. (The text-file screen
// is left out: its folder field makes the folders it is given.)
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "fuzz/fuzz_scratch.h"
#include "store/company/company.h"
#include "ui/company_screen.h"
#include "ui/match_panel.h"
#include "ui/scripted_ui.h"
#include "ui/selection/criterion.h"
#include "ui/selection/selection_window.h"

namespace {

// Every destination holds at most one source, and that source names it back.
bool PairsAgree(const nv::MatchPanel& panel) {
  for (const nv::mapIcon& item : panel.items()) {
    if (item.matched_id == 0) continue;
    const nv::mapIcon* other = panel.Find(item.matched_id);
    if (!other || other->kind == item.kind || other->matched_id != item.id) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string errors;
  std::unique_ptr<nv::ScriptedUi> ui = nv::ScriptedUi::FromString(text, &errors);
  if (!ui) {
    if (errors.empty()) __builtin_trap();  // a refused script must say why
    return 0;
  }
  // The screen of a new company reads the installation's files but writes nothing.
  const std::string folder = nv::fuzzing::ScratchFolder("scripted_ui");
  nv::InstallationContext context;
  context.run.product_name = "NORVANE";
  context.installation_folder = folder;
  context.current.slot.data_path = folder;
  context.user_name = "FUZZ";
  nv::NvCompany company(context);
  company.SetLocation("FUZZ", folder);
  nv::NvCompanyRecord& record = company.record();
  record.number = "FUZZ";
  record.schedule_letters = "BT";
  record.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
  nv::CompanyScreen screen(company, true, *ui);
  // Saved selections go into the scratch folder's settings files, removed after the input.
  nv::SelectionWindowSetup setup;
  setup.files = {folder + "FUZZ.ini", folder + "KELNVWIN.INI"};
  setup.schedules = {{'B', "Book"}, {'T', "Tax"}};
  setup.locations_file = folder + "FUZZ.LOC";
  setup.categories_file = folder + "FUZZ.CAT";
  setup.company_folder = folder;
  setup.company_number = "FUZZ";
  nv::SelectionWindow selection(*ui, setup, nv::KelSelection{}, "Select");

  nv::ChoiceListRequest list;
  list.message = "Select company type:";
  list.options = {{"New Company", -1}, {"Existing company", 7}};
  nv::MatchPanel panel("Books", "", "");
  for (int i = 0; i < 3; ++i) panel.AddDestination(201 + i, "schedule");
  for (int i = 0; i < 4; ++i) panel.AddSource(101 + i, "book");
  panel.SetMatch(201, 101);
  bool every_destination_paired = false;
  // Each round takes at least one answer until the run fails, so this ends.
  while (!ui->failed() && ui->answers_left() > 0) {
    ui->Question("Continue?", nv::DefaultButton::kYes);
    int chosen = ui->ChoiceList(list);
    if (chosen != -1 && chosen != 0 && chosen != 7) __builtin_trap();
    ui->ChooseFile(nv::FileDialogRequest{});
    ui->ChooseFolder("Folder", "");
    auto meter = ui->OpenProgress("Progress", text.substr(0, 16), 2);
    meter->SetPosition(1);
    // The "must have matches" loop runs the panel until an answer ends it.
    every_destination_paired = !every_destination_paired;
    int result = nv::ExecuteMatchPanel(*ui, panel, every_destination_paired);
    if (result != nv::kMatchPanelOk && result != nv::kMatchPanelCancel) __builtin_trap();
    if (result == nv::kMatchPanelOk && every_destination_paired && !panel.AllDestinationsMatched())
      __builtin_trap();
    if (!PairsAgree(panel)) __builtin_trap();
    panel.ResetToPresetMatches();
    if (panel.Matches() != panel.preset_matches() || !PairsAgree(panel)) __builtin_trap();
    const int action = ui->RunCompanyScreen(screen);
    if (action != nv::kCompanyScreenSave && action != nv::kCompanyScreenCancelled) __builtin_trap();
    if (ui->RunSelectionWindow(selection) && nv::FirstInvalidCriterion(selection.selection()))
      __builtin_trap();
    ui->AltKeyHeld();
  }
  std::error_code ignored;
  std::filesystem::remove(setup.files.company_settings, ignored);
  std::filesystem::remove(setup.files.installation_settings, ignored);
  return 0;
}
