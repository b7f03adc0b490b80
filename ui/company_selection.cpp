#include "ui/company_selection.h"

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/company/master_file.h"
#include "store/company/permissions.h"
#include "store/file/status.h"

namespace nv {

std::string CompanyListLine(const NvMasterRec& company) {
  return StrPrintf("%8.8s  %-40.40s", company.number.c_str(), company.name.c_str());
}

std::optional<std::string> AskNewCompanyNumber(Ui& ui) {
  return AskNewCompanyNumber(ui, "Company Number:", "");
}

std::optional<std::string> AskNewCompanyNumber(Ui& ui, std::string prompt, std::string initial,
                                               std::vector<std::string> listing,
                                               std::string title) {
  TextEntryRequest request;
  request.listing = std::move(listing);
  request.title = std::move(title);
  request.prompt = std::move(prompt);
  request.initial = std::move(initial);
  request.allowed = kCompanyNumberCharacters;
  request.upper_case = true;
  request.max_length = kCompanyNumberLength;
  for (;;) {
    std::optional<std::string> entered = ui.EnterText(request);
    if (!entered) return std::nullopt;
    std::string number = AsciiUpper(TrimBlanks(*entered));
    if (!number.empty() && IsValidCompanyNumber(number)) return number;
    ui.Message(kCompanyNumberCharactersMessage, "Error");
    request.initial = *entered;
  }
}

bool TakeCompanyLock(const InstallationContext& context, std::string_view number,
                     CompanyInUseLock& lock, Ui& ui) {
  const std::string path = CompanyLockPath(CompanyFolder(context, number), AsciiUpper(number));
  std::string holder = lock.Take(path, context.user_name, LockTimeNow());
  if (holder.empty()) return true;
  ui.Message(CompanyInUseMessage(number, holder), "Error");
  return false;
}

bool ListCompanyInMasterFile(const InstallationContext& context, const std::string& number,
                             const std::string& name) {
  MasterFile master;
  master.subfolders = context.current.subfolders;
  const MasterFileStatus rc = ReadMasterFile(context.data_directory(), &master);
  if (rc != MasterFileStatus::kOk && rc != MasterFileStatus::kNotFound) return false;
  for (const NvMasterRec& listed : master.companies) {
    if (EqualIgnoringCase(listed.number, number)) return true;
  }
  InsertMasterRec(&master.companies, {number, name});
  return WriteMasterFile(context.data_directory(), master) == MasterFileStatus::kOk;
}

namespace {

// Steps 3 to 5: kOk with the company open, or a refusal already told. The company is
// opened under the lock just taken, which it leaves held.
bool OpenChosenCompany(const InstallationContext& context, Ui& ui, CompanyInUseLock& lock,
                       NvCompany& company, const std::string& number) {
  constexpr int kFlags = NvCompany::kOpenI1 | NvCompany::kOpenI2;
  int rc = company.Open(number, kFlags, ui, lock);
  // The lock file was replaced since step 2 and another has it now, or another company
  // object of this program writes under this lock.
  if (rc == kCompanyInUse) {
    ui.Message(CompanyInUseMessage(number, company.lock_holder()), "Error");
    return false;
  }
  if (rc == kNewerVersion) {
    ui.Message(kNewerVersionMessage, "Error");
    return false;
  }
  if (rc >= kFirstRebuildStatus && rc <= kLastRebuildStatus) {
    if (!AskYes(ui, DefaultButton::kYes, kQuickRebuildQuestion, context.product_name().c_str())) {
      return false;
    }
    ui.Message(kBackupNotSupported, "Note");
    ui.Message(kRebuildNotHere, "Error");
    rc = company.Open(number, kFlags, ui, lock);
  }
  if (rc > 0 && company.permission() == kNoAccess) {
    static_cast<void>(company.Close());  // refused before anything was changed
    MessageF(ui, "Message", kNoAccessMessage, number.c_str());
    return false;
  }
  if (rc <= 0) {
    MessageF(ui, "Message", kUnableToOpenMessage, number.c_str());
    return false;
  }
  return true;
}

}  // namespace

CompanySelectionResult SelectCompany(const InstallationContext& context, Ui& ui,
                                     CompanyInUseLock& lock, NvCompany& company,
                                     std::string_view title, bool offer_new) {
  CompanySelectionResult result;
  MasterFile master;
  if (ReadMasterFile(context.data_directory(), &master) != MasterFileStatus::kOk) {
    master.companies = context.current.companies;
  }
  if (master.companies.empty() && !offer_new) {
    ui.Message(kNoCompaniesMessage);
    return result;
  }
  ChoiceListRequest request;
  request.title = std::string(title);
  request.message = master.companies.empty() ? kNoCompaniesMessage : "Select a company:";
  for (const NvMasterRec& c : master.companies) {
    request.options.push_back({CompanyListLine(c)});
  }
  if (offer_new) request.options.push_back({kNewCompanyOption});
  const int chosen = ui.ChoiceList(request);
  if (chosen < 0) return result;
  if (static_cast<size_t>(chosen) >= master.companies.size()) {
    std::optional<std::string> number = AskNewCompanyNumber(ui);
    if (number) {
      result.choice = CompanyChoice::kNewNumber;
      result.new_number = *number;
    }
    return result;
  }
  const NvMasterRec& entry = master.companies[static_cast<size_t>(chosen)];
  if (!TakeCompanyLock(context, entry.number, lock, ui)) return result;
  if (!OpenChosenCompany(context, ui, lock, company, entry.number)) {
    lock.Release();
    return result;
  }
  ListCompanyInMasterFile(context, company.number(), company.record().name);
  result.choice = CompanyChoice::kOpened;
  return result;
}

}  // namespace nv
