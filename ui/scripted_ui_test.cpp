#include "ui/scripted_ui.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "ui/match_panel.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

// A question box's transcript line, its three buttons as the boxes have them.
std::string QuestionLine(const std::string& text, const char* default_button, const char* answer) {
  return "question title=\"Question\" text=\"" + text +
         "\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"" + default_button + "\" -> " +
         answer + "\n";
}

std::string ParseErrors(std::string_view text) {
  std::string errors;
  EXPECT_EQ(ScriptedUi::FromString(text, &errors), nullptr);
  return errors;
}

ChoiceListRequest CompanyTypeList() {
  ChoiceListRequest request;
  request.title = "Import";
  request.message = "Select company type:";
  request.options = {{"New Company", -1}, {"Existing company", -1}};
  return request;
}

TEST(ParseAnswerScript, ReadsEveryDirectiveWithCommentsBlanksAndCrLf) {
  std::vector<ScriptError> errors;
  std::optional<AnswerScript> script = ParseAnswerScript(
      "# import one company\r\n"
      "command 102\r\n"
      "  FILE   /data/pc fas/Company #1.dat  \r\n"
      "\r\n"
      "choose 12\n"
      "Yes\n"
      "no\n"
      "cancel\n"
      "close\n"
      "choose-text Combine with current asset.  New values replace current values.\n"
      "folder /tmp/out\n"
      "command\t1 TEST",
      &errors);
  ASSERT_TRUE(script);
  EXPECT_TRUE(errors.empty());
  EXPECT_EQ(script->commands, (std::vector<ScriptCommand>{{102, false}, {1, true}}));
  ASSERT_EQ(script->answers.size(), 8u);
  using Kind = ScriptAnswer::Kind;
  EXPECT_EQ(script->answers[0].kind, Kind::kFile);
  EXPECT_EQ(script->answers[0].text, "/data/pc fas/Company #1.dat");
  EXPECT_EQ(script->answers[0].line, 3);
  EXPECT_EQ(script->answers[1].kind, Kind::kChoose);
  EXPECT_EQ(script->answers[1].position, 12);
  EXPECT_EQ(script->answers[2].kind, Kind::kYes);
  EXPECT_EQ(script->answers[3].kind, Kind::kNo);
  EXPECT_EQ(script->answers[4].kind, Kind::kCancel);
  EXPECT_EQ(script->answers[5].kind, Kind::kClose);
  EXPECT_EQ(script->answers[6].text,
            "Combine with current asset.  New values replace current values.");
  EXPECT_EQ(script->answers[7].kind, Kind::kFolder);
  EXPECT_EQ(script->answers[7].line, 11);
}

TEST(ParseAnswerScript, ReportsEveryBadLineWithItsNumber) {
  EXPECT_EQ(
      ParseErrors("yes\n"
                  "maybe\n"
                  "choose -1\n"
                  "choose one\n"
                  "yes please\n"
                  "file\n"
                  "command 10x\n"
                  "choose 1234567890\n"
                  "choose-text a\x01z\n"
                  "command 102 dry\n"),
      "line 2: unknown directive 'maybe'\n"
      "line 3: 'choose' needs an option position from 0, e.g. 'choose 1'\n"
      "line 4: 'choose' needs an option position from 0, e.g. 'choose 1'\n"
      "line 5: 'yes' takes nothing after it\n"
      "line 6: 'file' needs a text after it\n"
      "line 7: 'command' needs a command number and may add 'test', e.g. 'command 102 test'\n"
      "line 8: 'choose' needs an option position from 0, e.g. 'choose 1'\n"
      "line 9: control character in the line\n"
      "line 10: 'command' needs a command number and may add 'test', e.g. 'command 102 test'\n");
}

TEST(ParseAnswerScript, BnaLinesNeedACommandOfTheDialog) {
  EXPECT_EQ(
      ParseErrors("bna press file\n"
                  "BNA Select Basis, Tax\n"
                  "bna tabs\n"
                  "bna\n"
                  "bna paint all\n"
                  "bna select\n"
                  "bna commas now\n"
                  "bna press ok\n"),
      "line 4: 'bna' needs a dialog command: press, tabs, commas, group, select, no-copy, "
      "method, field or click\n"
      "line 5: 'bna' needs a dialog command: press, tabs, commas, group, select, no-copy, "
      "method, field or click\n"
      "line 6: 'bna select' needs a text after it\n"
      "line 7: 'bna commas' takes nothing after it\n"
      "line 8: 'bna press' needs a button of the BNA dialog: file, profile, import or exit\n");
}

