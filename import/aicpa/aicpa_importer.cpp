#include "import/aicpa/aicpa_importer.h"

#include <cmath>
#include <unordered_set>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/money.h"
#include "base/str_format.h"
#include "import/aicpa/aicpa_convert.h"
#include "import/aicpa/aicpa_report.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

using aicpa::AccountNumbers;
using aicpa::AssetPage;

constexpr char kDispositionsExtension[] = ".DSP";
constexpr double kCent = 0.005;
constexpr int kWholeYear = 12;

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

// The name without its extension.
std::string Stem(const std::string& path) {
  const std::string name = FileName(path);
  return name.substr(0, name.rfind('.'));
}

uint64_t FileSizeOf(const std::string& path) {
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  return file ? file->Size().value_or(0) : 0;
}

std::string StandardScheduleName(char letter) {
  for (const ScheduleDefinition& definition : StandardScheduleDefinitions()) {
    if (definition.letter == letter) return definition.description;
  }
  return "";
}

// Last Closed of a year of `months` months that ends on `year_end`: a year before it, moved
// forward by the months the year is short of twelve. A year ending on the last day of a
// month was closed on the last day of a month too.
Date LastClosedFor(const Date& year_end, int months) {
  Date closed = OneYearBefore(year_end);
  if (months >= 1 && months < kWholeYear) {
    closed = AddMonths(closed, kWholeYear - months);
    if (year_end == EndOfMonth(year_end)) closed = EndOfMonth(closed);
  }
  return closed;
}

class AicpaImporter final : public Importer {
 public:
  AicpaImporter() : descriptor_(AicpaDescriptor()) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override;
  std::string DefaultCompanyNumber(const ImportRun& run) const override;
  bool AfterExistingCompany(ImportRun& run) override;
  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override;
  bool Match(ImportRun& run) override;
  bool CopyAssets(ImportRun& run, AddStep& add) override;

 private:
  bool ChooseGroupAccount(ImportRun& run);
  // The company pass over the whole report; false when it cannot be read (told).
  bool ReadSummary(ImportRun& run, const char* meter_text);
  // Adds the report's account sets to the company's groups; the finder of the groups.
  aicpa::AccountGroupFinder AddAccountGroups(ImportRun& run);
  void CopyPage(ImportRun& run, AddStep& add, const aicpa::AccountGroupFinder& groups,
                const AssetPage& page);
  void ApplyDispositions(ImportRun& run, AddStep& add);

  ImportDescriptor descriptor_;
  std::string dispositions_path_;  // "" when the user goes on without
  aicpa::Account group_account_ = aicpa::kAssetAccount;
  aicpa::ReportSummary summary_;
  bool switch_to_straight_line_ = false;
  std::unordered_set<std::string> added_;  // numbers (text form) of the assets this run added
};

bool AicpaImporter::CheckSource(ImportRun& run) {
  const std::string& path = run.state().source_path;
  const std::string name = FileName(path);
  const size_t dot = name.rfind('.');
  if (dot == std::string::npos || !EqualIgnoringCase(name.substr(dot), ".AST")) {
    run.ui().Message(kAicpaWrongExtension, "Error");
    return false;
  }
  // Asked before anything is made, so that "No" leaves no company behind.
  const std::string folder = run.state().source_folder.empty() ? "." : run.state().source_folder;
  if (std::optional<std::string> found =
          FindFileIgnoringCase(folder, Stem(path) + kDispositionsExtension)) {
    dispositions_path_ = *found;
    return true;
  }
  dispositions_path_.clear();
  return AskYes(run.ui(), DefaultButton::kNo, "%s", kAicpaNoDispositionsQuestion);
}

std::string AicpaImporter::DefaultCompanyNumber(const ImportRun& run) const {
  const std::string stem = Stem(run.state().source_path);
  return stem.substr(0, stem.find('-'));
}

bool AicpaImporter::ChooseGroupAccount(ImportRun& run) {
  ChoiceListRequest request;
  request.message = kAicpaAccountChoice;
  for (const char* option : kAicpaAccountOptions) request.options.push_back({option, -1});
  const int chosen = run.ui().ChoiceList(request);
  if (chosen < 0 || chosen >= static_cast<int>(aicpa::kAccountCount)) return false;
  group_account_ = static_cast<aicpa::Account>(chosen);
  return true;
}

