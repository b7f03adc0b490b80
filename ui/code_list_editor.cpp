#include "ui/code_list_editor.h"

#include <algorithm>

#include "base/ascii.h"
#include "store/codes/loc_cat_list.h"
#include "store/codes/user_fields.h"

namespace nv {

namespace {

bool IsAlphanumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsBlankRow(const CodeListEditor::Row& row) {
  return std::all_of(row.begin(), row.end(),
                     [](const std::string& cell) { return TrimBlanks(cell).empty(); });
}

// Widths the editors take: the property code's description and a user field's value are
// shorter in the editor than in the settings file.
constexpr size_t kPropertyCodeWidth = 2;
constexpr size_t kPropertyDescriptionWidth = 20;
constexpr size_t kValueWidth = 20;

}  // namespace

CodeListEditor::CodeListEditor(std::string caption, int width, int height,
                               std::vector<CodeListColumn> columns, std::vector<Row> rows,
                               Saver saver)
    : caption_(std::move(caption)),
      width_(width),
      height_(height),
      columns_(std::move(columns)),
      saver_(std::move(saver)) {
  for (Row& row : rows) {
    row.resize(columns_.size());
    InsertRow(rows_.size());
    for (size_t c = 0; c < columns_.size(); ++c) SetCell(rows_.size() - 1, c, row[c]);
  }
}

void CodeListEditor::SetCell(size_t row, size_t column, std::string_view text) {
  if (column >= columns_.size() || row > rows_.size()) return;
  if (row == rows_.size()) InsertRow(row);
  const CodeListColumn& rules = columns_[column];
  std::string cell;
  for (char c : text) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    if (rules.alphanumeric && !IsAlphanumeric(c)) continue;
    cell += rules.upper_case ? AsciiUpper(c) : c;
    if (cell.size() == rules.width) break;
  }
  rows_[row][column] = std::move(cell);
}

void CodeListEditor::InsertRow(size_t at) {
  if (at > rows_.size()) return;
  rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(at), Row(columns_.size()));
}

void CodeListEditor::RemoveRow(size_t at) {
  if (at < rows_.size()) rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(at));
}

bool CodeListEditor::Save() {
  std::vector<Row> kept;
  for (const Row& row : rows_) {
    if (!IsBlankRow(row)) kept.push_back(row);
  }
  saved_ = saver_ && saver_(kept);
  return saved_;
}

std::vector<CodeListColumn> LocCatColumns() {
  return {{"I.D.", kLocCatCodeWidth, false, false, true},
          {"Description", kLocCatDescriptionWidth, false, false, false}};
}

std::vector<CodeListColumn> PropertyCodeColumns() {
  return {{"Code", kPropertyCodeWidth, true, true, false},
          {"Desc", kPropertyDescriptionWidth, false, false, false}};
}

std::vector<CodeListColumn> ValueColumns() {
  return {{"Value", kValueWidth, false, false, false}};
}

}  // namespace nv
