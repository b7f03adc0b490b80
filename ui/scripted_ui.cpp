#include "ui/scripted_ui.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <utility>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "ui/bna_dialog_commands.h"
#include "ui/company_screen.h"
#include "ui/match_panel.h"
#include "ui/scripted_window.h"
#include "ui/selection/selection_window.h"
#include "ui/text_file_screen.h"

namespace nv {

struct ScriptedUi::Log {
  std::string text;
  std::ostream* sink = nullptr;
  bool failed = false;

  void Write(std::string_view line) {
    text.append(line);
    text.push_back('\n');
    if (sink) {
      sink->write(line.data(), static_cast<std::streamsize>(line.size()));
      *sink << '\n';
      sink->flush();
    }
  }
};

namespace {

using Kind = ScriptAnswer::Kind;

std::string_view Trim(std::string_view s) {
  const char* blanks = " \t\r";
  size_t first = s.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  size_t last = s.find_last_not_of(blanks);
  return s.substr(first, last - first + 1);
}

std::string Lower(std::string_view s) {
  std::string out(s);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

// A decimal number of at most nine digits: enough for any position or command id and
// never near int overflow.
std::optional<int> ParseSmallNumber(std::string_view s) {
  if (s.empty() || s.size() > 9) return std::nullopt;
  int value = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

bool HasControlByte(std::string_view s) {
  return std::any_of(s.begin(), s.end(), [](char c) {
    unsigned char u = static_cast<unsigned char>(c);
    return (u < 0x20 && u != '\t') || u == 0x7f;
  });
}

struct Directive {
  const char* name;
  Kind kind;
  enum {
    kNone,
    kNumber,
    kText,
    kPairs,
    kField,
    kButton,
    kSelectionField,
    kSelectionValue,
    kLetter,
    kBnaCommand,
    kWindowLine
  } argument;
};

// Every directive but `command`, which is not a prompt answer.
constexpr Directive kDirectives[] = {
    {"yes", Kind::kYes, Directive::kNone},
    {"no", Kind::kNo, Directive::kNone},
    {"cancel", Kind::kCancel, Directive::kNone},
    {"close", Kind::kClose, Directive::kNone},
    {"choose", Kind::kChoose, Directive::kNumber},
    {"choose-text", Kind::kChooseText, Directive::kText},
    {"file", Kind::kFile, Directive::kText},
    {"folder", Kind::kFolder, Directive::kText},
    {"text", Kind::kText, Directive::kText},
    {"match", Kind::kMatch, Directive::kPairs},
    {"ok", Kind::kOk, Directive::kNone},
    {"field", Kind::kField, Directive::kField},
    {"save", Kind::kSave, Directive::kNone},
    {"press", Kind::kPress, Directive::kButton},
    {"select", Kind::kSelect, Directive::kSelectionValue},
    {"unselect", Kind::kUnselect, Directive::kSelectionField},
    {"exclude", Kind::kExclude, Directive::kSelectionField},
    {"include", Kind::kInclude, Directive::kSelectionField},
    {"pick", Kind::kPick, Directive::kSelectionField},
    {"schedule", Kind::kSchedule, Directive::kLetter},
    {"load", Kind::kLoad, Directive::kText},
    {"save-as", Kind::kSaveAs, Directive::kText},
    {"save-all", Kind::kSaveAll, Directive::kText},
    {"delete", Kind::kDelete, Directive::kText},
    {"scan", Kind::kScan, Directive::kText},
    {"bna", Kind::kBna, Directive::kBnaCommand},
    {"reset", Kind::kReset, Directive::kNone},
    // Lines for a window of ui/scripted_window.h; the window checks its names when it runs.
    {"show", Kind::kWindow, Directive::kWindowLine},
    {"hide", Kind::kWindow, Directive::kWindowLine},
    {"add", Kind::kWindow, Directive::kWindowLine},
    {"column", Kind::kWindow, Directive::kWindowLine},
    {"definition", Kind::kWindow, Directive::kWindowLine},
    {"set", Kind::kWindow, Directive::kWindowLine},
    {"click", Kind::kWindow, Directive::kWindowLine},
};

// The BNA dialog's commands: the word after "bna", and whether a text follows it.
struct BnaCommand {
  const char* name;
  bool takes_text;
};
constexpr BnaCommand kBnaCommands[] = {
    {"press", true},   {"tabs", false},  {"commas", false}, {"group", true}, {"select", true},
    {"no-copy", true}, {"method", true}, {"field", true},   {"click", true},
};

// The error of a `bna` line's argument, or "" when it is well formed.
std::string CheckBnaCommand(std::string_view argument) {
  size_t gap = argument.find_first_of(" \t");
  std::string name = Lower(argument.substr(0, gap));
  std::string_view text = gap == std::string_view::npos ? "" : Trim(argument.substr(gap));
  for (const BnaCommand& c : kBnaCommands) {
    if (name != c.name) continue;
    if (c.takes_text && text.empty()) return StrPrintf("'bna %s' needs a text after it", c.name);
    if (!c.takes_text && !text.empty()) return StrPrintf("'bna %s' takes nothing after it", c.name);
    const std::string button = Lower(text);
    if (name == "press" && button != "file" && button != "profile" && button != "import" &&
        button != "exit") {
      return "'bna press' needs a button of the BNA dialog: file, profile, import or exit";
    }
    return "";
  }
  return "'bna' needs a dialog command: press, tabs, commas, group, select, no-copy, method, "
         "field or click";
}

const char* DirectiveName(Kind kind) {
  for (const Directive& d : kDirectives) {
    if (d.kind == kind) return d.name;
  }
  return "?";
}

// "DEST=SRC DEST=SRC ...": item ids of a matching panel, blank- or tab-separated.
using MatchPairs = std::vector<std::pair<int, int>>;

std::optional<MatchPairs> ParsePairs(std::string_view text) {
  MatchPairs pairs;
  while (!text.empty()) {
    size_t end = text.find_first_of(" \t");
    std::string_view pair = text.substr(0, end);
    text = end == std::string_view::npos ? "" : Trim(text.substr(end));
    size_t equals = pair.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    std::optional<int> destination = ParseSmallNumber(pair.substr(0, equals));
    std::optional<int> source = ParseSmallNumber(pair.substr(equals + 1));
    if (!destination || !source) return std::nullopt;
    pairs.emplace_back(*destination, *source);
  }
  if (pairs.empty()) return std::nullopt;
  return pairs;
}

std::string FormatPairs(const MatchPairs& pairs, const char* separator) {
  std::string out;
  for (const auto& [destination, source] : pairs) {
    if (!out.empty()) out += separator;
    out += StrPrintf("%d=%d", destination, source);
  }
  return out;
}

// Parses one non-blank, non-comment line into *script; returns the error, or "" when fine.
std::string ParseLine(std::string_view line, int line_number, AnswerScript* script) {
  size_t gap = line.find_first_of(" \t");
  std::string name = Lower(line.substr(0, gap));
  std::string_view argument = gap == std::string_view::npos ? "" : Trim(line.substr(gap));
  if (HasControlByte(argument)) return "control character in the line";

  if (name == "alt-held") {
    if (!argument.empty()) return "'alt-held' takes nothing after it";
    script->alt_held = true;
    return "";
  }
  if (name == "command") {
    const size_t blank = argument.find_first_of(" \t");
    const std::string_view flag =
        blank == std::string_view::npos ? "" : Trim(argument.substr(blank));
    std::optional<int> id = ParseSmallNumber(argument.substr(0, blank));
    if (!id || !(flag.empty() || Lower(flag) == "test")) {
      return "'command' needs a command number and may add 'test', e.g. 'command 102 test'";
    }
    script->commands.push_back({*id, !flag.empty()});
    return "";
  }
  for (const Directive& d : kDirectives) {
    if (name != d.name) continue;
    ScriptAnswer answer;
    answer.kind = d.kind;
    answer.line = line_number;
    switch (d.argument) {
      case Directive::kNone:
        if (!argument.empty()) return StrPrintf("'%s' takes nothing after it", d.name);
        break;
      case Directive::kNumber: {
        std::optional<int> position = ParseSmallNumber(argument);
        if (!position)
          return StrPrintf("'%s' needs an option position from 0, e.g. 'choose 1'", d.name);
        answer.position = *position;
        break;
      }
      case Directive::kText:
        if (argument.empty()) return StrPrintf("'%s' needs a text after it", d.name);
        answer.text = std::string(argument);
        break;
      case Directive::kPairs: {
        auto pairs = ParsePairs(argument);
        if (!pairs)
          return StrPrintf("'%s' needs pairs of item ids DEST=SRC, e.g. 'match 201=101 202=0'",
                           d.name);
        answer.text = FormatPairs(*pairs, " ");
        break;
      }
      case Directive::kField: {
        const size_t blank = argument.find_first_of(" \t");
        const std::string field(argument.substr(0, blank));
        if (field.empty())
          return "'field' needs a field name and a value, e.g. 'field name Acme Tools'";
        if (!CompanyScreen::IsFieldName(field) && !TextFileScreen::IsFieldName(field)) {
          const std::string shown = field.substr(0, 40);
          return StrPrintf("unknown screen field '%s'", shown.c_str());
        }
        const std::string_view value =
            blank == std::string_view::npos ? std::string_view() : Trim(argument.substr(blank));
        answer.text = field + " " + std::string(value);
        break;
      }
      case Directive::kSelectionField:
        if (!FindSelectionField(argument)) {
          const std::string shown(argument.substr(0, 40));
          return StrPrintf("'%s' needs a field of the asset selection, not '%s'", d.name,
                           shown.c_str());
        }
        answer.text = std::string(argument);
        break;
      case Directive::kSelectionValue: {
        const size_t equals = argument.find('=');
        const std::string_view field = Trim(argument.substr(0, equals));
        if (equals == std::string_view::npos || !FindSelectionField(field)) {
          const std::string shown(field.substr(0, 40));
          return StrPrintf("'%s' needs FIELD=TEXT with a field of the asset selection, not '%s'",
                           d.name, shown.c_str());
        }
        answer.text = std::string(field) + "=" + std::string(argument.substr(equals + 1));
        break;
      }
      case Directive::kLetter:
        if (argument.size() != 1 || argument[0] < 'A' || argument[0] > 'Z') {
          return StrPrintf("'%s' needs a schedule letter A to Z", d.name);
        }
        answer.text = std::string(argument);
        break;
      case Directive::kBnaCommand: {
        std::string error = CheckBnaCommand(argument);
        if (!error.empty()) return error;
        answer.text = std::string(argument);
        break;
      }
      case Directive::kButton:
        if (!TextFileScreen::IsButtonName(argument)) {
          return "'press' needs a button of the text-file screen: browse, create or close";
        }
        answer.text = std::string(argument);
        break;
      case Directive::kWindowLine:
        // `set NAME` alone empties the box; every other line names something.
        if (argument.empty()) return StrPrintf("'%s' needs a name after it", d.name);
        answer.text = std::string(d.name) + " " + std::string(argument);
        break;
    }
    script->answers.push_back(std::move(answer));
    return "";
  }
  std::string shown(line.substr(0, std::min<size_t>(gap, 40)));
  return StrPrintf("unknown directive '%s'", shown.c_str());
}

std::string FormatErrors(std::string_view prefix, const std::vector<ScriptError>& errors) {
  std::string out;
  for (const ScriptError& e : errors) {
    out += StrPrintf("%.*s%d: %s\n", static_cast<int>(prefix.size()), prefix.data(), e.line,
                     e.message.c_str());
  }
  return out;
}

std::string Cut(std::string_view text, size_t max) {
  return std::string(text.substr(0, std::min(text.size(), max)));
}

// The answer part of a transcript line for a script line, e.g. `line 4 ("file /x")`.
std::string DescribeAnswer(const ScriptAnswer& a) {
  // A window's line keeps its own directive in its text.
  std::string shown = a.kind == Kind::kWindow ? std::string() : DirectiveName(a.kind);
  if (a.kind == Kind::kWindow) {
    return StrPrintf("line %d (%s)", a.line, QuoteTranscriptText(a.text).c_str());
  }
  if (a.kind == Kind::kChoose) shown += StrPrintf(" %d", a.position);
  if (!a.text.empty()) shown += " " + a.text;
  return StrPrintf("line %d (%s)", a.line, QuoteTranscriptText(shown).c_str());
}

// The items of one column of a matching panel: [201 "Cost", 202 "Life"].
std::string FormatItems(const MatchPanel& panel, mapIcon::Kind kind) {
  std::string out = "[";
  for (const mapIcon& item : panel.items()) {
    if (item.kind != kind) continue;
    if (out.size() > 1) out += ", ";
    out += StrPrintf("%d ", item.id) + QuoteTranscriptText(item.text);
  }
  return out + "]";
}

// Carries out the pairs of one `match` answer; returns the error, or "" when all fitted.
std::string ApplyMatchAnswer(const ScriptAnswer& answer, MatchPanel& panel) {
  auto wrong = [&](int id, const char* wanted) {
    const mapIcon* item = panel.Find(id);
    if (!item) return DescribeAnswer(answer) + StrPrintf(" names no item %d of the panel", id);
    return DescribeAnswer(answer) +
           StrPrintf(" names %d as a %s item, but it is a %s item", id, wanted,
                     item->kind == mapIcon::Kind::kSource ? "source" : "destination");
  };
  // The parser wrote the text, so it holds pairs.
  for (const auto& [destination, source] : ParsePairs(answer.text).value_or(MatchPairs{})) {
    const mapIcon* d = panel.Find(destination);
    if (!d || d->kind != mapIcon::Kind::kDestination) return wrong(destination, "destination");
    if (source == 0) {
      panel.ClearMatch(destination);
    } else if (!panel.SetMatch(destination, source)) {
      return wrong(source, "source");
    }
  }
  return "";
}

class ScriptedProgress : public ProgressMeter {
 public:
  ScriptedProgress(std::shared_ptr<ScriptedUi::Log> log, std::string_view title,
                   std::string_view text, long total)
      : log_(std::move(log)), title_(title), text_(text), last_text_(text), total_(total) {}

  ~ScriptedProgress() override {
    std::string line = StrPrintf("progress title=%s text=%s total=%ld position=%ld",
                                 QuoteTranscriptText(title_).c_str(),
                                 QuoteTranscriptText(text_).c_str(), total_, position_);
    if (text_changed_) line += " last-text=" + QuoteTranscriptText(last_text_);
    log_->Write(line);
  }

  void SetText(std::string_view text) override {
    last_text_ = std::string(text);
    text_changed_ = true;
  }
  void SetPosition(long done) override { position_ = done; }

 private:
  std::shared_ptr<ScriptedUi::Log> log_;
  std::string title_;
  std::string text_;
  std::string last_text_;
  bool text_changed_ = false;
  long total_;
  long position_ = 0;
};

}  // namespace

std::optional<AnswerScript> ParseAnswerScript(std::string_view text,
                                              std::vector<ScriptError>* errors) {
  errors->clear();
  AnswerScript script;
  int line_number = 0;
  size_t start = 0;
  while (start < text.size() && errors->size() < kMaxScriptErrors) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = Trim(text.substr(start, end - start));
    start = end + 1;
    ++line_number;
    if (line.empty() || line.front() == '#') continue;
    std::string error = ParseLine(line, line_number, &script);
    if (!error.empty()) errors->push_back({line_number, std::move(error)});
  }
  if (!errors->empty()) return std::nullopt;
  return script;
}

std::string QuoteTranscriptText(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    unsigned char u = static_cast<unsigned char>(c);
    switch (c) {
      case '\\':
        out += "\\\\";
        break;
      case '"':
        out += "\\\"";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (u < 0x20 || u == 0x7f) {
          out += StrPrintf("\\x%02X", u);
        } else {
          out.push_back(c);
        }
    }
  }
  out.push_back('"');
  return out;
}

ScriptedUi::ScriptedUi(AnswerScript script)
    : log_(std::make_shared<Log>()),
      answers_(std::move(script.answers)),
      commands_(std::move(script.commands)),
      alt_held_(script.alt_held) {}

ScriptedUi::~ScriptedUi() = default;

std::unique_ptr<ScriptedUi> ScriptedUi::FromString(std::string_view text, std::string* error_text) {
  std::vector<ScriptError> errors;
  std::optional<AnswerScript> script = ParseAnswerScript(text, &errors);
  if (!script) {
    *error_text = FormatErrors("line ", errors);
    return nullptr;
  }
  error_text->clear();
  return std::make_unique<ScriptedUi>(std::move(*script));
}

std::unique_ptr<ScriptedUi> ScriptedUi::FromFile(const std::string& path, std::string* error_text) {
  bool missing = false;
  std::optional<std::string> read = ReadFileBytes(path, &missing);
  if (!read) {
    *error_text = StrPrintf("%s: cannot read the answers file (%s)\n", path.c_str(),
                            missing ? "no such file" : "not a readable file");
    return nullptr;
  }
  const std::string content = std::move(*read);
  std::vector<ScriptError> errors;
  std::optional<AnswerScript> script = ParseAnswerScript(content, &errors);
  if (!script) {
    *error_text = FormatErrors(path + ":", errors);
    return nullptr;
  }
  error_text->clear();
  return std::make_unique<ScriptedUi>(std::move(*script));
}

void ScriptedUi::set_sink(std::ostream* sink) {
  log_->sink = sink;
}
const std::string& ScriptedUi::transcript() const {
  return log_->text;
}
bool ScriptedUi::failed() const {
  return log_->failed;
}

void ScriptedUi::Note(std::string_view line) {
  log_->Write(line);
}

void ScriptedUi::Fail(std::string_view reason) {
  log_->Write("error: " + std::string(reason));
  log_->failed = true;
}

const ScriptAnswer* ScriptedUi::TakeAnswer(std::string_view prompt,
                                           std::initializer_list<ScriptAnswer::Kind> fitting,
                                           std::string* error) {
  std::string prompt_text(prompt);
  if (log_->failed) {
    *error = "the run failed earlier; " + prompt_text + " answered as closed";
    return nullptr;
  }
  if (next_answer_ >= answers_.size()) {
    *error = "no answer left for " + prompt_text;
    return nullptr;
  }
  const ScriptAnswer& answer = answers_[next_answer_++];
  if (std::find(fitting.begin(), fitting.end(), answer.kind) == fitting.end()) {
    *error = DescribeAnswer(answer) + " does not answer " + prompt_text;
    return nullptr;
  }
  return &answer;
}

void ScriptedUi::PushAnswers(std::vector<ScriptAnswer> answers) {
  answers_.insert(answers_.begin() + static_cast<std::ptrdiff_t>(next_answer_),
                  std::make_move_iterator(answers.begin()), std::make_move_iterator(answers.end()));
}

void ScriptedUi::WritePrompt(const std::string& line, const std::string& error) {
  log_->Write(line);
  if (!error.empty()) Fail(error);
}

void ScriptedUi::Message(std::string_view text, std::string_view title) {
  log_->Write("message title=" + QuoteTranscriptText(title) +
              " text=" + QuoteTranscriptText(Cut(text, kMaxMessageLength)));
}

void ScriptedUi::MessageWithDetails(std::string_view text, std::string_view title,
                                    std::string_view details) {
  log_->Write("message title=" + QuoteTranscriptText(title) +
              " text=" + QuoteTranscriptText(Cut(text, kMaxMessageLength)) +
              " details=" + QuoteTranscriptText(details));
}

Answer ScriptedUi::Question(std::string_view text, DefaultButton default_button) {
  std::string error;
  const ScriptAnswer* a =
      TakeAnswer("a question box", {Kind::kYes, Kind::kNo, Kind::kCancel, Kind::kClose}, &error);
  Answer answer = Answer::kCancel;
  if (a && a->kind == Kind::kYes) answer = Answer::kYes;
  if (a && a->kind == Kind::kNo) answer = Answer::kNo;
  const char* shown = answer == Answer::kYes ? "yes" : answer == Answer::kNo ? "no" : "cancel";
  WritePrompt(StrPrintf("question title=\"Question\" text=%s buttons=[\"&Yes\", \"&No\", "
                        "\"Cancel\"] default=%s -> %s",
                        QuoteTranscriptText(Cut(text, kMaxQuestionLength)).c_str(),
                        default_button == DefaultButton::kYes ? "\"&Yes\"" : "\"&No\"", shown),
              error);
  return answer;
}

int ScriptedUi::ChoiceList(const ChoiceListRequest& request) {
  const std::vector<ChoiceOption>& options = request.options;
  std::string line = "choice title=" + QuoteTranscriptText(request.title) +
                     " text=" + QuoteTranscriptText(request.message) +
                     " note=" + QuoteTranscriptText(request.note) + " options=[";
  for (size_t i = 0; i < options.size(); ++i) {
    if (i > 0) line += ", ";
    line += QuoteTranscriptText(options[i].text);
    if (options[i].value != -1) line += StrPrintf("=%d", options[i].value);
  }
  line += "] -> ";

  std::string error;
  const ScriptAnswer* a =
      TakeAnswer("a choice list", {Kind::kChoose, Kind::kChooseText, Kind::kClose}, &error);
  size_t chosen = options.size();  // none
  if (a && a->kind == Kind::kChoose) {
    chosen = static_cast<size_t>(a->position);
    if (chosen >= options.size()) {
      error = StrPrintf("%s chooses position %d but the list has %zu options",
                        DescribeAnswer(*a).c_str(), a->position, options.size());
    }
  } else if (a && a->kind == Kind::kChooseText) {
    auto found = std::find_if(options.begin(), options.end(),
                              [&](const ChoiceOption& o) { return o.text == a->text; });
    chosen = static_cast<size_t>(found - options.begin());
    if (found == options.end()) error = DescribeAnswer(*a) + " names no option of this list";
  }
  if (chosen >= options.size()) {
    WritePrompt(line + "close result=-1", error);
    return -1;
  }
  int result = options[chosen].value == -1 ? static_cast<int>(chosen) : options[chosen].value;
  WritePrompt(line + StrPrintf("choose %zu %s result=%d", chosen,
                               QuoteTranscriptText(options[chosen].text).c_str(), result),
              error);
  return result;
}

std::optional<std::string> ScriptedUi::ChooseFile(const FileDialogRequest& request) {
  std::string line = std::string(request.save ? "file-save" : "file-open") +
                     " title=" + QuoteTranscriptText(request.title) +
                     " filter=" + QuoteTranscriptText(request.filter) +
                     " folder=" + QuoteTranscriptText(request.initial_directory) +
                     " name=" + QuoteTranscriptText(request.initial_name);
  if (!request.default_extension.empty()) {
    line += " extension=" + QuoteTranscriptText(request.default_extension);
  }
  if (!request.save && !request.must_exist) line += " new-allowed";
  line += " -> ";
  return AnswerPath(std::move(line), "a file dialog", Kind::kFile);
}

std::optional<std::string> ScriptedUi::ChooseFolder(std::string_view title,
                                                    std::string_view initial_folder) {
  std::string line = "folder title=" + QuoteTranscriptText(title) +
                     " folder=" + QuoteTranscriptText(initial_folder) + " -> ";
  return AnswerPath(std::move(line), "a folder dialog", Kind::kFolder);
}

std::optional<std::string> ScriptedUi::EnterText(const TextEntryRequest& request) {
  std::string line = "entry title=" + QuoteTranscriptText(request.title) +
                     " prompt=" + QuoteTranscriptText(request.prompt) +
                     " text=" + QuoteTranscriptText(request.initial);
  if (!request.listing.empty()) {
    line += " listing=[";
    for (size_t i = 0; i < request.listing.size(); ++i) {
      line += (i > 0 ? ", " : "") + QuoteTranscriptText(request.listing[i]);
    }
    line += "]";
  }
  return AnswerPath(line + " -> ", "a text entry", Kind::kText);
}

std::optional<std::string> ScriptedUi::AnswerPath(std::string line, std::string_view prompt,
                                                  Kind path_kind) {
  std::string error;
  const ScriptAnswer* a = TakeAnswer(prompt, {path_kind, Kind::kCancel, Kind::kClose}, &error);
  if (a && a->kind == path_kind) {
    WritePrompt(line + DirectiveName(path_kind) + " " + QuoteTranscriptText(a->text), error);
    return a->text;
  }
  WritePrompt(line + "cancel", error);
  return std::nullopt;
}

void ScriptedUi::ShowNote(std::string_view title, std::string_view text) {
  log_->Write("note title=" + QuoteTranscriptText(title) + " text=" + QuoteTranscriptText(text));
}

std::unique_ptr<ProgressMeter> ScriptedUi::OpenProgress(std::string_view title,
                                                        std::string_view text, long total) {
  return std::make_unique<ScriptedProgress>(log_, title, text, total);
}

void ScriptedUi::ShowHelp(std::string_view topic) {
  log_->Write("help topic=" + QuoteTranscriptText(topic));
}

int ScriptedUi::RunMatchPanel(MatchPanel& panel) {
  panel.BeginRun();
  std::string line = "match-panel caption=" + QuoteTranscriptText(panel.caption()) +
                     " destination-heading=" + QuoteTranscriptText(panel.destination_heading()) +
                     " source-heading=" + QuoteTranscriptText(panel.source_heading()) +
                     " destinations=" + FormatItems(panel, mapIcon::Kind::kDestination) +
                     " sources=" + FormatItems(panel, mapIcon::Kind::kSource) + " preset=[" +
                     FormatPairs(panel.Matches(), ", ") + "] -> ";
  std::string error;
  int result = kMatchPanelCancel;
  // Every `match` or `reset` answer takes one more turn, so the answers bound the loop.
  for (;;) {
    const ScriptAnswer* a =
        TakeAnswer("a matching panel",
                   {Kind::kMatch, Kind::kReset, Kind::kOk, Kind::kCancel, Kind::kClose}, &error);
    if (!a) break;
    if (a->kind == Kind::kReset) {
      line += "reset, ";
      panel.ResetToStandardMatches();
      continue;
    }
    if (a->kind != Kind::kMatch) {
      if (a->kind == Kind::kOk) result = kMatchPanelOk;
      break;
    }
    line += "match " + a->text + ", ";
    error = ApplyMatchAnswer(*a, panel);
    if (!error.empty()) break;
  }
  line += result == kMatchPanelOk ? "ok" : "cancel";
  WritePrompt(line + " pairs=[" + FormatPairs(panel.Matches(), ", ") + "]", error);
  return result;
}

namespace {

// A `field` answer's field name and value.
std::pair<std::string, std::string> FieldAnswer(const ScriptAnswer& a) {
  const size_t blank = a.text.find(' ');
  if (blank == std::string::npos) return {a.text, std::string()};
  return {a.text.substr(0, blank), a.text.substr(blank + 1)};
}

}  // namespace

std::string ScriptedUi::PeekScreenAnswers(bool text_file_screen) const {
  if (log_->failed || next_answer_ >= answers_.size()) return "close";
  std::string shown;
  for (size_t i = next_answer_; i < answers_.size(); ++i) {
    const ScriptAnswer& a = answers_[i];
    // Answers to the questions of the screen's rules (and to the folder dialog of the
    // text-file screen's browse) stand between its own.
    if (a.kind == Kind::kYes || a.kind == Kind::kNo) continue;
    if (text_file_screen && a.kind == Kind::kFolder) continue;
    const bool browse = text_file_screen && a.kind == Kind::kPress && a.text == "browse";
    const bool ends = a.kind != Kind::kField && !browse;
    const Kind ending = text_file_screen ? Kind::kPress : Kind::kSave;
    if (ends && a.kind != ending && a.kind != Kind::kCancel && a.kind != Kind::kClose) break;
    if (!shown.empty()) shown += ", ";
    shown += DirectiveName(a.kind);
    if (a.kind == Kind::kField) {
      const auto [field, value] = FieldAnswer(a);
      shown += " " + field + " " + QuoteTranscriptText(value);
    }
    if (a.kind == Kind::kPress) shown += " " + a.text;
    if (ends) break;
  }
  return shown.empty() ? "close" : shown;
}

int ScriptedUi::RunCompanyScreen(CompanyScreen& screen) {
  for (;;) {
    std::string line = "company-screen";
    for (const std::string& name : CompanyScreen::FieldNames()) {
      line += " " + name + "=" + QuoteTranscriptText(screen.FieldText(name));
    }
    log_->Write(line + " -> " + PeekScreenAnswers(false));
    for (;;) {
      std::string error;
      const ScriptAnswer* a = TakeAnswer(
          "the company screen", {Kind::kField, Kind::kSave, Kind::kCancel, Kind::kClose}, &error);
      if (a == nullptr) {
        Fail(error);
        return screen.Cancel();
      }
      if (a->kind == Kind::kField) {
        // A refused value has been told through this Ui; the script goes on.
        const auto [field, value] = FieldAnswer(*a);
        static_cast<void>(screen.SetField(field, value));
        continue;
      }
      if (a->kind != Kind::kSave) return screen.Cancel();
      const int action = screen.Save();
      if (action != kCompanyScreenStays) return action;
      break;  // the screen stays open: show it again
    }
  }
}

bool ScriptedUi::RunTextFileScreen(TextFileScreen& screen) {
  for (;;) {
    std::string line = "text-file-screen";
    for (const std::string& name : TextFileScreen::FieldNames()) {
      line += " " + name + "=" + QuoteTranscriptText(screen.FieldText(name));
      if (name == "company_number") {
        line += " company_name=" + QuoteTranscriptText(screen.request().company_name);
      }
    }
    log_->Write(line + " -> " + PeekScreenAnswers(true));
    for (;;) {
      std::string error;
      const ScriptAnswer* a =
          TakeAnswer("the text-file screen",
                     {Kind::kField, Kind::kPress, Kind::kCancel, Kind::kClose}, &error);
      if (a == nullptr) {
        Fail(error);
        return false;
      }
      if (a->kind == Kind::kField) {
        // A refused value has been told through this Ui; the script goes on.
        const auto [field, value] = FieldAnswer(*a);
        static_cast<void>(screen.SetField(field, value));
        continue;
      }
      if (a->kind == Kind::kPress && a->text == "browse") {
        screen.Browse();
        continue;
      }
      if (a->kind != Kind::kPress || a->text != "create") return false;
      if (screen.Create()) return true;
      break;  // the screen stays open: show it again
    }
  }
}

namespace {

// The criteria in use, as the transcript shows them: ["Location"="01-05", !"Category"="A"].
std::string FormatCriteria(const KelSelection& selection) {
  std::string out = "[";
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    const SelectionCriterion& c = selection.criteria[static_cast<size_t>(field)];
    if (!c.in_use) continue;
    if (out.size() > 1) out += ", ";
    if (c.exclude) out += "!";
    out += QuoteTranscriptText(SelectionFields()[static_cast<size_t>(field)].name) + "=" +
           QuoteTranscriptText(c.text);
  }
  return out + "]";
}

std::string FormatTexts(const std::vector<std::string>& texts) {
  std::string out = "[";
  for (const std::string& text : texts) {
    if (out.size() > 1) out += ", ";
    out += QuoteTranscriptText(text);
  }
  return out + "]";
}

// The saved selection a `load` or `delete` names: its line in the list, or else the first
// of that name.
std::optional<size_t> SavedSelectionNamed(const SelectionWindow& window, std::string_view name) {
  if (std::optional<size_t> index = window.SavedIndexOfCaption(name)) return index;
  for (size_t i = 0; i < window.saved().size(); ++i) {
    if (EqualIgnoringCase(window.saved()[i].name, name)) return i;
  }
  return std::nullopt;
}

// Carries out one selection-window answer other than the ending ones; the error, or ""
// when it fitted the window.
std::string ApplySelectionAnswer(const ScriptAnswer& a, SelectionWindow& window) {
  const std::optional<int> field = FindSelectionField(a.text);
  switch (a.kind) {
    case Kind::kSelect: {
      const size_t equals = a.text.find('=');
      const std::optional<int> named = FindSelectionField(a.text.substr(0, equals));
      // The parser checked the name.
      if (named) window.SetText(*named, a.text.substr(equals + 1));
      break;
    }
    case Kind::kUnselect:
    case Kind::kExclude:
    case Kind::kInclude:
      if (!field) break;
      if (a.kind == Kind::kUnselect) window.SetInUse(*field, false);
      if (a.kind != Kind::kUnselect) window.SetExclude(*field, a.kind == Kind::kExclude);
      break;
    case Kind::kPick:
      if (!field || !window.HasPicker(*field)) {
        return DescribeAnswer(a) + " names a field without a list to pick from";
      }
      static_cast<void>(window.Pick(*field));
      break;
    case Kind::kSchedule:
      if (!window.SetSchedule(a.text)) {
        return DescribeAnswer(a) + " names no schedule of the company";
      }
      break;
    case Kind::kLoad:
    case Kind::kDelete: {
      const std::optional<size_t> index = SavedSelectionNamed(window, a.text);
      if (!index) return DescribeAnswer(a) + " names no saved selection";
      if (a.kind == Kind::kLoad) {
        static_cast<void>(window.Load(*index));
      } else {
        static_cast<void>(window.Delete(*index));
      }
      break;
    }
    case Kind::kSaveAs:
    case Kind::kSaveAll:
      static_cast<void>(window.Save(a.text, a.kind == Kind::kSaveAll));
      break;
    case Kind::kScan:
      window.Scan(a.text);
      break;
    default:
      break;
  }
  return "";
}

// "on" or "off"; none for anything else.
std::optional<bool> OnOff(std::string_view text) {
  std::string word = Lower(text);
  if (word == "on") return true;
  if (word == "off") return false;
  return std::nullopt;
}

// Carries out one `bna` line on the dialog; returns the error, or "" when it fitted.
// `closes` is set for the line that ends the dialog.
std::string RunBnaCommand(const ScriptAnswer& a, BnaDialogCommands& dialog, bool* closes) {
  const std::string_view argument = a.text;
  const size_t gap = argument.find_first_of(" \t");
  const std::string name = Lower(argument.substr(0, gap));
  const std::string_view text = gap == std::string_view::npos ? "" : Trim(argument.substr(gap));
  const std::string refused = DescribeAnswer(a) + " ";
  if (name == "press") {
    const std::string button = Lower(text);
    if (button == "file") {
      dialog.SelectFile();
    } else if (button == "profile") {
      dialog.SelectProfile();
    } else if (button == "import") {
      dialog.ImportData();
    } else {
      *closes = true;  // exit: the parser lets no other button through
    }
  } else if (name == "tabs" || name == "commas") {
    dialog.SetFileType(name == "tabs" ? 1 : 2);
  } else if (name == "group" || name == "no-copy") {
    // group LETTER on|off, no-copy on|off
    std::string_view letter = name == "group" ? text.substr(0, 1) : "";
    std::optional<bool> on = OnOff(name == "group" ? Trim(text.substr(1)) : text);
    if (!on) return refused + "needs on or off";
    if (name == "no-copy") {
      dialog.SetNoCopy(*on);
    } else if (!dialog.SetGroupChecked(letter[0], *on)) {
      return refused + "names no group box (G, T, B, A, C, S or O)";
    }
  } else if (name == "select") {
    if (!dialog.SelectDefinition(text)) return refused + "names no line of the list";
  } else if (name == "method") {
    if (!dialog.CheckMethod(text)) return refused + "names no method button that is on";
  } else if (name == "field") {
    const size_t blank = text.find_first_of(" \t");
    const std::string_view value = blank == std::string_view::npos ? "" : Trim(text.substr(blank));
    if (!dialog.EnterPanelField(text.substr(0, blank), value)) {
      return refused + "names no field of the panel (right, left, count, start, set, column)";
    }
  } else if (name == "click") {
    std::optional<int> x = ParseSmallNumber(text);
    if (!x) return refused + "needs a cell of the grid from 0";
    dialog.ClickGrid(*x);
  }
  return "";
}

}  // namespace

