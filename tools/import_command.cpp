#include "tools/import_command.h"

#include <filesystem>
#include <fstream>
#include <set>

#include "base/ascii.h"
#include "base/file.h"
#include "base/str_format.h"
#include "import/bna/bna_import.h"
#include "import/faswin/faswin_importer.h"
#include "import/frame/dry_run.h"
#include "import/importers.h"
#include "tools/company_json.h"
#include "tools/nvtool_context.h"
#include "ui/match_panel.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using Kind = ScriptAnswer::Kind;

// The company object of a document, read over `record` (members it lacks keep the
// record's values). "" or why the document cannot be used.
class CompanyObjectReader final : public CompanyDocumentSink {
 public:
  explicit CompanyObjectReader(NvCompanyRecord* record) : record_(record) {}
  NvCompanyRecord* CompanyTarget() override {
    found_ = true;
    return record_;
  }
  bool CompanyRead(const std::string& error) override {
    error_ = error;
    return false;  // the assets, if any, are not wanted
  }
  const AssetRecordFormat* AssetForm() override { return nullptr; }
  bool AssetRead(NvAsset&, const std::string&, const std::string&) override { return true; }

  std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return "cannot read " + path;
    const DocumentResult result = ReadCompanyDocument(in, *this);
    if (result.outcome == DocumentOutcome::kBadJson) return path + " " + result.syntax_error;
    if (result.outcome == DocumentOutcome::kNotAnObject) return path + " is no JSON object";
    if (!found_) return path + " has no \"company\" object";
    if (!error_.empty()) return path + ": " + error_;
    return "";
  }

 private:
  NvCompanyRecord* record_;
  bool found_ = false;
  std::string error_;
};

// The Ui of nvtool import: a ScriptedUi whose answers are decided from the options as
// each prompt comes, so its transcript is the same as an answers script's. Whatever no
// option answers is answered as the person's default would (questions: their default
// button; other windows: closed) and listed.
class OptionsUi final : public ScriptedUi {
 public:
  explicit OptionsUi(const ImportCommandOptions& options)
      : ScriptedUi(AnswerScript{}), options_(options) {}

  const std::vector<std::string>& defaulted() const { return defaulted_; }
  const std::string& option_error() const { return option_error_; }

  std::optional<std::string> ChooseFile(const FileDialogRequest& request) override {
    PushAnswers({Once(&source_given_) ? Reply(Kind::kFile, options_.source) : Close()});
    return ScriptedUi::ChooseFile(request);
  }

  std::optional<std::string> EnterText(const TextEntryRequest& request) override {
    // A number refused once (in use, say) is not entered again: the run ends there.
    PushAnswers({Once(&number_given_) ? Reply(Kind::kText, options_.number) : Close()});
    return ScriptedUi::EnterText(request);
  }

  int ChoiceList(const ChoiceListRequest& request) override {
    if (request.message == kFasWinSelectSchedule) {
      PushAnswers({ScheduleChoice(request)});
      return ScriptedUi::ChoiceList(request);
    }
    if (auto it = options_.prompt_answers.find(request.message);
        it != options_.prompt_answers.end()) {
      PushAnswers({Reply(Kind::kChooseText, it->second)});
    } else if (request.message ==
               StrPrintf(kCompanyExistsMessage, options_.number.c_str(), product_.c_str())) {
      const std::string wanted = ExistingOption();
      bool offered = false;
      for (const ChoiceOption& option : request.options) offered |= option.text == wanted;
      if (offered) {
        PushAnswers({Reply(Kind::kChooseText, wanted)});
      } else {
        option_error_ = "--existing " + options_.existing + ": \"" + wanted +
                        "\" is not offered for this company";
        PushAnswers({Close()});
      }
    } else {
      defaulted_.push_back("choice list \"" + request.message + "\": closed");
      PushAnswers({Close()});
    }
    return ScriptedUi::ChoiceList(request);
  }

