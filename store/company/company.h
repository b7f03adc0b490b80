// NvCompany: one company of the data directory, its files and its company record.
//
// A company's files lie in the data directory or, when companies live in subfolders, in
// the folder company number + ".CLT" inside it; each is named company number + "." +
// extension: A (block file), I1 and I2 (indexes), LOK (in-use lock), ini (settings), LOC
// and CAT (code lists), LOG (change log), NOT (notes). Existing files are found whatever
// the case of their names; new ones get these names.
//
// Lifecycle: created empty, then Create (a new company) or Open; the block file and the
// indexes stay open until Close, which writes the company record and the index headers
// (unless opened read-only). Destroying an open company closes it.
//
// Every asset operation ends by writing the block file's counters and the index headers
// that it changed, so that between operations the files read as a whole company to a
// reader that knows nothing of this run (the main program, a read-only open).
// One writer per company: an open for writing (Open without kReadOnly) and Create hold the
// company's in-use lock (store/company/company_lock.h) from before the first byte is read
// until the company is closed, so a second writer (another process, the main program, or
// another NvCompany of this process) is refused with kCompanyInUse and lock_holder() names
// the holder for CompanyInUseMessage. Without a lock argument the company takes the lock
// itself and lets go of it (deleting the file) on Close, on a failed Open or Create and on
// destruction. With the program's CompanyInUseLock (the one company selection takes) it
// uses that lock, taking the company's lock into it when it holds another or none, and
// leaves it held: the caller lets go. A read-only open takes no lock.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "store/codes/loc_cat_list.h"
#include "store/company/company_lock.h"
#include "store/company/company_record.h"
#include "store/file/btree_file.h"
#include "store/file/rec_file.h"
#include "store/file/status.h"
#include "store/schedule/accounting_year.h"
#include "store/schedule/schedule_entry.h"

namespace nv {

// Which index a step through the assets follows.
enum class AssetOrder { kNumber, kSort };

class NvAsset;
struct AssetRecordFormat;

class NvCompany {
 public:
  // Open flags.
  static constexpr int kOpenI1 = 1;                // open the asset-number index
  static constexpr int kOpenI2 = 2;                // open the sort-order index
  static constexpr int kLoadLocCat = 8;            // load the location and category lists
  static constexpr int kKeepSchedules = 16;        // keep the schedule state already in memory
  static constexpr int kReadOnly = 32;             // files for reading; nothing written on close
  static constexpr int kTolerateShortChain = 128;  // a company chain may end early

  explicit NvCompany(const InstallationContext& context);
  ~NvCompany();
  NvCompany(const NvCompany&) = delete;
  NvCompany& operator=(const NvCompany&) = delete;

  // Makes a new company from record() (the caller fills it in) under the number and name
  // of `entry`: the folder when companies live in subfolders, the block file, and with
  // kOpenI1 / kOpenI2 empty indexes; then closes it, which writes the company record.
  // 0, or kCompanyInUse, kBlockFileMissing, kI1Failed, kI2Failed, or a close failure.
  // `lock`: see the lifecycle above; it must outlive the call.
  [[nodiscard]] int Create(const NvMasterRec& entry, int flags);
  [[nodiscard]] int Create(const NvMasterRec& entry, int flags, CompanyInUseLock& lock);

  // Opens a company: 1 on success, else a negative status (kBlockFileMissing, kCompanyInUse
  // for writing while another writer holds the lock, kBadMarker for a file that is no
  // company's, kBrokenChain, kNewerVersion, kI1Failed, kI2Failed, kBadHeaderI1). Questions
  // (opening an old company) go through ui. explicit_folder, when not empty, is the folder
  // of the company's files. `lock`: see the lifecycle above; it must stay alive until the
  // company is closed.
  [[nodiscard]] int Open(std::string_view number, int flags, Ui& ui,
                         const std::string& explicit_folder = {});
  [[nodiscard]] int Open(std::string_view number, int flags, Ui& ui, CompanyInUseLock& lock,
                         const std::string& explicit_folder = {});

  // The holder's line of the lock that refused the last Open or Create with kCompanyInUse
  // ("*" when the holder cannot be told), for CompanyInUseMessage; empty otherwise.
  const std::string& lock_holder() const { return lock_holder_; }

  // Writes the company record and the index headers unless read-only, then closes the
  // files: 0, or kCloseBlockFileFailed / kCloseI1Failed / kCloseI2Failed. The company is
  // closed afterwards in any case, and a lock it took itself is let go.
  [[nodiscard]] int Close();

  // Writes the company record into the block file's chain from block 0 (the block file
  // must be open for writing): kOk or the status of the chain write.
  [[nodiscard]] int WriteCompanyRecord();

