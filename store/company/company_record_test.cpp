#include "store/company/company_record.h"

#include <gtest/gtest.h>

#include <string>

#include "base/str_format.h"

namespace nv {
namespace {

NvCompanyRecord SampleRecord() {
  NvCompanyRecord r;
  r.number = "ACME";
  r.current_year_end = {12, 31, 2024};
  r.months_in_year = 12;
  r.name = "Acme Tools";
  r.ein = "12-3456789";
  r.last_closed = {12, 31, 2023};
  r.schedule_letters = "BT";
  r.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
  r.sort_order = "ACL";
  r.business_category = 4;
  r.round_dollars = false;
  r.mid_quarter_override = ' ';
  r.global_loc_cat = 'N';
  r.user_fields[0] = {"Dept", "100"};
  return r;
}

// Counters 3, 0, 0 then the tab.
const std::string kCounters("\x03\0\0\0\0\0\0\0\0\0\0\0\t", 13);

// Everything after the format fields, written out from the field table.
std::string SampleTail() {
  std::string user_fields = "10\tDept\t100\t";
  for (int i = 1; i < 10; ++i) user_fields += "\t\t";
  return std::string("12312024\t") + "12\t" + "\t" + "Acme Tools\t" + "12-3456789\t" +
         "12312023\t" +
         // letters, a blank, blanks to 7; B Book, T Tax and one empty entry of 12
         "BT     " + "B Book      " + "T Tax       " + "            " + "\t" + "ACL\t" + "4\t" +
         "N\t" + "\t" + "N\t" + user_fields + "\t" + "\t" + "\t" + "LOGFLAGS(10)\t" + "0\t0\t";
}

TEST(CompanyRecordTest, ShortFormatHasNoVersionOrFormatField) {
  std::string bytes = SerializeCompanyRecord(SampleRecord(), {3, 0, 0});
  EXPECT_EQ(bytes, kCounters + SampleTail());

  ParsedCompanyRecord parsed = ParseCompanyRecord(bytes);
  EXPECT_EQ(parsed.counters, (BlockFileCounters{3, 0, 0}));
  EXPECT_EQ(parsed.record.asset_no_format, (NvAssetNoFormat{6, 2, 0}));
  EXPECT_EQ(parsed.record.version, "");
  EXPECT_FALSE(parsed.newer_version);
  NvCompanyRecord expected = SampleRecord();
  expected.number.clear();
  EXPECT_EQ(parsed.record, expected);
}

TEST(CompanyRecordTest, LongFormatCarriesVersionAndFormat) {
  NvCompanyRecord r = SampleRecord();
  r.asset_no_format = {8, 3, NvAssetNoFormat::kLetters};
  r.stored_asset_no = "   00120.005";
  r.permissions = "*:R|SMITH:F";
  r.misc_codes = "B";
  r.logging_flags = kLoggingDetailed;
  std::string bytes = SerializeCompanyRecord(r, {0x01020304, 7, 1});

  std::string tail = SampleTail();
  tail.replace(tail.find("\t\t\tLOGFLAGS(10)"), 15, "120.005\t*:R|SMITH:F\tB\tLOGFLAGS(16777215)");
  const std::string counters("\x04\x03\x02\x01\x07\0\0\0\x01\0\0\0\t", 13);
  EXPECT_EQ(bytes, counters + "v4.1.141/4.1\t" + "f8/3/1\t" + tail);

  ParsedCompanyRecord parsed = ParseCompanyRecord(bytes);
  EXPECT_EQ(parsed.record.version, "4.1.141/4.1");
  EXPECT_EQ(parsed.record.asset_no_format, r.asset_no_format);
  EXPECT_EQ(parsed.record.stored_asset_no, "120.005");
  EXPECT_EQ(parsed.record.permissions, "*:R|SMITH:F");
  EXPECT_EQ(parsed.record.logging_flags, kLoggingDetailed);
  EXPECT_EQ(parsed.counters, (BlockFileCounters{0x01020304, 7, 1}));
}

TEST(CompanyRecordTest, TextsAreTrimmedAndKeepTheirLastCharacters) {
  NvCompanyRecord r = SampleRecord();
  r.name = "  The Very Long Company Name Of Fifty Characters Ltd  ";
  r.ein = "123456789012345";
  r.months_in_year = 123;
  r.business_category = 14;
  ParsedCompanyRecord parsed = ParseCompanyRecord(SerializeCompanyRecord(r, {}));
  EXPECT_EQ(parsed.record.name, "ong Company Name Of Fifty Characters Ltd");
  EXPECT_EQ(parsed.record.name.size(), 40u);
  EXPECT_EQ(parsed.record.ein, "456789012345");
  EXPECT_EQ(parsed.record.months_in_year, 23);
  EXPECT_EQ(parsed.record.business_category, 4);
}

TEST(CompanyRecordTest, ReadsFormatDefaultsAndMissingTrailingFields) {
  // A long-format record whose format field lacks the flags, written before logging flags.
  std::string bytes = kCounters +
                      "v4.1.100\tf9/3\t06302025\t6\t\tOld Co\t\t06302024\tB      B Book" +
                      "\tL\t1\tY\tQ\tB\t2\tN1\tD1\tN2\tD2\t\t\t\t";
  ParsedCompanyRecord parsed = ParseCompanyRecord(bytes);
  const NvCompanyRecord& r = parsed.record;
  EXPECT_EQ(r.asset_no_format, (NvAssetNoFormat{9, 3, 0}));
  EXPECT_EQ(r.schedule_letters, "B");
  ASSERT_EQ(r.schedules.size(), 1u);
  EXPECT_EQ(r.schedules[0], (ScheduleEntry{'B', "B", "Book"}));
  EXPECT_TRUE(r.round_dollars);
  EXPECT_EQ(r.mid_quarter_override, 'Q');
  EXPECT_EQ(r.global_loc_cat, 'B');
  EXPECT_EQ(r.user_fields[1], (UserFieldDefinition{"N2", "D2"}));
  EXPECT_EQ(r.user_fields[2], (UserFieldDefinition{}));
  EXPECT_EQ(r.logging_flags, kLoggingPartial);
}

TEST(CompanyRecordTest, SchedulesFieldWithStateTypeAndManyLetters) {
  NvCompanyRecord r;
  r.schedule_letters = "BTACSOXYZ";
  for (char c : r.schedule_letters) r.schedules.push_back({c, c == 'X' ? "CA" : "O", "Name"});
  std::string field = FormatSchedulesField(r);
  // Nine letters and their blank take 10 characters; ten entries of 12 follow.
  EXPECT_EQ(field.size(), 10u + 10 * 12);
  EXPECT_EQ(field.substr(10 + 6 * 12, 12), "CAName      ");
  NvCompanyRecord back;
  ParseSchedulesField(field, &back);
  EXPECT_EQ(back.schedules, r.schedules);
}

TEST(CompanyRecordTest, VersionComparison) {
  EXPECT_TRUE(IsNewerVersion("4.2.0"));
  EXPECT_TRUE(IsNewerVersion("4.1.142/4.1"));
  EXPECT_TRUE(IsNewerVersion("5"));
  EXPECT_FALSE(IsNewerVersion("4.1.141/4.1"));
  EXPECT_FALSE(IsNewerVersion("4.1.99"));
  EXPECT_FALSE(IsNewerVersion("3.9.999"));
  EXPECT_FALSE(IsNewerVersion(""));
}

TEST(CompanyRecordTest, OldLayoutRoundTripsWithoutNewerFields) {
  NvCompanyRecord r = SampleRecord();
  r.number.clear();
  std::string bytes = SerializeOldCompanyRecord(r, {9, 2, 1});
  EXPECT_EQ(bytes.substr(0, 7), std::string("\x09\0\x02\0\x01\0\t", 7));
  ParsedCompanyRecord parsed = ParseOldCompanyRecord(bytes);
  EXPECT_EQ(parsed.counters, (BlockFileCounters{9, 2, 1}));
  EXPECT_EQ(parsed.record, r);
}

TEST(CompanyRecordTest, YearEndCorrectionAndMonths) {
  NvCompanyRecord r;
  r.last_closed = {2, 29, 2024};
  r.current_year_end = {2, 29, 2024};  // not after Last Closed
  CorrectYearEnd(&r);
  EXPECT_EQ(r.current_year_end, (Date{2, 28, 2025}));
  r.current_year_end = {3, 1, 2025};  // more than a year after
  CorrectYearEnd(&r);
  EXPECT_EQ(r.current_year_end, (Date{2, 28, 2025}));
  r.current_year_end = {6, 30, 2024};
  CorrectYearEnd(&r);
  EXPECT_EQ(r.current_year_end, (Date{6, 30, 2024}));
  r.last_closed = {};
  r.current_year_end = {6, 30, 2024};
  CorrectYearEnd(&r);  // nothing to measure from: kept
  EXPECT_EQ(r.current_year_end, (Date{6, 30, 2024}));

  EXPECT_EQ(MonthsInCurrentYear({12, 31, 2023}, {12, 31, 2024}), 12);
  EXPECT_EQ(MonthsInCurrentYear({12, 31, 2023}, {6, 30, 2024}), 6);
  EXPECT_EQ(MonthsInCurrentYear({3, 31, 2024}, {6, 30, 2024}), 3);
  EXPECT_EQ(MonthsInCurrentYear({}, {}), 12);
}

TEST(CompanyRecordTest, FormatLengthsOutOfRangeAreHeldToTheirLimits) {
  std::string bytes = kCounters + "v4.1.141/4.1\tf0/320/3\t";
  EXPECT_EQ(ParseCompanyRecord(bytes).record.asset_no_format, (NvAssetNoFormat{1, 3, 3}));
  bytes = kCounters + "v4.1.141/4.1\tf44/-2\t";
  EXPECT_EQ(ParseCompanyRecord(bytes).record.asset_no_format, (NvAssetNoFormat{10, 1, 0}));
}

// Formats that are not "long" but are not the short 6, 2, 0 either keep their format
// fields, or the next read would make them 6, 2, 0.
TEST(CompanyRecordTest, ShorterOrDashedFormatsKeepTheirFormatField) {
  for (NvAssetNoFormat format : {NvAssetNoFormat{4, 2, 0}, NvAssetNoFormat{6, 2, 2}}) {
    NvCompanyRecord r = SampleRecord();
    r.asset_no_format = format;
    std::string bytes = SerializeCompanyRecord(r, {});
    EXPECT_NE(bytes.find(StrPrintf("\tv4.1.141/4.1\tf%d/2/%d\t", format.main_length, format.flags)),
              std::string::npos);
    EXPECT_EQ(ParseCompanyRecord(bytes).record.asset_no_format, format);
  }
}

}  // namespace
}  // namespace nv
