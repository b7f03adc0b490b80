#include "import/faswin/faswin_importer.h"

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/faswin/faswin_convert.h"
#include "import/faswin/faswin_source.h"
#include "import/frame/matching.h"
#include "store/codes/account_groups.h"
#include "store/file/status.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {

std::string FasWinScheduleOption(char letter, const std::string& name) {
  return std::string(1, letter) + " - " + name;
}

namespace {

using namespace faswin;

ImportDescriptor FasWinDescriptor() {
  ImportDescriptor d;
  d.kind = "faswin";
  d.product = "FAS for Windows";
  d.source_dialog = {"Select FAS for Windows Company File", "FAS for Windows files|*.wfa;*.csv",
                     ".wfa", "c:\\winfas"};
  d.existing = {.offers_erase = true, .confirm_erase = true, .setup_screen_after_add = false};
  d.new_loc_cat = 'L';
  d.current_year_files = false;
  d.meter_title = kFasWinMeterTitle;
  d.meter_text = kFasWinMeterText;
  return d;
}

// The schedule letter each of the first six FAS books is matched to beforehand, and that
// a new company's schedule for one of the first five takes.
constexpr char kBookLetters[] = {'T', 'B', 'S', 'A', 'C', 'O'};

std::string FileName(std::string_view path) {
  return std::string(path.substr(path.find_last_of("/\\") + 1));
}

// The account groups of the company, read when the first asset with an account needs them.
class LazyAccountGroups {
 public:
  explicit LazyAccountGroups(const NvCompany& company) : company_(company) {}

  std::string CodeFor(const std::string& account_text, const std::array<std::string, 2>& accounts) {
    if (account_text.empty()) return account_text;
    if (!loaded_) {
      // A missing or unreadable file is an empty list, as for the main program.
      static_cast<void>(LoadAccountGroups(company_.folder(), company_.number(), &list_));
      loaded_ = true;
    }
    return AccountGroupCode(&list_.groups, account_text, accounts);
  }

  bool Save() const {
    return !loaded_ || SaveAccountGroups(company_.folder(), company_.number(), list_) >= 0;
  }

 private:
  const NvCompany& company_;
  AccountGroupList list_;
  bool loaded_ = false;
};

// Moves the meter in half-percent steps, so that a large file does not repaint the
// window once per asset.
class MeterSteps {
 public:
  MeterSteps(AddStep& add, long total) : add_(add), step_(std::max(1L, total / 200)) {
    add.OpenMeter(total);
  }
  void At(long done) {
    if (done - shown_ < step_) return;
    shown_ = done;
    add_.SetMeterPosition(done);
  }

 private:
  AddStep& add_;
  long step_;
  long shown_ = 0;
};

class FasWinImporter final : public Importer {
 public:
  FasWinImporter() : descriptor_(FasWinDescriptor()) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override {
    const ImportState& state = run.state();
    const std::string name = FileName(state.source_path);
    csv_ = name.size() > 4 && EqualIgnoringCase(name.substr(name.size() - 4), ".csv");
    if (csv_) return CheckCsv(run);
    if (name.size() != kCompanyFileNameLength ||
        !EqualIgnoringCase(name.substr(kPrefixLength), kCompanyFileSuffix)) {
      run.ui().Message(kFasWinSelectFile, "Error");
      return false;
    }
    prefix_ = name.substr(0, kPrefixLength);
    std::vector<std::string> missing;
    if (!Beside(state, kAssetFileSuffix)) missing.push_back(prefix_ + kAssetFileSuffix);
    if (Beside(state, kOlderBookFileSuffix)) {
      layout_ = WfaLayout::kOlder;
    } else if (Beside(state, kNewerBookFileSuffix)) {
      layout_ = WfaLayout::kNewer;
    } else {
      missing.push_back(prefix_ + kNewerBookFileSuffix);
    }
    if (!missing.empty()) {
      std::string list;
      for (const std::string& file : missing) list += (list.empty() ? "" : ", ") + file;
      run.ui().Message(kFasWinMissingFiles + list, "Error");
      return false;
    }
    return true;
  }

  std::string DefaultCompanyNumber(const ImportRun& run) const override {
    if (!csv_) return prefix_;
    // The CSV file's name without what a company number cannot hold ("glen-tax" is GLENTAX).
    const std::string name = FileName(run.state().source_path);
    std::string number;
    for (char c : name.substr(0, name.size() - 4)) {
      const char upper = AsciiUpper(c);
      if (IsValidCompanyNumber(std::string(1, upper))) number += upper;
    }
    return number;
  }

