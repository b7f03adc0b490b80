// The name under which this copy works in a network installation: it selects the user's
// line in the terminal list, is written into lock files and names the settings section
// "User %s".
#pragma once

#include <string>

#include "base/installation_context.h"

namespace nv {

inline constexpr char kSingleUserName[] = "Single-User";
// The computer name is asked for with a buffer of 16 bytes, the login name with one of
// 100; both include the terminator.
inline constexpr size_t kComputerNameBuffer = 16;
inline constexpr size_t kLoginNameBuffer = 100;

// KELNETNAME when it is set (even to an empty text); otherwise by name type the computer
// name or the login name, cut to fit their buffers; kSingleUserName when that fails.
std::string DetermineUserName(NameType name_type);

}  // namespace nv
