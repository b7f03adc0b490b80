// File-type filters of the open and save dialogs. The logic writes them as the common
// file dialog expected them, "Description|*.ext;*.EXT|All files|*.*"; Qt wants
// "Description (*.ext *.EXT)" entries.
#pragma once

#include <QStringList>
#include <string_view>

namespace nv {

QStringList NameFiltersFromPattern(std::string_view filter);

}  // namespace nv