  // Copies every file number + ".*" of the company's folder (not folders, not the lock
  // file) into a new folder. Tells the user why when it fails; a half-made backup folder
  // is removed.
  [[nodiscard]] bool BackUp(const std::string& backup_folder, Ui& ui) const;

  // Names the company and its folder (ends with the path separator) without opening
  // anything; Open and Create do this themselves.
  void SetLocation(std::string_view number, std::string folder);

  const InstallationContext& context() const { return context_; }
  const std::string& number() const { return record_.number; }
  // Folder of the company's files, with trailing separator.
  const std::string& folder() const { return folder_; }
  // folder + number: the company's path, to which the files add "." + extension.
  std::string Path() const { return folder_ + record_.number; }
  // folder + number + "." + extension; an existing file of that name in another case is
  // returned as it is named.
  std::string FilePath(std::string_view extension) const;
  // The company's settings file, company number + ".ini".
  std::string SettingsPath() const { return FilePath("ini"); }
  // The file of list `which` (kLocations or kCategories): the company's own or the global
  // one, as the company record chooses.
  std::string LocCatPath(char which) const;
  // What the schedule modules need of the company: its settings files and schedules.
  CompanySchedules Schedules() const;

  NvCompanyRecord& record() { return record_; }
  const NvCompanyRecord& record() const { return record_; }

  // Assets. Each returns a status (negative is failure); record numbers are the first
  // blocks of the assets' chains in the block file.
  //
  // Adds a new asset: its first block, its .I1 and .I2 keys, its chain. kDuplicate when
  // the number exists; a failed add leaves nothing behind.
  [[nodiscard]] int AddAsset(NvAsset* asset);
  // Rewrites an asset that was read (record number set), moving its keys when its number
  // or its sort fields changed.
  [[nodiscard]] int ReplaceAsset(NvAsset* asset);
  // Removes an asset's keys and frees its blocks, then writes "Asset deleted" to the
  // change log under `log_tag` ("DEL " when empty).
  [[nodiscard]] int DeleteAsset(const NvAsset& asset, std::string_view log_tag = {});
  // Finds an asset by its number (parsed under the company's format) and reads it.
  [[nodiscard]] int FindAsset(std::string_view number, NvAsset* asset);
  // Reads the asset whose chain starts at `record`.
  [[nodiscard]] int ReadAsset(uint32_t record, NvAsset* asset);
  // Steps in the chosen order from the last asset found or stepped to; an empty path (after
  // ResetAssetWalk) starts at the first (last) asset. At the end, and at once in a company
  // without assets: kOk with asset->record_number 0.
  [[nodiscard]] int NextAsset(AssetOrder order, NvAsset* asset);
  [[nodiscard]] int PreviousAsset(AssetOrder order, NvAsset* asset);
  void ResetAssetWalk();
  // The company's form of asset records (format, Round Dollars, schedules, sort order).
  AssetRecordFormat RecordFormat() const;

  // The location and category lists, loaded on open with kLoadLocCat.
  NvLocCatList& locations() { return locations_; }
  NvLocCatList& categories() { return categories_; }

  // The custom accounting year of each schedule letter that has one, loaded on open
  // (unless kKeepSchedules) and saved on close.
  std::map<char, AccountingYearChain>& custom_years() { return custom_years_; }
  const AccountingYearChain* CustomYear(char letter) const;
  // The settings file has a "Consolidated Company" section; read on open.
  bool consolidated() const { return consolidated_; }

  // This user's permission level for the company, computed when it is opened.
  int permission() const { return permission_; }

  bool is_open() const { return blocks_.is_open(); }
  bool read_only() const { return (open_flags_ & kReadOnly) != 0; }
  int open_flags() const { return open_flags_; }
  // The company record was read from the old layout (it is written in the current one).
  bool old_layout() const { return old_layout_; }
  NvRecFile& blocks() { return blocks_; }
  NvBTreeFile& number_index() { return i1_; }
  NvBTreeFile& sort_index() { return i2_; }

