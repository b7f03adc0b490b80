#include "tools/nvtool_commands.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
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
#include "tools/company_json.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr char kUsage[] =
    "usage: nvtool COMMAND ...\n"
    "commands:\n"
    "  version                          print the program version\n"
    "  check FOLDER NUMBER              verify a company; exit 0 only without problems\n"
    "  dump FOLDER NUMBER [--json]      the company record and every asset\n"
    "  load FOLDER NUMBER FILE.json     add the document's assets (creating the company)\n";

int Usage(std::ostream& err) {
  err << kUsage;
  return 2;
}

// A data directory as an installation of its own: companies in it or, when its MASTER.A
// says so, in NUMBER.CLT folders inside it.
InstallationContext ToolContext(const std::string& folder) {
  InstallationContext ctx;
  std::string dir = folder;
  if (dir.empty() || dir.back() != '/') dir += '/';
  ctx.installation_folder = dir;
  ctx.current.slot.data_path = dir;
  ctx.run.product_name = "NORVANE";
  ctx.today = Today();
  ctx.user_name = DetermineUserName(NameType::kUser);
  MasterFile master;
  if (ReadMasterFile(dir, &master) == MasterFileStatus::kOk) {
    ctx.current.subfolders = master.subfolders;
    ctx.current.companies = master.companies;
  }
  return ctx;
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
    case kCompanyInUse:
      return "another writer holds it";
    default:
      return StrPrintf("status %d", status);
  }
}

// Why a company's files could not be made: the data directory is missing or no folder,
// or the company's folder refused them.
// What is wrong with the data folder itself, if anything.
std::optional<std::string> DataFolderProblem(const InstallationContext& ctx) {
  std::string data = ctx.data_directory();
  while (data.size() > 1 && data.back() == '/') data.pop_back();
  if (!PathExists(data)) return "the folder " + data + " does not exist";
  if (!IsFolder(data)) return data + " is not a folder";
  return std::nullopt;
}

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

// An existing company, read-only with both indexes; on failure says why on err.
bool OpenForReading(const InstallationContext& ctx, NvCompany& company, const std::string& number,
                    std::ostream& err) {
  if (!CompanyExists(ctx, number)) {
    err << "nvtool: no company " << AsciiUpper(number) << " in " << ctx.data_directory() << "\n";
    return false;
  }
  return OpenCompany(company, number,
                     NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, err);
}

std::optional<nlohmann::ordered_json> CompanyDocument(NvCompany& company, std::ostream& err) {
  nlohmann::ordered_json doc;
  doc["company"] = CompanyToJson(company.record());
  nlohmann::ordered_json assets = nlohmann::ordered_json::array();
  company.ResetAssetWalk();
  for (;;) {
    NvAsset asset;
    int rc = company.NextAsset(AssetOrder::kNumber, &asset);
    if (rc != kOk) {
      err << "nvtool: reading the assets failed (status " << rc << ")\n";
      return std::nullopt;
    }
    if (asset.record_number == 0) break;
    assets.push_back(AssetToJson(asset));
  }
  doc["assets"] = std::move(assets);
  return doc;
}

// The document as people read it.
void PrintText(const nlohmann::ordered_json& doc, std::ostream& out) {
  const auto& c = doc["company"];
  out << "Company " << c["number"].get<std::string>() << "  " << c["name"].get<std::string>()
      << "\n";
  for (const char* key : {"ein", "last_closed", "current_year_end", "sort_order",
                          "business_category", "round_dollars", "mid_quarter_override",
                          "global_loc_cat", "misc_codes", "logging_flags", "permissions"}) {
    out << "  " << key << ": " << c[key].dump() << "\n";
  }
  out << "  asset_number_format: " << c["asset_number_format"].dump() << "\n";
  for (const auto& s : c["schedules"]) {
    out << "  schedule " << s["letter"].get<std::string>() << ": " << s["type"].get<std::string>()
        << " " << s["name"].get<std::string>() << "\n";
  }
  for (size_t i = 0; i < c["user_fields"].size(); ++i) {
    const auto& f = c["user_fields"][i];
    if (f["name"] != "" || f["default"] != "") {
      out << "  user field " << i + 1 << ": " << f["name"].get<std::string>() << " ("
          << f["default"].get<std::string>() << ")\n";
    }
  }
  out << doc["assets"].size() << " assets\n";
  for (const auto& a : doc["assets"]) {
    out << "\nAsset " << a["asset_no"].get<std::string>() << "  "
        << a["description"].get<std::string>() << "\n";
    for (auto it = a.begin(); it != a.end(); ++it) {
      if (it.key() == "asset_no" || it.key() == "description" || it.key() == "schedules") continue;
      out << "  " << it.key() << ": " << it.value().dump() << "\n";
    }
    for (auto it = a["schedules"].begin(); it != a["schedules"].end(); ++it) {
      out << "  schedule " << it.key() << ": " << it.value().dump() << "\n";
    }
  }
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
  std::optional<nlohmann::ordered_json> doc = CompanyDocument(company, err);
  if (!doc) return 1;
  if (json) {
    out << doc->dump(2) << "\n";
  } else {
    PrintText(*doc, out);
  }
  return 0;
}

