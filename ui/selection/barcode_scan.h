// Asset numbers collected with a barcode scanner. The scanner types each code followed by
// a line end into a text box; the codes become the criterion of the field that takes
// barcodes ("Asset Number").
#pragma once

#include <string>
#include <string_view>

#include "ui/selection/selection.h"

namespace nv {

// The scanned text split at CR, LF and ",", each code without blanks at its ends, empty
// codes dropped, sorted, each code once, joined with ",".
std::string ScannedCodesCriterion(std::string_view scanned);

// Writes the scanned codes as the barcode field's criterion and switches it on (not
// excluded: the codes name the assets wanted), every other criterion off.
void ApplyScannedCodes(std::string_view scanned, KelSelection* selection);

}  // namespace nv