 private:
  [[nodiscard]] int CreateUnder(CompanyInUseLock* lock, const NvMasterRec& entry, int flags);
  [[nodiscard]] int OpenUnder(CompanyInUseLock* lock, std::string_view number, int flags, Ui& ui,
                              const std::string& explicit_folder);
  [[nodiscard]] int OpenFiles(int flags, Ui& ui);
  // Makes this company the writer of `lock` (own_lock_ when null) holding the lock of the
  // company at folder_: kOk, or kCompanyInUse with lock_holder_ set.
  [[nodiscard]] int TakeWriteLock(CompanyInUseLock* lock);
  // Ends this company's writing under its lock; a lock it took itself is let go.
  void LetGoOfWriteLock();
  [[nodiscard]] int OpenBlockFile(int flags);
  [[nodiscard]] int ReadCompanyRecord(int flags);
  [[nodiscard]] int ConfirmOldLayout(Ui& ui);
  [[nodiscard]] int OpenIndexes(int flags);
  void CloseFilesWithoutWriting();
  [[nodiscard]] int Step(AssetOrder order, bool forward, NvAsset* asset);
  // The asset operations' steps; the public operations write the counters after them.
  [[nodiscard]] int InsertAsset(NvAsset* asset);
  [[nodiscard]] int RewriteAsset(NvAsset* asset);
  [[nodiscard]] int RemoveAsset(const NvAsset& asset, std::string_view log_tag);
  // Writes the block file's counters, then the .I1 and .I2 headers, each only when it
  // differs from the disk: the counters first, as an index entry may name a block that only
  // the new counters hold taken. kOk or the first failed write's status.
  [[nodiscard]] int WriteCountersThrough();
  // `status`, or when that is kOk the status of WriteCountersThrough.
  [[nodiscard]] int WithCountersWritten(int status);
  // Writes the counters into block 0 in place (the company record there must be in the
  // current layout).
  [[nodiscard]] int WriteBlockCounters();
  int FreeAssetChain(uint32_t first_block);
  // A run that changes the company leaves a marker file (number + ".DTY") until it closes
  // the company; finding one at open means a run died, perhaps inside an operation, and
  // RecoverInterruptedRun rebuilds the free list and both indexes from the asset chains in
  // the block file.
  void MarkChanging();
  void LoadCustomYears();
  void SaveCustomYears();
  [[nodiscard]] int RecoverInterruptedRun();

  const InstallationContext& context_;
  std::string folder_;
  NvCompanyRecord record_;
  int open_flags_ = 0;
  bool old_layout_ = false;
  bool marked_changing_ = false;
  int permission_ = 0;
  bool consolidated_ = false;
  std::map<char, AccountingYearChain> custom_years_;
  NvLocCatList locations_;
  NvLocCatList categories_;
  NvRecFile blocks_;
  // The counters block 0 holds on disk, and whether it holds them in the current layout.
  BlockFileCounters counters_on_disk_;
  bool counters_on_disk_current_ = false;
  NvBTreeFile i1_;
  NvBTreeFile i2_;
  CompanyInUseLock own_lock_;               // taken when no lock is handed in
  CompanyInUseLock* write_lock_ = nullptr;  // the lock this company writes under, if any
  std::string lock_holder_;
};

// The folder of a company's files: the data directory, plus number + ".CLT" and the
// separator when companies live in subfolders (an existing folder of that name in another
// case is used as it is named).
std::string CompanyFolder(const InstallationContext& context, std::string_view number);

// Names of the entries of `folder` that are `number` + "." + an extension, ignoring case, in
// the order the folder lists them; empty when the folder cannot be read.
std::vector<std::string> CompanyEntries(const std::string& folder, std::string_view number);

// Extension of the marker file of a run that changes the company.
inline constexpr char kChangingMarkerExtension[] = "DTY";

// Company numbers: 1 to 8 of "ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890&#$@" after trimming.
inline constexpr char kCompanyNumberCharacters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890&#$@";
inline constexpr size_t kCompanyNumberLength = 8;
inline constexpr char kCompanyNumberCharactersMessage[] =
    "Only Letters, Numbers and the symbols\n&&#$@ are allowed in company numbers.";
[[nodiscard]] bool IsValidCompanyNumber(std::string_view number);

// Takes company `number`'s in-use lock into `lock` for the context's user, for a caller
// that must hold it before the company exists (to look for the company and create it
// without a race); the lock is then handed to Create and Open. When companies live in
// subfolders the company's folder is made first. "" when `lock` holds the lock (any other
// company's lock it held is let go); otherwise the holder's line for CompanyInUseMessage
// ("*" when the holder cannot be told or the lock file cannot be made).
[[nodiscard]] std::string TakeCompanyInUseLock(const InstallationContext& context,
                                               std::string_view number, CompanyInUseLock& lock);

// Removes the company's files (number + ".*" in its folder, subfolders included), its
// folder when companies live in subfolders, and its line in MASTER.A. When `lock` holds
// the company's own lock file, the lock is let go and the file goes too. False when
// something could not be removed.
[[nodiscard]] bool DeleteCompanyFiles(const InstallationContext& context, std::string_view number,
                                      CompanyInUseLock* lock = nullptr);

}  // namespace nv
