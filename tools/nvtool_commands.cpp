#include "tools/nvtool_commands.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/lock_file.h"
#include "base/str_format.h"
#include "base/version.h"
#include "shell/user_name.h"
#include "store/asset/asset.h"
#include "store/asset/asset_record.h"
#include "store/company/company.h"
#include "store/company/company_check.h"
#include "store/company/company_lock.h"
#include "store/company/master_file.h"
#include "store/file/status.h"
#include "tools/barcode_command.h"
#include "tools/company_json.h"
#include "tools/export_command.h"
#include "tools/export_text_command.h"
#include "tools/import_command.h"
#include "tools/json_writer.h"
#include "tools/nvtool_context.h"
#include "tools/select_command.h"
#include "tools/undo_command.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr char kUsage[] =
    "usage: nvtool COMMAND ...\n"
    "commands:\n"
    "  version                          print the program version\n"
    "  check FOLDER NUMBER              verify a company; exit 0 only without problems\n"
    "  dump FOLDER NUMBER [--json]      the company record and every asset\n"
    "  load FOLDER NUMBER FILE.json     add the document's assets (creating the company)\n"
    "  import KIND SOURCE FOLDER NUMBER [--existing select|erase|add|abort]\n"
    "         [--company FILE.json] [--match DEST=SRC,...] [--books LETTER=BOOK,...]\n"
    "         [--dry-run]\n"
    "         aicpa: [--account asset|accumulated|expense] [--switch-sl yes|no]\n"
    "                [--without-dispositions yes|no]\n"
    "         faswin: [--delete-disposed yes|no|cancel] [--schedule LETTER]\n"
    "         bna: --profile FILE [--company-type new|existing]\n"
    "              [--duplicates combine|replace|ignore|subasset] [--today MM/DD/YYYY]\n"
    "                                   run an importer (KIND: pcfas, fas1000, faswin,\n"
    "                                   aicpa, text, mba, bna)\n"
    "  undo FOLDER NUMBER [--force]     restore the company as it was before its last import\n"
    "  export-text FOLDER NUMBER FILE --type tab|comma|fixed|fixed-nolines [--replace]\n"
    "                                   write the whole-company text file\n"
    "  export FOLDER NUMBER DEFINITION [--all-companies] [--selection NAME] [--out FILE]\n"
    "         [--replace]               run a stored export definition\n"
    "  select FOLDER NUMBER [--schedule LETTER] FIELD=TEXT|FIELD!=TEXT ...\n"
    "                                   the asset numbers an asset selection takes\n"
    "  barcode TEXT FILE.png [--module N] [--height N]\n"
    "                                   TEXT as a Code 128 label (module 2, height 60 pixels)\n";

int Usage(std::ostream& err) {
  err << kUsage;
  return 2;
}

std::string StatusText(int status) {
  switch (status) {
    case kBlockFileMissing:
      return "its block file is missing or unreadable";
    case kBadMarker:
      return "its block file is not a company's";
    case kBrokenChain:
      return "its company record is broken";
    case kNewerVersion:
      return "it was written by a newer version, or is an old company to convert first";
    case kI1Failed:
      return "its asset-number index (.I1) is missing or unreadable";
    case kI2Failed:
      return "its sort index (.I2) is missing or unreadable";
    case kBadHeaderI1:
      return "an index file has a header this version does not know";
    default:
      return StrPrintf("status %d", status);
  }
}

// Why a company's files could not be made: the data directory is missing or no folder,
// or the company's folder refused them.
std::string WhyNotCreated(const InstallationContext& ctx, const std::string& number, int status) {
  if (std::optional<std::string> problem = DataFolderProblem(ctx)) return *problem;
  return "its files cannot be written in " + CompanyFolder(ctx, number) +
         StrPrintf(" (status %d)", status);
}

bool CompanyExists(const InstallationContext& ctx, const std::string& number) {
  return FindFileIgnoringCase(CompanyFolder(ctx, number), AsciiUpper(number) + ".A").has_value();
}

// The in-use message on one line, as nvtool writes errors.
void TellCompanyInUse(const std::string& number, const std::string& holder, std::ostream& err) {
  std::string message = CompanyInUseMessage(number, holder);
  std::replace(message.begin(), message.end(), '\n', ' ');
  err << "nvtool: " << message << "\n";
}

