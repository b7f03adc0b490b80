// The conversion definitions of a BNA import profile: one ConversionDefinition per target
// field, kept by ImportConversionList in the order of the profile's keys.
//
// A definition is stored in the profile's "conversion definitions" section under the
// field's name as one line, written with "%s%s,%s,%d,%s":
//
//   [NOCOPY,]LETTERS,METHOD,NUMBER,TEXT
//
//   NOCOPY   present when the field is never filled ("nocopy" in any case reads too)
//   LETTERS  the source column ("A" to "ZZ"), empty for none
//   METHOD   ENTIRE, RIGHT, LEFT, MID, DEFAULT, SPECIAL or SET (any case); empty for none
//   NUMBER   RIGHT and LEFT: how many characters; MID: the start position from 1
//   TEXT     SET: the constant; MID: how many characters; the rest of the line, commas
//            included
//
// Examples: "A,ENTIRE,0,", "NOCOPY,C,RIGHT,4,", ",SET,0,Y", "D,MID,3,5".
//
// Group letters, from the key: "Asset No." is "*" (always active); a key with a comma takes
// the first non-blank character after it, except that "A" then "C" gives "C" (ACE against
// AMT); every other key is "G". The dialog's group boxes carry G, T, B, A, C, S and O, and
// a definition is active when its group is "*" or the letter of a checked box.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace nv {

enum class ConversionMethod : int32_t {
  kNone = 0,
  kEntire = 1,
  kRight = 2,
  kLeft = 3,
  kDefault = 4,
  kSpecial = 6,
  kSet = 7,
  kMid = 8,
};

inline constexpr size_t kConversionNameLength = 25;
inline constexpr char kAlwaysActiveGroup = '*';
inline constexpr char kGeneralGroup = 'G';
inline constexpr char kNoGroup = '\0';
// The letters of the dialog's group boxes in the order "Data CheckBoxes" lists them.
inline constexpr std::string_view kGroupBoxLetters = "GTBACSO";

struct ConversionDefinition {
  std::string name;     // the target field, at most 25 characters
  int32_t column = -1;  // source column from 0; -1 for none
  ConversionMethod method = ConversionMethod::kNone;
  int32_t number = 0;               // RIGHT, LEFT: characters; MID: start position
  std::optional<std::string> text;  // SET: the constant; MID: the character count
  bool active = false;              // its group box is checked (or it is "*")
  bool no_copy = false;             // "Do not copy": never filled
  char group = kNoGroup;
};

// The keyword a definition line carries; empty for kNone.
std::string_view MethodKeyword(ConversionMethod method);
// The method of a keyword, any case; kNone for anything else.
ConversionMethod MethodOfKeyword(std::string_view keyword);

// The group letter of a profile key (rules above).
char GroupOfKey(std::string_view key);

// The schedule name a group letter stands for in a definition's name ("T": "Tax"); empty
// for the general, "*" and unknown groups.
std::string_view ScheduleNameOfGroup(char group);

// The checked group boxes of a "Data CheckBoxes" value: each box letter that occurs in it,
// in the order of kGroupBoxLetters. Absent means "*", nothing checked.
std::string CheckedGroupsOfValue(std::string_view value);
// The value stored for the checked boxes: "*" and the letters in the order G T B A C S O.
std::string ValueOfCheckedGroups(std::string_view checked);

// What the line of a definition says, as read from a profile.
struct DefinitionLine {
  bool no_copy = false;
  int32_t column = -1;
  ConversionMethod method = ConversionMethod::kNone;
  int32_t number = 0;
  std::optional<std::string> text;  // none when the line has no text
};

// Reads a definition line. Fields before the text lose one pair of enclosing double quotes
// and turn doubled quotes inside into one; blanks around them are ignored. The text is the
// rest of the line; when it is enclosed in double quotes it loses them and its doubled
// quotes are made single. Column letters are read in either case; anything that names no
// column gives -1, and an unknown keyword gives kNone. Never fails.
DefinitionLine ParseDefinitionLine(std::string_view line);

// The line of a definition. A text that would not read back as itself (it starts with a
// double quote or ends with a blank, which the profile would trim) is written between
// double quotes with its quotes doubled.
std::string FormatDefinitionLine(const ConversionDefinition& definition);

// A decimal integer as atoi reads one: blanks, a sign, digits; anything else ends it, and
// no digits give 0. Held to the 32-bit range.
int32_t ProfileInteger(std::string_view text);

// The line the definitions list shows for an entry: its name, a tab, the method text
// ("Entire", "Rt 4", "Lft 2", "Md 5@3", "Default", "Specl", "Set" or "No Copy"), and "--"
// with the column letters when it has a column.
std::string ListLineOfDefinition(const ConversionDefinition& definition);

class ImportConversionList {
 public:
  ImportConversionList() = default;
  ImportConversionList(const ImportConversionList&) = delete;
  ImportConversionList& operator=(const ImportConversionList&) = delete;

  void Clear() { entries_.clear(); }

  // Appends an entry. A group other than "G", "*" and none makes the name the name, a
  // comma, a blank and the group's schedule name, unless the name has a comma already.
  // The name is cut to 25 characters. The entry starts inactive.
  ConversionDefinition& Add(std::string_view name, bool no_copy, int32_t column,
                            ConversionMethod method, int32_t number,
                            std::optional<std::string> text, char group);

  // The entry of that name, ignoring case; when there is none and the name holds a comma,
  // the entry named by the part before the first comma ("Basis, Tax" falls back to
  // "Basis"). nullptr when neither exists. Pointers stay valid until Clear.
  const ConversionDefinition* Find(std::string_view name) const;
  ConversionDefinition* Find(std::string_view name);

  // Marks active the entries of group "*" and of the checked boxes' letters.
  void SetActive(std::string_view checked_groups);

  // Entries in the order added.
  const std::deque<ConversionDefinition>& entries() const { return entries_; }
  std::deque<ConversionDefinition>& entries() { return entries_; }
  size_t size() const { return entries_.size(); }

 private:
  const ConversionDefinition* FindExact(std::string_view name) const;

  std::deque<ConversionDefinition> entries_;  // a deque: Add never moves earlier entries
};

}  // namespace nv
