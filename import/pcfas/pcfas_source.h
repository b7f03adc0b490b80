// The files of a PC/FAS company, as PC/FAS leaves them in the company's folder: the company
// header COMPANY1.FAS and the asset file MASTER.ASC that its ASCII export writes beside it.
//
// COMPANY1.FAS: the first 256 bytes are read (a shorter file is unreadable). Texts are
// single-byte characters in fixed slots without a terminator:
//
//   OFFSET  SIZE  CONTENT
//     0      30   company name
//    43       1   "Y": amounts are rounded to dollars
//    44      10   label of user field A   (source item 101)
//    54      10   label of user field C   (item 103)
//    64      10   label of user field D   (item 104)
//    74      12   label of user field E   (item 105)
//    86      10   label of user field F   (item 106)
//    96       8   label of user field G   (item 107)
//   104       9   label of user field B   (item 102)
//   171       5   label of user field H   (item 108)
//   176       7   label of user field I   (item 109)
//   183       9   label of user field J   (item 110)
//   192       5   label of user field K   (item 111)
//   219       5   "Y" per book used: IRS, internal book, state, AMT, ACE
//
// MASTER.ASC: one record per line, fields separated by ",", a record ends at a line feed
// (a CR before it is dropped, as a text-mode read did). A field that begins with a double
// quote runs to the next double quote followed by ",", a line end or the end of the file;
// a double quote followed by anything else is a character of the field, and inside the
// quotes a line feed or a zero byte is a blank. Only the first 120 fields of a record are
// kept; the rest of its line is read and dropped. Ctrl-Z bytes that end the file (the DOS
// end-of-file mark) are no record.
//
// The first record's field count fixes the layout of the five books for the whole file:
//
//   LAYOUT  FIELDS (first record)  BOOK BASE  BOOK STRIDE
//   short   fewer than 119         28         15
//   long    119 or more            34         17
//
// Book field k of book b (0 IRS, 1 internal book, 2 state, 3 AMT, 4 ACE) is record field
// base + stride * b + k, fields counted from 0.
//
// General fields (from 0):
//
//   FIELD   USE
//     0     asset number
//     1     record status: "A" or a single blank is an active asset
//     2     category; its first 2 characters are the property code
//     3     property class: "R" real property (4797 Type 50), "R..." or "H..." real property
//           for the life rules, "A" amortized
//     4     description
//     5     location
//     7     acquisition date
//     9     "C..." or "D..." used property; "X" no ITC
//    12     ITC amount
//    17/18  disposal date (short/long layout)
//    18/19  disposal method letter (short/long)
//    21/22  sale price (short/long)
//    32     mid-quarter marker: first byte 0x9A or 0x92
//
// Book fields (k): 0 cost, 1 method letter, 2 declining-balance percentage, 3 "L" listed
// property, 4 Sec. 179 expense or salvage value (by method), 5 life years, 6 life months,
// 8 current-year depreciation, 9 accumulated depreciation, 13 depreciated through, MMYY.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

inline constexpr char kPcFasCompanyFileName[] = "COMPANY1.FAS";
inline constexpr char kPcFasMasterFileName[] = "MASTER.ASC";

// ---- COMPANY1.FAS ---------------------------------------------------------------------

inline constexpr size_t kPcFasHeaderSize = 256;
inline constexpr size_t kPcFasNameOffset = 0;
inline constexpr size_t kPcFasNameWidth = 30;
inline constexpr size_t kPcFasRoundDollarsOffset = 43;
inline constexpr size_t kPcFasBooksOffset = 219;  // five flags, in book order
inline constexpr int kPcFasBookCount = 5;
inline constexpr int kPcFasLabelCount = 11;
inline constexpr int kPcFasFirstSourceItem = 101;

struct PcFasTextSlot {
  size_t offset;
  size_t width;
};
// The label slots of source items 101 to 111, in item order.
inline constexpr std::array<PcFasTextSlot, kPcFasLabelCount> kPcFasLabelSlots = {{
    {44, 10},  // 101, field A
    {104, 9},  // 102, field B
    {54, 10},  // 103, field C
    {64, 10},  // 104, field D
    {74, 12},  // 105, field E
    {86, 10},  // 106, field F
    {96, 8},   // 107, field G
    {171, 5},  // 108, field H
    {176, 7},  // 109, field I
    {183, 9},  // 110, field J
    {192, 5},  // 111, field K
}};
static_assert(kPcFasBooksOffset + kPcFasBookCount <= kPcFasHeaderSize);
static_assert(192 + 5 <= kPcFasBooksOffset);

enum PcFasBook { kPcFasIrs = 0, kPcFasInternal = 1, kPcFasState = 2, kPcFasAmt = 3, kPcFasAce = 4 };

struct PcFasCompany {
  std::string name;  // trailing blanks removed
  bool round_dollars = false;
  std::array<std::string, kPcFasLabelCount> labels;  // of source items 101 .. 111
  std::array<bool, kPcFasBookCount> books{};         // by PcFasBook
};

// The header's fields; nullopt when fewer than 256 bytes are given. A slot's text ends at
// its first zero byte and loses its trailing blanks.
std::optional<PcFasCompany> ParsePcFasCompany(std::string_view bytes);

// ---- MASTER.ASC -----------------------------------------------------------------------

inline constexpr size_t kPcFasMaxFields = 120;
// A field keeps at most this many bytes; the longest text taken from one is 30.
inline constexpr size_t kPcFasMaxFieldBytes = 1024;
inline constexpr size_t kPcFasLongLayoutFields = 119;

enum class PcFasLayout { kShort, kLong };

struct PcFasBookFields {
  int base;
  int stride;
};
inline constexpr PcFasBookFields kPcFasShortBooks = {28, 15};
inline constexpr PcFasBookFields kPcFasLongBooks = {34, 17};

// The layout that a first record of `field_count` fields fixes.
PcFasLayout PcFasLayoutFor(size_t field_count);

struct PcFasRecord {
  std::vector<std::string> fields;  // at most kPcFasMaxFields
  long line = 0;                    // the line the record begins on, from 1
};

// Reads MASTER.ASC record by record from a source of bytes that it asks for piece by
// piece, so a large file is never held whole.
class PcFasMasterReader {
 public:
  // Fills `buffer` with up to `capacity` bytes and returns how many; 0 at the end.
  using ReadBytes = std::function<size_t(char* buffer, size_t capacity)>;

  explicit PcFasMasterReader(ReadBytes read, size_t chunk_size = 64 * 1024);
  // A reader over bytes in memory, handed out `chunk_size` at a time.
  // REQUIRES: `bytes` outlives the reader.
  static PcFasMasterReader FromBytes(std::string_view bytes, size_t chunk_size = 64 * 1024);

  // The next record into *record (its strings reused); false at the end of the file.
  bool Next(PcFasRecord* record);
  // Bytes consumed so far.
  uint64_t offset() const { return consumed_; }

 private:
  // The next byte without taking it; -1 at the end.
  int Peek();
  int Take();
  // The byte after the next one, without taking either; -1 at the end.
  int PeekSecond();
  bool Fill();

  ReadBytes read_;
  std::vector<char> buffer_;
  size_t at_ = 0;
  size_t end_ = 0;
  bool at_eof_ = false;
  uint64_t consumed_ = 0;
  long line_ = 1;
};

}  // namespace nv
