#include "store/codes/account_groups.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/ascii.h"
#include "base/coding.h"
#include "base/comma_text.h"
#include "base/compare_codes.h"
#include "base/file_util.h"

namespace nv {
namespace {

constexpr int kCurrentFormat = 321;

// How a record's code is stored.
enum class CodeField { kNone, kInteger, kShort, kFull };

struct Format {
  int number;
  bool option_lines;  // option text and Y/N lines follow the file name
  bool width_byte;    // the account width has a size byte of its own
  CodeField code;
};

constexpr Format kFormats[] = {
    {710, false, false, CodeField::kInteger}, {720, false, false, CodeField::kShort},
    {721, true, false, CodeField::kShort},    {152, true, false, CodeField::kFull},
    {321, true, true, CodeField::kFull},
};

constexpr size_t kShortCodeWidth = 10;

size_t CodeFieldSize(CodeField code) {
  switch (code) {
    case CodeField::kNone:
      return 0;
    case CodeField::kInteger:
      return 4;
    case CodeField::kShort:
      return kShortCodeWidth;
    case CodeField::kFull:
      return kAccountGroupCodeWidth;
  }
  return 0;
}

// Up to the first NUL, as the fields were C strings.
std::string_view UpToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// A record field: up to its NUL, cut to the width kept, without blanks around it.
std::string FieldText(std::string_view field, size_t width) {
  return std::string(TrimBlanks(UpToNul(field).substr(0, width)));
}

// A header line without its line end (cut at the first CR or LF), cut to the width kept.
std::string HeaderText(std::string_view line, size_t width) {
  line = UpToNul(line);
  line = line.substr(0, line.find_first_of("\r\n"));
  return std::string(line.substr(0, width));
}

class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : bytes_(bytes) {}

  // The next line with its LF; nullopt at the end of the file.
  std::optional<std::string_view> Line() {
    if (bytes_.empty()) return std::nullopt;
    size_t end = bytes_.find('\n');
    end = end == std::string_view::npos ? bytes_.size() : end + 1;
    std::string_view line = bytes_.substr(0, end);
    bytes_.remove_prefix(end);
    return line;
  }
  std::optional<uint8_t> Byte() {
    if (bytes_.empty()) return std::nullopt;
    uint8_t b = static_cast<uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return b;
  }
  std::optional<std::string_view> Take(size_t count) {
    if (bytes_.size() < count) return std::nullopt;
    std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
  }

