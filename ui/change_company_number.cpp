#include "ui/change_company_number.h"

#include <string_view>

#include "base/ascii.h"
#include "base/comma_text.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/str_format.h"
#include "store/company/master_file.h"

namespace nv {
namespace {

bool RenumberInMasterFile(const InstallationContext& context, const std::string& old_number,
                          const std::string& new_number, const std::string& name) {
  MasterFile master;
  master.subfolders = context.current.subfolders;
  const MasterFileStatus rc = ReadMasterFile(context.data_directory(), &master);
  if (rc != MasterFileStatus::kOk && rc != MasterFileStatus::kNotFound) return false;
  std::erase_if(master.companies,
                [&](const NvMasterRec& c) { return EqualIgnoringCase(c.number, old_number); });
  InsertMasterRec(&master.companies, {new_number, name});
  return WriteMasterFile(context.data_directory(), master) == MasterFileStatus::kOk;
}

}  // namespace

RenumberResult ChangeCompanyNumber(const InstallationContext& context, NvCompany& company,
                                   std::string_view new_number_text, CompanyInUseLock& lock,
                                   Ui& ui) {
  const std::string old_number = company.number();
  const std::string new_number = AsciiUpper(TrimBlanks(new_number_text));
  if (!IsValidCompanyNumber(new_number)) {
    ui.Message(kCompanyNumberCharactersMessage, "Error");
    return RenumberResult::kRefused;
  }
  if (EqualIgnoringCase(new_number, old_number)) {
    ui.Message(kSameNumberMessage, "Error");
    return RenumberResult::kRefused;
  }
  const std::string old_folder = company.folder();
  std::string new_folder = CompanyFolder(context, new_number);
  if (FindFileIgnoringCase(new_folder, new_number + ".A") ||
      (context.current.subfolders && PathExists(new_folder))) {
    ui.Message(kFilesExistMessage, "Error");
    return RenumberResult::kRefused;
  }
  const std::string name = company.record().name;
  // Files whose close failed may not hold all that was written: they are not moved.
  if (company.is_open() && company.Close() != kOk) {
    ui.Message(kRenameFailedMessage, "Error");
    return RenumberResult::kFailed;
  }
  if (context.current.subfolders) {
    new_folder = WithTrailingSeparator(JoinPath(context.data_directory(), new_number + ".clt"));
    if (!MakeDirectories(new_folder)) {
      ui.Message(kSubfolderFailedMessage, "Error");
      return RenumberResult::kFailed;
    }
  }

  bool ok = true;
  for (const std::string& file : CompanyEntries(old_folder, old_number)) {
    const std::string_view extension = std::string_view(file).substr(old_number.size() + 1);
    if (EqualIgnoringCase(extension, "LOK")) continue;
    if (!RenamePath(old_folder + file, new_folder + new_number + "." + std::string(extension))) {
      ok = false;
    }
  }
  const std::string lock_path = CompanyLockPath(new_folder, new_number);
  if (!lock.Take(lock_path, context.user_name, LockTimeNow()).empty()) ok = false;
  // An old folder that cannot be removed stays behind empty; the company lives in the new one.
  if (context.current.subfolders && ok) static_cast<void>(RemoveAll(old_folder));
  if (!ok) {
    ui.Message(kRenameFailedMessage, "Error");
    return RenumberResult::kFailed;
  }
  // Opening and closing under the new number (and its lock, which stays held) writes the
  // company record again. The files are renamed already; a record that cannot be rewritten
  // now keeps the one it had, which names no number, so nothing is lost.
  if (company.Open(new_number, NvCompany::kOpenI1 | NvCompany::kOpenI2, ui, lock) > 0) {
    static_cast<void>(company.Close());
  }
  RenumberInMasterFile(context, old_number, new_number, name);
  return RenumberResult::kDone;
}

bool RunChangeCompanyNumber(const InstallationContext& context, NvCompany& company,
                            CompanyInUseLock& lock, Ui& ui) {
  TextEntryRequest request;
  request.title = "Change Company Number";
  request.prompt =
      StrPrintf("Old Company Number: %s\n\nNew Company Number:", company.number().c_str());
  request.allowed = kCompanyNumberCharacters;
  request.upper_case = true;
  request.max_length = kCompanyNumberLength;
  for (;;) {
    std::optional<std::string> entered = ui.EnterText(request);
    if (!entered) return false;
    RenumberResult result = ChangeCompanyNumber(context, company, *entered, lock, ui);
    if (result != RenumberResult::kRefused) return result == RenumberResult::kDone;
    request.initial = *entered;
  }
}

}  // namespace nv
