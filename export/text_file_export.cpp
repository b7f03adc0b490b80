#include "export/text_file_export.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "base/file.h"
#include "base/path.h"
#include "base/str_format.h"
#include "export/exporters.h"
#include "export/text_record.h"
#include "store/asset/asset.h"
#include "store/company/permissions.h"
#include "store/file/block_chain.h"
#include "ui/company_selection.h"

namespace nv {

namespace {

// Records are gathered and written in pieces of about this size.
constexpr size_t kWritePiece = size_t{256} << 10;

// What a block of the block file holds, for a walk in record-number order.
enum class BlockContent { kAssetStart, kNoAsset, kUnreadable };

// An asset's chain starts at its first block; the blocks it continues in and the free
// blocks hold no asset of their own, as deleted records hold none.
BlockContent ContentOfBlock(NvCompany& company, uint32_t record) {
  uint8_t head[kBlockHeaderCurrent];
  if (!company.blocks().ReadRecord(record, head, sizeof head)) return BlockContent::kUnreadable;
  const uint8_t marker = head[kBlockMarkerOffset];
  if (marker == kMarkerContinuation || marker == kMarkerFree || marker == kMarkerOldFree) {
    return BlockContent::kNoAsset;
  }
  return BlockContent::kAssetStart;  // anything else is read, and a damaged one reported
}

// The record type the user picks, or nothing when the list is closed.
std::optional<TextRecordType> AskRecordType(Ui& ui) {
  ChoiceListRequest request;
  request.message = kRecordTypeMessage;
  for (std::string_view option : RecordTypeOptions())
    request.options.push_back({std::string(option)});
  const int chosen = ui.ChoiceList(request);
  if (chosen < 0 || static_cast<size_t>(chosen) >= request.options.size()) return std::nullopt;
  return static_cast<TextRecordType>(chosen);
}

// The text file being written: records are gathered and written in large pieces. After a
// failed write nothing more is written.
class TextFileOutput {
 public:
  explicit TextFileOutput(File file) : file_(std::move(file)) {}

  std::string& buffer() { return buffer_; }
  // Notes a record just appended to the buffer.
  void Added(uint32_t record) {
    if (records_in_buffer_ == 0) first_record_ = record;
    ++records_in_buffer_;
  }
  bool full() const { return buffer_.size() >= kWritePiece; }

  // Writes what is gathered. False when the write failed: lost() records were not written,
  // the first of them first_record().
  [[nodiscard]] bool Flush() {
    if (buffer_.empty()) return true;
    const bool ok = file_.WriteAt(offset_, buffer_.data(), buffer_.size());
    if (ok) {
      offset_ += buffer_.size();
      buffer_.clear();
      records_in_buffer_ = 0;
    }
    return ok;
  }
  [[nodiscard]] bool Close() { return Flush() && file_.Close() == 0; }

  unsigned lost() const { return records_in_buffer_; }
  uint32_t first_record() const { return first_record_; }

