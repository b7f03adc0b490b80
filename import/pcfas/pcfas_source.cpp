#include "import/pcfas/pcfas_source.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace nv {
namespace {

constexpr int kCtrlZ = 0x1A;

// A slot's text: up to its first zero byte, without trailing blanks.
std::string SlotText(std::string_view bytes, size_t offset, size_t width) {
  std::string_view text = bytes.substr(offset, width);
  text = text.substr(0, text.find('\0'));
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

std::optional<PcFasCompany> ParsePcFasCompany(std::string_view bytes) {
  if (bytes.size() < kPcFasHeaderSize) return std::nullopt;
  PcFasCompany company;
  company.name = SlotText(bytes, kPcFasNameOffset, kPcFasNameWidth);
  company.round_dollars = bytes[kPcFasRoundDollarsOffset] == 'Y';
  for (int i = 0; i < kPcFasLabelCount; ++i) {
    const PcFasTextSlot& slot = kPcFasLabelSlots[static_cast<size_t>(i)];
    company.labels[static_cast<size_t>(i)] = SlotText(bytes, slot.offset, slot.width);
  }
  for (int b = 0; b < kPcFasBookCount; ++b) {
    company.books[static_cast<size_t>(b)] =
        bytes[kPcFasBooksOffset + static_cast<size_t>(b)] == 'Y';
  }
  return company;
}

PcFasLayout PcFasLayoutFor(size_t field_count) {
  return field_count < kPcFasLongLayoutFields ? PcFasLayout::kShort : PcFasLayout::kLong;
}

PcFasMasterReader::PcFasMasterReader(ReadBytes read, size_t chunk_size)
    : read_(std::move(read)), buffer_(std::max<size_t>(chunk_size, 2)) {}

PcFasMasterReader PcFasMasterReader::FromBytes(std::string_view bytes, size_t chunk_size) {
  auto taken = std::make_shared<size_t>(0);
  return PcFasMasterReader(
      [bytes, taken](char* buffer, size_t capacity) {
        const size_t n = std::min(capacity, bytes.size() - *taken);
        if (n > 0) std::memcpy(buffer, bytes.data() + *taken, n);
        *taken += n;
        return n;
      },
      chunk_size);
}

bool PcFasMasterReader::Fill() {
  if (at_eof_) return false;
  if (at_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
    end_ -= at_;
    at_ = 0;
  }
  const size_t room = buffer_.size() - end_;
  const size_t got = room == 0 ? 0 : std::min(read_(buffer_.data() + end_, room), room);
  if (got == 0) {
    at_eof_ = true;
    return false;
  }
  end_ += got;
  return true;
}

int PcFasMasterReader::Peek() {
  if (at_ == end_ && !Fill()) return -1;
  return static_cast<unsigned char>(buffer_[at_]);
}

int PcFasMasterReader::PeekSecond() {
  while (end_ - at_ < 2 && Fill()) {
  }
  return end_ - at_ >= 2 ? static_cast<unsigned char>(buffer_[at_ + 1]) : -1;
}

int PcFasMasterReader::Take() {
  const int c = Peek();
  if (c < 0) return c;
  ++at_;
  ++consumed_;
  if (c == '\n') ++line_;
  return c;
}

bool PcFasMasterReader::Next(PcFasRecord* record) {
  if (Peek() < 0) return false;
  record->line = line_;
  // Ctrl-Z marks the end of a DOS file; anywhere else it is an ordinary byte.
  size_t ctrl_z = 0;
  while (Peek() == kCtrlZ) {
    Take();
    ++ctrl_z;
  }
  if (ctrl_z > 0 && Peek() < 0) return false;

  std::vector<std::string>& fields = record->fields;
  size_t kept = 0;
  std::string dropped;  // a field past the limit, read to find where it ends
  auto begin_field = [&]() -> std::string* {
    if (kept == kPcFasMaxFields) {
      dropped.clear();
      return &dropped;
    }
    if (fields.size() <= kept) fields.emplace_back();
    std::string* field = &fields[kept++];
    field->clear();
    return field;
  };
  auto finish = [&] {
    fields.resize(kept);
    return true;
  };

  std::string* field = begin_field();
  auto put = [&field](int c) {
    if (field->size() < kPcFasMaxFieldBytes) field->push_back(static_cast<char>(c));
  };
  for (size_t i = 0; i < ctrl_z; ++i) put(kCtrlZ);
  bool may_quote = ctrl_z == 0;
  for (;;) {
    bool next_field = false;
    if (may_quote && Peek() == '"') {
      Take();
      while (!next_field) {
        const int c = Take();
        if (c < 0) return finish();
        if (c == '"') {
          const int after = Peek();
          if (after < 0) return finish();
          if (after == ',') {
            Take();
            next_field = true;
          } else if (after == '\n') {
            Take();
            return finish();
          } else if (after == '\r' && PeekSecond() == '\n') {
            Take();
            Take();
            return finish();
          } else {
            put('"');
          }
        } else if (c == '\n' || c == '\0') {
          put(' ');
        } else if (c == '\r' && Peek() == '\n') {
          Take();
          put(' ');
        } else {
          put(c);
        }
      }
    } else {
      while (!next_field) {
        const int c = Take();
        if (c < 0 || c == '\n') return finish();
        if (c == ',') {
          next_field = true;
        } else if (c == '\r' && Peek() == '\n') {
          Take();
          return finish();
        } else {
          put(c);
        }
      }
    }
    field = begin_field();
    may_quote = true;
  }
}

}  // namespace nv
