#include "store/codes/account_groups.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/file_util.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::ByteBuilder;
using testing::Bytes;
using testing::TempDir;

std::string Padded(const std::string& text, size_t width) {
  return text + std::string(width - text.size(), ' ');
}

std::vector<std::string> Codes(const std::vector<AccountGroup>& groups) {
  std::vector<std::string> codes;
  for (const AccountGroup& g : groups) codes.push_back(g.code);
  return codes;
}

AccountGroup Group(const std::string& code, const std::string& description, const std::string& a1,
                   const std::string& a2, const std::string& a3, const std::string& a4) {
  return AccountGroup{code, description, {a1, a2, a3, a4}};
}

class AccountGroupFileTest : public ::testing::Test {
 protected:
  std::string File() const { return dir_.path() + "/CO1.ACG"; }

  TempDir dir_;
  const std::string folder_ = dir_.path() + "/";
};

TEST_F(AccountGroupFileTest, WritesHeaderSizeBytesAnd448ByteRecords) {
  AccountGroupList list;
  list.folder = "C:\\GL\\";
  list.file_name = "CO1.EX1";
  list.option_text = "N";
  list.option_flag = true;
  list.groups.push_back(Group("OFFICE", "Office furniture", "1500", "1510", "6100", "2100"));
  ASSERT_EQ(SaveAccountGroups(folder_, "CO1", list), 1);

  ByteBuilder expected;
  expected.Text("321\nC:\\GL\\\nCO1.EX1\nN\nY\n").Raw({24, 4, 100});
  expected.Text("OFFICE").Fill(' ', 18).Text("Office furniture").Fill(' ', 8);
  expected.Text("1500").Fill(' ', 96).Text("1510").Fill(' ', 96);
  expected.Text("6100").Fill(' ', 96).Text("2100").Fill(' ', 96);
  ASSERT_EQ(expected.size(), 23u + 3u + 448u);
  EXPECT_EQ(testing::ReadAll(File()), expected.bytes());
}

TEST_F(AccountGroupFileTest, ReadsCurrentFormatSortedAndStopsAtIncompleteRecord) {
  ByteBuilder file;
  file.Text("321\r\n/gl/\r\nGL.EX1\r\nOPT\r\nY\r\n").Raw({24, 4, 100});
  file.Text(Padded("B10", 24)).Text(Padded("Second", 24));
  for (const char* a : {"1", "2", "3", "4"}) file.Text(Padded(a, 100));
  file.Text(Padded("B9", 24)).Text(Padded("First", 24));
  for (const char* a : {" 5", "6", "7", "8"}) file.Text(Padded(a, 100));
  file.Text(Padded("C", 24)).Text(Padded("cut short", 24)).Text("9");
  testing::WriteAll(File(), file.bytes());

  AccountGroupList list;
  ASSERT_EQ(LoadAccountGroups(folder_, "CO1", &list), 2);
  EXPECT_EQ(list.folder, "/gl/");
  EXPECT_EQ(list.file_name, "GL.EX1");
  EXPECT_EQ(list.option_text, "OPT");
  EXPECT_TRUE(list.option_flag);
  EXPECT_EQ(list.groups, (std::vector<AccountGroup>{Group("B9", "First", "5", "6", "7", "8"),
                                                    Group("B10", "Second", "1", "2", "3", "4")}));
}

TEST_F(AccountGroupFileTest, Format720IsWrittenBackAs321WithCodesPaddedTo24) {
  // 720: no option lines, description width 12, 2 accounts as wide as the description,
  // 10-byte codes.
  ByteBuilder file;
  file.Text("720\n/old/\nOLD.EX1\n").Raw({12, 2});
  file.Text("OFFICE    ").Text("Furniture   ").Text("1500        ").Text("6100        ");
  testing::WriteAll(File(), file.bytes());

  AccountGroupList list;
  list.option_flag = true;
  ASSERT_EQ(LoadAccountGroups(folder_, "CO1", &list), 1);
  EXPECT_EQ(list.option_text, "N");
  EXPECT_FALSE(list.option_flag);
  EXPECT_EQ(list.groups[0], Group("OFFICE", "Furniture", "1500", "6100", "", ""));
  ASSERT_EQ(SaveAccountGroups(folder_, "CO1", list), 1);

  ByteBuilder expected;
  expected.Text("321\n/old/\nOLD.EX1\nN\nN\n").Raw({24, 4, 100});
  expected.Text("OFFICE").Fill(' ', 18).Text("Furniture").Fill(' ', 15);
  expected.Text("1500").Fill(' ', 96).Text("6100").Fill(' ', 96).Fill(' ', 200);
  EXPECT_EQ(testing::ReadAll(File()), expected.bytes());
}

