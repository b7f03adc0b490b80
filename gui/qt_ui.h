// The Ui port for people: Qt message and question boxes, the choice list, file and
// folder dialogs, the note window, the matching panel, the progress meter, the help viewer
// the company screen, the text-file screen and the asset selection window. Every window is owned by
// the main window given at construction (none before it exists).
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <string>

#include "base/ui.h"
#include "gui/help_viewer.h"

namespace nv {

class QtUi : public Ui {
 public:
  // `installation_folder` holds the "help" folder of ShowHelp.
  explicit QtUi(std::string installation_folder, QWidget* owner = nullptr);
  ~QtUi() override;
  QtUi(const QtUi&) = delete;
  QtUi& operator=(const QtUi&) = delete;

  void set_owner(QWidget* owner) { owner_ = owner; }
  QWidget* owner() const { return owner_; }

  void Message(std::string_view text, std::string_view title = "Message") override;
  void MessageWithDetails(std::string_view text, std::string_view title,
                          std::string_view details) override;
  Answer Question(std::string_view text, DefaultButton default_button) override;
  int ChoiceList(const ChoiceListRequest& request) override;
  std::optional<std::string> ChooseFile(const FileDialogRequest& request) override;
  std::optional<std::string> ChooseFolder(std::string_view title,
                                          std::string_view initial_folder) override;
  std::optional<std::string> EnterText(const TextEntryRequest& request) override;
  void ShowNote(std::string_view title, std::string_view text) override;
  std::unique_ptr<ProgressMeter> OpenProgress(std::string_view title, std::string_view text,
                                              long total) override;
  void ShowHelp(std::string_view topic) override;
  // The panel is laid out again for the owner's screen before it opens.
  int RunMatchPanel(MatchPanel& panel) override;
  int RunCompanyScreen(CompanyScreen& screen) override;
  bool RunTextFileScreen(TextFileScreen& screen) override;
  bool RunSelectionWindow(SelectionWindow& window) override;
  // The dialog's window, modal; it runs the dialog's Close as it closes.
  void RunBnaDialog(BnaDialogCommands& dialog) override;
  // The export window and the export definition dialog; any other window is a program
  // error, told as such.
  bool RunWindow(ScriptedWindow& window) override;
  // The keyboard's state now, not as the last event found it.
  bool AltKeyHeld() override;

  // The viewer of the last ShowHelp while it is open.
  HelpViewer* help_viewer() const { return help_viewer_; }

 private:
  std::string installation_folder_;
  QPointer<QWidget> owner_;
  QPointer<HelpViewer> help_viewer_;
};

}  // namespace nv
