#include "store/schedule/schedule_definitions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/schedule/schedule_testing.h"

namespace nv {
namespace {

using testing::ScheduleTestCompany;

// "LETTER TYPE DESCRIPTION SOURCE" of each definition, '*' after the effective ones.
std::vector<std::string> Rows(const ScheduleDefinitionList& list) {
  std::vector<std::string> rows;
  for (const ScheduleDefinition& d : list) {
    rows.push_back(std::string(1, d.letter) + " " + d.type + " " + d.description + " " +
                   std::to_string(d.source) + (d.effective ? "*" : ""));
  }
  return rows;
}

using Strings = std::vector<std::string>;

TEST(ScheduleDefinitionsTest, UnmatchedCompanyScheduleIsWrittenToTheCompanyFile) {
  ScheduleTestCompany t;
  t.AddSchedule('B', "B", "Book");       // standard B matches
  t.AddSchedule('X', "CA", "Calif   ");  // nothing matches: gains X=CA,Calif
  t.AddSchedule('K', "t", "Fed");        // all-companies K=T matches, ignoring case
  t.PutInstallation("[Schedule Definitions]\r\nK=T,Federal\r\n");

  ScheduleDefinitionList list = LoadScheduleDefinitions(t.company(), kAllScheduleSources);
  EXPECT_EQ(t.Settings(), "[Schedule Definitions]\r\nX=CA,Calif\r\n");
  EXPECT_EQ(t.Installation(), "[Schedule Definitions]\r\nK=T,Federal\r\n");
  ASSERT_TRUE(list.Find('X', kThisCompanySource));
  EXPECT_TRUE(list[*list.Find('X', kThisCompanySource)].effective);

  // The second load finds the line and writes nothing more.
  LoadScheduleDefinitions(t.company(), kAllScheduleSources);
  EXPECT_EQ(t.Settings(), "[Schedule Definitions]\r\nX=CA,Calif\r\n");
}

TEST(ScheduleDefinitionsTest, ThisCompanyDefinitionOfAnotherTypeTakesTheEntrysType) {
  ScheduleTestCompany t;
  t.AddSchedule('T', "A", "Tax entry");
  t.PutSettings("[Misc]\r\nSingleUserUP=yes\r\n[Schedule Definitions]\r\nT=B,My Tax\r\n");
  ScheduleDefinitionList list = LoadScheduleDefinitions(t.company(), kAllScheduleSources);
  // Its description stays; only the type follows the company.
  EXPECT_EQ(t.Settings(), "[Misc]\r\nSingleUserUP=yes\r\n[Schedule Definitions]\r\nT=A,My Tax\r\n");
  EXPECT_EQ(Rows(list), (Strings{"T T Tax 1", "B B Book 1*", "A A AMT 1*", "T A My Tax 4*",
                                 "C C ACE 1*", "S S State 1*", "O O Other 1*"}));
}

TEST(ScheduleDefinitionsTest, EntriesEndAtTheFirstWithoutALetter) {
  ScheduleTestCompany t;
  t.AddSchedule('Q', "O", "Quick");
  t.AddSchedule(' ', "O", "Nobody");
  t.AddSchedule('R', "O", "Rest");
  LoadScheduleDefinitions(t.company(), kStandardSource);
  EXPECT_EQ(t.Settings(), "[Schedule Definitions]\r\nQ=O,Quick\r\n");
}

TEST(ScheduleDefinitionsTest, StoredValuesAreReadByTheirRules) {
  ScheduleTestCompany t;
  // Company values longer than 22 characters, and blank ones, are not definitions.
  t.PutSettings(
      "[schedule definitions]\r\n"
      "B=B\r\n"
      "D=CAX,California and more\r\n"  // 23 characters
      "E=CAX,California and mor\r\n"   // 22 characters
      "F=  \r\n"
      "g=\"G,Gen, Ledger\"\r\n"  // quotes dropped, lower-case key
      "HH=O,Two chars\r\n"       // read under its first letter: no H key
      "1=O,Digit\r\n");
  // The installation file is read up to 300 characters: this comma lies beyond them.
  t.PutInstallation("[Schedule Definitions]\r\nM=MM" + std::string(298, 'x') + ",Late\r\n");
  ScheduleDefinitionList list = LoadScheduleDefinitions(t.company(), kAllScheduleSources & ~1);
  EXPECT_EQ(Rows(list),
            (Strings{"B B  4*", "E CA California 4*", "M MM  2*", "G G Gen, Ledge 4*"}));
}

TEST(ScheduleDefinitionsTest, InstallationFileIsFoundIgnoringCaseAndCreatedUpperCase) {
  ScheduleTestCompany t;
  ASSERT_TRUE(
      WriteFileAtomically(t.dir().File("kelnvwin.ini"), "[Schedule Definitions]\nW=S,Wages\n"));
  std::optional<ScheduleDefinition> found =
      LookupScheduleDefinition(t.company(), 'W', kAllCompaniesSource);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->description, "Wages");
  EXPECT_EQ(found->source, kAllCompaniesSource);

