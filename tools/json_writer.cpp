#include "tools/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

namespace nv {

JsonWriter::JsonWriter(std::ostream& out, int indent) : out_(out), indent_(indent) {}

JsonWriter::~JsonWriter() {
  Flush();
}

void JsonWriter::Flush() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
}

void JsonWriter::Put(std::string_view text) {
  buffer_.append(text);
  if (buffer_.size() >= kFlushSize) Flush();
}

void JsonWriter::NewLine(size_t depth) {
  Put('\n');
  buffer_.append(depth * static_cast<size_t>(indent_), ' ');
}

void JsonWriter::Separate() {
  if (open_.empty()) return;
  if (open_.back().count++ > 0) Put(',');
  if (indent_ >= 0) NewLine(open_.size());
}

void JsonWriter::BeforeValue() {
  if (after_key_) {
    after_key_ = false;
  } else if (!open_.empty() && open_.back().list) {
    Separate();
  }
}

void JsonWriter::Open(char bracket) {
  BeforeValue();
  Put(bracket);
  open_.push_back({bracket == '[', 0});
}

void JsonWriter::Close(char bracket) {
  if (open_.empty()) return;
  if (open_.back().count > 0 && indent_ >= 0) NewLine(open_.size() - 1);
  open_.pop_back();
  Put(bracket);
}

void JsonWriter::Key(std::string_view name) {
  Separate();
  String(name);
  Put((indent_ >= 0 ? ": " : ":"));
  after_key_ = true;
}

void JsonWriter::String(std::string_view utf8) {
  BeforeValue();
  Put('"');
  size_t plain = 0;  // start of the bytes not yet written
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    if (c >= 0x20 && c != '"' && c != '\\') continue;
    Put(utf8.substr(plain, i - plain));
    plain = i + 1;
    switch (c) {
      case '"':
        Put("\\\"");
        break;
      case '\\':
        Put("\\\\");
        break;
      case '\b':
        Put("\\b");
        break;
      case '\f':
        Put("\\f");
        break;
      case '\n':
        Put("\\n");
        break;
      case '\r':
        Put("\\r");
        break;
      case '\t':
        Put("\\t");
        break;
      default: {
        static constexpr char kHex[] = "0123456789abcdef";
        const char escape[] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 15]};
        Put({escape, sizeof escape});
      }
    }
  }
  Put(utf8.substr(plain));
  Put('"');
}

void JsonWriter::Integer(int64_t value) {
  BeforeValue();
  std::array<char, 24> digits;
  auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  Put({digits.data(), static_cast<size_t>(end - digits.data())});
}

void JsonWriter::Number(double value) {
  BeforeValue();
  if (!std::isfinite(value)) {
    Put("null");
    return;
  }
  // nlohmann's shortest digits, with ".0" after whole numbers, as its dump writes them.
  std::array<char, 64> digits;
  char* end = nlohmann::detail::to_chars(digits.data(), digits.data() + digits.size(), value);
  Put({digits.data(), static_cast<size_t>(end - digits.data())});
}

void JsonWriter::Bool(bool value) {
  BeforeValue();
  Put((value ? "true" : "false"));
}

}  // namespace nv
