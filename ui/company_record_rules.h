// The rules a company record must obey when the company screen accepts it: the accounting
// dates, the Notice 2001-70 election, the asset-number format and its narrowing over the
// company's existing assets, and the sort order. The screen (ui/company_screen.h) applies
// them when a field is left and when the company is saved; they are kept here, apart from
// the screen, so that each can be tested on its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "base/ui.h"
#include "store/asset/asset_no_format.h"
#include "store/company/company.h"

namespace nv {

inline constexpr char kLastClosedQuestion[] =
    "Note:  The last closed date is automatically updated during the\nyear end close.  Changing "
    "the last closed date using this company\nedit screen will not update accumulated "
    "depreciation fields and may\ncause errors in your depreciation reports.\n\nAre you sure you "
    "want to change the last closed date?";
inline constexpr char kYearEndQuestion[] =
    "  Normally, the only reason to change\nthe year end is to create a short year.\n\n  Are you "
    "sure you want to change the year end?";
inline constexpr char kLastDayOfMonthMessage[] = "Must be last day of the month.";
inline constexpr char kYearEndAfterLastClosedMessage[] =
    "Year end must be after\nlast closed date.";
inline constexpr char kYearEndWithinYearMessage[] =
    "Year end must be at most one\nyear after last closed date.";
inline constexpr char kElectionMessage[] =
    "The Notice 2001-70 election is allowed only\nif the date 9/11/2001 occurs during the 3rd\nor "
    "4th quarter (defined in the notice to begin\nin the 7th month) of the current tax year.";
inline constexpr char kMainLengthMessage[] =
    "Asset Number must be at least 3 and at most 10 digits (or characters) long";
inline constexpr char kNarrowingQuestion[] =
    "You have changed to a more restrictive asset number format\n%s will check to see that all "
    "assets are allowed \nunder this format.  Changes requiring this check are shown below:";
inline constexpr char kNarrowingMeterTitle[] = "Asset Number Format";
inline constexpr char kNarrowingMeterText[] = "Checking Existing Assets";
inline constexpr char kFormatRebuildQuestion[] =
    "You have changed the company's asset number format.\nThis change will result in your company "
    "files being rebuilt.\n\nContinue?";
inline constexpr char kSortOrderQuestion[] =
    "Company index files will be\nrebuilt if you change the\nasset sort order.\n    Are you "
    "willing to wait?";
// The sort order field's input filter keeps other characters out; a script is told.
inline constexpr char kSortOrderKeysMessage[] =
    "The sort order is up to three keys, each one of\nL, C, A, P, D, Y or a digit.";
inline constexpr char kSortOrderKeys[] = "LCAPDY0123456789";

inline constexpr int kMinMainLength = 3;

// A date of the screen's date fields: blank (the empty date) or MM/DD/YYYY.
std::optional<Date> ParseScreenDate(std::string_view text);
// "" for the empty date, else MM/DD/YYYY.
std::string ScreenDateText(const Date& date);

// A valid date that is the last day of its month.
[[nodiscard]] bool IsMonthEnd(const Date& date);

// The message that refuses `year_end` after `last_closed`, or nullptr when it stands: it
// must be after Last Closed and at most one year after it. Either date empty: it stands.
const char* YearEndProblem(const Date& last_closed, const Date& year_end);

// The current tax year of the election runs from the day after Last Closed to Current Year
// End, so a short year is its own tax year; its third quarter begins on the first day of
// its seventh month, and the election stands when 11 September 2001 falls from then to the
// year end. A year of six months or fewer has no third quarter. Either date empty: true.
[[nodiscard]] bool ElectionAllowed(const Date& last_closed, const Date& year_end);

// "Digits/Chars in Asset No.": 3 to 10, or nothing.
std::optional<int> ParseMainLength(std::string_view text);
// "Digits in Subasset Part", held to 1 to 3 (text that is no number counts as 0).
[[nodiscard]] int ClampSubassetLength(std::string_view text);

// The ways `now` is more restrictive than `before`, one line each, in the order: main
// length, subasset length, letters, dashes.
std::vector<std::string> FormatRestrictions(const NvAssetNoFormat& before,
                                            const NvAssetNoFormat& now);

// An asset whose number the new format does not take: its number and description.
struct FormatMisfit {
  std::string number;
  std::string description;
};

// Reads every asset of the company in record order (block by block through the block
// file) under the meter "Asset Number Format", and collects those whose number is not
// valid under `format`. REQUIRES: company is open.
std::vector<FormatMisfit> FindAssetsOutsideFormat(NvCompany& company, const NvAssetNoFormat& format,
                                                  Ui& ui);

// "%d assets do not fit ..." with the first ten misfits when more than ten, else all.
std::string FormatMisfitMessage(const std::vector<FormatMisfit>& misfits);

// Sort Order: up to three keys of kSortOrderKeys. The message that refuses it, or nullptr.
const char* SortOrderProblem(std::string_view sort_order);

}  // namespace nv
