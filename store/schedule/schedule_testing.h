// A company in a private temporary installation for the schedule tests: the installation
// folder holds KELNVWIN.INI, the data directory the company's settings file.
#pragma once

#include <memory>
#include <string>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "store/company/company.h"

namespace nv::testing {

class ScheduleTestCompany {
 public:
  explicit ScheduleTestCompany(const std::string& number = "CO1") {
    context_.installation_folder = dir_.path() + "/";
    context_.current.slot.data_path = dir_.path() + "/data/";
    MakeDirectories(context_.current.slot.data_path);
    company_ = std::make_unique<NvCompany>(context_);
    company_->SetLocation(number, context_.current.slot.data_path);
  }

  NvCompany& company() { return *company_; }
  const TempDir& dir() const { return dir_; }

  // Adds a schedule entry and its letter, as the company record holds them.
  void AddSchedule(char letter, const std::string& type, const std::string& name) {
    company_->record().schedules.push_back({letter, type, name});
    company_->record().schedule_letters += letter;
  }

  std::string Settings() const {
    return ReadFileBytes(company_->SettingsPath()).value_or("<none>");
  }
  void PutSettings(const std::string& bytes) {
    WriteFileAtomically(company_->SettingsPath(), bytes);
  }
  std::string Installation() const { return ReadFileBytes(InstallationFile()).value_or("<none>"); }
  void PutInstallation(const std::string& bytes) { WriteFileAtomically(InstallationFile(), bytes); }
  std::string InstallationFile() const { return dir_.File("KELNVWIN.INI"); }

 private:
  TempDir dir_;
  InstallationContext context_;
  std::unique_ptr<NvCompany> company_;
};

}  // namespace nv::testing
