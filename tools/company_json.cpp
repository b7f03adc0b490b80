#include "tools/company_json.h"

#include <cmath>
#include <cstdio>

#include "base/cp1252.h"
#include "base/date.h"

namespace nv {
namespace {

using Json = nlohmann::json;
using OJson = nlohmann::ordered_json;

std::string Utf8(std::string_view bytes) {
  // Records keep texts trimmed; the schedule names and location codes may carry blanks.
  while (!bytes.empty() && bytes.back() == ' ') bytes.remove_suffix(1);
  return Cp1252ToUtf8(bytes);
}

std::string DateText(const Date& date) {
  return date.empty() ? std::string() : FormatDisplayDate(date);
}

std::string CharText(char c) {
  return (c == ' ' || c == '\0') ? std::string() : std::string(1, c);
}

// The text form without its leading blanks; "" for no number.
std::string NumberText(const NvAssetNo& number) {
  if (number.empty()) return std::string();
  std::string text = number.Text();
  size_t first = text.find_first_not_of(' ');
  return Utf8(first == std::string::npos ? text : text.substr(first));
}

std::string LifeText(const YearsMonths& life) {
  return std::to_string(life.years) + "-" + std::to_string(life.months);
}

// Reads members of one object, remembering the first error.
class Reader {
 public:
  Reader(const Json& json, std::string where, std::string* error)
      : json_(json), where_(std::move(where)), error_(error) {
    if (!json_.is_object()) Fail("is not an object");
  }
  bool ok() const { return ok_; }

  void Text(const char* name, std::string* out) {
    if (const Json* v = Member(name)) {
      if (v->is_string()) {
        *out = Utf8ToCp1252(v->get<std::string>());
      } else {
        Fail(name, "is not a text");
      }
    }
  }
  void Char(const char* name, char* out) {
    std::string text;
    bool had = Has(name);
    Text(name, &text);
    if (!had || !ok_) return;
    if (text.size() > 1) return Fail(name, "is longer than one character");
    *out = text.empty() ? ' ' : text[0];
  }
  template <typename T>
  void Number(const char* name, T* out) {
    if (const Json* v = Member(name)) {
      if (!v->is_number()) return Fail(name, "is not a number");
      *out = v->get<T>();
    }
  }
  void Bool(const char* name, bool* out) {
    if (const Json* v = Member(name)) {
      if (!v->is_boolean()) return Fail(name, "is not true or false");
      *out = v->get<bool>();
    }
  }
  void DateValue(const char* name, Date* out) {
    std::string text;
    bool had = Has(name);
    Text(name, &text);
    if (!had || !ok_) return;
    if (text.empty()) {
      *out = Date{};
      return;
    }
    std::optional<Date> date = ParseDisplayDate(text);
    if (!date) return Fail(name, "is not a date MM/DD/YYYY");
    *out = *date;
  }
  void Life(const char* name, YearsMonths* out) {
    std::string text;
    bool had = Has(name);
    Text(name, &text);
    if (!had || !ok_) return;
    int years = 0, months = 0;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%d-%d%c", &years, &months, &rest) != 2) {
      return Fail(name, "is not a life Y-M");
    }
    *out = {years, months};
  }
  const Json* Member(const char* name) const {
    if (!ok_ || !json_.is_object()) return nullptr;
    auto it = json_.find(name);
    return it == json_.end() || it->is_null() ? nullptr : &*it;
  }
  bool Has(const char* name) const { return Member(name) != nullptr; }
  void Fail(const char* name, const char* what) { Fail(std::string(name) + " " + what); }
  void Fail(const std::string& what) {
    if (!ok_) return;
    ok_ = false;
    *error_ = where_ + ": " + what;
  }

 private:
  const Json& json_;
  std::string where_;
  std::string* error_;
  bool ok_ = true;
};

}  // namespace

