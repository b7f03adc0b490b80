#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "import/bna/conversion/conversion_eval.h"
#include "import/bna/conversion/conversion_testing.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"

namespace nv::bna {
namespace {

class ConversionLibraryTest : public ::testing::Test {
 protected:
  ConversionLibraryTest() {
    context_.definitions = &definitions_;
    context_.locations = &locations_;
    context_.categories = &categories_;
    context_.account_groups = [this] {
      ++group_loads_;
      return &groups_;
    };
  }

  std::optional<std::string> Eval(std::string_view expression) {
    const TokenList tokens = Tokenize(expression);
    return Evaluate(tokens, 0, context_).value;
  }

  testing::MemoryDefinitions definitions_;
  NvLocCatList locations_;
  NvLocCatList categories_;
  AccountGroupList groups_;
  int group_loads_ = 0;
  ConversionContext context_;
};

TEST_F(ConversionLibraryTest, Lives) {
  EXPECT_EQ(Eval("execute(stdlife, 2.5, 3)"), " 2-9");
  EXPECT_EQ(Eval("execute(stdlife, 3, 0)"), " 3");
  EXPECT_EQ(Eval("execute(stdlife, 2.5)"), std::nullopt);  // too few
  EXPECT_EQ(Eval("execute(bnalife, \"39 6\")"), "39-6");
  EXPECT_EQ(Eval("execute(BNALIFE, 7)"), " 7");
  EXPECT_EQ(Eval("execute(stddatediff, \"03/15/2020\", \"01/20/2015\")"), " 5-2");
  EXPECT_EQ(Eval("execute(stddatediff, \"01/15/2020\", \"01/20/2015\")"), "5");
}

TEST_F(ConversionLibraryTest, Dates) {
  EXPECT_EQ(Eval("execute(INTDATE, 123199)"), "12/31/99");
  EXPECT_EQ(Eval("execute(INTDATE, 12311999)"), "12/31/1999");
  EXPECT_EQ(Eval("execute(INTDATE, 70104)"), "07/01/04");
  EXPECT_EQ(Eval("execute(stddateplusdays, \"12/25/99\", 10)"), "01/04/2000");
  EXPECT_EQ(Eval("execute(stddatelastday, \"2/3/2024\")"), "02/29/2024");
  EXPECT_EQ(Eval("execute(stddatefirstday, \"2/13/2024\")"), "02/01/2024");
  EXPECT_EQ(Eval("execute(stddatefirstday, junk)"), "00/00/0000");
  EXPECT_EQ(Eval("execute(STDDATECOMPARE, \"1/2/2020\", \"01/01/2020\")"), "1");
  EXPECT_EQ(Eval("execute(STDDATECOMPARE, \"1/2/20\", \"01/02/2020\")"), "0");
  EXPECT_EQ(Eval("execute(STDDATECOMPARE, \"1/2/50\", \"01/02/2020\")"), "-1");
}

TEST_F(ConversionLibraryTest, StdDateStartsEmptyAndAppliesEachTerm) {
  context_.today = Date{1, 31, 2024};
  EXPECT_EQ(Eval("execute(STDDATE)"), "00/00/0000");
  EXPECT_EQ(Eval("execute(STDDATE, TODAY)"), "01/31/2024");
  // One month on from 31 January is the end of February; then a year; then ten days.
  EXPECT_EQ(Eval("execute(STDDATE, TODAY, PLUSMDY(1))"), "02/29/2024");
  EXPECT_EQ(Eval("execute(STDDATE, TODAY, PLUSMDY(1, 10, 1))"), "03/10/2025");
  // A minus is a token of its own, so a negative amount is written as a string.
  EXPECT_EQ(Eval("execute(STDDATE, TODAY, PLUSMDY(\"-13\"), whatever)"), "12/31/2022");
  EXPECT_EQ(Eval("execute(STDDATE, TODAY, PLUSMDY(-13))"), "01/31/2024");
  EXPECT_EQ(Eval("execute(STDDATE, PLUSMDY(1), TODAY)"), "01/31/2024");
  EXPECT_EQ(Eval("execute(STDDATE, TODAY, PLUSMDY(0, 0, 99999))"), "00/00/0000");
}

TEST_F(ConversionLibraryTest, AmountsAndLineNumbers) {
  context_.implied_decimals = 2;
  context_.line_number = 41;
  EXPECT_EQ(Eval("execute(STDDOLLAR, \"(1,234)\")"), "-12.34");
  EXPECT_EQ(Eval("execute(STDDOLLAR, \"1,234.5\")"), "1234.50");
  EXPECT_EQ(Eval("execute(STDACCUMFROMNBV, 1000, 250.5)"), "    749.50");
  EXPECT_EQ(Eval("execute(STDITC, 0.004)"), "3");
  EXPECT_EQ(Eval("execute(STDITC, 12)"), "1");
  EXPECT_EQ(Eval("execute(STDLINENUMBER)"), "41");
  EXPECT_EQ(Eval("execute(stdlinenumber, 2)"), "43");
}

TEST_F(ConversionLibraryTest, LocationsAndCategoriesAreAddedOnce) {
  EXPECT_EQ(Eval("execute(stdloccat, LOC, \"  Main Warehouse North Wing 7  \")"),
            "Main Warehouse North Wing");
  ASSERT_EQ(locations_.size(), 1u);
  EXPECT_EQ(locations_[0].code, "Main Wareh");
  EXPECT_EQ(locations_[0].description, "Main Warehouse North Wing");
  EXPECT_EQ(Eval("execute(stdloccat, loc, \"Main Warehouse South\")"), "Main Warehouse South");
  EXPECT_EQ(locations_.size(), 1u);  // the code "Main Wareh" is there already
  EXPECT_EQ(Eval("execute(stdloccat, cat, \"   \")"), std::nullopt);
  EXPECT_EQ(Eval("execute(stdloccat, dept, Office)"), std::nullopt);
  EXPECT_TRUE(categories_.empty());

  categories_.Insert("FURN", "Office Furniture");
  EXPECT_EQ(Eval("execute(stdloccatlookup, cat, \"office furniture\")"), "FURN");
  EXPECT_EQ(categories_.size(), 1u);
  EXPECT_EQ(Eval("execute(stdloccatlookup, cat, Vehicles)"), "Vehicles");
  EXPECT_EQ(categories_.size(), 2u);
}

TEST_F(ConversionLibraryTest, AccountGroupsAreFoundOrMade) {
  groups_.groups.push_back(AccountGroup{"OFFICE", "", {"1500", "1510", "6100", "2100"}});
  EXPECT_EQ(Eval("execute(STDAGRP, x, 1500, 1510, 6100, 2100)"), "OFFICE");
  // A new set of accounts under a name that is taken gets the name with an "A".
  EXPECT_EQ(Eval("execute(STDAGRP, OFFICE, 1501, 1510, 6100, 2100)"), "OFFICEA");
  EXPECT_EQ(groups_.groups.size(), 2u);
  // Without a name the first account names the group; a blank name makes none.
  EXPECT_EQ(Eval("execute(STDAGRP, <none>, 1700, 1710, 6300, 2300)"), "1700");
  EXPECT_EQ(Eval("execute(STDAGRP, \" \", 1800, 1810, 6400, 2400)"), " ");
  EXPECT_EQ(groups_.groups.size(), 3u);
  EXPECT_EQ(group_loads_, 4);
  EXPECT_EQ(Eval("execute(STDAGRP, x, 1, 2, 3)"), std::nullopt);  // too few
}

}  // namespace
}  // namespace nv::bna
