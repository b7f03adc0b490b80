#include "export/export_definition.h"

#include <charconv>

#include "base/ascii.h"
#include "base/profile.h"
#include "store/company/company.h"

namespace nv {

namespace {

constexpr ExportField kGeneralFields[] = {
    {1001, "Asset No."},       {1002, "Desc."},          {1003, "Location"},
    {1004, "Category"},        {1005, "Acct No./Grp."},  {1006, "Cash and Notes"},
    {1007, "Trade In"},        {1008, "Cost"},           {1009, "Purchase Date"},
    {1010, "Date in Service"}, {1011, "New/Used/Trade"}, {1012, "Prior Short Years"},
    {1013, "Property Code"},   {1014, "4797 Type"},      {1015, "User Field 1"},
    {1016, "User Field 2"},    {1017, "User Field 3"},   {1018, "User Field 4"},
    {1019, "User Field 5"},    {1020, "User Field 6"},   {1021, "User Field 7"},
    {1022, "User Field 8"},    {1023, "User Field 9"},   {1024, "User Field 10"},
    {1025, "Disposal Code"},   {1026, "Transferred To"}, {1027, "Disposal Date"},
    {1028, "Sale Amount"},     {1029, "Traded To"},
};

constexpr ExportField kScheduleFields[] = {
    {2001, "Depr. Method"},
    {2002, "Amortized (Y/N)"},
    {2003, "Am. Code Section"},
    {2004, "Asset Type"},
    {2005, "Business Percent"},
    {2006, "Useful Life"},
    {2007, "SL Life"},
    {2008, "Depreciable Basis"},
    {2009, "Substitute Basis"},
    {2010, "ITC Basis"},
    {2011, "Subst. ITC Basis"},
    {2012, "ITC Code"},
    {2013, "ITC"},
    {2014, "Convention"},
    {2015, "Sec. 179 Expense"},
    {2016, "Prior Allowd Dpr"},
    {2017, "Prior Allowble Dpr"},
    {2018, "Ending Allwd Dpr"},
    {2019, "Ending Allwble Dpr"},
    {2020, "Bonus Depr"},
    {2021, "Salvage Value"},
    {2022, "Current Depr"},
    {2023, "Misc. Code"},
};

// Keys of a definition's section besides its columns.
constexpr char kIncludeHeadingsKey[] = "Include Headings";
constexpr char kFilenameKey[] = "Filename";
constexpr char kSelectAssetsKey[] = "Select Assets";

// Values are read as the definitions window always read them: at most 299 characters.
constexpr size_t kValueBuffer = 300;

const char* YesNo(bool yes) {
  return yes ? "Yes" : "No";
}

bool IsGroup(char group) {
  return group == kExportGeneralGroup || (group >= 'A' && group <= 'Z');
}

}  // namespace

std::span<const ExportField> GeneralExportFields() {
  return kGeneralFields;
}
std::span<const ExportField> ScheduleExportFields() {
  return kScheduleFields;
}

const ExportField* FindExportField(char group, std::string_view name) {
  const std::span<const ExportField> fields =
      group == kExportGeneralGroup ? GeneralExportFields() : ScheduleExportFields();
  for (const ExportField& field : fields) {
    if (EqualIgnoringCase(field.name, name)) return &field;
  }
  return nullptr;
}

const ExportField* FindExportField(int number) {
  for (std::span<const ExportField> fields : {GeneralExportFields(), ScheduleExportFields()}) {
    for (const ExportField& field : fields) {
      if (field.number == number) return &field;
    }
  }
  return nullptr;
}

std::string ExportDefinitionFile(ExportScope scope, const std::string& program_folder,
                                 const NvCompany& company) {
  if (scope == ExportScope::kAllCompanies) return program_folder + kGlobalExportFile;
  return company.FilePath(kCompanyExportExtension);
}

std::string ExportColumnValue(const ExportColumn& column) {
  const ExportField* field = FindExportField(column.field);
  std::string flags;
  if (column.addition) flags += 'A';
  if (column.disposition) flags += 'D';
  if (column.current) flags += 'C';
  if (column.none_of_the_above) flags += 'N';
  // A profile value is one line: a line break in a heading would end the value early.
  std::string heading = column.heading;
  for (char& c : heading) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  // Put together piece by piece: a heading may hold any byte, NUL included.
  std::string value = field != nullptr ? field->name : "";
  value += ',';
  value += std::to_string(static_cast<unsigned char>(column.group));
  value += ',';
  value += flags;
  value += ',';
  value += heading;
  return value;
}

std::optional<ExportColumn> ParseExportColumnValue(std::string_view value) {
  std::string_view parts[3];
  for (std::string_view& part : parts) {
    const size_t comma = value.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    part = value.substr(0, comma);
    value.remove_prefix(comma + 1);
  }
  const std::string_view code_text = TrimBlanks(parts[1]);
  int code = 0;
  const auto [end, error] =
      std::from_chars(code_text.data(), code_text.data() + code_text.size(), code);
  if (error != std::errc() || end != code_text.data() + code_text.size()) return std::nullopt;
  if (code < 0 || code > 255 || !IsGroup(static_cast<char>(code))) return std::nullopt;

  ExportColumn column;
  column.group = static_cast<char>(code);
  const ExportField* field = FindExportField(column.group, TrimBlanks(parts[0]));
  if (field == nullptr) return std::nullopt;
  column.field = field->number;
  for (char flag : parts[2]) {
    switch (AsciiUpper(flag)) {
      case 'A':
        column.addition = true;
        break;
      case 'D':
        column.disposition = true;
        break;
      case 'C':
        column.current = true;
        break;
      case 'N':
        column.none_of_the_above = true;
        break;
      default:
        break;
    }
  }
  column.heading = std::string(value);
  return column;
}

bool LoadDefinition(const std::string& file, std::string_view name, ExportDefinition& definition) {
  bool found = false;
  for (const std::string& section : ListProfileSections(file)) {
    if (EqualIgnoringCase(section, name)) found = true;
  }
  if (!found) return false;

  definition.columns.clear();
  definition.include_headings = true;
  definition.select_assets = false;
  definition.file_name.clear();
  for (const std::string& key : ListProfileKeys(file, name)) {
    const std::string value = ReadProfileString(file, name, key, "", kValueBuffer);
    if (EqualIgnoringCase(key, kIncludeHeadingsKey)) {
      definition.include_headings = !EqualIgnoringCase(value, "No");
    } else if (EqualIgnoringCase(key, kFilenameKey)) {
      definition.file_name = value;
    } else if (EqualIgnoringCase(key, kSelectAssetsKey)) {
      definition.select_assets = EqualIgnoringCase(value, "Yes");
    } else if (!key.empty() && key.front() >= '0' && key.front() <= '9') {
      if (std::optional<ExportColumn> column = ParseExportColumnValue(value)) {
        definition.columns.push_back(std::move(*column));
      }
    }
  }
  definition.changed = false;
  return true;
}

bool SaveDefinition(const std::string& file, ExportDefinition& definition) {
  if (!definition.name || definition.name->empty()) return false;
  const std::string& name = *definition.name;
  if (!DeleteProfileSection(file, name)) return false;
  bool ok = WriteProfileString(file, name, kIncludeHeadingsKey, YesNo(definition.include_headings));
  ok = ok && WriteProfileString(file, name, kFilenameKey, definition.file_name);
  ok = ok && WriteProfileString(file, name, kSelectAssetsKey, YesNo(definition.select_assets));
  for (size_t i = 0; ok && i < definition.columns.size(); ++i) {
    ok =
        WriteProfileString(file, name, std::to_string(i), ExportColumnValue(definition.columns[i]));
  }
  if (ok) definition.changed = false;
  return ok;
}

bool DeleteDefinition(const std::string& file, std::string_view name) {
  return DeleteProfileSection(file, name);
}

std::vector<std::string> ListDefinitions(const std::string& file) {
  return ListProfileSections(file);
}

}  // namespace nv
