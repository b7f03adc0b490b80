#include "import/aicpa/aicpa_report.h"

#include <gtest/gtest.h>

#include <random>

#include "import/aicpa/aicpa_testing.h"

namespace nv::aicpa {
namespace {

using testing::AccountRow;
using testing::BookRow;
using testing::HeadingLine;
using testing::Joined;
using testing::ReportHead;
using testing::ValueRow;

// Writes down what a reader is given: "N:text" per line, "FF" per page break.
class Recorder final : public ReportVisitor {
 public:
  void OnLine(std::string_view text, long number) override {
    events.push_back(std::to_string(number) + ":" + std::string(text));
  }
  void OnPageBreak() override { events.push_back("FF"); }
  std::vector<std::string> events;
};

std::vector<std::string> Split(std::string_view bytes) {
  Recorder recorder;
  SplitReport(bytes, recorder);
  return recorder.events;
}

TEST(AicpaSplitter, LinesEndWithLfOrCrLfAndFormFeedsBreakPagesKeepingColumns) {
  EXPECT_EQ(Split("one\r\ntwo\nthree"), (std::vector<std::string>{"1:one", "2:two", "3:three"}));
  // A form feed alone on its line is only the break; text after one keeps its columns,
  // text before one stays on the page it ends.
  EXPECT_EQ(
      Split("a\n\f\r\n\fAsset No.\nend\fnext\n"),
      (std::vector<std::string>{"1:a", "FF", "FF", "3: Asset No.", "4:end", "FF", "4:    next"}));
  EXPECT_EQ(Split(""), std::vector<std::string>{});
  EXPECT_EQ(Split("\n"), std::vector<std::string>{"1:"});
}

TEST(AicpaSplitter, LongLinesAreReadInPiecesOf750) {
  const std::string line = std::string(750, 'a') + std::string(750, 'b') + "cc";
  const std::vector<std::string> events = Split(line + "\r\nnext\n");
  ASSERT_EQ(events.size(), 4u);
  EXPECT_EQ(events[0], "1:" + std::string(750, 'a'));
  EXPECT_EQ(events[1], "1:" + std::string(750, 'b'));
  EXPECT_EQ(events[2], "1:cc");
  EXPECT_EQ(events[3], "2:next");
}

TEST(AicpaSplitter, PiecesOfAnySizeGiveWhatTheWholeGives) {
  std::string text = "head\r\n" + std::string(1600, 'x') + "\r\n\f  Asset No.  12\r\n";
  text += std::string(760, 'y') + "\fz\r\n\r\nlast";
  const std::vector<std::string> whole = Split(text);
  std::mt19937 rng(7);
  for (int round = 0; round < 50; ++round) {
    Recorder recorder;
    ReportSplitter splitter(recorder);
    for (size_t at = 0; at < text.size();) {
      const size_t n = std::min(text.size() - at, size_t{1} + rng() % 40);
      splitter.Feed(std::string_view(text).substr(at, n));
      at += n;
    }
    splitter.Finish();
    ASSERT_EQ(recorder.events, whole) << "round " << round;
  }
}

// A report with Federal, AMT and State books whose first asset has no AMT date.
std::string SmallReport() {
  std::vector<std::string> lines =
      ReportHead("Acme Widgets Inc.", "           For the 12 Months Ended 12/31/2024",
                 {"Federal", "AMT", "State"});
  const std::vector<std::string> asset1 = {
      "\f",
      ValueRow("Asset No.", "101", 41),
      ValueRow("Asset Description (line 1)", "Drill press"),
      BookRow("Date Acquired", {"03/15/2022", "", "03/15/2022"}),
      BookRow("Cost or Basis", {"12,500.00", "", "12,000.00"}),
      AccountRow("Asset", "1500"),
      AccountRow("Accumulated Depreciation", "1510"),
      AccountRow("Depreciation/Amortization Expense", "6100"),
      "\f",
      ValueRow("Asset No.", "102", 41),
      BookRow("Date Acquired", {"01/02/2023", "01/02/2023", "01/02/2023"}),
      AccountRow("Asset", "1500"),
      AccountRow("Accumulated Depreciation", "1510"),
      AccountRow("Depreciation/Amortization Expense", "6100"),
      "\f",
      ValueRow("Asset No.", "103", 41),
      AccountRow("Asset", "1600"),
      AccountRow("Accumulated Depreciation", "1610"),
      AccountRow("Depreciation/Amortization Expense", "6200"),
  };
  lines.insert(lines.end(), asset1.begin(), asset1.end());
  return Joined(lines);
}

ReportSummary Summarize(std::string_view text) {
  SummaryReader reader;
  SplitReport(text, reader);
  return reader.summary();
}

TEST(AicpaSummary, ReadsNameYearBooksFirstDatesAndAccountSets) {
  const ReportSummary s = Summarize(SmallReport());
  EXPECT_EQ(s.company_name, "Acme Widgets Inc.");
  EXPECT_EQ(s.months, 12);
  EXPECT_EQ(s.year_end, (Date{12, 31, 2024}));
  EXPECT_EQ(s.books, "TAS");
  EXPECT_EQ(s.acquired_books, "TS") << "the AMT cell of the first Date Acquired row is blank";
  ASSERT_EQ(s.account_sets.size(), 2u) << "each set once";
  EXPECT_EQ(s.account_sets[0], (AccountNumbers{"1500", "1510", "6100"}));
  EXPECT_EQ(s.account_sets[1], (AccountNumbers{"1600", "1610", "6200"}));
}

TEST(AicpaSummary, HeadingsComeAfterAShortLineFromLine21AndStopAtAnUnknownHeading) {
  // Heading-like lines before line 21, and one after line 21 without a short line before
  // it, are not the headings.
  std::vector<std::string> lines = {"Title - Tax Basis  Short Year Co            06/30/2024",
                                    "For the  6 Months Ended 06/30/2024"};
  lines.push_back("");
  lines.push_back(HeadingLine({"Book"}));
  while (lines.size() < 21) lines.push_back("filler line of the heading part of the report");
  lines.push_back(HeadingLine({"AMT"}));
  lines.push_back("");
  lines.push_back(HeadingLine({"Federal", "Book", "Deferred", "State"}));
  lines.push_back(BookRow("Date Acquired", {"", "01/01/2024"}));
  const ReportSummary s = Summarize(Joined(lines));
  EXPECT_EQ(s.company_name, "Short Year Co");
  EXPECT_EQ(s.months, 6);
  EXPECT_EQ(s.year_end, (Date{6, 30, 2024}));
  EXPECT_EQ(s.books, "TB");
  EXPECT_EQ(s.acquired_books, "B");
  EXPECT_TRUE(s.account_sets.empty());
  EXPECT_FALSE(s.accounts_started);
}

TEST(AicpaSummary, AccountsBeforeTheFirstFormFeedAndBlankSetsMakeNoGroup) {
  const std::string text =
      Joined({ValueRow("Asset No.", "12-345x", 41), ValueRow("Asset No.", "A12", 41),
              AccountRow("Asset", "1"), AccountRow("Accumulated Depreciation", "2"),
              AccountRow("Depreciation/Amortization Expense", "3"), "\f",
              AccountRow("Depreciation/Amortization Expense", ""),
              AccountRow("Accumulated Depreciation", "2"),
              AccountRow("Depreciation/Amortization Expense", "3")});
  const ReportSummary s = Summarize(text);
  EXPECT_FALSE(s.company_name.has_value()) << "no line holds \" Basis\"";
  EXPECT_TRUE(s.letters_in_numbers);
  EXPECT_FALSE(s.dashes_in_numbers) << "a number too long to use does not count";
  ASSERT_EQ(s.account_sets.size(), 1u);
  EXPECT_EQ(s.account_sets[0], (AccountNumbers{"", "2", "3"}));
}

std::vector<AssetPage> Pages(std::string_view text) {
  std::vector<AssetPage> pages;
  AssetPageReader reader([&](const AssetPage& page) { pages.push_back(page); });
  SplitReport(text, reader);
  reader.Finish();
  return pages;
}

TEST(AicpaPages, RowsAreReadByLabelIntoCellsOfEachBook) {
  const std::vector<AssetPage> pages = Pages(SmallReport());
  ASSERT_EQ(pages.size(), 3u);
  const AssetPage& p = pages[0];
  EXPECT_EQ(p.line, 24);
  EXPECT_EQ(p.value(kAssetNo), "101");
  EXPECT_EQ(p.value(kDescription), "Drill press");
  EXPECT_FALSE(p.has(kCategory));
  EXPECT_TRUE(p.rows[kDateAcquired].present);
  EXPECT_EQ(p.cell(kDateAcquired, 0), "03/15/2022");
  EXPECT_EQ(p.cell(kDateAcquired, 1), "");
  EXPECT_EQ(p.cell(kCostOrBasis, 0), "12500.00") << "commas are removed from amounts";
  EXPECT_EQ(p.cell(kCostOrBasis, 2), "12000.00");
  EXPECT_FALSE(p.rows[kMethod].present);
  EXPECT_EQ(p.accounts, (AccountNumbers{"1500", "1510", "6100"}));
  EXPECT_EQ(pages[2].value(kAssetNo), "103");
  EXPECT_FALSE(pages[2].has(kDescription));
}

TEST(AicpaPages, LabelsIgnoreCaseAndNeedColumnOne) {
  AssetPage page;
  EXPECT_TRUE(ReadRow(ValueRow("CATEGORY", "Machinery and equipment  extra text"), 5, &page));
  EXPECT_EQ(page.value(kCategory), "Machinery and equipment") << "columns 40 to 64 only";
  EXPECT_FALSE(ReadRow("Category                                Misplaced", 6, &page));
  EXPECT_TRUE(ReadRow(BookRow("New/Used", {"New", "Used"}), 7, &page));
  EXPECT_EQ(page.cell(kNewUsed, 1), "Used");
  EXPECT_EQ(page.cell(kNewUsed, 6), "") << "there are six book columns at most";
  EXPECT_EQ(page.line, 5);
}

TEST(AicpaPages, AnAssetSplitAcrossAFormFeedIsReadWhole) {
  const std::string text = Joined({
      ValueRow("Asset No.", "7", 41),
      ValueRow("Asset Description (line 1)", "Warehouse roof"),
      BookRow("Date Acquired", {"07/01/2021"}),
      "\f",
      "Asset Detail Report (continued)",
      BookRow("Prior Depreciation", {"1,000.00"}),
      AccountRow("Depreciation/Amortization Expense", "6300"),
      "\f",
      ValueRow("Asset No.", "8", 41),
      BookRow("Date Acquired", {"08/01/2021"}),
      ValueRow("Asset No.", "9", 41),
      ValueRow("Asset Description (line 1)", "Second on the page"),
  });
  const std::vector<AssetPage> pages = Pages(text);
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_EQ(pages[0].value(kAssetNo), "7");
  EXPECT_EQ(pages[0].value(kDescription), "Warehouse roof");
  EXPECT_EQ(pages[0].cell(kPriorDepreciation, 0), "1000.00");
  EXPECT_EQ(pages[0].accounts[kExpenseAccount], "6300");
  EXPECT_EQ(pages[1].value(kAssetNo), "8");
  EXPECT_EQ(pages[1].cell(kDateAcquired, 0), "08/01/2021");
  EXPECT_FALSE(pages[1].has(kDescription)) << "the next asset's description is its own";
  EXPECT_EQ(pages[2].value(kAssetNo), "9");
  EXPECT_EQ(pages[2].line, 11);
}

TEST(AicpaPages, RowsBeforeAnyAssetAreGivenWithoutNumberAndHeadersAloneAreNot) {
  const std::vector<AssetPage> pages = Pages(
      Joined({"Cover page", "\f", BookRow("Date Acquired", {"01/01/2020"}), "\f", "Header only"}));
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_FALSE(pages[0].has(kAssetNo));
  EXPECT_EQ(pages[0].line, 3);
}

// A dispositions line written out column by column.
std::string DispositionLine(std::string_view number, std::string_view acquired,
                            std::string_view disposed, std::string_view proceeds,
                            std::string_view expense) {
  std::string line = "   " + std::string(number);
  line = testing::PadTo(line, 36) + std::string(acquired);
  line = testing::PadTo(line, 46) + std::string(disposed);
  line = testing::PadTo(line, 60) + std::string(14 - proceeds.size(), ' ') + std::string(proceeds);
  line = testing::PadTo(line, 90) + std::string(14 - expense.size(), ' ') + std::string(expense);
  return testing::PadTo(line, 134);
}

TEST(AicpaDispositions, ColumnsOfALineLongerThan133) {
  const std::string line = DispositionLine("  42", "01/15/19", "06/30/24", "1,250.50", "50.25");
  std::optional<Disposition> d = ParseDispositionLine(line, 3);
  ASSERT_TRUE(d);
  EXPECT_EQ(d->line, 3);
  EXPECT_EQ(d->asset_no, "42");
  EXPECT_EQ(d->disposal_date, (Date{6, 30, 2024}));
  EXPECT_DOUBLE_EQ(d->gross_proceeds, 1250.50);
  EXPECT_DOUBLE_EQ(d->expense_of_sale, 50.25);

  EXPECT_FALSE(ParseDispositionLine(line.substr(0, 133), 3)) << "133 characters are too few";
  EXPECT_FALSE(ParseDispositionLine(DispositionLine("42", "", "06/30/24", "1.00", "0"), 3));
  EXPECT_FALSE(ParseDispositionLine(DispositionLine("42", "01/15/19", "", "1.00", "0"), 3));
  std::optional<Disposition> bad =
      ParseDispositionLine(DispositionLine("42", "01/15/19", "13/45/24", "1.00", "0"), 3);
  ASSERT_TRUE(bad) << "both dates are there";
  EXPECT_FALSE(bad->disposal_date) << "but the disposal date is no date";
  EXPECT_EQ(bad->disposal_text, "13/45/24");
}

TEST(AicpaAmounts, SignsParenthesesAndTrailingMinus) {
  EXPECT_DOUBLE_EQ(ReadAmount(" 1234.50 "), 1234.50);
  EXPECT_DOUBLE_EQ(ReadAmount("(12.00)"), -12.0);
  EXPECT_DOUBLE_EQ(ReadAmount("12.00-"), -12.0);
  EXPECT_DOUBLE_EQ(ReadAmount("n/a"), 0.0);
  EXPECT_EQ(LeadingInteger(" 100.00"), 100);
  EXPECT_EQ(LeadingInteger("-7/6"), -7);
  EXPECT_EQ(LeadingInteger("99999999999999"), 999999999) << "nine digits at most";
}

}  // namespace
}  // namespace nv::aicpa
