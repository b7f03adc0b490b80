#include "ui/schedule_definitions_editor.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/schedule/schedule_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ScheduleTestCompany;
using testing::Script;
using Editor = DlgEdScheduleDefinitions;
using Strings = std::vector<std::string>;

// A question line up to its answer.
std::string Asked(const std::string& text, const char* default_button) {
  return "question title=\"Question\" text=\"" + text +
         "\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"" + default_button + "\" -> ";
}

std::string Question(const std::string& text, const char* default_button, const char* answer) {
  return Asked(text, default_button) + answer + "\n";
}

// The questions about a letter the company uses: its first line, then `rest`.
std::string InUseQuestion(char letter, const char* rest, const char* answer) {
  return Question(
      std::string("The ") + letter + " schedule is already defined for this company.\\n" + rest,
      "&No", answer);
}

std::string TypeChangeQuestion(char letter, const char* answer) {
  return InUseQuestion(letter,
                       "Changing the type may cause calculations to change.\\nAre you sure you "
                       "want to chnage this schedule definition?",
                       answer);
}

std::string AddQuestion(char letter, const char* answer) {
  return InUseQuestion(letter,
                       "Adding a new definition for this schedule may cause\\ncalculations to "
                       "change.\\n\\nAre you sure you want to create this new schedule "
                       "definition?",
                       answer);
}

const char kMustEnter[] =
    "message title=\"Error\" text=\"You must enter a code letter and a description before "
    "saving.\"\n";

// The rows as "LETTER|DESCRIPTION|TYPE|SOURCE".
Strings Rows(const Editor& editor) {
  Strings rows;
  for (const sdefRow& r : editor.rows()) {
    rows.push_back(r.letter + "|" + r.description + "|" + r.type_caption + "|" + r.source);
  }
  return rows;
}

size_t TypeEntryOf(const std::string& type) {
  const std::vector<sdefTypeEntry>& entries = DlgEdScheduleDefinitions::TypeEntries();
  for (size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].type == type) return i;
  }
  ADD_FAILURE() << "no type entry " << type;
  return 0;
}

std::optional<size_t> RowOf(const Editor& editor, char letter) {
  for (size_t r = 0; r < editor.rows().size(); ++r) {
    if (editor.rows()[r].letter[0] == letter) return r;
  }
  return std::nullopt;
}

// A company using B, T and X (a California schedule), with definitions of B in all three
// sources and of W for all companies.
class EditorTest : public ::testing::Test {
 protected:
  EditorTest() {
    t_.AddSchedule('B', "B", "Book");
    t_.AddSchedule('T', "T", "Tax");
    t_.AddSchedule('X', "CA", "Calif");
    t_.PutSettings(kSettings);
    t_.PutInstallation(kInstallation);
    list_ = LoadScheduleDefinitions(t_.company(), kAllScheduleSources);
  }

  std::unique_ptr<Editor> Open(std::string_view answers, bool allow_delete = true) {
    ui_ = Script(answers);
    return std::make_unique<Editor>(t_.company(), list_, "BTX", allow_delete, *ui_);
  }

  // The stored files did not change.
  void ExpectFilesUnchanged() {
    EXPECT_EQ(t_.Settings(), kSettings);
    EXPECT_EQ(t_.Installation(), kInstallation);
  }

  static constexpr char kSettings[] = "[Schedule Definitions]\r\nB=B,Co Book\r\nX=CA,Calif\r\n";
  static constexpr char kInstallation[] = "[Schedule Definitions]\r\nB=B,All Book\r\nW=O,Wages\r\n";

  ScheduleTestCompany t_;
  ScheduleDefinitionList list_;
  std::unique_ptr<ScriptedUi> ui_;
};

