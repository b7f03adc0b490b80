// Treats the input as selection criteria, as typed into the selection window and as stored
// in a settings file's "Asset Selection" section: the first byte picks a field (its low six
// bits), schedule T or B (0x40) and exclude (0x80); the rest is the criterion text.
// Checking, tokens, items and matching against a few assets must come back without
// trouble; exclude must take exactly the assets the criterion does not; a stored value read
// and written again must read back the same.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "store/asset/asset.h"
#include "ui/selection/barcode_scan.h"
#include "ui/selection/criterion.h"
#include "ui/selection/saved_selections.h"
#include "ui/selection/selection_match.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

std::vector<nv::NvAsset> Assets() {
  std::vector<nv::NvAsset> assets(3);
  for (int i = 0; i < 3; ++i) {
    nv::NvAsset& a = assets[i];
    a.Clear("BT");
    a.number = nv::NvAssetNo::Parse(std::to_string(i * 50 + 1) + ".1", {6, 2, 0});
    a.description = i == 0 ? "Desk lamp" : "Truck, red *";
    a.location = i == 1 ? "0         " : "01-A";
    a.cash_and_notes = 1234.56 * i;
    a.date_in_service = {1 + i, 15, 2020};
    if (i == 2) {
      a.disposal_code = 'S';
      a.disposal_date = {6, 30, 2024};
      a.pauses = nv::NvAssetPauseDeprInfo{"B", {{{3, 1, 2021}, {}}, {{}, {1, 1, 2021}}}};
    }
    nv::NvAssetSchedule& b = *a.Schedule('B');
    b.method = 3 + i * 10;
    b.asset_type = "AL";
    b.useful_life = {5 * i, i};
    b.business_percent = 100 - i;
  }
  return assets;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static const std::vector<nv::NvAsset> assets = Assets();
  const int field = (data[0] & 0x3f) % nv::kSelectionFieldCount;
  const char schedule = (data[0] & 0x40) != 0 ? 'T' : 'B';
  std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);

  for (const nv::CriterionToken& token : nv::TokenizeCriterion(text)) {
    Check(token.text.size() <= text.size());
  }
  std::optional<std::vector<nv::CriterionItem>> items = nv::ParseCriterion(text);
  if (items) Check(items->size() <= text.size());
  static_cast<void>(nv::ParseCriterionDate(text));
  static_cast<void>(nv::ParseSelectionLife(text));

  std::string entered(text);
  const nv::CriterionError error = nv::ValidateCriterion(field, &entered);
  Check(entered.size() == text.size());
  Check(error != nv::CriterionError::kErrorOnInput || !items ||
        nv::SelectionFields()[field].kind == nv::SelectionKind::kValues);

  nv::KelSelection selection;
  selection.schedule = schedule;
  selection.criteria[field] = {true, std::string(text), (data[0] & 0x80) != 0};
  for (const nv::NvAsset& asset : assets) {
    const bool kept =
        nv::MatchAsset(selection, nv::AssetSelectionValues(asset, schedule, {6, 2, 0}), 0);
    // Exclude takes exactly the assets the criterion does not (a blank text takes all).
    selection.criteria[field].exclude = !selection.criteria[field].exclude;
    const bool other =
        nv::MatchAsset(selection, nv::AssetSelectionValues(asset, schedule, {6, 2, 0}), 0);
    selection.criteria[field].exclude = !selection.criteria[field].exclude;
    Check(kept != other || nv::TrimBlanks(text).empty());
  }

  // The text as a stored value: what reads must write and read back the same.
  nv::KelSelection stored;
  if (nv::ReadSelectionValue(text, 0, &stored)) {
    nv::KelSelection again;
    Check(nv::ReadSelectionValue(nv::SelectionValue(stored), 0, &again));
    Check(again.criteria == stored.criteria);
  }
  nv::KelSelection scanned;
  nv::ApplyScannedCodes(text, &scanned);
  Check(scanned.criteria[nv::kSelAssetNumber].text.size() <= text.size());
  return 0;
}