// Opens the company (for writing: under `lock`, which the caller holds); on failure says
// why on err.
bool OpenCompany(NvCompany& company, const std::string& number, int flags, std::ostream& err,
                 CompanyInUseLock* lock = nullptr) {
  std::string ignored;
  std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromString("", &ignored);
  int rc =
      lock != nullptr ? company.Open(number, flags, *ui, *lock) : company.Open(number, flags, *ui);
  if (rc > 0) return true;
  if (rc == kCompanyInUse) {
    TellCompanyInUse(AsciiUpper(number), company.lock_holder(), err);
  } else {
    err << "nvtool: cannot open company " << AsciiUpper(number) << ": " << StatusText(rc) << "\n";
  }
  return false;
}

// A load or a dump passes over each asset once, so the store's read caches, 64 MB a file,
// would mostly hold what the system's file cache holds anyway; these limits keep the run's
// memory near 100 MB at a million assets and cost no time that can be measured.
void LimitReadCaches(NvCompany& company) {
  company.blocks().set_cache_limit(size_t{8} << 20);
  company.number_index().file().set_cache_limit(size_t{32} << 20);
  company.sort_index().file().set_cache_limit(size_t{32} << 20);
}

// An existing company, read-only with both indexes; on failure says why on err.
bool OpenForReading(const InstallationContext& ctx, NvCompany& company, const std::string& number,
                    std::ostream& err) {
  if (!CompanyExists(ctx, number)) {
    err << "nvtool: no company " << AsciiUpper(number) << " in " << ctx.data_directory() << "\n";
    return false;
  }
  return OpenCompany(
      company, number,
      NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kLoadLocCat | NvCompany::kReadOnly, err);
}

// The company's assets in asset-number order, each handed to `each` as it is read: false
// after saying on err what failed (with how many came before).
template <typename Each>
[[nodiscard]] bool ForEachAsset(NvCompany& company, std::ostream& err, Each each) {
  company.ResetAssetWalk();
  NvAsset asset;
  for (size_t done = 0;; ++done) {
    int rc = company.NextAsset(AssetOrder::kNumber, &asset);
    if (rc != kOk) {
      err << "nvtool: reading the assets failed after " << done << " (status " << rc
          << "); the output is cut short\n";
      return false;
    }
    if (asset.record_number == 0) return true;
    each(asset);
  }
}

// Counts the assets on the number index alone, without reading them.
[[nodiscard]] int CountAssets(NvCompany& company, size_t* count) {
  *count = 0;
  NvBTreeFile& index = company.number_index();
  index.ClearPath();
  if (index.root() == 0) return kOk;  // no tree to step in: no assets
  for (;;) {
    uint32_t record = 0;
    if (int rc = index.Next(&record); rc != kOk) return rc;
    if (record == 0) return kOk;
    ++*count;
  }
}

template <typename R>
const JsonField<R>& FieldNamed(std::span<const JsonField<R>> fields, std::string_view name) {
  for (const JsonField<R>& field : fields) {
    if (field.name == name) return field;
  }
  std::abort();  // a name of this file, not of the document
}

// The company as people read it: its members one a line with their JSON values, then each
// asset.
[[nodiscard]] bool PrintText(NvCompany& company, std::ostream& out, std::ostream& err) {
  const NvCompanyRecord& c = company.record();
  JsonWriter values(out);
  auto member = [&](std::string_view name, auto write) {
    out << "  " << name << ": ";
    write();
    values.Flush();
    out << "\n";
  };
  out << "Company " << JsonText(c.number) << "  " << JsonText(c.name) << "\n";
  for (const char* name :
       {"ein", "last_closed", "current_year_end", "sort_order", "business_category",
        "round_dollars", "mid_quarter_override", "global_loc_cat", "misc_codes", "logging_flags",
        "permissions", "asset_number_format"}) {
    member(name, [&] { WriteFieldValue(FieldNamed(CompanyJsonFields(), name), c, values); });
  }
  for (const ScheduleEntry& s : c.schedules) {
    out << "  schedule " << JsonText(std::string(1, s.letter)) << ": " << JsonText(s.type) << " "
        << JsonText(s.name) << "\n";
  }
  for (size_t i = 0; i < c.user_fields.size(); ++i) {
    const UserFieldDefinition& f = c.user_fields[i];
    if (!JsonText(f.name).empty() || !JsonText(f.default_value).empty()) {
      out << "  user field " << i + 1 << ": " << JsonText(f.name) << " ("
          << JsonText(f.default_value) << ")\n";
    }
  }
  size_t count = 0;
  if (int rc = CountAssets(company, &count); rc != kOk) {
    err << "nvtool: counting the assets failed (status " << rc << ")\n";
    return false;
  }
  out << count << " assets\n";
  return ForEachAsset(company, err, [&](const NvAsset& a) {
    out << "\nAsset " << JsonAssetNo(a.number) << "  " << JsonText(a.description) << "\n";
    for (const JsonField<NvAsset>& field : AssetJsonFields()) {
      if (field.name == "asset_no" || field.name == "description" || field.name == "schedules" ||
          !FieldPresent(field, a)) {
        continue;
      }
      member(field.name, [&] { WriteFieldValue(field, a, values); });
    }
    for (size_t i = 0; i < a.schedule_letters.size() && i < a.schedules.size(); ++i) {
      member("schedule " + JsonText(a.schedule_letters.substr(i, 1)),
             [&] { WriteFields(AssetScheduleJsonFields(), a.schedules[i], values); });
    }
  });
}

