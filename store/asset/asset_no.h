// NvAssetNo: an asset number, a main part of up to 10 characters and a subasset number,
// read and shown under the company's NvAssetNoFormat.
//
// Text form "%*.*s.%*.*d": the main part right-aligned in main length characters, ".", the
// subasset zero-padded to subasset length digits; under format 6, 2 the number 123 with
// subasset 1 is "   123.01". A free-form number's text form is its text as entered. The
// text form is the number's .I1 key and is what the asset record stores.
//
// Rules for an entry (not free-form): leading blanks are allowed, a blank inside is not;
// digits count toward the main part before the "." and toward the subasset after it,
// leading zeros of either part not counted; letters only with the letters flag and only
// before the "."; "-" only with the dashes flag and only before the "." (it counts toward
// the main part); at most one "."; nothing else. Valid when no rule is broken, the main part
// counts at most main length and the subasset at most subasset length. A free-form number is
// valid with 1 to main length characters.
//
// An entry without any main part (empty, or only ".5") is invalid: an asset needs a number
// to be found by, and its key would be blanks only.
#pragma once

#include <string>
#include <string_view>

#include "store/asset/asset_no_format.h"

namespace nv {

class NvAssetNo {
 public:
  // An empty number under the format of a number without a company (10, 3, letters).
  NvAssetNo() = default;
  explicit NvAssetNo(const NvAssetNoFormat& format) : format_(format.Normalized()) {}

  // Reads an entry: blanks trimmed, upper-cased unless free-form; the main part is the text
  // before the first "." and the subasset the number after it (0 without one). A free-form
  // entry keeps its whole text as the main part, "." included, since its text form is the
  // text as entered. A main part longer than main length first loses leading zeros beyond
  // it (they do not count, so "0000000123" under 6 is the valid "000123"), then is cut.
  static NvAssetNo Parse(std::string_view text, const NvAssetNoFormat& format);
  // As above with the subasset given separately; it replaces any subasset in the text and
  // must be 1 to 9, 99 or 999 by the subasset length.
  static NvAssetNo Parse(std::string_view text, int subasset, const NvAssetNoFormat& format);

  // The same number under another format (the company's, for a number made elsewhere): the
  // main part and subasset read again under it; this number when the format is the same.
  NvAssetNo InFormat(const NvAssetNoFormat& format) const;

  const NvAssetNoFormat& format() const { return format_; }
  const std::string& main() const { return main_; }
  int subasset() const { return subasset_; }
  bool valid() const { return valid_; }
  // No main part and subasset 0: the number of a new asset, or no Transferred To.
  bool empty() const { return main_.empty() && subasset_ == 0; }

  // The text form; a subasset wider than its digits (only in an invalid number) is printed
  // whole, so the text is then longer than the key length.
  std::string Text() const;
  // The text form, except that subasset 0 shows as the main part followed by subasset
  // length + 1 blanks.
  std::string DisplayText() const;
  // Main length + subasset length + 1.
  [[nodiscard]] int KeyLength() const { return format_.KeyLength(); }
  // The .I1 key: the text form in exactly key length bytes, zero bytes after a shorter
  // (free-form) text.
  std::string Key() const;

  friend bool operator==(const NvAssetNo&, const NvAssetNo&) = default;

 private:
  NvAssetNoFormat format_ = kNoCompanyAssetNoFormat;
  std::string main_;
  int subasset_ = 0;
  bool valid_ = false;
};

}  // namespace nv