OJson CompanyToJson(const NvCompanyRecord& r) {
  OJson j;
  j["number"] = Utf8(r.number);
  j["name"] = Utf8(r.name);
  j["ein"] = Utf8(r.ein);
  j["last_closed"] = DateText(r.last_closed);
  j["current_year_end"] = DateText(r.current_year_end);
  j["asset_number_format"] = {{"main", r.asset_no_format.main_length},
                              {"sub", r.asset_no_format.subasset_length},
                              {"letters", r.asset_no_format.letters()},
                              {"dashes", r.asset_no_format.dashes()},
                              {"free_form", r.asset_no_format.free_form()}};
  OJson schedules = OJson::array();
  for (const ScheduleEntry& s : r.schedules) {
    schedules.push_back(
        {{"letter", CharText(s.letter)}, {"type", Utf8(s.type)}, {"name", Utf8(s.name)}});
  }
  j["schedules"] = schedules;
  j["sort_order"] = Utf8(r.sort_order);
  j["business_category"] = r.business_category;
  j["round_dollars"] = r.round_dollars;
  j["mid_quarter_override"] = CharText(r.mid_quarter_override);
  j["global_loc_cat"] = CharText(r.global_loc_cat);
  OJson fields = OJson::array();
  for (const UserFieldDefinition& f : r.user_fields) {
    fields.push_back({{"name", Utf8(f.name)}, {"default", Utf8(f.default_value)}});
  }
  j["user_fields"] = fields;
  j["misc_codes"] = Utf8(r.misc_codes);
  j["logging_flags"] = r.logging_flags;
  j["permissions"] = Utf8(r.permissions);
  return j;
}

bool CompanyFromJson(const Json& json, NvCompanyRecord* r, std::string* error) {
  Reader in(json, "company", error);
  in.Text("number", &r->number);
  in.Text("name", &r->name);
  in.Text("ein", &r->ein);
  in.DateValue("last_closed", &r->last_closed);
  in.DateValue("current_year_end", &r->current_year_end);
  if (const Json* f = in.Member("asset_number_format")) {
    Reader fr(*f, "company.asset_number_format", error);
    NvAssetNoFormat& format = r->asset_no_format;
    bool letters = format.letters(), dashes = format.dashes(), free_form = format.free_form();
    fr.Number("main", &format.main_length);
    fr.Number("sub", &format.subasset_length);
    fr.Bool("letters", &letters);
    fr.Bool("dashes", &dashes);
    fr.Bool("free_form", &free_form);
    if (!fr.ok()) return false;
    format.flags = (letters ? NvAssetNoFormat::kLetters : 0) |
                   (dashes ? NvAssetNoFormat::kDashes : 0) |
                   (free_form ? NvAssetNoFormat::kFreeForm : 0);
    if (format.main_length < 1 || format.main_length > NvAssetNoFormat::kMaxMainLength ||
        format.subasset_length < 1 || format.subasset_length > 3) {
      in.Fail("asset_number_format is out of range (main 1 to 10, sub 1 to 3)");
    }
  }
  if (const Json* list = in.Member("schedules")) {
    if (!list->is_array()) {
      in.Fail("schedules is not a list");
    } else {
      r->schedules.clear();
      r->schedule_letters.clear();
      for (const Json& item : *list) {
        Reader sr(item, "company.schedules", error);
        ScheduleEntry entry;
        sr.Char("letter", &entry.letter);
        sr.Text("type", &entry.type);
        sr.Text("name", &entry.name);
        if (!sr.ok()) return false;
        if (entry.letter == ' ' || r->FindSchedule(entry.letter) != nullptr ||
            r->schedules.size() >= kMaxSchedules) {
          in.Fail("schedules: a letter is missing, repeated, or there are more than 25");
          break;
        }
        r->schedules.push_back(entry);
        r->schedule_letters += entry.letter;
      }
    }
  }
  in.Text("sort_order", &r->sort_order);
  in.Number("business_category", &r->business_category);
  in.Bool("round_dollars", &r->round_dollars);
  in.Char("mid_quarter_override", &r->mid_quarter_override);
  in.Char("global_loc_cat", &r->global_loc_cat);
  if (const Json* list = in.Member("user_fields")) {
    if (!list->is_array() || list->size() > kUserFieldCount) {
      in.Fail("user_fields is not a list of at most 10");
    } else {
      for (size_t i = 0; i < list->size(); ++i) {
        Reader ur((*list)[i], "company.user_fields", error);
        ur.Text("name", &r->user_fields[i].name);
        ur.Text("default", &r->user_fields[i].default_value);
        if (!ur.ok()) return false;
      }
    }
  }
  in.Text("misc_codes", &r->misc_codes);
  in.Number("logging_flags", &r->logging_flags);
  in.Text("permissions", &r->permissions);
  return in.ok();
}

