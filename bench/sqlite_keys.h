// SQLite collations that order our index keys as our indexes do: NVNUMBER for .I1 keys (the
// asset number) and NVSORT for .I2 keys under a company's sort order.
#pragma once

#include <sqlite3.h>

#include <string>

#include "store/file/key_compare.h"

namespace nv {

inline int CollateNumber(void*, int la, const void* a, int lb, const void* b) {
  return CompareI1Keys({static_cast<const char*>(a), size_t(la)},
                       {static_cast<const char*>(b), size_t(lb)});
}

inline int CollateSort(void* order, int la, const void* a, int lb, const void* b) {
  return CompareI2Keys({static_cast<const char*>(a), size_t(la)},
                       {static_cast<const char*>(b), size_t(lb)}, static_cast<const char*>(order));
}

// Registers both on `db`; `sort_order` must outlive the connection.
inline void AddKeyCollations(sqlite3* db, const std::string& sort_order) {
  sqlite3_create_collation(db, "NVNUMBER", SQLITE_UTF8, nullptr, CollateNumber);
  sqlite3_create_collation(db, "NVSORT", SQLITE_UTF8, const_cast<char*>(sort_order.c_str()),
                           CollateSort);
}

}  // namespace nv
