#include "import/pcfas/pcfas_importer.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/frame/matching.h"
#include "import/pcfas/pcfas_convert.h"
#include "store/asset/asset.h"

namespace nv {
namespace {

// A record needs more fields than this for the file to hold assets.
constexpr size_t kFewestAssetFields = 100;
// An asset number longer than this is shown cut in the import report.
constexpr size_t kReportNumberWidth = 40;

struct NewSchedule {
  int book;
  char letter;
  const char* name;
};
// The schedules of a new company, in this order, for the books PC/FAS uses.
constexpr NewSchedule kNewSchedules[] = {
    {kPcFasIrs, 'T', "Tax"}, {kPcFasInternal, 'B', "Book"}, {kPcFasState, 'S', "State"},
    {kPcFasAmt, 'A', "AMT"}, {kPcFasAce, 'C', "ACE"},
};

// The last component of a folder path that may end with a separator.
std::string LastComponent(std::string_view path) {
  while (!path.empty() && (path.back() == '/' || path.back() == '\\')) path.remove_suffix(1);
  const size_t slash = path.find_last_of("/\\");
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::optional<std::string> ReadHeader(const std::string& path) {
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  if (!file) return std::nullopt;
  std::string bytes(kPcFasHeaderSize, '\0');
  if (!file->ReadAt(0, bytes.data(), bytes.size())) return std::nullopt;
  return bytes;
}

bool ActiveStatus(std::string_view status) {
  return status == "A" || status == " ";
}

PcFasConversion ConversionFor(ImportRun& run) {
  const NvCompanyRecord& record = run.company().record();
  PcFasConversion conversion;
  conversion.schedule_letters = record.schedule_letters;
  conversion.asset_no_format = record.asset_no_format;
  conversion.last_closed = record.last_closed;
  conversion.account_field = PcFasSourceItemField(run.state().FieldMatch(kPcFasAccountItem));
  for (int i = 0; i < kPcFasUserFieldItems; ++i) {
    conversion.user_field_fields[static_cast<size_t>(i)] =
        PcFasSourceItemField(run.state().FieldMatch(kPcFasUserField1Item + i));
  }
  return conversion;
}

// Why a record is passed over, or "" when it is converted.
std::string FilterReason(const PcFasRecord& record, size_t first_count) {
  if (first_count <= kFewestAssetFields) {
    return StrPrintf("the first record has %zu fields; asset records have more than %zu",
                     first_count, kFewestAssetFields);
  }
  if (record.fields.size() != first_count) {
    return StrPrintf("%zu fields where the first record has %zu", record.fields.size(),
                     first_count);
  }
  if (!ActiveStatus(record.fields[1])) {
    return "record status \"" + std::string(record.fields[1].substr(0, 10)) +
           "\"; only \"A\" or a blank is imported";
  }
  return "";
}

}  // namespace

ImportDescriptor PcFasDescriptor() {
  ImportDescriptor d;
  d.kind = "pcfas";
  d.product = "PC/FAS";
  d.source_dialog = {"Select PC/FAS Company File", "PC/FAS files|*.fas", ".FAS", "c:\\pcfas"};
  d.existing = {.offers_erase = false, .confirm_erase = false, .setup_screen_after_add = true};
  d.new_loc_cat = 'L';
  d.current_year_files = true;
  d.meter_title = "PC/FAS Import";
  d.meter_text = "Copying PC/FAS assets\n ";
  return d;
}

bool PcFasImporter::CheckSource(ImportRun& run) {
  const ImportState& state = run.state();
  if (!EqualIgnoringCase(LastComponent(state.source_path), kPcFasCompanyFileName)) {
    run.ui().Message(kPcFasWrongFileMessage, "Error");
    return false;
  }
  std::optional<std::string> master =
      FindFileIgnoringCase(state.source_folder, kPcFasMasterFileName);
  if (!master) {
    run.ui().Message(kPcFasNoAsciiMessage + LastComponent(state.source_folder) + ".", "Error");
    return false;
  }
  master_path_ = *master;
  std::optional<std::string> header = ReadHeader(state.source_path);
  std::optional<PcFasCompany> company = header ? ParsePcFasCompany(*header) : std::nullopt;
  if (!company) {
    run.ui().Message(kPcFasUnreadableMessage, "Error");
    return false;
  }
  company_ = std::move(*company);
  run.state().source_header = std::move(*header);
  return true;
}

std::string PcFasImporter::DefaultCompanyNumber(const ImportRun& run) const {
  return LastComponent(run.state().source_folder);
}

bool PcFasImporter::FillCompanyRecord(ImportRun&, NvCompanyRecord& record) {
  record.name = company_.name;
  record.ein.clear();
  record.last_closed = {};
  record.current_year_end = {};
  record.round_dollars = company_.round_dollars;
  record.schedules.clear();
  for (const NewSchedule& schedule : kNewSchedules) {
    if (company_.books[static_cast<size_t>(schedule.book)]) {
      record.schedules.push_back({schedule.letter, std::string(1, schedule.letter), schedule.name});
    }
  }
  record.sort_order = "C";
  record.business_category = 1;
  record.mid_quarter_override = ' ';
  for (int i = 0; i < kPcFasUserFieldItems; ++i) {
    record.user_fields[static_cast<size_t>(i)] = {};
  }
  return true;
}

bool PcFasImporter::Match(ImportRun& run) {
  FieldMatching matching;
  for (int i = 0; i < static_cast<int>(kPcFasDestinationTexts.size()); ++i) {
    matching.destinations.push_back(
        {kPcFasAccountItem + i, kPcFasDestinationTexts[static_cast<size_t>(i)]});
  }
  for (int i = 0; i < kPcFasLabelCount; ++i) {
    matching.sources.push_back(
        {kPcFasFirstSourceItem + i, company_.labels[static_cast<size_t>(i)]});
  }
  matching.preset = {{kPcFasAccountItem, kPcFasFirstSourceItem}};
  for (int i = 0; i < kPcFasUserFieldItems; ++i) {
    matching.user_field_destinations.push_back(kPcFasUserField1Item + i);
  }
  return MatchFields(run, matching);
}

bool PcFasImporter::CopyAssets(ImportRun& run, AddStep& add) {
  NvCompanyRecord& record = run.company().record();
  for (int i = 0; i < kPcFasUserFieldItems; ++i) {
    UserFieldDefinition& field = record.user_fields[static_cast<size_t>(i)];
    if (TrimBlanks(field.name).empty()) {
      field.name = run.state().user_field_labels[static_cast<size_t>(i)];
    }
  }
  PcFasConversion conversion = ConversionFor(run);

  std::optional<File> file = File::Open(master_path_, File::Mode::kRead);
  if (!file) {
    add.Filtered(kPcFasMasterFileName, "", "the file cannot be opened; nothing was copied");
    return true;
  }
  uint64_t read_at = 0;
  PcFasMasterReader reader([&](char* buffer, size_t capacity) -> size_t {
    const int64_t got = file->ReadSomeAt(read_at, buffer, capacity);
    if (got <= 0) return 0;
    read_at += static_cast<uint64_t>(got);
    return static_cast<size_t>(got);
  });
  const uint64_t size = file->Size().value_or(0);
  add.OpenMeter(static_cast<long>(size));
  // The meter moves in steps of half a percent: each move lets the window repaint, which
  // would cost more than the asset itself.
  const uint64_t step = std::max<uint64_t>(size / 200, 1);
  uint64_t shown = 0;

  PcFasRecord source;
  NvAsset asset;
  size_t first_count = 0;
  bool first = true;
  while (reader.Next(&source)) {
    add.CountRead();
    if (first) {
      first = false;
      first_count = source.fields.size();
      conversion.layout = PcFasLayoutFor(first_count);
    }
    const std::string where = StrPrintf("line %ld", source.line);
    const std::string reason = FilterReason(source, first_count);
    if (!reason.empty()) {
      const std::string_view number =
          source.fields.empty() ? std::string_view() : TrimBlanks(source.fields[0]);
      add.Filtered(where, number.substr(0, kReportNumberWidth), reason);
    } else {
      ConvertPcFasRecord(source.fields, conversion, &asset);
      add.Add(asset, where);
    }
    if (reader.offset() - shown >= step) {
      shown = reader.offset();
      add.SetMeterPosition(static_cast<long>(shown));
    }
  }
  add.SetMeterPosition(static_cast<long>(reader.offset()));
  return true;
}

std::unique_ptr<Importer> MakePcFasImporter() {
  return std::make_unique<PcFasImporter>();
}

}  // namespace nv
