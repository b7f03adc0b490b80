// Reads block chains from a block file made of the input bytes, then rewrites one and
// checks the file. The first input byte picks the chain to start from.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "base/coding.h"
#include "fuzz/fuzz_scratch.h"
#include "store/file/block_chain.h"
#include "store/file/rec_file.h"
#include "store/file/structure_check.h"

namespace {

std::string TempPath() {
  return nv::fuzzing::ScratchFolder("chain") + "input";
}

}  // namespace

// Statuses dropped with static_cast<void> are dropped on purpose: on arbitrary bytes any
// outcome is fine; only crashes, hangs and the checks count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  uint32_t start = data[0] % 16;
  std::string path = TempPath();
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data + 1, 1, size - 1, f);
  std::fclose(f);

  nv::NvRecFile file;
  if (!file.Open(path, false, nv::kBlockLength, nv::NvRecFile::kCurrentLayout)) return 0;
  // The counters come from the company record's first 12 data bytes, as the owner reads them.
  uint8_t head[7 + 12];
  if (file.ReadRecord(0, head, sizeof head)) {
    file.SetCounters(nv::DecodeU32(head + 7), nv::DecodeU32(head + 11), nv::DecodeU32(head + 15));
  }
  // Appending after a wildly wrong highest record would make a huge sparse file here.
  bool may_write =
      file.highest_record() <= file.RecordsInFile() + 64 && start <= file.RecordsInFile();
  std::string bytes;
  static_cast<void>(nv::ReadChain(file, 0, 10, &bytes));
  static_cast<void>(nv::ReadChain(file, start, 0, &bytes));
  std::vector<uint32_t> starts = {0, start};
  nv::CheckBlockFile(file, starts);
  if (may_write) {
    // Rewrite the chain shorter or longer over whatever is there.
    uint32_t first = start;
    std::vector<uint8_t> record(size % 600, 0x5A);
    static_cast<void>(nv::WriteChain(file, record, nv::kMarkerAssetFirst, 0, &first));
    static_cast<void>(nv::ReadChain(file, first, 0, &bytes));
    nv::CheckBlockFile(file, starts);
  }
  static_cast<void>(file.Close());
  return 0;
}
