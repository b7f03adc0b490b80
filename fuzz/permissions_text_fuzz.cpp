// A company's permissions text comes from its record, written by whichever program last
// saved the company. The input is a user name, a line end, and the permissions text; the
// text goes through the level lookup, the parse and format round trip, and the permissions
// dialog's model, whose commands are driven by the name.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/company/permissions.h"
#include "ui/permissions_dialog.h"
#include "ui/scripted_ui.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

bool KnownLevel(int level) {
  return level == nv::kFullAccess || level == nv::kReadWriteAccess ||
         level == nv::kReadOnlyAccess || level == nv::kNoAccess;
}

void CheckLookup(std::string_view text, std::string_view user) {
  const int level = nv::UserPermissionLevel(text, user, true);
  Check(KnownLevel(level));
  Check(nv::PermissionLevelText(level) != nullptr);
  Check(nv::UserPermissionLevel(text, user, false) == nv::kFullAccess);

  // Parsing and formatting keep what the text means: the entries survive a second round,
  // and every user whose name can stand in an entry keeps his level.
  const std::vector<nv::PermissionEntry> entries = nv::ParsePermissions(text);
  const std::string formatted = nv::FormatPermissions(entries);
  Check(nv::ParsePermissions(formatted) == entries);
  Check(nv::PermissionsDefined(formatted) == !entries.empty());
  if (user.find_first_of("|:") == std::string_view::npos)
    Check(nv::UserPermissionLevel(formatted, user, true) == level);
}

void DriveDialog(std::string_view text, std::string_view user) {
  nv::ScriptedUi ui(
      nv::AnswerScript{{nv::ScriptAnswer{nv::ScriptAnswer::Kind::kYes, 0, "", 1}}, {}});
  nv::PermissionsDialogModel model(text, user);
  const size_t count = model.entries().size();
  Check(model.ListTexts().size() == count);
  Check(model.selection() == (count == 0 ? -1 : 0));

  model.SetEditText(user);
  if (model.add_enabled()) {
    Check(model.Add());
    Check(model.entries().size() == count + 1);
    Check(!model.add_enabled());
    Check(model.selection() >= 0);
  }
  for (char c : user.substr(0, 8)) {
    model.ClickRadio(nv::kRadioNoAccess + static_cast<unsigned char>(c) % 4);
    const int radio = model.CheckedRadio();
    Check(radio == 0 || (radio >= nv::kRadioNoAccess && radio <= nv::kRadioFullAccess));
  }
  const size_t before_remove = model.entries().size();
  if (model.Remove(ui)) Check(model.entries().size() == before_remove - 1);

  // What the dialog writes back reads as its list.
  const std::string written = model.PermissionsText();
  Check(nv::ParsePermissions(written) == model.entries());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t line_end = input.find('\n');
  std::string_view user = input.substr(0, line_end);
  std::string_view text = line_end == std::string_view::npos ? "" : input.substr(line_end + 1);
  CheckLookup(text, user);
  DriveDialog(text, user);
  return 0;
}
