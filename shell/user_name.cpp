#include "shell/user_name.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

#include <cstdlib>

namespace nv {
namespace {

#ifdef _WIN32
std::string ComputerName() {
  char buffer[kComputerNameBuffer] = {};
  DWORD size = sizeof buffer;
  if (!::GetComputerNameA(buffer, &size) || buffer[0] == '\0') return kSingleUserName;
  return buffer;
}

std::string LoginName() {
  char buffer[kLoginNameBuffer] = {};
  DWORD size = sizeof buffer;
  if (!::GetUserNameA(buffer, &size) || buffer[0] == '\0') return kSingleUserName;
  return buffer;
}
#else
std::string ComputerName() {
  char buffer[256] = {};
  if (::gethostname(buffer, sizeof buffer - 1) != 0 || buffer[0] == '\0') return kSingleUserName;
  std::string name(buffer);
  if (name.size() > kComputerNameBuffer - 1) name.resize(kComputerNameBuffer - 1);
  return name;
}

std::string LoginName() {
  std::string name;
  if (const passwd* entry = ::getpwuid(::geteuid()); entry != nullptr && entry->pw_name) {
    name = entry->pw_name;
  } else if (const char* login = ::getlogin(); login != nullptr) {
    name = login;
  }
  if (name.empty()) return kSingleUserName;
  if (name.size() > kLoginNameBuffer - 1) name.resize(kLoginNameBuffer - 1);
  return name;
}
#endif

}  // namespace

std::string DetermineUserName(NameType name_type) {
  if (const char* forced = std::getenv("KELNETNAME"); forced != nullptr) return forced;
  return name_type == NameType::kUser ? LoginName() : ComputerName();
}

}  // namespace nv
