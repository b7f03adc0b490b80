#include "tools/company_json.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "base/cp1252.h"
#include "base/str_format.h"

namespace nv {
namespace {

// ---- Parts: members that are objects or lists -------------------------------------------

// A frame of a table that checks the whole object when it ends; a failed check is an error
// of the member in the object that holds it.
template <typename R>
class CheckedFieldsFrame final : public FieldsFrame<R> {
 public:
  using Check = const char* (*)(const R&);
  CheckedFieldsFrame(std::span<const JsonField<R>> fields, R* record, JsonFrame& holder,
                     std::string_view name, const NvAssetNoFormat& format, Check check)
      : FieldsFrame<R>(fields, record, holder.state(), &holder, std::string(name), format),
        holder_(holder),
        check_(check) {}
  void Close() override {
    if (this->state().failed() || check_ == nullptr) return;
    if (const char* wrong = check_(*this->record())) holder_.FailMember(this->name(), wrong);
  }

 private:
  JsonFrame& holder_;
  Check check_;
};

// An object of its own, kept in a member of the record.
template <typename R, typename Sub>
class MemberObject final : public JsonPart<R> {
 public:
  using Check = typename CheckedFieldsFrame<Sub>::Check;
  MemberObject(Sub R::*member, std::span<const JsonField<Sub>> fields, Check check = nullptr)
      : member_(member), fields_(fields), check_(check) {}
  void Write(const R& record, JsonWriter& out) const override {
    WriteFields(fields_, record.*member_, out);
  }
  bool list() const override { return false; }
  const char* expected() const override { return "is not an object"; }
  std::unique_ptr<JsonFrame> Read(R* record, FieldsFrame<R>& holder,
                                  std::string_view name) const override {
    return std::make_unique<CheckedFieldsFrame<Sub>>(fields_, &(record->*member_), holder, name,
                                                     holder.format(), check_);
  }

 private:
  Sub R::*member_;
  std::span<const JsonField<Sub>> fields_;
  Check check_;
};

// An object of members that the record holds itself (an asset's disposal).
template <typename R>
class InnerObject final : public JsonPart<R> {
 public:
  explicit InnerObject(std::span<const JsonField<R>> fields) : fields_(fields) {}
  void Write(const R& record, JsonWriter& out) const override { WriteFields(fields_, record, out); }
  bool list() const override { return false; }
  const char* expected() const override { return "is not an object"; }
  std::unique_ptr<JsonFrame> Read(R* record, FieldsFrame<R>& holder,
                                  std::string_view name) const override {
    return std::make_unique<FieldsFrame<R>>(fields_, record, holder.state(), &holder,
                                            std::string(name), holder.format());
  }

 private:
  std::span<const JsonField<R>> fields_;
};

// A list frame that takes one kind of element and refuses the others with one message;
// with a capacity, a longer list is refused with another.
class ListFrame : public JsonFrame {
 public:
  ListFrame(JsonFrame& holder, std::string_view name, const char* wrong_element,
            size_t capacity = SIZE_MAX, const char* too_long = nullptr)
      : JsonFrame(holder.state(), &holder, std::string(name)),
        holder_(holder),
        wrong_element_(wrong_element),
        capacity_(capacity),
        too_long_(too_long) {}
  void Scalar(JsonScalar& value) override {
    (void)value;
    FailElement();
  }
  std::unique_ptr<JsonFrame> Open(bool list) override {
    (void)list;
    FailElement();
    return nullptr;
  }

 protected:
  void FailElement() { holder_.FailMember(name(), wrong_element_); }
  // The place of the element that comes, from 0; false after saying the list is too long.
  [[nodiscard]] bool NextPlace(size_t* place) {
    if (next_ == capacity_) {
      holder_.FailMember(name(), too_long_);
      return false;
    }
    *place = next_++;
    return true;
  }
  JsonFrame& holder_;

