// The BNA import dialog as a script drives it: its commands, each as the user gives it in
// the window. The dialog itself (BnaNdDialog) lives with the BNA importer, above this
// layer; the scripted Ui reaches it through this face, and the Qt window through the
// dialog's full class.
//
// Prompts that a command raises (the file dialogs, "Create a new Profile?", the import's
// own questions) go through the dialog's Ui as usual.
#pragma once

#include <string>
#include <string_view>

namespace nv {

class BnaNdDialog;

class BnaDialogCommands {
 public:
  virtual ~BnaDialogCommands() = default;

  // The dialog behind this face, for a window that shows all of it.
  virtual BnaNdDialog& dialog() = 0;

  // One line for a transcript: the profile, the source, the file type, the checked group
  // boxes, the list's lines and the panel.
  virtual std::string Describe() const = 0;

  // The buttons "Select File", "Select Profile" and "Import Data".
  virtual void SelectFile() = 0;
  virtual void SelectProfile() = 0;
  virtual void ImportData() = 0;
  // "Tab separated" (1) or "Comma separatd" (2).
  virtual void SetFileType(int file_type) = 0;
  // A group box by its letter (G T B A C S O); false for a letter without a box.
  virtual bool SetGroupChecked(char letter, bool checked) = 0;
  // Selects the list's line of the definition named `name` (any case); false when the list
  // shows no such line.
  virtual bool SelectDefinition(std::string_view name) = 0;
  // "Do not copy".
  virtual void SetNoCopy(bool no_copy) = 0;
  // The method button of a keyword (ENTIRE, RIGHT, LEFT, MID, DEFAULT, SPECIAL, SET, any
  // case); false for any other word, or while "Do not copy" holds the buttons off.
  virtual bool CheckMethod(std::string_view keyword) = 0;
  // Types `text` into a panel field and leaves it: "right", "left", "count", "start",
  // "set" or "column". False for any other name.
  virtual bool EnterPanelField(std::string_view field, std::string_view text) = 0;
  // A click in the grid at cell x of the data area.
  virtual void ClickGrid(int x) = 0;
  // Closes the dialog; closing saves the profile.
  virtual void Close() = 0;
};

}  // namespace nv