TEST(ParseAnswerScript, MatchLinesHoldPairsOfIds) {
  std::vector<ScriptError> errors;
  std::optional<AnswerScript> script =
      ParseAnswerScript("MATCH 201=101\t202=0   203=104\nok\n", &errors);
  ASSERT_TRUE(script);
  ASSERT_EQ(script->answers.size(), 2u);
  EXPECT_EQ(script->answers[0].text, "201=101 202=0 203=104");

  const std::string needs_pairs =
      ": 'match' needs pairs of item ids DEST=SRC, e.g. 'match 201=101 202=0'\n";
  EXPECT_EQ(ParseErrors("match\n"
                        "match 201=\n"
                        "match 201=101 x\n"
                        "match 201=-1\n"
                        "ok go\n"),
            "line 1" + needs_pairs + "line 2" + needs_pairs + "line 3" + needs_pairs + "line 4" +
                needs_pairs + "line 5: 'ok' takes nothing after it\n");
}

TEST(ParseAnswerScript, StopsCollectingAfterTheLimit) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += "bad\n";
  std::vector<ScriptError> errors;
  EXPECT_FALSE(ParseAnswerScript(text, &errors));
  ASSERT_EQ(errors.size(), kMaxScriptErrors);
  EXPECT_EQ(errors.back().line, static_cast<int>(kMaxScriptErrors));
}

TEST(ScriptedUiFile, ReadsAFileAndNamesItInErrors) {
  TempDir dir;
  const std::string good = dir.File("good.txt");
  const std::string bad = dir.File("bad.txt");
  ASSERT_TRUE(WriteFileAtomically(good, "command 9\r\nyes\r\n"));
  ASSERT_TRUE(WriteFileAtomically(bad, "# fine\nfile\n"));

  std::string errors;
  std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromFile(good, &errors);
  ASSERT_TRUE(ui) << errors;
  EXPECT_EQ(ui->commands(), (std::vector<ScriptCommand>{{9, false}}));
  EXPECT_EQ(ui->answers_left(), 1u);

  EXPECT_EQ(ScriptedUi::FromFile(bad, &errors), nullptr);
  EXPECT_EQ(errors, bad + ":2: 'file' needs a text after it\n");
  EXPECT_EQ(ScriptedUi::FromFile(dir.File("missing.txt"), &errors), nullptr);
  EXPECT_NE(errors.find("missing.txt: cannot read the answers file"), std::string::npos);
  EXPECT_EQ(ScriptedUi::FromFile(dir.path(), &errors), nullptr);  // a folder is not a script
  EXPECT_NE(errors.find("cannot read the answers file"), std::string::npos);
}

TEST(QuoteTranscriptText, KeepsEveryPromptOnOneLine) {
  EXPECT_EQ(QuoteTranscriptText("a\\b \"c\"\nd\r\te\x01\x7f\xe9"),
            "\"a\\\\b \\\"c\\\"\\nd\\r\\te\\x01\\x7F\xe9\"");
  EXPECT_EQ(QuoteTranscriptText(""), "\"\"");
}

