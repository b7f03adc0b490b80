#include "ui/user_fields_screen.h"

#include "base/str_format.h"

namespace nv {

namespace {

// Columns of the rows: number, name, default value, values button.
constexpr int kNumberColumn = 1;
constexpr int kNameColumn = 5;
constexpr int kDefaultColumn = kNameColumn + static_cast<int>(kUserFieldNameWidth) + 2;
constexpr int kButtonColumn = kDefaultColumn + static_cast<int>(kUserFieldDefaultWidth) + 2;

bool InRange(int index) {
  return index >= 1 && index <= kUserFieldCount;
}

std::string Cut(std::string_view text, size_t width) {
  return std::string(text.substr(0, std::min(text.size(), width)));
}

}  // namespace

UserFieldsScreen::UserFieldsScreen(const UserFieldDefinitions& fields,
                                   std::function<void(int)> open_values)
    : fields_(fields), open_values_(std::move(open_values)) {
  Build();
  Show();
}

void UserFieldsScreen::SetName(int index, std::string_view name) {
  if (!InRange(index)) return;
  fields_[static_cast<size_t>(index - 1)].name = Cut(name, kUserFieldNameWidth);
  Show();
}

void UserFieldsScreen::SetDefault(int index, std::string_view value) {
  if (!InRange(index)) return;
  fields_[static_cast<size_t>(index - 1)].default_value = Cut(value, kUserFieldDefaultWidth);
  Show();
}

void UserFieldsScreen::PressValues(int index) {
  if (InRange(index) && open_values_) open_values_(index);
}

void UserFieldsScreen::Build() {
  table_.push_back(
      MakeField(kFieldStatic, 0, 0, kNameColumn, static_cast<int>(kUserFieldNameWidth), "Name"));
  table_.push_back(MakeField(kFieldStatic, 0, 0, kDefaultColumn,
                             static_cast<int>(kUserFieldDefaultWidth), "Default Value"));
  for (int i = 1; i <= kUserFieldCount; ++i) {
    table_.push_back(MakeField(kFieldStatic, 0, i, kNumberColumn, 3, StrPrintf("%d:", i)));
    FieldDescription name =
        MakeField(kFieldEdit, kNameId + i, i, kNameColumn, static_cast<int>(kUserFieldNameWidth));
    name.check = [this, i](FieldTable&, size_t, const std::string& text) {
      SetName(i, text);
      return true;
    };
    table_.push_back(std::move(name));
    FieldDescription value = MakeField(kFieldEdit, kDefaultId + i, i, kDefaultColumn,
                                       static_cast<int>(kUserFieldDefaultWidth));
    value.check = [this, i](FieldTable&, size_t, const std::string& text) {
      SetDefault(i, text);
      return true;
    };
    table_.push_back(std::move(value));
    // One line high, so that the rows' buttons stand apart.
    table_.push_back(MakeField(kFieldButton, kValuesId + i, i, kButtonColumn, 3, "...",
                               std::string("height(1),msg(") + kUserFieldValuesButtonHelp + ")"));
  }
  table_.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));
}

void UserFieldsScreen::Show() {
  for (FieldDescription& field : table_) {
    if (field.kind != kFieldEdit) continue;
    if (field.id > kNameId && field.id <= kNameId + kUserFieldCount) {
      field.data = fields_[static_cast<size_t>(field.id - kNameId - 1)].name;
    } else if (field.id > kDefaultId && field.id <= kDefaultId + kUserFieldCount) {
      field.data = fields_[static_cast<size_t>(field.id - kDefaultId - 1)].default_value;
    }
  }
}

}  // namespace nv