 private:
  std::string_view bytes_;
};

// "%3d" of a line that begins with a digit.
int FormatNumber(std::string_view line) {
  int number = 0;
  for (size_t i = 0; i < 3 && i < line.size() && line[i] >= '0' && line[i] <= '9'; ++i) {
    number = number * 10 + (line[i] - '0');
  }
  return number;
}

void ReadHeaderLine(Cursor* in, size_t width, std::string* value) {
  if (std::optional<std::string_view> line = in->Line()) *value = HeaderText(*line, width);
}

// The size bytes and the records after them.
void ReadGroups(Cursor* in, CodeField code_field, bool width_byte,
                std::vector<AccountGroup>* groups) {
  std::optional<uint8_t> description_width = in->Byte();
  std::optional<uint8_t> accounts = in->Byte();
  if (!description_width || !accounts) return;
  size_t account_width = *description_width;
  if (width_byte) {
    std::optional<uint8_t> width = in->Byte();
    if (!width) return;
    account_width = *width;
  }
  const size_t code_size = CodeFieldSize(code_field);
  const size_t record_size = code_size + *description_width + *accounts * account_width;
  if (record_size == 0) return;  // nothing to read, and no end to reading it
  while (std::optional<std::string_view> record = in->Take(record_size)) {
    AccountGroup group;
    std::string_view code = record->substr(0, code_size);
    if (code_field == CodeField::kInteger) {
      const int32_t value =
          static_cast<int32_t>(DecodeU32(reinterpret_cast<const uint8_t*>(code.data())));
      group.code = std::to_string(value);
    } else {
      group.code = FieldText(code, kAccountGroupCodeWidth);
    }
    size_t at = code_size;
    group.description =
        FieldText(record->substr(at, *description_width), kAccountGroupDescriptionWidth);
    at += *description_width;
    for (size_t i = 0; i < *accounts; ++i, at += account_width) {
      if (i < kAccountGroupAccounts) {
        group.accounts[i] = FieldText(record->substr(at, account_width), kAccountWidth);
      }
    }
    groups->push_back(std::move(group));
  }
}

bool GroupLess(const AccountGroup& a, const AccountGroup& b) {
  return CompareCodes(a.code, b.code) < 0;
}

// "%-*.*s": cut to the width, padded with blanks.
void PutPadded(std::string* out, std::string_view text, size_t width) {
  text = UpToNul(text).substr(0, width);
  out->append(text);
  out->append(width - text.size(), ' ');
}

void PutLine(std::string* out, std::string_view text, size_t width) {
  *out += HeaderText(text, width);
  *out += '\n';
}

std::string AccountGroupPath(std::string_view folder, std::string_view number) {
  return PathIgnoringCase(std::string(folder), std::string(number) + ".ACG");
}

bool SameAccounts(const AccountGroup& group, const std::array<std::string_view, 4>& accounts) {
  for (size_t i = 0; i < kAccountGroupAccounts; ++i) {
    if (CompareCodes(group.accounts[i], accounts[i]) != 0) return false;
  }
  return true;
}

const AccountGroup* InsertGroup(std::vector<AccountGroup>* groups, std::string code,
                                const std::array<std::string_view, 4>& accounts) {
  AccountGroup group;
  group.code = std::move(code);
  for (size_t i = 0; i < kAccountGroupAccounts; ++i) {
    group.accounts[i] = std::string(accounts[i].substr(0, kAccountWidth));
  }
  auto at = std::upper_bound(groups->begin(), groups->end(), group, GroupLess);
  return &*groups->insert(at, std::move(group));
}

std::string GroupCode(std::string_view code) {
  return std::string(TrimBlanks(code.substr(0, kAccountGroupCodeWidth)));
}

}  // namespace

void SetAccountGroupDefaults(std::string_view company_folder, std::string_view number,
                             AccountGroupList* list) {
  AccountGroupList defaults;
  defaults.folder = std::string(company_folder.substr(0, kAccountGroupFolderWidth));
  defaults.file_name = (std::string(number) + ".EX1").substr(0, kAccountGroupFileNameWidth);
  defaults.option_text = std::string(1, 'N');
  *list = std::move(defaults);
}

int LoadAccountGroups(std::string_view company_folder, std::string_view number,
                      AccountGroupList* list) {
  std::optional<std::string> bytes = ReadFileBytes(AccountGroupPath(company_folder, number));
  if (!bytes) {
    SetAccountGroupDefaults(company_folder, number, list);
    return 0;
  }
  Cursor in(*bytes);
  if (bytes->empty() || (*bytes)[0] < '0' || (*bytes)[0] > '9') {
    SetAccountGroupDefaults(company_folder, number, list);
    list->groups.reserve(10);
    ReadGroups(&in, CodeField::kNone, true, &list->groups);
  } else {
    const int format_number = FormatNumber(*in.Line());
    const Format* format = nullptr;
    for (const Format& f : kFormats) {
      if (f.number == format_number) format = &f;
    }
    if (format == nullptr) {
      list->groups.clear();
      return 0;
    }
    SetAccountGroupDefaults(company_folder, number, list);
    list->groups.reserve(10);
    ReadHeaderLine(&in, kAccountGroupFolderWidth, &list->folder);
    ReadHeaderLine(&in, kAccountGroupFileNameWidth, &list->file_name);
    if (format->option_lines) {
      ReadHeaderLine(&in, kAccountGroupOptionWidth, &list->option_text);
      std::string flag;
      ReadHeaderLine(&in, 1, &flag);
      list->option_flag = flag == "Y";
    }
    ReadGroups(&in, format->code, format->width_byte, &list->groups);
  }
  std::stable_sort(list->groups.begin(), list->groups.end(), GroupLess);
  return static_cast<int>(list->groups.size());
}

