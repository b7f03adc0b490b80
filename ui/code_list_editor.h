// The small table editors that the company screen opens for its code lists: locations and
// categories, property codes and the allowed values of a user field. Each is a window of
// one or two columns of cells, one row per entry, that hands its rows back on saving; this
// model holds the window's caption, size, columns and rows, and the view (gui/) binds a
// table to it. What the rows are saved to is the opener's business (ui/company_screen.h).
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

struct CodeListColumn {
  std::string title;
  size_t width = 0;           // characters a cell takes
  bool upper_case = false;    // letters typed are upper case
  bool alphanumeric = false;  // only letters and digits
  bool right_aligned = false;
};

class CodeListEditor {
 public:
  using Row = std::vector<std::string>;
  // Takes the rows in the editor's order; false when they could not be saved, after
  // telling the user why.
  using Saver = std::function<bool(const std::vector<Row>& rows)>;

  // `rows` each have one cell per column.
  CodeListEditor(std::string caption, int width, int height, std::vector<CodeListColumn> columns,
                 std::vector<Row> rows, Saver saver);

  const std::string& caption() const { return caption_; }
  // The window's size in dialog units.
  int width() const { return width_; }
  int height() const { return height_; }
  const std::vector<CodeListColumn>& columns() const { return columns_; }
  const std::vector<Row>& rows() const { return rows_; }

  // Sets a cell under its column's rules (cut to the width, upper case, letters and digits
  // only). A row one past the last adds a row; other places out of range are ignored.
  void SetCell(size_t row, size_t column, std::string_view text);
  // A blank row before `at` (at most the row count).
  void InsertRow(size_t at);
  void RemoveRow(size_t at);

  // Hands the rows that are not blank in every cell to the saver. True when saved.
  [[nodiscard]] bool Save();
  bool saved() const { return saved_; }

 private:
  std::string caption_;
  int width_;
  int height_;
  std::vector<CodeListColumn> columns_;
  std::vector<Row> rows_;
  Saver saver_;
  bool saved_ = false;
};

// The windows of the lists, as the company's files size them.
inline constexpr char kLocationsCaption[] = "Locations";
inline constexpr char kCategoriesCaption[] = "Categories";
inline constexpr int kLocCatEditorWidth = 410;
inline constexpr int kLocCatEditorHeight = 300;
inline constexpr char kPropertyCodesCaption[] = "Property Codes";
inline constexpr char kValuesCaption[] = "Values";
inline constexpr int kSmallListEditorWidth = 300;
inline constexpr int kSmallListEditorHeight = 250;

// "I.D." (10, right-aligned) and "Description" (25).
std::vector<CodeListColumn> LocCatColumns();
// "Code" (2, letters and digits, upper case) and "Desc" (20).
std::vector<CodeListColumn> PropertyCodeColumns();
// "Value" (20).
std::vector<CodeListColumn> ValueColumns();

}  // namespace nv
