// For tests and benchmarks: AICPA reports written line by line the way the product prints
// them. The columns are the report's own, written out here by hand: labels from column 1,
// book cells of 15 characters from column 41 (values right-aligned), book headings of 15
// characters from column 44, single values from column 40 (the asset number from 41),
// accounts from column 5 with their numbers from column 43.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nv::testing {

inline std::string PadTo(std::string text, size_t column) {
  if (text.size() < column) text.resize(column, ' ');
  return text;
}

// A row of book values: " LABEL", blanks to column 41, one right-aligned cell per book.
inline std::string BookRow(std::string_view label, const std::vector<std::string>& cells) {
  std::string line = PadTo(" " + std::string(label), 41);
  for (const std::string& cell : cells) {
    line += std::string(cell.size() < 15 ? 15 - cell.size() : 0, ' ') + cell;
  }
  return line;
}

// The book heading line: headings left-aligned in cells of 15 from column 44.
inline std::string HeadingLine(const std::vector<std::string>& headings) {
  std::string line(44, ' ');
  for (const std::string& heading : headings) line += PadTo(heading, 15);
  return line;
}

// A row of one value starting at `column` (40 for most, 41 for the asset number).
inline std::string ValueRow(std::string_view label, std::string_view value, size_t column = 40) {
  return PadTo(" " + std::string(label), column) + std::string(value);
}

// An account row: the label from column 5, the account number from column 43.
inline std::string AccountRow(std::string_view label, std::string_view account) {
  return PadTo("     " + std::string(label), 43) + std::string(account);
}

// The head of the report's first page: the title line with the company name and the
// report date, the period line, filler down to line 20, a blank line 21 and the heading
// line 22 (the headings are looked for from line 21, after a short line).
inline std::vector<std::string> ReportHead(std::string_view company, std::string_view period_line,
                                           const std::vector<std::string>& headings) {
  std::vector<std::string> lines;
  lines.push_back("Asset Detail Report - Federal Basis   " + std::string(company) +
                  "            12/31/2024");
  lines.push_back(std::string(period_line));
  while (lines.size() < 20) lines.push_back("  Prepared for the depreciation file of the client");
  lines.push_back("");
  lines.push_back(HeadingLine(headings));
  return lines;
}

// Lines joined with CR LF, as the product saves its reports.
inline std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace nv::testing
