// The readers of a FAS 1000/2000 company folder. The first byte chooses the reader, the
// rest is its input:
//   0  COMPANY.SAF                  the header is read only from 125 bytes on
//   1  cmpsetup.dat                 the setup is read only from 396 bytes on
//   2  one text file, from a file   the lines read in pieces from a file are the lines of
//                                   its bytes, none longer than 750
//   3  the four text files merged   the rest split at form feeds into assetgen.asc,
//                                   bookdata.asc, lablinfo.asc and listed.asc; every
//                                   assetgen line is given or passed over once, every line
//                                   given has its asset's key, and each asset converts
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_scratch.h"
#include "fuzz/scratch_company.h"
#include "import/fas1000/fas1000_convert.h"
#include "import/fas1000/fas1000_source.h"

using nv::fuzz::Check;
namespace fas = nv::fas1000;

namespace {

std::vector<std::string> Lines(fas::LineSource& source) {
  std::vector<std::string> lines;
  std::string_view line;
  while (source.Next(&line)) {
    Check(line.size() <= fas::kMaxLineLength);
    lines.emplace_back(line);
  }
  return lines;
}

void FileAgainstBytes(std::string_view bytes) {
  const std::string path = nv::fuzzing::ScratchFolder("fas1000") + "assetgen.asc";
  std::FILE* out = std::fopen(path.c_str(), "wb");
  Check(out != nullptr);
  Check(std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size());
  Check(std::fclose(out) == 0);
  std::optional<fas::LineSource> file = fas::LineSource::Open(path);
  Check(file.has_value());
  fas::LineSource memory(bytes);
  Check(Lines(*file) == Lines(memory));
  Check(file->consumed() == bytes.size() && memory.consumed() == bytes.size());
  std::remove(path.c_str());
}

void Merge(std::string_view bytes) {
  std::string_view parts[4];
  for (std::string_view& part : parts) {
    const size_t feed = bytes.find('\f');
    part = bytes.substr(0, feed);
    bytes = feed == std::string_view::npos ? std::string_view() : bytes.substr(feed + 1);
  }
  fas::FasSourceReader reader{fas::LineSource(parts[0]), fas::LineSource(parts[1]),
                              fas::LineSource(parts[2]), fas::LineSource(parts[3])};
  fas::ConversionSettings settings;
  settings.schedule_letters = "TBSAC";
  settings.asset_no_format = {10, 3, nv::NvAssetNoFormat::kLetters | nv::NvAssetNoFormat::kDashes};
  settings.account_source = fas::kSourceClassLife;
  settings.user_field_sources[0] = fas::kSourceCompanyAssetNo;
  settings.user_field_sources[1] = fas::kSourceGlCode;
  settings.user_field_sources[2] = fas::kSourceUserField1 + 4;

  long given = 0;
  long passed_assets = 0;
  fas::FasAsset asset;
  std::vector<fas::SkippedBook> skipped;
  for (;;) {
    const bool more = reader.Next(&asset);
    for (const fas::PassedOverLine& line : reader.TakePassedOver()) {
      Check(!line.reason.empty());
      if (line.file == fas::SourceFile::kAssetGen) ++passed_assets;
    }
    if (!more) break;
    ++given;
    if (asset.label) Check(asset.label->key == asset.general.key);
    for (const fas::BookLine& book : asset.books) Check(book.key == asset.general.key);
    skipped.clear();
    const nv::NvAsset converted = fas::ConvertAsset(asset, settings, &skipped);
    Check(converted.schedules.size() == settings.schedule_letters.size());
    Check(converted.account.size() <= fas::kAccountWidth);
    for (const std::string& field : converted.user_fields) Check(field.size() <= 20);
    Check(skipped.size() <= asset.books.size());
  }
  Check(given + passed_assets == reader.assetgen_lines());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 4) {
    case 0: {
      const std::optional<fas::CompanyHeader> header = fas::ParseCompanyHeader(bytes);
      Check(header.has_value() == (bytes.size() >= fas::kCompanyHeaderSize));
      if (header) Check(header->name.size() <= fas::kCompanyName.width);
      break;
    }
    case 1:
      Check(fas::ParseBookSetup(bytes).has_value() == (bytes.size() >= fas::kSetupSize));
      break;
    case 2:
      FileAgainstBytes(bytes);
      break;
    default:
      Merge(bytes);
      break;
  }
  return 0;
}