int SaveAccountGroups(std::string_view company_folder, std::string_view number,
                      const AccountGroupList& list) {
  std::string out = std::to_string(kCurrentFormat) + "\n";
  PutLine(&out, list.folder, kAccountGroupFolderWidth);
  PutLine(&out, list.file_name, kAccountGroupFileNameWidth);
  PutLine(&out, list.option_text, kAccountGroupOptionWidth);
  out += list.option_flag ? "Y\n" : "N\n";
  out += static_cast<char>(kAccountGroupDescriptionWidth);
  out += static_cast<char>(kAccountGroupAccounts);
  out += static_cast<char>(kAccountWidth);
  for (const AccountGroup& group : list.groups) {
    PutPadded(&out, group.code, kAccountGroupCodeWidth);
    PutPadded(&out, group.description, kAccountGroupDescriptionWidth);
    for (const std::string& account : group.accounts) PutPadded(&out, account, kAccountWidth);
  }
  if (!WriteFileAtomically(AccountGroupPath(company_folder, number), out)) return kFileNotCreated;
  return static_cast<int>(list.groups.size());
}

const AccountGroup* FindAccountGroupByCode(const std::vector<AccountGroup>& groups,
                                           std::string_view code) {
  code = code.substr(0, kAccountGroupCodeWidth);
  auto at = std::lower_bound(
      groups.begin(), groups.end(), code,
      [](const AccountGroup& g, std::string_view c) { return CompareCodes(g.code, c) < 0; });
  if (at == groups.end() || CompareCodes(at->code, code) != 0) return nullptr;
  return &*at;
}

const AccountGroup* FindAccountGroupByAccounts(const std::vector<AccountGroup>& groups,
                                               std::string_view a1, std::string_view a2,
                                               std::string_view a3, std::string_view a4) {
  const std::array<std::string_view, 4> accounts = {a1, a2, a3, a4};
  for (const AccountGroup& group : groups) {
    if (SameAccounts(group, accounts)) return &group;
  }
  return nullptr;
}

const AccountGroup* GetOrAddAccountGroup(std::vector<AccountGroup>* groups, std::string_view a1,
                                         std::string_view a2, std::string_view a3,
                                         std::string_view a4, std::string_view preferred_code) {
  std::string code = GroupCode(preferred_code.empty() ? a1 : preferred_code);
  if (!code.empty() && FindAccountGroupByAccounts(*groups, a1, a2, a3, a4) == nullptr) {
    if (FindAccountGroupByCode(*groups, code) != nullptr) {
      code.resize(std::min(code.size(), kAccountGroupCodeWidth - 1));
      code += 'A';
      while (FindAccountGroupByCode(*groups, code) != nullptr) {
        if (code.back() == 'Z') return FindAccountGroupByAccounts(*groups, a1, a2, a3, a4);
        ++code.back();
      }
    }
    InsertGroup(groups, std::move(code), {a1, a2, a3, a4});
  }
  return FindAccountGroupByAccounts(*groups, a1, a2, a3, a4);
}

const AccountGroup* GetOrAddAccountGroupByCode(std::vector<AccountGroup>* groups,
                                               std::string_view a1, std::string_view a2,
                                               std::string_view a3, std::string_view a4,
                                               std::string_view given_code) {
  std::string code = GroupCode(given_code);
  if (code.empty()) return nullptr;
  // The character that changes stands just past the given code; a code that fills its
  // width changes in its last character instead.
  const size_t position = std::min(code.size(), kAccountGroupCodeWidth - 1);
  const std::array<std::string_view, 4> accounts = {a1, a2, a3, a4};
  for (bool changed = false;; changed = true) {
    const AccountGroup* found = FindAccountGroupByCode(*groups, code);
    if (found == nullptr) return InsertGroup(groups, code, accounts);
    if (SameAccounts(*found, accounts)) return found;
    if (!changed) {
      code.resize(position);
      code += 'A';
    } else if (static_cast<unsigned char>(code[position]) == 0xFF) {
      return nullptr;  // no character left to try
    } else {
      ++code[position];
    }
  }
}

}  // namespace nv
