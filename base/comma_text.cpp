#include "base/comma_text.h"
#include "base/path.h"

#include "base/file_util.h"

namespace nv {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace

std::optional<CommaTextReader> CommaTextReader::Open(const std::string& path) {
  std::optional<std::string> text = ReadFileBytes(path);
  if (!text) return std::nullopt;
  return CommaTextReader(std::move(*text));
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

std::string PathIgnoringCase(const std::string& folder, std::string_view name) {
  return FindFileIgnoringCase(folder, name).value_or(JoinPath(folder, name));
}

}  // namespace nv
