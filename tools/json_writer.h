// JsonWriter: writes JSON to a stream as it goes, one value after another, so that a
// document of any size needs no more memory than its deepest object.
//
// The layout is nlohmann::json's own dump(): with an indent, every member and element on a
// line of its own, "key": value, and empty objects and lists as {} and []; without one,
// nothing between the tokens. Numbers with a fraction or of type double come out with the
// same digits as there ("500.0", "1e+20"), so documents written before keep their bytes.
// Texts must be UTF-8; quotes, backslashes and control characters are escaped.
//
// REQUIRES: calls that form one JSON value (Key only inside an object, before each member).
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

class JsonWriter {
 public:
  // indent: spaces per level; below 0, compact.
  explicit JsonWriter(std::ostream& out, int indent = -1);
  // Flushes.
  ~JsonWriter();
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }
  void Key(std::string_view name);

  void String(std::string_view utf8);
  void Integer(int64_t value);
  // Not finite: null, as JSON has no such numbers.
  void Number(double value);
  void Bool(bool value);

  // Hands what is written so far to the stream; needed before anything else writes to it.
  void Flush();

 private:
  // Writes go through a buffer: the stream's own calls per character cost more than the
  // rest of the writing.
  static constexpr size_t kFlushSize = 64 * 1024;
  void Put(std::string_view text);
  void Put(char c) { Put(std::string_view(&c, 1)); }

  void Open(char bracket);
  void Close(char bracket);
  // Before a member's key or an element: the comma, the line break and the indentation.
  void Separate();
  void BeforeValue();
  void NewLine(size_t depth);

  std::ostream& out_;
  int indent_;
  struct Level {
    bool list;
    uint32_t count;  // members or elements written so far
  };
  std::vector<Level> open_;
  std::string buffer_;
  bool after_key_ = false;
};

}  // namespace nv
