// ScriptedUi: the Ui that answers every prompt from an answers script and writes a
// transcript of everything it was shown. Tests, nvtool and automated runs of the
// program use it in place of windows.
//
// Answers script (plain text, one directive per line; written by hand):
//
//   # a comment (only at the start of a line)
//   yes                      question box: Yes
//   no                       question box: No
//   cancel                   question box: Cancel; file or folder dialog: Cancel;
//                            matching panel: Cancel
//   choose N                 choice list: the option at 0-based position N
//   choose-text TEXT         choice list: the first option whose text is exactly TEXT
//   close                    closes any prompt that wants an answer without one
//                            (question: Cancel, choice list: -1, dialogs: nothing,
//                            matching panel: Cancel, company screen: -11)
//   file PATH                file dialog: PATH
//   folder PATH              folder dialog: PATH
//   text TEXT                text entry: TEXT, as typed (the field's rules are not applied)
//   match DEST=SRC ...       matching panel: pairs destination item DEST with source item
//                            SRC, by their ids (SRC 0 unpairs DEST), in the order written;
//                            one or more pairs a line, any number of lines, then the line
//                            that ends the panel:
//   reset                    matching panel: Reset (back to the importer's own pre-set
//                            matches), then more `match` lines or the line that ends it
//   ok                       matching panel: OK
//   field NAME VALUE         company screen or text-file screen: sets field NAME (a
//                            script name of ui/company_screen.h or ui/text_file_screen.h)
//                            to VALUE, the rest of the line (may be empty), and runs the
//                            field's rule as leaving it would
//   save                     company screen: saves (the screen's save rules and questions)
//   press BUTTON             text-file screen: presses browse (a folder dialog follows,
//                            answered by the next line), create (the checks, then the file
//                            is written and the screen comes back) or close
//   select FIELD=TEXT        selection window: TEXT (the rest of the line, may be empty)
//                            becomes the criterion of FIELD, a field name of the selection
//                            table ("Asset Number"); a text switches it on, none off
//   unselect FIELD           selection window: switches FIELD's criterion off
//   exclude FIELD            selection window: FIELD's criterion selects what it does not
//   include FIELD            match (exclude), or again what it matches (include)
//   pick FIELD               selection window: FIELD's picker button; the list that opens
//                            takes the next line (choose, choose-text or close), unless it
//                            is empty and only says so
//   schedule LETTER          selection window: the schedule of the "sched" fields
//   load NAME                selection window: chooses the saved selection NAME in the list
//                            (its line as listed, "NAME (All Companies)", or else the first
//                            of that name); it is loaded
//   save-as NAME             selection window: "Save Current" with NAME for this company
//   save-all NAME            ... for all companies
//   delete NAME              selection window: deletes the saved selection NAME (chosen as
//                            for load); the question follows, answered by the next line
//   scan CODES               selection window: "Scan Barcodes" with CODES typed into the
//                            box (separated by commas, as a line end would)
//   bna COMMAND              BNA import dialog: one command of the dialog (below)
//   show GROUP               a window of ui/scripted_window.h (the export window, the
//   hide GROUP               export definition picker): one line for the window, whose
//   add VALUE                header says the names and values it takes; a name it does
//   column LETTERS           not know fails the run when the line is used. `set NAME`
//   definition NAME          with no value empties the box. `cancel` and `close` close
//   set NAME VALUE           the window (Escape)
//   click BUTTON
//   alt-held                 the Alt key is held down whenever the program asks (not a
//                            prompt answer; without it the key is up)
//   command ID [test]        main-window command ID (a number) to run; see below. With
//                            `test` an import runs as a test import ("Test import" ticked)
//
// Lines are trimmed of blanks, tabs and a carriage return; blank lines are skipped.
// Directive names ignore case; TEXT and PATH are the rest of the line, taken as they
// stand (no quoting, no escapes). Prompt answers are used one per prompt, in order,
// for the whole run (a matching panel takes its `match` lines and the `ok`, `cancel` or
// `close` after them). `command` lines form a separate list, in their own order; where
// they stand among the answers does not matter. Information boxes, notes, help and
// progress meters take no answer.
//
// The company screen takes `field` lines until a `save`, `cancel` or `close` ends it
// (cancel and close: action -11). Questions that a field's rule or the save asks take the
// next answers as any question does, so they stand right after the line that asks them;
// within the screen, answer them with yes or no, since a cancel there ends the screen. A
// save that the rules refuse leaves the screen open for the `field` and `save` lines that
// follow. An unknown field NAME is an error of the script.
//
// The text-file screen takes `field` and `press` lines likewise; `press close`, `cancel`
// and `close` close it (Close or Escape), and `press create` that passes the checks ends
// it for the file to be written. A refused create leaves the screen open.
//
// The selection window takes its lines until `ok` whose criteria all pass their checks,
// `cancel` or `close`; an `ok` refused leaves it open after its message. Each line taken is
// written before what it raises (messages, questions, lists). `ok` and
// `cancel` there end the window, not a question: answer questions with yes or no. A
// `load`, `delete`, `schedule` or `pick` that names nothing the window has fails the run.
// A window of ui/scripted_window.h takes its lines until one of its buttons ends it or a
// `cancel` or `close` closes it; questions and dialogs its buttons raise take the answers
// that follow the line, as for the screens above.
//
// When no answer is left, or the next answer does not fit the prompt (`file` at a
// question box, a position past the end of the list, a text that names no option, a
// `match` pair whose DEST is no destination item of the panel or whose SRC is no source
// item), the prompt is answered as if the user had closed its window, an "error:" line
// is written and the run counts as failed. From then on every prompt is answered as
// closed without taking an answer: a script that has lost step must not go on saying
// "yes" to questions it was not written for.
//
// Transcript: one line per prompt, LF-ended. A line starts with the prompt's kind and
// carries fields name=value; texts are in double quotes with backslash, double quote,
// LF, CR and tab written as \\ \" \n \r \t and other control bytes as \xNN, so that one
// prompt is always one line (bytes 0x80 and up stand as they are). Prompts that take
// an answer end with " -> " and the answer given (long lines are wrapped here only):
//
// clang-format off
//   message title="Error" text="Unable to read Master File"
//   message title="Done" text="2 assets copied." details="Import report\n..."
//   question title="Question" text="Continue?" buttons=["&Yes", "&No", "Cancel"]
//       default="&Yes" -> yes
//   choice title="" text="Select company type:" note="" options=["New Company",
//       "Existing company"] -> choose 1 "Existing company" result=1
//   choice ... -> close result=-1
//   file-open title="..." filter="..." folder="..." name="..." -> file "C:/data/x.dat"
//   file-save ... -> cancel
//   folder title="..." folder="..." -> folder "/tmp/out"
//   entry title="..." prompt="..." text="..." -> text "ACME"
//   entry title="..." prompt="..." text="" listing=["   ACME  Acme Tools"] -> text "NEW"
//   note title="..." text="..."
//   progress title="..." text="..." total=250 position=250 last-text="..."
//   help topic="nvsy6dis.html"
//   match-panel caption="FAS to KEL book conversion" destination-heading="KEL Schedule"
//       source-heading="FAS Book" destinations=[201 "B Book", 202 "T Tax"]
//       sources=[101 "Internal", 102 "Federal"] preset=[201=101] -> match 202=102, ok
//       pairs=[201=101, 202=102]
//   company-screen number="ACME" name="Acme Tools" ein="" last_closed="12/31/2024" ...
//       -> field name "Acme Co", field sort_order "LC", save
//   text-file-screen folder="/data/" company_number="ACME" company_name="Acme Tools"
//       file_name="ACME.DBS" -> field file_name "ACME.TXT", press create
//   selection-window title="Asset Selection" schedule="B-Book" schedules=["B-Book",
//       "T-Tax"] saved=["Mine", "Ours (All Companies)"] criteria=["Location"="01-05",
//       !"Disposal Code"="S"]
//   selection-window -> select "Location" "01-05,10"
//   selection-window -> ok
//   selection-window closed criteria=["Location"="01-05,10"] schedule="B-Book"
//   export-window definition="" show=["*"] columns=[] ... -> add Cost
//   alt-key -> up
//   error: line 4 ("file /x") does not answer a question box
// clang-format on
//
// The BNA dialog takes `bna` lines until `bna press exit`, `cancel` or `close` closes it
// (closing saves its profile). The prompts a command raises take the next answers, so they
// stand right after it. Commands:
//
//   bna press file           "Select File"; the file dialog takes the next line (file PATH
//                            or cancel)
//   bna press profile        "Select Profile"; the file dialog, then "Create a new
//                            Profile?" for a file that does not exist (yes or no)
//   bna press import         "Import Data": stores the panel, checks the definitions and
//                            runs the import, whose prompts follow
//   bna press exit           closes the dialog
//   bna tabs | bna commas    "Tab separated" or "Comma separatd"
//   bna group LETTER on|off  a group box by its letter: G T B A C S O
//   bna select NAME          selects the list's line of the definition NAME (any case)
//   bna no-copy on|off       "Do not copy"
//   bna method KEYWORD       a method button: ENTIRE RIGHT LEFT MID DEFAULT SPECIAL SET
//   bna field NAME TEXT      types TEXT into a panel field and leaves it: right, left,
//                            count, start, set, column
//   bna click X              a click in the grid at cell X of the data area
//
// The dialog's line shows, before each command, its state and the command:
//
// clang-format off
//   bna-dialog profile="@BNA_ND.IMP" source="" file-type=tabs groups="G" lines=["Asset No.\tEntire--A"]
//       selected=-1 panel=[name="No value selected." no-copy=0 method=none right="" left=""
//       count="" start="" set="" column=""] grid=[lines=0 data=0 columns=0] -> bna press file
// clang-format on
//
// A window writes a line before each of its lines is carried out: its name, what it shows
// then, and the line (or close).
// The company screen's line shows, each time the screen opens or stays open after a refused
// save, every field by its script name with its value, then the screen's answers up to the
// one that ends it (the questions they raise follow as lines of their own).
// An option with a value of its own shows it after the text ("Replace"=2). A progress
// line is written when its meter closes; last-text appears only when the text was
// changed while it ran. A matching panel line lists its items (id and text) in the order
// added, the pairs it opens with (the pre-set matches the first time it runs), the answers
// it took, how it ended and the pairs it holds then, by destination. Callers may add their
// own lines (Note) and errors (Fail).
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"

