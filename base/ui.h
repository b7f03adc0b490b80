// The Ui port: every message box, question, choice list, file dialog, note window,
// matching panel, progress meter and company screen that the logic shows goes through this
// interface, which the logic receives by reference. Two implementations exist: the Qt one
// in gui/ for people and ScriptedUi (ui/scripted_ui.h), which answers from a list and keeps
// a transcript, for tests, nvtool and automated runs. Logic never opens a window any other
// way.
//
// The port stands in for the platform's windows (message boxes, dialogs), so it lives with
// the other platform substitutes: the store asks its few questions (opening an old company,
// backing one up) through it too.
//
// Texts are single-byte Windows-1252 strings exactly as the layouts give them; only the
// Qt implementation converts them for display.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/str_format.h"

namespace nv {

class BnaDialogCommands;
class CompanyScreen;
class MatchPanel;
class SelectionWindow;
class ScriptedWindow;
class TextFileScreen;

// Answer of a question box. Closing the box counts as Cancel.
enum class Answer { kYes, kNo, kCancel };

// Button that has the focus when a question box opens.
enum class DefaultButton { kYes, kNo };

struct ChoiceOption {
  std::string text;
  int value = -1;  // -1: the result is the option's 0-based position
};

struct ChoiceListRequest {
  std::string title;
  std::string message;  // one or more lines, split at "\n"
  std::string note;     // optional, shown under the message
  std::vector<ChoiceOption> options;
};

struct FileDialogRequest {
  std::string title;
  std::string filter;             // "Description|*.ext;*.EXT|All files|*.*"
  std::string initial_directory;  // empty: the current directory
  std::string initial_name;
  bool save = false;              // save dialog instead of open dialog
  std::string default_extension;  // added to a typed name without one ("txt", no dot)
  bool must_exist = true;         // open dialog: only an existing file can be chosen
};

// A one-line text entry (a company number, say) with its prompt.
struct TextEntryRequest {
  std::string title;    // "Enter New Company Number"
  std::string prompt;   // "Company Number:"
  std::string initial;  // text in the field when it opens
  // The field's own rules while typing: characters it takes ("" any), letters typed in
  // lower case shown in upper case, and the most characters (0 no limit).
  std::string allowed;
  bool upper_case = false;
  size_t max_length = 0;
  // Lines shown under the field for reference (the companies that exist already).
  std::vector<std::string> listing;
};

// A running progress meter: a message window without buttons, removed when destroyed.
class ProgressMeter {
 public:
  virtual ~ProgressMeter() = default;
  // Replaces the meter's text (for example "Copying FAS assets\nAsset %9.9s").
  virtual void SetText(std::string_view text) = 0;
  // Moves the meter to `done` of the total it was opened with; lets the window repaint.
  virtual void SetPosition(long done) = 0;
};

class Ui {
 public:
  static constexpr size_t kMaxMessageLength = 1000;
  static constexpr size_t kMaxQuestionLength = 2000;

  virtual ~Ui() = default;

  // Information box with one OK button. Titles in use: "Message" (the default), "Error",
  // "Note", "Warning", "Done", "Program Error". The text is cut to kMaxMessageLength.
  virtual void Message(std::string_view text, std::string_view title = "Message") = 0;

  // Question box titled "Question" with "&Yes", "&No" and "Cancel". Closing counts as
  // Cancel. Callers that do not look at Cancel treat every answer but kYes as No.
  // The text is cut to kMaxQuestionLength.
  virtual Answer Question(std::string_view text, DefaultButton default_button) = 0;

  // Small modal list of options. Returns the chosen option's value, its 0-based position
  // when the value is -1, or -1 when the list is closed without a choice.
  [[nodiscard]] virtual int ChoiceList(const ChoiceListRequest& request) = 0;

  // Common open (or save) file dialog. Returns the chosen path, or nothing on Cancel.
  virtual std::optional<std::string> ChooseFile(const FileDialogRequest& request) = 0;

  // Folder browser. Returns the chosen folder, or nothing on Cancel.
  virtual std::optional<std::string> ChooseFolder(std::string_view title,
                                                  std::string_view initial_folder) = 0;

  // One-line text entry with OK and Cancel. Returns the text, or nothing on Cancel.
  virtual std::optional<std::string> EnterText(const TextEntryRequest& request) = 0;

  // Modeless-looking note window that the user reads and closes (long texts, reports).
  virtual void ShowNote(std::string_view title, std::string_view text) = 0;

  // Opens a progress meter over `total` steps.
  virtual std::unique_ptr<ProgressMeter> OpenProgress(std::string_view title, std::string_view text,
                                                      long total) = 0;

  // Runs the matching panel modally; returns 1 for OK and 2 for Cancel. The matches are
  // read from the panel afterwards.
  [[nodiscard]] virtual int RunMatchPanel(MatchPanel& panel) = 0;

  // Information box whose text stays exactly as given, with a longer report behind it
  // that the person can open ("Details..."). Without a way to show it, only the box.
  virtual void MessageWithDetails(std::string_view text, std::string_view title,
                                  std::string_view details) {
    static_cast<void>(details);
    Message(text, title);
  }

  // Opens a help topic (an HTML file name such as "nvsy6dis.html") from the help folder.
  virtual void ShowHelp(std::string_view topic) = 0;

  // Runs the company screen modally; returns its action code (1 show again, 2 to 4
  // save, -11 cancelled).
  [[nodiscard]] virtual int RunCompanyScreen(CompanyScreen& screen) = 0;

  // Runs the screen "Create Text File for Export" modally: true when the user pressed
  // Create and the screen's checks passed, false for Close or Escape.
  [[nodiscard]] virtual bool RunTextFileScreen(TextFileScreen& screen) = 0;

  // Runs the asset selection window modally: true when the user pressed OK and every
  // criterion in use passed its check, false for Cancel or closing it.
  [[nodiscard]] virtual bool RunSelectionWindow(SelectionWindow& window) = 0;
  // Runs the BNA Next Dimension import dialog modally until it closes; closing runs the
  // dialog's Close, which saves its profile.
  virtual void RunBnaDialog(BnaDialogCommands& dialog) = 0;
  // Runs modally a window whose model lives in a layer above this port
  // (ui/scripted_window.h): the export window "Export Company Data" or the dialog
  // "Select Export Definition". True when one of the window's own buttons ended it (a
  // finished export, OK), false when it was closed.
  [[nodiscard]] virtual bool RunWindow(ScriptedWindow& window) = 0;

  // Whether the Alt key is held down now (a command pressed with Alt takes another path).
  [[nodiscard]] virtual bool AltKeyHeld() = 0;
};

// Shorthands for the usual calls: printf-style texts, and "every answer but Yes is No".
void MessageF(Ui& ui, std::string_view title, const char* format, ...) NV_PRINTF_FORMAT(3, 4);
[[nodiscard]] bool AskYes(Ui& ui, DefaultButton default_button, const char* format, ...)
    NV_PRINTF_FORMAT(3, 4);

}  // namespace nv
