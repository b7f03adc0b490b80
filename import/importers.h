// The importers of this build, one per source product: the import window's buttons and
// nvtool import find them here by command id or by kind.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "base/ui.h"
#include "import/frame/import_frame.h"

namespace nv {

struct ImporterEntry {
  int command;               // the import window's command id
  std::string_view kind;     // nvtool import KIND
  std::string_view product;  // the source product as notes name it
  // A new importer of this kind; nullptr when its converter is not part of this build.
  std::unique_ptr<Importer> (*make)();
  // An importer with steps of its own around the frame's (BNA: company steps, then a
  // dialog that imports as often as asked); it runs in place of `make`'s frame run, as a
  // test import when `test_import` is set.
  void (*run)(const InstallationContext& ctx, Ui& ui, bool test_import) = nullptr;
};

std::span<const ImporterEntry> ImporterEntries();
const ImporterEntry* FindImporterByKind(std::string_view kind);
const ImporterEntry* FindImporterByCommand(int command);

// Runs one import from the import window: the whole frame, or the note that the
// importer is not part of this build. A test import (import/frame/dry_run.h) changes
// nothing and shows what the import would do.
void RunImporterCommand(const ImporterEntry& entry, const InstallationContext& ctx, Ui& ui,
                        bool test_import = false);

// The note an import whose converter is not part of this build shows in its place.
std::string ImportNotAvailableText(std::string_view source);

}  // namespace nv
