// How the conversion language reads and writes its values. Every value is a text; numbers,
// dates and lives are read from texts the way the old C library calls read them (a bad
// number reads as 0) and written back as texts.
#pragma once

#include <string>
#include <string_view>

#include "base/date.h"

namespace nv::bna {

// The number at the start of the text as atof reads it: blanks, an optional sign, digits
// with an optional "." and decimals; anything after is ignored and a text without digits
// reads as 0. No exponents, no "inf" or "nan".
[[nodiscard]] double ReadNumber(std::string_view text);
// The integer at the start of the text as atol reads it, held within +-10^15.
[[nodiscard]] long long ReadInteger(std::string_view text);
// ReadInteger held within the range of int.
[[nodiscard]] int ReadInt(std::string_view text);

// "%.2f", but never "-0.00"; a result that is not a finite number is written as 0.
std::string FormatAmount(double amount);
// "%10.2f" under the same rules.
std::string FormatAmountWidth10(double amount);

// A life of years and months: "%2d" of the years when the months are 0, else "%2d-%d".
std::string FormatLife(long long years, long long months);
// The same for a number of months, cut into whole years and the months left over.
std::string FormatLifeOfMonths(long long months);

// A date text "MM/DD/YYYY" (one-digit months and days and two-digit years allowed, blanks
// and a leading double quote skipped, anything after the year ignored). Two-digit years
// below 30 are 20xx, the others 19xx. A month or day of 0, or a text that is no date, is
// the empty date.
[[nodiscard]] Date ReadDateText(std::string_view text);
// "%2.2d/%2.2d/%4.4d"; the empty date is "00/00/0000".
std::string FormatDateText(const Date& date);

// An amount as the BNA importer reads one: blanks before it skipped, a leading "(" makes it
// negative, commas removed, and a text without a decimal point divided by 10 to the power
// of the implied decimals.
[[nodiscard]] double ReadBnaAmount(std::string_view text, int implied_decimals);

// The text without one pair of enclosing double quotes (a text of at least two characters
// that begins and ends with one).
std::string_view WithoutEnclosingQuotes(std::string_view text);

// Whether a table pattern matches a key, case sensitive: "?" matches any one character,
// "*" one or more characters, every other character itself; both must end together.
[[nodiscard]] bool MatchTablePattern(std::string_view pattern, std::string_view text);

}  // namespace nv::bna
