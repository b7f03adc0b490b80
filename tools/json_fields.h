// Tables of JSON fields: one table per kind of object names its members in the order they
// are written, each with the member of the record that holds it. The same table writes the
// object (WriteFields) and reads it (FieldsFrame), so the two directions cannot drift.
//
// A member's C++ type says its JSON form:
//
//   MEMBER TYPE     JSON FORM
//   std::string     text; trailing blanks are not written (records keep texts padded)
//   char            text of one character, "" for blank
//   Date            "MM/DD/YYYY", "" for the empty date
//   YearsMonths     "Y-M", years and months
//   int             whole number
//   double          number
//   bool            true or false
//   JsonFlag        true or false: one bit of an int member
//   NvAssetNo       its text form without leading blanks, "" for no number
//   JsonPart        a nested object or list with rules of its own (JsonPart below)
//
// Texts are UTF-8 in the document and Windows-1252 in records. Reading, a member that is
// missing or null keeps the record's value, and a member the table does not name is passed
// over; a member of the wrong form is an error "PATH: NAME is not ...".
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "base/date.h"
#include "store/asset/asset.h"
#include "store/asset/asset_no.h"
#include "tools/json_reader.h"
#include "tools/json_writer.h"

namespace nv {

template <typename R>
struct JsonFlag {
  int R::*flags;
  int mask;
};

template <typename R>
class FieldsFrame;

// A member that is an object or a list of its own: how it is written, and the frame that
// reads it.
template <typename R>
class JsonPart {
 public:
  virtual ~JsonPart() = default;
  // False leaves the member out of the object (an optional part that the record lacks).
  virtual bool Present(const R& record) const {
    (void)record;
    return true;
  }
  virtual void Write(const R& record, JsonWriter& out) const = 0;
  // A list, or else an object.
  virtual bool list() const = 0;
  // What the member must be, said when it is something else: "is not an object".
  virtual const char* expected() const = 0;
  // The frame for the member's object or list, reading into the record. holder is the
  // frame of the object that has the member.
  virtual std::unique_ptr<JsonFrame> Read(R* record, FieldsFrame<R>& holder,
                                          std::string_view name) const = 0;
};

template <typename R>
using JsonMember =
    std::variant<std::string R::*, char R::*, Date R::*, YearsMonths R::*, int R::*, double R::*,
                 bool R::*, JsonFlag<R>, NvAssetNo R::*, const JsonPart<R>*>;

template <typename R>
struct JsonField {
  std::string_view name;
  JsonMember<R> member;
};

// ---- Scalars ----------------------------------------------------------------------------

// A record's text in the document: trailing blanks dropped, UTF-8.
std::string JsonText(std::string_view cp1252);
// An asset number in the document: its text form without leading blanks, "" for none.
std::string JsonAssetNo(const NvAssetNo& number);

void WriteJsonValue(const std::string& text, JsonWriter& out);
void WriteJsonValue(char letter, JsonWriter& out);
void WriteJsonValue(const Date& date, JsonWriter& out);
void WriteJsonValue(const YearsMonths& life, JsonWriter& out);
void WriteJsonValue(int whole, JsonWriter& out);
void WriteJsonValue(double amount, JsonWriter& out);
void WriteJsonValue(bool truth, JsonWriter& out);
void WriteJsonValue(const NvAssetNo& number, JsonWriter& out);

// Each reads a scalar into *out: nullptr, or what is wrong with it ("is not a text"), and
// *out is left alone. A null is never the right form (FieldsFrame passes nulls over).
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, std::string* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, char* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, Date* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, YearsMonths* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, int* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, double* out);
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, bool* out);
// An asset number under the company's format; "" is no number.
[[nodiscard]] const char* ReadJsonValue(JsonScalar& value, const NvAssetNoFormat& format,
                                        NvAssetNo* out);

// ---- Objects ----------------------------------------------------------------------------

template <typename... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <typename... F>
Overloaded(F...) -> Overloaded<F...>;

