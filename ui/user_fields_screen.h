// The screen "User Definable Fields" that the company screen opens: the names and default
// values of the company's ten user fields, rows "1:" to "10:" under the headings "Name"
// and "Default Value", each row with a button that opens the field's list of allowed
// values. The screen edits a copy; the company screen takes it over when the screen is
// closed with OK. The values editor saves its list when it is closed, whatever becomes
// of the screen.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "store/company/company_record.h"
#include "ui/screen/field_description.h"

namespace nv {

inline constexpr char kUserFieldsTitle[] = "User Definable Fields";
inline constexpr char kUserFieldsHelpTopic[] = "GlossaryContent.html#User-DefinableField";
inline constexpr char kUserFieldValuesButtonHelp[] = "Define values for this field";

using UserFieldDefinitions = std::array<UserFieldDefinition, kUserFieldCount>;

class UserFieldsScreen {
 public:
  // Control identifiers of row i (1 to 10): name kNameId + i, default kDefaultId + i,
  // values button kValuesId + i.
  static constexpr int kNameId = 700;
  static constexpr int kDefaultId = 720;
  static constexpr int kValuesId = 740;

  // `open_values` opens the values editor of field i (1 to 10).
  UserFieldsScreen(const UserFieldDefinitions& fields, std::function<void(int)> open_values);
  UserFieldsScreen(const UserFieldsScreen&) = delete;
  UserFieldsScreen& operator=(const UserFieldsScreen&) = delete;

  // The screen in the screen language; its checks write into fields().
  FieldTable& table() { return table_; }
  const UserFieldDefinitions& fields() const { return fields_; }

  // Field i (1 to 10), cut to the record's widths; other indexes are ignored.
  void SetName(int index, std::string_view name);
  void SetDefault(int index, std::string_view value);
  // The values button of row i.
  void PressValues(int index);

 private:
  void Build();
  // The table's data from fields_.
  void Show();

  UserFieldDefinitions fields_;
  std::function<void(int)> open_values_;
  FieldTable table_;
};

}  // namespace nv
