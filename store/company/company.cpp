#include "store/company/company.h"

#include <cstring>
#include <vector>

#include "base/ascii.h"
#include "base/coding.h"
#include "base/comma_text.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "store/company/master_file.h"
#include "store/company/permissions.h"
#include "store/file/block_chain.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

constexpr char kOldLayoutBackupExtension[] = "pre_v3";

constexpr char kOldLayoutQuestion[] =
    "Opening this company using this version of %s\nwill make it impossible for versions "
    "prior to version 3.0 to open this company.\n\nWe recommend that you create a backup copy "
    "of this company's files. \n%s can create a backup copy in folder\n  %s\nWould you like %s "
    "to create this backup copy?";
constexpr char kNoBackupQuestion[] =
    "Are you sure you want to open this company without making a backup copy first?";
constexpr char kBackupFolderExists[] =
    "%s cannot create the backup files, because folder\n  %s\nalready exists.  Delete this "
    "folder or use a different method to backup\nthe company files.";
constexpr char kBackupFolderFailed[] = "Unable to create folder\n%s";
constexpr char kBackupCopyFailed[] = "Unable to copy file %s.\nCompany backup aborted.";

std::string WithSeparator(std::string folder) {
  return WithTrailingSeparator(std::move(folder));
}

// True when `path` is a file (not a folder) that opens in the given mode.
bool CanOpen(const std::string& path, bool read_only) {
  return File::Open(path, read_only ? File::Mode::kRead : File::Mode::kReadWrite).has_value();
}

}  // namespace

std::vector<std::string> CompanyEntries(const std::string& folder, std::string_view number) {
  std::vector<std::string> names = ListFolder(folder);
  const std::string prefix = AsciiUpper(number) + ".";
  std::erase_if(names, [&](const std::string& name) {
    return name.size() <= prefix.size() ||
           !EqualIgnoringCase(std::string_view(name).substr(0, prefix.size()), prefix);
  });
  return names;
}

NvCompany::NvCompany(const InstallationContext& context) : context_(context) {}

NvCompany::~NvCompany() {
  if (is_open()) static_cast<void>(Close());  // a destructor has nobody to tell
  LetGoOfWriteLock();
}

void NvCompany::SetLocation(std::string_view number, std::string folder) {
  record_.number = AsciiUpper(TrimBlanks(number));
  if (record_.number.size() > kCompanyNumberLength) record_.number.resize(kCompanyNumberLength);
  folder_ = WithSeparator(std::move(folder));
}

std::string NvCompany::FilePath(std::string_view extension) const {
  std::string name = record_.number;
  name += '.';
  name += extension;
  return PathIgnoringCase(folder_, name);
}

std::string NvCompany::LocCatPath(char which) const {
  return LocCatFilePath(
      {folder_, record_.number, context_.installation_folder, record_.global_loc_cat}, which);
}

CompanySchedules NvCompany::Schedules() const {
  return {SettingsPath(), InstallationSettingsPath(context_), record_.schedule_letters,
          record_.schedules};
}

int NvCompany::TakeWriteLock(CompanyInUseLock* lock) {
  CompanyInUseLock& under = lock != nullptr ? *lock : own_lock_;
  lock_holder_.clear();
  if (under.writer_ != nullptr && under.writer_ != this) {
    // Another company object writes under this lock; taking ours into it would also take
    // the lock away from that writer.
    std::optional<std::string> line;
    if (under.held()) line = LockFile::ReadContent(under.held_path());
    lock_holder_ = line && !line->empty() ? std::move(*line) : std::string(1, '*');
    return kCompanyInUse;
  }
  std::string holder =
      under.Take(CompanyLockPath(folder_, record_.number), context_.user_name, LockTimeNow());
  if (!holder.empty()) {
    lock_holder_ = std::move(holder);
    return kCompanyInUse;
  }
  under.writer_ = this;
  write_lock_ = &under;
  return kOk;
}

void NvCompany::LetGoOfWriteLock() {
  if (write_lock_ == nullptr) return;
  if (write_lock_->writer_ == this) write_lock_->writer_ = nullptr;
  if (write_lock_ == &own_lock_) own_lock_.Release();
  write_lock_ = nullptr;
}

int NvCompany::Create(const NvMasterRec& entry, int flags) {
  return CreateUnder(nullptr, entry, flags);
}