TEST_F(EditorTest, ListShowsTheDefinitionsInForceInFourColumns) {
  auto editor = Open("");
  EXPECT_EQ(
      Rows(*editor),
      (Strings{"T|Tax|Tax|Standard Definition", "B|Co Book|Book|This Company Only",
               "A|AMT|AMT|Standard Definition", "C|ACE|ACE|Standard Definition",
               "S|State|State(Generic)|Standard Definition", "X|Calif|State(CA)|This Company Only",
               "O|Other|Other|Standard Definition", "W|Wages|Other|All Companies"}));
  EXPECT_EQ(editor->caption(), "New Definition");
  EXPECT_FALSE(editor->fields_enabled());

  const std::vector<sdefTypeEntry>& types = Editor::TypeEntries();
  ASSERT_EQ(types.size(), 6u + 52u);
  EXPECT_EQ(types[0].text, "Tax");
  EXPECT_EQ(types[5].text, "State(Generic)");
  EXPECT_EQ(types[6].type, "AL");
  EXPECT_EQ(types[6].text, "State(AL)");
  EXPECT_EQ(types.back().type, "WY");
}

TEST_F(EditorTest, StandardDefinitionCannotBeEditedOrDeleted) {
  auto editor = Open("");
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'T')));
  EXPECT_EQ(editor->caption(), "Selected Definition");
  EXPECT_EQ(editor->type_entry(), 0u);
  EXPECT_FALSE(editor->fields_enabled());
  EXPECT_FALSE(editor->delete_enabled());
  EXPECT_FALSE(editor->letter_enabled());
  editor->SetDescription("Changed");
  EXPECT_FALSE(editor->Save());
  EXPECT_EQ(editor->rows()[0].description, "Tax");
}

TEST_F(EditorTest, NewDefinitionIsSavedIntoTheListAndSelected) {
  auto editor = Open("yes\n");
  ASSERT_TRUE(editor->New());
  EXPECT_FALSE(editor->list_enabled());
  EXPECT_FALSE(editor->close_enabled());
  EXPECT_TRUE(editor->letter_enabled());
  EXPECT_EQ(editor->description(), "New Defn");
  EXPECT_EQ(editor->type(), "O");
  EXPECT_TRUE(editor->this_company_only());

  // A blank letter is refused.
  EXPECT_FALSE(editor->Save());
  EXPECT_EQ(ui_->transcript(), kMustEnter);

  editor->SetLetterText("n");
  editor->ChooseType(TypeEntryOf("NH"));
  EXPECT_EQ(editor->description(), "New Hampshr");
  editor->SetThisCompanyOnly(false);
  ASSERT_TRUE(editor->Save());
  EXPECT_TRUE(editor->list_enabled());
  EXPECT_EQ(editor->caption(), "Selected Definition");
  ASSERT_TRUE(editor->selected_row());
  EXPECT_EQ(Rows(*editor)[*editor->selected_row()], "N|New Hampsh|State(NH)|All Companies");

  EXPECT_EQ(editor->Close(), Editor::CloseResult::kClosed);
  EXPECT_TRUE(editor->saved());
  EXPECT_EQ(t_.Installation(),
            "[Schedule Definitions]\r\nB=B,All Book\r\nN=NH,New Hampsh\r\nW=O,Wages\r\n");
  EXPECT_EQ(t_.Settings(), kSettings);
}

TEST_F(EditorTest, ReplacingADefinitionOfTheSameLetterAndSourceAsksFirst) {
  const std::string replace =
      Asked("Schedule W (Wages, Type O, All Companies)\\nalready exists.  Replace it?", "&No");
  auto editor = Open("no\nyes\nno\n");
  ASSERT_TRUE(editor->New());
  editor->SetLetterText("W");
  editor->SetDescription("Payroll");
  editor->SetThisCompanyOnly(false);
  EXPECT_FALSE(editor->Save());
  EXPECT_EQ(editor->mode(), Editor::Mode::kNew);
  EXPECT_EQ(Rows(*editor).back(), "W|Wages|Other|All Companies");
  EXPECT_TRUE(editor->Save());
  EXPECT_EQ(ui_->transcript(), replace + "no\n" + replace + "yes\n");
  EXPECT_EQ(Rows(*editor).back(), "W|Payroll|Other|All Companies");
  EXPECT_EQ(editor->list().size(), list_.size());

  // Refusing to keep the changes leaves the files as they were.
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kClosed);
  EXPECT_FALSE(editor->saved());
  ExpectFilesUnchanged();
}

