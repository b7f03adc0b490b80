#include "tools/json_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace nv {
namespace {

// Every kind of nesting: members, an empty object and list, a list in a list, an object in
// an object.
void WriteSample(JsonWriter& w) {
  w.BeginObject();
  w.Key("a");
  w.Integer(1);
  w.Key("empty");
  w.BeginObject();
  w.EndObject();
  w.Key("none");
  w.BeginArray();
  w.EndArray();
  w.Key("list");
  w.BeginArray();
  w.Bool(true);
  w.BeginArray();
  w.String("03/01/2023");
  w.String("");
  w.EndArray();
  w.EndArray();
  w.Key("inner");
  w.BeginObject();
  w.Key("x");
  w.String("y");
  w.EndObject();
  w.EndObject();
}

std::string Written(int indent, void (*write)(JsonWriter&)) {
  std::ostringstream out;
  {
    JsonWriter w(out, indent);
    write(w);
  }
  return out.str();
}

TEST(JsonWriterTest, LayoutsWithAndWithoutIndent) {
  EXPECT_EQ(Written(2, WriteSample),
            "{\n"
            "  \"a\": 1,\n"
            "  \"empty\": {},\n"
            "  \"none\": [],\n"
            "  \"list\": [\n"
            "    true,\n"
            "    [\n"
            "      \"03/01/2023\",\n"
            "      \"\"\n"
            "    ]\n"
            "  ],\n"
            "  \"inner\": {\n"
            "    \"x\": \"y\"\n"
            "  }\n"
            "}");
  EXPECT_EQ(Written(-1, WriteSample),
            R"({"a":1,"empty":{},"none":[],"list":[true,["03/01/2023",""]],"inner":{"x":"y"}})");
  EXPECT_EQ(Written(2,
                    [](JsonWriter& w) {
                      w.BeginArray();
                      w.EndArray();
                    }),
            "[]");
}

TEST(JsonWriterTest, EscapesWhatJsonRequiresAndNothingElse) {
  auto text = [](std::string_view s) {
    std::ostringstream out;
    JsonWriter(out).String(s);
    return out.str();
  };
  EXPECT_EQ(text("say \"hi\" \\ / done"), R"("say \"hi\" \\ / done")");
  EXPECT_EQ(text("\b\f\n\r\t"), R"("\b\f\n\r\t")");
  EXPECT_EQ(text(std::string("\x01\x1f\x00z", 4)), R"("\u0001\u001f\u0000z")");
  // DEL and UTF-8 (é, the euro sign, a C1 control) stay as they are.
  EXPECT_EQ(text("\x7f\xC3\xA9\xE2\x82\xAC\xC2\x81"), "\"\x7f\xC3\xA9\xE2\x82\xAC\xC2\x81\"");
  EXPECT_EQ(text(""), "\"\"");
}

TEST(JsonWriterTest, NumbersHaveTheDigitsOfEarlierDocuments) {
  auto number = [](double v) {
    std::ostringstream out;
    JsonWriter(out).Number(v);
    return out.str();
  };
  EXPECT_EQ(number(500), "500.0");
  EXPECT_EQ(number(12000.5), "12000.5");
  EXPECT_EQ(number(1500.25), "1500.25");
  EXPECT_EQ(number(0.1), "0.1");
  EXPECT_EQ(number(-2.25), "-2.25");
  EXPECT_EQ(number(0.0), "0.0");
  EXPECT_EQ(number(-0.0), "-0.0");
  EXPECT_EQ(number(123456789012345.0), "123456789012345.0");
  EXPECT_EQ(number(1e15), "1e+15");
  EXPECT_EQ(number(1e-5), "1e-05");
  EXPECT_EQ(number(123456789.125), "123456789.125");
  EXPECT_EQ(number(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(number(std::nan("")), "null");

  std::ostringstream out;
  JsonWriter w(out);
  w.BeginArray();
  w.Integer(-7);
  w.Integer(std::numeric_limits<int64_t>::min());
  w.Integer(16777215);
  w.Bool(false);
  w.EndArray();
  w.Flush();
  EXPECT_EQ(out.str(), "[-7,-9223372036854775808,16777215,false]");
}

TEST(JsonWriterTest, ValuesOneAfterAnotherAndLongOutput) {
  // A listing writes many values through one writer, with its own text between them.
  std::ostringstream out;
  JsonWriter w(out);
  const std::string long_text(200 * 1024, 'x');
  w.String(long_text);
  w.Flush();
  out << " | ";
  w.BeginObject();
  w.Key("k");
  w.Integer(2);
  w.EndObject();
  w.Flush();
  EXPECT_EQ(out.str(), "\"" + long_text + "\" | {\"k\":2}");
}

}  // namespace
}  // namespace nv
