// User access permissions of a company: what each network user may do with it.
//
// The permissions text of the company record holds entries separated by "|" (no bar before
// the first), each a user name or "*" for every user without an entry of his own, a colon
// and one letter:
//
//   LEVEL  LETTER  TEXT
//    0     F       Full Access
//    2     W       Read/Write Access
//    3     R       Read Only Access
//   -1     N       No Access        (also any other letter)
//
// An empty text, or "0", means that no permissions are defined: everybody has Full Access.
// The text only counts in network mode, or when the company's settings file says
// "SingleUserUP=yes" in section "Misc".
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "store/company/company.h"

namespace nv {

inline constexpr int kFullAccess = 0;
inline constexpr int kReadWriteAccess = 2;
inline constexpr int kReadOnlyAccess = 3;
inline constexpr int kNoAccess = -1;

inline constexpr char kDefaultUserName[] = "*";
inline constexpr char kNoChangePermissionNote[] =
    "Note: You do not have permission to delete or change the existing company.";

// F, W, R, N (either case) to their levels; any other letter is kNoAccess.
[[nodiscard]] int PermissionLevelOfLetter(char letter);
// The letter of a level; any level but -1, 0 and 3 is Read/Write.
char PermissionLetter(int level);
// "Full Access", "Read/Write Access", "Read Only Access" or "No Access"; any level but -1,
// 0 and 3 is "Read/Write Access".
const char* PermissionLevelText(int level);

// True unless the text is blank or "0".
[[nodiscard]] bool PermissionsDefined(std::string_view permissions);

// The level of `user_name` under `permissions`. `enforced`: network mode, or SingleUserUP.
// Upper-cases "|" + text and looks for "|USER:", then for "|*:"; the letter after the colon
// is the level. Not enforced, not defined, or no entry: Full Access.
[[nodiscard]] int UserPermissionLevel(std::string_view permissions, std::string_view user_name,
                                      bool enforced);

// Whether the company's permissions text counts for this run: network mode, or "yes" for
// "SingleUserUP" in section "Misc" of the company's settings file.
[[nodiscard]] bool PermissionsEnforced(const NvCompany& company);
// The level of the run's user for the company's record as it stands; computed when the
// company is opened.
[[nodiscard]] int CurrentUserPermission(const NvCompany& company);

struct PermissionEntry {
  std::string name;  // a user name, or "*"
  char letter = 'N';
  friend bool operator==(const PermissionEntry&, const PermissionEntry&) = default;
};

// The entries of a permissions text, in their order. Each entry's name ends at its first
// colon and its letter is the next character, upper-cased (the level lookup upper-cases the
// text, so "f" already meant Full); anything after it is dropped. An entry without a colon
// can never be found and is dropped; one without a letter is "N", which is how the lookup
// reads it. No entries for a text that PermissionsDefined rejects.
std::vector<PermissionEntry> ParsePermissions(std::string_view permissions);
// "NAME:L" joined by "|".
std::string FormatPermissions(const std::vector<PermissionEntry>& entries);

// Tells the user that a feature is refused: with a required level, "You are not permitted
// to use this feature.\n\nPermission required for this feature is %s.  You have %s.";
// without, "You are not permitted to use this feature.  Your permission for this company
// is %s.".
void RefuseFeature(Ui& ui, int my_level, std::optional<int> required_level = std::nullopt);

}  // namespace nv