namespace nv {

class CompanyScreen;

// One prompt answer of an answers script.
struct ScriptAnswer {
  enum class Kind {
    kYes,
    kNo,
    kCancel,
    kChoose,
    kChooseText,
    kClose,
    kFile,
    kFolder,
    kText,
    kMatch,
    kOk,
    kField,
    kSave,
    kPress,
    kSelect,
    kUnselect,
    kExclude,
    kInclude,
    kPick,
    kSchedule,
    kLoad,
    kSaveAs,
    kSaveAll,
    kDelete,
    kScan,
    kBna,
    kReset,
    kWindow
  };
  Kind kind = Kind::kClose;
  int position = 0;  // kChoose: 0-based option position
  // kChooseText: option text; kFile, kFolder: path; kText: the text; kMatch: the pairs as
  // "DEST=SRC DEST=SRC", one blank between them; kField: the field's name, one blank and
  // the value; kPress: the button's name; kSelect: FIELD=TEXT; kUnselect, kExclude,
  // kInclude, kPick: the selection field; kSchedule: the letter; kLoad, kSaveAs, kSaveAll,
  // kDelete: the saved selection's name; kScan: the codes; kBna: the dialog's command with
  // its text; kWindow: the whole line, its directive first and one blank after it.
  std::string text;
  int line = 0;  // 1-based line in the script, for messages
};

// A `command` line: the main-window command and, for an import, whether the window's
// "Test import" is ticked for it.
struct ScriptCommand {
  int id = 0;
  bool test_import = false;
  bool operator==(const ScriptCommand&) const = default;
};

struct AnswerScript {
  std::vector<ScriptAnswer> answers;    // in the order they are used
  std::vector<ScriptCommand> commands;  // in the order to run
  bool alt_held = false;                // `alt-held`
};

struct ScriptError {
  int line = 0;  // 1-based
  std::string message;
};

// Parses an answers script. Any error makes the whole script unusable: returns nullopt
// and lists the errors (at most kMaxScriptErrors, in line order) in *errors.
inline constexpr size_t kMaxScriptErrors = 20;
std::optional<AnswerScript> ParseAnswerScript(std::string_view text,
                                              std::vector<ScriptError>* errors);

// Writes `text` in double quotes with the transcript's escapes.
std::string QuoteTranscriptText(std::string_view text);

class ScriptedUi : public Ui {
 public:
  explicit ScriptedUi(AnswerScript script);
  ~ScriptedUi() override;

