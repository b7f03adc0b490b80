#include "ui/refused_features.h"

#include <gtest/gtest.h>

#include "ui/scripted_ui.h"

namespace nv {
namespace {

TEST(RefusedFeatures, EachShowsItsBoxAndTakesNoAnswer) {
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
  EXPECT_EQ(ui.transcript(),
            "message title=\"Error\" text=\"You must exit the import software\\nto edit global "
            "files.\"\n"
            "message title=\"Error\" text=\"Exit import software to perform company rebuild.\"\n"
            "message title=\"Note\" text=\"Custom years are not supported by the import "
            "program.\"\n"
            "message title=\"Note\" text=\"Account Group editing is not supported by the import "
            "program.\"\n"
            "message title=\"Note\" text=\"Renumbering is not supported by the import program.\"\n"
            "message title=\"Note\" text=\"Company file backup is not supported by the import "
            "program.\"\n");
}

}  // namespace
}  // namespace nv
