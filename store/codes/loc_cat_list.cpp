#include "store/codes/loc_cat_list.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "base/ascii.h"
#include "base/comma_text.h"
#include "base/compare_codes.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"

namespace nv {
namespace {

constexpr size_t kPieceSize = 16384;
constexpr std::string_view kHeader = "NVW3000";
constexpr std::string_view kOldHeader = "NVW2000";

// Older records: number (3), in-use mark (1), description (25).
constexpr size_t kOldNumberWidth = 3;
constexpr size_t kOldRecordSize = kOldNumberWidth + 1 + kLocCatDescriptionWidth;
static_assert(kOldRecordSize == 29);

std::string Cleaned(std::string_view text, size_t width, bool tab_too) {
  std::string out(text.substr(0, width));
  for (char& c : out) {
    if (c == '\r' || c == '\n' || (tab_too && c == '\t')) c = ' ';
  }
  return out;
}

std::string_view SortingCode(std::string_view code) {
  return TrimBlanks(code).empty() ? std::string_view("0") : code;
}

bool EntryLess(const NvLocCatEntry& a, const NvLocCatEntry& b) {
  return CompareLocCatCodes(a.code, b.code) < 0;
}

// Reads the text form line by line. The first line is the header and carries nothing.
class TextReader {
 public:
  explicit TextReader(NvLocCatList* list) : list_(list) {}

  void Piece(std::string_view piece) {
    const size_t end = piece.find_last_of("\r\n");
    if (end == std::string_view::npos) {
      carry_.append(piece);
      return;
    }
    carry_.append(piece.substr(0, end + 1));
    std::string_view complete = carry_;
    size_t start = 0;
    while (start < complete.size()) {
      size_t stop = complete.find_first_of("\r\n", start);
      Line(complete.substr(start, stop - start));
      start = stop + 1;
    }
    carry_.assign(piece.substr(end + 1));
  }
  // What is left in carry_ is a last line without a line end, which is not read.

 private:
  void Line(std::string_view line) {
    if (!header_seen_) {
      header_seen_ = true;
      return;
    }
    size_t tab = line.find('\t');
    if (line.empty() || tab == std::string_view::npos) return;
    list_->Append(line.substr(0, tab), line.substr(tab + 1));
  }

  NvLocCatList* list_;
  std::string carry_;
  bool header_seen_ = false;
};

// Reads the older fixed records.
class RecordReader {
 public:
  explicit RecordReader(NvLocCatList* list) : list_(list) {}

  void Piece(std::string_view piece) {
    carry_.append(piece);
    size_t used = 0;
    for (; carry_.size() - used >= kOldRecordSize; used += kOldRecordSize) {
      Record(std::string_view(carry_).substr(used, kOldRecordSize));
    }
    carry_.erase(0, used);
  }

 private:
  void Record(std::string_view record) {
    if (refused_) return;
    std::string number_text(record.substr(0, kOldNumberWidth));
    int number = std::atoi(number_text.c_str());
    if (first_) {
      first_ = false;
      if (number < 1) {
        refused_ = true;
        return;
      }
    }
    if (record[kOldNumberWidth] != '+') return;
    std::string_view description = record.substr(kOldNumberWidth + 1);
    description = description.substr(0, description.find('\0'));
    while (!description.empty() && description.back() == ' ') description.remove_suffix(1);
    list_->Append(StrPrintf("%*d", static_cast<int>(kLocCatCodeWidth), number), description);
  }

