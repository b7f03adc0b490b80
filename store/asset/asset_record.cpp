#include "store/asset/asset_record.h"

#include <array>

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/file/record_fields.h"

namespace nv {
namespace {

// Widths of the record's texts.
constexpr size_t kDescriptionWidth = 30;
constexpr size_t kCodeWidth = 10;  // Location, Category, Am. Code Section, Asset Type, ...
constexpr size_t kAccountWidth = 24;
constexpr size_t kAssetCodesWidth = 5;
constexpr size_t kPropertyCodeWidth = 2;
constexpr size_t kStateWidth = 2;
constexpr size_t kUserFieldWidth = 20;
constexpr size_t kItcCodeWidth = 8;
constexpr size_t kTagWidth = 4;
constexpr int kDisposalEmptyFields = 4;
constexpr int kNaEmptyAfterType = 3;
constexpr int kNaEmptyAfterBasis = 14;

constexpr std::string_view kEndTag = "END";
constexpr std::string_view kAmortizedWithoutSection = "Yes";
// The one-letter tag of the extra amount field.
constexpr char kExtraAmountTag = '4';

// A blank Location or Category reads as this code.
constexpr std::string_view kBlankCode = "0         ";

// Places of the fields in a schedule section (after its tag).
enum SchedulePlace : size_t {
  kPlaceMethod = 0,
  kPlaceAmortization = 1,
  kPlaceAssetType = 2,
  kPlaceBusinessPercent = 3,
  kPlaceUsefulLife = 4,
  kPlaceSlLife = 5,
  kPlaceSubstituteBasis = 6,
  kPlaceSubstItcBasis = 7,
  kPlaceItcCode = 8,
  kPlaceConvention = 9,
  kPlaceSec179 = 10,
  kPlacePriorAllowed = 11,
  kPlacePriorAllowable = 12,
  kPlaceBonus = 13,
  kPlaceSalvage = 14,
  kPlaceCurrentDepr = 15,
  kPlaceMiscCodes = 16,
  kPlaceState = 17,
  kPlaceExtraAmount = 19,
  kPlaceDepreciableBasis = 21,
  kPlaceItc = 22,
  kPlaceFurther1 = 23,
  kPlaceFurther2 = 24,
};
static_assert(kPlaceFurther2 + 1 == kScheduleSectionFields);
static_assert(kPlaceSubstituteBasis == kPlaceAssetType + kNaEmptyAfterType + 1);
static_assert(kPlaceDepreciableBasis == kPlaceSubstituteBasis + kNaEmptyAfterBasis + 1);

using SectionFields = std::array<std::string_view, kScheduleSectionFields>;

// ---- writing ----

void WriteNumber(RecordFieldWriter& w, const NvAssetNo& number, const NvAssetNoFormat& format) {
  if (number.empty()) {
    w.Empty();
  } else {
    w.Text(number.InFormat(format).Text(), static_cast<size_t>(format.Normalized().KeyLength()));
  }
}

std::string LifeText(const YearsMonths& life) {
  return StrPrintf("%d-%d", life.years, life.months);
}

void WriteItcCode(RecordFieldWriter& w, const NvAssetSchedule& s) {
  if (s.itc_code != kItcCodeWithPercents) {
    w.Int(s.itc_code, 1);
    return;
  }
  std::string text = StrPrintf("%d(%d,%d)", s.itc_code, s.itc_percent, s.itc_basis_reduction_pct);
  if (text.size() > kItcCodeWidth) text.resize(kItcCodeWidth);
  w.Raw(text);
}

void WriteExtraAmount(RecordFieldWriter& w, const NvAssetSchedule& s, bool round_dollars) {
  if (s.extra_flag == NvAssetSchedule::kExtraNone) {
    w.Empty();
    return;
  }
  std::string text = StrPrintf("%c:", kExtraAmountTag);
  if (s.extra_flag == NvAssetSchedule::kExtraMarked) text += '?';
  text += FormatRecordAmount(s.extra_amount, round_dollars);
  w.Raw(text);
}

void WriteSchedule(RecordFieldWriter& w, char letter, const NvAssetSchedule& s, bool rd) {
  w.Raw(std::string{'S', letter});
  if (s.not_applicable()) {
    w.Int(kMethodNa, 2);
    w.Empty();
    w.Text(s.asset_type, kCodeWidth);
    w.Empty(kNaEmptyAfterType);
    w.Amount(s.substitute_basis, rd);
    w.Empty(kNaEmptyAfterBasis);
  } else {
    w.Int(s.method, 2);
    if (!s.amortized) {
      w.Empty();
    } else {
      std::string section = RecordText(s.am_code_section, kCodeWidth);
      w.Raw(section.empty() ? kAmortizedWithoutSection : section);
    }
    w.Text(s.asset_type, kCodeWidth);
    w.Int(s.business_percent, 3);
    w.Raw(LifeText(s.useful_life));
    w.Raw(LifeText(s.sl_life));
    w.Amount(s.substitute_basis, rd);
    w.Amount(s.subst_itc_basis, rd);
    WriteItcCode(w, s);
    w.Char(s.convention);
    for (double amount : {s.sec179_expense, s.prior_allowed_depr, s.prior_allowable_depr,
                          s.bonus_depr, s.salvage_value, s.current_depr}) {
      w.Amount(amount, rd);
    }
    w.Text(s.misc_codes, kCodeWidth);
    w.Text(s.state, kStateWidth);
    w.Empty();
    WriteExtraAmount(w, s, rd);
    w.Empty();
  }
  for (double amount : {s.depreciable_basis, s.itc, s.further_amount_1, s.further_amount_2}) {
    w.Amount(amount, rd);
  }
}

void WriteGeneral(RecordFieldWriter& w, const NvAsset& a, const AssetRecordFormat& f) {
  const bool rd = f.round_dollars;
  WriteNumber(w, a.number, f.asset_no_format);
  w.Text(a.description, kDescriptionWidth);
  w.Text(a.location, kCodeWidth);
  w.Text(a.category, kCodeWidth);
  w.Text(a.account, kAccountWidth);
  w.Amount(a.cash_and_notes, rd);
  w.Amount(a.trade_in, rd);
  w.Date(a.purchase_date);
  w.Date(a.date_in_service);
  w.Char(a.new_used_trade);
  w.Int(a.prior_short_years, 1);
  w.Text(a.property_code, kPropertyCodeWidth);
  w.Int(a.type_4797, 2);
  w.Int(kRecordUserFieldCount, 2);
  for (const std::string& value : a.user_fields) w.Text(value, kUserFieldWidth);
}

void WriteDisposal(RecordFieldWriter& w, const NvAsset& a, const AssetRecordFormat& f) {
  w.Raw("D0");
  w.Char(a.disposal_code == 'N' ? ' ' : a.disposal_code);
  bool exchanged = a.disposal_code == kDisposalExchanged;
  WriteNumber(w, exchanged ? a.traded_to : a.transferred_to, f.asset_no_format);
  w.Amount(a.amount_disposed, f.round_dollars);
  w.Date(a.disposal_date);
  w.Amount(a.sale_amount, f.round_dollars);
  w.Text(a.asset_codes, kAssetCodesWidth);
  w.Empty(kDisposalEmptyFields);
}

void WritePauses(RecordFieldWriter& w, const NvAssetPauseDeprInfo& pauses) {
  w.Raw("P*");
  w.Text(pauses.schedules, kCodeWidth);
  for (const PauseInterval& interval : pauses.intervals) {
    // Two empty dates end the list, so such an interval cannot be stored.
    if (interval.start.empty() && interval.end.empty()) continue;
    w.Date(interval.start);
    w.Date(interval.end);
  }
  w.Empty(2);
}

// Last, so that a reader that stops early loses nothing it knows; each only while the record
// stays inside the main program's record buffer.
void WriteRetainedSections(RecordFieldWriter& w, const NvAsset& a, const AssetRecordFormat& f) {
  const size_t budget = RecordBudget(f.schedule_letters.size());
  for (const RetainedScheduleSection& retained : a.retained_sections) {
    // A letter the company has gained since would be read back as that schedule's data.
    if (retained.tag.size() < 2) continue;
    if (f.schedule_letters.find(retained.tag[1]) != std::string::npos) continue;
    RecordFieldWriter section;
    section.Raw(retained.tag);
    for (const std::string& field : retained.fields) section.Raw(field);
    // The record ends with "END", its tab and a zero byte.
    if (w.bytes().size() + section.bytes().size() + kEndTag.size() + 2 > budget) continue;
    w.Append(section.bytes());
  }
}

// ---- reading ----

YearsMonths ParseLife(std::string_view text) {
  YearsMonths life;
  size_t end = 0;
  life.years = ParseRecordInt(text, &end);
  if (end < text.size() && text[end] == '-') life.months = ParseRecordInt(text.substr(end + 1));
  return life;
}

void ParseItcCode(std::string_view text, NvAssetSchedule* s) {
  size_t end = 0;
  s->itc_code = ParseRecordInt(text, &end);
  if (s->itc_code != kItcCodeWithPercents || end >= text.size() || text[end] != '(') return;
  text.remove_prefix(end + 1);
  s->itc_percent = ParseRecordInt(text, &end);
  if (end < text.size() && text[end] == ',') {
    s->itc_basis_reduction_pct = ParseRecordInt(text.substr(end + 1));
  }
}

void ParseExtraAmount(std::string_view text, NvAssetSchedule* s) {
  text = TrimBlanks(text);
  if (text.empty()) return;
  size_t colon = text.find(':');
  if (colon != std::string_view::npos) text.remove_prefix(colon + 1);
  s->extra_flag = NvAssetSchedule::kExtraSet;
  if (!text.empty() && text.front() == '?') {
    s->extra_flag = NvAssetSchedule::kExtraMarked;
    text.remove_prefix(1);
  }
  s->extra_amount = ParseRecordAmount(text);
}

// An N/A schedule keeps only its Asset Type, Substitute Basis and closing amounts.
NvAssetSchedule ParseSchedule(const SectionFields& f) {
  NvAssetSchedule s;
  s.method = ParseRecordInt(f[kPlaceMethod]);
  s.asset_type = FitText(f[kPlaceAssetType], kCodeWidth);
  s.substitute_basis = ParseRecordAmount(f[kPlaceSubstituteBasis]);
  s.depreciable_basis = ParseRecordAmount(f[kPlaceDepreciableBasis]);
  s.itc = ParseRecordAmount(f[kPlaceItc]);
  s.further_amount_1 = ParseRecordAmount(f[kPlaceFurther1]);
  s.further_amount_2 = ParseRecordAmount(f[kPlaceFurther2]);
  if (s.not_applicable()) return s;

  std::string amortization = FitText(f[kPlaceAmortization], kCodeWidth);
  s.amortized = !amortization.empty();
  if (amortization != kAmortizedWithoutSection) s.am_code_section = amortization;
  s.business_percent = ParseRecordInt(f[kPlaceBusinessPercent]);
  s.useful_life = ParseLife(f[kPlaceUsefulLife]);
  s.sl_life = ParseLife(f[kPlaceSlLife]);
  s.subst_itc_basis = ParseRecordAmount(f[kPlaceSubstItcBasis]);
  ParseItcCode(f[kPlaceItcCode], &s);
  s.convention = FieldChar(f[kPlaceConvention]);
  s.sec179_expense = ParseRecordAmount(f[kPlaceSec179]);
  s.prior_allowed_depr = ParseRecordAmount(f[kPlacePriorAllowed]);
  s.prior_allowable_depr = ParseRecordAmount(f[kPlacePriorAllowable]);
  s.bonus_depr = ParseRecordAmount(f[kPlaceBonus]);
  s.salvage_value = ParseRecordAmount(f[kPlaceSalvage]);
  s.current_depr = ParseRecordAmount(f[kPlaceCurrentDepr]);
  s.misc_codes = FitText(f[kPlaceMiscCodes], kCodeWidth);
  s.state = FitText(f[kPlaceState], kStateWidth);
  ParseExtraAmount(f[kPlaceExtraAmount], &s);
  return s;
}

void ReadScheduleSection(RecordFieldReader& r, std::string_view tag, NvAsset* a) {
  SectionFields fields;
  for (std::string_view& field : fields) field = r.Next();
  if (tag.size() < 2) return;  // no letter to keep it under
  const char letter = tag[1];
  if (NvAssetSchedule* schedule = a->Schedule(letter)) {
    *schedule = ParseSchedule(fields);
    return;
  }
  RetainedScheduleSection retained{std::string(tag), {fields.begin(), fields.end()}};
  for (RetainedScheduleSection& old : a->retained_sections) {
    if (old.tag[1] == letter) {
      old = std::move(retained);
      return;
    }
  }
  a->retained_sections.push_back(std::move(retained));
}

NvAssetNo ReadNumber(RecordFieldReader& r, const NvAssetNoFormat& format) {
  return NvAssetNo::Parse(r.Text(static_cast<size_t>(format.KeyLength())), format);
}

void ReadDisposalSection(RecordFieldReader& r, const NvAssetNoFormat& format, NvAsset* a) {
  a->disposal_code = r.Char();
  if (a->disposal_code == 'N') a->disposal_code = kDisposalNone;
  NvAssetNo number = ReadNumber(r, format);
  if (a->disposal_code == kDisposalExchanged) {
    a->traded_to = number;
    a->transferred_to = NvAssetNo(format);
  } else {
    a->transferred_to = number;
    a->traded_to = NvAssetNo(format);
  }
  a->co_transferred_to.clear();
  a->amount_disposed = r.Amount();
  a->disposal_date = r.Date();
  a->sale_amount = r.Amount();
  a->asset_codes = r.Text(kAssetCodesWidth);
  r.Skip(kDisposalEmptyFields);
}

void ReadPauseSection(RecordFieldReader& r, NvAsset* a) {
  NvAssetPauseDeprInfo pauses;
  pauses.schedules = r.Text(kCodeWidth);
  while (!r.AtEnd()) {
    PauseInterval interval{r.Date(), r.Date()};
    if (interval.start.empty() && interval.end.empty()) break;
    pauses.intervals.push_back(interval);
  }
  a->pauses = std::move(pauses);
}

void ReadGeneral(RecordFieldReader& r, const NvAssetNoFormat& format, NvAsset* a) {
  a->number = ReadNumber(r, format);
  a->description = r.Text(kDescriptionWidth);
  a->location = r.Text(kCodeWidth);
  a->category = r.Text(kCodeWidth);
  if (a->location.empty()) a->location = std::string(kBlankCode);
  if (a->category.empty()) a->category = std::string(kBlankCode);
  a->account = r.Text(kAccountWidth);
  a->cash_and_notes = r.Amount();
  a->trade_in = r.Amount();
  a->purchase_date = r.Date();
  a->date_in_service = r.Date();
  if (!r.AtEnd()) a->new_used_trade = r.Char();
  a->prior_short_years = r.Int();
  a->property_code = r.Text(kPropertyCodeWidth);
  a->type_4797 = r.Int();
  const int count = r.Int();
  for (int i = 0; i < count && !r.AtEnd(); ++i) {
    std::string value = r.Text(kUserFieldWidth);
    if (i < kAssetUserFields) a->user_fields[static_cast<size_t>(i)] = std::move(value);
  }
}

}  // namespace

std::string SerializeAssetRecord(const NvAsset& asset, const AssetRecordFormat& format) {
  RecordFieldWriter w;
  WriteGeneral(w, asset, format);
  WriteDisposal(w, asset, format);
  std::string written;
  for (size_t i = 0; i < asset.schedule_letters.size() && i < asset.schedules.size(); ++i) {
    const char letter = asset.schedule_letters[i];
    // A blank or control byte from a damaged schedule list would make no readable tag.
    if (static_cast<unsigned char>(letter) <= ' ') continue;
    if (format.schedule_letters.find(letter) == std::string::npos) continue;
    if (written.find(letter) != std::string::npos) continue;
    written += letter;
    WriteSchedule(w, letter, asset.schedules[i], format.round_dollars);
  }
  if (asset.pauses) WritePauses(w, *asset.pauses);
  WriteRetainedSections(w, asset, format);
  w.Raw(kEndTag);
  return w.Take();
}

void ParseAssetRecord(std::string_view bytes, const AssetRecordFormat& format, NvAsset* asset) {
  const NvAssetNoFormat number_format = format.asset_no_format.Normalized();
  const uint32_t record_number = asset->record_number;
  std::string number_key = std::move(asset->stored_number_key);
  std::string sort_key = std::move(asset->stored_sort_key);
  asset->number = asset->transferred_to = asset->traded_to = NvAssetNo(number_format);
  asset->Clear(format.schedule_letters);
  asset->record_number = record_number;
  asset->stored_number_key = std::move(number_key);
  asset->stored_sort_key = std::move(sort_key);

  RecordFieldReader r(bytes);
  ReadGeneral(r, number_format, asset);
  while (!r.AtEnd()) {
    std::string_view tag = TrimBlanks(r.Next());
    if (tag.size() > kTagWidth) tag = tag.substr(0, kTagWidth);
    if (tag == kEndTag) break;
    if (tag.empty()) continue;
    switch (tag.front()) {
      case 'D':
        ReadDisposalSection(r, number_format, asset);
        break;
      case 'P':
        ReadPauseSection(r, asset);
        break;
      case 'S':
        ReadScheduleSection(r, tag, asset);
        break;
      default:
        break;  // not a section of ours: the next field is read as a tag
    }
  }
}

}  // namespace nv
