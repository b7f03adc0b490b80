// Matching an asset against a selection.
//
// The caller makes the asset's values available once per asset (SelectionAssetValues):
// the asset, the company's asset-number format, and the schedule of the selection, whose
// values the "sched" fields take. An asset without that schedule shows the values of an
// unused (N/A) schedule there: method 13, amounts 0, no type letters.
//
// Values that the asset record does not hold as such:
//   NetBook Value   Basis (Depreciable Basis) less the ending allowed depreciation
//                   (Prior Allowd Dpr + Current Depr)
//   Accum. Allowed, Accum. Allowable   the prior amounts, as the record keeps them
//   Force Full Depr in Final Yr        the record keeps no such flag: never set
#pragma once

#include <optional>
#include <string_view>

#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"
#include "ui/selection/selection.h"

namespace nv {

struct SelectionAssetValues {
  const NvAsset* asset = nullptr;
  NvAssetNoFormat number_format = kNoCompanyAssetNoFormat;
  char schedule_letter = 0;
  const NvAssetSchedule* schedule = nullptr;  // nullptr: the asset lacks the schedule
  double net_book_value = 0;
  bool force_full_depr = false;
};

// REQUIRES: `asset` outlives the values.
SelectionAssetValues AssetSelectionValues(const NvAsset& asset, char schedule_letter,
                                          const NvAssetNoFormat& number_format);

// True when every criterion in use of the fields whose class shares a bit with
// `class_mask` (every field when it is 0) holds for the asset. A criterion whose text is
// blank restricts nothing, whatever its kind; an item whose value cannot be read as the
// field's kind (a date that is no date) matches no asset.
[[nodiscard]] bool MatchAsset(const KelSelection& selection, const SelectionAssetValues& values,
                              int class_mask);

// Values of a criterion as the comparisons read them.
std::optional<double> ParseSelectionAmount(std::string_view text);
std::optional<int> ParseSelectionInteger(std::string_view text);
std::optional<YearsMonths> ParseSelectionLife(std::string_view text);  // "Y" or "Y-M"

// Text order ignoring case and trailing blanks, with the value's "*" (any run), "?" (any one
// character) and "\" (the next character literally): 0 when the value matches the text,
// else negative or positive as the text sorts before or after the value.
[[nodiscard]] int CompareSelectionText(std::string_view text, std::string_view value);

}  // namespace nv
