#include "ui/company_record_rules.h"

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/asset/asset.h"
#include "store/file/block_chain.h"

namespace nv {

namespace {

// The election is about additions in the quarter that held 11 September 2001.
constexpr Date kSeptember11{9, 11, 2001};

// At most this many misfits are listed when more failed.
constexpr size_t kMisfitsListed = 10;

std::optional<long> SmallNumber(std::string_view text) {
  text = TrimBlanks(text);
  if (text.empty() || text.size() > 4) return std::nullopt;
  long value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

std::optional<Date> ParseScreenDate(std::string_view text) {
  if (TrimBlanks(text).empty()) return Date{};
  return ParseDisplayDate(text);
}

std::string ScreenDateText(const Date& date) {
  return date.empty() ? std::string() : FormatDisplayDate(date);
}

bool IsMonthEnd(const Date& date) {
  return IsValidDate(date) && date.day == LastDayOfMonth(date.month, date.year);
}

const char* YearEndProblem(const Date& last_closed, const Date& year_end) {
  if (last_closed.empty() || year_end.empty()) return nullptr;
  if (year_end <= last_closed) return kYearEndAfterLastClosedMessage;
  if (year_end > OneYearAfter(last_closed)) return kYearEndWithinYearMessage;
  return nullptr;
}

bool ElectionAllowed(const Date& last_closed, const Date& year_end) {
  if (last_closed.empty() || year_end.empty()) return true;
  const Date year_start = AddDays(last_closed, 1);
  const Date third_quarter = AddMonths(year_start, 6);
  if (third_quarter.empty() || third_quarter > year_end) return false;
  return third_quarter <= kSeptember11 && kSeptember11 <= year_end;
}

std::optional<int> ParseMainLength(std::string_view text) {
  std::optional<long> n = SmallNumber(text);
  if (!n || *n < kMinMainLength || *n > NvAssetNoFormat::kMaxMainLength) return std::nullopt;
  return static_cast<int>(*n);
}

int ClampSubassetLength(std::string_view text) {
  const long n = SmallNumber(text).value_or(0);
  if (n < 1) return 1;
  if (n > NvAssetNoFormat::kMaxSubassetLength) return NvAssetNoFormat::kMaxSubassetLength;
  return static_cast<int>(n);
}

std::vector<std::string> FormatRestrictions(const NvAssetNoFormat& before,
                                            const NvAssetNoFormat& now) {
  std::vector<std::string> lines;
  if (now.main_length < before.main_length) {
    lines.push_back(StrPrintf("Digits (characters) in asset number decreased from %d to %d.",
                              before.main_length, now.main_length));
  }
  if (now.subasset_length < before.subasset_length) {
    lines.push_back(StrPrintf("Length of subasset number decreased from %d to %d.",
                              before.subasset_length, now.subasset_length));
  }
  if (before.letters() && !now.letters()) lines.push_back("Letters no longer allowed.");
  if (before.dashes() && !now.dashes()) lines.push_back("Dashes no longer allowed.");
  return lines;
}

std::vector<FormatMisfit> FindAssetsOutsideFormat(NvCompany& company, const NvAssetNoFormat& format,
                                                  Ui& ui) {
  std::vector<FormatMisfit> misfits;
  const uint32_t highest = company.blocks().highest_record();
  std::unique_ptr<ProgressMeter> meter =
      ui.OpenProgress(kNarrowingMeterTitle, kNarrowingMeterText, static_cast<long>(highest));
  for (uint32_t record = 1; record <= highest; ++record) {
    if (meter) meter->SetPosition(static_cast<long>(record));
    uint8_t head[kBlockHeaderCurrent];
    if (!company.blocks().ReadRecord(record, head, sizeof head)) continue;
    // Outside the company record's chain, 0xE0 starts an old asset chain as 0xE2 does.
    const BlockHeader first = DecodeFirstBlockHeader(head);
    if (first.marker != kMarkerAssetFirst && !first.old_layout) continue;
    NvAsset asset;
    // A chain that does not read is a damaged asset, which the check cannot judge.
    if (company.ReadAsset(record, &asset) != kOk) continue;
    if (asset.number.InFormat(format).valid()) continue;
    misfits.push_back({asset.number.DisplayText(), asset.description});
  }
  return misfits;
}

std::string FormatMisfitMessage(const std::vector<FormatMisfit>& misfits) {
  std::string text =
      StrPrintf("%zu assets do not fit your new asset number format.  ", misfits.size());
  const bool cut = misfits.size() > kMisfitsListed;
  text += cut ? "Ten of these assets are:\n" : "These assets are:\n";
  const size_t listed = cut ? kMisfitsListed : misfits.size();
  for (size_t i = 0; i < listed; ++i) {
    const std::string line = misfits[i].number + "  " + misfits[i].description;
    text += StrPrintf("  %s\n", line.c_str());
  }
  text += "Asset number cannot be changed until these asset numbers are corrected.";
  return text;
}

const char* SortOrderProblem(std::string_view sort_order) {
  if (sort_order.size() > 3) return kSortOrderKeysMessage;
  for (size_t i = 0; i < sort_order.size(); ++i) {
    if (std::string_view(kSortOrderKeys).find(sort_order[i]) == std::string_view::npos)
      return kSortOrderKeysMessage;
    if (sort_order.find(sort_order[i], i + 1) != std::string_view::npos)
      return "Do not repeat letters.";
  }
  return nullptr;
}

}  // namespace nv
