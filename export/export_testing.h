// Columns made up for the export tests.
#pragma once

#include <string>
#include <string_view>

#include "export/export_definition.h"

namespace nv::testing {

// A column of field `field` in `group` with the flags whose letters (A, D, C, N) `flags` holds.
inline ExportColumn MakeColumn(int field, char group, std::string_view flags,
                               std::string heading = {}) {
  ExportColumn c;
  c.field = field;
  c.group = group;
  c.heading = std::move(heading);
  c.addition = flags.find('A') != std::string_view::npos;
  c.disposition = flags.find('D') != std::string_view::npos;
  c.current = flags.find('C') != std::string_view::npos;
  c.none_of_the_above = flags.find('N') != std::string_view::npos;
  return c;
}

}  // namespace nv::testing
