#include "export/export_run.h"

#include <filesystem>

#include "base/file.h"
#include "base/file_util.h"
#include "base/money.h"
#include "base/path.h"
#include "base/str_format.h"
#include "store/company/company.h"
#include "store/company/permissions.h"
#include "store/file/status.h"
#include "ui/company_selection.h"
#include "ui/selection/selection_match.h"

namespace nv {

namespace {

// Lines are gathered and written in pieces of about this size.
constexpr size_t kWritePiece = size_t{256} << 10;

std::string Amount(double amount, bool round_dollars) {
  return FormatMoney(amount, round_dollars);
}

std::string DateText(const Date& date) {
  return date.empty() ? std::string() : FormatDisplayDate(date);
}

std::string LifeText(const YearsMonths& life) {
  if (life.months == 0) return StrPrintf("%2d", life.years);
  return StrPrintf("%2d-%d", life.years, life.months);
}

std::string Integer(int value) {
  return std::to_string(value);
}

std::string Character(char c) {
  return std::string(1, c == '\0' ? ' ' : c);
}

std::string NumberText(const NvAssetNo& number) {
  return number.empty() ? std::string() : number.Text();
}

// The schedule part a schedule field of a missing schedule is read from.
NvAssetSchedule EmptySchedulePart() {
  NvAssetSchedule empty;
  empty.method = 0;
  return empty;
}

std::string GeneralFieldText(int field, const NvAsset& a, bool round) {
  switch (field) {
    case 1001:  // Asset No.
      return NumberText(a.number);
    case 1002:  // Desc.
      return a.description;
    case 1003:  // Location
      return a.location;
    case 1004:  // Category
      return a.category;
    case 1005:  // Acct No./Grp.
      return a.account;
    case 1006:  // Cash and Notes
      return Amount(a.cash_and_notes, round);
    case 1007:  // Trade In
      return Amount(a.trade_in, round);
    case 1008:  // Cost
      return Amount(a.Cost(), round);
    case 1009:  // Purchase Date
      return DateText(a.purchase_date);
    case 1010:  // Date in Service
      return DateText(a.date_in_service);
    case 1011:  // New/Used/Trade
      return Character(a.new_used_trade);
    case 1012:  // Prior Short Years
      return Integer(a.prior_short_years);
    case 1013:  // Property Code
      return a.property_code;
    case 1014:  // 4797 Type
      return Integer(a.type_4797);
    case 1025:  // Disposal Code
      return Character(a.disposal_code);
    case 1026:  // Transferred To
      return NumberText(a.transferred_to);
    case 1027:  // Disposal Date
      return DateText(a.disposal_date);
    case 1028:  // Sale Amount
      return Amount(a.sale_amount, round);
    case 1029:  // Traded To
      return NumberText(a.traded_to);
    default:
      break;
  }
  constexpr int kFirstUserField = 1015;  // User Field 1 to 10
  if (field >= kFirstUserField && field < kFirstUserField + kAssetUserFields) {
    return a.user_fields[static_cast<size_t>(field - kFirstUserField)];
  }
  return kUnimplementedField;
}

std::string ScheduleFieldText(int field, const NvAssetSchedule& s, bool round) {
  switch (field) {
    case 2001:  // Depr. Method
      return Integer(s.method);
    case 2002:  // Amortized (Y/N)
      return s.amortized ? "Y" : "N";
    case 2003:  // Am. Code Section
      return s.am_code_section;
    case 2004:  // Asset Type
      return s.asset_type;
    case 2005:  // Business Percent
      return Integer(s.business_percent);
    case 2006:  // Useful Life
      return LifeText(s.useful_life);
    case 2007:  // SL Life
      return LifeText(s.sl_life);
    case 2008:  // Depreciable Basis
      return Amount(s.depreciable_basis, round);
    case 2009:  // Substitute Basis
      return Amount(s.substitute_basis, round);
    case 2010:  // ITC Basis
      return Amount(s.ItcBasis(), round);
    case 2011:  // Subst. ITC Basis
      return Amount(s.subst_itc_basis, round);
    case 2012:  // ITC Code
      return Integer(s.itc_code);
    case 2013:  // ITC
      return Amount(s.itc, round);
    case 2014:  // Convention
      return Character(s.convention);
    case 2015:  // Sec. 179 Expense
      return Amount(s.sec179_expense, round);
    case 2016:  // Prior Allowd Dpr
      return Amount(s.prior_allowed_depr, round);
    case 2017:  // Prior Allowble Dpr
      return Amount(s.prior_allowable_depr, round);
    case 2018:  // Ending Allwd Dpr
      return Amount(s.EndingAllowedDepr(), round);
    case 2019:  // Ending Allwble Dpr
      return Amount(s.EndingAllowableDepr(), round);
    case 2020:  // Bonus Depr
      return Amount(s.bonus_depr, round);
    case 2021:  // Salvage Value
      return Amount(s.salvage_value, round);
    case 2022:  // Current Depr
      return Amount(s.current_depr, round);
    case 2023:  // Misc. Code
      return s.misc_codes;
    default:
      return kUnimplementedField;
  }
}

bool ColumnApplies(const ExportColumn& column, const ExportAssetClass& kind) {
  return (column.addition && kind.addition) || (column.disposition && kind.disposition) ||
         (column.current && kind.current) || (column.none_of_the_above && kind.none_of_the_above);
}

bool HoldsOnlyBlanks(std::string_view line) {
  return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// The output file: lines are gathered and written in large pieces; after a failed write
// nothing more is written.
class ExportOutput {
 public:
  explicit ExportOutput(File file) : file_(std::move(file)) {}

  std::string& buffer() { return buffer_; }
  [[nodiscard]] bool FlushIfFull() { return buffer_.size() < kWritePiece || Flush(); }
  [[nodiscard]] bool Flush() {
    if (failed_) return false;
    if (buffer_.empty()) return true;
    failed_ = !file_.WriteAt(offset_, buffer_.data(), buffer_.size());
    offset_ += buffer_.size();
    buffer_.clear();
    return !failed_;
  }
  [[nodiscard]] bool Close() { return Flush() && file_.Close() == 0; }

 private:
  File file_;
  std::string buffer_;
  uint64_t offset_ = 0;
  bool failed_ = false;
};

// Creates the file, asking first when one of that name (in any case) exists. Nothing when
// the user declines or the file cannot be made; the latter is told.
std::optional<File> CreateExportFile(const std::string& path, Ui& ui) {
  std::string target = path;
  const std::filesystem::path as_path(path);
  const std::string parent = as_path.has_parent_path() ? as_path.parent_path().string() : ".";
  if (std::optional<std::string> existing =
          FindFileIgnoringCase(parent, as_path.filename().string())) {
    if (!AskYes(ui, DefaultButton::kNo, kExportFileExists, path.c_str())) return std::nullopt;
    target = *existing;
  }
  std::optional<File> file = File::Open(target, File::Mode::kCreate);
  if (!file) MessageF(ui, "Error", kUnableToOpenExportFile, path.c_str());
  return file;
}

// Opens the company for reading in the index of `order`; tells the user why it cannot.
bool OpenCompanyForExport(NvCompany& company, std::string_view number, AssetOrder order, Ui& ui) {
  const int index = order == AssetOrder::kNumber ? NvCompany::kOpenI1 : NvCompany::kOpenI2;
  if (company.Open(number, index | NvCompany::kReadOnly, ui) <= 0) {
    ui.Message(kUnableToOpenCompanyFiles, "Error");
    return false;
  }
  if (company.permission() == kNoAccess) {
    static_cast<void>(company.Close());  // read-only: nothing to write
    MessageF(ui, "Message", kNoAccessMessage, company.number().c_str());
    return false;
  }
  return true;
}

}  // namespace

ExportAssetClass ClassifyAsset(const NvAsset& asset, const Date& year_begin, const Date& year_end) {
  const Date& in_service = asset.date_in_service;
  const Date& disposed = asset.disposal_date;
  ExportAssetClass kind;
  kind.addition = !in_service.empty() && in_service > year_begin && in_service <= year_end;
  kind.disposition = !disposed.empty() && disposed > year_begin && disposed <= year_end;
  kind.none_of_the_above = (!disposed.empty() && disposed <= year_begin) ||
                           (!in_service.empty() && in_service > year_end);
  kind.current = !kind.addition && !kind.disposition && !kind.none_of_the_above;
  return kind;
}

std::string ExportFieldText(int field, char group, const NvAsset& asset, bool round_dollars) {
  if (field < 2000) return GeneralFieldText(field, asset, round_dollars);
  const NvAssetSchedule* schedule = asset.Schedule(group);
  if (schedule != nullptr) return ScheduleFieldText(field, *schedule, round_dollars);
  return ScheduleFieldText(field, EmptySchedulePart(), round_dollars);
}

std::string QuoteExportText(std::string_view text) {
  if (text.find('"') == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (char c : text) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  quoted += '"';
  return quoted;
}

bool WriteAssetLine(const std::vector<ExportColumn>& columns, const ExportLineSettings& settings,
                    const NvAsset& asset, std::string& out, int& counter) {
  const ExportAssetClass kind = ClassifyAsset(asset, settings.year_begin, settings.year_end);
  const size_t start = out.size();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) out += '\t';
    const ExportColumn& column = columns[i];
    if (!ColumnApplies(column, kind)) continue;
    out +=
        QuoteExportText(ExportFieldText(column.field, column.group, asset, settings.round_dollars));
  }
  if (HoldsOnlyBlanks(std::string_view(out).substr(start))) {
    out.resize(start);
    return false;
  }
  out += "\r\n";
  ++counter;
  return true;
}

std::string ExportHeadingsLine(const std::vector<ExportColumn>& columns) {
  std::string line;
  for (size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) line += '\t';
    line += QuoteExportText(columns[i].heading);
  }
  return line + "\r\n";
}

