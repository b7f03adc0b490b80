// Running an export definition: one tab-separated line per asset, each column holding the
// value of its field when the asset's class (addition, disposition, current, none of the
// above) is one the column is set for.
//
// Line:    [VALUE] TAB [VALUE] TAB ... CR LF, one piece per column; a line that would hold
//          nothing but blanks and tabs is not written, and only written lines are counted.
// Values:  amounts with 2 decimals, none for a company that keeps whole dollars; dates
//          MM/DD/YYYY, nothing for the empty date; lives "%2d" years or "%2d-%d" years and
//          months; integers "%d"; asset numbers in their text form. A text holding a double
//          quote is written between double quotes with every quote doubled; tabs inside
//          texts are written as they are. Schedule fields of a schedule the asset does not
//          have are those of an empty schedule part: 0 and empty texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "base/installation_context.h"
#include "base/ui.h"
#include "export/export_definition.h"
#include "store/asset/asset.h"

namespace nv {

struct KelSelection;

inline constexpr char kUnimplementedField[] = "<< unimplemented >>";
inline constexpr char kDefaultExportFileName[] = "export.txt";
inline constexpr char kNoExportFileName[] = "No export file name defined.";
inline constexpr char kNoColumnsToExport[] = "No columns to export.";
inline constexpr char kExportFileExists[] =
    "File %s already exists.  If you wish to continue,\nthe data currently on this file will "
    "be erased.\n\n  Continue?";
inline constexpr char kUnableToOpenExportFile[] = "Unable to open file %s";
inline constexpr char kUnableToWriteExportFile[] = "Unable to write file %s";
inline constexpr char kUnableToOpenCompanyFiles[] = "Unable to open company files.";
inline constexpr char kAssetsExported[] = "%d assets exported.";
inline constexpr char kExportMeterTitle[] = "Exporting Assets";

// An asset's place in the company's current year. Addition and disposition may both hold;
// current holds only when none of the other three does.
struct ExportAssetClass {
  bool addition = false;
  bool disposition = false;
  bool current = false;
  bool none_of_the_above = false;
};

// year_begin is the end of the last closed year; the current year runs after it up to and
// including year_end.
ExportAssetClass ClassifyAsset(const NvAsset& asset, const Date& year_begin, const Date& year_end);

// What a line needs of the company.
struct ExportLineSettings {
  Date year_begin;  // the company's Last Closed
  Date year_end;    // the company's Current Year End
  bool round_dollars = false;
};

// The value of field `field` (an ExportField number) of the asset, in schedule `group` for a
// schedule field, before quoting; kUnimplementedField for a number without a value.
std::string ExportFieldText(int field, char group, const NvAsset& asset, bool round_dollars);

// The text as a line holds it: between double quotes, each doubled, when it holds one.
std::string QuoteExportText(std::string_view text);

// Appends the asset's line to `out` and counts it in `counter`, unless the line would hold
// only blanks and tabs. True when it was written.
bool WriteAssetLine(const std::vector<ExportColumn>& columns, const ExportLineSettings& settings,
                    const NvAsset& asset, std::string& out, int& counter);

// The headings line: each column's heading, quoted as a value, separated by tabs.
std::string ExportHeadingsLine(const std::vector<ExportColumn>& columns);

// folder + the separator (when the folder does not end with one) + file name.
std::string ExportFilePath(std::string_view folder, std::string_view file_name);

// Writes the definition's file for company `number`: asks before erasing an existing file
// (default No), writes the headings line when the definition includes them, then the line
// of every asset in the definition's order that `selection` (when given) takes, and shows
// the count titled "Note". An empty folder is the company's folder. The number of lines
// written, or none when the run ended early; every reason was told through ui.
std::optional<int> ExportToFile(const InstallationContext& context, std::string_view number,
                                const ExportDefinition& definition, const KelSelection* selection,
                                Ui& ui);

}  // namespace nv
