#include "ui/selection/barcode_scan.h"

#include <algorithm>
#include <vector>

#include "base/ascii.h"

namespace nv {

std::string ScannedCodesCriterion(std::string_view scanned) {
  std::vector<std::string> codes;
  size_t start = 0;
  while (start <= scanned.size()) {
    size_t end = scanned.find_first_of("\r\n,", start);
    if (end == std::string_view::npos) end = scanned.size();
    std::string_view code = TrimBlanks(scanned.substr(start, end - start));
    if (!code.empty()) codes.emplace_back(code);
    start = end + 1;
  }
  std::sort(codes.begin(), codes.end());
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
  std::string criterion;
  for (const std::string& code : codes) {
    if (!criterion.empty()) criterion += ',';
    criterion += code;
  }
  return criterion;
}

void ApplyScannedCodes(std::string_view scanned, KelSelection* selection) {
  selection->SwitchOffAll();
  SelectionCriterion& c = selection->criteria[BarcodeSelectionField()];
  c = {true, ScannedCodesCriterion(scanned), false};
}

}  // namespace nv
