// What the BNA Next Dimension import keeps from its start (command 107) until its dialog
// closes: the target company, the profiles, the parameters of the last "Import Data" and
// the line being imported. The frame's own ImportState travels beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "import/bna/bna_profile.h"
#include "import/bna/bna_source.h"
#include "import/bna/conversion_list.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"

namespace nv {

// A line longer than this is still read whole; the grid and the run size their reads by
// the longest line they measured.
inline constexpr size_t kBnaLineBufferSize = 2500;

struct BnaImportState {
  std::optional<std::string> source_path;  // none until "Select File" succeeds
  std::string company_number;              // upper case, 1 to 8 characters
  bool new_company = false;                // "New Company" chosen at the start
  bool adding_to_existing = false;         // "Add assets to existing company" chosen
  BnaProfiles profiles;                    // current and main profile
  int file_type = kBnaTabSeparated;
  std::string checked_groups;  // letters of the checked group boxes
  ImportConversionList definitions;

  // Set at each "Import Data".
  int32_t line_number = 0;  // the line being imported, from 1, comment lines counted
  int implied_decimals = 0;
  DuplicateMode duplicate_mode = DuplicateMode::kDropNewAsset;
  NvAsset current_asset;  // reused for every line of a run
  // Loaded by the conversion language at its first use in a run, written back at its end.
  std::optional<AccountGroupList> account_groups;
};

}  // namespace nv
