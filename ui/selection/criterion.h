// The text of a selection criterion (kinds R and P).
//
//   criterion ::= item { "," item }          empty items are skipped
//   item      ::= value | [value] "-" [value]   a range; either end may be missing
//   value     ::= quoted | plain
//
// Tokens: a comma, a hyphen, a quoted text (from a single or double quote mark up to the
// same mark again, or to the end of the text) or plain text up to the next comma or hyphen.
// Blanks in front of a token are skipped; plain text loses its trailing blanks too. A value
// in quote marks may hold commas and hyphens ("'1-5'" is the life of 1 year 5 months, not a
// range).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace nv {

enum class CriterionTokenKind { kComma, kHyphen, kText };

struct CriterionToken {
  CriterionTokenKind kind;
  std::string text;  // the value of a text token, without its quote marks
  bool quoted = false;
  friend bool operator==(const CriterionToken&, const CriterionToken&) = default;
};

std::vector<CriterionToken> TokenizeCriterion(std::string_view text);

struct CriterionItem {
  bool range = false;
  std::optional<std::string> low;   // the value of a single item, or the range's low end
  std::optional<std::string> high;  // the range's high end
  friend bool operator==(const CriterionItem&, const CriterionItem&) = default;
};

// The items of a criterion; nothing when an item has a second hyphen or two values without
// a separator between them ("1-2-3", "'a'b").
std::optional<std::vector<CriterionItem>> ParseCriterion(std::string_view text);

// A date in a criterion: "%d/%d/%d", "%d-%d-%d", 6 digits (MMDDYY), 8 digits (MMDDYYYY), or
// "//" and "--" for the empty date. Two-digit years below 30 are 20xx, others 19xx; month 1
// to 12 and a day of that month.
std::optional<Date> ParseCriterionDate(std::string_view text);

// What entering a criterion found wrong, with the message shown under the title "Error".
enum class CriterionError { kNone, kInvalidDate, kInvalidInput, kErrorOnInput };
const char* CriterionErrorMessage(CriterionError error);  // "" for kNone

// Checks a criterion as it is entered into `field`: upper case under "upr" (the text is
// changed in place), the characters of "chars" (quote marks, commas and hyphens are
// separators and always allowed), the syntax above for kinds R and P, and every date of a
// date field or of "Depr Paused".
CriterionError ValidateCriterion(int field, std::string* text);

struct KelSelection;
// The first criterion in use, in the table's order, that ValidateCriterion refuses (a
// selection loaded from a settings file was never checked): the export cannot start with
// it. Nothing when every criterion in use is sound.
std::optional<int> FirstInvalidCriterion(const KelSelection& selection);

}  // namespace nv
