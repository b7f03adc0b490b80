#include "tools/json_reader.h"

#include <limits>
#include <vector>

#include <nlohmann/json.hpp>

namespace nv {
namespace {

using Json = nlohmann::json;

// Hands the parser's tokens to the frame on top of the stack.
class FrameDriver final : public nlohmann::json_sax<Json> {
 public:
  FrameDriver(JsonFrame& root, JsonReadResult& result) : state_(root.state()), result_(result) {
    frames_.push_back(&root);
  }

  bool null() override {
    JsonScalar v;
    return Scalar(v);
  }
  bool boolean(bool value) override {
    JsonScalar v{.type = JsonScalar::Type::kBool, .truth = value};
    return Scalar(v);
  }
  bool number_integer(number_integer_t value) override {
    JsonScalar v{
        .type = JsonScalar::Type::kInteger, .integer = value, .number = static_cast<double>(value)};
    return Scalar(v);
  }
  bool number_unsigned(number_unsigned_t value) override {
    if (value > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
      JsonScalar v{.type = JsonScalar::Type::kNumber, .number = static_cast<double>(value)};
      return Scalar(v);
    }
    return number_integer(static_cast<int64_t>(value));
  }
  bool number_float(number_float_t value, const string_t&) override {
    JsonScalar v{.type = JsonScalar::Type::kNumber, .number = value};
    return Scalar(v);
  }
  bool string(string_t& value) override {
    JsonScalar v{.type = JsonScalar::Type::kText, .text = &value};
    return Scalar(v);
  }
  bool binary(binary_t&) override {
    JsonScalar v;  // JSON text has none; a null is passed over like a missing member
    return Scalar(v);
  }
  bool key(string_t& name) override {
    if (skipping_ == 0) frames_.back()->Key(name);
    return !state_.stopped();
  }
  bool start_object(std::size_t) override { return Open(false); }
  bool start_array(std::size_t) override { return Open(true); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool parse_error(std::size_t, const std::string&,
                   const nlohmann::detail::exception& error) override {
    // "[json.exception.parse_error.101] parse error at line 1, column 9: ..." without the
    // library's part.
    std::string_view what = error.what();
    if (size_t bracket = what.find("] "); bracket != std::string_view::npos) {
      what.remove_prefix(bracket + 2);
    }
    if (what.starts_with("parse error ")) what.remove_prefix(12);
    result_.syntax_ok = false;
    result_.syntax_error = std::string(what);
    return false;
  }

 private:
  bool Scalar(JsonScalar& value) {
    if (skipping_ == 0) frames_.back()->Scalar(value);
    return !state_.stopped();
  }
  bool Open(bool list) {
    if (skipping_ > 0) {
      ++skipping_;
    } else if (std::unique_ptr<JsonFrame> frame = frames_.back()->Open(list)) {
      owned_.push_back(std::move(frame));
      frames_.push_back(owned_.back().get());
    } else {
      skipping_ = 1;
    }
    return !state_.stopped();
  }
  bool Close() {
    if (skipping_ > 0) {
      --skipping_;
    } else if (frames_.size() > 1) {
      frames_.back()->Close();
      frames_.pop_back();
      owned_.pop_back();
    }
    return !state_.stopped();
  }

  JsonReadState& state_;
  JsonReadResult& result_;
  std::vector<JsonFrame*> frames_;  // the root, then the owned frames
  std::vector<std::unique_ptr<JsonFrame>> owned_;
  // Depth inside a value that is passed over.
  size_t skipping_ = 0;
};

}  // namespace

void JsonReadState::Fail(std::string message) {
  if (error_.empty()) error_ = std::move(message);
}

std::string JsonFrame::Path() const {
  std::string path = parent_ != nullptr ? parent_->Path() : std::string();
  if (!name_.empty()) {
    if (!path.empty()) path += '.';
    path += name_;
  }
  return path;
}

void JsonFrame::Fail(std::string_view what) {
  if (state_.failed()) return;
  state_.Fail(Path() + ": " + std::string(what));
}

void JsonFrame::FailMember(std::string_view member, std::string_view what) {
  if (state_.failed()) return;
  state_.Fail(Path() + ": " + std::string(member) + " " + std::string(what));
}

JsonReadResult ReadJson(std::istream& in, JsonFrame& root) {
  JsonReadResult result;
  FrameDriver driver(root, result);
  // The outcome is in result: a stop by a frame is no error of the text.
  (void)Json::sax_parse(in, &driver);
  return result;
}

}  // namespace nv
