// Location and category lists: short codes with a description, kept in code order, that
// the assets' Location and Category fields refer to.
//
// Each list is the company's own (company folder, company number + ".LOC" / ".CAT") or,
// when the company record's "Global Loc/Cat Designation" says so (L or B for locations,
// C or B for categories), shared by all companies (installation folder, "GLOBAL.LOC" /
// "GLOBAL.CAT"). An existing file is found ignoring case.
//
// File, current form (text):
//   "NVW3000" CR LF, then per entry in list order: code TAB description CR LF.
// Reading accepts "NVW3000" or "NVW2000" in any case as the first line. Lines end at CR or
// LF; empty lines and lines without a tab carry nothing; a last line without a line end is
// not read. The file is read in pieces of 16,384 bytes, a line cut by a piece's end being
// carried into the next piece.
//
// File, older form (no header), records of 29 bytes:
//   OFFSET  SIZE  DESCRIPTION
//   0       3     number, decimal
//   3       1     "+" when the record is in use
//   4       25    description
// A record in use gets its number right-aligned in 10 characters as its code. Nothing is
// read when the first record's number is below 1.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/status.h"

namespace nv {

inline constexpr size_t kLocCatCodeWidth = 10;
inline constexpr size_t kLocCatDescriptionWidth = 25;

// Which list: locations or categories.
inline constexpr char kLocations = 'L';
inline constexpr char kCategories = 'C';

struct NvLocCatEntry {
  std::string code;         // at most 10 characters, the "I.D."
  std::string description;  // at most 25 characters
  friend bool operator==(const NvLocCatEntry&, const NvLocCatEntry&) = default;
};

// Entries ordered by CompareCodes on the code, a blank code counting as "0". Texts are cut
// to their widths on the way in; a line break (and a tab in a code) becomes a blank,
// because the file could not carry it.
class NvLocCatList {
 public:
  NvLocCatList() { entries_.reserve(25); }

  const std::vector<NvLocCatEntry>& entries() const { return entries_; }
  size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  const NvLocCatEntry& operator[](size_t i) const { return entries_[i]; }

  void Clear() { entries_.clear(); }
  // Adds at the end, leaving the order as it is (readers, the editor's rows); Sort after.
  void Append(std::string_view code, std::string_view description);
  // Stable, so that entries with equal codes keep their order.
  void Sort();
  // Inserts in code order, after any entry with an equal code.
  void Insert(std::string_view code, std::string_view description);

  friend bool operator==(const NvLocCatList&, const NvLocCatList&) = default;

 private:
  std::vector<NvLocCatEntry> entries_;
};

// The order of the list: CompareCodes with a blank code counting as "0".
[[nodiscard]] int CompareLocCatCodes(std::string_view a, std::string_view b);

// Where a company's two lists lie: its own files NUMBER.LOC and NUMBER.CAT, or the
// installation's GLOBAL.LOC and GLOBAL.CAT when the company record says the list is global.
struct LocCatFiles {
  std::string company_folder;       // with its separator
  std::string number;               // the company number
  std::string installation_folder;  // with its separator
  char global_choice = 'N';         // the record's Global Loc/Cat: C, L, B (both) or N
};

// Whether the list `which` (kLocations or kCategories) is the global one under the
// company record's choice.
[[nodiscard]] bool LocCatListIsGlobal(char global_choice, char which);
// The file that list `which` is read from and written to: an existing file of that name
// found ignoring case, else the name as the layout gives it.
std::string LocCatFilePath(const LocCatFiles& files, char which);

// Replaces *list with the entries of the file at `path`, sorted. A missing or unreadable
// file gives an empty list. Returns the number of entries.
int LoadLocCatList(const std::string& path, NvLocCatList* list);
// Writes the list in its order, replacing the file. Returns the number of entries written
// or kFileNotCreated.
[[nodiscard]] int SaveLocCatList(const std::string& path, const NvLocCatList& list);

// The entry whose code equals `code` in the list's order, or nullptr. The pointer lives
// until the list changes.
const NvLocCatEntry* FindLocCat(const NvLocCatList& list, std::string_view code);
// Inserts the entry in code order unless an entry has that code. True when added.
bool AddLocCatIfAbsent(NvLocCatList* list, std::string_view code, std::string_view description);
// The first entry, in list order, whose description equals `description` ignoring case.
const NvLocCatEntry* FindLocCatByDescription(const NvLocCatList& list,
                                             std::string_view description);

// For importers that receive a location or category as free text: the text, trimmed and
// cut to 25 characters, is looked up among the descriptions and the entry's code returned;
// otherwise an entry with the text's first 10 characters (trimmed) as code and the text as
// description is added when that code is new, and the text itself is returned (the
// asset's field keeps its first 10 characters, the code just added). A blank text adds
// nothing and gives "".
std::string LocCatCodeForText(NvLocCatList* list, std::string_view text);

}  // namespace nv