 private:
  const char* wrong_element_;
  size_t capacity_;
  const char* too_long_;
  size_t next_ = 0;
};

// The company's schedules: a list of {letter, type, name}, each letter once, at most 25.
const JsonField<ScheduleEntry> kScheduleEntryFields[] = {
    {"letter", &ScheduleEntry::letter},
    {"type", &ScheduleEntry::type},
    {"name", &ScheduleEntry::name},
};

class CompanySchedules final : public JsonPart<NvCompanyRecord> {
 public:
  void Write(const NvCompanyRecord& record, JsonWriter& out) const override {
    WriteFieldsList<ScheduleEntry>(kScheduleEntryFields, record.schedules, out);
  }
  bool list() const override { return true; }
  const char* expected() const override { return "is not a list"; }
  std::unique_ptr<JsonFrame> Read(NvCompanyRecord* record, FieldsFrame<NvCompanyRecord>& holder,
                                  std::string_view name) const override {
    record->schedules.clear();
    record->schedule_letters.clear();
    return std::make_unique<Frame>(record, holder, name);
  }

 private:
  class Frame final : public ListFrame {
   public:
    Frame(NvCompanyRecord* record, JsonFrame& holder, std::string_view name)
        : ListFrame(holder, name, "holds something other than an object"), record_(record) {}
    std::unique_ptr<JsonFrame> Open(bool list) override {
      if (list) return ListFrame::Open(list);
      return std::make_unique<Entry>(this);
    }

   private:
    class Entry final : public FieldsFrame<ScheduleEntry> {
     public:
      explicit Entry(Frame* list)
          : FieldsFrame<ScheduleEntry>(kScheduleEntryFields, &entry_, list->state(), list, "",
                                       kNoCompanyAssetNoFormat),
            list_(list) {}
      void Close() override {
        if (!state().failed()) list_->Add(entry_);
      }

     private:
      ScheduleEntry entry_;
      Frame* list_;
    };

    void Add(const ScheduleEntry& entry) {
      if (entry.letter == ' ' || record_->FindSchedule(entry.letter) != nullptr ||
          record_->schedules.size() >= kMaxSchedules) {
        holder_.FailMember(name(), "has a letter missing or twice, or more than 25 schedules");
        return;
      }
      record_->schedules.push_back(entry);
      record_->schedule_letters += entry.letter;
    }

    NvCompanyRecord* record_;
  };
};

// The company's user fields: a list of at most 10 {name, default}.
const JsonField<UserFieldDefinition> kUserFieldDefinitionFields[] = {
    {"name", &UserFieldDefinition::name},
    {"default", &UserFieldDefinition::default_value},
};

class UserFieldDefinitions final : public JsonPart<NvCompanyRecord> {
 public:
  void Write(const NvCompanyRecord& record, JsonWriter& out) const override {
    WriteFieldsList<UserFieldDefinition>(kUserFieldDefinitionFields, record.user_fields, out);
  }
  bool list() const override { return true; }
  const char* expected() const override { return "is not a list of at most 10"; }
  std::unique_ptr<JsonFrame> Read(NvCompanyRecord* record, FieldsFrame<NvCompanyRecord>& holder,
                                  std::string_view name) const override {
    return std::make_unique<Frame>(record, holder, name, expected());
  }

 private:
  class Frame final : public ListFrame {
   public:
    Frame(NvCompanyRecord* record, JsonFrame& holder, std::string_view name, const char* too_long)
        : ListFrame(holder, name, "holds something other than an object",
                    record->user_fields.size(), too_long),
          record_(record) {}
    std::unique_ptr<JsonFrame> Open(bool list) override {
      size_t place = 0;
      if (list) return ListFrame::Open(list);
      if (!NextPlace(&place)) return nullptr;
      return std::make_unique<FieldsFrame<UserFieldDefinition>>(
          kUserFieldDefinitionFields, &record_->user_fields[place], state(), this, "",
          kNoCompanyAssetNoFormat);
    }

   private:
    NvCompanyRecord* record_;
  };
};

// An asset's user field values: a list of at most 10 texts.
class AssetUserFields final : public JsonPart<NvAsset> {
 public:
  void Write(const NvAsset& asset, JsonWriter& out) const override {
    out.BeginArray();
    for (const std::string& value : asset.user_fields) WriteJsonValue(value, out);
    out.EndArray();
  }
  bool list() const override { return true; }
  const char* expected() const override { return "is not a list of at most 10 texts"; }
  std::unique_ptr<JsonFrame> Read(NvAsset* asset, FieldsFrame<NvAsset>& holder,
                                  std::string_view name) const override {
    return std::make_unique<Frame>(asset, holder, name, expected());
  }

