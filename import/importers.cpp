#include "import/importers.h"

#include <algorithm>

#include "import/aicpa/aicpa_importer.h"
#include "import/bna/bna_import.h"
#include "import/dbs/dbs_importer.h"
#include "import/fas1000/fas1000_importer.h"
#include "import/faswin/faswin_importer.h"
#include "import/frame/dry_run.h"
#include "import/mba/mba_importer.h"
#include "import/pcfas/pcfas_importer.h"

namespace nv {
namespace {

constexpr ImporterEntry kImporters[] = {
    {102, "pcfas", "Best PC/FAS", &MakePcFasImporter},
    {103, "fas1000", "Best FAS1000 or FAS2000", &MakeFas1000Importer},
    {104, "faswin", "Best FAS for Windows", &MakeFasWinImporter},
    {105, "aicpa", "AICPA Depreciation", &MakeAicpaImporter},
    {106, "text", "the NORVANE text format", MakeDataBaseFileImporter},
    {107, "bna", "BNA Next Dimension", nullptr, &RunBnaImport},
    {108, "mba", "MBA Software", &MakeMbaImporter},
};

}  // namespace

std::span<const ImporterEntry> ImporterEntries() {
  return kImporters;
}

const ImporterEntry* FindImporterByKind(std::string_view kind) {
  auto it = std::find_if(std::begin(kImporters), std::end(kImporters),
                         [kind](const ImporterEntry& e) { return e.kind == kind; });
  return it == std::end(kImporters) ? nullptr : &*it;
}

const ImporterEntry* FindImporterByCommand(int command) {
  auto it = std::find_if(std::begin(kImporters), std::end(kImporters),
                         [command](const ImporterEntry& e) { return e.command == command; });
  return it == std::end(kImporters) ? nullptr : &*it;
}

std::string ImportNotAvailableText(std::string_view source) {
  return "Importing from " + std::string(source) + " is not available in this build.";
}

void RunImporterCommand(const ImporterEntry& entry, const InstallationContext& ctx, Ui& ui,
                        bool test_import) {
  if (entry.run != nullptr) {
    entry.run(ctx, ui, test_import);
    return;
  }
  if (entry.make == nullptr) {
    ui.Message(ImportNotAvailableText(entry.product), "Note");
    return;
  }
  std::unique_ptr<Importer> importer = entry.make();
  if (test_import) {
    static_cast<void>(TestImport(ctx, ui, *importer));
  } else {
    static_cast<void>(RunImport(ctx, ui, *importer));
  }
}

}  // namespace nv
