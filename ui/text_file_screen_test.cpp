// The screen "Create Text File for Export": its three fields' checks and questions, and the
// screen under an answers script.
#include "ui/text_file_screen.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

constexpr char kReplaceNo[] =
    "question title=\"Question\" text=\"File acme.dbs already exists.\\nReplace it?\" "
    "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> no\n";

class TextFileScreenTest : public ::testing::Test {
 protected:
  // Companies ACME and BETA in the company list; their files are not needed here.
  TextFileScreenTest() : ctx_(testing::ContextFor(dir_.path())) {
    MasterFile master;
    master.companies = {{"ACME", "Acme Tools"}, {"BETA", "Beta Supplies"}};
    EXPECT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);
    std::filesystem::create_directory(Out());
  }

  std::string Out() const { return dir_.File("out"); }
  TextFileRequest Request(std::string number = "ACME") const {
    return {dir_.path() + "/", std::move(number), "", ""};
  }

  TempDir dir_;
  InstallationContext ctx_;
};

TEST_F(TextFileScreenTest, TheSelectedCompanyNamesItselfAndTheFile) {
  auto ui = Script("");
  TextFileScreen screen(ctx_, Request(), *ui);
  EXPECT_EQ(screen.request().company_name, "Acme Tools");
  EXPECT_EQ(screen.FieldText("file_name"), "ACME.DBS");
  EXPECT_EQ(screen.FieldText("folder"), dir_.path() + "/");

  // Another company: upper case, its name, its file name; one that is not listed stays out.
  EXPECT_TRUE(screen.SetField("company_number", " beta "));
  EXPECT_EQ(screen.FieldText("company_number"), "BETA");
  EXPECT_EQ(screen.request().company_name, "Beta Supplies");
  EXPECT_EQ(screen.FieldText("file_name"), "BETA.DBS");
  EXPECT_FALSE(screen.SetField("company_number", "GAMMA"));
  EXPECT_FALSE(screen.SetField("company_number", ""));
  EXPECT_EQ(screen.FieldText("company_number"), "BETA");
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"Company not found.\"\n"
            "message title=\"Message\" text=\"Company not found.\"\n");
}

TEST_F(TextFileScreenTest, AMissingFolderIsMadeOnlyWhenTheUserAgrees) {
  auto ui = Script("no\nyes\nyes\n");
  TextFileScreen screen(ctx_, Request(), *ui);
  const std::string made = Out() + "/new";
  EXPECT_FALSE(screen.SetField("folder", made));
  EXPECT_FALSE(std::filesystem::exists(made));
  EXPECT_EQ(screen.FieldText("folder"), dir_.path() + "/");
  EXPECT_TRUE(screen.SetField("folder", made + "/"));
  EXPECT_TRUE(std::filesystem::is_directory(made));
  EXPECT_TRUE(screen.SetField("folder", made));  // there now: nothing asked

  // One level is made, not a whole path: the parent is named.
  EXPECT_FALSE(screen.SetField("folder", Out() + "/a/b"));
  EXPECT_FALSE(std::filesystem::exists(Out() + "/a"));
  const std::string question =
      "question title=\"Question\" text=\"Folder being copied to does not exist.  Create it?\" "
      "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\"";
  EXPECT_EQ(ui->transcript(),
            question + " -> no\n" + question + " -> yes\n" + question + " -> yes\n" +
                "message title=\"Message\" text=\"Unable to create folder copied to.  Parent "
                "folder:\\n" +
                testing::TranscriptText(Out() + "/a") +
                "\\nMust exist before you can create this folder.\"\n");
}

TEST_F(TextFileScreenTest, AFileThereIsReplacedOnlyWhenTheUserAgrees) {
  testing::WriteText(Out() + "/acme.dbs", "kept");
  auto ui = Script("no\nyes\n");
  TextFileScreen screen(ctx_, Request(), *ui);
  ASSERT_TRUE(screen.SetField("folder", Out()));
  EXPECT_FALSE(screen.SetField("file_name", "ACME.DBS"));  // found whatever its case
  EXPECT_TRUE(screen.SetField("file_name", "acme.dbs"));
  EXPECT_TRUE(screen.SetField("file_name", "  OTHER.TXT  "));
  EXPECT_EQ(screen.FieldText("file_name"), "OTHER.TXT");
  EXPECT_FALSE(screen.SetField("file_name", ""));
  EXPECT_EQ(testing::ReadText(Out() + "/acme.dbs"), "kept");
  EXPECT_EQ(ui->transcript(),
            "question title=\"Question\" text=\"File ACME.DBS already exists.\\nReplace it?\" "
            "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> no\n"
            "question title=\"Question\" text=\"File acme.dbs already exists.\\nReplace it?\" "
            "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> yes\n"
            "message title=\"Message\" text=\"Enter the name of the text file.\"\n");
}