 private:
  class Frame final : public ListFrame {
   public:
    Frame(NvAsset* asset, JsonFrame& holder, std::string_view name, const char* too_long)
        : ListFrame(holder, name, "holds something other than a text", asset->user_fields.size(),
                    too_long),
          asset_(asset) {}
    void Scalar(JsonScalar& value) override {
      size_t place = 0;
      if (state().failed() || !NextPlace(&place)) return;
      if (ReadJsonValue(value, &asset_->user_fields[place]) != nullptr) FailElement();
    }

   private:
    NvAsset* asset_;
  };
};

// Depreciation data of one schedule.
const JsonField<NvAssetSchedule> kAssetScheduleFields[] = {
    {"method", &NvAssetSchedule::method},
    {"amortized", &NvAssetSchedule::amortized},
    {"am_code_section", &NvAssetSchedule::am_code_section},
    {"asset_type", &NvAssetSchedule::asset_type},
    {"business_percent", &NvAssetSchedule::business_percent},
    {"useful_life", &NvAssetSchedule::useful_life},
    {"sl_life", &NvAssetSchedule::sl_life},
    {"depreciable_basis", &NvAssetSchedule::depreciable_basis},
    {"substitute_basis", &NvAssetSchedule::substitute_basis},
    {"subst_itc_basis", &NvAssetSchedule::subst_itc_basis},
    {"itc_code", &NvAssetSchedule::itc_code},
    {"itc_percent", &NvAssetSchedule::itc_percent},
    {"itc_bas_red_pct", &NvAssetSchedule::itc_basis_reduction_pct},
    {"itc", &NvAssetSchedule::itc},
    {"convention", &NvAssetSchedule::convention},
    {"sec_179", &NvAssetSchedule::sec179_expense},
    {"prior_allowed", &NvAssetSchedule::prior_allowed_depr},
    {"prior_allowable", &NvAssetSchedule::prior_allowable_depr},
    {"bonus", &NvAssetSchedule::bonus_depr},
    {"salvage", &NvAssetSchedule::salvage_value},
    {"current_depr", &NvAssetSchedule::current_depr},
    {"misc_codes", &NvAssetSchedule::misc_codes},
    {"state", &NvAssetSchedule::state},
    {"extra_amount", &NvAssetSchedule::extra_amount},
    {"extra_flag", &NvAssetSchedule::extra_flag},
    {"further_1", &NvAssetSchedule::further_amount_1},
    {"further_2", &NvAssetSchedule::further_amount_2},
};

// An asset's schedules: an object keyed by the company's schedule letters.
class AssetSchedules final : public JsonPart<NvAsset> {
 public:
  void Write(const NvAsset& asset, JsonWriter& out) const override {
    out.BeginObject();
    for (size_t i = 0; i < asset.schedule_letters.size() && i < asset.schedules.size(); ++i) {
      out.Key(Cp1252ToUtf8(asset.schedule_letters.substr(i, 1)));
      WriteFields<NvAssetSchedule>(kAssetScheduleFields, asset.schedules[i], out);
    }
    out.EndObject();
  }
  bool list() const override { return false; }
  const char* expected() const override { return "is not an object keyed by letter"; }
  std::unique_ptr<JsonFrame> Read(NvAsset* asset, FieldsFrame<NvAsset>& holder,
                                  std::string_view name) const override {
    return std::make_unique<Frame>(asset, holder, name);
  }