  ScriptedUi(const ScriptedUi&) = delete;
  ScriptedUi& operator=(const ScriptedUi&) = delete;

  // Parse a script; nullptr on failure with the errors in *error_text as lines
  // "line N: reason" (FromFile: "PATH:N: reason", or why the file could not be read).
  static std::unique_ptr<ScriptedUi> FromString(std::string_view text, std::string* error_text);
  static std::unique_ptr<ScriptedUi> FromFile(const std::string& path, std::string* error_text);

  // From now on every transcript line is also written to *sink and flushed, so that a
  // run that dies leaves its transcript so far. nullptr stops it.
  // REQUIRES: *sink outlives this object and every progress meter it opened.
  void set_sink(std::ostream* sink);

  const std::string& transcript() const;
  const std::vector<ScriptCommand>& commands() const { return commands_; }
  bool failed() const;
  // Answers not used yet.
  size_t answers_left() const { return answers_.size() - next_answer_; }

  // Adds a line of the caller's own to the transcript.
  void Note(std::string_view line);
  // Adds "error: REASON" to the transcript and marks the run failed.
  void Fail(std::string_view reason);

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
  int RunMatchPanel(MatchPanel& panel) override;
  // Runs the company screen on the script's `field` and `save` lines; the action code.
  int RunCompanyScreen(CompanyScreen& screen) override;
  // Runs the text-file screen on the script's `field` and `press` lines.
  bool RunTextFileScreen(TextFileScreen& screen) override;
  // Runs the selection window on the script's selection lines.
  bool RunSelectionWindow(SelectionWindow& window) override;
  // Runs the BNA dialog on the script's `bna` lines; `cancel`, `close`, `bna press exit`
  // or no answer left close it.
  void RunBnaDialog(BnaDialogCommands& dialog) override;
  // Runs the window on the script's window lines (show, hide, add, select, set, click).
  bool RunWindow(ScriptedWindow& window) override;
  // As the script's `alt-held` says; each question is written to the transcript.
  bool AltKeyHeld() override;

