// Account groups: sets of four general-ledger account numbers given a short code, kept in
// the company's folder as company number + ".ACG" together with three settings of the
// general-ledger export that this program only carries along.
//
// File (binary, written byte for byte, lines ended by LF alone):
//   "321" LF
//   folder LF
//   file name LF
//   option text LF
//   "Y" or "N" LF
//   3 bytes: 24 (description width), 4 (accounts per group), 100 (account width)
//   per group, in list order, 24 + 24 + 4 * 100 = 448 bytes:
//     OFFSET  SIZE  DESCRIPTION
//     0       24    code, padded with blanks
//     24      24    description, padded with blanks
//     48      400   four accounts, each padded with blanks to 100
//
// Older files are read too, by the number on their first line:
//   FORMAT  OPTION LINES  SIZE BYTES                    CODE FIELD
//   710     no            description, accounts         4-byte little-endian integer
//   720     no            description, accounts         10 bytes
//   721     yes           description, accounts         10 bytes
//   152     yes           description, accounts         24 bytes
//   321     yes           description, accounts, width  24 bytes
// Without a width byte each account is as wide as the description. A file whose first byte
// is not a digit has no header lines: its three size bytes stand at its beginning and its
// records have no code. Reading stops at the first incomplete record.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/status.h"

namespace nv {

inline constexpr size_t kAccountGroupCodeWidth = 24;
inline constexpr size_t kAccountGroupDescriptionWidth = 24;
inline constexpr size_t kAccountGroupAccounts = 4;
inline constexpr size_t kAccountWidth = 100;
inline constexpr size_t kAccountGroupFolderWidth = 259;
inline constexpr size_t kAccountGroupFileNameWidth = 12;
inline constexpr size_t kAccountGroupOptionWidth = 100;
inline constexpr size_t kAccountGroupRecordSize =
    kAccountGroupCodeWidth + kAccountGroupDescriptionWidth + kAccountGroupAccounts * kAccountWidth;
static_assert(kAccountGroupRecordSize == 448);

struct AccountGroup {
  std::string code;                                         // at most 24 characters
  std::string description;                                  // at most 24 characters
  std::array<std::string, kAccountGroupAccounts> accounts;  // each at most 100 characters
  friend bool operator==(const AccountGroup&, const AccountGroup&) = default;
};

struct AccountGroupList {
  std::string folder;       // at most 259 characters; default the company's folder
  std::string file_name;    // at most 12; default company number + ".EX1"
  std::string option_text;  // at most 100; default "N"
  bool option_flag = false;
  std::vector<AccountGroup> groups;  // ordered by CompareCodes on the code

  friend bool operator==(const AccountGroupList&, const AccountGroupList&) = default;
};

// Sets the settings to their defaults for this company and empties the groups.
void SetAccountGroupDefaults(std::string_view company_folder, std::string_view number,
                             AccountGroupList* list);

// Reads the company's account group file into *list and returns the number of groups. A
// missing file, or one not beginning with a digit, gives the default settings; a first
// line with a number of no known format gives no groups and leaves the settings as they
// were.
[[nodiscard]] int LoadAccountGroups(std::string_view company_folder, std::string_view number,
                                    AccountGroupList* list);
// Writes the list in the current format, replacing the file. Returns the number of groups
// written or kFileNotCreated.
[[nodiscard]] int SaveAccountGroups(std::string_view company_folder, std::string_view number,
                                    const AccountGroupList& list);

// Pointers returned below live until the groups change.

// The group whose code equals `code` (cut to 24 characters), or nullptr.
const AccountGroup* FindAccountGroupByCode(const std::vector<AccountGroup>& groups,
                                           std::string_view code);
// The first group whose four accounts equal these under CompareCodes, or nullptr.
const AccountGroup* FindAccountGroupByAccounts(const std::vector<AccountGroup>& groups,
                                               std::string_view a1, std::string_view a2,
                                               std::string_view a3, std::string_view a4);
// Adds a group for the four accounts unless one has them. Its code is `preferred_code`, or
// the first account when that is empty; when another group already has that code, the
// code is cut to 23 characters and "A", "B", ... "Z" appended until it is free (past "Z"
// nothing is added). A blank code adds nothing. Returns the group with the four accounts.
const AccountGroup* GetOrAddAccountGroup(std::vector<AccountGroup>* groups, std::string_view a1,
                                         std::string_view a2, std::string_view a3,
                                         std::string_view a4, std::string_view preferred_code);
// The group with `code` and the four accounts. When a group has that code with other
// accounts, the character just past the end of the given code becomes "A", then the next
// character, until a free code or a group with these accounts turns up. A new group is
// inserted under the free code. A blank code gives nullptr.
const AccountGroup* GetOrAddAccountGroupByCode(std::vector<AccountGroup>* groups,
                                               std::string_view a1, std::string_view a2,
                                               std::string_view a3, std::string_view a4,
                                               std::string_view code);

}  // namespace nv