 private:
  class Frame final : public JsonFrame {
   public:
    Frame(NvAsset* asset, FieldsFrame<NvAsset>& holder, std::string_view name)
        : JsonFrame(holder.state(), &holder, std::string(name)),
          asset_(asset),
          holder_(holder),
          format_(holder.format()) {}
    void Key(std::string& letter) override { letter_ = letter; }
    void Scalar(JsonScalar& value) override {
      if (Schedule() != nullptr && value.type != JsonScalar::Type::kNull) {
        FailMember(letter_, "is not an object");
      }
    }
    std::unique_ptr<JsonFrame> Open(bool list) override {
      NvAssetSchedule* schedule = Schedule();
      if (schedule == nullptr) return nullptr;
      if (list) {
        FailMember(letter_, "is not an object");
        return nullptr;
      }
      return std::make_unique<FieldsFrame<NvAssetSchedule>>(kAssetScheduleFields, schedule, state(),
                                                            this, letter_, format_);
    }

   private:
    // The schedule of the current letter; nullptr after saying that the company has none.
    NvAssetSchedule* Schedule() {
      std::string letter = Utf8ToCp1252(letter_);
      NvAssetSchedule* schedule = letter.size() == 1 ? asset_->Schedule(letter[0]) : nullptr;
      if (schedule == nullptr)
        holder_.Fail("schedule \"" + letter_ + "\" is not one of the company's");
      return state().failed() ? nullptr : schedule;
    }

    NvAsset* asset_;
    JsonFrame& holder_;
    const NvAssetNoFormat& format_;
    std::string letter_;
  };
};

// A pause's intervals: a list of [start, end] dates.
class PauseIntervals final : public JsonPart<NvAssetPauseDeprInfo> {
 public:
  void Write(const NvAssetPauseDeprInfo& pauses, JsonWriter& out) const override {
    out.BeginArray();
    for (const PauseInterval& interval : pauses.intervals) {
      out.BeginArray();
      WriteJsonValue(interval.start, out);
      WriteJsonValue(interval.end, out);
      out.EndArray();
    }
    out.EndArray();
  }
  bool list() const override { return true; }
  const char* expected() const override { return "is not a list"; }
  std::unique_ptr<JsonFrame> Read(NvAssetPauseDeprInfo* pauses,
                                  FieldsFrame<NvAssetPauseDeprInfo>& holder,
                                  std::string_view name) const override {
    return std::make_unique<Frame>(pauses, holder, name);
  }

 private:
  static constexpr char kNotAPair[] = "holds something other than [start, end]";

  class Frame final : public ListFrame {
   public:
    Frame(NvAssetPauseDeprInfo* pauses, JsonFrame& holder, std::string_view name)
        : ListFrame(holder, name, kNotAPair), pauses_(pauses) {}
    std::unique_ptr<JsonFrame> Open(bool list) override {
      if (!list) return ListFrame::Open(list);
      return std::make_unique<Pair>(this);
    }

   private:
    class Pair final : public JsonFrame {
     public:
      explicit Pair(Frame* list) : JsonFrame(list->state(), list, ""), list_(list) {}
      void Scalar(JsonScalar& value) override {
        if (count_ < 2 && value.type == JsonScalar::Type::kText) {
          dates_[count_] = ReadJsonValue(value, &interval_[count_]) == nullptr;
        } else {
          well_formed_ = false;
        }
        ++count_;
      }
      std::unique_ptr<JsonFrame> Open(bool) override {
        well_formed_ = false;
        return nullptr;
      }
      void Close() override {
        if (!well_formed_ || count_ != 2) return list_->FailElement();
        if (!dates_[0] || !dates_[1]) {
          return list_->holder_.FailMember(list_->name(), "holds a date that is not MM/DD/YYYY");
        }
        list_->pauses_->intervals.push_back({interval_[0], interval_[1]});
      }

     private:
      Frame* list_;
      Date interval_[2];
      bool dates_[2] = {false, false};
      bool well_formed_ = true;
      int count_ = 0;
    };

