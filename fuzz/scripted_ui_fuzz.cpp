// Feeds arbitrary bytes to the answers-script parser, then plays the parsed answers
// against one prompt of each kind until they run out, so that every answer kind meets
// every prompt kind.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ui/scripted_ui.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string errors;
  std::unique_ptr<nv::ScriptedUi> ui = nv::ScriptedUi::FromString(text, &errors);
  if (!ui) {
    if (errors.empty()) __builtin_trap();  // a refused script must say why
    return 0;
  }
  nv::ChoiceListRequest list;
  list.message = "Select company type:";
  list.options = {{"New Company", -1}, {"Existing company", 7}};
  // Each round takes at least one answer until the run fails, so this ends.
  while (!ui->failed() && ui->answers_left() > 0) {
    ui->Question("Continue?", nv::DefaultButton::kYes);
    int chosen = ui->ChoiceList(list);
    if (chosen != -1 && chosen != 0 && chosen != 7) __builtin_trap();
    ui->ChooseFile(nv::FileDialogRequest{});
    ui->ChooseFolder("Folder", "");
    auto meter = ui->OpenProgress("Progress", text.substr(0, 16), 2);
    meter->SetPosition(1);
  }
  return 0;
}
