#include "import/mba/mba_importer.h"

#include "base/file_util.h"
#include "base/str_format.h"
#include "base/ui.h"
#include "import/mba/mba_convert.h"
#include "import/mba/mba_numbering.h"
#include "store/codes/account_groups.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

// The account groups of the company, read when the first line with an account needs them.
class LazyAccountGroups {
 public:
  explicit LazyAccountGroups(const NvCompany& company) : company_(company) {}

  std::string GroupFor(const MbaLine& line) {
    if (line.asset_account.empty()) return "";
    if (!loaded_) {
      // A missing file is an empty list; so is an unreadable one, as for the main program.
      static_cast<void>(LoadAccountGroups(company_.folder(), company_.number(), &list_));
      loaded_ = true;
    }
    return MbaAccountGroupFor(line, &list_.groups);
  }

  // Writes the list when it was used. False when the file could not be written.
  bool Save() const {
    return !loaded_ || SaveAccountGroups(company_.folder(), company_.number(), list_) >= 0;
  }

 private:
  const NvCompany& company_;
  AccountGroupList list_;
  bool loaded_ = false;
};

// Scans every ID and chooses the numbering scheme.
MbaNumbering ScanNumbering(const std::vector<MbaSourceLine>& lines) {
  MbaNumbering numbering;
  for (const MbaSourceLine& line : lines) {
    numbering.Scan(SplitMbaAssetId(MbaField(line.text, kMbaAssetId)));
  }
  numbering.Choose();
  return numbering;
}

}  // namespace

ImportDescriptor MbaDescriptor() {
  ImportDescriptor d;
  d.kind = "mba";
  d.product = "MBA Software";
  d.source_dialog = {"Select Source File", "MBA Software text files|*.txt|All files|*.*", ".txt",
                     "/MBAS2DAT"};
  d.existing = {.offers_erase = true, .confirm_erase = false, .setup_screen_after_add = false};
  d.new_loc_cat = 'N';
  d.current_year_files = false;
  d.meter_title = "MBA Import";
  d.meter_text = "Copying MBA assets\n ";
  return d;
}

bool MbaImporter::CheckSource(ImportRun& run) {
  const std::string& path = run.state().source_path;
  std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) {
    MessageF(run.ui(), "Error", kMbaUnreadableMessage, path.c_str());
    return false;
  }
  bytes_ = std::move(*bytes);
  lines_ = SplitMbaLines(bytes_);
  if (lines_.empty()) {
    MessageF(run.ui(), "Error", kMbaNoAssetsMessage, path.c_str());
    return false;
  }
  return true;
}

std::string MbaImporter::DefaultCompanyNumber(const ImportRun& run) const {
  const std::string& path = run.state().source_path;
  std::string name = path.substr(path.find_last_of("/\\") + 1);
  return name.substr(0, name.rfind('.'));
}

bool MbaImporter::FillCompanyRecord(ImportRun&, NvCompanyRecord& record) {
  record.name.clear();
  record.ein.clear();
  record.last_closed = {};
  record.current_year_end = {};
  record.round_dollars = false;
  record.schedules = {{'T', "T", ScheduleTypeName('T')}};
  record.sort_order = "ACL";
  record.business_category = 1;
  record.mid_quarter_override = ' ';
  record.global_loc_cat = 'N';
  for (size_t i = 0; i < 3; ++i) record.user_fields[i] = {};
  return true;
}

bool MbaImporter::CopyAssets(ImportRun& run, AddStep& add) {
  NvCompany& company = run.company();
  NvCompanyRecord& record = company.record();
  record.user_fields[0].name = kMbaStatusFieldName;
  record.user_fields[1].name = kMbaIdFieldName;

  MbaNumbering numbering = ScanNumbering(lines_);
  LazyAccountGroups groups(company);
  add.OpenMeter(static_cast<long>(lines_.size()));
  long done = 0;
  for (const MbaSourceLine& source : lines_) {
    add.CountRead();
    MbaRecord line{source.number, ParseMbaLine(source.text), {}};
    line.id = SplitMbaAssetId(line.line.id);
    const NvAssetNo number = numbering.AssetNumber(line.id, record.asset_no_format);
    NvAsset asset = ConvertMbaLine(line, number, groups.GroupFor(line.line), record);
    add.Add(asset, StrPrintf("line %ld", source.number));
    add.SetMeterPosition(++done);
  }
  if (!groups.Save()) {
    MessageF(run.ui(), "Error", kMbaAccountGroupsNotSaved, company.FilePath("ACG").c_str());
    return false;
  }
  return true;
}

std::unique_ptr<Importer> MakeMbaImporter() {
  return std::make_unique<MbaImporter>();
}

}  // namespace nv