  std::string AddQuestion(const ImportRun&) const override {
    return csv_ ? kFasWinMergeQuestion : kDuplicatesQuestion;
  }

  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override {
    record.name.clear();
    record.schedules.clear();
    if (!csv_) {
      if (std::optional<std::string> path = Beside(run.state(), kCompanyFileSuffix)) {
        if (std::optional<std::string> bytes = ReadFileBytes(*path)) {
          record.name = ParseCompanyName(*bytes).substr(0, 30);
        }
      }
      const BooksUsed books = Books(run.state());
      for (int book = 0; book < 5; ++book) {
        if (!books.used[book]) continue;
        const char letter = kBookLetters[book];
        record.schedules.push_back({letter, std::string(1, letter), ScheduleTypeName(letter)});
      }
    }
    record.ein.clear();
    record.last_closed = Date{};
    record.current_year_end = Date{};
    record.round_dollars = false;
    record.sort_order = "C";
    record.business_category = 1;
    record.mid_quarter_override = ' ';
    record.global_loc_cat = 'L';
    for (int i = 0; i < 3; ++i) record.user_fields[i] = {};
    return true;
  }

  bool Match(ImportRun& run) override {
    if (!MatchFields(run, FieldItems())) return false;
    if (!csv_ && !MatchBooks(run, BookItems(run))) return false;
    const Date& last_closed = run.company().record().last_closed;
    const Answer answer = run.ui().Question(
        kFasWinDeleteDisposedQuestion + FormatDisplayDate(last_closed), DefaultButton::kNo);
    if (answer == Answer::kCancel) return false;
    delete_disposed_ = answer == Answer::kYes;
    return true;
  }

  bool CopyAssets(ImportRun& run, AddStep& add) override {
    return csv_ ? CopyCsv(run, add) : CopyWfa(run, add);
  }

 private:
  // A file of the export beside the one chosen, found ignoring case.
  std::optional<std::string> Beside(const ImportState& state, std::string_view suffix) const {
    return FindFileIgnoringCase(state.source_folder.empty() ? "." : state.source_folder,
                                prefix_ + std::string(suffix));
  }

  BooksUsed Books(const ImportState& state) const {
    if (std::optional<std::string> path = Beside(state, kBookFileSuffix)) {
      if (std::optional<std::string> bytes = ReadFileBytes(*path)) return ParseBooksUsed(*bytes);
    }
    return AllBooksUsed();
  }

  bool CheckCsv(ImportRun& run) {
    const std::string& path = run.state().source_path;
    std::optional<std::string> bytes = ReadFileBytes(path);
    std::optional<CsvBook> book = bytes ? CsvBook::Parse(std::move(*bytes)) : std::nullopt;
    if (!book) {
      MessageF(run.ui(), "Error", kFasWinNotCsvExport, FileName(path).c_str());
      return false;
    }
    csv_book_ = std::move(book);
    return true;
  }

  static FieldMatching FieldItems() {
    FieldMatching m;
    m.destinations.push_back({kDestinationAccount, "Account No./Group"});
    for (int i = 0; i < kMatchedUserFields; ++i) {
      m.destinations.push_back({kDestinationUserField1 + i, StrPrintf("User Field %d", i + 1)});
      m.user_field_destinations.push_back(kDestinationUserField1 + i);
    }
    for (const SourceItem& item : kSourceItemTable) m.sources.push_back({item.id, item.panel_text});
    m.preset = {{kDestinationAccount, kSourceAssetAccount}};
    return m;
  }

  BookMatching BookItems(ImportRun& run) const {
    BookMatching m;
    const NvCompanyRecord& record = run.company().record();
    for (size_t i = 0; i < record.schedules.size(); ++i) {
      // The letter first, so that two schedules of one name stay apart.
      m.schedules.push_back({201 + static_cast<int>(i), std::string(1, record.schedules[i].letter) +
                                                            " " + record.schedules[i].name});
      m.letters += record.schedules[i].letter;
    }
    const BooksUsed books = Books(run.state());
    for (int book = 0; book < kFasBooks; ++book) {
      if (books.used[book]) m.books.push_back({kBookItem0 + book, kFasBookNames[book]});
    }
    for (int book = 0; book < 6; ++book) {
      const size_t at = m.letters.find(kBookLetters[book]);
      if (books.used[book] && at != std::string::npos) {
        m.preset.emplace_back(201 + static_cast<int>(at), kBookItem0 + book);
      }
    }
    return m;
  }

