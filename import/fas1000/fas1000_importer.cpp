#include "import/fas1000/fas1000_importer.h"

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/fas1000/fas1000_convert.h"
#include "import/fas1000/fas1000_source.h"
#include "import/frame/matching.h"

namespace nv {
namespace {

using namespace fas1000;

ImportDescriptor Fas1000Descriptor() {
  ImportDescriptor d;
  d.kind = "fas1000";
  d.product = "FAS 1000/2000";
  d.source_dialog = {"Select FAS 1000 or 2000 Company File", "FAS 1000 files|*.SAF", ".SAF",
                     "c:\\fas"};
  d.existing = {.offers_erase = false, .confirm_erase = false, .setup_screen_after_add = false};
  d.new_loc_cat = 'L';
  d.current_year_files = true;
  d.meter_title = kFasMeterTitle;
  d.meter_text = kFasMeterText;
  return d;
}

// The name of the folder that holds the source file: "ACME" for ".../ACME/COMPANY.SAF".
std::string FolderName(const ImportState& state) {
  std::string_view folder = state.source_folder;
  while (!folder.empty() && (folder.back() == '/' || folder.back() == '\\')) {
    folder.remove_suffix(1);
  }
  const size_t slash = folder.find_last_of("/\\");
  return std::string(slash == std::string_view::npos ? folder : folder.substr(slash + 1));
}

// A file beside COMPANY.SAF, found ignoring case; nullopt when it is not there.
std::optional<std::string> Beside(const ImportState& state, std::string_view name) {
  return FindFileIgnoringCase(state.source_folder.empty() ? "." : state.source_folder, name);
}

// The first `size` bytes of a file (fewer when it is shorter); nullopt when it cannot be
// read. Only the heads of COMPANY.SAF and cmpsetup.dat are wanted, however long they are.
std::optional<std::string> ReadHead(const std::string& path, size_t size) {
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  if (!file) return std::nullopt;
  std::string bytes(size, '\0');
  const int64_t got = file->ReadSomeAt(0, bytes.data(), size);
  if (got < 0) return std::nullopt;
  bytes.resize(static_cast<size_t>(got));
  return bytes;
}

// The field matching panel's items: FAS label fields to the account number and three
// user fields, the account number paired with the G/L code to begin with.
FieldMatching FieldItems() {
  FieldMatching m;
  m.destinations = {{kDestinationAccount, "Account No."},
                    {kDestinationUserField1, "User Field 1"},
                    {kDestinationUserField1 + 1, "User Field 2"},
                    {kDestinationUserField1 + 2, "User Field 3"}};
  m.sources = {{kSourceGlCode, "G/L Code"},           {kSourcePoNumber, "P O Number"},
               {kSourceVendor, "Vendor/Mfg"},         {kSourceSerial, "Mfg Serial #"},
               {kSourceCompanyAssetNo, "Co Asset #"}, {kSourceWarranty, "Warranty Date"},
               {kSourceCustodian, "Custodian"},       {kSourceClassLife, "Class Life"}};
  for (int i = 0; i < 5; ++i) {
    m.sources.push_back({kSourceUserField1 + i, StrPrintf("FAS User Field %d", i + 1)});
  }
  m.preset = {{kDestinationAccount, kSourceGlCode}};
  m.user_field_destinations = {kDestinationUserField1, kDestinationUserField1 + 1,
                               kDestinationUserField1 + 2};
  return m;
}

// Where a line of a source file stands, for the import report: "bookdata.asc line 12".
std::string Where(SourceFile file, long line) {
  return StrPrintf("%s line %ld", std::string(SourceFileName(file)).c_str(), line);
}

class Fas1000Importer final : public Importer {
 public:
  Fas1000Importer() : descriptor_(Fas1000Descriptor()) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override {
    const ImportState& state = run.state();
    const std::string_view path = state.source_path;
    const std::string_view name = path.substr(path.find_last_of("/\\") + 1);
    if (!EqualIgnoringCase(name, kCompanyFileName)) {
      run.ui().Message(kFasSelectCompanyFile, "Error");
      return false;
    }
    if (!Beside(state, kAssetGenFileName) || !Beside(state, kBookDataFileName)) {
      run.ui().Message(std::string(kFasProduceAsciiFiles) + FolderName(state) + ".", "Error");
      return false;
    }
    return true;
  }

