// One report line into an asset, as the profile's definitions say: the asset number, then
// the general fields, every schedule of the company and "4797 Type", in the order of
// bna_fields.h. The converter is also the conversion language's view of the run (its
// field references, special conversions and schedule names), so the language reads the
// same line and the same asset.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/date.h"
#include "import/bna/bna_fields.h"
#include "import/bna/bna_source.h"
#include "import/bna/bna_state.h"
#include "import/bna/conversion/conversion_context.h"
#include "import/bna/field_value.h"

namespace nv {

class NvCompany;
class Ui;

// The parameters of one run that change how values are stored.
struct BnaStoreRules {
  int implied_decimals = 0;
  bool always_copy_basis = false;       // "subst basis" is "always copy"
  bool section_179_adjustment = false;  // "Profile Type" is "BNA_ND"
};

// A life read as years, an optional "-" and months.
YearsMonths ReadBnaLife(std::string_view text);

class BnaLineConverter final : public bna::ConversionDefinitions {
 public:
  // REQUIRES: state, company (open) and ui outlive the converter.
  BnaLineConverter(BnaImportState& state, NvCompany& company, const BnaStoreRules& rules,
                   Date today, Ui* ui);
  BnaLineConverter(const BnaLineConverter&) = delete;
  BnaLineConverter& operator=(const BnaLineConverter&) = delete;

  // Splits the line to be converted next; `number` counts every line of the report.
  void SetLine(std::string_view text, int32_t number);

  // The line's "Asset No.", at most `longest` characters; none when it gives none.
  std::optional<std::string> AssetNumber(size_t longest);

  // Stores the line's values into `asset` (the state's current asset: the defaults that
  // look at the asset being built see it). Returns the line's "Note Text" when it is not
  // blank.
  std::optional<std::string> Fill(NvAsset& asset);

  // Writes the account group list back when the language loaded it. False when that
  // failed.
  [[nodiscard]] bool SaveAccountGroups();

  // bna::ConversionDefinitions
  std::optional<bna::FieldDefinition> Find(std::string_view name) const override;
  std::optional<std::string> ProduceFieldValue(std::string_view name,
                                               std::span<const std::string> columns,
                                               char letter) override;
  std::string SpecialConversion(std::string_view key) override;
  std::string ScheduleName(char letter) const override;

 private:
  // The definitions of one schedule's fields, looked up once a run: the list and the
  // company's schedules do not change while it runs.
  struct ScheduleDefinitions {
    char letter = '\0';
    std::string name;  // the company's name of the schedule
    std::array<const ConversionDefinition*, kBnaScheduleFields.size()> fields{};
  };

  std::optional<std::string> Value(const ConversionDefinition* definition, size_t asked,
                                   char letter);
  void FillGeneral(NvAsset& asset, std::optional<std::string>* note);
  void FillSchedule(NvAsset& asset, const ScheduleDefinitions& definitions,
                    NvAssetSchedule& schedule);
  AccountGroupList* AccountGroups();
  // Sets the context's columns for the language.
  void LanguageColumns();
  // The list's Find, remembered by the name asked for.
  const ConversionDefinition* Lookup(std::string_view name) const;

  BnaImportState& state_;
  NvCompany& company_;
  BnaStoreRules rules_;
  bna::TokenCache tokens_;
  bna::ConversionContext context_;
  nv::SpecialConversion special_;
  std::optional<ColumnClass> columns_;
  std::vector<std::string> column_texts_;  // the same line for the language
  bool texts_ready_ = false;
  bool groups_loaded_ = false;
  const ConversionDefinition* asset_no_ = nullptr;
  const ConversionDefinition* type_4797_ = nullptr;
  std::array<const ConversionDefinition*, kBnaGeneralFields.size()> general_{};
  std::vector<ScheduleDefinitions> schedules_;  // in the order of the company's letters
  // What the language looked up, by the name it asked with.
  mutable std::unordered_map<std::string, const ConversionDefinition*> found_;
  std::map<std::string, std::string> specials_;  // read once a run, by upper-case key
};

}  // namespace nv
