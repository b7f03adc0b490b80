// The asset record: an NvAsset as the tab-separated text that its block chain in the block
// file holds (store/file/record_fields.h gives the field rules: every field followed by a tab,
// texts trimmed and cut keeping their last characters, amounts "%.*f" in at most 12
// characters, dates "%2.2d%2.2d%4.4d" or empty).
//
// General section:
//   Asset No. (text form, key length), Desc. (30), Location (10), Category (10),
//   Acct No./Grp. (24), Cash and Notes, Trade In, Purchase Date, Date in Service,
//   New/Used/Trade (1), Prior Short Years (1 digit), Property Code (2), 4797 Type (2 digits),
//   "10", User Field 1 .. 10 (20 each)
// Tagged sections, each starting with its tag field:
//   "D0"        Disposal Code (1, "N" as blank), Transferred To (Traded To for code "E"),
//               Amount Disposed ($), Disposal Date, Sale Amount, Asset Codes (5), 4 empty
//   "S"+letter  per schedule letter of the asset that the company has, in the asset's order:
//     method other than 13 (25 fields):
//               Depr. Method (2 digits); amortization (empty, else Am. Code Section or
//               "Yes" when that is blank); Asset Type (10); Business Percent (3 digits);
//               Useful Life "%d-%d"; SL Life "%d-%d"; Substitute Basis; Subst. ITC Basis;
//               ITC Code (1 digit, code 5 as "5(%d,%d)" with ITC Percent and ITC Bas Red
//               Pct, at most 8); Convention (1); Sec. 179 Expense; Prior Allowd Dpr; Prior
//               Allowble Dpr; Bonus Depr; Salvage Value; Current Depr; Misc Codes (10);
//               State (2); empty; extra amount "4:" + amount ("4:?" + amount when marked,
//               empty when none); empty; Depreciable Basis; ITC; two further amounts
//     method 13, N/A (the same 25 places):
//               "13", empty, Asset Type (10), 3 empty, Substitute Basis, 14 empty,
//               Depreciable Basis, ITC, two further amounts
//   "P*"        only with pauses: pause text (10), start and end date per interval, then
//               two empty dates
//   "S"+letter  sections kept for letters the company does not have (below)
//   "END"
//
// Decisions where the layout leaves a choice:
// - Asset numbers are texts like any other, so their text form is stored trimmed ("123.01");
//   reading parses them under the company's format, which restores the alignment.
// - An asset number without a main part and subasset 0 (no Transferred To, say) is an
//   empty field rather than the text form of nothing ("      .00"); both read back alike.
// - A code-5 ITC field longer than 8 characters keeps its first 8, so that the code and the
//   ITC Percent survive; reading accepts the missing ")".
// - An "S" section for a letter the company does not have (a schedule deleted since, or a
//   record written for another schedule list) is kept as read, field by field, and written
//   back. The asset cannot use it, but it is the only copy of that book's figures, and
//   rewriting an asset (a replace) should not destroy what it did not mean to change; were
//   the company to define the letter again, the main program would meet the same section in
//   a record left untouched. Two limits keep it from harming the main program: it is written
//   last, after "P*", so that a reader that stops early loses only it, and it is dropped
//   when it would make the record longer than the main program's buffer for one record,
//   (2 x company schedules + 3) x 145 bytes (RecordBudget). A tag without a letter ("S"
//   alone) has no letter to write it back under and is dropped.
// - A blank or control byte in the company's schedule letters makes no readable tag; such
//   a letter's schedule is not written.
// - A later section of the same tag replaces an earlier one. Tags other than "D", "P", "S"
//   and "END" are skipped one field at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"
#include "store/file/block_chain.h"

namespace nv {

// What the record's form depends on, taken from the company record
// (AssetRecordFormatOf in store/company/company_record.h).
struct AssetRecordFormat {
  NvAssetNoFormat asset_no_format;  // numbers are parsed under it
  bool round_dollars = false;       // amounts with 0 decimals instead of 2
  std::string schedule_letters;     // the company's schedules, in order
  std::string sort_order;           // for the .I2 key
};

inline constexpr int kRecordUserFieldCount = 10;  // the count that the record writes
inline constexpr int kScheduleSectionFields = 25;

// Bytes the main program sets aside for one serialized asset record: two blocks per schedule
// of the company and three more.
inline constexpr size_t RecordBudget(size_t company_schedules) {
  return (2 * company_schedules + 3) * kBlockLength;
}

std::string SerializeAssetRecord(const NvAsset& asset, const AssetRecordFormat& format);

// Replaces the asset's content with the record's; the record number and the stored keys
// are left for the reader to set. Never fails: missing fields read as empty, and a record
// without "END" ends with its data (or at its first zero byte).
//
// The asset gets the company's schedule letters, every schedule N/A with all its fields
// cleared until its "S" section is read (the whole asset starts cleared, so that what is
// read depends on the bytes alone); a blank Location or Category becomes "0" and nine
// blanks; the user-field count says how many values follow (beyond the tenth skipped,
// missing ones empty); numbers are parsed under the company's format.
void ParseAssetRecord(std::string_view bytes, const AssetRecordFormat& format, NvAsset* asset);

}  // namespace nv
