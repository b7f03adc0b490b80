#include "import/bna/bna_line_convert.h"

#include <array>
#include <cmath>

#include "base/ascii.h"
#include "import/bna/bna_fields.h"
#include "import/bna/conversion/conversion_eval.h"
#include "import/bna/conversion/conversion_values.h"
#include "store/codes/account_groups.h"
#include "store/company/company.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

constexpr double kCent = 0.005;

bool Given(double amount) {
  return std::fabs(amount) > kCent;
}

std::string Cut(const std::string& text, size_t width) {
  return text.substr(0, width);
}

void StoreChar(const std::string& value, char* field) {
  if (!value.empty()) *field = value[0];
}

double Amount(const std::string& value, const BnaStoreRules& rules) {
  return BnaAmount(value, rules.implied_decimals);
}

// How each general field is stored, in the order of kBnaGeneralFields. "Note Text" is not
// stored in the asset.
using GeneralStore = void (*)(const std::string& value, const BnaStoreRules& rules, NvAsset& a);

constexpr std::array<GeneralStore, kBnaGeneralFields.size()> kGeneralStores{{
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.description = Cut(v, 30); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.location = Cut(v, 10); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.category = Cut(v, 10); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.account = Cut(v, 24); },
    [](const std::string& v, const BnaStoreRules& r, NvAsset& a) {
      a.cash_and_notes = Amount(v, r);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAsset& a) { a.trade_in = Amount(v, r); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) {
      a.purchase_date = bna::ReadDateText(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) {
      a.date_in_service = bna::ReadDateText(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { StoreChar(v, &a.new_used_trade); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.property_code = Cut(v, 2); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[0] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[1] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[2] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[3] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[4] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[5] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[6] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[7] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[8] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { a.user_fields[9] = Cut(v, 20); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) { StoreChar(v, &a.disposal_code); },
    [](const std::string& v, const BnaStoreRules&, NvAsset& a) {
      a.disposal_date = bna::ReadDateText(v);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAsset& a) { a.sale_amount = Amount(v, r); },
    nullptr,  // Note Text
}};
static_assert(kBnaGeneralFields.back().name == kBnaNoteTextField);

// Which schedule fields a line gave, for the rules that look at them together.
struct ScheduleGiven {
  std::optional<double> basis;
  bool allowed = false;
  bool allowable = false;
  bool sec179 = false;
};

using ScheduleStore = void (*)(const std::string& value, const BnaStoreRules& rules,
                               NvAssetSchedule& s, ScheduleGiven& given);

constexpr std::array<ScheduleStore, kBnaScheduleFields.size()> kScheduleStores{{
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.method = bna::ReadInt(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.amortized = (!v.empty() && v[0] == 'Y') || bna::ReadInt(v) != 0;
    },
    // An "L" in the type is the listed-property flag, which the record keeps as the letter.
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.asset_type = Cut(v, 5);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.business_percent = bna::ReadInt(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.useful_life = ReadBnaLife(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.sl_life = ReadBnaLife(v);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule&, ScheduleGiven& g) {
      g.basis = Amount(v, r);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.itc_code = bna::ReadInt(v);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      StoreChar(v, &s.convention);
    },
    [](const std::string& v, const BnaStoreRules&, NvAssetSchedule& s, ScheduleGiven&) {
      s.misc_codes = Cut(v, 10);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven&) {
      s.current_depr = Amount(v, r);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven& g) {
      s.prior_allowed_depr = Amount(v, r);
      g.allowed = true;
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven& g) {
      s.prior_allowable_depr = Amount(v, r);
      g.allowable = true;
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven& g) {
      s.sec179_expense = Amount(v, r);
      g.sec179 = true;
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven&) {
      s.bonus_depr = Amount(v, r);
    },
    [](const std::string& v, const BnaStoreRules& r, NvAssetSchedule& s, ScheduleGiven&) {
      s.salvage_value = Amount(v, r);
    },
}};

// A Basis equal to the cost says nothing: only a different one is kept, as the substitute
// basis, and the type gets its "S" (substitute basis) when there is room.
void StoreBasis(double basis, const NvAsset& asset, const BnaStoreRules& rules,
                NvAssetSchedule& s) {
  if (rules.always_copy_basis) {
    s.substitute_basis = basis;
    return;
  }
  if (std::fabs(basis - asset.Cost()) <= kCent) return;
  s.substitute_basis = basis;
  if (s.asset_type.size() < 5) s.asset_type += 'S';
}

// One accumulated amount given alone stands for both; the Section 179 expense of a BNA
// Next Dimension report is included in its accumulated amounts and comes out of them.
void SettleAccumulated(const ScheduleGiven& given, const BnaStoreRules& rules, NvAssetSchedule& s) {
  if (given.allowable && !Given(s.prior_allowed_depr))
    s.prior_allowed_depr = s.prior_allowable_depr;
  if (given.allowed && !Given(s.prior_allowable_depr))
    s.prior_allowable_depr = s.prior_allowed_depr;
  if (given.sec179 && rules.section_179_adjustment && Given(s.sec179_expense)) {
    if (Given(s.prior_allowable_depr)) s.prior_allowable_depr -= s.sec179_expense;
    if (Given(s.prior_allowed_depr)) s.prior_allowed_depr -= s.sec179_expense;
  }
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

YearsMonths ReadBnaLife(std::string_view text) {
  YearsMonths life;
  life.years = bna::ReadInt(text);
  if (size_t dash = text.find('-'); dash != std::string_view::npos) {
    life.months = bna::ReadInt(text.substr(dash + 1));
  }
  return life;
}

BnaLineConverter::BnaLineConverter(BnaImportState& state, NvCompany& company,
                                   const BnaStoreRules& rules, Date today, Ui* ui)
    : state_(state), company_(company), rules_(rules) {
  context_.definitions = this;
  context_.implied_decimals = rules.implied_decimals;
  context_.today = today;
  context_.asset = &state.current_asset;
  context_.locations = &company.locations();
  context_.categories = &company.categories();
  context_.account_groups = [this] { return AccountGroups(); };
  context_.ui = ui;
  context_.tokens = &tokens_;
  // A DEFAULT or SPECIAL field is the field reference to its own name.
  special_ = [this](const ConversionDefinition& d) {
    LanguageColumns();
    return bna::EvaluateFieldReference(d.name, context_);
  };
  const ImportConversionList& list = state.definitions;
  asset_no_ = list.Find(kBnaAssetNoField);
  type_4797_ = list.Find(kBna4797Type.name);
  for (size_t i = 0; i < kBnaGeneralFields.size(); ++i) {
    general_[i] = list.Find(kBnaGeneralFields[i].name);
  }
  const CompanySchedules company_schedules = company.Schedules();
  for (char letter : company.record().schedule_letters) {
    ScheduleDefinitions& schedule = schedules_.emplace_back();
    schedule.letter = letter;
    schedule.name = CompanyScheduleName(company_schedules, letter);
    for (size_t i = 0; i < kBnaScheduleFields.size(); ++i) {
      schedule.fields[i] = list.Find(ScheduleFieldName(kBnaScheduleFields[i].name, schedule.name));
    }
  }
}

void BnaLineConverter::SetLine(std::string_view text, int32_t number) {
  columns_.emplace(text, state_.file_type);
  column_texts_.clear();
  texts_ready_ = false;
  context_.columns = {};
  context_.line_number = number;
}

void BnaLineConverter::LanguageColumns() {
  // Most fields take a column as it stands; the copies the language reads are made for
  // the first line's field that needs them.
  if (texts_ready_) return;
  texts_ready_ = true;
  for (int i = 0; i < columns_->Count(); ++i) {
    column_texts_.emplace_back(columns_->Column(i).value_or(std::string_view()));
  }
  context_.columns = column_texts_;
}

std::optional<std::string> BnaLineConverter::Value(const ConversionDefinition* definition,
                                                   size_t asked, char letter) {
  context_.letter = letter;
  return ProduceDefinitionValue(definition, *columns_, asked, special_);
}

std::optional<std::string> BnaLineConverter::AssetNumber(size_t longest) {
  return Value(asset_no_, longest, '\0');
}

std::optional<std::string> BnaLineConverter::Fill(NvAsset& asset) {
  std::optional<std::string> note;
  FillGeneral(asset, &note);
  for (const ScheduleDefinitions& definitions : schedules_) {
    if (NvAssetSchedule* schedule = asset.Schedule(definitions.letter)) {
      FillSchedule(asset, definitions, *schedule);
    }
  }
  if (std::optional<std::string> v = Value(type_4797_, kBna4797Type.asked, '\0')) {
    asset.type_4797 = bna::ReadInt(*v);
  }
  return note;
}

void BnaLineConverter::FillGeneral(NvAsset& asset, std::optional<std::string>* note) {
  for (size_t i = 0; i < kBnaGeneralFields.size(); ++i) {
    std::optional<std::string> value = Value(general_[i], kBnaGeneralFields[i].asked, '\0');
    if (!value) continue;
    if (kGeneralStores[i] != nullptr) {
      kGeneralStores[i](*value, rules_, asset);
    } else if (!IsBlank(*value)) {
      *note = std::move(*value);
    }
  }
  // Either date stands for the other when the report gives only one.
  if (asset.purchase_date.empty()) asset.purchase_date = asset.date_in_service;
  if (asset.date_in_service.empty()) asset.date_in_service = asset.purchase_date;
}

void BnaLineConverter::FillSchedule(NvAsset& asset, const ScheduleDefinitions& definitions,
                                    NvAssetSchedule& schedule) {
  ScheduleGiven given;
  for (size_t i = 0; i < kBnaScheduleFields.size(); ++i) {
    std::optional<std::string> value =
        Value(definitions.fields[i], kBnaScheduleFields[i].asked, definitions.letter);
    if (value) kScheduleStores[i](*value, rules_, schedule, given);
  }
  if (given.basis) StoreBasis(*given.basis, asset, rules_, schedule);
  SettleAccumulated(given, rules_, schedule);
}

AccountGroupList* BnaLineConverter::AccountGroups() {
  if (!state_.account_groups) {
    if (groups_loaded_) return nullptr;  // it failed to load once this run
    groups_loaded_ = true;
    AccountGroupList list;
    if (LoadAccountGroups(company_.folder(), company_.number(), &list) < 0) return nullptr;
    state_.account_groups = std::move(list);
  }
  return &*state_.account_groups;
}

bool BnaLineConverter::SaveAccountGroups() {
  if (!state_.account_groups) return true;
  const bool saved =
      nv::SaveAccountGroups(company_.folder(), company_.number(), *state_.account_groups) >= 0;
  state_.account_groups.reset();
  return saved;
}

const ConversionDefinition* BnaLineConverter::Lookup(std::string_view name) const {
  auto at = found_.find(std::string(name));
  if (at == found_.end()) at = found_.emplace(name, state_.definitions.Find(name)).first;
  return at->second;
}

std::optional<bna::FieldDefinition> BnaLineConverter::Find(std::string_view name) const {
  const ConversionDefinition* d = Lookup(name);
  if (d == nullptr) return std::nullopt;
  return bna::FieldDefinition{d->name, d->column, d->method, d->active, d->no_copy};
}

std::optional<std::string> BnaLineConverter::ProduceFieldValue(std::string_view name,
                                                               std::span<const std::string>, char) {
  // The language asks with the name already completed by the schedule's; the line is the
  // one set, which the span shows too.
  return ProduceDefinitionValue(Lookup(name), *columns_, kNoLengthLimit, special_);
}

std::string BnaLineConverter::SpecialConversion(std::string_view key) {
  // The profile does not change during a run; each expression is read from it once.
  std::string upper = AsciiUpper(key);
  auto at = specials_.find(upper);
  if (at == specials_.end()) {
    at = specials_
             .emplace(std::move(upper),
                      ReadProfileValue(state_.profiles, kBnaSpecialSection, key, ""))
             .first;
  }
  return at->second;
}

std::string BnaLineConverter::ScheduleName(char letter) const {
  for (const ScheduleDefinitions& schedule : schedules_) {
    if (schedule.letter == letter) return schedule.name;
  }
  return CompanyScheduleName(company_.Schedules(), letter);
}

}  // namespace nv