  std::string DefaultCompanyNumber(const ImportRun& run) const override {
    return FolderName(run.state());
  }

  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override {
    ImportState& state = run.state();
    std::optional<std::string> bytes = ReadHead(state.source_path, kCompanyHeaderSize);
    std::optional<CompanyHeader> header =
        bytes ? ParseCompanyHeader(*bytes) : std::optional<CompanyHeader>();
    if (!header) return false;  // the import ends here, as FAS's own header is unreadable
    state.source_header = *bytes;
    record.name = header->name;
    record.round_dollars = header->round_dollars;
    record.ein.clear();
    record.last_closed = Date{};
    record.current_year_end = Date{};
    record.schedules = Schedules(run);
    record.sort_order = "C";
    record.business_category = 1;
    record.mid_quarter_override = ' ';
    record.global_loc_cat = 'L';
    for (int i = 0; i < kMatchedUserFields; ++i) record.user_fields[i] = {};
    return true;
  }

  bool Match(ImportRun& run) override { return MatchFields(run, FieldItems()); }

  bool CopyAssets(ImportRun& run, AddStep& add) override {
    NvCompanyRecord& company = run.company().record();
    const ImportState& state = run.state();
    for (int i = 0; i < kMatchedUserFields; ++i) {
      if (TrimBlanks(company.user_fields[i].name).empty()) {
        company.user_fields[i].name = state.user_field_labels[i];
      }
    }

    std::optional<LineSource> assetgen, bookdata;
    if (std::optional<std::string> path = Beside(state, kAssetGenFileName)) {
      assetgen = LineSource::Open(*path);
    }
    if (std::optional<std::string> path = Beside(state, kBookDataFileName)) {
      bookdata = LineSource::Open(*path);
    }
    add.OpenMeter(assetgen ? static_cast<long>(assetgen->size()) : 0);
    if (!assetgen || !bookdata) {
      run.ui().Message(kFasUnableToOpenFiles, "Error");
      return true;  // the count of 0 follows
    }
    FasSourceReader reader(std::move(*assetgen), std::move(*bookdata),
                           Optional(state, kLabelFileName), Optional(state, kListedFileName));

    ConversionSettings settings;
    settings.schedule_letters = company.schedule_letters;
    settings.asset_no_format = company.asset_no_format;
    settings.account_source = state.FieldMatch(kDestinationAccount);
    for (int i = 0; i < kMatchedUserFields; ++i) {
      settings.user_field_sources[i] = state.FieldMatch(kDestinationUserField1 + i);
    }

    FasAsset source;
    std::vector<SkippedBook> skipped;
    for (;;) {
      const bool more = reader.Next(&source);
      ReportPassedOver(reader.TakePassedOver(), add);
      add.SetMeterPosition(static_cast<long>(reader.assetgen_consumed()));
      if (!more) break;
      add.CountRead();
      add.SetMeterText(StrPrintf(kFasMeterAssetText, source.general.meter_text.c_str()));
      skipped.clear();
      NvAsset asset = ConvertAsset(source, settings, &skipped);
      for (const SkippedBook& book : skipped) {
        add.Filtered(Where(SourceFile::kBookData, book.line), source.general.key, book.reason);
      }
      add.Add(asset, Where(SourceFile::kAssetGen, source.general.line));
    }
    return true;
  }

 private:
  // The company's schedules: those of the books cmpsetup.dat names, or all five when it
  // cannot be read (told in a note).
  static std::vector<ScheduleEntry> Schedules(ImportRun& run) {
    std::optional<BooksUsed> books;
    if (std::optional<std::string> path = Beside(run.state(), kSetupFileName)) {
      if (std::optional<std::string> bytes = ReadHead(*path, kSetupSize)) {
        books = ParseBookSetup(*bytes);
      }
    }
    if (!books) {
      run.ui().Message(kFasSetupMissingNote, "Note");
      books = BooksUsed{true, true, true, true, true};
    }
    std::vector<ScheduleEntry> schedules;
    if (books->irs) schedules.push_back({'T', "T", "Tax"});
    if (books->internal) schedules.push_back({'B', "B", "Book"});
    if (books->state) schedules.push_back({'S', "S", "State"});
    if (books->amt) schedules.push_back({'A', "A", "AMT"});
    if (books->ace) schedules.push_back({'C', "C", "ACE"});
    return schedules;
  }

  // An optional file beside COMPANY.SAF; a source without lines when it is not there.
  static LineSource Optional(const ImportState& state, std::string_view name) {
    if (std::optional<std::string> path = Beside(state, name)) {
      if (std::optional<LineSource> source = LineSource::Open(*path)) return std::move(*source);
    }
    return LineSource();
  }

  static void ReportPassedOver(const std::vector<PassedOverLine>& lines, AddStep& add) {
    for (const PassedOverLine& line : lines) {
      if (line.file == SourceFile::kAssetGen) add.CountRead();
      add.Filtered(Where(line.file, line.line), line.key, line.reason);
    }
  }

  ImportDescriptor descriptor_;
};

}  // namespace

std::unique_ptr<Importer> MakeFas1000Importer() {
  return std::make_unique<Fas1000Importer>();
}

}  // namespace nv