TEST_F(AccountGroupFileTest, OlderFormatsAndCodelessFiles) {
  // 710: integer codes, little-endian; more accounts than four are skipped.
  ByteBuilder file710;
  file710.Text("710\nF\nN.EX1\n").Raw({3, 5});
  file710.U32(1234).Text("abc").Text("a1 ").Text("a2 ").Text("a3 ").Text("a4 ").Text("a5 ");
  file710.U32(0xFFFFFFFF).Text("neg").Text("b1 b2 b3 b4 b5 ");
  testing::WriteAll(File(), file710.bytes());
  AccountGroupList list;
  ASSERT_EQ(LoadAccountGroups(folder_, "CO1", &list), 2);
  EXPECT_EQ(list.groups, (std::vector<AccountGroup>{Group("-1", "neg", "b1", "b2", "b3", "b4"),
                                                    Group("1234", "abc", "a1", "a2", "a3", "a4")}));

  // 721 and 152 carry the option lines; 152 has 24-byte codes, fields are C strings.
  ByteBuilder file152;
  file152.Text("152\nF\nN.EX1\nopt\nN\n").Raw({4, 1});
  file152.Text(Padded("G1", 24)).Text(std::string("ab\0z", 4)).Text("acct");
  testing::WriteAll(File(), file152.bytes());
  ASSERT_EQ(LoadAccountGroups(folder_, "CO1", &list), 1);
  EXPECT_EQ(list.option_text, "opt");
  EXPECT_EQ(list.groups[0], Group("G1", "ab", "acct", "", "", ""));

  // First byte not a digit: the three size bytes start the file, records have no code.
  ByteBuilder codeless;
  codeless.Raw({'X', 2, 1}).Text(std::string(88, 'd')).Text("a").Text("b").Text("c");
  testing::WriteAll(File(), codeless.bytes());
  ASSERT_EQ(LoadAccountGroups(folder_, "CO1", &list), 1);
  EXPECT_EQ(list.folder, dir_.path() + "/");
  EXPECT_EQ(list.file_name, "CO1.EX1");
  EXPECT_EQ(list.option_text, "N");
  EXPECT_EQ(list.groups[0], Group("", std::string(24, 'd'), "a", "b", "", ""));

  // A first line of three digits that name no format: no groups, settings untouched.
  testing::WriteAll(File(), Bytes{'9', '9', '9', '\n', 'F', '\n'});
  list.folder = "kept";
  EXPECT_EQ(LoadAccountGroups(folder_, "CO1", &list), 0);
  EXPECT_TRUE(list.groups.empty());
  EXPECT_EQ(list.folder, "kept");
  // "%3d" reads three digits only.
  testing::WriteAll(File(), Bytes{'3', '2', '1', '0', '\n', 'F', '\n'});
  EXPECT_EQ(LoadAccountGroups(folder_, "CO1", &list), 0);
  EXPECT_EQ(list.folder, "F");

  // No file: defaults.
  std::filesystem::remove(File());
  list.groups.push_back(Group("X", "", "", "", "", ""));
  EXPECT_EQ(LoadAccountGroups(folder_, "CO1", &list), 0);
  EXPECT_EQ(list.folder, dir_.path() + "/");
  EXPECT_EQ(list.file_name, "CO1.EX1");
  EXPECT_TRUE(list.groups.empty());
}

TEST_F(AccountGroupFileTest, UnwritableFileFails) {
  EXPECT_EQ(SaveAccountGroups(dir_.path() + "/missing/", "CO1", AccountGroupList()),
            kFileNotCreated);
}

