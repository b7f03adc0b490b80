#include "base/comma_text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace nv {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

char AsciiLower(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

}  // namespace

std::optional<CommaTextReader> CommaTextReader::Open(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return CommaTextReader(std::move(text));
}

int CommaTextReader::Peek() const {
  return pos_ < text_.size() ? static_cast<unsigned char>(text_[pos_]) : -1;
}

bool CommaTextReader::at_end() const {
  return pos_ >= text_.size() || text_[pos_] == kEndOfFileMark;
}

bool CommaTextReader::AtNewline() const {
  if (pos_ >= text_.size()) return false;
  if (text_[pos_] == '\n') return true;
  return text_[pos_] == '\r' && pos_ + 1 < text_.size() && text_[pos_ + 1] == '\n';
}

void CommaTextReader::FinishField() {
  if (at_end()) {
    line_ended_ = true;
  } else if (text_[pos_] == ',') {
    ++pos_;
    line_ended_ = false;
  } else {  // a newline, the only other way a field stops
    pos_ += text_[pos_] == '\r' ? 2 : 1;
    line_ended_ = true;
  }
}

std::optional<std::string> CommaTextReader::ReadField() {
  while (pos_ < text_.size() && IsBlank(text_[pos_])) ++pos_;
  if (at_end()) {
    line_ended_ = true;
    return std::nullopt;
  }
  std::string field;
  const bool quoted = Peek() == '"';
  if (quoted) ++pos_;
  while (!at_end() && !AtNewline()) {
    const char c = text_[pos_];
    if (quoted ? c == '"' : c == ',') break;
    if (field.size() < kMaxCommaField) field += c;
    ++pos_;
  }
  if (quoted && !at_end() && text_[pos_] == '"') {
    ++pos_;
    while (!at_end() && !AtNewline() && text_[pos_] != ',') ++pos_;
  }
  FinishField();
  return field;
}

std::optional<std::vector<std::string>> CommaTextReader::ReadLine() {
  std::optional<std::string> field = ReadField();
  if (!field) return std::nullopt;
  std::vector<std::string> fields;
  fields.push_back(std::move(*field));
  while (!line_ended_) {
    field = ReadField();
    if (!field) break;
    fields.push_back(std::move(*field));
  }
  return fields;
}

void CommaTextReader::SkipRestOfLine() {
  if (line_ended_) return;
  while (!at_end() && !AtNewline()) ++pos_;
  if (!at_end()) pos_ += text_[pos_] == '\r' ? 2 : 1;
  line_ended_ = true;
}

void CommaTextWriter::Separator() {
  if (line_has_field_) text_ += ',';
  line_has_field_ = true;
}

void CommaTextWriter::Text(std::string_view text) {
  Separator();
  text_ += '"';
  for (char c : text) {
    if (c == '"') {
      c = '\'';
    } else if (c == '\r' || c == '\n' || c == kEndOfFileMark) {
      c = ' ';
    }
    text_ += c;
  }
  text_ += '"';
}

void CommaTextWriter::Number(long value) {
  Separator();
  text_ += std::to_string(value);
}

void CommaTextWriter::Bare(std::string_view text) {
  Separator();
  text_ += text;
}

void CommaTextWriter::EndLine(size_t column) {
  const size_t length = text_.size() - line_start_;
  if (length < column) text_.append(column - length, ' ');
  text_ += "\r\n";
  line_start_ = text_.size();
  line_has_field_ = false;
}

bool WriteWholeFile(const std::string& path, std::string_view text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && written;
}

std::string FindFileIgnoringCase(const std::string& folder, std::string_view name) {
  std::string exact = folder + std::string(name);
  std::error_code ec;
  if (std::filesystem::exists(exact, ec)) return exact;
  std::filesystem::directory_iterator it(folder.empty() ? "." : folder, ec);
  for (; !ec && it != std::filesystem::directory_iterator(); it.increment(ec)) {
    const std::string entry = it->path().filename().string();
    if (EqualIgnoringCase(entry, name)) return folder + entry;
  }
  return exact;
}

}  // namespace nv
