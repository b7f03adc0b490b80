#include "ui/text_file_screen.h"

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/str_format.h"
#include "store/company/company.h"
#include "store/company/master_file.h"

namespace nv {

namespace {

// Control identifiers.
enum : int {
  kFolderId = 301,
  kCompanyNumberId,
  kFileNameId,
  kCompanyNameId,
  kBrowseId = 311,
  kCreateId,
  kCloseId,
};

struct FieldName {
  const char* name;
  int id;
};
constexpr FieldName kFields[] = {
    {"folder", kFolderId}, {"company_number", kCompanyNumberId}, {"file_name", kFileNameId}};
constexpr FieldName kButtons[] = {
    {"browse", kBrowseId}, {"create", kCreateId}, {"close", kCloseId}};

FieldDescription Label(int row, int column, const char* text) {
  return MakeField(kFieldStatic, 0, row, column, static_cast<int>(std::string_view(text).size()),
                   text);
}

}  // namespace

std::string TextFileFolder(std::string_view typed) {
  std::string folder(TrimBlanks(typed));
  while (folder.size() > 1 && IsPathSeparator(folder.back())) folder.pop_back();
  return folder;
}

const std::vector<std::string>& TextFileScreen::FieldNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> n;
    for (const FieldName& f : kFields) n.push_back(f.name);
    return n;
  }();
  return names;
}

bool TextFileScreen::IsFieldName(std::string_view name) {
  for (const FieldName& f : kFields) {
    if (name == f.name) return true;
  }
  return false;
}

const std::vector<std::string>& TextFileScreen::ButtonNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> n;
    for (const FieldName& b : kButtons) n.push_back(b.name);
    return n;
  }();
  return names;
}

bool TextFileScreen::IsButtonName(std::string_view name) {
  for (const FieldName& b : kButtons) {
    if (name == b.name) return true;
  }
  return false;
}

std::string TextFileScreen::ButtonOfControl(int id) {
  for (const FieldName& b : kButtons) {
    if (b.id == id) return b.name;
  }
  return std::string();
}

int TextFileScreen::ControlId(std::string_view name) {
  for (const FieldName& f : kFields) {
    if (name == f.name) return f.id;
  }
  for (const FieldName& b : kButtons) {
    if (name == b.name) return b.id;
  }
  return 0;
}

TextFileScreen::TextFileScreen(const InstallationContext& context, TextFileRequest request, Ui& ui)
    : context_(context), request_(std::move(request)), ui_(ui) {
  if (!request_.company_number.empty()) {
    static_cast<void>(SetCompanyNumber(request_.company_number, /*quietly=*/true));
  }
  Build();
  Refresh();
}

void TextFileScreen::Build() {
  constexpr int kValueColumn = 20;
  table_.push_back(Label(0, 1, "Create Text File in Directory:"));
  // A path longer than the field's width must not be cut into another folder's name.
  table_.push_back(MakeField(kFieldEdit, kFolderId, 1, 1, 60, {}, "notextlimit,key"));
  FieldDescription browse = MakeField(kFieldButton, kBrowseId, 1, 64, 10, "Browse",
                                      "msg(Choose the folder of the text file)");
  table_.push_back(std::move(browse));
  table_.push_back(Label(3, 1, "Company Number:"));
  table_.push_back(MakeField(kFieldEdit, kCompanyNumberId, 3, kValueColumn,
                             static_cast<int>(kCompanyNumberLength), {},
                             "upr,chars(A-Za-z0-9&#$@),req"));
  table_.push_back(MakeField(kFieldStatic, kCompanyNameId, 3, kValueColumn + 11,
                             static_cast<int>(kMasterNameLength), {}, "clipped"));
  table_.push_back(Label(5, 1, "Text File Name:"));
  table_.push_back(MakeField(kFieldEdit, kFileNameId, 5, kValueColumn,
                             static_cast<int>(kTextFileNameWidth), {}, ""));
  table_.push_back(MakeField(kFieldButton, kCreateId, 7, 40, 10, "Create",
                             "msg(Write the company's assets into the text file)"));
  table_.push_back(MakeField(kFieldButton, kCloseId, 7, 52, 10, "Close", "msg(Close this screen)"));
  table_.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));

  for (FieldDescription& control : table_) {
    for (const FieldName& f : kFields) {
      if (control.id != f.id) continue;
      const std::string name = f.name;
      control.name = name;
      control.check = [this, name](FieldTable&, size_t, const std::string& text) {
        return SetField(name, text);
      };
    }
  }
}