std::string ExportFilePath(std::string_view folder, std::string_view file_name) {
  if (folder.empty()) return std::string(file_name);
  return JoinPath(folder, file_name);
}

std::optional<int> ExportToFile(const InstallationContext& context, std::string_view number,
                                const ExportDefinition& definition, const KelSelection* selection,
                                Ui& ui) {
  if (definition.file_name.empty()) {
    ui.Message(kNoExportFileName, "Error");
    return std::nullopt;
  }
  if (definition.columns.empty()) {
    ui.Message(kNoColumnsToExport, "Error");
    return std::nullopt;
  }
  const std::string folder =
      definition.folder.empty() ? CompanyFolder(context, number) : definition.folder;
  const std::string path = ExportFilePath(folder, definition.file_name);
  std::optional<File> file = CreateExportFile(path, ui);
  if (!file) return std::nullopt;
  ExportOutput output(std::move(*file));
  if (definition.include_headings) output.buffer() += ExportHeadingsLine(definition.columns);

  const AssetOrder order = definition.sort_order == ExportSortOrder::kAssetNumber
                               ? AssetOrder::kNumber
                               : AssetOrder::kSort;
  NvCompany company(context);
  if (!OpenCompanyForExport(company, number, order, ui)) {
    static_cast<void>(output.Close());  // the run ends anyway; the headings may stay
    return std::nullopt;
  }
  const NvCompanyRecord& record = company.record();
  const ExportLineSettings settings{record.last_closed, record.current_year_end,
                                    record.round_dollars};
  int exported = 0;
  bool write_failed = false;
  company.ResetAssetWalk();
  NvAsset asset;
  // The index walk gives no fraction to show: the meter counts what was written.
  const std::string meter_text =
      StrPrintf("Company %s\nto %s\n", company.number().c_str(), path.c_str());
  std::unique_ptr<ProgressMeter> meter = ui.OpenProgress(kExportMeterTitle, meter_text, 0);
  long walked = 0;
  while (!write_failed) {
    // An asset that cannot be read ends the walk; what was written so far stands.
    if (company.NextAsset(order, &asset) != kOk || asset.record_number == 0) break;
    if (++walked % 256 == 0 && meter) {
      meter->SetText(meter_text + StrPrintf(kAssetsExported, exported));
    }
    if (selection != nullptr &&
        !MatchAsset(*selection,
                    AssetSelectionValues(asset, selection->schedule, record.asset_no_format), 0)) {
      continue;
    }
    WriteAssetLine(definition.columns, settings, asset, output.buffer(), exported);
    write_failed = !output.FlushIfFull();
  }
  meter.reset();
  static_cast<void>(company.Close());  // read-only: nothing to write
  if (write_failed || !output.Close()) {
    MessageF(ui, "Error", kUnableToWriteExportFile, path.c_str());
    return std::nullopt;
  }
  MessageF(ui, "Note", kAssetsExported, exported);
  return exported;
}

}  // namespace nv