TEST(ScriptedUi, AnswersPromptsInOrderAndWritesTheTranscript) {
  auto ui = Script(
      "yes\nno\ncancel\nclose\n"
      "choose 1\nchoose-text New Company\n"
      "file C:\\data\\x.dat\ncancel\nfolder /tmp/out\nclose\n");
  ui->Message("Unable to read Master File", "Error");
  EXPECT_EQ(ui->Question("Erase company 1?\n\nContinue?", DefaultButton::kYes), Answer::kYes);
  EXPECT_EQ(ui->Question("Q2", DefaultButton::kNo), Answer::kNo);
  EXPECT_EQ(ui->Question("Q3", DefaultButton::kNo), Answer::kCancel);
  EXPECT_EQ(ui->Question("Q4", DefaultButton::kNo), Answer::kCancel);
  EXPECT_EQ(ui->ChoiceList(CompanyTypeList()), 1);
  EXPECT_EQ(ui->ChoiceList(CompanyTypeList()), 0);

  FileDialogRequest open;
  open.title = "Select PC/FAS file";
  open.filter = "PC/FAS|*.dat|All files|*.*";
  open.initial_directory = "/src";
  EXPECT_EQ(ui->ChooseFile(open), "C:\\data\\x.dat");
  open.save = true;
  EXPECT_EQ(ui->ChooseFile(open), std::nullopt);
  EXPECT_EQ(ui->ChooseFolder("Export to", "/home"), "/tmp/out");
  EXPECT_EQ(ui->ChooseFolder("Export to", ""), std::nullopt);
  ui->ShowNote("Report", "1 asset\n2 assets");
  ui->ShowHelp("nvsy6dis.html");

  EXPECT_FALSE(ui->failed());
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_EQ(
      ui->transcript(),
      "message title=\"Error\" text=\"Unable to read Master File\"\n"
      "question title=\"Question\" text=\"Erase company 1?\\n\\nContinue?\" "
      "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\" -> yes\n" +
          QuestionLine("Q2", "&No", "no") + QuestionLine("Q3", "&No", "cancel") +
          QuestionLine("Q4", "&No", "cancel") +
          "choice title=\"Import\" text=\"Select company type:\" note=\"\" "
          "options=[\"New Company\", \"Existing company\"] -> choose 1 \"Existing company\" "
          "result=1\n"
          "choice title=\"Import\" text=\"Select company type:\" note=\"\" "
          "options=[\"New Company\", \"Existing company\"] -> choose 0 \"New Company\" result=0\n"
          "file-open title=\"Select PC/FAS file\" filter=\"PC/FAS|*.dat|All files|*.*\" "
          "folder=\"/src\" name=\"\" -> file \"C:\\\\data\\\\x.dat\"\n"
          "file-save title=\"Select PC/FAS file\" filter=\"PC/FAS|*.dat|All files|*.*\" "
          "folder=\"/src\" name=\"\" -> cancel\n"
          "folder title=\"Export to\" folder=\"/home\" -> folder \"/tmp/out\"\n"
          "folder title=\"Export to\" folder=\"\" -> cancel\n"
          "note title=\"Report\" text=\"1 asset\\n2 assets\"\n"
          "help topic=\"nvsy6dis.html\"\n");
}

TEST(ScriptedUi, ChoiceResultIsTheOptionValueWhenItHasOne) {
  auto ui = Script("choose 2\nchoose-text Replace\nclose\n");
  ChoiceListRequest request;
  request.message = "Duplicates:";
  request.note = "Pick one";
  request.options = {{"Combine", 1}, {"Replace", 2}, {"Ignore", -1}};
  EXPECT_EQ(ui->ChoiceList(request), 2);  // position 2 has no value of its own
  EXPECT_EQ(ui->ChoiceList(request), 2);
  EXPECT_EQ(ui->ChoiceList(request), -1);
  EXPECT_FALSE(ui->failed());
  EXPECT_EQ(ui->transcript().substr(0, ui->transcript().find('\n')),
            "choice title=\"\" text=\"Duplicates:\" note=\"Pick one\" "
            "options=[\"Combine\"=1, \"Replace\"=2, \"Ignore\"] -> choose 2 \"Ignore\" result=2");
  EXPECT_NE(ui->transcript().find("-> close result=-1\n"), std::string::npos);
}

TEST(ScriptedUi, MismatchedAnswerFailsTheRunAndClosesEveryLaterPrompt) {
  auto ui = Script("yes\nfile /x\nyes\nchoose 0\n");
  EXPECT_EQ(ui->Question("First?", DefaultButton::kYes), Answer::kYes);
  EXPECT_EQ(ui->Question("Second?", DefaultButton::kYes), Answer::kCancel);
  EXPECT_TRUE(ui->failed());
  // The script has lost step: the next "yes" must not answer an unrelated question.
  EXPECT_EQ(ui->Question("Erase everything?", DefaultButton::kNo), Answer::kCancel);
  EXPECT_EQ(ui->ChoiceList(CompanyTypeList()), -1);
  ui->Message("still shown");
  EXPECT_EQ(ui->answers_left(), 2u);
  const std::string& t = ui->transcript();
  EXPECT_NE(t.find("text=\"Second?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\" "
                   "-> cancel\n"
                   "error: line 2 (\"file /x\") does not answer a question box\n"),
            std::string::npos)
      << t;
  EXPECT_NE(t.find("-> cancel\nerror: the run failed earlier; a question box answered as closed\n"),
            std::string::npos)
      << t;
  EXPECT_NE(t.find("-> close result=-1\n"
                   "error: the run failed earlier; a choice list answered as closed\n"
                   "message title=\"Message\" text=\"still shown\"\n"),
            std::string::npos)
      << t;
}

