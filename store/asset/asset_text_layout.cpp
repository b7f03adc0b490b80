#include "store/asset/asset_text_layout.h"

#include <string>
#include <vector>

namespace nv {
namespace {

using K = TextFieldKind;
using R = TextFieldRole;
using S = NvAssetSchedule;

TextRecordField Asset(std::string_view name, K kind, int width, AssetTextMember member) {
  return {name, kind, width, R::kMember, -1, 0, member, {}, false};
}

TextRecordField Slot(std::string_view name, K kind, int width, int slot, ScheduleTextMember member,
                     R role = R::kMember) {
  return {name, kind, width, role, slot, 0, {}, member, false};
}

std::vector<TextRecordField> BuildLayout() {
  std::vector<TextRecordField> f;
  f.push_back({"Schedules", K::kText, 11, R::kSlotLetters});
  for (int slot = 0; slot < kTextRecordSlots; ++slot) {
    f.push_back(
        Slot("Depreciable Basis", K::kAmount, kTextAmountWidth, slot, &S::depreciable_basis));
    f.push_back(Slot("ITC", K::kAmount, kTextAmountWidth, slot, &S::itc));
    f.push_back(Slot("Further Amount 1", K::kAmount, kTextAmountWidth, slot, &S::further_amount_1));
    f.push_back(Slot("Further Amount 2", K::kAmount, kTextAmountWidth, slot, &S::further_amount_2));
  }
  f.push_back(Asset("Asset No.", K::kAssetNumber, kAssetNumberWidth, &NvAsset::number));
  f.push_back(Asset("Desc.", K::kText, 30, &NvAsset::description));
  f.push_back(Asset("Location", K::kText, 3, &NvAsset::location));
  f.push_back(Asset("Category", K::kText, 3, &NvAsset::category));
  f.push_back(Asset("Acct No./Grp.", K::kText, 24, &NvAsset::account));
  f.push_back(Asset("Cash and Notes", K::kAmount, kTextAmountWidth, &NvAsset::cash_and_notes));
  f.push_back(Asset("Trade In", K::kAmount, kTextAmountWidth, &NvAsset::trade_in));
  f.push_back(Asset("Purchase Date", K::kDate, 8, &NvAsset::purchase_date));
  f.push_back(Asset("Date in Service", K::kDate, 8, &NvAsset::date_in_service));
  f.push_back(Asset("New/Used/Trade", K::kCharacter, 1, &NvAsset::new_used_trade));
  f.push_back(Asset("Prior Short Years", K::kInteger, 2, &NvAsset::prior_short_years));
  f.push_back(Asset("Property Code", K::kText, 2, &NvAsset::property_code));
  f.push_back(Asset("4797 Type", K::kInteger, 2, &NvAsset::type_4797));
  for (int i = 0; i < kTextRecordUserFields; ++i) {
    f.push_back({"User Field", K::kText, 20, R::kUserField, -1, i});
  }
  for (int slot = 0; slot < kTextRecordSlots; ++slot) {
    TextRecordField method = Slot("Depr. Method", K::kInteger, 2, slot, &S::method);
    method.block_start = true;
    f.push_back(method);
    f.push_back(Slot("Listed", K::kFlag, 1, slot, {}, R::kListedFlag));
    f.push_back(Slot("Amortized", K::kFlag, 1, slot, &S::amortized));
    f.push_back(Slot("Asset Type", K::kText, 4, slot, &S::asset_type, R::kAssetType));
    f.push_back(Slot("Business Percent", K::kInteger, 3, slot, &S::business_percent));
    f.push_back(Slot("Useful Life", K::kLife, 5, slot, &S::useful_life));
    f.push_back(Slot("SL Life", K::kLife, 5, slot, &S::sl_life));
    f.push_back(Slot("Substitute Basis", K::kAmount, kTextAmountWidth, slot, &S::substitute_basis));
    f.push_back(Slot("Subst. ITC Basis", K::kAmount, kTextAmountWidth, slot, &S::subst_itc_basis));
    f.push_back(Slot("ITC Code", K::kInteger, 1, slot, &S::itc_code));
    f.push_back(Slot("Convention", K::kCharacter, 1, slot, &S::convention));
    f.push_back(Slot("Sec. 179 Expense", K::kAmount, kTextAmountWidth, slot, &S::sec179_expense));
    f.push_back(
        Slot("Prior Allowd Dpr", K::kAmount, kTextAmountWidth, slot, &S::prior_allowed_depr));
    f.push_back(
        Slot("Prior Allowble Dpr", K::kAmount, kTextAmountWidth, slot, &S::prior_allowable_depr));
    f.push_back(Slot("Bonus Depr", K::kAmount, kTextAmountWidth, slot, &S::bonus_depr));
    f.push_back(Slot("Salvage Value", K::kAmount, kTextAmountWidth, slot, &S::salvage_value));
    f.push_back(Slot("Current Depr", K::kAmount, kTextAmountWidth, slot, &S::current_depr));
  }
  f.push_back(Asset("Disposal Code", K::kCharacter, 1, &NvAsset::disposal_code));
  TextRecordField transferred = Asset("Transferred To", K::kAssetNumber, kAssetNumberWidth, {});
  transferred.role = R::kTransferredTo;
  f.push_back(transferred);
  f.push_back(Asset("Amount Disposed", K::kAmount, kTextAmountWidth, &NvAsset::amount_disposed));
  f.push_back(Asset("Disposal Date", K::kDate, 8, &NvAsset::disposal_date));
  f.push_back(Asset("Sale Amount", K::kAmount, kTextAmountWidth, &NvAsset::sale_amount));
  return f;
}

}  // namespace

std::span<const TextRecordField> TextRecordLayout() {
  static const std::vector<TextRecordField> layout = BuildLayout();
  return layout;
}

}  // namespace nv