bool ScriptedUi::RunSelectionWindow(SelectionWindow& window) {
  log_->Write("selection-window title=" + QuoteTranscriptText(window.title()) +
              " schedule=" + QuoteTranscriptText(window.ScheduleCaption()) +
              " schedules=" + FormatTexts(window.ScheduleCaptions()) +
              " saved=" + FormatTexts(window.SavedCaptions()) +
              " criteria=" + FormatCriteria(window.selection()));
  // Every answer is taken once, so the answers bound the loop.
  for (;;) {
    std::string error;
    const ScriptAnswer* a =
        TakeAnswer("the selection window",
                   {Kind::kSelect, Kind::kUnselect, Kind::kExclude, Kind::kInclude, Kind::kPick,
                    Kind::kSchedule, Kind::kLoad, Kind::kSaveAs, Kind::kSaveAll, Kind::kDelete,
                    Kind::kScan, Kind::kOk, Kind::kCancel, Kind::kClose},
                   &error);
    if (a == nullptr) {
      Fail(error);
      return false;
    }
    if (a->kind == Kind::kCancel || a->kind == Kind::kClose) {
      log_->Write("selection-window -> cancel");
      return false;
    }
    std::string shown = DirectiveName(a->kind);
    if (a->kind == Kind::kOk) {
      log_->Write("selection-window -> ok");
      if (!window.Ok()) continue;  // told; the window stays
      log_->Write("selection-window closed criteria=" + FormatCriteria(window.selection()) +
                  " schedule=" + QuoteTranscriptText(window.ScheduleCaption()));
      return true;
    }
    if (a->kind == Kind::kSelect) {
      const size_t equals = a->text.find('=');
      shown += " " + QuoteTranscriptText(a->text.substr(0, equals)) + " " +
               QuoteTranscriptText(a->text.substr(equals + 1));
    } else {
      shown += " " + QuoteTranscriptText(a->text);
    }
    log_->Write("selection-window -> " + shown);
    error = ApplySelectionAnswer(*a, window);
    if (!error.empty()) {
      Fail(error);
      return false;
    }
  }
}

