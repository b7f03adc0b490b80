// Treats the input as an export definitions file: lists its definitions and loads each,
// checks that every column read stores as a value that reads back as the same column,
// saves each definition into a second file and loads it again, and writes one asset's
// line with its columns. The input is also read as one stored column value.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "export/export_definition.h"
#include "export/export_run.h"
#include "fuzz/fuzz_scratch.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

bool SameColumn(const nv::ExportColumn& a, const nv::ExportColumn& b) {
  return a.field == b.field && a.group == b.group && a.heading == b.heading &&
         a.addition == b.addition && a.disposition == b.disposition && a.current == b.current &&
         a.none_of_the_above == b.none_of_the_above;
}

// A read column is one of the tables' fields in "*" or a schedule letter.
void CheckColumn(const nv::ExportColumn& column) {
  const nv::ExportField* field = nv::FindExportField(column.field);
  Check(field != nullptr);
  Check(column.group == nv::kExportGeneralGroup || (column.group >= 'A' && column.group <= 'Z'));
  Check(nv::FindExportField(column.group, field->name) == field);
  if (column.heading.find_first_of("\r\n") != std::string::npos) return;
  const std::optional<nv::ExportColumn> back =
      nv::ParseExportColumnValue(nv::ExportColumnValue(column));
  Check(back && SameColumn(*back, column));
}

// What a stored heading reads back as: line breaks are stored as blanks, and the profile
// drops blanks at the end of a value.
std::string AsStored(std::string heading) {
  for (char& c : heading) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  while (!heading.empty() &&
         (heading.back() == ' ' || heading.back() == '\t' || heading.back() == '\r')) {
    heading.pop_back();
  }
  return heading;
}

nv::NvAsset SampleAsset() {
  nv::NvAsset asset;
  asset.Clear("BT");
  asset.number = nv::NvAssetNo::Parse("12.3", {6, 2, 0});
  asset.description = "Press \"large\"";
  asset.date_in_service = {3, 1, 2024};
  asset.Schedule('B')->business_percent = 40;
  asset.Schedule('B')->current_depr = 125;
  return asset;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (std::optional<nv::ExportColumn> column = nv::ParseExportColumnValue(bytes)) {
    CheckColumn(*column);
  }

  const std::string folder = nv::fuzzing::ScratchFolder("export_definition");
  const std::string file = folder + "defs.exp";
  const std::string copy = folder + "copy.exp";
  if (!nv::WriteFileAtomically(file, bytes)) return 0;
  static const nv::NvAsset asset = SampleAsset();
  const nv::ExportLineSettings settings{{12, 31, 2023}, {12, 31, 2024}, false};

  int loaded = 0;
  for (const std::string& name : nv::ListDefinitions(file)) {
    if (++loaded > 8) break;
    nv::ExportDefinition definition;
    Check(nv::LoadDefinition(file, name, definition));
    Check(!definition.changed);
    for (const nv::ExportColumn& column : definition.columns) CheckColumn(column);

    std::string line;
    int count = 0;
    const bool written = nv::WriteAssetLine(definition.columns, settings, asset, line, count);
    Check(written == (count == 1));
    Check(written ? line.ends_with("\r\n") : line.empty());

    definition.name = name;
    unlink(copy.c_str());
    if (!nv::SaveDefinition(copy, definition)) continue;
    nv::ExportDefinition again;
    Check(nv::LoadDefinition(copy, name, again));
    Check(again.include_headings == definition.include_headings);
    Check(again.select_assets == definition.select_assets);
    Check(again.columns.size() == definition.columns.size());
    for (size_t i = 0; i < again.columns.size(); ++i) {
      nv::ExportColumn expected = definition.columns[i];
      expected.heading = AsStored(expected.heading);
      Check(SameColumn(again.columns[i], expected));
    }
  }
  unlink(file.c_str());
  unlink(copy.c_str());
  return 0;
}
