#include "store/asset/asset_keys.h"

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/file/key_compare.h"

namespace nv {
namespace {

constexpr size_t kCodePiece = 10;
constexpr size_t kAccountPiece = 24;
constexpr size_t kPropertyPiece = 2;
constexpr size_t kDatePiece = 8;
constexpr size_t kLifePiece = 5;
constexpr size_t kUserFieldPiece = 20;

// "%-W.Ws": the first `width` bytes, blanks after a shorter text.
std::string LeftPiece(std::string_view text, size_t width) {
  std::string piece(text.substr(0, width));
  piece.resize(width, ' ');
  return piece;
}

// "%W.Ws": the first `width` bytes, blanks before a shorter text.
std::string RightPiece(std::string_view text, size_t width) {
  text = text.substr(0, width);
  return std::string(width - text.size(), ' ') + std::string(text);
}

std::string CodePiece(std::string_view code) {
  return LeftPiece(TrimBlanks(code).empty() ? "0" : code, kCodePiece);
}

std::string LifePiece(const NvAsset& asset) {
  YearsMonths life;
  if (!asset.schedules.empty()) {
    const NvAssetSchedule& first = asset.schedules.front();
    life = first.sl_life.zero() ? first.useful_life : first.sl_life;
  }
  std::string text = life.months == 0 ? StrPrintf("%2d", life.years)
                                      : StrPrintf("%2d-%d", life.years, life.months);
  return LeftPiece(text, kLifePiece);
}

std::string SortPiece(const NvAsset& asset, char letter) {
  switch (letter) {
    case 'L':
      return CodePiece(asset.location);
    case 'C':
      return CodePiece(asset.category);
    case 'A':
      return LeftPiece(asset.account, kAccountPiece);
    case 'P':
      return RightPiece(asset.property_code, kPropertyPiece);
    case 'D': {
      const Date& date =
          asset.new_used_trade == kTrade ? asset.purchase_date : asset.date_in_service;
      return LeftPiece(FormatSortKeyDate(date), kDatePiece);
    }
    case 'Y':
      return LifePiece(asset);
    default:
      if (letter >= '0' && letter <= '9') {
        size_t field = letter == '0' ? 9 : static_cast<size_t>(letter - '1');
        return LeftPiece(asset.user_fields[field], kUserFieldPiece);
      }
      return {};
  }
}

}  // namespace

std::string AssetNumberKey(const NvAsset& asset, const AssetRecordFormat& format) {
  return asset.number.InFormat(format.asset_no_format).Key();
}

std::string AssetSortKey(const NvAsset& asset, const AssetRecordFormat& format) {
  const NvAssetNoFormat number_format = format.asset_no_format.Normalized();
  std::string key;
  for (char letter : format.sort_order) key += SortPiece(asset, letter);
  key += asset.number.InFormat(number_format).Text();
  key.resize(I2KeyLength(true, format.sort_order, number_format.IsLong()), '\0');
  return key;
}

}  // namespace nv
