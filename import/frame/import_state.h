// What one run of an importer carries from step to step. Only one import runs at a time;
// the frame makes one ImportState when the run starts and drops it when the run ends.
#pragma once

#include <array>
#include <map>
#include <string>

#include "store/codes/user_fields.h"

namespace nv {

struct ImportState {
  std::string source_path;     // full path of the chosen source file
  std::string source_folder;   // its folder, with the trailing separator
  std::string company_number;  // upper case, 1 to 8 characters
  std::string source_header;   // the source company header as read (importer's layout)
  // For each destination field id, the matched source item id (a missing id: unmatched).
  std::map<int, int> field_matches;
  // Labels given to the company's user fields from the matched source items (20 each).
  std::array<std::string, kUserFieldCount> user_field_labels;
  // For each source book id, the schedule letter that receives it.
  std::map<int, char> book_matches;
  bool new_company = false;   // fill the company record from the source
  bool setup_screen = false;  // show the company screen before copying
  // The backup made before the import changed an existing company (with the separator);
  // empty when none was made.
  std::string backup_folder;

  int FieldMatch(int destination) const {
    auto it = field_matches.find(destination);
    return it == field_matches.end() ? 0 : it->second;
  }
};

}  // namespace nv
