#include "export/select_export_definition.h"

#include "base/ascii.h"
#include "base/str_format.h"
#include "ui/scripted_ui.h"

namespace nv {

ExportDefinitionPicker::ExportDefinitionPicker(SelectDefinitionMode mode, std::string company_file,
                                               std::string global_file, std::string name,
                                               ExportScope scope, Ui& ui)
    : mode_(mode),
      company_file_(std::move(company_file)),
      global_file_(std::move(global_file)),
      ui_(ui),
      name_(std::move(name)),
      scope_(scope) {
  for (const std::string& section : ListDefinitions(company_file_)) {
    items_.push_back({section, ExportScope::kThisCompany});
  }
  for (const std::string& section : ListDefinitions(global_file_)) {
    items_.push_back({section, ExportScope::kAllCompanies});
  }
}

void ExportDefinitionPicker::Pick(size_t index) {
  if (index >= items_.size()) return;
  name_ = items_[index].name;
  scope_ = items_[index].scope;
}

const std::string& ExportDefinitionPicker::FileOf(ExportScope scope) const {
  return scope == ExportScope::kAllCompanies ? global_file_ : company_file_;
}

bool ExportDefinitionPicker::Exists(const std::string& name, ExportScope scope) const {
  for (const ExportDefinitionItem& item : items_) {
    if (item.scope == scope && EqualIgnoringCase(item.name, name)) return true;
  }
  return false;
}

bool ExportDefinitionPicker::Accept() {
  const std::string name(TrimBlanks(name_));
  if (name.empty()) {
    chosen_.reset();
    return true;
  }
  if (mode_ == SelectDefinitionMode::kSaveAs) {
    if (Exists(name, scope_) &&
        !AskYes(ui_, DefaultButton::kNo, kOverwriteDefinitionQuestion, name.c_str())) {
      return false;
    }
  } else if (!Exists(name, scope_)) {
    MessageF(ui_, "Error", kDefinitionNotFound, name.c_str());
    return false;
  }
  chosen_ = ExportDefinitionItem{name, scope_};
  return true;
}

std::string ExportDefinitionPicker::ScriptName() const {
  return "select-export-definition";
}

std::string ExportDefinitionPicker::ScriptState() const {
  std::string line = mode_ == SelectDefinitionMode::kOpen ? "mode=open" : "mode=save-as";
  line += " items=[";
  for (size_t i = 0; i < items_.size(); ++i) {
    if (i > 0) line += ", ";
    line += QuoteTranscriptText(items_[i].name);
    line += items_[i].scope == ExportScope::kAllCompanies ? " all" : " company";
  }
  line += "] name=" + QuoteTranscriptText(name_);
  line += scope_ == ExportScope::kAllCompanies ? " applies_to=all" : " applies_to=company";
  return line;
}

std::optional<ScriptedWindow::Step> ExportDefinitionPicker::ScriptStep(std::string_view directive,
                                                                       std::string_view argument,
                                                                       std::string* error) {
  if (directive == "definition") {
    for (size_t i = 0; i < items_.size(); ++i) {
      if (EqualIgnoringCase(items_[i].name, argument)) {
        Pick(i);
        return Step::kStays;
      }
    }
    *error = "no definition of that name is listed";
    return std::nullopt;
  }
  if (directive == "set") {
    const size_t blank = argument.find(' ');
    const std::string_view box = argument.substr(0, blank);
    const std::string_view value =
        blank == std::string_view::npos ? std::string_view() : argument.substr(blank + 1);
    if (box == "name") {
      SetName(value);
      return Step::kStays;
    }
    if (box == "applies_to" && (value == "company" || value == "all")) {
      SetScope(value == "all" ? ExportScope::kAllCompanies : ExportScope::kThisCompany);
      return Step::kStays;
    }
    *error = "the dialog has the boxes name and applies_to (company or all)";
    return std::nullopt;
  }
  if (directive == "click" && argument == "ok") {
    return Accept() ? Step::kEnds : Step::kStays;
  }
  *error = "the dialog takes definition, set name, set applies_to and click ok";
  return std::nullopt;
}

bool SelectExportDefinition(SelectDefinitionMode mode, const std::string& company_file,
                            const std::string& global_file, ExportDefinition& definition, Ui& ui) {
  ExportDefinitionPicker picker(mode, company_file, global_file, definition.name.value_or(""),
                                definition.scope, ui);
  if (!ui.RunWindow(picker) || !picker.chosen()) return false;
  definition.name = picker.chosen()->name;
  definition.scope = picker.chosen()->scope;
  return true;
}

}  // namespace nv