bool AicpaImporter::ReadSummary(ImportRun& run, const char* meter_text) {
  const std::string& path = run.state().source_path;
  std::unique_ptr<ProgressMeter> meter =
      run.ui().OpenProgress(kAicpaTitle, meter_text, static_cast<long>(FileSizeOf(path)));
  aicpa::SummaryReader reader;
  bool finding_accounts = false;
  const bool read = aicpa::ReadReportFile(path, reader, [&](uint64_t done) {
    if (!finding_accounts && reader.summary().accounts_started) {
      finding_accounts = true;
      meter->SetText(kAicpaFindingAccounts);
    }
    meter->SetPosition(static_cast<long>(done));
  });
  meter.reset();
  if (!read) {
    run.ui().Message(kAicpaCannotOpenAssetFile, "Error");
    return false;
  }
  summary_ = reader.summary();
  if (summary_.books.empty()) run.ui().Message(kAicpaNoBooksWarning, "Warning");
  return true;
}

bool AicpaImporter::AfterExistingCompany(ImportRun& run) {
  // An existing company keeps its record; its assets still get their account groups.
  return ChooseGroupAccount(run) && ReadSummary(run, kAicpaFindingAccounts);
}

bool AicpaImporter::FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) {
  if (!ChooseGroupAccount(run) || !ReadSummary(run, kAicpaGettingCompanyData)) return false;
  record.name = summary_.company_name.value_or("");
  record.ein.clear();
  record.round_dollars = false;
  const std::string letters = summary_.acquired_books.empty() ? "T" : summary_.acquired_books;
  record.schedules.clear();
  for (char letter : letters) {
    record.schedules.push_back({letter, std::string(1, letter), StandardScheduleName(letter)});
  }
  record.sort_order = "C";
  record.business_category = 1;
  record.mid_quarter_override = ' ';
  record.user_fields = {};
  // Numbers of the report that the usual format would refuse are allowed.
  if (summary_.letters_in_numbers) record.asset_no_format.flags |= NvAssetNoFormat::kLetters;
  if (summary_.dashes_in_numbers) record.asset_no_format.flags |= NvAssetNoFormat::kDashes;
  if (summary_.year_end) {
    record.current_year_end = *summary_.year_end;
    record.last_closed = LastClosedFor(*summary_.year_end, summary_.months);
  }
  return true;
}

bool AicpaImporter::Match(ImportRun& run) {
  const Answer answer = run.ui().Question(kAicpaSwitchQuestion, DefaultButton::kNo);
  if (answer == Answer::kCancel) return false;
  switch_to_straight_line_ = answer == Answer::kYes;
  return true;
}

aicpa::AccountGroupFinder AicpaImporter::AddAccountGroups(ImportRun& run) {
  NvCompany& company = run.company();
  const bool existed =
      FindFileIgnoringCase(company.folder(), company.number() + ".ACG").has_value();
  // A file of a form this program cannot read leaves the settings as they were: it is
  // left alone rather than written over.
  static const std::string kUnread = "\x01unread";
  AccountGroupList list;
  list.folder = kUnread;
  static_cast<void>(LoadAccountGroups(company.folder(), company.number(), &list));
  if (existed && list.folder == kUnread) {
    MessageF(run.ui(), "Warning",
             "The account groups of company %s are in a form this program cannot read.\nThey "
             "are left as they are, and the assets get no account group.",
             company.number().c_str());
    return aicpa::AccountGroupFinder({});
  }
  const size_t before = list.groups.size();
  for (const AccountNumbers& accounts : summary_.account_sets) {
    const auto a = aicpa::GroupAccounts(accounts);
    static_cast<void>(
        GetOrAddAccountGroup(&list.groups, a[0], a[1], a[2], a[3], accounts[group_account_]));
  }
  if (list.groups.size() != before &&
      SaveAccountGroups(company.folder(), company.number(), list) < 0) {
    MessageF(run.ui(), "Error",
             "Unable to write the account groups of company %s.\nThe assets name account "
             "groups that the company does not list.",
             company.number().c_str());
  }
  return aicpa::AccountGroupFinder(list.groups);
}

bool AicpaImporter::CopyAssets(ImportRun& run, AddStep& add) {
  const aicpa::AccountGroupFinder groups = AddAccountGroups(run);
  const std::string& path = run.state().source_path;
  add.OpenMeter(static_cast<long>(FileSizeOf(path)));
  aicpa::AssetPageReader reader([&](const AssetPage& page) { CopyPage(run, add, groups, page); });
  if (!aicpa::ReadReportFile(
          path, reader, [&](uint64_t done) { add.SetMeterPosition(static_cast<long>(done)); })) {
    run.ui().Message(kAicpaCannotOpenAssetFile, "Error");
    return false;
  }
  reader.Finish();
  ApplyDispositions(run, add);
  return true;
}

