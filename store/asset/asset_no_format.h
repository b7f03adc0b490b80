// The company's asset-number format: how long the main part may be, how many digits the
// subasset part has, and which characters the main part may hold.
#pragma once

#include <string>

namespace nv {

struct NvAssetNoFormat {
  static constexpr int kLetters = 0x01;   // letters allowed in the main part
  static constexpr int kDashes = 0x02;    // "-" allowed in the main part
  static constexpr int kFreeForm = 0x80;  // any text of 1 to main length characters
  static constexpr int kMaxMainLength = 10;
  static constexpr int kMaxSubassetLength = 3;

  int main_length = 6;      // 1 .. 10
  int subasset_length = 2;  // 1 .. 3
  int flags = 0;

  bool letters() const { return (flags & kLetters) != 0; }
  bool dashes() const { return (flags & kDashes) != 0; }
  bool free_form() const { return (flags & kFreeForm) != 0; }
  // Main length above 6, subasset length other than 2, or letters allowed. The company
  // record of a company with the short format (6, 2, no letters) has no version and format
  // fields.
  [[nodiscard]] bool IsLong() const { return main_length > 6 || subasset_length != 2 || letters(); }
  // The company record leaves out its version and format fields only for the format that
  // a record without them means, 6, 2 and no flags. A shorter main part or the dashes flag
  // is not "long", but leaving the fields out would turn such a format into 6, 2, 0 on the
  // next read, and change the key length under an index written with the old one.
  [[nodiscard]] bool NeedsRecordFields() const {
    return main_length != 6 || subasset_length != 2 || flags != 0;
  }
  // .I1 key length and the length of the number's text form.
  [[nodiscard]] int KeyLength() const { return main_length + subasset_length + 1; }
  // "%d char (%s, %s), %d digit subasset", e.g. "6 char (numeric only, no dashes), 2 digit
  // subasset".
  std::string DisplayText() const;
  // The format with main length held to 1 .. 10 and subasset length to 1 .. 3: a damaged
  // company record may carry any numbers, and the lengths size texts and keys.
  NvAssetNoFormat Normalized() const;

  friend bool operator==(const NvAssetNoFormat&, const NvAssetNoFormat&) = default;
};

// The format of a number that belongs to no company: 10, 3, letters allowed.
inline constexpr NvAssetNoFormat kNoCompanyAssetNoFormat{10, 3, NvAssetNoFormat::kLetters};

}  // namespace nv
