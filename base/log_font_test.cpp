#include "base/log_font.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(LogFontTest, FormatPadsTheFaceNameToThirtyTwo) {
  LogFont font{-13, 0, 0, 0, 400, 0, 1, 0, 0, 3, 2, 1, 49, "Courier New"};
  EXPECT_EQ(FormatLogFont(font),
            "LOGFONT(-13,0,0,0,400,0,1,0,0,3,2,1,49,Courier New                     )");
  font.face_name = std::string(40, 'F');
  EXPECT_EQ(FormatLogFont(font),
            "LOGFONT(-13,0,0,0,400,0,1,0,0,3,2,1,49," + std::string(32, 'F') + ")");
}

TEST(LogFontTest, ParseReadsWhatFormatWrote) {
  const auto font =
      ParseLogFont("LOGFONT(-13, 7,1,2,700,255,1,1,0,3,2,1,49,  Times New Roman               )");
  ASSERT_TRUE(font.has_value());
  EXPECT_EQ(font->height, -13);
  EXPECT_EQ(font->width, 7);
  EXPECT_EQ(font->escapement, 1);
  EXPECT_EQ(font->orientation, 2);
  EXPECT_EQ(font->weight, 700);
  EXPECT_EQ(font->italic, 255);
  EXPECT_EQ(font->strike_out, 1);
  EXPECT_EQ(font->out_precision, 3);
  EXPECT_EQ(font->pitch_and_family, 49);
  EXPECT_EQ(font->face_name, "Times New Roman");
}

TEST(LogFontTest, FaceNameIsCutToThirtyOneAndByteFieldsKeepTheirLowByte) {
  const auto font =
      ParseLogFont("LOGFONT(1,2,3,4,5,256,257,0,0,0,0,0,0," + std::string(31, 'A') + "Z trailing)");
  ASSERT_TRUE(font.has_value());
  EXPECT_EQ(font->face_name, std::string(31, 'A'));
  EXPECT_EQ(font->italic, 0);
  EXPECT_EQ(font->underline, 1);
}

TEST(LogFontTest, MalformedTextsAreRefused) {
  const std::string face = "Arial                           )";
  for (const std::string& text : {
           std::string(""),
           std::string("logfont(1,2,3,4,5,6,7,8,9,10,11,12,13,") + face,  // prefix case
           std::string("LOGFONT(1,2,3,4,5,6,7,8,9,10,11,12,") + face,     // twelve numbers
           std::string("LOGFONT(1,2,3,4,5,6,7,8,9,10,11,12,x,") + face,   // not a number
           std::string("LOGFONT(1,2,3,4,5,6,7,8,9,10,11,12,13,Arial)"),   // face too short
           std::string("LOGFONT(99999999999,2,3,4,5,6,7,8,9,10,11,12,13,") + face,
       }) {
    EXPECT_EQ(ParseLogFont(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace nv