    NvAssetPauseDeprInfo* pauses_;
  };
};

const PauseIntervals kPauseIntervals;

const JsonField<NvAssetPauseDeprInfo> kPauseFields[] = {
    {"schedules", &NvAssetPauseDeprInfo::schedules},
    {"intervals", &kPauseIntervals},
};

// An asset's pauses: there only when the asset has them; read afresh.
class AssetPauses final : public JsonPart<NvAsset> {
 public:
  bool Present(const NvAsset& asset) const override { return asset.pauses.has_value(); }
  void Write(const NvAsset& asset, JsonWriter& out) const override {
    WriteFields<NvAssetPauseDeprInfo>(kPauseFields, *asset.pauses, out);
  }
  bool list() const override { return false; }
  const char* expected() const override { return "is not an object"; }
  std::unique_ptr<JsonFrame> Read(NvAsset* asset, FieldsFrame<NvAsset>& holder,
                                  std::string_view name) const override {
    return std::make_unique<Frame>(asset, holder, name);
  }

 private:
  class Frame final : public FieldsFrame<NvAssetPauseDeprInfo> {
   public:
    Frame(NvAsset* asset, JsonFrame& holder, std::string_view name)
        : FieldsFrame<NvAssetPauseDeprInfo>(kPauseFields, &pauses_, holder.state(), &holder,
                                            std::string(name), kNoCompanyAssetNoFormat),
          asset_(asset) {}
    void Close() override {
      if (!state().failed()) asset_->pauses = std::move(pauses_);
    }

   private:
    NvAsset* asset_;
    NvAssetPauseDeprInfo pauses_;
  };
};

// ---- The tables -------------------------------------------------------------------------

const char* CheckAssetNoFormat(const NvAssetNoFormat& format) {
  if (format.main_length < 1 || format.main_length > NvAssetNoFormat::kMaxMainLength ||
      format.subasset_length < 1 || format.subasset_length > NvAssetNoFormat::kMaxSubassetLength) {
    return "is out of range (main 1 to 10, sub 1 to 3)";
  }
  return nullptr;
}

const JsonField<NvAssetNoFormat> kAssetNoFormatFields[] = {
    {"main", &NvAssetNoFormat::main_length},
    {"sub", &NvAssetNoFormat::subasset_length},
    {"letters", JsonFlag<NvAssetNoFormat>{&NvAssetNoFormat::flags, NvAssetNoFormat::kLetters}},
    {"dashes", JsonFlag<NvAssetNoFormat>{&NvAssetNoFormat::flags, NvAssetNoFormat::kDashes}},
    {"free_form", JsonFlag<NvAssetNoFormat>{&NvAssetNoFormat::flags, NvAssetNoFormat::kFreeForm}},
};

const MemberObject<NvCompanyRecord, NvAssetNoFormat> kAssetNoFormat(
    &NvCompanyRecord::asset_no_format, kAssetNoFormatFields, CheckAssetNoFormat);
const CompanySchedules kCompanySchedules;
const UserFieldDefinitions kUserFieldDefinitions;

const JsonField<NvCompanyRecord> kCompanyFields[] = {
    {"number", &NvCompanyRecord::number},
    {"name", &NvCompanyRecord::name},
    {"ein", &NvCompanyRecord::ein},
    {"last_closed", &NvCompanyRecord::last_closed},
    {"current_year_end", &NvCompanyRecord::current_year_end},
    {"asset_number_format", &kAssetNoFormat},
    {"schedules", &kCompanySchedules},
    {"sort_order", &NvCompanyRecord::sort_order},
    {"business_category", &NvCompanyRecord::business_category},
    {"round_dollars", &NvCompanyRecord::round_dollars},
    {"mid_quarter_override", &NvCompanyRecord::mid_quarter_override},
    {"global_loc_cat", &NvCompanyRecord::global_loc_cat},
    {"user_fields", &kUserFieldDefinitions},
    {"misc_codes", &NvCompanyRecord::misc_codes},
    {"logging_flags", &NvCompanyRecord::logging_flags},
    {"permissions", &NvCompanyRecord::permissions},
};

// clang-format off
const JsonField<NvAsset> kDisposalFields[] = {
    {"code", &NvAsset::disposal_code},
    {"transferred_to", &NvAsset::transferred_to},
    {"traded_to", &NvAsset::traded_to},
    {"amount", &NvAsset::amount_disposed},
    {"date", &NvAsset::disposal_date},
    {"sale_amount", &NvAsset::sale_amount},
};
// clang-format on

const AssetUserFields kAssetUserFields;
const InnerObject<NvAsset> kDisposal(kDisposalFields);
const AssetSchedules kAssetSchedules;
const AssetPauses kAssetPauses;

const JsonField<NvAsset> kAssetFields[] = {
    {"asset_no", &NvAsset::number},
    {"description", &NvAsset::description},
    {"asset_codes", &NvAsset::asset_codes},
    {"location", &NvAsset::location},
    {"category", &NvAsset::category},
    {"account", &NvAsset::account},
    {"cash_and_notes", &NvAsset::cash_and_notes},
    {"trade_in", &NvAsset::trade_in},
    {"purchase_date", &NvAsset::purchase_date},
    {"date_in_service", &NvAsset::date_in_service},
    {"new_used_trade", &NvAsset::new_used_trade},
    {"prior_short_years", &NvAsset::prior_short_years},
    {"property_code", &NvAsset::property_code},
    {"type_4797", &NvAsset::type_4797},
    {"user_fields", &kAssetUserFields},
    {"disposal", &kDisposal},
    {"schedules", &kAssetSchedules},
    {"pauses", &kAssetPauses},
};

// ---- The document -----------------------------------------------------------------------

struct DocumentReading {
  CompanyDocumentSink& sink;
  JsonReadState state;
  DocumentOutcome outcome = DocumentOutcome::kRead;

