#include "store/company/change_log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/file_util.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::TempDir;

constexpr LogTime kMay17 = {2024, 5, 17, 14, 3};
// Prefix and the blank after it: 10 + 1 + 5 + 1 + 10 + 2 + 10 + 1 + 4 + 1 + 3 + 1 + 14 + 1.
constexpr size_t kTextColumn = 64;

LogClock FixedClock(LogTime time = kMay17) {
  return [time] { return time; };
}

// A line's prefix written out from the layout: date and time, blank, user right-aligned in
// 10, " v", version left-aligned in 10, blank, tag right-aligned in 4, blank, "Ast" or
// blanks, blank, asset number right-aligned in 14.
std::string Prefix(const std::string& when, const std::string& user, const std::string& tag,
                   const std::string& number = "") {
  return when + " " + std::string(10 - user.size(), ' ') + user + " v" + "4.1.141   " + " " +
         std::string(4 - tag.size(), ' ') + tag + " " + (number.empty() ? "   " : "Ast") + " " +
         std::string(14 - number.size(), ' ') + number;
}

class ChangeLogTest : public ::testing::Test {
 protected:
  ChangeLogTest() : company_(context_) {
    context_.user_name = "JSMITH";
    company_.SetLocation("ACME", dir_.path());
  }

  std::string LogBytes() const { return ReadFileBytes(company_.FilePath("LOG")).value_or(""); }

  // The texts of the log's lines, after the prefix; every line must end with CR LF.
  std::vector<std::string> LogTexts() const {
    std::vector<std::string> texts;
    std::string bytes = LogBytes();
    size_t start = 0;
    while (start < bytes.size()) {
      size_t end = bytes.find("\r\n", start);
      EXPECT_NE(end, std::string::npos) << "line without CR LF: " << bytes.substr(start);
      if (end == std::string::npos) break;
      std::string line = bytes.substr(start, end - start);
      texts.push_back(line.size() >= kTextColumn ? line.substr(kTextColumn) : "<short>" + line);
      start = end + 2;
    }
    return texts;
  }

  static NvCompanyRecord SampleRecord() {
    NvCompanyRecord r;
    r.number = "ACME";
    r.name = "Acme Tools";
    r.current_year_end = {12, 31, 2024};
    r.last_closed = {12, 31, 2023};
    r.schedule_letters = "BTA";
    r.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}, {'A', "A", "AMT"}};
    r.global_loc_cat = 'N';
    return r;
  }

  TempDir dir_;
  InstallationContext context_;
  NvCompany company_;
};

TEST_F(ChangeLogTest, EditLineIsByteExactAndAppended) {
  NvCompanyRecord before = SampleRecord();
  NvCompanyRecord after = before;
  after.name = "Acme Tools Inc";
  ASSERT_TRUE(WriteTextFile(company_.FilePath("LOG"), "earlier line\n"));
  LogCompanyChanges(company_, &before, after, kTagEditCompany, kHeadingEditCompany, FixedClock());

  EXPECT_EQ(LogBytes(), "earlier line\r\n" + Prefix("2024/05/17 14:03", "JSMITH", "CEDT") +
                            " Company Name changed from <Acme Tools> to <Acme Tools Inc>\r\n");
}

TEST_F(ChangeLogTest, PrefixFields) {
  // A long user name keeps its first 10 characters.
  EXPECT_EQ(LogLinePrefix(kMay17, "ABCDEFGHIJKL", "DEL ", std::nullopt),
            Prefix("2024/05/17 14:03", "ABCDEFGHIJ", "DEL "));
  // An asset line: mark, and the number right-aligned in 14; small fields zero-padded.
  EXPECT_EQ(LogLinePrefix({998, 1, 2, 3, 4}, "", "X", "    100.01"),
            Prefix("0998/01/02 03:04", "", "X", "    100.01"));
}

TEST_F(ChangeLogTest, SingleLinesWithLetterAssetAndMask) {
  ASSERT_TRUE(WriteLogLine(company_, "   1234.001", 'B', "DEL ", "Asset deleted", FixedClock()));
  EXPECT_EQ(LogBytes(), Prefix("2024/05/17 14:03", "JSMITH", "DEL ", "   1234.001") +
                            " Sch B: Asset deleted\r\n");

  // The mask must share a bit with the company's flags.
  company_.record().logging_flags = kLoggingPartial;  // bits 1 and 3
  EXPECT_TRUE(LogIf(0x01, company_, "1.01", "DEL ", "not written", FixedClock()));
  EXPECT_TRUE(LogIf(0x08, company_, "1.01", "DEL ", "written", FixedClock()));
  company_.record().logging_flags = kLoggingNone;
  EXPECT_TRUE(LogIf(kLogAllMask, company_, "1.01", "DEL ", "not written", FixedClock()));
  EXPECT_EQ(LogTexts(), (std::vector<std::string>{"Sch B: Asset deleted", "written"}));

  // A line end inside a text goes to disk as CR LF, as text mode writes it.
  EXPECT_EQ(LogLineBytes("P", std::nullopt, "a\nb"), "P a\r\nb\r\n");
}

