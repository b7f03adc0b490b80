// The installation configuration: TERM.1 in the installation folder, the per-user TERM
// files of a network installation and the base configuration TERM.000, all in the
// comma-separated text form of base/comma_text.h.
//
// TERM.1, first line: format text, installation folder, a third field. The format text's
// last letter says what the file is: "A" (or anything but "N") a single-user
// installation whose TERM.1 is itself the configuration file, "N" a network installation
// whose TERM.1 is the terminal list: after the first line ("7.1N", folder, 0) one line per
// user, the quoted user name and the bare terminal number. A user's configuration file is
// installation folder + "TERM." + the number in three digits; TERM.000 is the base
// configuration shared by all users.
//
// Configuration file, current form ("7.1A"):
//   "7.1A","<installation folder>",<current slot>[B]     B: works with the base configuration
//   ten lines, one per slot:
//   "<name>","<data path>","Y"|"N","C",31,113,111,"<options>"
// "C", 31, 113 and 111 are constants; they are written and skipped on reading.
//
// Older forms, read and always rewritten in the current form:
//   format "6": "6","<folder>",<current slot>, then ten lines "<name>","<data path>","Y"|"N"
//               (no option letters: options are empty);
//   format "0": "0","<folder>",<current slot>, then ten lines "<name>","<data path>"
//               (every slot enabled, no options).
//
// Data paths end with the path separator; one read without it gets it appended.
#pragma once

#include <string>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

inline constexpr char kTerminalFileName[] = "TERM.1";
inline constexpr char kBaseConfigurationName[] = "TERM.000";
inline constexpr char kConfigurationVersion[] = "7.1";
inline constexpr char kSingleUserFormat[] = "7.1A";

// Results of LoadConfiguration: 0 or positive is success.
inline constexpr int kConfigurationFound = 0;       // a configuration file was read
inline constexpr int kConfigurationCreated = 1;     // no TERM.1: a single-user one was written
inline constexpr int kTerminalAdded = 2;            // network user without a file of his own
inline constexpr int kConfigurationMalformed = -1;  // also: refused because locked
inline constexpr int kMasterFileFailed = -2;

inline constexpr char kRewriteLockedMessage[] =
    "Attempting to rewrite configuration file when configuration is locked.";
inline constexpr char kWriteLockedMessage[] =
    "Attempt to write configuration file when configuration is locked.";
inline constexpr char kMasterFileMessage[] = "Unable to read Master File";
inline constexpr int kLockedExitCode = 2;

// Slot 0 "Standard" on the installation folder, slots 1-9 "Undefined" without a path, all
// enabled; current slot 0, base flag off.
NvConfiguration DefaultConfiguration(const std::string& installation_folder);

// "%sTERM.%3.3u" of folder and number.
std::string TerminalFileName(const std::string& folder, unsigned number);

enum class ConfigurationFileForm {
  kCurrent,  // read as it stands
  kOlder,    // read from format "0" or "6"; must be rewritten
  kUnusable  // missing, another format, or fewer than ten slot lines; nothing was read
};

ConfigurationFileForm ReadConfigurationFile(const std::string& path, NvConfiguration* config);

std::string FormatConfigurationFile(const std::string& installation_folder,
                                    const NvConfiguration& config);
bool WriteConfigurationFile(const std::string& path, const std::string& installation_folder,
                            const NvConfiguration& config);

// Loads the configuration for ctx->installation_folder, ->user_name, ->exact_name_match
// and ->configuration_locked; fills ctx->configuration, ->network_mode and ->current, and
// with load_company_list the company list of the current data directory. Messages go
// through ui. Returns one of the results above; when the program must quit,
// *exit_code is set (kLockedExitCode).
int LoadConfiguration(InstallationContext* ctx, bool load_company_list, Ui& ui, int* exit_code);

}  // namespace nv
