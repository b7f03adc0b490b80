// FAS for Windows source records for the tests, written from the layouts: a record is a
// number of comma-separated fields, empty but those the test places by field number.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/faswin/faswin_source.h"

namespace nv::faswin::testing {

// Every data line of a CSV book.
inline std::vector<CommaRecord> AllRows(const CsvBook& book) {
  std::vector<CommaRecord> rows;
  CommaRecordReader reader = book.Rows();
  CommaRecord row;
  while (reader.Next(&row)) rows.push_back(std::move(row));
  return rows;
}

// `count` fields, field n (from 1) given by the pairs, the rest empty.
inline std::string Record(size_t count,
                          std::initializer_list<std::pair<size_t, std::string_view>> fields) {
  std::vector<std::string> texts(count);
  for (const auto& [number, text] : fields) texts.at(number - 1) = text;
  std::string line;
  for (size_t i = 0; i < count; ++i) line += (i == 0 ? "" : ",") + texts[i];
  return line;
}

inline std::string Lines(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace nv::faswin::testing