int NvCompany::Create(const NvMasterRec& entry, int flags, CompanyInUseLock& lock) {
  return CreateUnder(&lock, entry, flags);
}

int NvCompany::CreateUnder(CompanyInUseLock* lock, const NvMasterRec& entry, int flags) {
  if (is_open()) CloseFilesWithoutWriting();
  LetGoOfWriteLock();
  SetLocation(entry.number, CompanyFolder(context_, entry.number));
  record_.name = FitText(entry.name, kCompanyNameWidth);
  // A folder that cannot be made shows as the block file that cannot be created below.
  if (context_.current.subfolders) static_cast<void>(MakeDirectories(folder_));
  if (int rc = TakeWriteLock(lock); rc != kOk) return rc;
  open_flags_ = flags & ~kReadOnly;
  old_layout_ = false;
  record_.schedule_letters = ScheduleLettersOf(record_.schedules);
  if (!blocks_.Create(FilePath("A"), kBlockLength, NvRecFile::kCurrentLayout)) {
    LetGoOfWriteLock();
    return kBlockFileMissing;
  }
  const NvAssetNoFormat& format = record_.asset_no_format;
  if ((flags & kOpenI1) != 0 &&
      i1_.Create(FilePath("I1"), I1KeyLength(true, format.main_length, format.subasset_length),
                 kBadHeaderI1) != kOk) {
    CloseFilesWithoutWriting();
    return kI1Failed;
  }
  if ((flags & kOpenI2) != 0 &&
      i2_.Create(FilePath("I2"), I2KeyLength(true, record_.sort_order, format.IsLong()),
                 kBadHeaderI2) != kOk) {
    CloseFilesWithoutWriting();
    return kI2Failed;
  }
  const int status = Close();
  // The new files' names reach the disk with their bytes. A failure here leaves a company
  // that is whole now, only less sure to outlive a power loss: not worth refusing it.
  (void)SyncFolder(folder_);
  return status;
}

int NvCompany::Open(std::string_view number, int flags, Ui& ui,
                    const std::string& explicit_folder) {
  return OpenUnder(nullptr, number, flags, ui, explicit_folder);
}

int NvCompany::Open(std::string_view number, int flags, Ui& ui, CompanyInUseLock& lock,
                    const std::string& explicit_folder) {
  return OpenUnder(&lock, number, flags, ui, explicit_folder);
}

int NvCompany::OpenUnder(CompanyInUseLock* lock, std::string_view number, int flags, Ui& ui,
                         const std::string& explicit_folder) {
  if (is_open()) CloseFilesWithoutWriting();
  LetGoOfWriteLock();
  lock_holder_.clear();
  SetLocation(number, explicit_folder.empty() ? CompanyFolder(context_, number) : explicit_folder);
  open_flags_ = flags;
  if (!read_only()) {
    // No company here: nothing to lock (and, in a missing folder, no place for the lock).
    if (!CanOpen(FilePath("A"), /*read_only=*/false)) return kBlockFileMissing;
    if (int rc = TakeWriteLock(lock); rc != kOk) return rc;
  }
  int rc = OpenFiles(flags, ui);
  if (rc != 1) LetGoOfWriteLock();
  return rc;
}

// Open once the lock is held: 1 or a failure status, with the files closed on failure.
int NvCompany::OpenFiles(int flags, Ui& ui) {
  if (int rc = OpenBlockFile(flags); rc != kOk) return rc;
  if (int rc = ReadCompanyRecord(flags); rc != kOk) {
    CloseFilesWithoutWriting();
    return rc;
  }
  permission_ = CurrentUserPermission(*this);
  consolidated_ = IsConsolidatedCompany(SettingsPath());
  if (old_layout_ && !read_only()) {
    if (int rc = ConfirmOldLayout(ui); rc != kOk) {
      CloseFilesWithoutWriting();
      return rc;
    }
  }
  if ((flags & kKeepSchedules) == 0) LoadCustomYears();
  if (!read_only() && PathExists(FilePath(kChangingMarkerExtension))) {
    marked_changing_ = true;  // the marker goes when this run closes the company
    if (int rc = RecoverInterruptedRun(); rc != kOk) {
      CloseFilesWithoutWriting();
      return rc;
    }
  }
  if (int rc = OpenIndexes(flags); rc != kOk) {
    CloseFilesWithoutWriting();
    return rc;
  }
  if ((flags & kLoadLocCat) != 0) {
    LoadLocCatList(LocCatPath(kLocations), &locations_);
    LoadLocCatList(LocCatPath(kCategories), &categories_);
  }
  return 1;
}

