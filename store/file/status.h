// Status codes of the store, all of them, each number with one name. Negative is failure.
// The numbers are shared with the main program's files and messages, so they never change.
//
// Success is kOk (0) unless an operation's header says otherwise; the exceptions are
//   NvCompany::Open                        1
//   LoadLocCatList, SaveLocCatList         the number of entries read or written
//   LoadAccountGroups, SaveAccountGroups   the number of groups read or written
//   NvRecFile::Close, NvBTreeFile::Close   0, or -1 when the file could not be closed
// Every function that returns a status is [[nodiscard]]; a caller that drops one on
// purpose says why at the call.
#pragma once

namespace nv {

inline constexpr int kOk = 0;

// Closing a company (the company is closed afterwards in any case).
inline constexpr int kCloseBlockFileFailed = -1;  // the block file (.A) could not be closed
inline constexpr int kCloseI1Failed = -2;         // .I1 could not be closed
inline constexpr int kCloseI2Failed = -3;         // .I2 could not be closed

// Record files.
inline constexpr int kAllocReadFailed = -10;   // read of a free record failed while allocating
inline constexpr int kBadMarker = -11;         // a block with an unexpected marker: not a
                                               // company's file, or a chain of another kind
inline constexpr int kNoCompany = -12;         // no company object to open or create
inline constexpr int kFileNotCreated = -13;    // a location, category or account group file
                                               // could not be created; the list is unchanged
inline constexpr int kFreeWriteFailed = -20;   // write failed while freeing a record
inline constexpr int kChainWriteFailed = -21;  // a record (chain or node) not written completely
inline constexpr int kNotFound = -30;          // key or asset number not found; empty tree on find

// Opening or creating a company.
inline constexpr int kBlockFileMissing = -51;  // block file missing or unreadable
inline constexpr int kI1Failed = -52;          // .I1 missing or unreadable, or not created
inline constexpr int kI2Failed = -53;          // .I2 missing or unreadable, or not created

// Record number out of range, record limit reached, empty tree on next/previous; also a
// damaged index (unreadable node, a node met twice on one path, a tree deeper than any
// tree this program builds).
inline constexpr int kOutOfRange = -70;
inline constexpr int kBrokenChain = -91;  // broken block chain (company record or asset)

// Asset operations.
inline constexpr int kInvalidAsset = -100;     // invalid asset number, or an asset without a
                                               // record number
inline constexpr int kNumberKeyFailed = -102;  // .I1 key not deleted; invalid number on find
inline constexpr int kSortKeyFailed = -103;    // .I2 key not deleted

// -110 .. -119: the index files need a rebuild (company selection offers a quick one);
// within the range:
inline constexpr int kFirstRebuildStatus = -119;
inline constexpr int kLastRebuildStatus = -110;
inline constexpr int kNewerVersion = -111;  // written by a newer version, or the upgrade of an
                                            // old company was declined
inline constexpr int kBadHeaderI1 = -112;   // .I1 not open, or its header not recognized
inline constexpr int kBadHeaderI2 = -113;   // .I2 not open, or its header not recognized

inline constexpr int kDuplicate = -120;  // the asset number (or key) exists already

// An open of a company for writing, or a create, refused: another writer (another program,
// or another open in this one) holds the company's in-use lock (number + ".LOK"), and two
// writers at once would mix their changes in the files. A number of this program's own.
inline constexpr int kCompanyInUse = -140;

}  // namespace nv
