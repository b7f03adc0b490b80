// The target fields of the BNA Next Dimension import, in the order in which the run asks
// for them, each with the longest value it asks for. A profile names its definitions by
// these names; a schedule's own definition is the field name, a comma, a blank and the
// schedule's name ("Basis, Tax"), and falls back to the plain name.
//
//   general fields   Asset No., then Description to Note Text below, once per line
//   schedule fields  Depr Method to Salvage Value, once per schedule of the company, in the
//                    order of its schedule letters
//   last             4797 Type, after every schedule (its default looks at their lives)
//
// A field reference always computes the referred field again from the line, so the order
// matters only to the conversion language's built-in defaults that look at the asset being
// built: "Convention" sees its schedule's "Depr Method" stored just before it, and "4797
// Type" sees all the lives.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace nv {

struct BnaTargetField {
  std::string_view name;
  size_t asked;  // the longest value asked for
};

inline constexpr std::string_view kBnaAssetNoField = "Asset No.";  // asked with the company's
                                                                   // asset-number length
inline constexpr std::string_view kBnaNoteTextField = "Note Text";

inline constexpr std::array<BnaTargetField, 24> kBnaGeneralFields{{
    {"Description", 30},     {"Location", 100},        {"Category", 100},
    {"Account No.", 24},     {"Cash and Notes", 100},  {"Trade In", 100},
    {"Date Purchased", 100}, {"Date in Service", 100}, {"New/Used", 1},
    {"Property Code", 2},    {"User Field 1", 20},     {"User Field 2", 20},
    {"User Field 3", 20},    {"User Field 4", 20},     {"User Field 5", 20},
    {"User Field 6", 20},    {"User Field 7", 20},     {"User Field 8", 20},
    {"User Field 9", 20},    {"User Field 10", 20},    {"Disposal Code", 1},
    {"Disposal Date", 10},   {"Sale Amount", 100},     {kBnaNoteTextField, 100},
}};

inline constexpr BnaTargetField kBna4797Type{"4797 Type", 2};

inline constexpr std::array<BnaTargetField, 16> kBnaScheduleFields{{
    {"Depr Method", 2},
    {"Amortized", 1},
    {"Asset Type", 5},
    {"Business Percent", 3},
    {"Useful Life", 5},
    {"Str Line Life", 5},
    {"Basis", 100},
    {"ITC Code", 100},
    {"Convention", 100},
    {"Misc. Codes", 100},
    {"Current Depr", 100},
    {"Accum. Allowed", 100},
    {"Accum. Allowable", 100},
    {"179 Expense", 100},
    {"Bonus", 100},
    {"Salvage Value", 100},
}};

}  // namespace nv
