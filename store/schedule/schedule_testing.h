// A company's schedules in a private temporary installation for the schedule tests: the
// installation folder holds KELNVWIN.INI, the data directory the company's settings file.
#pragma once

#include <string>

#include "base/file_util.h"
#include "base/installation_context.h"
#include "base/temp_dir_testing.h"
#include "store/schedule/schedule_definitions.h"

namespace nv::testing {

class ScheduleTestCompany {
 public:
  explicit ScheduleTestCompany(const std::string& number = "CO1") {
    EXPECT_TRUE(MakeDirectories(dir_.path() + "/data/"));
    context_.installation_folder = dir_.path() + "/";
    schedules_.settings_file = dir_.path() + "/data/" + number + ".ini";
  }

  // As the company gives them: the installation's file is looked up anew each time.
  CompanySchedules company() const {
    CompanySchedules schedules = schedules_;
    schedules.installation_settings_file = InstallationFile();
    return schedules;
  }
  const TempDir& dir() const { return dir_; }
  const std::string& SettingsPath() const { return schedules_.settings_file; }

  // Adds a schedule entry and its letter, as the company record holds them.
  void AddSchedule(char letter, const std::string& type, const std::string& name) {
    schedules_.entries.push_back({letter, type, name});
    schedules_.letters += letter;
  }

  std::string Settings() const { return ReadFileBytes(SettingsPath()).value_or("<none>"); }
  void PutSettings(const std::string& bytes) {
    EXPECT_TRUE(WriteFileAtomically(SettingsPath(), bytes));
  }
  std::string Installation() const { return ReadFileBytes(InstallationFile()).value_or("<none>"); }
  void PutInstallation(const std::string& bytes) {
    EXPECT_TRUE(WriteFileAtomically(InstallationFile(), bytes));
  }
  std::string InstallationFile() const { return InstallationSettingsPath(context_); }

 private:
  TempDir dir_;
  InstallationContext context_;
  CompanySchedules schedules_;
};

}  // namespace nv::testing
