#include "import/frame/remembered_matches.h"

#include <gtest/gtest.h>

#include "import/frame/frame_testing.h"
#include "import/frame/matching.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/match_panel.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::Script;
using testing::TempDir;
using testing::TinyDescriptor;
using testing::TinyImporter;
using testing::WriteText;
using Pairs = std::vector<std::pair<int, int>>;

// What a matching panel line of the transcript shows after `field=` ("preset=[...]").
std::string PanelField(const std::string& transcript, std::string_view field, int nth = 0) {
  size_t at = 0;
  for (int i = 0; i <= nth; ++i) {
    at = transcript.find("match-panel ", i == 0 ? 0 : at + 1);
    if (at == std::string::npos) return "(no panel)";
  }
  const size_t line_end = transcript.find('\n', at);
  const size_t from = transcript.find(std::string(field) + "=[", at);
  if (from == std::string::npos || from > line_end) return "(no field)";
  const size_t open = from + field.size() + 1;
  return transcript.substr(open, transcript.find(']', open) - open + 1);
}

TEST(PresetWithRemembered, RememberedTextsWinAndEverythingElseKeepsTheImportersPairs) {
  const std::vector<MatchItem> destinations = {
      {201, "Account"}, {202, "User Field 1"}, {203, "User Field 2"}, {204, "Location"}};
  const std::vector<MatchItem> sources = {{101, "Acct"}, {102, "Dept"}, {103, "Misc"}};
  const Pairs standard = {{201, 101}, {202, 103}, {203, 103}, {204, 102}};
  const RememberedMatches remembered = {
      {"account", "Dept"},             // names compare ignoring case, like every profile key
      {"User Field 1", std::nullopt},  // confirmed unpaired
      {"User Field 2", "Gone"},        // a source this import lacks
  };
  // 204's standard source went to 201 by memory, so 204 stays unpaired rather than
  // taking it away again; 203 keeps its own pair since "Gone" is not offered.
  EXPECT_EQ(PresetWithRemembered(remembered, destinations, sources, standard),
            (Pairs{{201, 102}, {203, 103}}));
  EXPECT_EQ(PresetWithRemembered({}, destinations, sources, standard),
            (Pairs{{201, 101}, {202, 103}, {204, 102}}));
}

// The frame: a confirmed panel is the next import's pre-set, per user; Reset returns to the
// importer's own.
TEST(RememberedMatches, TheNextImportOpensWithThemAndResetReturnsToTheImportersOwn) {
  TempDir dir;
  InstallationContext ctx = ContextFor(dir.path());
  WriteText(dir.File("a.tny"), "Tiny Widgets\n100|Press|1000|01/15/2024||\n");
  TinyImporter importer(TinyDescriptor());
  importer.fields.destinations = {{201, "Account"}, {202, "User Field 1"}, {203, "User Field 2"}};
  importer.fields.sources = {{101, "Acct"}, {102, "Dept"}, {103, "Misc"}};
  importer.fields.preset = {{201, 101}};
  importer.fields.user_field_destinations = {202, 203};
  auto run = [&](const std::string& number, const std::string& panel_answers) {
    auto ui =
        Script("file " + dir.File("a.tny") + "\ntext " + number + "\nsave\nyes\n" + panel_answers);
    const ImportResult result = RunImport(ctx, *ui, importer);
    EXPECT_EQ(result.outcome, ImportOutcome::kCompleted) << ui->transcript();
    return ui->transcript();
  };
  const std::string first = run("ONE", "match 201=0 202=103 203=102\nok\n");
  EXPECT_EQ(PanelField(first, "preset"), "[201=101]");
  const std::string confirmed = PanelField(first, "pairs");
  EXPECT_EQ(PanelField(run("TWO", "ok\n"), "preset"), confirmed);

  ctx.user_name = "SOMEBODY";
  EXPECT_EQ(PanelField(run("THREE", "ok\n"), "preset"), "[201=101]") << "another user's";
  ctx.user_name = "TESTER";

  // Reset, then a change on top: the change is what is kept.
  const std::string reset = run("FOUR", "reset\nmatch 202=102\nok\n");
  EXPECT_EQ(PanelField(reset, "preset"), confirmed);
  EXPECT_EQ(PanelField(reset, "pairs"), "[201=101, 202=102]");
  EXPECT_EQ(PanelField(run("FIVE", "ok\n"), "preset"), "[201=101, 202=102]");
}

}  // namespace
}  // namespace nv
