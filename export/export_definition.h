// Export definitions: which asset fields become the columns of a tab-separated text file,
// in which order, under which headings, and for which kinds of asset. A definition is a
// section of a profile file: "global.exp" in the program's folder holds the definitions
// for all companies, the company's NUMBER.EXP those for that company only.
//
//   [NAME]
//   Include Headings=Yes|No      anything but "No" reads as yes
//   Filename=FILE
//   Select Assets=Yes|No         only "Yes" reads as yes
//   0=FIELD,GROUPCODE,FLAGS,HEADING   one key per column, "%d" of its position
//
// GROUPCODE is the group character's code in decimal (42 for "*", 66 for "B"); FLAGS are
// the letters A (addition), D (disposition), C (current), N (none of the above) of the set
// flags, in that order; HEADING is the rest of the value after the third comma.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

class NvCompany;

inline constexpr char kGlobalExportFile[] = "global.exp";
inline constexpr char kCompanyExportExtension[] = "EXP";
inline constexpr char kExportGeneralGroup = '*';

// One exportable field: its number (1001.. general, 2001.. schedule) and its name.
struct ExportField {
  int number = 0;
  const char* name = "";
};

// The general fields (group "*") and the schedule fields, in their fixed order.
std::span<const ExportField> GeneralExportFields();
std::span<const ExportField> ScheduleExportFields();
// The field of `group` ("*" general, else schedule) named `name` (any case), or none.
const ExportField* FindExportField(char group, std::string_view name);
const ExportField* FindExportField(int number);

struct ExportColumn {
  int field = 0;                     // ExportField::number
  char group = kExportGeneralGroup;  // "*" or a schedule letter
  std::string heading;
  bool addition = false;
  bool disposition = false;
  bool current = false;
  bool none_of_the_above = false;
};

enum class ExportScope { kThisCompany, kAllCompanies };
enum class ExportSortOrder { kAssetNumber, kCompanySortOrder };

struct ExportDefinition {
  std::optional<std::string> name;  // none: "no definition"
  ExportScope scope = ExportScope::kThisCompany;
  bool changed = false;
  bool include_headings = true;
  bool select_assets = false;
  ExportSortOrder sort_order = ExportSortOrder::kAssetNumber;  // not stored
  std::string folder;                 // empty: the company's folder; not stored
  std::string file_name;              // empty: shown as "export.txt"
  std::vector<ExportColumn> columns;  // in order; a column's position is its index
};

// The file that holds the definitions of `scope`: program_folder + "global.exp", or the
// company's NUMBER.EXP.
std::string ExportDefinitionFile(ExportScope scope, const std::string& program_folder,
                                 const NvCompany& company);

// The stored value of one column ("Depr. Method,66,AC,Method") and back; a value whose
// field is not found, whose group code names neither "*" nor a schedule letter, or without
// all three commas, gives none. Line breaks in a heading are stored as blanks.
std::string ExportColumnValue(const ExportColumn& column);
std::optional<ExportColumn> ParseExportColumnValue(std::string_view value);

// Reads section `name` of `file` into `definition` (columns cleared first; name and scope
// are the caller's); false when the section does not exist.
bool LoadDefinition(const std::string& file, std::string_view name, ExportDefinition& definition);
// Replaces section definition.name of `file` with the definition; clears `changed`.
bool SaveDefinition(const std::string& file, ExportDefinition& definition);
bool DeleteDefinition(const std::string& file, std::string_view name);
// The section names of `file`, in file order.
std::vector<std::string> ListDefinitions(const std::string& file);

}  // namespace nv