TEST_F(EditorTest, NewDefinitionOfALetterInUseNeedsAYes) {
  auto editor = Open("cancel\nno\nyes\n");
  ASSERT_TRUE(editor->New());
  editor->SetLetterText("T");
  editor->SetDescription("My Tax");
  editor->ChooseType(TypeEntryOf("T"));
  EXPECT_EQ(editor->description(), "Tax");
  editor->SetDescription("My Tax");

  EXPECT_FALSE(editor->Save());  // Cancel: the new definition stays on the screen
  EXPECT_EQ(editor->mode(), Editor::Mode::kNew);
  EXPECT_FALSE(editor->Save());  // No: nothing added, the edit ends
  EXPECT_EQ(editor->mode(), Editor::Mode::kNone);
  EXPECT_TRUE(SameScheduleDefinitions(editor->list(), list_));

  ASSERT_TRUE(editor->New());
  editor->SetLetterText("T");
  editor->SetDescription("My Tax");
  EXPECT_TRUE(editor->Save());
  EXPECT_EQ(Rows(*editor)[*editor->selected_row()], "T|My Tax|Other|This Company Only");
  EXPECT_EQ(ui_->transcript(),
            AddQuestion('T', "cancel") + AddQuestion('T', "no") + AddQuestion('T', "yes"));
}

TEST_F(EditorTest, ChangingTheTypeOfALetterInUseAsksFirst) {
  auto editor = Open("cancel\nno\nyes\nno\n");
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'X')));
  EXPECT_TRUE(editor->fields_enabled());
  editor->ChooseType(TypeEntryOf("AL"));
  EXPECT_EQ(editor->description(), "Alabama");

  // Cancel: the selection stays and the edit with it.
  EXPECT_FALSE(editor->Select(RowOf(*editor, 'T')));
  EXPECT_EQ(editor->type(), "AL");
  // No: the stored definition is kept and shown again.
  EXPECT_FALSE(editor->Save());
  EXPECT_EQ(editor->type(), "CA");
  EXPECT_EQ(editor->description(), "Calif");
  // Yes: the new type replaces the old one.
  editor->ChooseType(TypeEntryOf("AL"));
  EXPECT_TRUE(editor->Save());
  EXPECT_EQ(Rows(*editor)[*editor->selected_row()], "X|Alabama|State(AL)|This Company Only");
  EXPECT_EQ(ui_->transcript(), TypeChangeQuestion('X', "cancel") + TypeChangeQuestion('X', "no") +
                                   TypeChangeQuestion('X', "yes"));

  // Refusing to keep the changes leaves the files as they were.
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kClosed);
  EXPECT_FALSE(editor->saved());
  ExpectFilesUnchanged();
}

TEST_F(EditorTest, MovingADefinitionToTheOtherStoreReplacesTheOneThere) {
  auto editor = Open("yes\nyes\n");
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'B')));
  EXPECT_TRUE(editor->this_company_only());  // the B of this company is the one in force
  editor->SetThisCompanyOnly(false);
  EXPECT_TRUE(editor->Save());
  EXPECT_EQ(Rows(*editor)[1], "B|Co Book|Book|All Companies");
  EXPECT_FALSE(editor->list().Find('B', kThisCompanySource));
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kClosed);
  EXPECT_TRUE(editor->saved());
  EXPECT_EQ(t_.Settings(), "[Schedule Definitions]\r\nX=CA,Calif\r\n");
  EXPECT_EQ(t_.Installation(), "[Schedule Definitions]\r\nB=B,Co Book\r\nW=O,Wages\r\n");
}