  Answer Question(std::string_view text, DefaultButton default_button) override {
    // The importer's own questions, then the confirmations of the --existing choice.
    if (const std::string* answer = PromptAnswer(text)) {
      PushAnswers({Reply(*answer == "yes"      ? Kind::kYes
                         : *answer == "cancel" ? Kind::kCancel
                                               : Kind::kNo)});
    } else if ((options_.existing == "erase" && text == kEraseQuestion) ||
               (options_.existing == "add" &&
                (text == kDuplicatesQuestion || text == kFasWinMergeQuestion ||
                 text == kBnaAddQuestion))) {
      PushAnswers({Reply(Kind::kYes)});
    } else {
      const bool yes = default_button == DefaultButton::kYes;
      defaulted_.push_back("question \"" + std::string(text) + "\": " + (yes ? "yes" : "no"));
      PushAnswers({Reply(yes ? Kind::kYes : Kind::kNo)});
    }
    return ScriptedUi::Question(text, default_button);
  }

  int RunCompanyScreen(CompanyScreen& screen) override {
    // Shown again after a refused save: nothing more to say, so the import ends there.
    PushAnswers({Once(&screen_saved_) ? Reply(Kind::kSave) : Reply(Kind::kCancel)});
    return ScriptedUi::RunCompanyScreen(screen);
  }

  int RunMatchPanel(MatchPanel& panel) override {
    const bool books = panel.caption().find("book") != std::string::npos;
    bool& given = books ? books_given_ : fields_given_;
    if (given) {
      // The panel came back: the pairs given leave a destination unpaired.
      option_error_ = std::string(books ? "--books" : "--match") +
                      " leaves an item of the left column unpaired in \"" + panel.caption() + "\"";
      PushAnswers({Reply(Kind::kCancel)});
      return ScriptedUi::RunMatchPanel(panel);
    }
    given = true;
    const char* option = books ? "--books" : "--match";
    std::vector<std::pair<int, int>> pairs;
    if (books) {
      for (const auto& [letter, book] : options_.books) {
        const int destination = ScheduleItem(panel, letter);
        if (destination == 0) {
          return Refuse(panel, StrPrintf("--books: no schedule %c in \"%s\"", letter,
                                         panel.caption().c_str()));
        }
        pairs.emplace_back(destination, book);
      }
    } else {
      pairs = options_.matches;
    }
    std::string text;
    for (const auto& [destination, source] : pairs) {
      const mapIcon* d = panel.Find(destination);
      const mapIcon* s = source == 0 ? nullptr : panel.Find(source);
      if (d == nullptr || d->kind != mapIcon::Kind::kDestination) {
        return Refuse(panel, StrPrintf("%s: no destination item %d in \"%s\"", option, destination,
                                       panel.caption().c_str()));
      }
      if (source != 0 && (s == nullptr || s->kind != mapIcon::Kind::kSource)) {
        return Refuse(panel, StrPrintf("%s: no source item %d in \"%s\"", option, source,
                                       panel.caption().c_str()));
      }
      text += StrPrintf("%s%d=%d", text.empty() ? "" : " ", destination, source);
    }
    std::vector<ScriptAnswer> answers;
    if (!text.empty()) answers.push_back(Reply(Kind::kMatch, text));
    answers.push_back(Reply(Kind::kOk));
    PushAnswers(std::move(answers));
    return ScriptedUi::RunMatchPanel(panel);
  }

  void set_product(std::string product) { product_ = std::move(product); }

 private:
  static ScriptAnswer Reply(Kind kind, std::string text = "") {
    ScriptAnswer answer;
    answer.kind = kind;
    answer.text = std::move(text);
    return answer;
  }
  static ScriptAnswer Close() { return Reply(Kind::kClose); }
  static bool Once(bool* given) {
    const bool first = !*given;
    *given = true;
    return first;
  }

