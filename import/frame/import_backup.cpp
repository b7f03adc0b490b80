#include "import/frame/import_backup.h"

#include <algorithm>
#include <charconv>
#include <ctime>

#include "base/ascii.h"
#include "base/compare_codes.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/frame/import_frame.h"
#include "store/company/company.h"
#include "store/company/master_file.h"
#include "ui/company_selection.h"

namespace nv {
namespace {

constexpr uint64_t kFnvOffset = 14695981039346656037ull;
constexpr uint64_t kFnvPrime = 1099511628211ull;

std::vector<std::string_view> SplitTabs(std::string_view line) {
  std::vector<std::string_view> fields;
  for (size_t from = 0;;) {
    const size_t tab = line.find('\t', from);
    fields.push_back(line.substr(from, tab == std::string_view::npos ? line.npos : tab - from));
    if (tab == std::string_view::npos) return fields;
    from = tab + 1;
  }
}

std::optional<uint64_t> ParseUnsigned(std::string_view text, int base) {
  uint64_t value = 0;
  if (text.empty()) return std::nullopt;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// A backup folder's name: YYYYMMDD-HHMMSS, maybe with "-N".
bool IsBackupName(std::string_view name) {
  auto digits = [&](size_t from, size_t count) {
    if (name.size() < from + count) return false;
    return std::all_of(name.begin() + static_cast<long>(from),
                       name.begin() + static_cast<long>(from + count),
                       [](char c) { return c >= '0' && c <= '9'; });
  };
  if (!digits(0, 8) || name.size() < 15 || name[8] != '-' || !digits(9, 6)) return false;
  if (name.size() == 15) return true;
  return name[15] == '-' && name.size() > 16 && digits(16, name.size() - 16);
}

std::string TimeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return StrPrintf("%04d%02d%02d-%02d%02d%02d", local.tm_year + 1900, local.tm_mon + 1,
                   local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

void DropOldBackups(const std::string& backups_folder) {
  std::vector<std::string> backups = ListCompanyBackups(backups_folder);
  if (backups.size() <= static_cast<size_t>(kBackupsKept)) return;
  backups.resize(backups.size() - kBackupsKept);
  // A backup that cannot be removed now is removed after a later import.
  for (const std::string& name : backups) static_cast<void>(RemoveAll(backups_folder + name));
}

std::optional<std::string> ListedName(const InstallationContext& context, std::string_view number) {
  MasterFile master;
  master.subfolders = context.current.subfolders;
  if (ReadMasterFile(context.data_directory(), &master) != MasterFileStatus::kOk) {
    return std::nullopt;
  }
  for (const NvMasterRec& entry : master.companies) {
    if (EqualIgnoringCase(entry.number, number)) return entry.name;
  }
  return std::nullopt;
}

}  // namespace

std::optional<ImportStateRecord> ParseImportStateRecord(std::string_view text) {
  ImportStateRecord record;
  for (const std::string& line : SplitTextLines(text)) {
    if (line.empty()) continue;
    // Names and numbers hold no control bytes; a tab only separates fields.
    if (std::any_of(line.begin(), line.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t'; })) {
      return std::nullopt;
    }
    const std::vector<std::string_view> fields = SplitTabs(line);
    if (fields[0] == "listed" && fields.size() == 2) {
      record.listed_name = std::string(fields[1]);
    } else if (fields[0] == "file" && fields.size() == 4 && !fields[1].empty()) {
      std::optional<uint64_t> size = ParseUnsigned(fields[2], 10);
      std::optional<uint64_t> hash =
          fields[3].size() == 16 ? ParseUnsigned(fields[3], 16) : std::nullopt;
      if (!size || !hash) return std::nullopt;
      record.files.push_back({std::string(fields[1]), *size, *hash});
    } else if (fields[0] == "complete" && fields.size() == 1) {
      record.complete = true;
    } else {
      return std::nullopt;
    }
  }
  std::sort(record.files.begin(), record.files.end(),
            [](const CompanyFileState& a, const CompanyFileState& b) { return a.name < b.name; });
  // A folder holds one file of a name.
  for (size_t i = 1; i < record.files.size(); ++i) {
    if (record.files[i].name == record.files[i - 1].name) return std::nullopt;
  }
  return record;
}

std::string ImportStateRecordText(const ImportStateRecord& record) {
  std::string text;
  if (record.listed_name) text += "listed\t" + *record.listed_name + "\n";
  for (const CompanyFileState& file : record.files) {
    text += StrPrintf("file\t%s\t%llu\t%016llx\n", file.name.c_str(),
                      static_cast<unsigned long long>(file.size),
                      static_cast<unsigned long long>(file.hash));
  }
  if (record.complete) text += "complete\n";
  return text;
}

std::optional<CompanyFileState> FileState(const std::string& folder, const std::string& name) {
  std::optional<File> file = File::Open(folder + name, File::Mode::kRead);
  if (!file) return std::nullopt;
  CompanyFileState state{name, 0, kFnvOffset};
  std::string buffer(1 << 16, '\0');
  for (;;) {
    const int64_t got = file->ReadSomeAt(state.size, buffer.data(), buffer.size());
    if (got < 0) return std::nullopt;
    if (got == 0) return state;
    for (int64_t i = 0; i < got; ++i) {
      state.hash =
          (state.hash ^ static_cast<unsigned char>(buffer[static_cast<size_t>(i)])) * kFnvPrime;
    }
    state.size += static_cast<uint64_t>(got);
  }
}

std::optional<std::vector<CompanyFileState>> CompanyFileStates(const std::string& folder,
                                                               std::string_view number) {
  std::vector<CompanyFileState> states;
  for (const std::string& name : CompanyEntries(folder, number)) {
    if (IsFolder(folder + name)) continue;
    if (EqualIgnoringCase(std::string_view(name).substr(number.size() + 1), "lok")) continue;
    std::optional<CompanyFileState> state = FileState(folder, name);
    if (!state) return std::nullopt;
    states.push_back(std::move(*state));
  }
  std::sort(states.begin(), states.end(),
            [](const CompanyFileState& a, const CompanyFileState& b) { return a.name < b.name; });
  return states;
}

std::string CompanyBackupsFolder(const std::string& company_folder, std::string_view number) {
  return company_folder + AsciiUpper(number) + ".backups/";
}

std::vector<std::string> ListCompanyBackups(const std::string& backups_folder) {
  std::vector<std::string> names = ListFolder(backups_folder);
  std::erase_if(names, [&](const std::string& name) {
    return !IsBackupName(name) || !IsFolder(backups_folder + name);
  });
  std::sort(names.begin(), names.end(), CodeLess());
  return names;
}

std::optional<std::string> BackUpBeforeImport(const NvCompany& company, Ui& ui) {
  const std::string backups = CompanyBackupsFolder(company.folder(), company.number());
  if (!MakeDirectories(backups)) {
    MessageF(ui, "Error", "Unable to create folder\n%s", backups.c_str());
    return std::nullopt;
  }
  // The newest backup must sort last even when the clock went back or a name of this
  // second was freed by dropping old backups.
  const std::vector<std::string> existing = ListCompanyBackups(backups);
  std::string stamp = TimeStamp();
  if (!existing.empty() && CompareCodes(stamp, existing.back().substr(0, 15)) < 0) {
    stamp = existing.back().substr(0, 15);
  }
  std::string name = stamp;
  for (int n = 2; PathExists(backups + name) ||
                  (!existing.empty() && CompareCodes(name, existing.back()) <= 0);
       ++n) {
    name = stamp + StrPrintf("-%d", n);
  }
  if (!company.BackUp(backups + name, ui)) return std::nullopt;
  const std::string folder = backups + name + "/";
  ImportStateRecord record;
  record.listed_name = ListedName(company.context(), company.number());
  if (!WriteTextFile(folder + kImportStateFile, ImportStateRecordText(record))) {
    MessageF(ui, "Error", "Unable to copy file %s.\nCompany backup aborted.",
             (folder + kImportStateFile).c_str());
    static_cast<void>(RemoveAll(backups + name));
    return std::nullopt;
  }
  DropOldBackups(backups);
  return folder;
}

bool SettleImportBackup(const std::string& backup_folder, const std::string& company_folder,
                        std::string_view number) {
  std::optional<std::vector<CompanyFileState>> files = CompanyFileStates(company_folder, number);
  if (files && files == CompanyFileStates(backup_folder, number)) {
    return RemoveAll(backup_folder);
  }
  if (!files) return false;
  std::optional<std::string> text = ReadFileBytes(backup_folder + kImportStateFile);
  std::optional<ImportStateRecord> record =
      text ? ParseImportStateRecord(*text) : std::optional<ImportStateRecord>();
  if (!record) record.emplace();
  record->files = std::move(*files);
  record->complete = true;
  return WriteTextFile(backup_folder + kImportStateFile, ImportStateRecordText(*record));
}

}  // namespace nv
