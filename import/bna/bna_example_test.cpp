// The example profile and report of testdata/bna: the profile must define every field the
// import asks for, and read the report as its columns stand.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/profile_text.h"
#include "import/bna/bna_fields.h"
#include "import/bna/bna_profile.h"
#include "import/bna/bna_source.h"
#include "import/bna/bna_state.h"
#include "import/bna/field_value.h"

namespace nv {
namespace {

const std::string kFolder = std::string(NV_SOURCE_DIR) + "/testdata/bna/";

class BnaExampleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // As a run starts: the profiles, then its parameters and definitions.
    state_.profiles = StartBnaProfiles(kFolder, "example.imp");  // found ignoring case
    params_ = ReadBnaParameters(profiles_);
    state_.file_type = params_.file_type;
    state_.checked_groups = params_.checked_groups;
    LoadDefinitions(profiles_, state_.checked_groups, list_);
    report_ = ReadFileBytes(kFolder + "FIXEDASSETS.CSV").value_or("");
    BnaSourceLines lines(report_);
    BnaSourceLine line;
    while (lines.Next(&line)) {
      if (!line.comment) data_.push_back(line);
    }
  }
  std::optional<std::string> Value(const BnaSourceLine& line, const BnaTargetField& field,
                                   std::optional<std::string_view> schedule = std::nullopt) {
    ColumnClass columns(line.text, params_.file_type);
    return ProduceFieldValue(list_, field.name, columns, field.asked, schedule, special_);
  }

  BnaImportState state_;
  const BnaProfiles& profiles_ = state_.profiles;
  ImportConversionList& list_ = state_.definitions;
  BnaParameters params_;
  std::string report_;
  std::vector<BnaSourceLine> data_;
  SpecialConversion special_;
};

TEST_F(BnaExampleTest, DefinesEveryTargetFieldForEverySchedule) {
  EXPECT_EQ(params_.file_type, kBnaCommaSeparated);
  EXPECT_EQ(params_.checked_groups, "GTBAC");
  EXPECT_TRUE(params_.bna_nd_profile_type);
  ASSERT_NE(list_.Find(kBnaAssetNoField), nullptr);
  EXPECT_GE(list_.Find(kBnaAssetNoField)->column, 0);
  std::vector<BnaTargetField> general(kBnaGeneralFields.begin(), kBnaGeneralFields.end());
  general.push_back(kBna4797Type);
  for (const BnaTargetField& field : general) {
    const ConversionDefinition* d = list_.Find(field.name);
    ASSERT_NE(d, nullptr) << field.name;
    EXPECT_TRUE(d->active) << field.name;
  }
  for (std::string_view schedule : {"Book", "Tax", "AMT", "ACE"}) {
    for (const BnaTargetField& field : kBnaScheduleFields) {
      const ConversionDefinition* d = list_.Find(ScheduleFieldName(field.name, schedule));
      ASSERT_NE(d, nullptr) << field.name << ", " << schedule;
      EXPECT_TRUE(d->active) << field.name << ", " << schedule;
    }
  }
}

TEST_F(BnaExampleTest, DefinitionLinesAreWrittenBackAsTheyStand) {
  ProfileText text = ProfileText::Parse(ReadFileBytes(kFolder + "EXAMPLE.IMP").value_or(""));
  ASSERT_EQ(list_.size(), text.Keys(kBnaDefinitionsSection).size());
  for (const ConversionDefinition& d : list_.entries()) {
    EXPECT_EQ(FormatDefinitionLine(d), text.Find(kBnaDefinitionsSection, d.name)) << d.name;
  }
}

TEST_F(BnaExampleTest, EveryLineHoldsEveryColumnTheProfileReads) {
  ASSERT_EQ(data_.size(), 6u);
  BnaSourceMeasure m = MeasureBnaSource(report_, params_.file_type);
  EXPECT_EQ(m.data_lines, 6);
  EXPECT_EQ(m.columns, 29);
  for (const ConversionDefinition& d : list_.entries()) EXPECT_LT(d.column, m.columns) << d.name;
  // A line whose last column is empty ends with a comma: it has one column less, and its
  // note is none rather than empty.
  EXPECT_EQ(ColumnClass(data_[0].text, params_.file_type).Count(), 28);
  EXPECT_EQ(Value(data_[0], {"Note Text", 100}), std::nullopt);
  EXPECT_EQ(ColumnClass(data_[4].text, params_.file_type).Count(), 29);
  EXPECT_EQ(Value(data_[4], {"Note Text", 100}), "Sold to Dr. Ames");
  // Two comment lines head the report and one stands before 1004.
  EXPECT_EQ(data_[0].number, 3);
  EXPECT_EQ(data_[3].number, 7);
  EXPECT_EQ(Value(data_[3], {kBnaAssetNoField, 12}), "1004");
}

TEST_F(BnaExampleTest, ValuesOfTheXRayLine) {
  const BnaSourceLine& xray = data_[1];
  EXPECT_EQ(Value(xray, {kBnaAssetNoField, 12}), "1002");
  EXPECT_EQ(Value(xray, kBnaGeneralFields[0]), "Panoramic X-ray, digital");
  EXPECT_EQ(Value(xray, {"Category", 100}), "210");
  EXPECT_EQ(Value(xray, {"Note Text", 100}), "Service contract with \"Imaging Partners\" to 2025");
  EXPECT_EQ(Value(xray, {"User Field 3", 20}), "BNA import");
  EXPECT_EQ(Value(xray, {"User Field 4", 20}), std::nullopt);
  EXPECT_EQ(Value(xray, {"Misc. Codes", 100}, "Book"), "Imaging eq");
  EXPECT_EQ(Value(xray, {"Depr Method", 2}, "Book"), "1");
  EXPECT_EQ(Value(xray, {"Depr Method", 2}, "Tax"), "10");
  EXPECT_EQ(Value(xray, {"179 Expense", 100}, "Tax"), "10,000.00");
  EXPECT_EQ(Value(xray, {"179 Expense", 100}, "Book"), std::nullopt);
  EXPECT_DOUBLE_EQ(BnaAmount(*Value(xray, {"Accum. Allowed", 100}, "Tax"), 0), 31160.0);
  EXPECT_DOUBLE_EQ(BnaAmount(*Value(xray, {"Accum. Allowed", 100}, "Book"), 0), 24814.29);

  std::vector<std::string> asked;
  special_ = [&asked](const ConversionDefinition& d) -> std::optional<std::string> {
    asked.push_back(d.name);
    return "12";
  };
  EXPECT_EQ(Value(xray, {"Depr Method", 2}, "AMT"), "12");
  EXPECT_EQ(Value(xray, {"Convention", 100}, "ACE"), "12");
  EXPECT_EQ(asked, (std::vector<std::string>{"Depr Method, AMT", "Convention"}));
  EXPECT_FALSE(ReadProfileValue(profiles_, kBnaSpecialSection, "Depr Method, AMT", "").empty());
}

}  // namespace
}  // namespace nv
