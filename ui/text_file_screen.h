// The screen "Create Text File for Export": where the whole-company text file goes (a
// folder and a file name) and which company it holds. The export (export/text_file_export.h)
// shows it again after every file it writes, until the user closes it.
//
// Each field has a script name; setting a field runs the check of leaving it, and a
// refused value is told through the Ui and leaves the field as it was:
//
//   NAME            SHOWS                            CHECK
//   folder          Create Text File in Directory:   a missing folder is made when the user
//                                                    agrees (a trailing separator is ignored)
//   company_number  Company Number:                  must be in the data directory's company
//                                                    list; shows the company's name beside it
//                                                    and names the file NUMBER.DBS
//   file_name       Text File Name:                  an existing file is replaced only when the
//                                                    user agrees (default No)
//
// Buttons: browse (the folder dialog), create, close. Create runs the checks of the fields
// not yet passed with their present values; the export is run only when all pass.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "ui/screen/field_description.h"

namespace nv {

inline constexpr char kTextFileScreenTitle[] = "Create Text File for Export";
inline constexpr char kCreateFolderQuestion[] =
    "Folder being copied to does not exist.  Create it?";
inline constexpr char kUnableToCreateFolder[] = "Unable to create folder copied to.%s";
inline constexpr char kParentFolderMissing[] =
    "  Parent folder:\n%s\nMust exist before you can create this folder.";
inline constexpr char kCompanyNotFound[] = "Company not found.";
inline constexpr char kReplaceFileQuestion[] = "File %s already exists.\nReplace it?";
inline constexpr char kTextFileExtension[] = ".DBS";

// Widths of the screen's fields.
inline constexpr size_t kTextFileFolderWidth = 76;
inline constexpr size_t kTextFileNameWidth = 12;

// What the screen asks for: one text file of one company.
struct TextFileRequest {
  std::string folder;          // as typed; the file goes into it
  std::string company_number;  // upper case
  std::string file_name;
  std::string company_name;  // shown beside the number once the number is found
};

class TextFileScreen {
 public:
  // `request` holds the values the screen opens with. A company number given there is
  // looked up at once, without a message: found, it shows the name and the file name.
  TextFileScreen(const InstallationContext& context, TextFileRequest request, Ui& ui);
  TextFileScreen(const TextFileScreen&) = delete;
  TextFileScreen& operator=(const TextFileScreen&) = delete;

  static const std::vector<std::string>& FieldNames();
  [[nodiscard]] static bool IsFieldName(std::string_view name);
  static const std::vector<std::string>& ButtonNames();
  [[nodiscard]] static bool IsButtonName(std::string_view name);
  // The button of a control identifier of table(), "" for none.
  static std::string ButtonOfControl(int id);
  static int ControlId(std::string_view name);

  // The screen in the screen language; a field's check runs the field's rule.
  FieldTable& table() { return table_; }
  const TextFileRequest& request() const { return request_; }
  Ui& ui() { return ui_; }

  // Puts the request's values into the table's data again (after a view wrote what was
  // typed there).
  void Refresh();

  // The field's text as the screen shows it ("" for an unknown name).
  std::string FieldText(std::string_view name) const;
  // Runs the field's check on `text`; false when the name is unknown or the value was
  // refused (the user has been told why).
  bool SetField(std::string_view name, std::string_view text);

  // Opens the folder dialog at the folder; a chosen folder replaces the field.
  void Browse();
  // The create button: true when every field passes its check, so the file can be made.
  [[nodiscard]] bool Create();

 private:
  void Build();
  bool SetFolder(std::string_view text);
  bool SetCompanyNumber(std::string_view text, bool quietly);
  bool SetFileName(std::string_view text);
  // The company's name in the data directory's company list, or nothing.
  std::optional<std::string> ListedCompanyName(const std::string& number) const;

  const InstallationContext& context_;
  TextFileRequest request_;
  Ui& ui_;
  FieldTable table_;
  // Which fields have passed their checks with the values they hold now.
  bool folder_passed_ = false;
  bool company_passed_ = false;
  bool file_name_passed_ = false;
};

// The folder as typed without blanks around it and without trailing separators ("/"
// stays), so that "out/" and "out" name one folder.
std::string TextFileFolder(std::string_view typed);

}  // namespace nv
