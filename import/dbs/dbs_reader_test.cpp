#include "import/dbs/dbs_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nv {
namespace {

// Places of fields in a record, counted by hand from the layout.
constexpr int kSlotLettersAt = 0;
constexpr int kBasisAt = 1;  // + 4 x slot + amount
constexpr int kNumberAt = 21;
constexpr int kDescriptionAt = 22;
constexpr int kLocationAt = 23;
constexpr int kUserFieldAt = 34;  // + index
constexpr int kBlockAt = 39;      // + 17 x slot + field
constexpr int kMethod = 0, kListed = 1, kAssetType = 3, kUsefulLife = 5, kConvention = 10,
              kCurrentDepr = 16;
constexpr int kSaleAt = 128;
constexpr int kFieldCount = 129;

std::string Delimited(const std::vector<std::string>& fields, char delimiter) {
  std::string line;
  for (const std::string& f : fields) line += f + delimiter;
  return line;
}

std::vector<std::string> EmptyRecord() {
  std::vector<std::string> f(kFieldCount);
  f[kSlotLettersAt] = "BATSC";
  for (int slot = 0; slot < 5; ++slot) f[kBlockAt + 17 * slot + kMethod] = "13";
  f[kNumberAt] = "12.01";
  return f;
}

NvAsset Read(std::string_view line, char delimiter, std::string_view letters = "BT",
             NvAssetNoFormat format = {}, DbsRecordInfo* info = nullptr) {
  NvAsset asset;
  DbsRecordInfo got = ReadDbsRecord(line, delimiter, format, letters, &asset);
  if (info != nullptr) *info = got;
  return asset;
}

TEST(DbsReader, DatesTakeEveryFormAndTheirCentury) {
  EXPECT_EQ(ReadDbsDate("01/02/29"), (Date{1, 2, 2029}));
  EXPECT_EQ(ReadDbsDate("01/02/30"), (Date{1, 2, 1930}));
  EXPECT_EQ(ReadDbsDate("010229"), (Date{1, 2, 2029}));
  EXPECT_EQ(ReadDbsDate("01021929"), (Date{1, 2, 1929}));
  EXPECT_EQ(ReadDbsDate(" 1-2 -2029"), (Date{1, 2, 2029}));
  EXPECT_EQ(ReadDbsDate("12/31/99"), (Date{12, 31, 1999}));
  for (std::string_view empty : {"00/00/00", "", "        ", "0102", "01/02", "13/01/20",
                                 "02/30/20", "00/15/20", "01/00/20", "ab/cd/ef", "01x229"}) {
    EXPECT_TRUE(ReadDbsDate(empty).empty()) << empty;
  }
}

TEST(DbsReader, LivesAndNumbers) {
  EXPECT_EQ(ReadDbsLife("07"), (YearsMonths{7, 0}));
  EXPECT_EQ(ReadDbsLife("07   "), (YearsMonths{7, 0}));
  EXPECT_EQ(ReadDbsLife("05-06"), (YearsMonths{5, 6}));
  EXPECT_EQ(ReadDbsLife(""), (YearsMonths{0, 0}));
  EXPECT_EQ(ReadDbsAmount("  -12.5 "), -12.5);
  EXPECT_EQ(ReadDbsAmount("***********"), 0);
  EXPECT_EQ(ReadDbsAmount("nan"), 0);
  EXPECT_EQ(ReadDbsInteger(" 42x"), 42);
  EXPECT_EQ(ReadDbsInteger("99999999999"), 2147483647);
}

TEST(DbsReader, QuotedAndOverlongDelimitedFields) {
  std::vector<std::string> f = EmptyRecord();
  f[kDescriptionAt] = "\"A\"\"B\"\"C\"";
  f[kLocationAt] = "TOOLONG";
  f[kUserFieldAt] = "\"x, y\"";
  f[kUserFieldAt + 1] = "\"unclosed";  // runs to the next quote before a comma
  const NvAsset a = Read(Delimited(f, ','), ',');
  EXPECT_EQ(a.description, "A\"B\"C");
  EXPECT_EQ(a.location, "TOO");
  EXPECT_EQ(a.category, "");  // the next field starts after the comma, not after 3 characters
  EXPECT_EQ(a.user_fields[0], "x, y");
  EXPECT_EQ(a.number.Text(), "    12.01");
}

TEST(DbsReader, SlotsGoToTheLettersTheyNameAndTheRestAreThrownAway) {
  std::vector<std::string> f = EmptyRecord();
  f[kSlotLettersAt] = "TBX";
  f[kBasisAt + 0] = "500";     // slot 1: T
  f[kBasisAt + 4] = "700.25";  // slot 2: B
  f[kBasisAt + 8] = "900";     // slot 3: X, a letter the company lacks
  f[kBasisAt + 12] = "1100";   // slots 4 and 5 beyond the letters: read and dropped
  f[kBlockAt + kMethod] = "2";
  f[kBlockAt + 17 + kMethod] = "3";
  f[kBlockAt + 17 + kListed] = "Y";
  f[kBlockAt + 17 + kAssetType] = "A";
  f[kBlockAt + 17 + kUsefulLife] = "07";
  f[kBlockAt + 34 + kMethod] = "6";
  f[kBlockAt + 34 + kConvention] = "Q";
  DbsRecordInfo info;
  const NvAsset a = Read(Delimited(f, '\t'), '\t', "BTS", {}, &info);
  ASSERT_EQ(a.schedule_letters, "BTS");
  EXPECT_EQ(a.Schedule('T')->depreciable_basis, 500);
  EXPECT_EQ(a.Schedule('T')->method, 2);
  EXPECT_EQ(a.Schedule('B')->depreciable_basis, 700.25);
  EXPECT_EQ(a.Schedule('B')->method, 3);
  EXPECT_EQ(a.Schedule('B')->asset_type, "AL");
  EXPECT_EQ(a.Schedule('B')->useful_life, (YearsMonths{7, 0}));
  EXPECT_TRUE(a.Schedule('S')->not_applicable());
  EXPECT_EQ(a.Schedule('S')->depreciable_basis, 0);
  EXPECT_EQ(info.dropped_letters, "X");
  EXPECT_FALSE(info.older_layout);
}

TEST(DbsReader, OlderLayoutTakesTheFirstMethodFromTheUserFields) {
  std::vector<std::string> f = EmptyRecord();
  f[kSlotLettersAt] = "TB";
  f[kUserFieldAt] = "kept";
  f[kUserFieldAt + 3] = "3";
  f[kUserFieldAt + 4] = "Yes";
  // The first block lacks its method and listed flag: everything after shifts by two.
  f.erase(f.begin() + kBlockAt, f.begin() + kBlockAt + 2);
  f[kBlockAt + kAssetType - 2] = "A";
  f[kBlockAt + kCurrentDepr - 2] = "150";
  f[kBlockAt + 15 + kMethod] = "2";
  f[kSaleAt - 2] = "75";
  DbsRecordInfo info;
  const NvAsset a = Read(Delimited(f, '\t'), '\t', "BT", {}, &info);
  EXPECT_TRUE(info.older_layout);
  EXPECT_EQ(a.Schedule('T')->method, 3);
  EXPECT_EQ(a.Schedule('T')->asset_type, "AL");
  EXPECT_EQ(a.Schedule('T')->current_depr, 150);
  EXPECT_EQ(a.Schedule('B')->method, 2);
  EXPECT_EQ(a.user_fields[0], "kept");
  EXPECT_EQ(a.user_fields[3], "");
  EXPECT_EQ(a.user_fields[4], "");
  EXPECT_EQ(a.sale_amount, 75);
}

TEST(DbsReader, FixedRecordsReadNumbersAtTheCompanysLength) {
  // Format 4/1 with dashes: numbers are 6 characters. Field widths counted by hand.
  std::string line = "TB         ";                   // slot letters, 11
  line += "    1500.00" + std::string(19 * 11, ' ');  // basis amounts
  line +=
      "9-12.3"
      "Press" +
      std::string(25, ' ');  // number, description 30
  line +=
      "SHP"
      "   " +
      std::string(24, ' ');                      // location, category, account
  line += "    1500.00" + std::string(11, ' ');  // cash, trade in
  line +=
      "        "
      "03/01/19";  // purchase, in service
  line +=
      "N"
      "  "
      "  "
      "  " +
      std::string(100, ' ');  // new/used .. user fields
  line +=
      "2 NN"
      "    "
      "100"
      "05   "
      "00   " +
      std::string(22, ' ') +
      " "
      "Y" +
      std::string(66, ' ');  // block 1 (T)
  for (int slot = 1; slot < 5; ++slot) line += "13" + std::string(109, ' ');
  line +=
      "T"
      "9-13.0" +
      std::string(11, ' ') + "06/30/24" + std::string(11, ' ');
  const NvAssetNoFormat format{4, 1, NvAssetNoFormat::kDashes};
  const NvAsset a = Read(line + "\r", '\0', "BT", format);
  EXPECT_EQ(a.number.Text(), "9-12.3");
  EXPECT_TRUE(a.number.valid());
  EXPECT_EQ(a.description, "Press");
  EXPECT_EQ(a.cash_and_notes, 1500);
  EXPECT_EQ(a.date_in_service, (Date{3, 1, 2019}));
  EXPECT_EQ(a.Schedule('T')->useful_life, (YearsMonths{5, 0}));
  EXPECT_EQ(a.Schedule('T')->convention, 'Y');
  EXPECT_TRUE(a.Schedule('B')->not_applicable());
  EXPECT_EQ(a.disposal_code, 'T');
  EXPECT_EQ(a.transferred_to.Text(), "9-13.0");
  EXPECT_EQ(a.disposal_date, (Date{6, 30, 2024}));
  EXPECT_EQ(GuessDbsAssetNoFormat(DbsLineReader(line + "\r\n"), '\0'), format);
}

TEST(DbsReader, LinesSkipBlanksAndSplitAtTheLongestLine) {
  const std::string long_line(1500, 'x');
  const std::string bytes = "first\r\n\n   \r\n" + long_line + "\nlast";
  const std::vector<std::pair<long, size_t>> expected = {{1, 5}, {4, 1200}, {5, 300}, {6, 4}};
  // From memory, and from a source read in pieces smaller and larger than a line.
  for (size_t piece : {0, 7, 1201, 4096}) {
    size_t at = 0;
    DbsLineReader lines = piece == 0 ? DbsLineReader(bytes)
                                     : DbsLineReader(
                                           [&](char* buffer, size_t size) -> int64_t {
                                             const size_t n = std::min(size, bytes.size() - at);
                                             bytes.copy(buffer, n, at);
                                             at += n;
                                             return static_cast<int64_t>(n);
                                           },
                                           piece);
    std::vector<std::pair<long, size_t>> got;
    while (std::optional<std::string_view> line = lines.Next()) {
      got.emplace_back(lines.line_number(), line->size());
      if (line->size() == 4) {
        EXPECT_EQ(*line, "last");
      }
    }
    EXPECT_EQ(got, expected) << piece;
    EXPECT_EQ(lines.position(), bytes.size()) << piece;
    EXPECT_FALSE(lines.failed());
  }
  DbsLineReader broken([](char*, size_t) -> int64_t { return -1; });
  EXPECT_FALSE(broken.Next());
  EXPECT_TRUE(broken.failed());
}

TEST(DbsReader, GuessesTheFormatOfDelimitedNumbers) {
  std::vector<std::string> f = EmptyRecord();
  std::string bytes;
  for (std::string number : {"12.001", "AB12345-9.002", "7.000"}) {
    f[kNumberAt] = number;
    bytes += Delimited(f, ',') + "\r\n";
  }
  EXPECT_EQ(GuessDbsAssetNoFormat(DbsLineReader(bytes), ','),
            (NvAssetNoFormat{9, 3, NvAssetNoFormat::kLetters | NvAssetNoFormat::kDashes}));
  EXPECT_EQ(GuessDbsAssetNoFormat(DbsLineReader(""), ','), NvAssetNoFormat{});
}

}  // namespace
}  // namespace nv
