// Start-up loading: everything the program must know before its main window can act,
// gathered into one InstallationContext from the installation's settings file
// KELNVWIN.INI, the user name and the configuration files.
//
// Settings read from KELNVWIN.INI:
//   "NV Parameters" / "Configuration Locked"  default "0"; non-zero: never write TERM files
//   "Network" / "Name Type"                   default "Computer"; "User" (any case): login name
//   "Network" / "Name Case-Sensitive"         default "yes"; "no" (any case): names in the
//                                             terminal list must match exactly
//   "User <name>" / "print to screen font"    a LOGFONT text; absent: "Courier New"
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

inline constexpr char kIniFileName[] = "KELNVWIN.INI";
inline constexpr char kScreenPrintFontKey[] = "print to screen font";

// installation folder + KELNVWIN.INI, the name matched ignoring case.
std::string IniFilePath(const std::string& installation_folder);

// "User %s": the section of a user's own settings.
std::string UserSection(std::string_view user_name);

// A font kept in the user's section; nothing when the key is missing or its text is not a
// LOGFONT text.
std::optional<LogFont> ReadUserFont(const std::string& ini_file, std::string_view user_name,
                                    std::string_view key);
bool WriteUserFont(const std::string& ini_file, std::string_view user_name, std::string_view key,
                   const LogFont& font);

// The start-up loading in its order (installation folder given by the caller, today,
// configuration locked, fonts, name type and user name, configuration, MASTER.A). Messages
// go through ui. On failure returns nullopt and sets *exit_code (0; 2 after the
// locked-configuration message).
std::optional<InstallationContext> LoadStartup(const RunParameters& run,
                                               const std::string& installation_folder, Ui& ui,
                                               int* exit_code);

}  // namespace nv
