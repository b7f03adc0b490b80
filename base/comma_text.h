// Comma-separated text files of the installation: TERM.1, the per-user TERM.nnn files
// and the data directory's company list MASTER.A share one text form.
//
// Reading:
//   - blanks (space, tab) before a field are skipped;
//   - a field that starts with a double quote ends at its closing quote; whatever stands
//     after the closing quote up to the comma (normally blanks) is skipped. A quote left
//     open ends at the newline, byte 26 or end of file, so that one stray quote cannot
//     swallow the rest of the file;
//   - an unquoted field ends at a comma, a newline, byte 26 or the end of the file;
//   - a field keeps at most kMaxCommaField characters: the rest of an overlong field is
//     read and dropped, so the next field starts where it would have started anyway;
//   - byte 26 (the old end-of-file mark) or the end of the data ends the file;
//   - CR LF counts as a newline; a carriage return elsewhere is an ordinary character.
//
// Writing: texts in double quotes, numbers bare, fields separated by commas, every line
// ended by CR LF, optionally padded with blanks to a column first. A text cannot carry a
// double quote or a line end inside quotes, so the writer turns '"' into '\'' and CR, LF
// and byte 26 into blanks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

inline constexpr size_t kMaxCommaField = 100;
inline constexpr char kEndOfFileMark = 26;

class CommaTextReader {
 public:
  explicit CommaTextReader(std::string text) : text_(std::move(text)) {}

  // Reads the whole file; nothing when it cannot be opened or read.
  static std::optional<CommaTextReader> Open(const std::string& path);

  // Next field, or nothing when the file has ended (only blanks were left before byte 26
  // or the end of the data).
  std::optional<std::string> ReadField();

  // True when the field last read was the last of its line: a newline, byte 26 or the end
  // of the data followed it rather than a comma.
  bool line_ended() const { return line_ended_; }

  // True once byte 26 or the end of the data has been reached.
  bool at_end() const;

  // The fields of the next line (possibly one empty field for a blank line), or nothing
  // when the file has ended.
  std::optional<std::vector<std::string>> ReadLine();

  // Drops the rest of the current line (after a field that did not end it).
  void SkipRestOfLine();

 private:
  // Consumes the separator after a field (comma, newline, end) and records line_ended_.
  void FinishField();
  [[nodiscard]] bool AtNewline() const;
  [[nodiscard]] int Peek() const;

  std::string text_;
  size_t pos_ = 0;
  bool line_ended_ = true;
};

class CommaTextWriter {
 public:
  void Text(std::string_view text);  // quoted
  void Number(long value);           // bare
  // Bare text, for fields such as "0B" that are a number followed by a flag letter.
  void Bare(std::string_view text);
  // Pads the line with blanks to `column` characters (when shorter) and ends it with CR LF.
  void EndLine(size_t column = 0);

  const std::string& text() const { return text_; }

 private:
  void Separator();

  std::string text_;
  size_t line_start_ = 0;
  bool line_has_field_ = false;
};

// Path of the installation file `name` in folder: an existing entry whose name equals it
// ignoring case, else folder + name as given (the case a new file gets). `folder` ends with
// the path separator or is empty for the current directory.
std::string PathIgnoringCase(const std::string& folder, std::string_view name);

}  // namespace nv
