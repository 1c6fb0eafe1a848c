#include "json.h"

#include <cstdint>
#include <iostream>

#include <gtest/gtest.h>

namespace VARNEL_TEST {

namespace {

template <typename T>
std::string Printed(const T& value) {
  testing::internal::CaptureStdout();
  JsonWriter().Add("key", value).Print();
  std::cout.flush();
  return testing::internal::GetCapturedStdout();
}

std::string InJson(const std::string& text) {
  return "{\"key\":\"" + text + "\"}\n";
}

struct Case {
  std::string text, json;
};

}  // namespace

TEST(JsonWriterTest, WritesValuesOfEachKind) {
  EXPECT_EQ("{\"key\":\"text\"}\n", Printed("text"));
  EXPECT_EQ("{\"key\":null}\n", Printed(std::optional<int>()));
  EXPECT_EQ("{\"key\":true}\n", Printed(std::optional(true)));
  EXPECT_EQ("{\"key\":-1}\n", Printed(-1));
  EXPECT_EQ("{\"key\":18446744073709551615}\n", Printed(UINT64_MAX));
  EXPECT_EQ("{\"key\":[\"a\",\"\"]}\n", Printed(std::vector<std::string>{"a", ""}));
}

TEST(JsonWriterTest, BeginsAnObjectAgainAfterPrinting) {
  testing::internal::CaptureStdout();
  JsonWriter json;
  json.AddOrNull("a", "").Print();
  json.AddOrNull("b", "x");
  json.Key("c");
  json.BeginArray();
  json.BeginObject();
  json.AnyKey("\"");
  json.Value(1);
  json.EndObject();
  json.EndArray();
  json.Print();
  std::cout.flush();
  EXPECT_EQ("{\"a\":null}\n{\"b\":\"x\",\"c\":[{\"\\\"\":1}]}\n", testing::internal::GetCapturedStdout());
}

TEST(JsonWriterTest, HarmlessTextIsUnchanged) {
  for (const std::string text : {"", "a", "~ !#[]^", "M\u00FCnchen", "\u6771\u4EAC", "\U0001F600", "\u00A0", "\u2029"})
    EXPECT_EQ(InJson(text), Printed(text));
}

// At each position in and after the blocks of eight bytes that are examined as a whole.
TEST(JsonWriterTest, EscapesOrReplacesAtEachPosition) {
  for (const Case& special :
       {Case{"\"", "\\\""}, Case{"\\", "\\\\"}, Case{"\n", "\\u000a"}, Case{std::string(1, '\0'), "\\u0000"},
        Case{"\x1F", "\\u001f"}, Case{"\x7F", "\\u007f"}, Case{"\u0080", "\\u0080"}, Case{"\u009F", "\\u009f"},
        Case{"\u061C", "\\u061c"}, Case{"\u202E", "\\u202e"}, Case{"\u2069", "\\u2069"}, Case{"\x80", "\uFFFD"},
        Case{"\xFF", "\uFFFD"}, Case{"\xC3", "\uFFFD"}, Case{"\xC0\xAF", "\uFFFD\uFFFD"},
        Case{"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"}}) {
    for (size_t place = 0; place < 20; ++place) {
      const std::string before(place, 'x'), after(19 - place, 'y');
      EXPECT_EQ(InJson(before + special.json + after), Printed(before + special.text + after));
    }
  }
}

TEST(JsonWriterTest, LongTextsAreWhole) {
  const std::string text(100000, 'x');
  EXPECT_EQ(InJson(text), Printed(text));
}

}  // namespace VARNEL_TEST
