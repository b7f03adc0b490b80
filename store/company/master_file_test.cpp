#include "store/company/master_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "base/temp_dir_testing.h"

namespace nv {
namespace {

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void Put(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A company line as the layout gives it: two quoted fields, blanks to column 58, CR LF.
std::string PaddedLine(const std::string& fields) {
  return fields + std::string(58 - fields.size(), ' ') + "\r\n";
}

TEST(MasterFileTest, WritesCountLinePaddedCompanyLinesAndCrLf) {
  TempDir dir;
  const std::string folder = dir.path() + "/";
  MasterFile master;
  master.subfolders = true;
  InsertMasterRec(&master.companies, {"co10", "Tenth Company"});
  InsertMasterRec(&master.companies, {"CO2", "Second"});
  InsertMasterRec(&master.companies, {"ABCDEFGHIJ", std::string(45, 'n')});
  ASSERT_EQ(WriteMasterFile(folder, master), MasterFileStatus::kOk);
  EXPECT_EQ(Slurp(folder + "MASTER.A"),
            "\"3 S\"\r\n" + PaddedLine("\"ABCDEFGH\",\"" + std::string(40, 'n') + "\"") +
                PaddedLine("\"CO2\",\"Second\"") + PaddedLine("\"CO10\",\"Tenth Company\""));

  master.subfolders = false;
  master.companies.clear();
  ASSERT_EQ(WriteMasterFile(folder, master), MasterFileStatus::kOk);
  EXPECT_EQ(Slurp(folder + "MASTER.A"), "\"0\"\r\n");
}

TEST(MasterFileTest, ReadsUpperCasesSortsAndOnlyTrailingSCounts) {
  TempDir dir;
  const std::string folder = dir.path() + "/";
  // Written by hand the way the main program leaves it, in a lower-case file name, with a
  // count that does not match and companies out of order.
  Put(folder + "master.a",
      "\"7 S\"\r\n" + PaddedLine("\"b10\",\"Bee ten\"") + PaddedLine("\"b9\",\"Bee nine\"") +
          "\r\n" + PaddedLine("\"  \",\"no number\"") + "\"longnumber1\",\"" +
          std::string(50, 'x') + "\"\n" + "\"A1\"\x1a\"ZZ\",\"after the end mark\"\r\n");
  MasterFile master;
  ASSERT_EQ(ReadMasterFile(folder, &master), MasterFileStatus::kOk);
  EXPECT_TRUE(master.subfolders);
  ASSERT_EQ(master.companies.size(), 4u);
  EXPECT_EQ(master.companies[0].number, "A1");
  EXPECT_EQ(master.companies[0].name, "");
  EXPECT_EQ(master.companies[1].number, "B9");
  EXPECT_EQ(master.companies[1].name, "Bee nine");
  EXPECT_EQ(master.companies[2].number, "B10");
  EXPECT_EQ(master.companies[3].number, "LONGNUMB");
  EXPECT_EQ(master.companies[3].name, std::string(40, 'x'));

  Put(folder + "master.a", "\"2 s3\"\r\n");  // S not at the end: no subfolders
  ASSERT_EQ(ReadMasterFile(folder, &master), MasterFileStatus::kOk);
  EXPECT_FALSE(master.subfolders);
  EXPECT_TRUE(master.companies.empty());
}

TEST(MasterFileTest, MissingOrUnreadableFileFailsAndLeavesTheListAlone) {
  TempDir dir;
  const std::string folder = dir.path() + "/";
  MasterFile master;
  master.companies.push_back({"KEEP", "kept"});
  EXPECT_EQ(ReadMasterFile(folder, &master), MasterFileStatus::kNotFound);
  Put(folder + "MASTER.A", "");
  EXPECT_EQ(ReadMasterFile(folder, &master), MasterFileStatus::kUnreadable);
  Put(folder + "MASTER.A", "\"CO1\",\"no count line\"\r\n");
  EXPECT_EQ(ReadMasterFile(folder, &master), MasterFileStatus::kUnreadable);
  ASSERT_EQ(master.companies.size(), 1u);
  EXPECT_EQ(master.companies[0].number, "KEEP");
  EXPECT_EQ(WriteMasterFile(folder + "missing/", master), MasterFileStatus::kWriteFailed);
}

TEST(MasterFileTest, InsertReplacesTheSameNumberIgnoringCase) {
  MasterRecArray companies;
  InsertMasterRec(&companies, {"x2", "two"});
  InsertMasterRec(&companies, {"X1", "one"});
  InsertMasterRec(&companies, {" X2 ", "two again"});
  ASSERT_EQ(companies.size(), 2u);
  EXPECT_EQ(companies[0].number, "X1");
  EXPECT_EQ(companies[1].number, "X2");
  EXPECT_EQ(companies[1].name, "two again");
}

}  // namespace
}  // namespace nv