int Check(const InstallationContext& ctx, const std::string& number, std::ostream& out,
          std::ostream& err) {
  NvCompany company(ctx);
  if (!OpenForReading(ctx, company, number, err)) return 1;
  CompanyCheck check = CheckCompany(company);
  for (const std::string& problem : check.problems) out << problem << "\n";
  out << "company " << company.number() << ": " << check.assets << " assets, "
      << (check.problems.empty() ? std::string("no problems")
                                 : StrPrintf("%zu problems", check.problems.size()))
      << "\n";
  return check.problems.empty() ? 0 : 1;
}

int Dump(const InstallationContext& ctx, const std::string& number, bool json, std::ostream& out,
         std::ostream& err) {
  NvCompany company(ctx);
  if (!OpenForReading(ctx, company, number, err)) return 1;
  LimitReadCaches(company);
  if (!json) return PrintText(company, out, err) ? 0 : 1;
  // Written as it is read: memory stays flat however many assets there are.
  JsonWriter doc(out, 2);
  doc.BeginObject();
  doc.Key("company");
  WriteCompanyJson(company.record(), doc);
  AccountGroupList groups;
  static_cast<void>(LoadAccountGroups(company.folder(), company.number(), &groups));
  doc.Key("account_groups");
  WriteAccountGroupsJson(groups.groups, doc);
  doc.Key("locations");
  WriteLocCatListJson(company.locations(), doc);
  doc.Key("categories");
  WriteLocCatListJson(company.categories(), doc);
  doc.Key("assets");
  doc.BeginArray();
  if (!ForEachAsset(company, err, [&](const NvAsset& asset) { WriteAssetJson(asset, doc); })) {
    return 1;
  }
  doc.EndArray();
  doc.EndObject();
  doc.Flush();
  out << "\n";
  return 0;
}

// A load: creates the company from the document's company object when it does not exist,
// then adds the assets as they are read.
class LoadRun final : public CompanyDocumentSink {
 public:
  LoadRun(const InstallationContext& ctx, std::string number, CompanyInUseLock& lock,
          std::ostream& out, std::ostream& err)
      : ctx_(ctx), number_(std::move(number)), lock_(lock), out_(out), err_(err), company_(ctx) {}

  [[nodiscard]] bool Open() {
    if (!OpenCompany(company_, number_, NvCompany::kOpenI1 | NvCompany::kOpenI2, err_, &lock_)) {
      return false;
    }
    LimitReadCaches(company_);
    format_ = company_.RecordFormat();
    return true;
  }
  // 0, or 1 after saying why the company could not be closed.
  [[nodiscard]] int Close() {
    if (!company_.is_open()) return 0;
    if (int rc = company_.Close(); rc != 0) {
      err_ << "nvtool: closing company " << number_ << " failed (status " << rc << ")\n";
      return 1;
    }
    return 0;
  }
  bool loading() const { return company_.is_open(); }
  bool failed() const { return failed_; }
  // The assets came before the company object, which made the company.
  bool assets_passed_over() const { return assets_passed_over_; }
  void Summary() { out_ << added_ << " assets added, " << refused_ << " refused\n"; }

