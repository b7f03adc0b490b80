// Reads the input as nvtool's JSON document of a company and its assets. Whatever the
// text, the company and every asset that is read, written out and read again must write out
// the same text again: the reading and the writing of one table agree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "store/asset/asset_record.h"
#include "tools/company_json.h"

namespace {

// Schedules B and X, format 8, 3 with letters and dashes.
nv::NvCompanyRecord Company() {
  nv::NvCompanyRecord r;
  r.asset_no_format = {8, 3, nv::NvAssetNoFormat::kLetters | nv::NvAssetNoFormat::kDashes};
  r.schedule_letters = "BX";
  r.schedules = {{'B', "B", "Book"}, {'X', "CA", "Calif"}};
  return r;
}

template <typename R>
std::string Compact(void (*write)(const R&, nv::JsonWriter&), const R& record) {
  std::ostringstream out;
  {
    nv::JsonWriter w(out);
    write(record, w);
  }
  return out.str();
}

class Sink : public nv::CompanyDocumentSink {
 public:
  Sink() : form_(nv::AssetRecordFormatOf(Company())) {}
  nv::NvCompanyRecord* CompanyTarget() override { return &company; }
  bool CompanyRead(const std::string& error) override {
    company_ok = error.empty();
    return true;
  }
  const nv::AssetRecordFormat* AssetForm() override { return &form_; }
  bool AssetRead(nv::NvAsset& asset, const std::string&, const std::string& error) override {
    if (error.empty()) assets.push_back(Compact(nv::WriteAssetJson, asset));
    return true;
  }

  nv::NvCompanyRecord company;
  bool company_ok = false;
  std::vector<std::string> assets;  // as written after the first reading

 private:
  nv::AssetRecordFormat form_;
};

Sink Read(const std::string& text) {
  Sink sink;
  std::istringstream in(text);
  // Any outcome will do; what was read must keep its form.
  (void)nv::ReadCompanyDocument(in, sink);
  return sink;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Sink first = Read(std::string(reinterpret_cast<const char*>(data), size));
  if (first.company_ok) {
    const std::string once = Compact(nv::WriteCompanyJson, first.company);
    Sink again = Read("{\"company\": " + once + "}");
    if (!again.company_ok || Compact(nv::WriteCompanyJson, again.company) != once) std::abort();
  }
  for (const std::string& once : first.assets) {
    Sink again = Read("{\"assets\": [" + once + "]}");
    if (again.assets.size() != 1 || again.assets[0] != once) std::abort();
  }
  return 0;
}
