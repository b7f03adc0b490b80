// Reading JSON as it streams past: nlohmann's SAX parser hands over one token after another,
// and each open object or list has a frame that takes what is inside it and opens the frames
// of what is nested in it. Nothing of the document is kept but the frames that are open, so
// a document of any size is read in the memory of its deepest object; a member no frame
// wants is passed over without one.
//
// Errors come in two sizes. A frame that finds a member of the wrong form records it in the
// JsonReadState (the first one stays) and reading goes on, so that the frame that owns a
// whole record can refuse just that record; a frame that cannot go on stops the reading.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

namespace nv {

// One scalar of the document.
struct JsonScalar {
  enum class Type { kNull, kBool, kInteger, kNumber, kText };
  Type type = Type::kNull;
  bool truth = false;
  int64_t integer = 0;          // kInteger
  double number = 0;            // kInteger and kNumber
  std::string* text = nullptr;  // kText; a frame may move from it

  bool is_number() const { return type == Type::kInteger || type == Type::kNumber; }
};

// What went wrong so far, shared by the frames of one reading.
class JsonReadState {
 public:
  bool failed() const { return !error_.empty(); }
  const std::string& error() const { return error_; }
  // Records an error unless one is recorded already: the first says most.
  void Fail(std::string message);
  void ClearError() { error_.clear(); }
  // Ends the reading after the current token.
  void Stop() { stopped_ = true; }
  bool stopped() const { return stopped_; }

 private:
  std::string error_;
  bool stopped_ = false;
};

class JsonFrame {
 public:
  // name: this frame's part of the path in messages ("schedules"); "" adds nothing. A
  // frame without a parent starts a path.
  JsonFrame(JsonReadState& state, const JsonFrame* parent, std::string name)
      : state_(state), parent_(parent), name_(std::move(name)) {}
  virtual ~JsonFrame() = default;
  JsonFrame(const JsonFrame&) = delete;
  JsonFrame& operator=(const JsonFrame&) = delete;

  // In an object: the name of the member whose value comes next.
  virtual void Key(std::string& name) { (void)name; }
  // A scalar member or element.
  virtual void Scalar(JsonScalar& value) = 0;
  // An object (list false) or a list begins as a member or element: the frame for what is
  // inside it, or nullptr to pass over it.
  virtual std::unique_ptr<JsonFrame> Open(bool list) = 0;
  // This frame's own object or list has ended.
  virtual void Close() {}

  // "asset.schedules.B": the names from the first frame of the path to this one.
  std::string Path() const;
  // Records "PATH: WHAT", and "PATH: MEMBER WHAT".
  void Fail(std::string_view what);
  void FailMember(std::string_view member, std::string_view what);
  const std::string& name() const { return name_; }
  JsonReadState& state() const { return state_; }

 protected:
  JsonReadState& state_;

 private:
  const JsonFrame* parent_;
  std::string name_;
};

struct JsonReadResult {
  bool syntax_ok = true;
  // Where and why the text is no JSON: "at line 3, column 7: syntax error ...".
  std::string syntax_error;
};

// Reads one JSON value from in; root takes the value itself (its Scalar, or its Open for
// an object or list). Stops early when a frame stops the state.
[[nodiscard]] JsonReadResult ReadJson(std::istream& in, JsonFrame& root);

}  // namespace nv
