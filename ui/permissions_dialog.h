// The "Change User Permissions" dialog as a model: its commands and its state, without a
// window. The Qt view (gui/permissions_window.h) binds its controls to it.
//
// Controls: a combo box with an edit field listing the entries sorted by name (the default
// user as "Default User (*)"), four radio buttons for the selected entry's level, "Add",
// "Remove", "Help" and the close button. On closing, the list is the new permissions text
// of the company record, which is saved only when the company edit screen saves the company.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "store/company/company.h"
#include "store/company/permissions.h"

namespace nv {

// Control identifiers.
inline constexpr int kRadioNoAccess = 430;
inline constexpr int kRadioReadOnly = 431;
inline constexpr int kRadioReadWrite = 432;
inline constexpr int kRadioFullAccess = 433;
inline constexpr int kPermissionsAddButton = 617;
inline constexpr int kPermissionsRemoveButton = 618;
inline constexpr int kPermissionsHelpButton = 9;

inline constexpr char kPermissionsDialogTitle[] = "Change User Permissions";
inline constexpr char kPermissionsHelpTopic[] = "nvsy0w6r.html";
inline constexpr char kDefaultUserDisplayName[] = "Default User (*)";

class PermissionsDialogModel {
 public:
  // `permissions`: the company's text; without one (PermissionsDefined false) the list
  // starts as "*:W|%s:F" with `user_name`. The first entry is selected.
  PermissionsDialogModel(std::string_view permissions, std::string_view user_name);

  // The entries in list order.
  const std::vector<PermissionEntry>& entries() const { return entries_; }
  // The texts of the combo box's list, in list order.
  std::vector<std::string> ListTexts() const;
  static std::string DisplayName(const PermissionEntry& entry);

  // The selected entry's position, or -1.
  int selection() const { return selection_; }
  // Selects an entry from the list (-1: none) and shows it in the edit field.
  void Select(int index);

  const std::string& edit_text() const { return edit_text_; }
  // The user typed in the edit field: a listed name (or its list text) selects its entry;
  // anything else leaves no entry selected.
  void SetEditText(std::string_view text);

  // Add: the typed name, trimmed, is not blank, not listed, and has no "|" or ":" (no user
  // name holds them, and they would break the text).
  bool add_enabled() const;
  // Remove: the typed name is a listed entry other than the default user.
  bool remove_enabled() const;

  // Adds the typed name with the default user's letter ("W" without a default user) and
  // selects it. False when Add is disabled.
  bool Add();
  // Asks "Remove user %s?\n\nUser Permissions will revert to default user." (default No)
  // and removes the typed entry on Yes. False when nothing was removed.
  bool Remove(Ui& ui);
  void Help(Ui& ui) const;

  // The radio button that shows the selected entry's letter (an unknown letter shows as
  // Read Only), or 0 when no entry is selected.
  int CheckedRadio() const;
  // Sets the selected entry's letter from a radio button; nothing without a selection.
  void ClickRadio(int radio_id);

  // The list as the permissions text written back on closing.
  std::string PermissionsText() const { return FormatPermissions(entries_); }

 private:
  // The position of the entry named by `text` (its name or its list text, ignoring case).
  int Find(std::string_view text) const;
  // Keeps the list sorted, the selection following its entry.
  void Sort();

  std::vector<PermissionEntry> entries_;
  int selection_ = -1;
  std::string edit_text_;
};

// Runs the dialog (a window, or a test's script) on the model until the user closes it.
using PermissionsDialogRunner = std::function<void(PermissionsDialogModel& model)>;

// The "User Access Permissions" button of the company edit screen. In single-user mode it
// only tells that the feature is for network versions; a user below Full Access
// (`my_level`, computed when the company was opened) is refused; without permissions the
// user is asked first whether to define them (default No). After the dialog the company
// record's permissions text is replaced. True when the dialog ran.
bool EditUserPermissions(NvCompany& company, int my_level, Ui& ui,
                         const PermissionsDialogRunner& run_dialog);
// The same for a permissions text held apart from the company (the company screen edits a
// copy of the record); `context` gives the network mode, the product and the user name.
bool EditUserPermissions(const InstallationContext& context, std::string* permissions, int my_level,
                         Ui& ui, const PermissionsDialogRunner& run_dialog);

}  // namespace nv