TEST(ScriptedUi, ChoiceAnswersThatFitNoOptionFailTheRun) {
  auto out_of_range = Script("choose 2\n");
  EXPECT_EQ(out_of_range->ChoiceList(CompanyTypeList()), -1);
  EXPECT_TRUE(out_of_range->failed());
  EXPECT_NE(out_of_range->transcript().find(
                "-> close result=-1\n"
                "error: line 1 (\"choose 2\") chooses position 2 but the list has 2 options\n"),
            std::string::npos)
      << out_of_range->transcript();

  auto unknown_text = Script("choose-text new company\n");  // texts match exactly
  EXPECT_EQ(unknown_text->ChoiceList(CompanyTypeList()), -1);
  EXPECT_TRUE(unknown_text->failed());
  EXPECT_NE(unknown_text->transcript().find(
                "error: line 1 (\"choose-text new company\") names no option of this list\n"),
            std::string::npos);

  auto dialog_answer = Script("yes\n");
  EXPECT_EQ(dialog_answer->ChooseFolder("Folder", ""), std::nullopt);
  EXPECT_NE(
      dialog_answer->transcript().find("error: line 1 (\"yes\") does not answer a folder dialog\n"),
      std::string::npos);
}

TEST(ScriptedUi, RunningOutOfAnswersAnswersAsClosed) {
  auto ui = Script("");
  EXPECT_EQ(ui->Question("Go?", DefaultButton::kYes), Answer::kCancel);
  EXPECT_TRUE(ui->failed());
  EXPECT_EQ(ui->ChooseFile(FileDialogRequest{}), std::nullopt);
  EXPECT_EQ(ui->transcript(),
            QuestionLine("Go?", "&Yes", "cancel") +
                "error: no answer left for a question box\n"
                "file-open title=\"\" filter=\"\" folder=\"\" name=\"\" -> cancel\n"
                "error: the run failed earlier; a file dialog answered as closed\n");
}

TEST(ScriptedUi, CutsLongTextsAsTheBoxesDo) {
  auto ui = Script("no\n");
  ui->Message(std::string(1500, 'm'));
  ui->Question(std::string(2500, 'q'), DefaultButton::kNo);
  EXPECT_NE(ui->transcript().find("text=\"" + std::string(Ui::kMaxMessageLength, 'm') + "\"\n"),
            std::string::npos);
  EXPECT_NE(ui->transcript().find("text=\"" + std::string(Ui::kMaxQuestionLength, 'q') + "\" "),
            std::string::npos);
}

TEST(ScriptedUi, ProgressLineIsWrittenWhenTheMeterCloses) {
  auto ui = Script("");
  {
    auto meter = ui->OpenProgress("Import", "Copying FAS assets", 250);
    meter->SetPosition(100);
    ui->Message("half way");
    meter->SetText("Copying FAS assets\nAsset 42");
    meter->SetPosition(250);
  }
  ui->OpenProgress("Export", "Writing", 3).reset();
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"half way\"\n"
            "progress title=\"Import\" text=\"Copying FAS assets\" total=250 position=250 "
            "last-text=\"Copying FAS assets\\nAsset 42\"\n"
            "progress title=\"Export\" text=\"Writing\" total=3 position=0\n");
  EXPECT_FALSE(ui->failed());
}

TEST(ScriptedUi, MeterMayOutliveTheUi) {
  std::unique_ptr<ProgressMeter> meter;
  {
    auto ui = Script("");
    meter = ui->OpenProgress("Import", "", 1);
  }
  meter->SetPosition(1);
  meter.reset();  // must not touch the destroyed Ui
}