TEST(AccountGroupLookupTest, PreferredCodeGetsSuffixesWhenTaken) {
  std::vector<AccountGroup> groups;
  const AccountGroup* g = GetOrAddAccountGroup(&groups, "1500", "1510", "6100", "2100", "OFFICE");
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(g->code, "OFFICE");
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "1501", "1510", "6100", "2100", "OFFICE")->code,
            "OFFICEA");
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "1502", "1510", "6100", "2100", "OFFICE")->code,
            "OFFICEB");
  // The same accounts find their group whatever code is asked for.
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "1501", "1510", "6100", "2100", "OTHER")->code,
            "OFFICEA");
  EXPECT_EQ(Codes(groups), (std::vector<std::string>{"OFFICE", "OFFICEA", "OFFICEB"}));

  // Without a preferred code the first account is the code; a blank code adds nothing.
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "7000", "", "", "", "")->code, "7000");
  EXPECT_EQ(GetOrAddAccountGroup(&groups, " ", "1", "", "", ""), nullptr);
  EXPECT_EQ(groups.size(), 4u);

  // A 24-character code is cut to 23 before the suffix; past "Z" nothing is added.
  const std::string long_code(24, 'L');
  GetOrAddAccountGroup(&groups, "a", "", "", "", long_code);
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "b", "", "", "", long_code)->code,
            std::string(23, 'L') + "A");
  for (int i = 0; i < 27; ++i) {
    GetOrAddAccountGroup(&groups, "acct" + std::to_string(i), "x", "", "", "Q");
  }
  EXPECT_EQ(FindAccountGroupByCode(groups, "QZ")->accounts[0], "acct26");
  EXPECT_EQ(GetOrAddAccountGroup(&groups, "last", "x", "", "", "Q"), nullptr);

  // Accounts compare in natural order; the code lookup cuts to 24 characters.
  EXPECT_EQ(FindAccountGroupByAccounts(groups, "1502", "1510", "6100", "2100")->code, "OFFICEB");
  EXPECT_EQ(FindAccountGroupByAccounts(groups, "1502", "1510", "6100", "2101"), nullptr);
  EXPECT_EQ(FindAccountGroupByCode(groups, long_code + "extra")->code, long_code);
}

TEST(AccountGroupLookupTest, ByCodeRaisesTheCharacterPastTheGivenCode) {
  std::vector<AccountGroup> groups = {Group("AUTO", "", "1", "", "", ""),
                                      Group("AUTOA", "", "2", "", "", ""),
                                      Group("AUTOB", "", "3", "", "", "")};
  // Same code and accounts: that group.
  EXPECT_EQ(GetOrAddAccountGroupByCode(&groups, "1", "", "", "", "AUTO")->code, "AUTO");
  // Other accounts: AUTOA, then AUTOB (which has them).
  EXPECT_EQ(GetOrAddAccountGroupByCode(&groups, "3", "", "", "", "AUTO")->code, "AUTOB");
  // Nobody has them: the first free code after AUTO, AUTOA, AUTOB.
  const AccountGroup* added = GetOrAddAccountGroupByCode(&groups, "4", "", "", "", "AUTO");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->code, "AUTOC");
  EXPECT_EQ(added->accounts[0], "4");
  // Starting from AUTOA the changing character is the sixth: AUTOAA.
  EXPECT_EQ(GetOrAddAccountGroupByCode(&groups, "5", "", "", "", "AUTOA")->code, "AUTOAA");
  // A free code is taken as it is.
  EXPECT_EQ(GetOrAddAccountGroupByCode(&groups, "6", "", "", "", "NEW")->code, "NEW");
  EXPECT_EQ(GetOrAddAccountGroupByCode(&groups, "7", "", "", "", "  "), nullptr);
  EXPECT_EQ(Codes(groups),
            (std::vector<std::string>{"AUTO", "AUTOA", "AUTOAA", "AUTOB", "AUTOC", "NEW"}));
}

}  // namespace
}  // namespace nv