  void End(DocumentOutcome why) {
    outcome = why;
    state.Stop();
  }
};

class CompanyFrame final : public FieldsFrame<NvCompanyRecord> {
 public:
  CompanyFrame(DocumentReading& reading, NvCompanyRecord* record)
      : FieldsFrame<NvCompanyRecord>(kCompanyFields, record, reading.state, nullptr, "company",
                                     kNoCompanyAssetNoFormat),
        reading_(reading) {}
  void Close() override {
    if (!reading_.sink.CompanyRead(state().error())) reading_.End(DocumentOutcome::kEnded);
    state().ClearError();
  }

 private:
  DocumentReading& reading_;
};

class AssetsFrame final : public JsonFrame {
 public:
  AssetsFrame(DocumentReading& reading, const AssetRecordFormat& form)
      : JsonFrame(reading.state, nullptr, ""), reading_(reading), form_(form) {}
  void Scalar(JsonScalar& value) override {
    (void)value;
    ++position_;
    NvAsset none;
    Done(none, "", "asset is not an object");
  }
  std::unique_ptr<JsonFrame> Open(bool list) override;

  // An asset has been read or refused.
  void Done(NvAsset& asset, const std::string& number, const std::string& error) {
    const std::string label = number.empty() ? StrPrintf("#%zu", position_) : number;
    if (!reading_.sink.AssetRead(asset, label, error)) reading_.End(DocumentOutcome::kEnded);
    state().ClearError();
  }

 private:
  DocumentReading& reading_;
  const AssetRecordFormat& form_;
  size_t position_ = 0;
  NvAsset asset_;
};

// One asset of the list; its asset_no as written names it in messages.
class AssetFrame final : public FieldsFrame<NvAsset> {
 public:
  AssetFrame(AssetsFrame& list, NvAsset* asset, const NvAssetNoFormat& format)
      : FieldsFrame<NvAsset>(kAssetFields, asset, list.state(), nullptr, "asset", format),
        list_(list) {}
  void Key(std::string& name) override {
    number_next_ = name == "asset_no";
    FieldsFrame<NvAsset>::Key(name);
  }
  void Scalar(JsonScalar& value) override {
    if (number_next_ && value.type == JsonScalar::Type::kText) number_ = *value.text;
    FieldsFrame<NvAsset>::Scalar(value);
  }
  void Close() override { list_.Done(*record(), number_, state().error()); }

