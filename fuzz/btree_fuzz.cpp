// Opens an index file made of the input bytes (either layout, as its header says) and
// finds, inserts, deletes and walks in it. The first input byte picks the key length and
// sort order; the rest is the file.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "fuzz/fuzz_scratch.h"
#include "store/file/btree_file.h"
#include "store/file/status.h"
#include "store/file/structure_check.h"

namespace {

struct Shape {
  uint32_t key_current;
  uint32_t key_old;
  const char* sort_order;
};

constexpr Shape kShapes[] = {
    {9, 5, ""},
    {14, 5, ""},
    {31, 27, "1P"},
    {19, 7, "L"},
};

std::string TempPath() {
  return nv::fuzzing::ScratchFolder("btree") + "input";
}

std::string KeyFor(uint32_t i, uint32_t length) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%*u.%02u", static_cast<int>(length > 3 ? length - 3 : 1), i / 7,
                i % 7 + 1);
  std::string key(buf);
  key.resize(length, ' ');
  return key;
}

}  // namespace

// Statuses dropped with static_cast<void> are dropped on purpose: on arbitrary bytes any
// outcome is fine; only crashes, hangs and the checks count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const Shape& shape = kShapes[data[0] % 4];
  std::string path = TempPath();
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data + 1, 1, size - 1, f);
  std::fclose(f);

  nv::NvBTreeFile tree;
  if (tree.Open(path, false, shape.key_current, shape.key_old, nv::kBadHeaderI2) != nv::kOk) {
    return 0;
  }
  uint32_t record = 0, node = 0;
  tree.ClearPath();
  for (int i = 0; i < 200 && tree.Next(&record) == nv::kOk && record != 0; ++i) {
  }
  tree.ClearPath();
  for (int i = 0; i < 200 && tree.Previous(&record) == nv::kOk && record != 0; ++i) {
  }
  uint32_t length = tree.key_length();
  // Appending after a wildly wrong highest record would make a huge sparse file here.
  bool may_write = tree.file().highest_record() <= tree.file().RecordsInFile() + 64;
  for (uint32_t i = 0; i < 24; ++i) {
    std::string key = KeyFor(i * 13 % 50, length);
    static_cast<void>(tree.Find(key, shape.sort_order, &record));
    static_cast<void>(tree.Next(&record));
    static_cast<void>(tree.Previous(&record));
    if (!may_write) continue;
    static_cast<void>(tree.Insert(key, i + 1, shape.sort_order, &node));
    if (i % 3 == 0) static_cast<void>(tree.Delete(KeyFor(i * 5 % 50, length), shape.sort_order));
  }
  nv::CheckTree(tree, shape.sort_order);
  static_cast<void>(tree.Close());
  return 0;
}
