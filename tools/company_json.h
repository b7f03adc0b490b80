// The JSON document of nvtool dump --json and nvtool load: a company and its assets.
//
//   { "company": { "number", "name", "ein", "last_closed", "current_year_end",
//                  "asset_number_format": { "main", "sub", "letters", "dashes", "free_form" },
//                  "schedules": [ { "letter", "type", "name" } ], "sort_order",
//                  "business_category", "round_dollars", "mid_quarter_override",
//                  "global_loc_cat", "user_fields": [ { "name", "default" } ],
//                  "misc_codes", "logging_flags", "permissions" },
//     "account_groups": [ { "code", "description", "accounts": [ 4 texts ] } ],
//     "locations": [ { "code", "description" } ], "categories": [ ... ],
//     "assets": [ { "asset_no", "description", ..., "user_fields": [ 10 texts ],
//                   "disposal": { ... }, "schedules": { LETTER: { ... } },
//                   "pauses": { "schedules", "intervals": [ [ start, end ] ] } } ] }
//
// The tables in company_json.cpp name every member of the company object, the asset
// object, its disposal and each of its schedules, and drive both directions; the README
// lists the members with their forms. Both directions stream: a writer writes one asset
// at a time, and the reader hands over one asset at a time.
#pragma once

#include <istream>
#include <span>
#include <string>

#include "store/asset/asset.h"
#include "store/asset/asset_record.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "store/company/company_record.h"
#include "tools/json_fields.h"
#include "tools/json_writer.h"

namespace nv {

std::span<const JsonField<NvCompanyRecord>> CompanyJsonFields();
std::span<const JsonField<NvAsset>> AssetJsonFields();
std::span<const JsonField<NvAssetSchedule>> AssetScheduleJsonFields();

void WriteCompanyJson(const NvCompanyRecord& record, JsonWriter& out);
// [{"code", "description", "accounts": [4 texts]}] in list order.
void WriteAccountGroupsJson(const std::vector<AccountGroup>& groups, JsonWriter& out);
// [{"code", "description"}] in list order.
void WriteLocCatListJson(const NvLocCatList& list, JsonWriter& out);
void WriteAssetJson(const NvAsset& asset, JsonWriter& out);

// Takes the parts of a document as they are read.
class CompanyDocumentSink {
 public:
  virtual ~CompanyDocumentSink() = default;
  // The "company" object begins: the record to read it into (members it lacks keep the
  // record's values), or nullptr to pass over it.
  virtual NvCompanyRecord* CompanyTarget() = 0;
  // The company object has been read: error is "" or says what is wrong with it. False
  // ends the reading.
  [[nodiscard]] virtual bool CompanyRead(const std::string& error) = 0;
  // The "assets" list begins: the company's form of assets to read them under (the asset
  // number format and the schedule letters), or nullptr to pass over them.
  virtual const AssetRecordFormat* AssetForm() = 0;
  // One asset of the list: error is "" or says why it cannot be read, and label names it
  // in messages (its asset_no as written, else "#" and its place in the list, from 1).
  // The asset is only good until the next call. False ends the reading.
  [[nodiscard]] virtual bool AssetRead(NvAsset& asset, const std::string& label,
                                       const std::string& error) = 0;
};

enum class DocumentOutcome {
  kRead,            // to its end
  kEnded,           // a sink call ended it
  kNotAnObject,     // the document is no JSON object
  kAssetsNotAList,  // "assets" is there but no list
  kBadJson,         // the text is no JSON from some point on
};

struct DocumentResult {
  DocumentOutcome outcome = DocumentOutcome::kRead;
  // With kBadJson: where and why, "at line 3, column 7: syntax error ...".
  std::string syntax_error;
};

// Reads a document from in, handing its company and assets to the sink as they come;
// members of the top object other than "company" and "assets" are passed over. "company"
// when it is no object counts as missing.
[[nodiscard]] DocumentResult ReadCompanyDocument(std::istream& in, CompanyDocumentSink& sink);

}  // namespace nv