  NvCompanyRecord* CompanyTarget() override {
    return loading() || created_ || failed_ ? nullptr : &record_;
  }
  bool CompanyRead(const std::string& error) override {
    if (!error.empty()) return Fail("nvtool: bad document: " + error);
    if (!record_.number.empty() && !EqualIgnoringCase(record_.number, number_)) {
      return Fail("nvtool: bad document: it is for company " + record_.number + ", not " + number_);
    }
    if (!Create() || !Open()) {
      failed_ = true;
      return false;
    }
    return true;
  }
  const AssetRecordFormat* AssetForm() override {
    if (loading()) return &format_;
    assets_passed_over_ = true;
    return nullptr;
  }
  bool AssetRead(NvAsset& asset, const std::string& label, const std::string& error) override {
    if (!error.empty()) return Refuse(label, error);
    if (!asset.number.valid()) {
      return Refuse(label, "invalid number under the company's format " +
                               format_.asset_no_format.DisplayText());
    }
    int rc = company_.AddAsset(&asset);
    if (rc != kOk) {
      return Refuse(label,
                    rc == kDuplicate ? std::string("duplicate asset number") : StatusText(rc));
    }
    ++added_;
    return true;
  }

 private:
  bool Fail(const std::string& message) {
    err_ << message << "\n";
    failed_ = true;
    return false;
  }
  bool Refuse(const std::string& label, const std::string& why) {
    out_ << "refused " << label << ": " << why << "\n";
    ++refused_;
    return true;
  }
  // Makes the company from record_ and enters it into MASTER.A; false after saying why.
  bool Create() {
    NvCompany company(ctx_);
    company.record() = record_;
    if (int rc =
            company.Create({number_, record_.name}, NvCompany::kOpenI1 | NvCompany::kOpenI2, lock_);
        rc != 0) {
      if (rc == kCompanyInUse) {
        TellCompanyInUse(number_, company.lock_holder(), err_);
      } else {
        err_ << "nvtool: cannot create company " << number_ << ": "
             << WhyNotCreated(ctx_, number_, rc) << "\n";
      }
      return false;
    }
    created_ = true;
    MasterFile master;
    master.subfolders = ctx_.current.subfolders;
    const MasterFileStatus rc = ReadMasterFile(ctx_.data_directory(), &master);
    if (rc != MasterFileStatus::kOk && rc != MasterFileStatus::kNotFound) {
      err_ << "nvtool: cannot read " << ctx_.data_directory() << kMasterFileName << "\n";
      return false;
    }
    InsertMasterRec(&master.companies, {number_, record_.name});
    if (WriteMasterFile(ctx_.data_directory(), master) != MasterFileStatus::kOk) {
      err_ << "nvtool: cannot write " << ctx_.data_directory() << kMasterFileName << "\n";
      return false;
    }
    out_ << "created company " << number_ << "\n";
    return true;
  }

  const InstallationContext& ctx_;
  const std::string number_;
  CompanyInUseLock& lock_;  // held for the whole run, from before the company is looked for
  std::ostream& out_;
  std::ostream& err_;
  NvCompany company_;
  NvCompanyRecord record_;
  AssetRecordFormat format_;
  bool created_ = false;
  bool failed_ = false;
  bool assets_passed_over_ = false;
  size_t added_ = 0, refused_ = 0;
};