  ScheduleTestCompany fresh;
  ASSERT_TRUE(WriteScheduleDefinition(fresh.company(), {'W', "S", "Wages", 2, false}));
  EXPECT_EQ(fresh.Installation(), "[Schedule Definitions]\r\nW=S,Wages\r\n");
}

TEST(ScheduleDefinitionsTest, LookupPrefersThisCompanyThenAllCompaniesThenStandard) {
  ScheduleTestCompany t;
  t.PutSettings("[Schedule Definitions]\r\nB=B,Co Book\r\n");
  t.PutInstallation("[Schedule Definitions]\r\nB=B,All Book\r\nT=T,All Tax\r\n");
  auto description = [&](char letter, int mask) {
    std::optional<ScheduleDefinition> d = LookupScheduleDefinition(t.company(), letter, mask);
    return d ? d->description + "/" + std::to_string(d->source) : std::string("none");
  };
  EXPECT_EQ(description('B', 7), "Co Book/4");
  EXPECT_EQ(description('B', 3), "All Book/2");
  EXPECT_EQ(description('B', 1), "Book/1");
  EXPECT_EQ(description('T', 5), "Tax/1");
  EXPECT_EQ(description('T', 4), "none");
  EXPECT_EQ(description('Z', 7), "none");
}

TEST(ScheduleDefinitionsTest, DisplayOrderRanksByTypeThenLetter) {
  ScheduleTestCompany t;
  t.PutSettings("[Schedule Definitions]\r\nZ=S,State\r\nK=G,General\r\nX=CA,Calif\r\n");
  t.PutInstallation("[Schedule Definitions]\r\nN=B,Book\r\nM=T,Tax\r\nY=Q,Odd\r\n");
  ScheduleDefinitionList list =
      LoadScheduleDefinitions(t.company(), kAllCompaniesSource | kThisCompanySource);
  EXPECT_EQ(Rows(list), (Strings{"M T Tax 2*", "N B Book 2*", "X CA Calif 4*", "Z S State 4*",
                                 "K G General 4*", "Y Q Odd 2*"}));
}

TEST(ScheduleDefinitionsTest, OnlyTheMostSpecificDefinitionOfALetterIsEffective) {
  ScheduleTestCompany t;
  t.PutSettings("[Schedule Definitions]\r\nB=B,Co Book\r\n");
  t.PutInstallation("[Schedule Definitions]\r\nB=B,All Book\r\nO=O,All Other\r\n");
  ScheduleDefinitionList list = LoadScheduleDefinitions(t.company(), kAllScheduleSources);
  EXPECT_EQ(Rows(list),
            (Strings{"T T Tax 1*", "B B Book 1", "B B All Book 2", "B B Co Book 4*", "A A AMT 1*",
                     "C C ACE 1*", "S S State 1*", "O O Other 1", "O O All Other 2*"}));
}

TEST(ScheduleDefinitionsTest, SaveRewritesBothSectionsWithoutStandardDefinitions) {
  ScheduleTestCompany t;
  t.PutSettings("[Schedule Definitions]\r\nQ=O,Old\r\n[Misc]\r\nSingleUserUP=no\r\n");
  t.PutInstallation(
      "[NV Parameters]\r\nConfiguration Locked=0\r\n[Schedule Definitions]\r\n"
      "R=O,Gone\r\n");
  ScheduleDefinitionList list;
  list.Add({'B', "B", "Book", kStandardSource, true});
  list.Add({'X', "CA", "Calif", kThisCompanySource, true});
  list.Add({'W', "S", "Wages", kAllCompaniesSource, true});
  list.Add({'V', "NY", "New York", kThisCompanySource, true});
  ASSERT_TRUE(SaveScheduleDefinitions(t.company(), list));
  EXPECT_EQ(t.Settings(),
            "[Misc]\r\nSingleUserUP=no\r\n[Schedule Definitions]\r\n"
            "V=NY,New York\r\nX=CA,Calif\r\n");
  EXPECT_EQ(t.Installation(),
            "[NV Parameters]\r\nConfiguration Locked=0\r\n"
            "[Schedule Definitions]\r\nW=S,Wages\r\n");
  EXPECT_FALSE(WriteScheduleDefinition(t.company(), {'B', "B", "Book", kStandardSource, false}));
  EXPECT_FALSE(WriteScheduleDefinition(t.company(), {'[', "B", "Book", kThisCompanySource, false}));
}

TEST(ScheduleDefinitionsTest, QuotedDescriptionsSurviveASaveAndALoad) {
  ScheduleTestCompany t;
  ScheduleDefinitionList list;
  list.Add({'Q', "\"", "x\"", kThisCompanySource, true});
  list.Add({'P', "B", "\"Paper\"", kAllCompaniesSource, true});
  ASSERT_TRUE(SaveScheduleDefinitions(t.company(), list));
  EXPECT_EQ(t.Settings(), "[Schedule Definitions]\r\nQ=\"\",x\"\"\r\n");
  ScheduleDefinitionList read = LoadScheduleDefinitions(t.company(), 6);
  EXPECT_TRUE(SameScheduleDefinitions(read, list));
}

TEST(ScheduleDefinitionsTest, TypeNamesCaptionsAndStates) {
  EXPECT_EQ(ScheduleTypeName('B'), "Book");
  EXPECT_EQ(ScheduleTypeName('D'), "Disposition");
  EXPECT_EQ(ScheduleTypeName('C'), "ACE");
  EXPECT_EQ(ScheduleTypeName('X'), "");
  EXPECT_EQ(ScheduleTypeCaption("CA"), "State(CA)");
  EXPECT_EQ(ScheduleTypeCaption("S"), "State(Generic)");
  EXPECT_EQ(ScheduleTypeCaption("G"), "General");
  EXPECT_EQ(ScheduleTypeCaption("X"), "invalid");
  EXPECT_EQ(ScheduleTypeCaption(""), "invalid");
  EXPECT_EQ(ScheduleTypeCaption("ABC"), "invalid");

  ASSERT_EQ(StateCodes().size(), 52u);
  EXPECT_EQ(StateCodes().front(), "AL");
  EXPECT_EQ(StateCodes().back(), "WY");
  EXPECT_EQ(StateName("CN"), "Conn");
  EXPECT_EQ(StateName("NJ"), "New JerseyJ");
  EXPECT_EQ(StateName("PRX"), "Prto Rico");
  EXPECT_EQ(StateName("WY"), "Wyoming");
  EXPECT_EQ(StateName("CT"), std::nullopt);
  EXPECT_EQ(StateName("C"), std::nullopt);
}

TEST(ScheduleDefinitionsTest, CompanyScheduleNamesAndConsolidation) {
  ScheduleTestCompany t;
  t.AddSchedule('B', "B", "Book      ");
  t.AddSchedule('X', "CA", "Calif     ");
  EXPECT_EQ(CompanyScheduleName(t.company(), 'B'), "Book");
  EXPECT_EQ(CompanyScheduleName(t.company(), 'X'), "Calif(CA)");
  EXPECT_EQ(CompanyScheduleName(t.company(), 'Q'), "");

  EXPECT_FALSE(IsConsolidatedCompany(t.SettingsPath()));
  t.PutSettings("[Consolidated Company]\r\n");
  EXPECT_FALSE(IsConsolidatedCompany(t.SettingsPath()));
  t.PutSettings("[consolidated company]\r\nCO2=1\r\n");
  EXPECT_TRUE(IsConsolidatedCompany(t.SettingsPath()));
}

}  // namespace
}  // namespace nv
