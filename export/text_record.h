// Writing one asset as a record of the whole-company text file (the layout is
// store/asset/asset_text_layout.h).
//
// Field texts: a text as stored; an integer in decimal, 0 as nothing; an amount below half a
// cent in magnitude as nothing, else with two decimals (none for a company that rounds to
// whole dollars), a minus sign in front and no thousands separators, in fixed records
// right-aligned in 11 characters; a date as MM/DD/YY, the empty date as nothing; a life as
// "YY   " (whole years) or "YY-MM"; a flag as "Y" or "N"; an asset number as its text form.
//
// Fixed records cut each text to its width and pad it with blanks; nothing stands between
// fields. Delimited records cut a text to its width and strip its blanks, unless it holds
// the separator or a double quote: then it is written whole between double quotes, each
// quote inside doubled. Every field, the last too, is followed by the separator.
//
// Decisions where the layout leaves a choice:
// - An amount that needs more than 11 characters is written as 11 asterisks in every record
//   type: cutting it would give another, plausible amount, and the importer reads the
//   asterisks as 0, which a control total shows.
// - A record longer than the importer's line (1,200 bytes, line end included) is refused
//   rather than written: the importer would split it into two broken records. Only texts
//   full of separators and quotes in a delimited record come near it.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "store/asset/asset.h"
#include "store/company/company_record.h"

namespace nv {

// The "Record Type" choices, in their order.
enum class TextRecordType { kTab, kComma, kFixedLines, kFixedNoLines };

std::span<const std::string_view> RecordTypeOptions();

// The separator of delimited records; '\0' for fixed records.
char RecordSeparator(TextRecordType type);

// The five slot letters for a company's schedule letters: "BATSO", the first of "OSBTA"
// that the company lacks replaced by "C", then each of the company's letters not yet in the
// slots put in place of the first slot letter that the company lacks.
std::string SlotLetters(std::string_view company_letters);

// Writes the records of one company's assets; the slot letters are worked out once.
class TextRecordWriter {
 public:
  TextRecordWriter(const NvCompanyRecord& company, TextRecordType type);
  // As WriteAssetRecord.
  [[nodiscard]] bool Write(const NvAsset& asset, std::string& out) const;

 private:
  void Field(std::string_view text, int width, std::string& out) const;

  std::string slot_letters_;
  bool round_dollars_;
  int asset_number_width_;
  TextRecordType type_;
  char separator_;
};

// Appends the asset's record to `out`, with CR LF unless the type is kFixedNoLines. False
// (nothing appended) when the record would be longer than kTextRecordMaxLength.
[[nodiscard]] bool WriteAssetRecord(const NvAsset& asset, const NvCompanyRecord& company,
                                    TextRecordType type, std::string& out);

}  // namespace nv
