#include "gui/display_text.h"

#include "base/cp1252.h"

namespace nv {

QString FromWindowsText(std::string_view bytes) {
  return QString::fromStdString(Cp1252ToUtf8(bytes));
}

std::string ToWindowsText(const QString& text) {
  return Utf8ToCp1252(text.toStdString());
}

}  // namespace nv