void AicpaImporter::CopyPage(ImportRun& run, AddStep& add, const aicpa::AccountGroupFinder& groups,
                             const AssetPage& page) {
  add.CountRead();
  const std::string where = StrPrintf("line %ld", page.line);
  const std::string& number = page.value(aicpa::kAssetNo);
  if (!page.has(aicpa::kAssetNo)) {
    add.Filtered(where, "", "report rows with no \"Asset No.\" row before them");
    return;
  }
  if (number.empty() || number.size() >= aicpa::kUsableAssetNoBelow) {
    add.Filtered(where, number, "an asset number of 1 to 6 characters is needed");
    return;
  }
  if (!page.has(aicpa::kDescription)) {
    add.Filtered(where, number, "no \"Asset Description (line 1)\" row");
    return;
  }
  if (!page.rows[aicpa::kDateAcquired].present) {
    add.Filtered(where, number, "no \"Date Acquired\" row");
    return;
  }
  NvCompany& company = run.company();
  NvCompanyRecord& record = company.record();
  NvAsset asset = aicpa::ConvertAssetPage(page, summary_.books, record, switch_to_straight_line_);
  asset.account = groups.Find(page.accounts);
  const std::string category =
      LocCatCodeForText(&company.categories(), page.value(aicpa::kCategory));
  asset.category = std::string(TrimBlanks(std::string_view(category).substr(0, kLocCatCodeWidth)));
  // A user field the company has named already keeps its name.
  const char* const names[] = {kAicpaUserField1Name, kAicpaUserField2Name};
  for (size_t i = 0; i < 2; ++i) {
    if (!asset.user_fields[i].empty() && record.user_fields[i].name.empty()) {
      record.user_fields[i].name = names[i];
    }
  }
  if (add.Add(asset, where)) added_.insert(asset.number.Text());
}

void AicpaImporter::ApplyDispositions(ImportRun& run, AddStep& add) {
  if (dispositions_path_.empty()) return;
  add.SetMeterText(kAicpaFindingDispositions);
  aicpa::DispositionReader reader;
  if (!aicpa::ReadReportFile(dispositions_path_, reader)) {
    MessageF(run.ui(), "Error",
             "Unable to read the dispositions file %s.\nDispositions must be entered manually.",
             dispositions_path_.c_str());
    return;
  }
  NvCompany& company = run.company();
  const bool round = company.record().round_dollars;
  const auto rounded = [round](double amount) { return round ? RoundDollars(amount) : amount; };
  for (const aicpa::Disposition& d : reader.dispositions()) {
    const std::string where = StrPrintf("dispositions line %ld", d.line);
    if (!d.disposal_date) {
      add.Filtered(where, d.asset_no, "disposal date \"" + d.disposal_text + "\" is no date");
      continue;
    }
    const NvAssetNo number = NvAssetNo::Parse(d.asset_no, company.record().asset_no_format);
    NvAsset asset;
    // Only assets of this import are disposed: an asset of the same number that the company
    // had already is not the report's to change.
    if (!added_.contains(number.Text()) || company.FindAsset(d.asset_no, &asset) < 0) {
      add.Filtered(where, d.asset_no, "disposition of an asset this import did not add");
      continue;
    }
    asset.disposal_date = *d.disposal_date;
    asset.sale_amount = rounded(d.gross_proceeds - d.expense_of_sale);
    asset.disposal_code = std::fabs(asset.sale_amount) > kCent ? kDisposalSold : kDisposalAbandoned;
    asset.amount_disposed = rounded(asset.Cost());
    if (int rc = company.ReplaceAsset(&asset); rc < 0) {
      add.Filtered(where, d.asset_no,
                   StrPrintf("the disposition could not be stored (status %d)", rc));
      continue;
    }
    add.RecordCurrentYear(asset);
  }
}

}  // namespace

ImportDescriptor AicpaDescriptor() {
  ImportDescriptor d;
  d.kind = "aicpa";
  d.product = "AICPA";
  // The product's own folder is a Windows drive's; here the dialog opens in the data
  // directory.
  d.source_dialog = {"Select AICPA asset file", "AICPA files|*.AST;*.ast", ".AST", ""};
  d.existing = {.offers_erase = false, .confirm_erase = false, .setup_screen_after_add = false};
  d.new_loc_cat = 'L';
  d.current_year_files = true;
  d.meter_title = kAicpaTitle;
  d.meter_text = kAicpaCopyingAssets;
  return d;
}

std::unique_ptr<Importer> MakeAicpaImporter() {
  return std::make_unique<AicpaImporter>();
}

}  // namespace nv