  NvLocCatList* list_;
  std::string carry_;
  bool first_ = true;
  bool refused_ = false;
};

bool IsTextHeader(std::string_view first_piece) {
  std::string_view start = first_piece.substr(0, kHeader.size());
  return EqualIgnoringCase(start, kHeader) || EqualIgnoringCase(start, kOldHeader);
}

}  // namespace

void NvLocCatList::Append(std::string_view code, std::string_view description) {
  entries_.push_back({Cleaned(code, kLocCatCodeWidth, true),
                      Cleaned(description, kLocCatDescriptionWidth, false)});
}

void NvLocCatList::Sort() {
  std::stable_sort(entries_.begin(), entries_.end(), EntryLess);
}

void NvLocCatList::Insert(std::string_view code, std::string_view description) {
  NvLocCatEntry entry{Cleaned(code, kLocCatCodeWidth, true),
                      Cleaned(description, kLocCatDescriptionWidth, false)};
  auto at = std::upper_bound(entries_.begin(), entries_.end(), entry, EntryLess);
  entries_.insert(at, std::move(entry));
}

int CompareLocCatCodes(std::string_view a, std::string_view b) {
  return CompareCodes(SortingCode(a), SortingCode(b));
}

bool LocCatListIsGlobal(char global_choice, char which) {
  const char choice = AsciiUpper(global_choice);
  const char list = AsciiUpper(which) == kLocations ? kLocations : kCategories;
  return choice == 'B' || choice == list;
}

std::string LocCatFilePath(const LocCatFiles& files, char which) {
  const std::string extension = AsciiUpper(which) == kLocations ? "LOC" : "CAT";
  if (LocCatListIsGlobal(files.global_choice, which)) {
    return PathIgnoringCase(files.installation_folder, "GLOBAL." + extension);
  }
  return PathIgnoringCase(files.company_folder, files.number + "." + extension);
}

int LoadLocCatList(const std::string& path, NvLocCatList* list) {
  list->Clear();
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  if (!file) return 0;
  TextReader text(list);
  RecordReader records(list);
  bool first = true;
  bool is_text = false;
  auto piece = std::make_unique<char[]>(kPieceSize);
  for (uint64_t offset = 0;;) {
    // A read error ends the list where an end of file would.
    const int64_t n = file->ReadSomeAt(offset, piece.get(), kPieceSize);
    if (n <= 0) break;
    offset += static_cast<uint64_t>(n);
    std::string_view bytes(piece.get(), static_cast<size_t>(n));
    if (first) {
      is_text = IsTextHeader(bytes);
      first = false;
    }
    if (is_text) {
      text.Piece(bytes);
    } else {
      records.Piece(bytes);
    }
  }
  list->Sort();
  return static_cast<int>(list->size());
}

int SaveLocCatList(const std::string& path, const NvLocCatList& list) {
  std::string out(kHeader);
  out += "\r\n";
  for (const NvLocCatEntry& entry : list.entries()) {
    out += entry.code;
    out += '\t';
    out += entry.description;
    out += "\r\n";
  }
  if (!WriteFileAtomically(path, out)) return kFileNotCreated;
  return static_cast<int>(list.size());
}

const NvLocCatEntry* FindLocCat(const NvLocCatList& list, std::string_view code) {
  const std::vector<NvLocCatEntry>& entries = list.entries();
  auto at = std::lower_bound(
      entries.begin(), entries.end(), code,
      [](const NvLocCatEntry& e, std::string_view c) { return CompareLocCatCodes(e.code, c) < 0; });
  if (at == entries.end() || CompareLocCatCodes(at->code, code) != 0) return nullptr;
  return &*at;
}

bool AddLocCatIfAbsent(NvLocCatList* list, std::string_view code, std::string_view description) {
  const std::string cleaned = Cleaned(code, kLocCatCodeWidth, true);
  if (FindLocCat(*list, cleaned) != nullptr) return false;
  list->Insert(cleaned, description);
  return true;
}

const NvLocCatEntry* FindLocCatByDescription(const NvLocCatList& list,
                                             std::string_view description) {
  for (const NvLocCatEntry& entry : list.entries()) {
    if (EqualIgnoringCase(entry.description, description)) return &entry;
  }
  return nullptr;
}

std::string LocCatCodeForText(NvLocCatList* list, std::string_view text) {
  text = TrimBlanks(text).substr(0, kLocCatDescriptionWidth);
  if (text.empty()) return std::string();
  if (const NvLocCatEntry* found = FindLocCatByDescription(*list, text)) return found->code;
  AddLocCatIfAbsent(list, TrimBlanks(text.substr(0, kLocCatCodeWidth)), text);
  return std::string(text);
}

}  // namespace nv
