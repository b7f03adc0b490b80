#include "import/bna/conversion/conversion_tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nv::bna {
namespace {

std::vector<std::string> Texts(const TokenList& list) {
  std::vector<std::string> texts;
  for (const Token& t : list.tokens) texts.push_back(t.text);
  return texts;
}

TEST(ConversionTokensTest, SplitsEveryFormAndSkipsBlanks) {
  const TokenList list = Tokenize(R"( concat({Loc Code},<Asset No.> , "say ""hi""",12.50,A12))");
  EXPECT_EQ(Texts(list),
            (std::vector<std::string>{"concat", "(", "{Loc Code}", ",", "<Asset No.>", ",",
                                      "\"say \"\"hi\"\"\"", ",", "12.50", ",", "A12", ")"}));
  EXPECT_EQ(list.tokens[2].position, 8u);
  EXPECT_EQ(list.unclosed_at, std::string::npos);
}

TEST(ConversionTokensTest, ArrowIsOneTokenAndMinusAnother) {
  EXPECT_EQ(Texts(Tokenize("\"1*\"->x:-5- >")),
            (std::vector<std::string>{"\"1*\"", "->", "x", ":", "-", "5", "-", ">"}));
  // Characters that are neither letters nor digits stand alone, high bytes included.
  EXPECT_EQ(Texts(Tokenize("a_b\xe9*")), (std::vector<std::string>{"a", "_", "b", "\xe9", "*"}));
}

TEST(ConversionTokensTest, UnclosedTokenEndsTheList) {
  TokenList list = Tokenize("left(\"abc, 2)");
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"left", "("}));
  EXPECT_EQ(list.unclosed_at, 5u);

  // A doubled quote at the very end does not close the string.
  list = Tokenize("x \"ab\"\"");
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"x"}));
  EXPECT_EQ(list.unclosed_at, 2u);

  EXPECT_EQ(Texts(Tokenize("a <Desc b")), (std::vector<std::string>{"a"}));
  EXPECT_EQ(Texts(Tokenize("{A} {B")), (std::vector<std::string>{"{A}"}));
  EXPECT_EQ(Tokenize("").size(), 0u);
}

}  // namespace
}  // namespace nv::bna