 private:
  File file_;
  std::string buffer_;
  uint64_t offset_ = 0;
  unsigned records_in_buffer_ = 0;
  uint32_t first_record_ = 0;
};

// Opens the company for reading: nothing of it is written, and no lock is needed. Tells
// the user why when it cannot be used.
bool OpenForExport(NvCompany& company, const std::string& number, Ui& ui) {
  if (company.Open(number, NvCompany::kReadOnly, ui) <= 0) {
    MessageF(ui, "Error", kUnableToOpenMessage, number.c_str());
    return false;
  }
  // The file would hand every asset to someone the company is closed to.
  if (company.permission() == kNoAccess) {
    static_cast<void>(company.Close());  // read-only: nothing to write
    MessageF(ui, "Message", kNoAccessMessage, number.c_str());
    return false;
  }
  return true;
}

}  // namespace

TextFileResult WriteTextFile(const InstallationContext& context, const TextFileRequest& request,
                             Ui& ui) {
  // Amounts go out with a decimal point and no thousands separators whatever the
  // installation's settings; there is no separator setting to switch off for the run.
  TextFileResult result;
  NvCompany company(context);
  if (!OpenForExport(company, request.company_number, ui)) return result;
  const std::optional<TextRecordType> type = AskRecordType(ui);
  if (!type) {
    static_cast<void>(company.Close());
    return result;
  }
  const std::string path = JoinPath(TextFileFolder(request.folder), request.file_name);
  std::optional<File> file = File::Open(path, File::Mode::kCreate);
  if (!file) {
    static_cast<void>(company.Close());
    MessageF(ui, "Error", kUnableToCreateTextFile, path.c_str());
    return result;
  }
  TextFileOutput output(std::move(*file));
  const TextRecordWriter writer(company.record(), *type);
  // The counters in the company record say how far to go; a damaged one must not send the
  // walk past the blocks the file holds.
  const uint64_t in_file = company.blocks().RecordsInFile();
  const uint32_t highest = static_cast<uint32_t>(
      std::min<uint64_t>(company.blocks().highest_record(), in_file > 0 ? in_file - 1 : 0));
  bool write_failed = false;
  {
    std::unique_ptr<ProgressMeter> meter = ui.OpenProgress(
        kTextFileMeterTitle,
        StrPrintf("Company %s\nto %s", request.company_number.c_str(), path.c_str()),
        static_cast<long>(highest));
    NvAsset asset;
    for (uint32_t record = 1; record <= highest && !write_failed; ++record) {
      if (meter) meter->SetPosition(static_cast<long>(record));
      const BlockContent content = ContentOfBlock(company, record);
      if (content == BlockContent::kNoAsset) continue;
      if (content == BlockContent::kUnreadable || company.ReadAsset(record, &asset) != kOk) {
        ++result.erroneous;
        continue;
      }
      if (!writer.Write(asset, output.buffer())) {
        MessageF(ui, "Error", kUnableToWriteAssetRecord, record);
        ++result.erroneous;
        continue;
      }
      output.Added(record);
      ++result.copied;
      if (output.full() && !output.Flush()) write_failed = true;
    }
    if (!write_failed && !output.Close()) write_failed = true;
  }
  if (write_failed) {
    // A full disk fails every later write the same way: the run ends at the first, and
    // what was written stays on disk.
    MessageF(ui, "Error", kUnableToWriteAssetRecord, output.first_record());
    result.copied -= output.lost();
    result.erroneous += output.lost();
  }
  static_cast<void>(company.Close());  // read-only: nothing to write
  if (result.erroneous == 0) {
    MessageF(ui, kTextFileDoneTitle, kAssetsCopied, result.copied);
  } else {
    MessageF(ui, kTextFileDoneTitle, kAssetsCopiedWithErrors, result.copied, result.erroneous);
  }
  result.written = true;
  return result;
}

void CreateTextFileForExport(const InstallationContext& context, Ui& ui, CompanyInUseLock& lock,
                             NvCompany& company) {
  if (!company.is_open()) {
    const CompanySelectionResult selected =
        SelectCompany(context, ui, lock, company, "Select Company", /*offer_new=*/false);
    if (selected.choice != CompanyChoice::kOpened) {
      if (ui.AltKeyHeld()) {
        ui.Message(kAdvancedExportNote, "Note");
        RunExportDefinitions(context, ui);
      }
      return;
    }
  }
  TextFileRequest request;
  request.folder = context.data_directory();
  request.company_number = company.number();
  // The export reads the company through a read-only open of its own; the selection's
  // lock stays held until the command ends.
  static_cast<void>(company.Close());
  TextFileScreen screen(context, std::move(request), ui);
  while (ui.RunTextFileScreen(screen)) {
    static_cast<void>(WriteTextFile(context, screen.request(), ui));
  }
}

}  // namespace nv
