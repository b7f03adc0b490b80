#include "import/importers.h"

#include <string>

namespace nv {
namespace {

// A converter missing from this build must say so plainly rather than do nothing.
void ReportNotAvailable(Ui& ui, std::string_view source) {
  ui.Message(ImportNotAvailableText(source), "Note");
}

}  // namespace

std::string ImportNotAvailableText(std::string_view source) {
  return "Importing from " + std::string(source) + " is not available in this build.";
}

void ImportPcFas(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "Best PC/FAS");
}

void ImportFas1000(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "Best FAS1000 or FAS2000");
}

void ImportFasWindows(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "Best FAS for Windows");
}

void ImportAicpa(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "AICPA Depreciation");
}

void ImportBnaNextDimension(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "BNA Next Dimension");
}

void ImportTextFormat(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "the NORVANE text format");
}

void ImportMba(const InstallationContext&, Ui& ui) {
  ReportNotAvailable(ui, "MBA Software");
}

}  // namespace nv
