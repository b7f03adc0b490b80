#include "ui/selection/selection.h"

#include "base/ascii.h"
#include "ui/screen/attributes.h"

namespace nv {
namespace {

using K = SelectionKind;
using C = SelectionCompare;

constexpr char kAmountAttributes[] = "sched,chars(0-9-.)";
constexpr char kDateAttributes[] = "date,h(*rangedate)";
constexpr char kYesNoAttributes[] = "sched,upr,h(Yes\nNo\n)";
constexpr char kDeprMethodAttributes[] =
    "sched,int,chars(0-9,),len(2),h( 1-ACRS\n 2-Straight Line\n 3-MACRS\n 4-125% DB\n"
    " 5-150% DB\n 6-200% DB\n 7-SYD\n 8-125% DB-SL\n 9-150% DB-SL\n10-200% DB-SL\n11-SYD-SL\n"
    "12-OTHER\n13-N/A\n14-AMT\n15-E & P\n16-100% DB\n21-ACRS Lstd SL\n23-MACRS Lstd SL\n"
    "33-MACRS 150% DB\n)";
constexpr char kConventionAttributes[] =
    "sched,upr,h(M-Mid Month\nQ-Mid Quarter\nY-Half Year\n1-Actual Months\n"
    "2-1st 6 Mo/Full Yr\n3-Six Months\n4-Use Adj Basis\n5-Full Year\n"
    "6-Month After Date Placed in Service\n7-Month Placed in Service\nB-20% Bonus Depr\n)";

constexpr std::array<SelectionField, kSelectionFieldCount> kFields = {{
    {"Asset Number", K::kRange, 1, "chars(0-9A-Za-z-.),upr,barcode", C::kAssetNumber, 30},
    {"Asset Desc.", K::kRange, 1, "", C::kText, 30},
    {"Location", K::kRange, 1, "chars(0-9A-Za-z-.),loc", C::kCode, 30},
    {"Category", K::kRange, 1, "chars(0-9A-Za-z-.),cat", C::kCode, 30},
    {"Acct No/Group", K::kRange, 1, "", C::kCode, 30},
    {"Cash and Notes", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Trade-in", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Date Purchased", K::kRange, 1, kDateAttributes, C::kDate, 30},
    {"Date Placed in Sv", K::kRange, 1, kDateAttributes, C::kDate, 30},
    {"New or Used", K::kValues, 1, "upr,h(New\nUsed\n)", C::kLetterList, 1},
    {"Property Code", K::kValues, 1, "upr,h(*rangevlist)", C::kLetterList, 30},
    {"4797 Type", K::kValues, 1, "upr,h(45\n50\n51\n52\n54\n55\n),len(2)", C::kLetterList, 30},
    {"Disposal Code", K::kValues, 1,
     "upr,h(N-N/A\nA-Abandoned\nE-Exchanged\nT-Transferred\nS-Sold\n)", C::kLetterList, 30},
    {"Disposal Date", K::kRange, 1, kDateAttributes, C::kDate, 30},
    {"Basis", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Subst. Basis", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Subst. ITC Bas.", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"IRC 179 Expense", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Accum. Allowed", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Accum. Allowable", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Bonus Depr.", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Salvage Val.", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"Current Ded.", K::kRange, 2, kAmountAttributes, C::kAmount, 30},
    {"NetBook Value", K::kRange, 4, kAmountAttributes, C::kAmount, 30},
    {"Depr Method", K::kValues, 1, kDeprMethodAttributes, C::kLetterList, 30},
    {"Asset Type", K::kValues, 1,
     "sched,upr,h(A-Auto\nF-Farm Pty\nH-Low Income Housing\nI-Indian Resvtn Pty\nL-Listed Pty\n)",
     C::kTypeLetters, 30},
    {"Amortized", K::kValues, 1, kYesNoAttributes, C::kYesNo, 1},
    {"State Rules", K::kValues, 1, "upr,sched,chars(A-Z)", C::kText, 30},
    {"Business Use", K::kRange, 1, "sched,int,chars(0-9)", C::kInteger, 30},
    {"Life", K::kRange, 1, "sched,h(*rangelife)", C::kLife, 30},
    {"Opt. SL Life", K::kRange, 1, "sched,h(*rangelife)", C::kLife, 30},
    {"Convention", K::kValues, 1, kConventionAttributes, C::kLetterList, 30},
    {"Force Full Depr in Final Yr", K::kValues, 1, kYesNoAttributes, C::kYesNo, 1},
    {"User Field 1", K::kRange, 1, "user_field(0),skipline", C::kText, 30},
    {"User Field 2", K::kRange, 1, "user_field(1)", C::kText, 30},
    {"User Field 3", K::kRange, 1, "user_field(2)", C::kText, 30},
    {"User Field 4", K::kRange, 1, "user_field(3)", C::kText, 30},
    {"User Field 5", K::kRange, 1, "user_field(4)", C::kText, 30},
    {"User Field 6", K::kRange, 1, "user_field(5),skipline", C::kText, 30},
    {"User Field 7", K::kRange, 1, "user_field(6)", C::kText, 30},
    {"User Field 8", K::kRange, 1, "user_field(7)", C::kText, 30},
    {"User Field 9", K::kRange, 1, "user_field(8)", C::kText, 30},
    {"User Field 10", K::kRange, 1, "user_field(9)", C::kText, 30},
    {"Depr Paused", K::kPauses, 1, "sched", C::kPauses, 30},
}};

}  // namespace

std::span<const SelectionField> SelectionFields() {
  return kFields;
}

std::optional<int> FindSelectionField(std::string_view name) {
  for (int i = 0; i < kSelectionFieldCount; ++i) {
    if (EqualIgnoringCase(kFields[i].name, name)) return i;
  }
  return std::nullopt;
}

int BarcodeSelectionField() {
  for (int i = 0; i < kSelectionFieldCount; ++i) {
    if (HasAttribute("barcode", kFields[i].attributes)) return i;
  }
  return kSelAssetNumber;
}

bool IsScheduleField(int field) {
  return field >= 0 && field < kSelectionFieldCount &&
         HasAttribute("sched", kFields[field].attributes);
}

void KelSelection::SwitchOffAll() {
  for (SelectionCriterion& c : criteria) c.in_use = false;
}

bool KelSelection::AnyInUse() const {
  for (const SelectionCriterion& c : criteria) {
    if (c.in_use) return true;
  }
  return false;
}

}  // namespace nv
