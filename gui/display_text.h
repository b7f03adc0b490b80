// Texts of the logic layers are single-byte Windows-1252 strings kept as bytes. These two
// functions are the only place where the windows turn them into QString and back, so the
// code page rule lives in one spot.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace nv {

QString FromWindowsText(std::string_view bytes);
std::string ToWindowsText(const QString& text);

}  // namespace nv