  // The answer to a question: its whole text, or a prompt that its text begins with.
  const std::string* PromptAnswer(std::string_view text) const {
    if (auto it = options_.prompt_answers.find(std::string(text));
        it != options_.prompt_answers.end()) {
      return &it->second;
    }
    for (const auto& [prompt, answer] : options_.prompt_answers) {
      if (!prompt.empty() && text.starts_with(prompt)) return &answer;
    }
    return nullptr;
  }

  // "Select Schedule to Import": the option of --schedule's letter, else the first.
  ScriptAnswer ScheduleChoice(const ChoiceListRequest& request) {
    ScriptAnswer answer = Reply(Kind::kChoose);
    if (options_.schedule == 0) return answer;
    for (size_t i = 0; i < request.options.size(); ++i) {
      const std::string& text = request.options[i].text;
      if (!text.empty() && AsciiUpper(text[0]) == options_.schedule) {
        answer.position = static_cast<int>(i);
        return answer;
      }
    }
    option_error_ = StrPrintf("--schedule: no schedule %c in \"%s\"", options_.schedule,
                              request.message.c_str());
    return Close();
  }

  std::string ExistingOption() const {
    if (options_.existing == "select") return kSelectDifferentNumberOption;
    if (options_.existing == "erase") return kEraseAssetsOption;
    if (options_.existing == "add") return kAddAssetsOption;
    return kAbortImportOption;
  }

  // The schedule item of a book panel: its text begins with the schedule's letter.
  static int ScheduleItem(const MatchPanel& panel, char letter) {
    for (const mapIcon& item : panel.items()) {
      if (item.kind == mapIcon::Kind::kDestination && !item.text.empty() &&
          AsciiUpper(item.text[0]) == letter) {
        return item.id;
      }
    }
    return 0;
  }

  int Refuse(MatchPanel& panel, std::string why) {
    option_error_ = std::move(why);
    PushAnswers({Reply(Kind::kCancel)});
    return ScriptedUi::RunMatchPanel(panel);
  }

  const ImportCommandOptions& options_;
  std::string product_;
  bool source_given_ = false;
  bool number_given_ = false;
  bool screen_saved_ = false;
  bool fields_given_ = false;
  bool books_given_ = false;
  std::vector<std::string> defaulted_;
  std::string option_error_;
};

}  // namespace

namespace {

// What every kind checks before its run: the data folder, the source, --company. False
// with the reason written to err.
bool PrepareRun(const ImportCommandOptions& options, const InstallationContext& ctx,
                ImportHooks* hooks, std::ostream& err) {
  if (std::optional<std::string> problem = DataFolderProblem(ctx)) {
    err << "nvtool: " << *problem << "\n";
    return false;
  }
  if (!PathExists(options.source)) {
    err << "nvtool: no source file " << options.source << "\n";
    return false;
  }
  if (!options.company_json.empty()) {
    // Read once now, so that a bad document is refused before anything is touched.
    NvCompanyRecord scratch;
    if (std::string problem = CompanyObjectReader(&scratch).Read(options.company_json);
        !problem.empty()) {
      err << "nvtool: --company: " << problem << "\n";
      return false;
    }
    hooks->before_setup_screen = [path = options.company_json](NvCompanyRecord& record) {
      const std::string number = record.number;
      static_cast<void>(CompanyObjectReader(&record).Read(path));
      record.number = number;  // the number is the command's
    };
  }
  return true;
}

// The end of every kind's run: what was answered by default, the report, and the exit
// status (2 for an option the run found wrong, else `status`).
int FinishRun(const OptionsUi& ui, const std::string& report_text, const std::string& report_path,
              int status, std::ostream& out, std::ostream& err) {
  for (const std::string& line : ui.defaulted()) out << "answered by default: " << line << "\n";
  if (!report_text.empty()) out << "\n" << report_text;
  if (!report_path.empty()) out << "report written to " << report_path << "\n";
  if (!ui.option_error().empty()) {
    err << "nvtool: " << ui.option_error() << "\n";
    return 2;
  }
  return status;
}

// The line that tells where the company as it was before the import is kept.
void PrintBackup(const std::string& folder, const ImportCommandOptions& options,
                 std::ostream& out) {
  if (folder.empty()) return;
  out << "the company as it was before is backed up in " << folder << " (nvtool undo "
      << options.folder << " " << options.number << ")\n";
}

}  // namespace

