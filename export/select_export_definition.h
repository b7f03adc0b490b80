// The dialog "Select Export Definition": the combo box "Export Definition:" lists the
// definitions of the company's NUMBER.EXP and then those of "global.exp", each remembering
// its file; picking one sets "Applies To" to "Current Company Only" or "All Companies".
// OK takes the typed name, trimmed, in the scope that "Applies To" shows:
//
//   open mode      a name that the scope's file lacks is refused ("Export definition %s
//                  not found.") and the dialog stays
//   save-as mode   a name that the scope's file holds is taken only when the user agrees
//                  to overwrite it (default No); otherwise the dialog stays
//
// An empty name chooses no definition: the dialog closes and nothing is opened or saved.
//
// Script lines (ui/scripted_window.h), as the transcript names them
// ("select-export-definition"):
//
//   definition NAME       picks the listed definition NAME (the first of that name, any
//                         case)
//   set name TEXT         types TEXT into "Export Definition:"
//   set applies_to company|all
//   click ok              OK; `cancel` or `close` closes the dialog
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "export/export_definition.h"
#include "ui/scripted_window.h"

namespace nv {

inline constexpr char kSelectExportDefinitionTitle[] = "Select Export Definition";
inline constexpr char kOverwriteDefinitionQuestion[] = "Overwrite existing definition %s?";
inline constexpr char kDefinitionNotFound[] = "Export definition %s not found.";
inline constexpr char kAppliesToCompany[] = "Current Company Only";
inline constexpr char kAppliesToAll[] = "All Companies";

enum class SelectDefinitionMode { kOpen, kSaveAs };

struct ExportDefinitionItem {
  std::string name;
  ExportScope scope = ExportScope::kThisCompany;
};

class ExportDefinitionPicker : public ScriptedWindow {
 public:
  // `company_file` and `global_file` are the two definition files (ExportDefinitionFile).
  // The dialog opens with `name` typed and `scope` chosen.
  ExportDefinitionPicker(SelectDefinitionMode mode, std::string company_file,
                         std::string global_file, std::string name, ExportScope scope, Ui& ui);

  SelectDefinitionMode mode() const { return mode_; }
  const std::vector<ExportDefinitionItem>& items() const { return items_; }

  // The combo box: picking an item types its name and chooses its scope.
  void Pick(size_t index);
  void SetName(std::string_view typed) { name_ = std::string(typed); }
  const std::string& name() const { return name_; }
  void SetScope(ExportScope scope) { scope_ = scope; }
  ExportScope scope() const { return scope_; }

  // OK: true when the dialog may close; then chosen() holds the definition's new name and
  // scope, or nothing for an empty name.
  [[nodiscard]] bool Accept();
  const std::optional<ExportDefinitionItem>& chosen() const { return chosen_; }

  std::string ScriptName() const override;
  std::string ScriptState() const override;
  std::optional<Step> ScriptStep(std::string_view directive, std::string_view argument,
                                 std::string* error) override;

 private:
  const std::string& FileOf(ExportScope scope) const;
  bool Exists(const std::string& name, ExportScope scope) const;

  SelectDefinitionMode mode_;
  std::string company_file_;
  std::string global_file_;
  Ui& ui_;
  std::vector<ExportDefinitionItem> items_;
  std::string name_;
  ExportScope scope_;
  std::optional<ExportDefinitionItem> chosen_;
};

// Runs the dialog through ui. True when a definition was chosen: `definition` then takes
// its name and scope (nothing else of it changes).
bool SelectExportDefinition(SelectDefinitionMode mode, const std::string& company_file,
                            const std::string& global_file, ExportDefinition& definition, Ui& ui);

}  // namespace nv
