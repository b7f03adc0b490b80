#include "import/bna/conversion/conversion_eval.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "import/bna/conversion/conversion_testing.h"
#include "store/asset/asset.h"
#include "ui/scripted_ui.h"

namespace nv::bna {
namespace {

using M = ConversionMethod;

class ConversionEvalTest : public ::testing::Test {
 protected:
  ConversionEvalTest() {
    context_.definitions = &definitions_;
    context_.columns = columns_;
    context_.errors = &errors_;
  }

  void SetColumns(std::vector<std::string> columns) {
    columns_ = std::move(columns);
    context_.columns = columns_;
  }

  std::optional<std::string> Eval(std::string_view expression) {
    const TokenList tokens = Tokenize(expression);
    return Evaluate(tokens, 0, context_).value;
  }

  // The value of a SPECIAL field "Test" whose expression is `expression`.
  std::optional<std::string> Special(std::string expression, int column = -1) {
    definitions_.SetSpecial("Test", std::move(expression));
    FieldDefinition entry;
    entry.name = "Test";
    entry.column = column;
    entry.method = M::kSpecial;
    entry.active = true;
    return EvaluateSpecial(entry, context_);
  }

  testing::MemoryDefinitions definitions_;
  std::vector<std::string> columns_;
  std::vector<ConversionError> errors_;
  ConversionContext context_;
};

TEST_F(ConversionEvalTest, LiteralsStringsAndTheTokenAfterATerm) {
  const TokenList tokens = Tokenize("\"a \"\"b\"\"\" rest");
  const Evaluation e = Evaluate(tokens, 0, context_);
  EXPECT_EQ(e.value, "a \"\"b\"\"");  // doubled quotes stay doubled
  EXPECT_EQ(e.next, 1u);
  EXPECT_EQ(Eval("Hello"), "Hello");
  EXPECT_EQ(Eval("*"), "*");
  // A keyword without its list gives none.
  EXPECT_EQ(Eval("right"), std::nullopt);
  EXPECT_EQ(Eval("RIGHT(\"abcdef\", 2)"), "ef");
}

TEST_F(ConversionEvalTest, ConcatLeavesOutABlankOrMissingColumn) {
  SetColumns({"HQ", ""});
  definitions_.Define("Location", M::kEntire, 0);
  definitions_.Define("Category", M::kEntire, 1);
  definitions_.Define("Account No.", M::kEntire, 7);  // past the line's last column
  EXPECT_EQ(Eval("concat({Location}, {Category})"), "HQ");
  EXPECT_EQ(Eval("concat({Account No.}, {Location}, \"-\", {Category})"), "HQ-");
  // Line ends, bare or quoted, and the quotes of a zerofill result are dropped on the way.
  EXPECT_EQ(Eval("concat(a, \"\\n\", b, \"\\r\\n\", zerofill(7, 3), c)"), "a\nb\r\n007c");
}

TEST_F(ConversionEvalTest, TextFunctions) {
  SetColumns({"Boiler"});
  definitions_.Define("Description", M::kEntire, 0);
  EXPECT_EQ(Eval("right({Description}, 10)"), "Boiler");
  EXPECT_EQ(Eval("left({Description}, 3)"), "Boi");
  EXPECT_EQ(Eval("left({Description}, 0)"), std::nullopt);
  EXPECT_EQ(Eval("mid(\"abcdef\", 2, 3)"), "bcd");
  EXPECT_EQ(Eval("mid(\"abcdef\", 5, 9)"), "ef");
  EXPECT_EQ(Eval("mid(\"abc\", 3, 1)"), std::nullopt);  // start must be below the length
  EXPECT_EQ(Eval("mid(\"abc\", 0, 1)"), std::nullopt);
  EXPECT_EQ(Eval("trim(\"  x y \")"), "x y");
  EXPECT_EQ(Eval("trim(zerofill(ab, 4))"), "00ab");
  EXPECT_EQ(Eval("findchar(\"a-b-c\", \"-\", 2)"), "4");
  EXPECT_EQ(Eval("findchar(\"-ab\", \"-\", 1)"), std::nullopt);  // the search starts at the second
  EXPECT_EQ(Eval("findchar(\"a-b\", \"-\", 2)"), std::nullopt);
}

TEST_F(ConversionEvalTest, ZerofillQuotesItsResult) {
  EXPECT_EQ(Eval("zerofill(12, 5)"), "\"00012\"");
  EXPECT_EQ(Eval("zerofill(\"123456\", 3)"), "\"456\"");
  EXPECT_EQ(Eval("zerofill(12, 0)"), std::nullopt);
  EXPECT_EQ(Eval("zerofill(12, 99999)"), std::nullopt);
}

TEST_F(ConversionEvalTest, Arithmetic) {
  EXPECT_EQ(Eval("divide(100, 0)"), "0.00");
  EXPECT_EQ(Eval("divide(100, 0, 5)"), "0.00");
  EXPECT_EQ(Eval("divide(100, 8, <nothing>)"), "12.50");
  EXPECT_EQ(Eval("add(\"1,000.50\", 2, <nothing>)"), "1002.50");
  EXPECT_EQ(Eval("multiply(3, 2.5)"), "7.50");
  EXPECT_EQ(Eval("neg(\"4.126\")"), "-4.13");
  EXPECT_EQ(Eval("neg(<nothing>)"), "0.00");
  EXPECT_EQ(Eval("numberatend(\"Desk 12.50  \")"), "12.50");
  EXPECT_EQ(Eval("numberatend(\"Lot-7\")"), "-7.00");
  EXPECT_EQ(Eval("numberatend(\"none\")"), "0.00");
  EXPECT_EQ(Eval("numberatend(\"\")"), std::nullopt);
}

TEST_F(ConversionEvalTest, CmpComparesIntegersOrCents) {
  EXPECT_EQ(Eval("cmp(10, 9)"), "+1");
  EXPECT_EQ(Eval("cmp(1.10, 1.1)"), "0");
  EXPECT_EQ(Eval("cmp(\"1,000\", 999)"), "+1");
  EXPECT_EQ(Eval("cmp(2, 2.004)"), "0");
  EXPECT_EQ(Eval("cmp(2, 2.01)"), "-1");
}

TEST_F(ConversionEvalTest, WrongCountsAndUnclosedListsGiveNoneAndSayWhere) {
  EXPECT_EQ(Eval("right(\"abc\")"), std::nullopt);
  ASSERT_EQ(errors_.size(), 1u);
  EXPECT_EQ(errors_[0].position, 0u);
  EXPECT_EQ(Eval("concat(a, left(b, 1)"), std::nullopt);
  ASSERT_EQ(errors_.size(), 2u);
  EXPECT_EQ(errors_[1].ToString(), "\"concat(a, left(b, 1)\" at 0: argument list is not closed");
  EXPECT_EQ(Eval("execute(nosuch, 1)"), std::nullopt);
  EXPECT_EQ(errors_.back().position, 8u);
}

TEST_F(ConversionEvalTest, FieldReferencesFollowGroupsSchedulesAndMethods) {
  context_.letter = 'T';
  definitions_.SetScheduleName('T', "Tax");
  definitions_.Define("Basis", M::kSet, -1, "1000");
  definitions_.Define("Basis, Tax", M::kSet, -1, "900");
  definitions_.Define("Useful Life", M::kSet, -1, "5");
  definitions_.Define("Convention", M::kDefault);
  definitions_.Define("Hidden", M::kSet, -1, "x");
  definitions_.Last().active = false;  // its group box is not checked
  definitions_.Define("Skipped", M::kSet, -1, "x");
  definitions_.Last().no_copy = true;

  EXPECT_EQ(Eval("<Basis>"), "900");
  EXPECT_EQ(Eval("<Useful Life>"), "5");  // falls back to the general definition
  EXPECT_EQ(Eval("<Hidden>"), std::nullopt);
  EXPECT_EQ(Eval("{Hidden}"), std::nullopt);
  EXPECT_EQ(Eval("<Skipped>"), std::nullopt);
  EXPECT_EQ(Eval("<Unknown>"), std::nullopt);
  EXPECT_EQ(Eval("<Convention>"), "1");  // DEFAULT: the built-in default
  EXPECT_EQ(Eval("{Basis}"), "900");     // SET through the column form too
}

TEST_F(ConversionEvalTest, SpecialFieldsNestAndCirclesStop) {
  SetColumns({"12", "7"});
  definitions_.Define("Cost", M::kSpecial, 0);
  definitions_.SetSpecial("Cost", "multiply({Qty}, {Price})");
  definitions_.Define("Qty", M::kEntire, 0);
  definitions_.Define("Price", M::kEntire, 1);
  definitions_.Define("Loop", M::kSpecial);
  definitions_.SetSpecial("Loop", "concat(x, <Loop>)");
  EXPECT_EQ(Eval("add(<Cost>, 1)"), "85.00");
  EXPECT_EQ(Eval("special(\"Cost\")"), "84.00");
  EXPECT_EQ(Eval("<Loop>"), std::nullopt);
  ASSERT_FALSE(errors_.empty());
  // The next evaluation has a fresh budget.
  EXPECT_EQ(Eval("<Cost>"), "84.00");

  std::string deep;
  for (int i = 0; i < 500; ++i) deep += "trim(";
  deep += "x";
  for (int i = 0; i < 500; ++i) deep += ")";
  EXPECT_EQ(Eval(deep), std::nullopt);
}

TEST_F(ConversionEvalTest, BlankSpecialFallsBackToTheNameBeforeTheCommaThenTheDefault) {
  definitions_.SetSpecial("Description", "concat(Desk, \" \", Lamp)");
  FieldDefinition entry;
  entry.name = "Description, Tax";
  EXPECT_EQ(EvaluateSpecial(entry, context_), "Desk Lamp");
  entry.name = "Business Percent, Book";
  EXPECT_EQ(EvaluateSpecial(entry, context_), "100");
  entry.name = "Misc. Codes";
  EXPECT_EQ(EvaluateSpecial(entry, context_), std::nullopt);
}

TEST_F(ConversionEvalTest, TableMatchesTheOwnColumnWithPatterns) {
  const std::string table = "table(*) \"1*\" -> \"Furniture\" : default -> \"Other\"";
  SetColumns({"1A"});
  EXPECT_EQ(Special(table, 0), "Furniture");
  SetColumns({"1"});
  EXPECT_EQ(Special(table, 0), "Other");
}

TEST_F(ConversionEvalTest, TableWithSeveralKeysAndNoMatch) {
  SetColumns({"B", "Used"});
  definitions_.Define("Kind", M::kEntire, 1);
  const std::string table =
      "TABLE({Kind}, left(\"Bxx\", 1)) : \"New\", * -> N : \"Used\", \"A\" -> X : "
      "\"Used\" -> concat(U, {Kind}) : * , \"B\" -> never";
  EXPECT_EQ(Special(table), "UUsed");
  EXPECT_EQ(Special("table(\"k\") \"z\" -> 1"), std::nullopt);
  EXPECT_EQ(Special("table(\"k\" \"k\" -> 1"), std::nullopt);  // keys not closed
  // A matching row whose result gives nothing still gives the empty text.
  EXPECT_EQ(Special("table(\"k\") * -> <nothing>"), "");
}

TEST_F(ConversionEvalTest, OnlyTheMatchingRowIsEvaluated) {
  AnswerScript script;
  ScriptedUi ui(script);
  context_.ui = &ui;
  EXPECT_EQ(Special("table(a) \"b\" -> display(no) : \"a\" -> display(yes)"), "yes");
  EXPECT_NE(ui.transcript().find("<yes>"), std::string::npos);
  EXPECT_EQ(ui.transcript().find("<no>"), std::string::npos);
  EXPECT_EQ(Eval("display(<nothing>)"), std::nullopt);
  EXPECT_NE(ui.transcript().find("(null)"), std::string::npos);
}

TEST_F(ConversionEvalTest, ColumnFunctionNamesColumnsByLetters) {
  std::vector<std::string> columns(30);
  columns[0] = "first";
  columns[26] = "twenty-seventh";
  SetColumns(columns);
  EXPECT_EQ(Eval("column(A)"), "first");
  EXPECT_EQ(Eval("column(\" aa \")"), "twenty-seventh");
  EXPECT_EQ(Eval("column(AE)"), std::nullopt);  // index 30, past the last column
  EXPECT_EQ(Eval("column(\"A1\")"), std::nullopt);
  EXPECT_EQ(Eval("column(ZZZZZZZZZZZZZZZZ)"), std::nullopt);
}

TEST_F(ConversionEvalTest, ArgumentsUseTheirFirstTermOnly) {
  // Only the first term of an argument counts, so "-5" is the text "-".
  EXPECT_EQ(Eval("concat(a b, c)"), "ac");
  EXPECT_EQ(Eval("add(-5, 3)"), "3.00");
  EXPECT_EQ(Eval("add(\"-5\", 3)"), "-2.00");
  EXPECT_EQ(Eval("concat(x, , y)"), "xy");
  EXPECT_EQ(Eval("concat()"), std::nullopt);
  // Parentheses nest inside an argument.
  EXPECT_EQ(Eval("left(concat(ab, (c, d)), 3)"), "ab(");
}

TEST_F(ConversionEvalTest, LongScheduleNamesAreCutWithTheFieldName) {
  context_.letter = 'S';
  definitions_.SetScheduleName('S', "California State");
  // "Business Percent, California State" cut to 25 characters.
  definitions_.Define("Business Percent, Califor", M::kSet, -1, "80");
  EXPECT_EQ(Eval("<Business Percent>"), "80");
}

TEST_F(ConversionEvalTest, AValueThatKeepsDoublingIsStopped) {
  SetColumns({std::string(100, 'x')});
  definitions_.Define("Seed", M::kEntire, 0);
  std::string previous = "Seed";
  for (int i = 0; i < 12; ++i) {
    const std::string name = "D" + std::to_string(i);
    definitions_.Define(name, M::kSpecial);
    definitions_.SetSpecial(name, "concat(<" + previous + ">, <" + previous + ">)");
    previous = name;
  }
  // 100 * 2^9 is 51,200 characters; one more doubling passes 64 KB.
  EXPECT_EQ(Eval("<D8>")->size(), 51'200u);
  EXPECT_EQ(Eval("<D11>"), std::nullopt);
  EXPECT_EQ(errors_.back().reason, "value too long");
}

TEST_F(ConversionEvalTest, SpecialFunctionTableHasNoOwnColumn) {
  SetColumns({"7"});
  definitions_.SetSpecial("Lookup", "table(*) \"\" -> empty : default -> other");
  EXPECT_EQ(Eval("special(Lookup)"), "empty");
  // A pattern past the number of keys is ignored.
  EXPECT_EQ(Special("table(*) \"7\", \"nothing like it\" -> seven", 0), "seven");
}

TEST_F(ConversionEvalTest, DefaultsLookAtTheAssetBeingBuilt) {
  NvAsset asset;
  asset.Clear("BT");
  context_.asset = &asset;
  context_.letter = 'T';
  EXPECT_EQ(BuiltinDefault("4797 Type", context_), "45");
  EXPECT_EQ(BuiltinDefault("Convention, Tax", context_), "1");
  asset.schedules[0].useful_life = {15, 1};
  asset.schedules[1].method = kMethodMacrs;
  EXPECT_EQ(BuiltinDefault("4797 TYPE", context_), "50");
  EXPECT_EQ(BuiltinDefault("Convention, Tax", context_), "Y");
  context_.letter = 'B';
  EXPECT_EQ(BuiltinDefault("Convention", context_), "1");
  EXPECT_EQ(BuiltinDefault("Disposal Code", context_), " ");
  EXPECT_EQ(BuiltinDefault("Disposal Date", context_), "");
  EXPECT_EQ(BuiltinDefault("Basis", context_), std::nullopt);
}

}  // namespace
}  // namespace nv::bna
