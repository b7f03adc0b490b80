// The JSON document of nvtool dump --json and nvtool load: a company and its assets.
//
//   { "company": { "number", "name", "ein", "last_closed", "current_year_end",
//                  "asset_number_format": { "main", "sub", "letters", "dashes", "free_form" },
//                  "schedules": [ { "letter", "type", "name" } ], "sort_order",
//                  "business_category", "round_dollars", "mid_quarter_override",
//                  "global_loc_cat", "user_fields": [ { "name", "default" } ],
//                  "misc_codes", "logging_flags", "permissions" },
//     "assets": [ { "asset_no", "description", ... } ] }
//
// Dates are "MM/DD/YYYY" texts ("" for the empty date), lives "Y-M", amounts numbers,
// one-letter codes one-character texts ("" for blank). Texts are UTF-8 in the document and
// Windows-1252 in the company. The README lists every member.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "store/asset/asset.h"
#include "store/company/company_record.h"

namespace nv {

nlohmann::ordered_json CompanyToJson(const NvCompanyRecord& record);
nlohmann::ordered_json AssetToJson(const NvAsset& asset);

// Each fills its target from a document part; false with a reason in *error when a member
// has the wrong type or form. Members that are missing keep the target's values.
bool CompanyFromJson(const nlohmann::json& json, NvCompanyRecord* record, std::string* error);
// REQUIRES: asset->Clear() was called with the company's schedule letters.
bool AssetFromJson(const nlohmann::json& json, const NvAssetNoFormat& format, NvAsset* asset,
                   std::string* error);

}  // namespace nv
