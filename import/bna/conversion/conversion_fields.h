// The order in which the BNA importer asks for its target fields, with the longest value it
// asks for. A field reference always computes the referred field again from the line, so
// the order matters only to the built-in defaults that look at the asset being built:
// "Convention" sees its schedule's "Depr Method" stored just before it, and "4797 Type",
// asked after every schedule, sees all the lives.
#pragma once

#include <array>
#include <cstddef>

namespace nv::bna {

struct TargetField {
  const char* name;
  size_t asked;  // longest value asked for
};

// Asked once per line after "Asset No.", in this order.
inline constexpr std::array<TargetField, 24> kGeneralTargetFields = {{
    {"Description", 30},     {"Location", 100},        {"Category", 100},
    {"Account No.", 24},     {"Cash and Notes", 100},  {"Trade In", 100},
    {"Date Purchased", 100}, {"Date in Service", 100}, {"New/Used", 1},
    {"Property Code", 2},    {"User Field 1", 20},     {"User Field 2", 20},
    {"User Field 3", 20},    {"User Field 4", 20},     {"User Field 5", 20},
    {"User Field 6", 20},    {"User Field 7", 20},     {"User Field 8", 20},
    {"User Field 9", 20},    {"User Field 10", 20},    {"Disposal Code", 1},
    {"Disposal Date", 10},   {"Sale Amount", 100},     {"Note Text", 100},
}};

// Asked for each schedule of the company in the order of its letters, with that letter.
inline constexpr std::array<TargetField, 16> kScheduleTargetFields = {{
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

// Asked last, after every schedule.
inline constexpr TargetField k4797TypeField = {"4797 Type", 2};

}  // namespace nv::bna