  FieldSources Sources(const ImportState& state) const {
    FieldSources sources;
    sources.account = state.FieldMatch(kDestinationAccount);
    for (int i = 0; i < kMatchedUserFields; ++i) {
      sources.user_fields[static_cast<size_t>(i)] = state.FieldMatch(kDestinationUserField1 + i);
    }
    return sources;
  }

  // Each matched user field takes the label of its source: the panel's text in the WFA
  // form, the CSV form's own label for it; an unmatched one keeps its name.
  void NameUserFields(ImportRun& run) const {
    NvCompanyRecord& record = run.company().record();
    const FieldSources sources = Sources(run.state());
    for (int i = 0; i < kMatchedUserFields; ++i) {
      const SourceItem* item = FindSourceItem(sources.user_fields[static_cast<size_t>(i)]);
      if (item == nullptr) continue;
      std::string label = csv_ ? item->csv_label : item->panel_text;
      record.user_fields[static_cast<size_t>(i)].name = label.substr(0, kUserFieldWidth);
    }
  }

  // Tells in the report which matched items the WFA files do not carry.
  void NoteUncarriedSources(ImportRun& run) const {
    const FieldSources sources = Sources(run.state());
    auto note = [&run](int source, const std::string& destination) {
      const SourceItem* item = FindSourceItem(source);
      if (item == nullptr || source == kSourceAssetAccount || source == kSourceAccumulatedAccount) {
        return;
      }
      run.report().Note("all assets", "",
                        StrPrintf("\"%s\" is not in the WFA files; %s is left empty",
                                  item->panel_text, destination.c_str()));
    };
    note(sources.account, "Acct No./Grp.");
    for (int i = 0; i < kMatchedUserFields; ++i) {
      note(sources.user_fields[static_cast<size_t>(i)], StrPrintf("User Field %d", i + 1));
    }
  }

  bool CopyWfa(ImportRun& run, AddStep& add) {
    const ImportState& state = run.state();
    NvCompany& company = run.company();
    NameUserFields(run);
    NoteUncarriedSources(run);

    std::optional<std::string> assets, books, disposals;
    if (std::optional<std::string> path = Beside(state, kAssetFileSuffix)) {
      assets = ReadFileBytes(*path);
    }
    const char* book_suffix =
        layout_ == WfaLayout::kOlder ? kOlderBookFileSuffix : kNewerBookFileSuffix;
    if (std::optional<std::string> path = Beside(state, book_suffix)) books = ReadFileBytes(*path);
    if (std::optional<std::string> path = Beside(state, kDisposalFileSuffix)) {
      disposals = ReadFileBytes(*path);
    }
    if (!assets || !books) {
      run.ui().Message(kFasWinUnableToOpenFiles, "Error");
      return true;  // the count of 0 follows
    }
    MeterSteps meter(add, static_cast<long>(assets->size()));
    const std::string no_disposals;
    WfaReader reader(layout_, *assets, *books, disposals ? *disposals : no_disposals);

    WfaSettings settings;
    settings.layout = layout_;
    settings.schedule_letters = company.record().schedule_letters;
    settings.asset_no_format = company.record().asset_no_format;
    for (const auto& [book, letter] : state.book_matches) {
      const int number = book - kBookItem0;
      if (number >= 0 && number < kFasBooks)
        settings.book_letters[static_cast<size_t>(number)] = letter;
    }
    settings.sources = Sources(state);
    settings.delete_disposed = delete_disposed_;
    settings.last_closed = company.record().last_closed;

    LazyAccountGroups groups(company);
    WfaAsset source;
    std::vector<std::string> notes;
    for (;;) {
      const bool more = reader.Next(&source);
      ReportPassedOver(reader.TakePassedOver(), add);
      meter.At(static_cast<long>(reader.assets_consumed()));
      if (!more) break;
      add.CountRead();
      const std::string key(TrimBlanks(source.asset.Field(kSystemNumberField)));
      const std::string where = StrPrintf("%s line %ld", kAssetFileSuffix, source.asset.line);
      add.SetMeterText(StrPrintf(kFasWinMeterAssetText, key.substr(0, 19).c_str()));
      if (std::optional<std::string> reason = WfaLeaveOutReason(source, settings)) {
        add.Filtered(where, key, *reason);
        continue;
      }
      notes.clear();
      NvAsset asset = ConvertWfaAsset(source, settings, &notes);
      for (std::string& note : notes) run.report().Note(where, key, std::move(note));
      asset.account = groups.CodeFor(asset.account, WfaAccounts(source, layout_));
      add.Add(asset, where);
    }
    return SaveGroups(run, groups);
  }

