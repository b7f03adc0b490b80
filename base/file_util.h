// File helpers with the Windows habits the shared files carry: existing files are looked
// up ignoring case, text files are written with CR LF and read with LF or CR LF, and a
// file is replaced by writing a temporary file beside it and renaming it over the old
// one, so a failed write never leaves a half-written file behind.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

// Returns the path of the entry of `folder` whose name equals `name` ignoring ASCII case;
// an exact match is preferred. nullopt when there is none or the folder cannot be read.
// `folder` may end with '/' or not; the result is folder + "/" + the real name.
std::optional<std::string> FindFileIgnoringCase(const std::string& folder, std::string_view name);

// The whole file as bytes. nullopt when it cannot be read; *missing (when given) tells
// whether that was because the file does not exist.
std::optional<std::string> ReadFileBytes(const std::string& path, bool* missing = nullptr);

// Replaces (or creates) `path` with `bytes` through a temporary file in the same folder.
// On failure the old file is left as it was and false is returned. Through a symbolic
// link the file it points to is replaced; a dangling link is a failure.
[[nodiscard]] bool WriteFileAtomically(const std::string& path, std::string_view bytes);

// Writes `text`, whose lines end with "\n", with CR LF line ends (a "\r\n" already in the
// text stays one line end).
[[nodiscard]] bool WriteTextFile(const std::string& path, std::string_view text);

// Splits text into lines at LF, dropping one CR before each LF; a last line without a line
// end is kept, an empty text has no lines.
std::vector<std::string> SplitTextLines(std::string_view text);

// The lines of a text file (see SplitTextLines); nullopt when it cannot be read.
std::optional<std::vector<std::string>> ReadTextLines(const std::string& path);

// Makes `path` and every missing folder above it. True when it exists as a folder after.
[[nodiscard]] bool MakeDirectories(const std::string& path);

// Creates `path` when it is missing (an existing file keeps its bytes) and makes the file
// and its name in its folder reach the disk before returning. False when any step failed.
[[nodiscard]] bool CreateFileDurably(const std::string& path);

// Writes all of `bytes` to an open file descriptor: one write() unless the system takes
// fewer bytes, then the rest. False on an error.
[[nodiscard]] bool WriteToDescriptor(int fd, std::string_view bytes);

}  // namespace nv
