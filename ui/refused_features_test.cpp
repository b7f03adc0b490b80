#include "ui/refused_features.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ui/scripted_ui.h"

namespace nv {
namespace {

TEST(RefusedFeatures, EachShowsOneBoxTakesNoAnswerAndBackupLetsTheRunGoOn) {
  // A script with one answer left over: none of the refusals may consume it.
  ScriptedUi ui(AnswerScript{{ScriptAnswer{}}, {}});
  RefuseGlobalFileEditing(ui);
  RefuseCompanyRebuild(ui);
  RefuseCustomAccountingYears(ui);
  RefuseAccountGroupEditing(ui);
  RefuseAssetRenumbering(ui);
  EXPECT_TRUE(RefuseCompanyFileBackup(ui));
  EXPECT_EQ(ui.answers_left(), 1u);
  EXPECT_FALSE(ui.failed());
  const std::string& transcript = ui.transcript();
  EXPECT_EQ(std::count(transcript.begin(), transcript.end(), '\n'), 6);
  EXPECT_EQ(transcript.find("question"), std::string::npos);
}

}  // namespace
}  // namespace nv
