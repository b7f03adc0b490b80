// Paths as the system spells them. '/' separates folders everywhere; on Windows '\' does
// too, a path may start with a drive ("C:") or a share ("\\server\share"), and new
// separators are written as '\'. Paths from the configuration, the company list, the
// hand-off and notes files go through these helpers so that either spelling works.
#pragma once

#include <string>
#include <string_view>

namespace nv {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
inline constexpr std::string_view kPathSeparators = "/\\";
#else
inline constexpr char kPathSeparator = '/';
inline constexpr std::string_view kPathSeparators = "/";
#endif

inline bool IsPathSeparator(char c) {
  return kPathSeparators.find(c) != std::string_view::npos;
}

// `folder` ending with a separator; an empty folder (the current one) stays empty.
std::string WithTrailingSeparator(std::string folder);

// folder + separator + name, without doubling a separator that folder ends with.
std::string JoinPath(std::string_view folder, std::string_view name);

// The position of the last separator (on Windows also the colon of a bare drive, as in
// "C:NAME"), or npos.
size_t LastSeparator(std::string_view path);

// The folder above the path's last part, without its trailing separator ("/" and "C:\"
// keep theirs: they are roots); "" when the path has no folder part.
std::string ParentFolder(std::string_view path);

}  // namespace nv
