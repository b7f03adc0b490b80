#include "export/text_record.h"

#include <array>
#include <cmath>
#include <type_traits>
#include <variant>

#include "base/money.h"
#include "base/str_format.h"
#include "store/asset/asset_text_layout.h"

namespace nv {
namespace {

constexpr std::array<std::string_view, 4> kRecordTypeOptions = {
    "Tab Delimited Records", "Comma Delimited Records",
    "Fixed Records with CR/LF after each record", "Fixed Records w/o CR/LF"};

std::string IntegerText(int value) {
  return value == 0 ? std::string() : StrPrintf("%d", value);
}

std::string AmountText(double amount, bool round_dollars, bool fixed) {
  if (!(std::fabs(amount) >= 0.005)) return {};
  std::string text = FormatMoney(amount, round_dollars);
  if (text.size() > static_cast<size_t>(kTextAmountWidth)) {
    return std::string(kTextAmountWidth, '*');
  }
  if (fixed) text.insert(0, kTextAmountWidth - text.size(), ' ');
  return text;
}

std::string DateText(const Date& date) {
  if (date.empty()) return {};
  return StrPrintf("%2.2d/%2.2d/%2.2d", date.month % 100, date.day % 100, date.year % 100);
}

std::string LifeText(const YearsMonths& life) {
  if (life.months == 0) return StrPrintf("%2.2d   ", life.years % 100);
  return StrPrintf("%2.2d-%2.2d", life.years % 100, life.months % 100);
}

std::string NumberText(const NvAssetNo& number) {
  return number.empty() ? std::string() : number.Text();
}

std::string CharacterText(char c) {
  return std::string(1, c == '\0' ? ' ' : c);
}

// The text of a plain member, by its kind.
template <typename T>
std::string MemberText(const T& value, TextFieldKind kind, bool round_dollars, bool fixed) {
  if constexpr (std::is_same_v<T, std::string>) {
    return value;
  } else if constexpr (std::is_same_v<T, double>) {
    return AmountText(value, round_dollars, fixed);
  } else if constexpr (std::is_same_v<T, bool>) {
    return std::string(1, value ? 'Y' : 'N');
  } else if constexpr (std::is_same_v<T, int>) {
    return IntegerText(value);
  } else if constexpr (std::is_same_v<T, char>) {
    return CharacterText(value);
  } else if constexpr (std::is_same_v<T, Date>) {
    return DateText(value);
  } else if constexpr (std::is_same_v<T, YearsMonths>) {
    return LifeText(value);
  } else {
    static_assert(std::is_same_v<T, NvAssetNo>);
    (void)kind;
    return NumberText(value);
  }
}

}  // namespace

std::span<const std::string_view> RecordTypeOptions() {
  return kRecordTypeOptions;
}

char RecordSeparator(TextRecordType type) {
  switch (type) {
    case TextRecordType::kTab:
      return '\t';
    case TextRecordType::kComma:
      return ',';
    default:
      return '\0';
  }
}

std::string SlotLetters(std::string_view company_letters) {
  const auto has = [&](char letter) {
    return company_letters.find(letter) != std::string_view::npos;
  };
  std::string slots = "BATSO";
  for (char letter : std::string_view("OSBTA")) {
    if (!has(letter)) {
      slots[slots.find(letter)] = 'C';
      break;
    }
  }
  for (char letter : company_letters) {
    if (letter == ' ' || slots.find(letter) != std::string::npos) continue;
    for (char& slot : slots) {
      if (!has(slot)) {
        slot = letter;
        break;
      }
    }
  }
  return slots;
}

TextRecordWriter::TextRecordWriter(const NvCompanyRecord& company, TextRecordType type)
    : slot_letters_(SlotLetters(company.schedule_letters)),
      round_dollars_(company.round_dollars),
      asset_number_width_(company.asset_no_format.KeyLength()),
      type_(type),
      separator_(RecordSeparator(type)) {}

void TextRecordWriter::Field(std::string_view text, int width, std::string& out) const {
  const size_t w = static_cast<size_t>(width);
  if (separator_ == '\0') {
    const std::string_view cut = text.substr(0, w);
    out.append(cut);
    out.append(w - cut.size(), ' ');
    return;
  }
  if (text.find(separator_) == std::string_view::npos && text.find('"') == std::string_view::npos) {
    std::string_view cut = text.substr(0, w);
    const size_t first = cut.find_first_not_of(' ');
    cut = first == std::string_view::npos ? std::string_view() : cut.substr(first);
    cut = cut.substr(0, cut.find_last_not_of(' ') + 1);
    out.append(cut);
  } else {
    out.push_back('"');
    for (char c : text) {
      if (c == '"') out.push_back('"');
      out.push_back(c);
    }
    out.push_back('"');
  }
  out.push_back(separator_);
}

bool TextRecordWriter::Write(const NvAsset& asset, std::string& out) const {
  const bool fixed = separator_ == '\0';
  const NvAssetSchedule empty_schedule;  // N/A, every value cleared
  std::array<const NvAssetSchedule*, kTextRecordSlots> slots{};
  for (int i = 0; i < kTextRecordSlots; ++i) {
    const NvAssetSchedule* schedule = asset.Schedule(slot_letters_[i]);
    slots[i] = schedule != nullptr ? schedule : &empty_schedule;
  }
  const size_t start = out.size();
  std::string text;
  for (const TextRecordField& field : TextRecordLayout()) {
    const int width = field.width == kAssetNumberWidth ? asset_number_width_ : field.width;
    const NvAssetSchedule* schedule = field.slot >= 0 ? slots[field.slot] : nullptr;
    switch (field.role) {
      case TextFieldRole::kSlotLetters:
        text = slot_letters_;
        break;
      case TextFieldRole::kUserField:
        text = asset.user_fields[field.index];
        break;
      case TextFieldRole::kListedFlag:
        text.assign(1, schedule->asset_type.find('L') != std::string::npos ? 'Y' : 'N');
        break;
      case TextFieldRole::kAssetType: {
        text = schedule->asset_type;
        const size_t l = text.find('L');
        if (l != std::string::npos) text.erase(l, 1);
        break;
      }
      case TextFieldRole::kTransferredTo:
        text = NumberText(asset.disposal_code == kDisposalExchanged ? asset.traded_to
                                                                    : asset.transferred_to);
        break;
      case TextFieldRole::kMember:
        if (schedule != nullptr) {
          text = std::visit(
              [&](auto member) -> std::string {
                if constexpr (std::is_same_v<decltype(member), std::monostate>) {
                  return {};
                } else {
                  return MemberText(schedule->*member, field.kind, round_dollars_, fixed);
                }
              },
              field.schedule_member);
        } else {
          text = std::visit(
              [&](auto member) -> std::string {
                if constexpr (std::is_same_v<decltype(member), std::monostate>) {
                  return {};
                } else {
                  return MemberText(asset.*member, field.kind, round_dollars_, fixed);
                }
              },
              field.asset_member);
        }
        break;
    }
    Field(text, width, out);
  }
  if (type_ != TextRecordType::kFixedNoLines) out.append("\r\n");
  if (out.size() - start > kTextRecordMaxLength) {
    out.resize(start);
    return false;
  }
  return true;
}

bool WriteAssetRecord(const NvAsset& asset, const NvCompanyRecord& company, TextRecordType type,
                      std::string& out) {
  return TextRecordWriter(company, type).Write(asset, out);
}

}  // namespace nv
