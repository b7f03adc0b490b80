// Money amounts: doubles in dollars. As text an amount has two decimals ("%.2f"), or, for a
// company that rounds to whole dollars, none: the amount is rounded half away from zero
// first (1234.56 is "1235", 2.5 is "3", -2.5 is "-3"). A result that would read "-0.00" or
// "-0" is written without the sign, and an amount that is not a finite number as zero.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nv {

std::string FormatMoney(double amount, bool round_dollars);

// The amount with `decimals` decimals, exactly as "%.*f" writes it.
std::string FixedDecimals(double amount, int decimals);

// The amount rounded to whole dollars, half away from zero.
double RoundDollars(double amount);

// Reads an amount as people write it: blanks around it, an optional "-" or "+" sign, an
// optional "$", digits with optional "," group separators, an optional "." with digits,
// or the whole amount in parentheses for a negative one ("(1,234.50)"). nullopt for any
// other text, including an empty one.
std::optional<double> ParseMoney(std::string_view text);

}  // namespace nv