int RunImportCommandWith(Importer& importer, const ImportCommandOptions& options, std::ostream& out,
                         std::ostream& err) {
  const InstallationContext ctx = ToolContext(options.folder);
  ImportHooks hooks;
  if (!PrepareRun(options, ctx, &hooks, err)) return 1;
  OptionsUi ui(options);
  ui.set_product(ctx.product_name());
  ui.set_sink(&out);
  const ImportResult result = options.dry_run ? TestImport(ctx, ui, importer, std::move(hooks))
                                              : RunImport(ctx, ui, importer, std::move(hooks));
  const int status = FinishRun(ui, result.report_text, result.report_path,
                               result.outcome == ImportOutcome::kCompleted ? 0 : 1, out, err);
  PrintBackup(result.backup_folder, options, out);
  return status;
}

int RunBnaImportCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err) {
  InstallationContext real = ToolContext(options.folder);
  if (options.today) real.today = *options.today;
  ImportHooks hooks;
  if (!PrepareRun(options, real, &hooks, err)) return 1;
  // A profile named without a folder is the one the command names, not one of the
  // installation's.
  const std::string profile = std::filesystem::absolute(options.bna_profile).string();
  if (!PathExists(profile)) {
    err << "nvtool: no profile " << options.bna_profile << "\n";
    return 1;
  }
  OptionsUi ui(options);
  ui.set_product(real.product_name());
  ui.set_sink(&out);
  // A dry run works on a scratch installation, profile included: what --duplicates writes
  // into the profile goes with the scratch.
  std::optional<TestImportScratch> scratch;
  if (options.dry_run) {
    if (!scratch.emplace(real).Make(ui)) return FinishRun(ui, "", "", 1, out, err);
    hooks = scratch->Hooks(ui, std::move(hooks));
  }
  BnaImportResult result;
  std::string backup;
  {
    BnaSession session(scratch ? scratch->context() : real, ui, std::move(hooks));
    if (scratch) {
      session.outside_profile_file = [&scratch](const std::string& path) {
        return scratch->OutsideFile(path);
      };
    }
    if (options.today) session.today = *options.today;
    if (!RunBnaCompanySteps(session)) return FinishRun(ui, "", "", 1, out, err);
    // What the dialog does when it opens with this profile and the report is chosen.
    BnaImportState& state = session.state;
    SwitchBnaProfile(state.profiles, profile);
    const BnaParameters params = ReadBnaParameters(state.profiles);
    state.file_type = params.file_type;
    state.checked_groups = params.checked_groups;
    LoadDefinitions(state.profiles, state.checked_groups, state.definitions);
    state.source_path = options.source;
    result = RunBnaImportData(session);
    backup = session.run->state().backup_folder;
  }
  if (scratch) {
    result.report_path.clear();
    backup.clear();
  }
  const int status =
      FinishRun(ui, result.report_text, result.report_path, result.completed ? 0 : 1, out, err);
  PrintBackup(PathExists(backup) ? backup : "", options, out);
  return status;
}

int RunImportCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err) {
  if (options.kind == "bna") return RunBnaImportCommand(options, out, err);
  const ImporterEntry* entry = FindImporterByKind(options.kind);
  if (entry == nullptr || entry->make == nullptr) {
    err << "nvtool: " << ImportNotAvailableText(entry ? entry->product : options.kind) << "\n";
    return 1;
  }
  std::unique_ptr<Importer> importer = entry->make();
  return RunImportCommandWith(*importer, options, out, err);
}

}  // namespace nv
