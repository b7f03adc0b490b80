// "Import Data": one run over the report into the session's company.
#include "import/bna/bna_import.h"

#include <array>

#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/bna/bna_fields.h"
#include "import/bna/bna_line_convert.h"
#include "import/bna/subasset.h"
#include "import/frame/import_frame.h"
#include "store/company/company.h"
#include "store/file/status.h"
#include "store/notes/note_file.h"
#include "ui/company_selection.h"

namespace nv {
namespace {

constexpr std::array<const char*, 4> kDuplicateQuestions{
    "Duplicate Processing:  If duplicate asset numbers are\nencountered, the new data will be "
    "combined with the current\nasset data.  Values copied will replace the values for the\n"
    "current asset.\n\nYes = Continue, No = Change Processing, Cancel = Cancel Import",
    "Duplicate Processing:  If duplicate asset numbers are\nencountered, the new asset will "
    "replace the current asset.\n\nYes = Continue, No = Change Processing, Cancel = Cancel "
    "Import",
    "Duplicate Processing:  If duplicate asset numbers are\nencountered, the new asset will be "
    "ignored.\n\nYes = Continue, No = Change Processing, Cancel = Cancel Import",
    "Duplicate Processing:  If duplicate asset numbers are\nencountered, the new asset will be "
    "saved with a new\nsubasset number.\n\nYes = Continue, No = Change Processing, Cancel = "
    "Cancel Import",
};

constexpr std::array<const char*, 4> kDuplicateOptions{
    "Combine with current asset.  New values replace current values.",
    "Replace current asset with the new asset.",
    "Ignore the new asset data.",
    "Create the new asset as a subasset of the current asset.",
};

constexpr char kChangeLogReason[] = "IMPT";

size_t ModeIndex(DuplicateMode mode) {
  const int i = static_cast<int>(mode) - 1;
  return i >= 0 && i < 4 ? static_cast<size_t>(i) : 0;
}

// The duplicate mode of a run into a company added to: the profile's, confirmed or
// changed (and then written back). None when the user cancelled.
std::optional<DuplicateMode> AskDuplicateMode(BnaSession& session, DuplicateMode mode) {
  const Answer answer = session.ui.Question(BnaDuplicateQuestion(mode), DefaultButton::kYes);
  if (answer == Answer::kYes) return mode;
  if (answer == Answer::kCancel) return std::nullopt;
  ChoiceListRequest list;
  list.title = kBnaDuplicatesTitle;
  list.message = kBnaDuplicatesTitle;
  for (const char* option : kDuplicateOptions) list.options.push_back({option, -1});
  const int chosen = session.ui.ChoiceList(list);
  if (chosen < 0 || chosen >= static_cast<int>(kDuplicateOptions.size())) return std::nullopt;
  mode = static_cast<DuplicateMode>(chosen + 1);
  static_cast<void>(WriteProfileValue(session.state.profiles, kBnaParametersSection,
                                      kBnaDuplicatesKey, DuplicateKeyword(mode)));
  return mode;
}

// What becomes of a line whose asset number the company has already.
enum class LineTarget { kAdd, kUpdate, kSkip };

class ImportPass {
 public:
  ImportPass(BnaSession& session, AddStep& add, BnaLineConverter& converter, NoteFile* notes)
      : session_(session),
        run_(*session.run),
        company_(run_.company()),
        add_(add),
        converter_(converter),
        notes_(notes) {}

  void Line(const BnaSourceLine& line) {
    BnaImportState& state = session_.state;
    state.line_number = line.number;
    add_.SetMeterPosition(line.number);
    if (line.comment) return;
    add_.CountRead();
    where_ = StrPrintf("line %ld", static_cast<long>(line.number));
    converter_.SetLine(line.text, line.number);
    const NvAssetNoFormat& format = company_.record().asset_no_format;
    std::optional<std::string> number =
        converter_.AssetNumber(static_cast<size_t>(format.KeyLength()));
    if (!number) {
      add_.Filtered(where_, "", "no asset number");
      return;
    }
    const NvAssetNo parsed = NvAssetNo::Parse(*number, format);
    if (!parsed.valid()) {
      run_.report().LeftOut({where_, *number, LeftOutReason::kInvalidNumber, ""});
      return;
    }
    NvAsset& asset = state.current_asset;
    const LineTarget target = Target(parsed, asset);
    if (target == LineTarget::kSkip) return;
    std::optional<std::string> note = converter_.Fill(asset);
    if (note && notes_ != nullptr) AddAssetNote(asset, std::move(*note));
    Save(asset, target);
  }

 private:
  // Settles the asset the line is stored into, by the duplicate mode.
  LineTarget Target(const NvAssetNo& number, NvAsset& asset) {
    const std::string& letters = company_.record().schedule_letters;
    asset.Clear(letters);
    asset.record_number = 0;
    if (company_.FindAsset(number.Text(), &asset) < 0 || asset.record_number == 0) {
      asset.Clear(letters);
      asset.record_number = 0;
      asset.number = number;
      return LineTarget::kAdd;
    }
    switch (session_.state.duplicate_mode) {
      case DuplicateMode::kReplaceValues:
        return LineTarget::kUpdate;
      case DuplicateMode::kReplaceAsset:
        if (int rc = company_.DeleteAsset(asset, kChangeLogReason); rc < 0) {
          run_.report().LeftOut({where_, number.Text(), LeftOutReason::kRefusedByStore,
                                 StrPrintf("status %d when deleting the asset it replaces", rc)});
          return LineTarget::kSkip;
        }
        break;
      case DuplicateMode::kDropNewAsset:
        run_.report().LeftOut({where_, number.Text(), LeftOutReason::kDuplicateNumber, ""});
        return LineTarget::kSkip;
      case DuplicateMode::kCreateSubasset: {
        NvAsset probe;
        std::optional<int> free = FreeSubasset(number.subasset(), [&](int subasset) {
          const NvAssetNo candidate =
              NvAssetNo::Parse(number.main(), subasset, company_.record().asset_no_format);
          // A number the format cannot hold is as good as taken.
          return !candidate.valid() ||
                 (company_.FindAsset(candidate.Text(), &probe) >= 0 && probe.record_number != 0);
        });
        if (!free) {
          add_.Filtered(where_, number.Text(), "no free subasset number below 1000");
          return LineTarget::kSkip;
        }
        asset.Clear(letters);
        asset.record_number = 0;
        asset.number = NvAssetNo::Parse(number.main(), *free, company_.record().asset_no_format);
        return LineTarget::kAdd;
      }
    }
    asset.Clear(letters);
    asset.record_number = 0;
    asset.number = number;
    return LineTarget::kAdd;
  }