 private:
  AssetsFrame& list_;
  bool number_next_ = false;
  std::string number_;
};

std::unique_ptr<JsonFrame> AssetsFrame::Open(bool list) {
  ++position_;
  if (list) {
    NvAsset none;
    Done(none, "", "asset is not an object");
    return nullptr;
  }
  // Afresh for each: a cleared asset keeps the number formats of the one before.
  asset_ = NvAsset();
  asset_.Clear(form_.schedule_letters);
  return std::make_unique<AssetFrame>(*this, &asset_, form_.asset_no_format);
}

class DocumentFrame final : public JsonFrame {
 public:
  explicit DocumentFrame(DocumentReading& reading)
      : JsonFrame(reading.state, nullptr, ""), reading_(reading) {}
  void Key(std::string& name) override { key_ = std::move(name); }
  void Scalar(JsonScalar& value) override {
    (void)value;
    if (key_ == "assets") reading_.End(DocumentOutcome::kAssetsNotAList);
  }
  std::unique_ptr<JsonFrame> Open(bool list) override {
    if (key_ == "company") {
      NvCompanyRecord* record = list ? nullptr : reading_.sink.CompanyTarget();
      if (record == nullptr) return nullptr;
      return std::make_unique<CompanyFrame>(reading_, record);
    }
    if (key_ == "assets") {
      if (!list) {
        reading_.End(DocumentOutcome::kAssetsNotAList);
        return nullptr;
      }
      const AssetRecordFormat* form = reading_.sink.AssetForm();
      if (form == nullptr) return nullptr;
      return std::make_unique<AssetsFrame>(reading_, *form);
    }
    return nullptr;
  }

 private:
  DocumentReading& reading_;
  std::string key_;
};

// Takes the document's value itself.
class RootFrame final : public JsonFrame {
 public:
  explicit RootFrame(DocumentReading& reading)
      : JsonFrame(reading.state, nullptr, ""), reading_(reading) {}
  void Scalar(JsonScalar& value) override {
    (void)value;
    reading_.End(DocumentOutcome::kNotAnObject);
  }
  std::unique_ptr<JsonFrame> Open(bool list) override {
    if (list) {
      reading_.End(DocumentOutcome::kNotAnObject);
      return nullptr;
    }
    return std::make_unique<DocumentFrame>(reading_);
  }

 private:
  DocumentReading& reading_;
};

}  // namespace

std::span<const JsonField<NvCompanyRecord>> CompanyJsonFields() {
  return kCompanyFields;
}

std::span<const JsonField<NvAsset>> AssetJsonFields() {
  return kAssetFields;
}

std::span<const JsonField<NvAssetSchedule>> AssetScheduleJsonFields() {
  return kAssetScheduleFields;
}

void WriteCompanyJson(const NvCompanyRecord& record, JsonWriter& out) {
  WriteFields(CompanyJsonFields(), record, out);
}

void WriteAssetJson(const NvAsset& asset, JsonWriter& out) {
  WriteFields(AssetJsonFields(), asset, out);
}

DocumentResult ReadCompanyDocument(std::istream& in, CompanyDocumentSink& sink) {
  DocumentReading reading{sink, {}, DocumentOutcome::kRead};
  RootFrame root(reading);
  JsonReadResult read = ReadJson(in, root);
  DocumentResult result;
  result.outcome = read.syntax_ok ? reading.outcome : DocumentOutcome::kBadJson;
  result.syntax_error = std::move(read.syntax_error);
  return result;
}

void WriteAccountGroupsJson(const std::vector<AccountGroup>& groups, JsonWriter& out) {
  out.BeginArray();
  for (const AccountGroup& group : groups) {
    out.BeginObject();
    out.Key("code");
    out.String(Cp1252ToUtf8(group.code));
    out.Key("description");
    out.String(Cp1252ToUtf8(group.description));
    out.Key("accounts");
    out.BeginArray();
    for (const std::string& account : group.accounts) out.String(Cp1252ToUtf8(account));
    out.EndArray();
    out.EndObject();
  }
  out.EndArray();
}

void WriteLocCatListJson(const NvLocCatList& list, JsonWriter& out) {
  out.BeginArray();
  for (const NvLocCatEntry& entry : list.entries()) {
    out.BeginObject();
    out.Key("code");
    out.String(Cp1252ToUtf8(entry.code));
    out.Key("description");
    out.String(Cp1252ToUtf8(entry.description));
    out.EndObject();
  }
  out.EndArray();
}

}  // namespace nv