int Load(const InstallationContext& ctx, const std::string& number_arg, const std::string& file,
         std::ostream& out, std::ostream& err) {
  const std::string number = AsciiUpper(number_arg);
  if (!IsValidCompanyNumber(number)) {
    err << "nvtool: " << number_arg << " is not a company number (1 to 8 of A-Z, 0-9, &#$@)\n";
    return 1;
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    err << "nvtool: cannot read " << file << "\n";
    return 1;
  }
  // One writer per company: the in-use lock is held from before the company is looked for
  // until it is closed, so that no other writer (another load, the main program, an import)
  // creates or changes it meanwhile.
  CompanyInUseLock lock;
  if (std::string holder = TakeCompanyInUseLock(ctx, number, lock); !holder.empty()) {
    const std::string path = CompanyLockPath(CompanyFolder(ctx, number), number);
    if (holder == "*" && !LockFile::IsHeldByOther(path)) {  // not a holder's
      if (std::optional<std::string> problem = DataFolderProblem(ctx)) {
        err << "nvtool: cannot create company " << number << ": " << *problem << "\n";
      } else {
        err << "nvtool: cannot make the in-use lock " << path << "\n";
      }
    } else {
      TellCompanyInUse(number, holder, err);
    }
    return 1;
  }
  // A company folder made only to hold the lock goes again when no company came of the run;
  // one with files in it refuses, and stays.
  struct FolderOfNoCompany {
    ~FolderOfNoCompany() {
      if (!ctx.current.subfolders || CompanyExists(ctx, number)) return;
      lock.Release();
      static_cast<void>(RemoveEmptyFolder(CompanyFolder(ctx, number)));
    }
    const InstallationContext& ctx;
    const std::string& number;
    CompanyInUseLock& lock;
  } tidy{ctx, number, lock};
  LoadRun run(ctx, number, lock, out, err);
  if (CompanyExists(ctx, number) && !run.Open()) return 1;
  DocumentResult result = ReadCompanyDocument(in, run);
  if (result.outcome == DocumentOutcome::kRead && run.assets_passed_over() && run.loading()) {
    // The company object came after the assets and made the company: read the assets now.
    in.clear();
    if (!std::filesystem::is_regular_file(file) || !in.seekg(0)) {
      err << "nvtool: " << file << ": the assets come before the company object, and the file "
          << "cannot be read a second time for them; company " << number << " has none yet\n";
      return std::max(run.Close(), 1);
    }
    result = ReadCompanyDocument(in, run);
  }
  const bool loading = run.loading();
  int status = run.Close();
  if (loading) run.Summary();
  switch (result.outcome) {
    case DocumentOutcome::kRead:
      if (!loading && !run.failed()) {
        err << "nvtool: no company " << number << " yet, and the document has no company object\n";
        return 1;
      }
      return status;
    case DocumentOutcome::kEnded:
      return 1;  // the run said why
    case DocumentOutcome::kNotAnObject:
      err << "nvtool: " << file << ": not a JSON object\n";
      return 1;
    case DocumentOutcome::kAssetsNotAList:
      err << "nvtool: bad document: assets is not a list\n";
      return 1;
    case DocumentOutcome::kBadJson:
      err << "nvtool: " << file << ": not valid JSON " << result.syntax_error
          << (loading ? "; the assets before that point are loaded" : "") << "\n";
      return 1;
  }
  return 1;
}

}  // namespace

int RunNvtool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (args.empty()) return Usage(err);
  const std::string& command = args[0];
  if (command == "version" && args.size() == 1) {
    out << "nvtool " << kProgramVersion << "\n";
    return 0;
  }
  if (command == "check" && args.size() == 3) {
    return Check(ToolContext(args[1]), args[2], out, err);
  }
  if (command == "dump" && (args.size() == 3 || (args.size() == 4 && args[3] == "--json"))) {
    return Dump(ToolContext(args[1]), args[2], args.size() == 4, out, err);
  }
  if (command == "load" && args.size() == 4) {
    return Load(ToolContext(args[1]), args[2], args[3], out, err);
  }
  if (command == "import") {
    std::string error;
    std::optional<ImportCommandOptions> options =
        ParseImportCommand({args.begin() + 1, args.end()}, &error);
    if (!options) {
      err << "nvtool: " << error << "\n";
      return Usage(err);
    }
    return RunImportCommand(*options, out, err);
  }
  if (command == "export-text") {
    const int status = RunExportTextCommand({args.begin() + 1, args.end()}, out, err);
    return status == 2 ? Usage(err) : status;
  }
  if (command == "export") {
    const int status = RunExportCommand({args.begin() + 1, args.end()}, out, err);
    return status == 2 ? Usage(err) : status;
  }
  if (command == "select") {
    const int status = RunSelectCommand({args.begin() + 1, args.end()}, out, err);
    return status == 2 ? Usage(err) : status;
  }
  if (command == "undo") {
    const int status = RunUndoCommand({args.begin() + 1, args.end()}, out, err);
    return status == 2 ? Usage(err) : status;
  }
  if (command == "barcode") {
    const int status = RunBarcodeCommand({args.begin() + 1, args.end()}, out, err);
    return status == 2 ? Usage(err) : status;
  }
  if (command != "version" && command != "check" && command != "dump" && command != "load") {
    err << "nvtool: unknown command '" << command << "'\n";
  }
  return Usage(err);
}

}  // namespace nv