TEST_F(EditorTest, DeleteKeepsADefinitionForEveryLetterInUse) {
  auto editor = Open("");
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'X')));
  EXPECT_FALSE(editor->delete_enabled());  // nothing else defines X
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'W')));
  EXPECT_TRUE(editor->delete_enabled());  // not in use
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'B')));
  ASSERT_TRUE(editor->delete_enabled());
  editor->Delete();
  EXPECT_EQ(editor->mode(), Editor::Mode::kNone);
  EXPECT_EQ(Rows(*editor)[1], "B|All Book|Book|All Companies");
  ASSERT_TRUE(editor->Select(1));
  EXPECT_TRUE(editor->delete_enabled());  // the standard B remains
  editor->Delete();
  EXPECT_EQ(Rows(*editor)[1], "B|Book|Book|Standard Definition");

  auto refused = Open("", false);
  ASSERT_TRUE(refused->Select(RowOf(*refused, 'W')));
  EXPECT_FALSE(refused->delete_enabled());
}

TEST_F(EditorTest, ClosingWithAnUnsavedEditOrUnsavedChanges) {
  const std::string unable = Asked("Unable to save new definition.  Close window anyway?", "&Yes");
  const std::string keep = Asked("Save changes to your Schedule Definitions?", "&Yes");
  auto editor = Open("no\nyes\ncancel\nyes\nno\n");
  ASSERT_TRUE(editor->Select(RowOf(*editor, 'W')));
  editor->Delete();
  ASSERT_TRUE(editor->New());
  editor->SetDescription(" ");
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kStayOpen);  // not closed anyway
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kStayOpen);  // closed anyway, then Cancel
  EXPECT_EQ(editor->Close(), Editor::CloseResult::kClosed);    // asked again, then No
  EXPECT_EQ(ui_->transcript(), kMustEnter + unable + "no\n" + kMustEnter + unable + "yes\n" + keep +
                                   "cancel\n" + kMustEnter + unable + "yes\n" + keep + "no\n");
  ExpectFilesUnchanged();
}

// Runs the commands given, then closes the editor the way its window does: until the
// model lets it go.
class ScriptedWindow : public ScheduleDefinitionsWindowRunner {
 public:
  explicit ScriptedWindow(std::function<void(Editor&)> steps) : steps_(std::move(steps)) {}
  void Run(Editor& editor) override {
    steps_(editor);
    for (int tries = 0; tries < 5; ++tries) {
      if (editor.Close() == Editor::CloseResult::kClosed) return;
    }
    ADD_FAILURE() << "the editor did not close";
  }

 private:
  std::function<void(Editor&)> steps_;
};

TEST_F(EditorTest, EditScheduleDefinitionsHandsBackTheSavedList) {
  ScheduleDefinitionList list = list_;
  ui_ = Script("cancel\nyes\n");
  ScriptedWindow window([](Editor& editor) {
    editor.Help();
    editor.New();
    editor.SetLetterText("Q");
    editor.SetDescription("Quarterly");
  });
  EXPECT_TRUE(EditScheduleDefinitions(window, *ui_, t_.company(), &list, "BTX", true));
  EXPECT_EQ(list.size(), list_.size() + 1);
  EXPECT_TRUE(list.Find('Q', kThisCompanySource));
  EXPECT_EQ(t_.Settings(),
            "[Schedule Definitions]\r\nB=B,Co Book\r\nX=CA,Calif\r\nQ=O,Quarterly\r\n");
  // Cancel at the save question kept the window open for one more close.
  EXPECT_EQ(ui_->answers_left(), 0u);
  EXPECT_EQ(ui_->transcript().substr(0, 26), "help topic=\"nvsy16lv.html\"");

  ScheduleDefinitionList unchanged = list;
  ui_ = Script("");
  ScriptedWindow idle([](Editor&) {});
  EXPECT_FALSE(EditScheduleDefinitions(idle, *ui_, t_.company(), &unchanged, "BTX", true));
  EXPECT_EQ(ui_->transcript(), "");
}

}  // namespace
}  // namespace nv