TEST_F(TextFileScreenTest, CreateChecksWhatWasNotCheckedWithItsValueNow) {
  testing::WriteText(Out() + "/acme.dbs", "kept");
  auto ui = Script("no\nyes\n");
  TextFileScreen screen(ctx_, Request(), *ui);
  EXPECT_TRUE(screen.Create());  // the data folder holds no ACME.DBS
  ASSERT_TRUE(screen.SetField("folder", Out()));
  EXPECT_FALSE(screen.Create());  // another folder: the file there is asked about
  EXPECT_TRUE(screen.Create());   // and asked again, since the answer was No
  EXPECT_TRUE(screen.Create());   // the Yes holds
  EXPECT_EQ(ui->answers_left(), 0u);

  // A company given that is not listed opens the screen blank and stops Create.
  auto other = Script("");
  TextFileScreen unknown(ctx_, Request("GONE"), *other);
  EXPECT_EQ(unknown.request().company_name, "");
  EXPECT_FALSE(unknown.Create());
  EXPECT_EQ(other->transcript(), "message title=\"Message\" text=\"Company not found.\"\n");
}

TEST_F(TextFileScreenTest, ScriptedScreenTakesFieldAndPressLines) {
  testing::WriteText(Out() + "/acme.dbs", "kept");
  auto ui = Script(
      "press browse\n"
      "folder " +
      Out() +
      "\n"
      "field file_name acme.dbs\n"
      "no\n"
      "press create\n"
      "no\n"
      "field file_name NEW.DBS\n"
      "press create\n"
      "press close\n");
  TextFileScreen screen(ctx_, Request(), *ui);
  EXPECT_TRUE(ui->RunTextFileScreen(screen));
  EXPECT_EQ(screen.request().folder, Out());
  EXPECT_EQ(screen.request().file_name, "NEW.DBS");
  EXPECT_FALSE(ui->RunTextFileScreen(screen));
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  const std::string folder = QuoteTranscriptText(Out());
  EXPECT_EQ(ui->transcript(),
            "text-file-screen folder=" + QuoteTranscriptText(dir_.path() + "/") +
                " company_number=\"ACME\" company_name=\"Acme Tools\" file_name=\"ACME.DBS\" -> "
                "press browse, field file_name \"acme.dbs\", press create\n"
                "folder title=\"Create Text File in Directory\" folder=" +
                QuoteTranscriptText(dir_.path()) + " -> folder " + folder + "\n" + kReplaceNo +
                // Create asks about the file the refused name left standing.
                "question title=\"Question\" text=\"File ACME.DBS already exists.\\nReplace it?\" "
                "buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> no\n"
                "text-file-screen folder=" +
                folder +
                " company_number=\"ACME\" company_name=\"Acme Tools\" file_name=\"ACME.DBS\" -> "
                "field file_name \"NEW.DBS\", press create\n"
                "text-file-screen folder=" +
                folder +
                " company_number=\"ACME\" company_name=\"Acme Tools\" file_name=\"NEW.DBS\" -> "
                "press close\n");
}

TEST_F(TextFileScreenTest, ScriptLinesOfTheScreenAndTheAltKey) {
  std::string errors;
  EXPECT_EQ(ScriptedUi::FromString("press\npress save\nalt-held now\nfield nosuch 1\n", &errors),
            nullptr);
  EXPECT_EQ(errors,
            "line 1: 'press' needs a button of the text-file screen: browse, create or close\n"
            "line 2: 'press' needs a button of the text-file screen: browse, create or close\n"
            "line 3: 'alt-held' takes nothing after it\n"
            "line 4: unknown screen field 'nosuch'\n");

  auto up = Script("");
  EXPECT_FALSE(up->AltKeyHeld());
  auto held = Script("alt-held\n");
  EXPECT_TRUE(held->AltKeyHeld());
  EXPECT_EQ(up->transcript() + held->transcript(), "alt-key -> up\nalt-key -> held\n");
  EXPECT_FALSE(held->failed());

  // A line the screen cannot take closes it and fails the run.
  auto lost = Script("save\n");
  TextFileScreen screen(ctx_, Request(), *lost);
  EXPECT_FALSE(lost->RunTextFileScreen(screen));
  EXPECT_TRUE(lost->failed());
}

}  // namespace
}  // namespace nv