  // Transcript state; shared with open progress meters so that a meter never points at
  // a destroyed Ui.
  struct Log;

 protected:
  // Puts answers in front of the script's remaining ones: the next prompts take them
  // first. For a Ui that decides its answers as the prompts come (nvtool import).
  void PushAnswers(std::vector<ScriptAnswer> answers);

 private:
  // The next answer if it fits a prompt of kind `prompt`; otherwise nullptr, with the
  // reason in *error.
  const ScriptAnswer* TakeAnswer(std::string_view prompt,
                                 std::initializer_list<ScriptAnswer::Kind> fitting,
                                 std::string* error);
  // File and folder dialogs: answered by a path of kind `path_kind`, or cancelled.
  std::optional<std::string> AnswerPath(std::string line, std::string_view prompt,
                                        ScriptAnswer::Kind path_kind);
  // A screen's answers from the next one on, as its transcript line shows them.
  std::string PeekScreenAnswers(bool text_file_screen) const;
  // Writes the prompt line, then the error line when there is one.
  void WritePrompt(const std::string& line, const std::string& error);

  std::shared_ptr<Log> log_;
  std::vector<ScriptAnswer> answers_;
  size_t next_answer_ = 0;
  std::vector<ScriptCommand> commands_;
  bool alt_held_ = false;
};

}  // namespace nv
