// Status codes of the record, index and block files. Negative is failure; the numbers are
// shared with the main program's files and messages, so they must not change.
#pragma once

namespace nv {

inline constexpr int kOk = 0;
inline constexpr int kAllocReadFailed = -10;   // read of a free record failed while allocating
inline constexpr int kBadMarker = -11;         // block with an unexpected marker
inline constexpr int kFreeWriteFailed = -20;   // write failed while freeing a record
inline constexpr int kChainWriteFailed = -21;  // a record (chain or node) not written completely
inline constexpr int kNotFound = -30;          // key not found, or empty tree on find
// Record number out of range, record limit reached, empty tree on next/previous; also a
// damaged index (unreadable node, a node met twice on one path, a tree deeper than any
// tree this program builds).
inline constexpr int kOutOfRange = -70;
inline constexpr int kBrokenChain = -91;   // broken block chain
inline constexpr int kBadHeaderI1 = -112;  // .I1 not open or header not recognized
inline constexpr int kBadHeaderI2 = -113;  // .I2 not open or header not recognized
inline constexpr int kDuplicate = -120;    // duplicate key on insert
// An open of a company for writing, or a create, refused: another writer (another program,
// or another open in this one) holds the company's in-use lock (number + ".LOK"), and two
// writers at once would mix their changes in the files. A number of this program's own,
// used by no other status here or in company.h.
inline constexpr int kCompanyInUse = -140;

}  // namespace nv