  bool CopyCsv(ImportRun& run, AddStep& add) {
    NvCompany& company = run.company();
    const NvCompanyRecord& record = company.record();
    if (record.schedules.empty()) {
      MessageF(run.ui(), "Error", kFasWinNoSchedules, company.number().c_str());
      return false;
    }
    ChoiceListRequest request;
    request.message = kFasWinSelectSchedule;
    for (const ScheduleEntry& schedule : record.schedules) {
      request.options.push_back({FasWinScheduleOption(schedule.letter, schedule.name), -1});
    }
    const int chosen = run.ui().ChoiceList(request);
    if (chosen < 0 || static_cast<size_t>(chosen) >= record.schedules.size()) return false;
    if (!company.is_open()) {
      MessageF(run.ui(), "Error", kFasWinUnableToOpenCompany, company.number().c_str());
      return false;
    }
    NameUserFields(run);

    const ScheduleEntry& schedule = record.schedules[static_cast<size_t>(chosen)];
    CsvSettings settings;
    settings.schedule = schedule.letter;
    settings.schedule_type = schedule.type;
    settings.schedule_letters = record.schedule_letters;
    settings.asset_no_format = record.asset_no_format;
    settings.sources = Sources(run.state());
    settings.delete_disposed = delete_disposed_;
    settings.last_closed = record.last_closed;

    const CsvBook& book = *csv_book_;
    const CsvColumns columns(book);
    LazyAccountGroups groups(company);
    MeterSteps meter(add, static_cast<long>(book.size()));
    CommaRecordReader rows = book.Rows();
    CommaRecord record_line;
    while (rows.Next(&record_line)) {
      meter.At(static_cast<long>(rows.consumed()));
      add.CountRead();
      const CsvRow row(columns, record_line);
      const std::string where = StrPrintf("line %ld", record_line.line);
      const std::string number(row.Get(&CsvColumns::system_no));
      if (std::optional<std::string> reason = CsvLeaveOutReason(row, settings)) {
        add.Filtered(where, number, *reason);
        continue;
      }
      add.SetMeterText(StrPrintf(kFasWinMeterCsvAssetText, number.c_str()));
      NvAsset asset;
      const int found = company.FindAsset(number, &asset);
      const bool is_new = found < 0 || asset.record_number == 0;
      if (is_new) asset.Clear(record.schedule_letters);
      ApplyCsvRow(row, settings, is_new, &asset);
      asset.account =
          groups.CodeFor(asset.account, {std::string(row.Get(&CsvColumns::asset_account)),
                                         std::string(row.Get(&CsvColumns::accumulated_account))});
      if (is_new) {
        add.Add(asset, where);
      } else if (int rc = company.ReplaceAsset(&asset); rc >= 0) {
        run.report().Added(asset);
      } else {
        run.report().LeftOut({where, number, LeftOutReason::kRefusedByStore,
                              StrPrintf("status %d when storing it back", rc)});
      }
    }
    return SaveGroups(run, groups);
  }

  static bool SaveGroups(ImportRun& run, const LazyAccountGroups& groups) {
    if (groups.Save()) return true;
    MessageF(run.ui(), "Error", kFasWinAccountGroupsNotSaved,
             run.company().FilePath("ACG").c_str());
    return false;
  }

  static void ReportPassedOver(const std::vector<PassedOver>& records, AddStep& add) {
    for (const PassedOver& record : records) {
      if (record.file == kAssetFileSuffix) add.CountRead();
      add.Filtered(StrPrintf("%s line %ld", record.file.c_str(), record.line), record.key,
                   record.reason);
    }
  }

  ImportDescriptor descriptor_;
  bool csv_ = false;
  std::string prefix_;
  WfaLayout layout_ = WfaLayout::kNewer;
  std::optional<CsvBook> csv_book_;
  bool delete_disposed_ = false;
};

}  // namespace

std::unique_ptr<Importer> MakeFasWinImporter() {
  return std::make_unique<FasWinImporter>();
}

}  // namespace nv