int NvCompany::OpenBlockFile(int flags) {
  // The block length is fixed; a file that states another in block 0 is damaged.
  if (!blocks_.Open(FilePath("A"), (flags & kReadOnly) != 0, kBlockLength,
                    NvRecFile::kCurrentLayout)) {
    return kBlockFileMissing;
  }
  uint8_t bytes[kBlockHeaderCurrent];
  if (!blocks_.ReadRecord(0, bytes, sizeof bytes)) {
    CloseFilesWithoutWriting();
    return kBlockFileMissing;
  }
  const BlockHeader head = DecodeFirstBlockHeader(bytes);
  const bool current = head.marker == kMarkerCompanyShort || head.marker == kMarkerCompanyLong;
  if (current && head.length_field > 0 && head.length_field != kBlockLength) {
    CloseFilesWithoutWriting();
    return kBadMarker;
  }
  return kOk;
}

// Reads the chain from block 0, at most ten blocks, and parses the record.
int NvCompany::ReadCompanyRecord(int flags) {
  uint8_t block[kBlockLength];
  if (!blocks_.ReadRecord(0, block, kBlockLength)) return kBlockFileMissing;
  BlockHeader head = DecodeFirstBlockHeader(block);
  const uint8_t marker = head.marker;
  if (marker != kMarkerCompanyShort && marker != kMarkerCompanyLong && marker != kMarkerOldFirst) {
    return kBadMarker;
  }
  old_layout_ = head.old_layout;
  const size_t header = old_layout_ ? kBlockHeaderOld : kBlockHeaderCurrent;
  std::string bytes;
  for (size_t count = 1;; ++count) {
    bytes.append(reinterpret_cast<const char*>(block + header), kBlockLength - header);
    if (head.next == 0 || count >= kMaxCompanyRecordBlocks) break;
    if (!blocks_.ReadRecord(head.next, block, kBlockLength)) {
      if ((flags & kTolerateShortChain) != 0) break;
      return kBrokenChain;
    }
    head = DecodeBlockHeader(block, old_layout_);
    if (head.marker != kMarkerContinuation) return kBrokenChain;
  }

  ParsedCompanyRecord parsed =
      old_layout_ ? ParseOldCompanyRecord(bytes) : ParseCompanyRecord(bytes);
  if (parsed.newer_version) return kNewerVersion;
  parsed.record.number = record_.number;
  record_ = std::move(parsed.record);
  CorrectYearEnd(&record_);
  blocks_.SetCounters(parsed.counters.highest_record, parsed.counters.free_head,
                      parsed.counters.free_count);
  counters_on_disk_ = parsed.counters;
  counters_on_disk_current_ = !old_layout_;
  return kOk;
}

int NvCompany::ConfirmOldLayout(Ui& ui) {
  const std::string backup = Path() + "." + kOldLayoutBackupExtension;
  const std::string& product = context_.product_name();
  if (AskYes(ui, DefaultButton::kYes, kOldLayoutQuestion, product.c_str(), product.c_str(),
             backup.c_str(), product.c_str())) {
    if (!BackUp(backup, ui)) return kNewerVersion;
  } else if (!AskYes(ui, DefaultButton::kNo, "%s", kNoBackupQuestion)) {
    return kNewerVersion;
  }
  // From here on the block file is written in the current layout.
  blocks_.SetLayout(kBlockLength, NvRecFile::kCurrentLayout);
  return kOk;
}

int NvCompany::OpenIndexes(int flags) {
  const bool read_only = (flags & kReadOnly) != 0;
  const NvAssetNoFormat& format = record_.asset_no_format;
  auto open_index = [&](NvBTreeFile& index, const char* extension, uint32_t key_current,
                        uint32_t key_old, int missing_status) {
    const std::string path = FilePath(extension);
    // Tell a missing or unreadable file from one with an unknown header.
    if (!CanOpen(path, read_only)) return missing_status;
    int rc = index.Open(path, read_only, key_current, key_old, kBadHeaderI1);
    return rc == kOk ? kOk : kBadHeaderI1;
  };
  if ((flags & kOpenI1) != 0) {
    int rc = open_index(i1_, "I1", I1KeyLength(true, format.main_length, format.subasset_length),
                        I1KeyLength(false, format.main_length, format.subasset_length), kI1Failed);
    if (rc != kOk) return rc;
  }
  if ((flags & kOpenI2) != 0) {
    int rc = open_index(i2_, "I2", I2KeyLength(true, record_.sort_order, format.IsLong()),
                        I2KeyLength(false, record_.sort_order, false), kI2Failed);
    if (rc != kOk) return rc;
  }
  return kOk;
}