OJson AssetToJson(const NvAsset& a) {
  OJson j;
  j["asset_no"] = NumberText(a.number);
  j["description"] = Utf8(a.description);
  j["asset_codes"] = Utf8(a.asset_codes);
  j["location"] = Utf8(a.location);
  j["category"] = Utf8(a.category);
  j["account"] = Utf8(a.account);
  j["cash_and_notes"] = a.cash_and_notes;
  j["trade_in"] = a.trade_in;
  j["purchase_date"] = DateText(a.purchase_date);
  j["date_in_service"] = DateText(a.date_in_service);
  j["new_used_trade"] = CharText(a.new_used_trade);
  j["prior_short_years"] = a.prior_short_years;
  j["property_code"] = Utf8(a.property_code);
  j["type_4797"] = a.type_4797;
  OJson fields = OJson::array();
  for (const std::string& f : a.user_fields) fields.push_back(Utf8(f));
  j["user_fields"] = fields;
  j["disposal"] = {
      {"code", CharText(a.disposal_code)},    {"transferred_to", NumberText(a.transferred_to)},
      {"traded_to", NumberText(a.traded_to)}, {"amount", a.amount_disposed},
      {"date", DateText(a.disposal_date)},    {"sale_amount", a.sale_amount}};
  OJson schedules = OJson::object();
  for (size_t i = 0; i < a.schedule_letters.size() && i < a.schedules.size(); ++i) {
    const NvAssetSchedule& s = a.schedules[i];
    schedules[std::string(1, a.schedule_letters[i])] = {
        {"method", s.method},
        {"amortized", s.amortized},
        {"am_code_section", Utf8(s.am_code_section)},
        {"asset_type", Utf8(s.asset_type)},
        {"business_percent", s.business_percent},
        {"useful_life", LifeText(s.useful_life)},
        {"sl_life", LifeText(s.sl_life)},
        {"depreciable_basis", s.depreciable_basis},
        {"substitute_basis", s.substitute_basis},
        {"subst_itc_basis", s.subst_itc_basis},
        {"itc_code", s.itc_code},
        {"itc_percent", s.itc_percent},
        {"itc_bas_red_pct", s.itc_basis_reduction_pct},
        {"itc", s.itc},
        {"convention", CharText(s.convention)},
        {"sec_179", s.sec179_expense},
        {"prior_allowed", s.prior_allowed_depr},
        {"prior_allowable", s.prior_allowable_depr},
        {"bonus", s.bonus_depr},
        {"salvage", s.salvage_value},
        {"current_depr", s.current_depr},
        {"misc_codes", Utf8(s.misc_codes)},
        {"state", Utf8(s.state)},
        {"extra_amount", s.extra_amount},
        {"extra_flag", s.extra_flag},
        {"further_1", s.further_amount_1},
        {"further_2", s.further_amount_2}};
  }
  j["schedules"] = schedules;
  if (a.pauses) {
    OJson intervals = OJson::array();
    for (const PauseInterval& p : a.pauses->intervals) {
      intervals.push_back({DateText(p.start), DateText(p.end)});
    }
    j["pauses"] = {{"schedules", Utf8(a.pauses->schedules)}, {"intervals", intervals}};
  }
  return j;
}