TEST_F(ChangeLogTest, UnwritableLogReportsFalse) {
  company_.SetLocation("ACME", dir_.File("missing-folder"));
  EXPECT_FALSE(WriteLogLine(company_, std::nullopt, std::nullopt, "CEDT", "x", FixedClock()));
  company_.record().logging_flags = kLoggingDetailed;
  EXPECT_FALSE(LogIf(kLogAllMask, company_, std::nullopt, "DEL ", "x", FixedClock()));
  NvLogger logger(company_, "CEDT", std::nullopt, 0, FixedClock());
  EXPECT_FALSE(logger.Write(std::nullopt, "%s", "x"));
}

TEST_F(ChangeLogTest, ChangeTextsTrimAndCut) {
  {
    NvLogger logger(company_, "CEDT", std::string("Edit Company"), NvLogger::kWriteHeading,
                    FixedClock());
    logger.LogChange(std::nullopt, "EIN", "  12-345 ", "12-345");  // equal once trimmed
    logger.LogChange(std::nullopt, "EIN", std::nullopt, "  12-345 ");
    logger.LogChange(std::nullopt, "EIN", "12-345", "   ");  // blank counts as none
    logger.LogChange('T', "Method", "SL", "DB");
    logger.LogIntChange(std::nullopt, "Round Dollars", 0, 1);
    logger.LogIntChange(std::nullopt, "Round Dollars", 1, 1);
    logger.LogDateChange(std::nullopt, "Last Closed", Date{}, Date{6, 30, 2024});
    logger.LogDateChange(std::nullopt, "Last Closed", Date{6, 30, 2024}, Date{7, 1, 2024});
    logger.LogCharChange(std::nullopt, "Mid-Quarter Override", ' ', 'Q');
    logger.LogCharChange(std::nullopt, "Mid-Quarter Override", 'Q', '\0');
    logger.LogFormatChange(std::nullopt, "Asset No. Format", NvAssetNoFormat{},
                           NvAssetNoFormat{10, 3, 3});
    EXPECT_TRUE(logger.Write(std::nullopt, "%s", std::string(300, 'x').c_str()));
  }
  std::vector<std::string> expected = {
      "Edit Company",
      "EIN set to <12-345>",
      "EIN removed",
      "Sch T: Method changed from <SL> to <DB>",
      "Round Dollars changed from <0> to <1>",
      "Last Closed set to <06/30/2024>",
      "Last Closed changed from <06/30/2024> to <07/01/2024>",
      "Mid-Quarter Override set to <Q>",
      "Mid-Quarter Override removed",
      "Asset No. Format changed from <6 char (numeric only, no dashes), 2 digit subasset> to "
      "<10 char (letters OK, dashes OK), 3 digit subasset>",
      std::string(254, 'x'),
  };
  EXPECT_EQ(LogTexts(), expected);
}