  void AddAssetNote(const NvAsset& asset, std::string text) {
    Note note;
    note.date = session_.today;
    note.seconds = session_.note_seconds;
    note.text = std::move(text);
    if (!nv::AddNote(*notes_, asset.number.DisplayText(), std::move(note))) {
      run_.report().Note(where_, asset.number.Text(), "its note could not be written");
    }
  }

  void Save(NvAsset& asset, LineTarget target) {
    if (target == LineTarget::kAdd) {
      add_.Add(asset, where_);
      return;
    }
    if (int rc = company_.ReplaceAsset(&asset); rc >= 0) {
      run_.report().Added(asset);
    } else {
      run_.report().LeftOut({where_, asset.number.Text(), LeftOutReason::kRefusedByStore,
                             StrPrintf("status %d when storing it back", rc)});
    }
  }

  BnaSession& session_;
  ImportRun& run_;
  NvCompany& company_;
  AddStep& add_;
  BnaLineConverter& converter_;
  NoteFile* notes_;
  std::string where_;
};

bool OpenCompany(BnaSession& session) {
  ImportRun& run = *session.run;
  const int flags = NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kLoadLocCat;
  const int rc = run.company().Open(session.state.company_number, flags, session.ui, run.lock());
  if (rc > 0) return true;
  MessageF(session.ui, "Error", kUnableToOpenMessage, session.state.company_number.c_str());
  return false;
}

}  // namespace

const char* BnaDuplicateQuestion(DuplicateMode mode) {
  return kDuplicateQuestions[ModeIndex(mode)];
}

const char* BnaDuplicateOption(DuplicateMode mode) {
  return kDuplicateOptions[ModeIndex(mode)];
}

BnaImportResult RunBnaImportData(BnaSession& session) {
  BnaImportResult result;
  const ImportHooks& hooks = session.run->hooks();
  const char* count_message = hooks.count_message ? hooks.count_message : kBnaImportedMessage;
  BnaImportState& state = session.state;
  const BnaParameters params = ReadBnaParameters(state.profiles);
  state.implied_decimals = params.implied_decimals;
  state.duplicate_mode = DuplicateMode::kDropNewAsset;
  if (state.adding_to_existing) {
    std::optional<DuplicateMode> mode = AskDuplicateMode(session, params.duplicate_mode);
    if (!mode) return result;
    state.duplicate_mode = *mode;
  }
  result.started = true;

  std::optional<std::string> bytes;
  if (state.definitions.Find(kBnaAssetNoField) != nullptr && state.source_path) {
    bytes = ReadFileBytes(*state.source_path);
  }
  if (!bytes || !OpenCompany(session)) {
    MessageF(session.ui, "Note", count_message, 0);
    return result;
  }

  ImportRun& run = *session.run;
  NvCompany& company = run.company();
  run.report() = ImportReport();
  run.report().SetSource(kBnaProduct, *state.source_path);
  run.report().SetCompany(company.number(), hooks.report_folder
                                                ? hooks.report_folder(company.folder())
                                                : company.folder());

  std::optional<NoteFile> notes;
  if (state.definitions.Find(kBnaNoteTextField) != nullptr) {
    notes.emplace(company.FilePath("NOT"),
                  static_cast<uint32_t>(company.record().asset_no_format.KeyLength()));
  }
  const BnaStoreRules rules{params.implied_decimals, params.always_copy_basis,
                            params.bna_nd_profile_type};
  BnaLineConverter converter(state, company, rules, session.today, &session.ui);
  bool finished = false;
  {
    AddStep add(run);
    const BnaSourceMeasure measure = MeasureBnaSource(*bytes, state.file_type);
    add.OpenMeter(measure.data_lines);
    ImportPass pass(session, add, converter, notes ? &*notes : nullptr);
    BnaSourceLines lines(*bytes);
    BnaSourceLine line;
    while (lines.Next(&line)) pass.Line(line);
    finished = converter.SaveAccountGroups();
    finished = add.Finish() && finished;
  }
  state.current_asset = NvAsset();
  const bool closed = company.Close() >= 0;
  result.imported = run.report().added();
  result.report_text = run.report().Text();
  const std::string path = ImportReportPath(session.context, state.company_number);
  if (MakeDirectories(session.context.data_directory() + kImportReportFolder) &&
      WriteTextFile(path, result.report_text)) {
    result.report_path = path;
  }
  result.completed = finished && closed;
  if (!result.completed) {
    MessageF(session.ui, "Error", "Unable to write company %s.", state.company_number.c_str());
  }
  session.ui.MessageWithDetails(StrPrintf(count_message, static_cast<int>(result.imported)), "Note",
                                result.report_text);
  return result;
}

}  // namespace nv