int NvCompany::WriteCompanyRecord() {
  const BlockFileCounters before{blocks_.highest_record(), blocks_.free_head(),
                                 blocks_.free_count()};
  std::string bytes = SerializeCompanyRecord(record_, before);
  const uint8_t marker =
      record_.asset_no_format.NeedsRecordFields() ? kMarkerCompanyLong : kMarkerCompanyShort;
  uint32_t first = 0;
  int rc =
      WriteChain(blocks_, std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
                 marker, kCompanyBlockLengthField, &first);
  if (rc != kOk) return rc;
  counters_on_disk_ = before;
  counters_on_disk_current_ = true;
  const BlockFileCounters after{blocks_.highest_record(), blocks_.free_head(),
                                blocks_.free_count()};
  if (after == before) return kOk;
  // The chain took or gave back blocks: block 0 must carry the counters as they are now.
  return WriteBlockCounters();
}

int NvCompany::WriteBlockCounters() {
  const BlockFileCounters now{blocks_.highest_record(), blocks_.free_head(), blocks_.free_count()};
  uint8_t block[kBlockLength];
  if (!blocks_.ReadRecord(0, block, kBlockLength)) return kChainWriteFailed;
  EncodeU32(block + kBlockHeaderCurrent, now.highest_record);
  EncodeU32(block + kBlockHeaderCurrent + 4, now.free_head);
  EncodeU32(block + kBlockHeaderCurrent + 8, now.free_count);
  static_assert(kCountersBytes == 3 * 4);
  if (!blocks_.WriteRecord(0, block)) return kChainWriteFailed;
  counters_on_disk_ = now;
  return kOk;
}

int NvCompany::WriteCountersThrough() {
  if (!is_open() || read_only()) return kOk;
  const BlockFileCounters now{blocks_.highest_record(), blocks_.free_head(), blocks_.free_count()};
  if (now != counters_on_disk_) {
    // Block 0 still in the old layout takes the whole record in the current one first.
    int rc = counters_on_disk_current_ ? WriteBlockCounters() : WriteCompanyRecord();
    if (rc != kOk) return rc;
  }
  if (i1_.is_open()) {
    if (int rc = i1_.WriteHeaderIfChanged(); rc != kOk) return rc;
  }
  if (i2_.is_open()) {
    if (int rc = i2_.WriteHeaderIfChanged(); rc != kOk) return rc;
  }
  return kOk;
}

int NvCompany::WithCountersWritten(int status) {
  const int written = WriteCountersThrough();
  return status != kOk ? status : written;
}

int NvCompany::Close() {
  int status = 0;
  if (is_open() && !read_only()) {
    if (WriteCompanyRecord() != kOk) status = kCloseBlockFileFailed;
    SaveCustomYears();
  }
  // An index's Close writes its header and syncs the file when it is open for writing.
  if (i1_.is_open() && i1_.Close() != 0 && status == 0) status = kCloseI1Failed;
  if (i2_.is_open() && i2_.Close() != 0 && status == 0) status = kCloseI2Failed;
  if (blocks_.is_open() && !read_only() && !blocks_.Sync() && status == 0) {
    status = kCloseBlockFileFailed;
  }
  if (blocks_.is_open() && blocks_.Close() != 0 && status == 0) status = kCloseBlockFileFailed;
  // Only once all three files are on disk may the marker go.
  // A marker that stays only makes the next writer check the files again.
  if (marked_changing_ && status == 0) {
    static_cast<void>(RemoveFile(FilePath(kChangingMarkerExtension)));
  }
  marked_changing_ = false;
  LetGoOfWriteLock();
  return status;
}

void NvCompany::CloseFilesWithoutWriting() {
  // Destroying the index objects' files without Close skips their headers.
  // Giving up: nothing was written, so a failed close loses nothing of ours.
  static_cast<void>(i1_.file().Close());
  static_cast<void>(i2_.file().Close());
  static_cast<void>(blocks_.Close());
  marked_changing_ = false;
  LetGoOfWriteLock();
}