bool AssetFromJson(const Json& json, const NvAssetNoFormat& format, NvAsset* a,
                   std::string* error) {
  Reader in(json, "asset", error);
  std::string number;
  in.Text("asset_no", &number);
  a->number = NvAssetNo::Parse(number, format);
  in.Text("description", &a->description);
  in.Text("asset_codes", &a->asset_codes);
  in.Text("location", &a->location);
  in.Text("category", &a->category);
  in.Text("account", &a->account);
  in.Number("cash_and_notes", &a->cash_and_notes);
  in.Number("trade_in", &a->trade_in);
  in.DateValue("purchase_date", &a->purchase_date);
  in.DateValue("date_in_service", &a->date_in_service);
  in.Char("new_used_trade", &a->new_used_trade);
  in.Number("prior_short_years", &a->prior_short_years);
  in.Text("property_code", &a->property_code);
  in.Number("type_4797", &a->type_4797);
  if (const Json* list = in.Member("user_fields")) {
    if (!list->is_array() || list->size() > kAssetUserFields) {
      in.Fail("user_fields is not a list of at most 10 texts");
    } else {
      for (size_t i = 0; i < list->size(); ++i) {
        if (!(*list)[i].is_string()) {
          in.Fail("user_fields holds something other than a text");
          break;
        }
        a->user_fields[i] = Utf8ToCp1252((*list)[i].get<std::string>());
      }
    }
  }
  if (const Json* d = in.Member("disposal")) {
    Reader dr(*d, "asset.disposal", error);
    std::string transferred, traded;
    dr.Char("code", &a->disposal_code);
    dr.Text("transferred_to", &transferred);
    dr.Text("traded_to", &traded);
    dr.Number("amount", &a->amount_disposed);
    dr.DateValue("date", &a->disposal_date);
    dr.Number("sale_amount", &a->sale_amount);
    if (!dr.ok()) return false;
    a->transferred_to =
        transferred.empty() ? NvAssetNo(format) : NvAssetNo::Parse(transferred, format);
    a->traded_to = traded.empty() ? NvAssetNo(format) : NvAssetNo::Parse(traded, format);
  }
  if (const Json* map = in.Member("schedules")) {
    if (!map->is_object()) {
      in.Fail("schedules is not an object keyed by letter");
    } else {
      for (auto it = map->begin(); it != map->end(); ++it) {
        NvAssetSchedule* s = it.key().size() == 1 ? a->Schedule(it.key()[0]) : nullptr;
        if (s == nullptr) {
          in.Fail("schedule \"" + it.key() + "\" is not one of the company's");
          break;
        }
        Reader sr(it.value(), "asset.schedules." + it.key(), error);
        sr.Number("method", &s->method);
        sr.Bool("amortized", &s->amortized);
        sr.Text("am_code_section", &s->am_code_section);
        sr.Text("asset_type", &s->asset_type);
        sr.Number("business_percent", &s->business_percent);
        sr.Life("useful_life", &s->useful_life);
        sr.Life("sl_life", &s->sl_life);
        sr.Number("depreciable_basis", &s->depreciable_basis);
        sr.Number("substitute_basis", &s->substitute_basis);
        sr.Number("subst_itc_basis", &s->subst_itc_basis);
        sr.Number("itc_code", &s->itc_code);
        sr.Number("itc_percent", &s->itc_percent);
        sr.Number("itc_bas_red_pct", &s->itc_basis_reduction_pct);
        sr.Number("itc", &s->itc);
        sr.Char("convention", &s->convention);
        sr.Number("sec_179", &s->sec179_expense);
        sr.Number("prior_allowed", &s->prior_allowed_depr);
        sr.Number("prior_allowable", &s->prior_allowable_depr);
        sr.Number("bonus", &s->bonus_depr);
        sr.Number("salvage", &s->salvage_value);
        sr.Number("current_depr", &s->current_depr);
        sr.Text("misc_codes", &s->misc_codes);
        sr.Text("state", &s->state);
        sr.Number("extra_amount", &s->extra_amount);
        sr.Number("extra_flag", &s->extra_flag);
        sr.Number("further_1", &s->further_amount_1);
        sr.Number("further_2", &s->further_amount_2);
        if (!sr.ok()) return false;
      }
    }
  }
  if (const Json* p = in.Member("pauses")) {
    Reader pr(*p, "asset.pauses", error);
    NvAssetPauseDeprInfo pauses;
    pr.Text("schedules", &pauses.schedules);
    if (const Json* list = pr.Member("intervals")) {
      if (!list->is_array()) pr.Fail("intervals is not a list");
      for (const Json& pair : list->is_array() ? *list : Json::array()) {
        if (!pair.is_array() || pair.size() != 2 || !pair[0].is_string() || !pair[1].is_string()) {
          pr.Fail("intervals holds something other than [start, end]");
          break;
        }
        std::optional<Date> start = pair[0].get<std::string>().empty()
                                        ? Date{}
                                        : ParseDisplayDate(pair[0].get<std::string>());
        std::optional<Date> end = pair[1].get<std::string>().empty()
                                      ? Date{}
                                      : ParseDisplayDate(pair[1].get<std::string>());
        if (!start || !end) {
          pr.Fail("intervals holds a date that is not MM/DD/YYYY");
          break;
        }
        pauses.intervals.push_back({*start, *end});
      }
    }
    if (!pr.ok()) return false;
    a->pauses = std::move(pauses);
  }
  return in.ok();
}

}  // namespace nv
