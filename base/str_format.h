// printf-style formatting into std::string. The layouts give their texts as C format
// strings ("%2.2d/%2.2d/%4.4d", "%-25.25s ..."); we keep them as they stand.
#pragma once

#include <cstdarg>
#include <string>

namespace nv {

std::string StrPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string StrVPrintf(const char* format, va_list args);

}  // namespace nv
