#include "import/dbs/dbs_importer.h"

#include <filesystem>
#include <string_view>

#include "base/file_util.h"
#include "base/str_format.h"
#include "import/dbs/dbs_reader.h"
#include "store/company/company_record.h"
#include "store/schedule/schedule_definitions.h"
#include "store/schedule/schedule_letters.h"

namespace nv {
namespace {

constexpr char kDelimiters[] = {'\t', ',', '\0'};
constexpr char kUnableToReadMessage[] = "Unable to read %s";
// Schedule letters of a new company whose file has no record with a schedule.
constexpr char kFallbackLetters[] = "B";

ImportDescriptor DataBaseFileDescriptor() {
  ImportDescriptor d;
  d.kind = "text";
  d.product = "Data Base File Builder";
  d.source_dialog = {"Select Source File", "Data Base File Builder files|*.dbs", ".dbs", ""};
  d.existing = {.offers_erase = true, .confirm_erase = false, .setup_screen_after_add = false};
  d.new_loc_cat = 'N';
  return d;
}

class DataBaseFileImporter final : public Importer {
 public:
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool PreSteps(ImportRun& run) override {
    return AskYes(run.ui(), DefaultButton::kYes, "%s", kFiveUserFieldsImportQuestion);
  }

  bool CheckSource(ImportRun& run) override {
    ChoiceListRequest request;
    request.message = kSelectRecordTypeMessage;
    for (const char* option : kImportRecordTypes) request.options.push_back({option, -1});
    const int chosen = run.ui().ChoiceList(request);
    if (chosen < 0 || chosen >= static_cast<int>(std::size(kDelimiters))) {
      run.ui().Message(kNoRecordTypeMessage, "Error");
      return false;
    }
    delimiter_ = kDelimiters[chosen];
    const std::filesystem::path path(run.state().source_path);
    if (!path.has_filename()) return false;
    name_ = path.stem().string().substr(0, 8);
    path_ = run.state().source_path;
    if (!DbsLineReader::OpenFile(path_)) {
      run.ui().Message(StrPrintf(kUnableToReadMessage, path_.c_str()), "Error");
      return false;
    }
    return true;
  }

  std::string DefaultCompanyNumber(const ImportRun&) const override { return name_; }

  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override {
    std::optional<DbsLineReader> lines = DbsLineReader::OpenFile(path_);
    if (!lines) {
      run.ui().Message(StrPrintf(kUnableToReadMessage, path_.c_str()), "Error");
      return false;
    }
    record.asset_no_format = GuessDbsAssetNoFormat(std::move(*lines), delimiter_);
    std::string letters = UsedSlotLetters(record.asset_no_format);
    if (letters.find('C') != std::string::npos) {
      if (std::optional<std::string> arranged = ArrangeAceLetters(letters, kMaxSchedules)) {
        letters = *arranged;
      }
    }
    record.schedules.clear();
    for (char letter : letters) {
      record.schedules.push_back({letter, std::string(1, letter), ScheduleTypeName(letter)});
    }
    record.sort_order = "ACL";
    record.business_category = 1;
    record.mid_quarter_override = ' ';
    return true;
  }

  bool CopyAssets(ImportRun& run, AddStep& add) override {
    const NvCompanyRecord& company = run.company().record();
    std::optional<DbsLineReader> opened = DbsLineReader::OpenFile(path_);
    if (!opened) {
      run.ui().Message(StrPrintf(kUnableToReadMessage, path_.c_str()), "Error");
      static_cast<void>(add.Finish());
      return false;
    }
    DbsLineReader& lines = *opened;
    NvAsset asset;
    while (std::optional<std::string_view> line = lines.Next()) {
      add.CountRead();
      const std::string where = StrPrintf("line %ld", lines.line_number());
      const DbsRecordInfo info = ReadDbsRecord(*line, delimiter_, company.asset_no_format,
                                               company.schedule_letters, &asset);
      if (!info.dropped_letters.empty()) {
        run.report().Note(where, asset.number.Text(),
                          "schedules " + info.dropped_letters +
                              " are not schedules of the company; their figures were not imported");
      }
      add.Add(asset, where);
    }
    const bool finished = add.Finish();
    if (lines.failed()) {
      // What was added stays; the count says how far the copy came.
      run.ui().Message(StrPrintf(kUnableToReadMessage, path_.c_str()), "Error");
      return false;
    }
    return finished;
  }

 private:
  // The letters of the slots that hold a schedule in some record, in the order of their
  // slots; the first record's letters when none does.
  std::string UsedSlotLetters(const NvAssetNoFormat& format) const {
    std::string used;
    std::string first;
    std::optional<DbsLineReader> opened = DbsLineReader::OpenFile(path_);
    if (!opened) return kFallbackLetters;
    DbsLineReader& lines = *opened;
    NvAsset asset;
    while (std::optional<std::string_view> line = lines.Next()) {
      // Read every letter's slot by taking the record's own letters as the company's.
      const std::string letters = SlotLettersOf(*line);
      if (first.empty()) first = letters;
      ReadDbsRecord(*line, delimiter_, format, letters, &asset);
      for (size_t i = 0; i < asset.schedule_letters.size(); ++i) {
        const char letter = asset.schedule_letters[i];
        if (letter < 'A' || letter > 'Z' || used.find(letter) != std::string::npos) continue;
        const int method = asset.schedules[i].method;
        if (method != kMethodNa && method != 0) used.push_back(letter);
      }
    }
    std::string letters = used.empty() ? first : used;
    std::erase_if(letters, [](char c) { return c < 'A' || c > 'Z'; });
    return letters.empty() ? kFallbackLetters : letters;
  }

  std::string SlotLettersOf(std::string_view line) const {
    std::string_view letters = line.substr(0, line.find(delimiter_ == '\0' ? '\n' : delimiter_));
    letters = letters.substr(0, 11);
    std::string unique;
    for (char c : letters) {
      if (unique.find(c) == std::string::npos) unique.push_back(c);
    }
    return unique;
  }

  ImportDescriptor descriptor_ = DataBaseFileDescriptor();
  char delimiter_ = '\t';
  std::string name_;
  std::string path_;
};

}  // namespace

std::unique_ptr<Importer> MakeDataBaseFileImporter() {
  return std::make_unique<DataBaseFileImporter>();
}

}  // namespace nv
