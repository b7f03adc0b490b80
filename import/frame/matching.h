// The frame's matching steps: the panel with the importer's items, and the match tables
// of the ImportState written from what the person paired.
#pragma once

#include <string>
#include <vector>

#include "import/frame/import_frame.h"

namespace nv {

struct MatchItem {
  int id = 0;  // destinations from 201, sources from 101
  std::string text;
};

struct FieldMatching {
  std::vector<MatchItem> destinations;
  std::vector<MatchItem> sources;
  std::vector<std::pair<int, int>> preset;  // (destination, source) placed before the panel
  // Destination ids that stand for the company's user fields 1 to 10, in order (0: none).
  std::vector<int> user_field_destinations;
};

// "FAS to KEL data field conversion": writes field_matches (every destination, 0 when
// unpaired) and, for the user-field destinations, the labels the company's user fields
// take (the paired source's text, at most 20 characters; "" when unpaired). False on
// Cancel.
bool MatchFields(ImportRun& run, const FieldMatching& matching);

struct BookMatching {
  // One destination per schedule of the company, from 201, with the schedule's letter.
  std::vector<MatchItem> schedules;
  std::string letters;           // the letter of each destination, in order
  std::vector<MatchItem> books;  // from 101
  std::vector<std::pair<int, int>> preset;
};

// "FAS to KEL book conversion": every schedule must receive a book ("All items in the
// left column must have matches."). Writes book_matches: for each book, the letter of the
// schedule it was paired with. False on Cancel.
bool MatchBooks(ImportRun& run, const BookMatching& matching);

}  // namespace nv
