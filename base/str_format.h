// printf-style formatting into std::string. The layouts give their texts as C format
// strings ("%2.2d/%2.2d/%4.4d", "%-25.25s ..."); we keep them as they stand.
#pragma once

#include <cstdarg>
#include <string>

// Checks printf-style arguments. On Windows the C99 formatting of the C library (%zu,
// %lld) is the one in use (__USE_MINGW_ANSI_STDIO), so the checks follow GNU's rules.
#ifdef _WIN32
#define NV_PRINTF_FORMAT(format_at, args_at) __attribute__((format(gnu_printf, format_at, args_at)))
#else
#define NV_PRINTF_FORMAT(format_at, args_at) __attribute__((format(printf, format_at, args_at)))
#endif

namespace nv {

std::string StrPrintf(const char* format, ...) NV_PRINTF_FORMAT(1, 2);
std::string StrVPrintf(const char* format, va_list args);

}  // namespace nv
