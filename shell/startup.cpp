#include "shell/startup.h"

#include <cstdlib>

#include "base/ascii.h"
#include "base/comma_text.h"
#include "base/date.h"
#include "base/log_font.h"
#include "base/path.h"
#include "base/profile.h"
#include "shell/configuration.h"
#include "shell/user_name.h"

namespace nv {
namespace {

std::string WithSeparator(std::string folder) {
  return WithTrailingSeparator(std::move(folder));
}

}  // namespace

std::string IniFilePath(const std::string& installation_folder) {
  return PathIgnoringCase(installation_folder, kIniFileName);
}

std::string UserSection(std::string_view user_name) {
  return "User " + std::string(user_name);
}

std::optional<LogFont> ReadUserFont(const std::string& ini_file, std::string_view user_name,
                                    std::string_view key) {
  const std::string text = ReadProfileString(ini_file, UserSection(user_name), key, "");
  if (text.empty()) return std::nullopt;
  return ParseLogFont(text);
}

bool WriteUserFont(const std::string& ini_file, std::string_view user_name, std::string_view key,
                   const LogFont& font) {
  return WriteProfileString(ini_file, UserSection(user_name), key, FormatLogFont(font));
}

std::optional<InstallationContext> LoadStartup(const RunParameters& run,
                                               const std::string& installation_folder, Ui& ui,
                                               int* exit_code) {
  *exit_code = 0;
  InstallationContext ctx;
  ctx.run = run;
  ctx.installation_folder = WithSeparator(installation_folder);
  ctx.today = Today();

  const std::string ini = IniFilePath(ctx.installation_folder);
  ctx.configuration_locked =
      std::strtol(ReadProfileString(ini, "NV Parameters", "Configuration Locked", "0").c_str(),
                  nullptr, 10) != 0;

  // The screen-print font lives in the user's own section, so the name is settled first;
  // neither step shows anything or touches a file.
  ctx.name_type =
      EqualIgnoringCase(ReadProfileString(ini, "Network", "Name Type", "Computer"), "User")
          ? NameType::kUser
          : NameType::kComputer;
  ctx.exact_name_match =
      EqualIgnoringCase(ReadProfileString(ini, "Network", "Name Case-Sensitive", "yes"), "no");
  ctx.user_name = DetermineUserName(ctx.name_type);
  ctx.screen_print_font = ReadUserFont(ini, ctx.user_name, kScreenPrintFontKey);

  int quit_code = 0;
  if (LoadConfiguration(&ctx, /*load_company_list=*/true, ui, &quit_code) < 0) {
    *exit_code = quit_code;
    return std::nullopt;
  }
  return ctx;
}

}  // namespace nv