int CreateFromDocument(const InstallationContext& ctx, const std::string& number,
                       const nlohmann::json& doc, CompanyInUseLock& lock, std::ostream& out,
                       std::ostream& err) {
  auto it = doc.find("company");
  if (it == doc.end() || !it->is_object()) {
    err << "nvtool: no company " << number << " yet, and the document has no company object\n";
    return 1;
  }
  NvCompanyRecord record;
  std::string error;
  if (!CompanyFromJson(*it, &record, &error)) {
    err << "nvtool: bad document: " << error << "\n";
    return 1;
  }
  if (!record.number.empty() && !EqualIgnoringCase(record.number, number)) {
    err << "nvtool: bad document: it is for company " << record.number << ", not " << number
        << "\n";
    return 1;
  }
  NvCompany company(ctx);
  company.record() = record;
  if (int rc = company.Create({number, record.name}, NvCompany::kOpenI1 | NvCompany::kOpenI2, lock);
      rc != 0) {
    if (rc == kCompanyInUse) {
      TellCompanyInUse(number, company.lock_holder(), err);
    } else {
      err << "nvtool: cannot create company " << number << ": " << WhyNotCreated(ctx, number, rc)
          << "\n";
    }
    return 1;
  }
  MasterFile master;
  master.subfolders = ctx.current.subfolders;
  const MasterFileStatus rc = ReadMasterFile(ctx.data_directory(), &master);
  if (rc != MasterFileStatus::kOk && rc != MasterFileStatus::kNotFound) {
    err << "nvtool: cannot read " << ctx.data_directory() << kMasterFileName << "\n";
    return 1;
  }
  InsertMasterRec(&master.companies, {number, record.name});
  if (WriteMasterFile(ctx.data_directory(), master) != MasterFileStatus::kOk) {
    err << "nvtool: cannot write " << ctx.data_directory() << kMasterFileName << "\n";
    return 1;
  }
  out << "created company " << number << "\n";
  return 0;
}

int Load(const InstallationContext& ctx, const std::string& number_arg, const std::string& file,
         std::ostream& out, std::ostream& err) {
  const std::string number = AsciiUpper(number_arg);
  std::optional<std::string> text = ReadFileBytes(file);
  if (!text) {
    err << "nvtool: cannot read " << file << "\n";
    return 1;
  }
  nlohmann::json doc = nlohmann::json::parse(*text, nullptr, /*allow_exceptions=*/false);
  if (doc.is_discarded() || !doc.is_object()) {
    err << "nvtool: " << file << ": not a JSON object\n";
    return 1;
  }
  auto assets = doc.find("assets");
  if (assets != doc.end() && !assets->is_array()) {
    err << "nvtool: bad document: assets is not a list\n";
    return 1;
  }
  if (!IsValidCompanyNumber(number)) {
    err << "nvtool: " << number_arg << " is not a company number (1 to 8 of A-Z, 0-9, &#$@)\n";
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
  if (!CompanyExists(ctx, number)) {
    if (int rc = CreateFromDocument(ctx, number, doc, lock, out, err); rc != 0) {
      lock.Release();
      // A company folder made only to hold the lock goes again; one with files in it
      // refuses, and stays.
      if (ctx.current.subfolders) static_cast<void>(::rmdir(CompanyFolder(ctx, number).c_str()));
      return rc;
    }
  }
  NvCompany company(ctx);
  if (!OpenCompany(company, number, NvCompany::kOpenI1 | NvCompany::kOpenI2, err, &lock)) {
    return 1;
  }
  const AssetRecordFormat format = company.RecordFormat();
  size_t added = 0, refused = 0, position = 0;
  for (const nlohmann::json& item : assets == doc.end() ? nlohmann::json::array() : *assets) {
    ++position;
    NvAsset asset;
    asset.Clear(format.schedule_letters);
    std::string error;
    std::string label =
        item.is_object() && item.contains("asset_no") && item["asset_no"].is_string()
            ? item["asset_no"].get<std::string>()
            : StrPrintf("#%zu", position);
    if (!AssetFromJson(item, format.asset_no_format, &asset, &error)) {
      out << "refused " << label << ": " << error << "\n";
      ++refused;
      continue;
    }
    if (!asset.number.valid()) {
      out << "refused " << label << ": invalid number under the company's format "
          << format.asset_no_format.DisplayText() << "\n";
      ++refused;
      continue;
    }
    int rc = company.AddAsset(&asset);
    if (rc == kOk) {
      ++added;
    } else {
      out << "refused " << label << ": "
          << (rc == kDuplicate ? std::string("duplicate asset number") : StatusText(rc)) << "\n";
      ++refused;
    }
  }
  if (int rc = company.Close(); rc != 0) {
    err << "nvtool: closing company " << number << " failed (status " << rc << ")\n";
    return 1;
  }
  out << added << " assets added, " << refused << " refused\n";
  return 0;
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
  if (command != "version" && command != "check" && command != "dump" && command != "load") {
    err << "nvtool: unknown command '" << command << "'\n";
  }
  return Usage(err);
}

}  // namespace nv