// The member's value alone.
template <typename R>
void WriteFieldValue(const JsonField<R>& field, const R& record, JsonWriter& out) {
  std::visit(
      Overloaded{[&](const JsonFlag<R>& flag) { out.Bool((record.*flag.flags & flag.mask) != 0); },
                 [&](const JsonPart<R>* part) { part->Write(record, out); },
                 [&](auto member) { WriteJsonValue(record.*member, out); }},
      field.member);
}

template <typename R>
bool FieldPresent(const JsonField<R>& field, const R& record) {
  const JsonPart<R>* const* part = std::get_if<const JsonPart<R>*>(&field.member);
  return part == nullptr || (*part)->Present(record);
}

// The record as an object of the table's members.
template <typename R>
void WriteFields(std::span<const JsonField<R>> fields, const R& record, JsonWriter& out) {
  out.BeginObject();
  for (const JsonField<R>& field : fields) {
    if (!FieldPresent(field, record)) continue;
    out.Key(field.name);
    WriteFieldValue(field, record, out);
  }
  out.EndObject();
}

// Records as a list of objects.
template <typename R, typename Records>
void WriteFieldsList(std::span<const JsonField<R>> fields, const Records& records,
                     JsonWriter& out) {
  out.BeginArray();
  for (const R& record : records) WriteFields(fields, record, out);
  out.EndArray();
}

// Reads an object of the table's members into a record. format is the company's format of
// asset numbers, for members that are asset numbers.
template <typename R>
class FieldsFrame : public JsonFrame {
 public:
  FieldsFrame(std::span<const JsonField<R>> fields, R* record, JsonReadState& state,
              const JsonFrame* parent, std::string name, const NvAssetNoFormat& format)
      : JsonFrame(state, parent, std::move(name)),
        fields_(fields),
        record_(record),
        format_(format) {}

  void Key(std::string& name) override { field_ = Find(name); }

  void Scalar(JsonScalar& value) override {
    if (field_ == nullptr || state_.failed() || value.type == JsonScalar::Type::kNull) return;
    if (const char* wrong = Apply(value)) FailMember(field_->name, wrong);
  }

  std::unique_ptr<JsonFrame> Open(bool list) override {
    if (field_ == nullptr || state_.failed()) return nullptr;
    if (const JsonPart<R>* const* part = std::get_if<const JsonPart<R>*>(&field_->member)) {
      if (list == (*part)->list()) return (*part)->Read(record_, *this, field_->name);
      FailMember(field_->name, (*part)->expected());
      return nullptr;
    }
    // An object or list where a scalar belongs; no scalar reader takes a null, so it says
    // what the member must be.
    JsonScalar none;
    FailMember(field_->name, Apply(none));
    return nullptr;
  }

  const NvAssetNoFormat& format() const { return format_; }

 protected:
  R* record() { return record_; }
  const JsonField<R>* field() const { return field_; }

 private:
  // Reads the value into the current field's member: nullptr, or what is wrong with it.
  const char* Apply(JsonScalar& value) {
    return std::visit(
        Overloaded{[&](const JsonFlag<R>& flag) -> const char* {
                     bool on = false;
                     const char* wrong = ReadJsonValue(value, &on);
                     if (wrong == nullptr) {
                       int& flags = record_->*flag.flags;
                       flags = on ? (flags | flag.mask) : (flags & ~flag.mask);
                     }
                     return wrong;
                   },
                   [&](NvAssetNo R::*member) {
                     return ReadJsonValue(value, format_, &(record_->*member));
                   },
                   [&](const JsonPart<R>* part) { return part->expected(); },
                   [&](auto member) { return ReadJsonValue(value, &(record_->*member)); }},
        field_->member);
  }

  // Documents list members in the table's order, so the search starts after the last find.
  const JsonField<R>* Find(std::string_view name) {
    for (size_t i = 0; i < fields_.size(); ++i) {
      size_t at = (next_ + i) % fields_.size();
      if (fields_[at].name == name) {
        next_ = at + 1;
        return &fields_[at];
      }
    }
    return nullptr;
  }

  std::span<const JsonField<R>> fields_;
  R* record_;
  const NvAssetNoFormat& format_;
  const JsonField<R>* field_ = nullptr;
  size_t next_ = 0;
};

}  // namespace nv
