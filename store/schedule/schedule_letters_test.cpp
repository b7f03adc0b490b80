#include "store/schedule/schedule_letters.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "store/schedule/schedule_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ScheduleTestCompany;
using testing::Script;

std::string Arranged(const std::string& letters, size_t width) {
  return ArrangeAceLetters(letters, width).value_or("<no room>");
}

TEST(ScheduleLettersTest, AceGetsTaxAndAmtInFrontOfIt) {
  EXPECT_EQ(Arranged("TC", 7), "TAC");
  EXPECT_EQ(Arranged("CT", 7), "TAC");
  EXPECT_EQ(Arranged("C", 7), "TAC");
  EXPECT_EQ(Arranged("BCS", 7), "BTACS");
  EXPECT_EQ(Arranged("CBAT", 7), "BTAC");  // A and then C move; B stays in front
  EXPECT_EQ(Arranged("TAC", 3), "TAC");    // nothing missing needs no room
  EXPECT_EQ(Arranged("TC", 4), "TAC");
  // One letter is missing but room is wanted for two.
  EXPECT_EQ(Arranged("CTX", 4), "<no room>");
  EXPECT_EQ(Arranged("CTX", 5), "TACX");
}

TEST(ScheduleLettersTest, RepeatsAndRemovals) {
  EXPECT_TRUE(HasRepeatedLetters("BTB"));
  EXPECT_FALSE(HasRepeatedLetters("B T S"));
  EXPECT_EQ(RemovedLetters("BTAS", "B S X"), "TA");
  EXPECT_EQ(RemovedLetters(" BT ", "TB"), "");
}

TEST(ScheduleLettersTest, LeavingTheFieldFixesOrRefusesTheLetters) {
  ScheduleTestCompany t;
  t.AddSchedule('B', "B", "Book");
  t.AddSchedule('T', "T", "Tax");
  auto ui = Script("");
  ScheduleLettersEdit edit(t.company(), false, 4);
  EXPECT_EQ(edit.Leave("  tc ", *ui), "TAC");
  EXPECT_EQ(edit.Leave("BTB", *ui), std::nullopt);
  EXPECT_EQ(edit.Leave("CTX", *ui), std::nullopt);
  EXPECT_EQ(edit.Leave("BS", *ui), "BS");  // a new company loses nothing
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"Do not repeat letters.\"\n"
            "message title=\"Message\" text=\"ACE cannot be used without Tax and AMT "
            "schedules.\"\n");
}

TEST(ScheduleLettersTest, CThatIsNotAceNeedsNothing) {
  ScheduleTestCompany t;
  t.PutSettings("[Schedule Definitions]\r\nC=CA,Calif\r\n");
  auto ui = Script("");
  ScheduleLettersEdit edit(t.company(), false, 7);
  EXPECT_EQ(edit.Leave("CB", *ui), "CB");
  EXPECT_EQ(ui->transcript(), "");
}

TEST(ScheduleLettersTest, RemovalIsWarnedOncePerEdit) {
  ScheduleTestCompany t;
  t.AddSchedule('B', "B", "Book");
  t.AddSchedule('T', "T", "Tax");
  t.AddSchedule('S', "S", "State");
  auto ui = Script("");
  ScheduleLettersEdit edit(t.company(), true, 7);
  EXPECT_EQ(edit.Leave("BTSO", *ui), "BTSO");
  EXPECT_EQ(ui->transcript(), "");
  EXPECT_EQ(edit.Leave("BO", *ui), "BO");
  EXPECT_EQ(edit.Leave("B", *ui), "B");
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"Removing Schedules will cause data\\nfor those "
            "Schedules to be lost.\"\n");
}

TEST(ScheduleLettersTest, SavingWithRemovedSchedulesNeedsAYes) {
  ScheduleTestCompany t;
  t.AddSchedule('B', "B", "Book      ");
  t.AddSchedule('X', "CA", "Calif     ");
  t.AddSchedule('T', "T", "Tax");
  const std::string question =
      "question title=\"Question\" text=\"CAUTION: Depreciation Schedules\\nhave been changed "
      "from BXT to T.\\nData currently in the following schedules will be lost.\\nBook, "
      "Calif(CA)\\n    Continue?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> ";
  auto ui = Script("no\ncancel\nyes\n");
  ScheduleLettersEdit edit(t.company(), true, 7);
  EXPECT_FALSE(edit.ConfirmSave("T", *ui));
  EXPECT_FALSE(edit.ConfirmSave("T", *ui));
  EXPECT_TRUE(edit.ConfirmSave("T", *ui));
  EXPECT_TRUE(edit.ConfirmSave("TBXS", *ui));  // nothing removed: no question
  EXPECT_EQ(ui->transcript(), question + "no\n" + question + "cancel\n" + question + "yes\n");

  ScheduleLettersEdit new_company(t.company(), false, 7);
  EXPECT_TRUE(new_company.ConfirmSave("T", *ui));
  EXPECT_EQ(ui->answers_left(), 0u);
}

}  // namespace
}  // namespace nv