void NvCompany::LoadCustomYears() {
  custom_years_.clear();
  for (char letter : record_.schedule_letters) {
    if (std::optional<AccountingYearChain> chain =
            LoadCustomAccountingYear(SettingsPath(), letter)) {
      custom_years_.emplace(letter, std::move(*chain));
    }
  }
}

void NvCompany::SaveCustomYears() {
  for (char letter : record_.schedule_letters) {
    // Close reports only the company's own files (its codes are fixed); a settings file
    // that cannot be written keeps the years it had, which the next open reads.
    static_cast<void>(SaveCustomAccountingYear(SettingsPath(), letter, CustomYear(letter)));
  }
}

const AccountingYearChain* NvCompany::CustomYear(char letter) const {
  auto it = custom_years_.find(letter);
  return it == custom_years_.end() ? nullptr : &it->second;
}

bool NvCompany::BackUp(const std::string& backup_folder, Ui& ui) const {
  const std::string folder = WithSeparator(backup_folder);
  if (PathExists(backup_folder)) {
    MessageF(ui, "Error", kBackupFolderExists, context_.product_name().c_str(),
             backup_folder.c_str());
    return false;
  }
  if (!MakeFolder(backup_folder)) {
    MessageF(ui, "Error", kBackupFolderFailed, backup_folder.c_str());
    return false;
  }
  for (const std::string& name : CompanyEntries(folder_, record_.number)) {
    const std::string from = folder_ + name;
    if (IsFolder(from)) continue;
    std::string_view extension = std::string_view(name).substr(record_.number.size() + 1);
    if (EqualIgnoringCase(extension, "lok")) continue;
    if (!CopyFileBytes(from, folder + name)) {
      MessageF(ui, "Error", kBackupCopyFailed, from.c_str());
      // The message above says the backup failed; a half copy that stays is no worse.
      static_cast<void>(RemoveAll(backup_folder));
      return false;
    }
  }
  return true;
}

std::string CompanyFolder(const InstallationContext& context, std::string_view number) {
  std::string folder = WithSeparator(context.data_directory());
  if (!context.current.subfolders) return folder;
  std::string name = AsciiUpper(TrimBlanks(number));
  if (name.size() > kCompanyNumberLength) name.resize(kCompanyNumberLength);
  return WithSeparator(PathIgnoringCase(folder, name + ".CLT"));
}

bool IsValidCompanyNumber(std::string_view number) {
  std::string_view trimmed = TrimBlanks(number);
  if (trimmed.empty() || trimmed.size() > kCompanyNumberLength) return false;
  return trimmed.find_first_not_of(kCompanyNumberCharacters) == std::string_view::npos;
}

std::string TakeCompanyInUseLock(const InstallationContext& context, std::string_view number,
                                 CompanyInUseLock& lock) {
  const std::string upper = AsciiUpper(TrimBlanks(number));
  const std::string folder = CompanyFolder(context, upper);
  // A folder that cannot be made shows as a lock that cannot be taken.
  if (context.current.subfolders) static_cast<void>(MakeDirectories(folder));
  return lock.Take(CompanyLockPath(folder, upper), context.user_name, LockTimeNow());
}

bool DeleteCompanyFiles(const InstallationContext& context, std::string_view number,
                        CompanyInUseLock* lock) {
  const std::string upper = AsciiUpper(TrimBlanks(number));
  const std::string folder = CompanyFolder(context, upper);
  if (lock != nullptr && lock->HoldsFileAt(CompanyLockPath(folder, upper))) lock->Release();
  bool ok = true;
  for (const std::string& name : CompanyEntries(folder, upper)) {
    if (!RemoveAll(folder + name)) ok = false;
  }
  if (context.current.subfolders && !RemoveAll(folder)) ok = false;
  MasterFile master;
  if (ReadMasterFile(context.data_directory(), &master) == MasterFileStatus::kOk) {
    std::erase_if(master.companies,
                  [&](const NvMasterRec& c) { return EqualIgnoringCase(c.number, upper); });
    if (WriteMasterFile(context.data_directory(), master) != MasterFileStatus::kOk) ok = false;
  }
  return ok;
}

}  // namespace nv
