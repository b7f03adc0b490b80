// LOGFONT texts: how the installation's settings file keeps a font, for example the
// "print to screen font" of a user. Written as
//   "LOGFONT(%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%-32.32s)"
// with height, width, escapement, orientation, weight, then italic, underline,
// strike-out, character set, output precision, clip precision, quality and
// pitch-and-family (one byte each), then the face name padded to 32 characters.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/installation_context.h"

namespace nv {

inline constexpr size_t kLogFontFaceSize = 32;  // face name field, terminator included

std::string FormatLogFont(const LogFont& font);

// Reads the text as "LOGFONT(%d,...,%d,%32c)" does: thirteen decimal numbers, each
// optionally preceded by blanks, separated by commas, then exactly 32 characters of face
// name (anything after them is ignored). The face name is cut to 31 characters and
// trimmed. Numbers outside int are malformed; the eight byte fields keep their low byte.
// Nothing when the text is malformed.
std::optional<LogFont> ParseLogFont(std::string_view text);

}  // namespace nv