TEST(ScriptedUi, SinkGetsEveryLineAsItIsWritten) {
  auto ui = Script("yes\n");
  std::ostringstream sink;
  ui->Note("command 102 \"Best PC/FAS\"");
  ui->set_sink(&sink);
  ui->Question("Go?", DefaultButton::kNo);
  EXPECT_EQ(sink.str(), QuestionLine("Go?", "&No", "yes"));
  ui->Fail("command 77 is not a button of this window");
  ui->set_sink(nullptr);
  ui->Note("after");
  EXPECT_TRUE(ui->failed());
  EXPECT_EQ(sink.str().substr(sink.str().rfind("error")),
            "error: command 77 is not a button of this window\n");
  EXPECT_EQ(ui->transcript().substr(0, ui->transcript().find('\n')), "command 102 \"Best PC/FAS\"");
}

MatchPanel BookPanel() {
  MatchPanel panel("FAS to KEL book conversion", "KEL Schedule", "FAS \"Book\"");
  EXPECT_TRUE(panel.AddDestination(201, "B Book"));
  EXPECT_TRUE(panel.AddDestination(202, "T Tax"));
  EXPECT_TRUE(panel.AddDestination(203, "S State"));
  EXPECT_TRUE(panel.AddSource(101, "Internal"));
  EXPECT_TRUE(panel.AddSource(102, "Federal"));
  EXPECT_TRUE(panel.AddSource(103, "State\n2"));
  EXPECT_TRUE(panel.SetMatch(201, 101));
  return panel;
}

TEST(ScriptedUi, MatchPanelPairsByIdAndWritesOneLine) {
  MatchPanel panel = BookPanel();
  auto ui = Script("match 202=101 201=0\nmatch 203=103 202=102\nok\n");
  EXPECT_EQ(ui->RunMatchPanel(panel), kMatchPanelOk);
  EXPECT_FALSE(ui->failed());
  EXPECT_EQ(panel.GetMatch(201), 0);
  EXPECT_EQ(panel.GetMatch(202), 102);  // the later pair replaced 101
  EXPECT_EQ(panel.GetMatch(203), 103);
  EXPECT_EQ(ui->transcript(),
            "match-panel caption=\"FAS to KEL book conversion\" destination-heading=\"KEL "
            "Schedule\" source-heading=\"FAS \\\"Book\\\"\" destinations=[201 \"B Book\", 202 "
            "\"T Tax\", 203 \"S State\"] sources=[101 \"Internal\", 102 \"Federal\", 103 "
            "\"State\\n2\"] preset=[201=101] -> match 202=101 201=0, match 203=103 202=102, ok "
            "pairs=[202=102, 203=103]\n");
}

TEST(ScriptedUi, MatchPairsNamingNoFittingItemFailTheRun) {
  struct Case {
    const char* line;
    const char* error;
  };
  const Case cases[] = {
      {"match 209=101", "names no item 209 of the panel"},
      {"match 101=102", "names 101 as a destination item, but it is a source item"},
      {"match 202=203", "names 203 as a source item, but it is a destination item"},
  };
  for (const Case& c : cases) {
    MatchPanel panel = BookPanel();
    auto ui = Script(std::string(c.line) + "\nok\nyes\n");
    EXPECT_EQ(ui->RunMatchPanel(panel), kMatchPanelCancel) << c.line;
    EXPECT_TRUE(ui->failed()) << c.line;
    const std::string error =
        "error: line 1 (" + QuoteTranscriptText(c.line) + ") " + c.error + "\n";
    EXPECT_NE(ui->transcript().find(error), std::string::npos) << ui->transcript();
    // The script has lost step: the "yes" after it answers nothing.
    EXPECT_EQ(ui->Question("Go?", DefaultButton::kYes), Answer::kCancel);
  }

  // The panel takes no other answers.
  MatchPanel panel = BookPanel();
  auto yes_at_panel = Script("match 202=102\nyes\n");
  EXPECT_EQ(yes_at_panel->RunMatchPanel(panel), kMatchPanelCancel);
  EXPECT_NE(
      yes_at_panel->transcript().find("-> match 202=102, cancel pairs=[201=101, 202=102]\n"
                                      "error: line 2 (\"yes\") does not answer a matching panel\n"),
      std::string::npos)
      << yes_at_panel->transcript();
}

}  // namespace
}  // namespace nv