void TextFileScreen::Refresh() {
  for (FieldDescription& control : table_) {
    if (control.id == kCompanyNameId) {
      control.data = request_.company_name;
    } else if (control.kind == kFieldEdit && !control.name.empty()) {
      control.data = FieldText(control.name);
    }
  }
}

std::string TextFileScreen::FieldText(std::string_view name) const {
  if (name == "folder") return request_.folder;
  if (name == "company_number") return request_.company_number;
  if (name == "file_name") return request_.file_name;
  return std::string();
}

bool TextFileScreen::SetField(std::string_view name, std::string_view text) {
  bool accepted = false;
  if (name == "folder") {
    accepted = SetFolder(text);
  } else if (name == "company_number") {
    accepted = SetCompanyNumber(text, /*quietly=*/false);
  } else if (name == "file_name") {
    accepted = SetFileName(text);
  }
  Refresh();
  return accepted;
}

bool TextFileScreen::SetFolder(std::string_view text) {
  const std::string folder = TextFileFolder(text);
  if (folder.empty()) {
    ui_.Message("Enter the folder in which the text file is to be created.");
    return false;
  }
  if (!IsFolder(folder)) {
    if (!AskYes(ui_, DefaultButton::kYes, "%s", kCreateFolderQuestion)) return false;
    if (!MakeFolder(folder)) {
      const std::string parent = ParentFolder(folder);
      const std::string why = !parent.empty() && !IsFolder(parent)
                                  ? StrPrintf(kParentFolderMissing, parent.c_str())
                                  : std::string();
      MessageF(ui_, "Message", kUnableToCreateFolder, why.c_str());
      return false;
    }
  }
  // Another folder may hold another file of the same name.
  if (folder != TextFileFolder(request_.folder)) file_name_passed_ = false;
  request_.folder = std::string(TrimBlanks(text));
  folder_passed_ = true;
  return true;
}

std::optional<std::string> TextFileScreen::ListedCompanyName(const std::string& number) const {
  MasterFile master;
  if (ReadMasterFile(context_.data_directory(), &master) != MasterFileStatus::kOk) {
    master.companies = context_.current.companies;
  }
  for (const NvMasterRec& listed : master.companies) {
    if (EqualIgnoringCase(listed.number, number)) return listed.name;
  }
  return std::nullopt;
}

bool TextFileScreen::SetCompanyNumber(std::string_view text, bool quietly) {
  const std::string number = AsciiUpper(TrimBlanks(text));
  std::optional<std::string> name;
  if (!number.empty()) name = ListedCompanyName(number);
  if (!name) {
    if (!quietly) ui_.Message(kCompanyNotFound);
    return false;
  }
  request_.company_number = number;
  request_.company_name = *name;
  request_.file_name = number + kTextFileExtension;
  company_passed_ = true;
  file_name_passed_ = false;
  return true;
}

bool TextFileScreen::SetFileName(std::string_view text) {
  std::string name(TrimBlanks(text));
  if (name.size() > kTextFileNameWidth) name.resize(kTextFileNameWidth);
  if (name.empty()) {
    ui_.Message("Enter the name of the text file.");
    return false;
  }
  const std::string folder = TextFileFolder(request_.folder);
  if (FindFileIgnoringCase(folder, name) &&
      !AskYes(ui_, DefaultButton::kNo, kReplaceFileQuestion, name.c_str())) {
    return false;
  }
  request_.file_name = name;
  file_name_passed_ = true;
  return true;
}

void TextFileScreen::Browse() {
  std::optional<std::string> chosen =
      ui_.ChooseFolder("Create Text File in Directory", TextFileFolder(request_.folder));
  if (chosen) static_cast<void>(SetField("folder", *chosen));
}

bool TextFileScreen::Create() {
  if (!folder_passed_ && !SetField("folder", request_.folder)) return false;
  if (!company_passed_ && !SetField("company_number", request_.company_number)) return false;
  if (!file_name_passed_ && !SetField("file_name", request_.file_name)) return false;
  return true;
}

}  // namespace nv