TEST_F(ChangeLogTest, LoggerStampsEveryLineWithItsFirstLinesTime) {
  int minute = 3;
  LogClock ticking = [&minute] { return LogTime{2024, 5, 17, 14, minute++}; };
  {
    NvLogger logger(company_, "CEDT", std::string("Heading not asked for"), 0, ticking);
    EXPECT_FALSE(std::filesystem::exists(company_.FilePath("LOG")));  // opened at first line
    EXPECT_TRUE(logger.Write(std::nullopt, "one"));
    EXPECT_TRUE(logger.Write(std::nullopt, "two"));
  }
  std::string bytes = LogBytes();
  EXPECT_EQ(bytes.substr(0, 17), "2024/05/17 14:03 ");
  EXPECT_EQ(bytes.substr(bytes.find("\r\n") + 2, 17), "2024/05/17 14:03 ");
  EXPECT_EQ(LogTexts(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(ChangeLogTest, NoLoggingWritesOnlyItsOwnLine) {
  NvCompanyRecord created = SampleRecord();
  created.logging_flags = kLoggingNone;
  LogCompanyChanges(company_, nullptr, created, kTagNewCompany, kHeadingEditCompany, FixedClock());
  EXPECT_EQ(LogTexts(), (std::vector<std::string>{"Company created with no logging."}));
  EXPECT_EQ(LogBytes().substr(40, 4), "CNEW");

  // Edited while logging stays off: nothing.
  NvCompanyRecord renamed = created;
  renamed.name = "Other Name";
  LogCompanyChanges(company_, &created, renamed, kTagEditCompany, kHeadingEditCompany,
                    FixedClock());
  EXPECT_EQ(LogTexts().size(), 1u);

  // Turned off by an edit that also changes the name: only the no-logging line.
  NvCompanyRecord logged = SampleRecord();
  NvCompanyRecord off = logged;
  off.name = "Renamed";
  off.logging_flags = kLoggingNone;
  LogCompanyChanges(company_, &logged, off, kTagEditCompany, kHeadingEditCompany, FixedClock());
  std::vector<std::string> texts = LogTexts();
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[1], "Company changed to have no logging.");
  EXPECT_EQ(LogBytes().substr(LogBytes().find("\r\n") + 2 + 40, 4), "CEDT");
}

TEST_F(ChangeLogTest, PartialNewCompanyIsOneSummaryLine) {
  NvCompanyRecord created = SampleRecord();
  created.logging_flags = kLoggingPartial;
  created.ein = "12-3456789";
  created.user_fields[0] = {"Serial", "none"};
  LogCompanyChanges(company_, nullptr, created, kTagNewCompany, kHeadingEditCompany, FixedClock());
  EXPECT_EQ(LogTexts(),
            (std::vector<std::string>{"Co ACME Acme Tools, Schedules: BTA, 12/31/2024 Year End"}));
  EXPECT_EQ(LogBytes().substr(40, 4), "CNEW");
}

TEST_F(ChangeLogTest, DetailedNewCompanyLogsEveryFieldWithAValue) {
  NvCompanyRecord created = SampleRecord();
  created.logging_flags = kLoggingDetailed;
  created.schedule_letters = "BX";
  created.schedules = {{'B', "B", "Book"}, {'X', "CA", "Calif"}};
  created.sort_order = "LC";
  created.business_category = 4;
  created.mid_quarter_override = ' ';  // blank: not logged
  created.global_loc_cat = 'B';
  created.user_fields[2] = {"Serial No", ""};
  created.user_fields[9] = {"", "N/A"};
  // EIN, Misc Codes and Round Dollars are empty.
  LogCompanyChanges(company_, nullptr, created, kTagNewCompany, kHeadingEditCompany, FixedClock());
  std::vector<std::string> expected = {
      "Edit Company",  // detailed logging heads its lines
      "Company No set to <ACME>",
      "Company Name set to <Acme Tools>",
      "Last Closed set to <12/31/2023>",
      "Current Year End set to <12/31/2024>",
      "Asset No. Format set to <6 char (numeric only, no dashes), 2 digit subasset>",
      "Schedule added: <B-Book>",
      "Schedule added: <X(CA)-Calif>",
      "Sort Order set to <LC>",
      "Business Category set to <4>",
      "Global Loc/Cat Designation set to <B>",
      "User Field 3: name set to <Serial No>, default set to <>",
      "User Field 10: name set to <>, default set to <N/A>",
      "Logging Flags set to <16777215>",
  };
  EXPECT_EQ(LogTexts(), expected);
}

TEST_F(ChangeLogTest, EditLogsEachChangedFieldInScreenOrder) {
  NvCompanyRecord before = SampleRecord();
  before.schedule_letters = "BTX";
  before.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}, {'X', "CA", "Calif"}};
  before.user_fields[0] = {"Serial", "none"};
  NvCompanyRecord after = before;
  after.schedule_letters = "BXA";
  after.schedules = {{'B', "B", "Books"}, {'X', "NY", "Calif"}, {'A', "A", "AMT"}};
  after.asset_no_format.main_length = 8;
  after.round_dollars = true;
  after.global_loc_cat = 'C';
  after.user_fields[0] = {"Serial", "unknown"};
  after.user_fields[1].name = "Color";
  after.logging_flags = kLoggingDetailed;
  LogCompanyChanges(company_, &before, after, kTagEditCompany, kHeadingEditCompany, FixedClock());
  std::vector<std::string> expected = {
      "Edit Company",
      "Asset No. Format changed from <6 char (numeric only, no dashes), 2 digit subasset> to "
      "<8 char (numeric only, no dashes), 2 digit subasset>",
      "Schedules changed from <BTX> to <BXA>",
      "Schedule change: From <B-Book> to <B-Books>",
      "Schedule change: From <X(CA)-Calif> to <X(NY)-Calif>",
      "Schedule added: <A-AMT>",
      "Schedule removed: <T-Tax>",
      "Round Dollars changed from <0> to <1>",
      "Global Loc/Cat Designation changed from <N> to <C>",
      "User Field 1 default value changed from <none> to <unknown>",
      "User Field 2 name set to <Color>",
      "Logging Flags changed from <10> to <16777215>",
  };
  EXPECT_EQ(LogTexts(), expected);
  // An edit that changes nothing does not even create the file.
  company_.SetLocation("OTHER", dir_.path());
  LogCompanyChanges(company_, &before, before, kTagEditCompany, kHeadingEditCompany, FixedClock());
  EXPECT_FALSE(std::filesystem::exists(company_.FilePath("LOG")));
}

TEST(LogScheduleName, TypeEqualToLetterIsLeftOut) {
  EXPECT_EQ(LogScheduleName({'B', "B", "Book"}), "B-Book");
  EXPECT_EQ(LogScheduleName({'X', "CA", "Calif"}), "X(CA)-Calif");
  EXPECT_EQ(LogScheduleName({'Q', "B", "Book 2  "}), "Q(B)-Book 2");
}

}  // namespace
}  // namespace nv
