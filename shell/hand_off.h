// The hand-off from the main fixed-assets program. It starts us with two arguments,
// "/pid:" followed by a token and a mode word, and writes ten parameter lines into our
// standard input. Started any other way we show kStandaloneMessage and end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/installation_context.h"

namespace nv {

inline constexpr char kStandaloneMessage[] =
    "This is not a standalone program.  It must\nbe run from the Fixed Assets Program.";

// Number of parameter lines the main program writes, and the reader's buffer: a line must
// fit into it with its newline.
inline constexpr int kParameterLineCount = 10;
inline constexpr size_t kParameterBufferSize = 100;

// Reads the parameter lines from fd the way the main program expects them to be read:
// each read asks for at most kParameterBufferSize minus the pending bytes, complete lines
// are cut off the front (newline dropped, a carriage return kept), and the first read
// that returns fewer bytes than asked (end of input, an error, or simply less) ends
// reading. Bytes after the last newline are dropped. A line of kParameterBufferSize bytes
// or more never fits the buffer and fails the read. The caller keeps fd open and owns it.
// Returns the lines read, or nothing when a line was too long.
std::optional<std::vector<std::string>> ReadParameterLines(int fd);

// Reads the ten parameter lines from fd only when argv[1] begins with "/pid:" (ignoring
// case); nullopt on any failure (then nothing else was touched). Fails also when the lines
// are not exactly ten or when the text after "/pid:" differs from line 4, ignoring case.
std::optional<RunParameters> CheckHandOff(int argc, const char* const* argv, int stdin_fd);

enum class ProgramMode { kNone, kImport, kExport };

// The mode word argv[2]: IMPORT, or EXPORT / EXPORTLIM (which behave alike), in any case.
ProgramMode ParseModeWord(int argc, const char* const* argv);

}  // namespace nv
