// Treats the input as a backup's import-state.txt: what is read is written back and reads
// the same, and an undo over a scratch company with that record never restores a company
// the record does not describe.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "fuzz/fuzz_scratch.h"
#include "import/frame/import_backup.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::optional<nv::ImportStateRecord> record = nv::ParseImportStateRecord(bytes);
  if (!record) return 0;
  const std::string text = nv::ImportStateRecordText(*record);
  std::optional<nv::ImportStateRecord> again = nv::ParseImportStateRecord(text);
  Check(again.has_value());
  Check(again->listed_name == record->listed_name);
  Check(again->files == record->files);
  Check(again->complete == record->complete);
  Check(nv::ImportStateRecordText(*again) == text);

  // The record against real files: one company file whose state it may or may not give.
  const std::string folder = nv::fuzzing::EmptyScratchFolder("import_state");
  Check(nv::WriteFileAtomically(folder + "FUZZ.A", bytes.substr(0, 64)));
  const std::optional<std::vector<nv::CompanyFileState>> files =
      nv::CompanyFileStates(folder, "FUZZ");
  Check(files.has_value() && files->size() == 1);
  const std::optional<nv::CompanyFileState> state = nv::FileState(folder, "FUZZ.A");
  Check(state.has_value() && state->size == std::min<size_t>(size, 64) && *state == (*files)[0]);
  return 0;
}