void ScriptedUi::RunBnaDialog(BnaDialogCommands& dialog) {
  std::string opened = dialog.Describe();
  for (;;) {
    std::string error;
    const ScriptAnswer* a =
        TakeAnswer("the BNA dialog", {Kind::kBna, Kind::kCancel, Kind::kClose}, &error);
    if (a == nullptr) {
      log_->Write(opened + " -> close");
      Fail(error);
      break;
    }
    if (a->kind != Kind::kBna) {
      log_->Write(opened + " -> close");
      break;
    }
    // Each command's line stands before the prompts it raises.
    log_->Write(opened + " -> bna " + a->text);
    bool closes = false;
    error = RunBnaCommand(*a, dialog, &closes);
    if (!error.empty()) {
      Fail(error);
      break;
    }
    if (closes) break;
    opened = dialog.Describe();
  }
  dialog.Close();
}

bool ScriptedUi::RunWindow(ScriptedWindow& window) {
  const std::string name = window.ScriptName();
  for (;;) {
    std::string error;
    const ScriptAnswer* a =
        TakeAnswer("the " + name, {Kind::kWindow, Kind::kCancel, Kind::kClose}, &error);
    if (a == nullptr) {
      log_->Write(name + " " + window.ScriptState() + " -> close");
      Fail(error);
      return false;
    }
    log_->Write(name + " " + window.ScriptState() + " -> " +
                (a->kind == Kind::kWindow ? a->text : std::string(DirectiveName(a->kind))));
    if (a->kind != Kind::kWindow) return false;
    const size_t blank = a->text.find(' ');
    const std::string_view line(a->text);
    const std::optional<ScriptedWindow::Step> step =
        window.ScriptStep(line.substr(0, blank), line.substr(blank + 1), &error);
    if (!step) {
      Fail(DescribeAnswer(*a) + ": " + error);
      return false;
    }
    if (*step == ScriptedWindow::Step::kEnds) return true;
  }
}

bool ScriptedUi::AltKeyHeld() {
  log_->Write(alt_held_ ? "alt-key -> held" : "alt-key -> up");
  return alt_held_;
}

}  // namespace nv
