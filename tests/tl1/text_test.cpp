#include "varnel_tl1/text.h"

#include <gtest/gtest.h>

#include "growth.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::LineReader;
using VARNEL_TL1::Message;
using VARNEL_TL1::QuotedText;

Texts Lines(std::string_view text) {
  Texts lines;
  LineReader reader(text);
  for (std::string_view line; reader.Next(line);)
    lines.emplace_back(line);
  return lines;
}

// The quoted text of each line.
Texts Quoted(std::string_view text) {
  Texts quoted;
  LineReader reader(text);
  for (std::string_view line; reader.Next(line);)
    quoted.emplace_back(reader.Quoted());
  return quoted;
}

// `aid: a b | NAME=c`: blocks are separated by bars; everything is unescaped.
std::string TakenApart(std::string_view text) {
  QuotedText quoted;
  if (!quoted.Read(text)) return "-";
  std::string shown = VARNEL_TL1::Unescaped(quoted.Aid()) + ":";
  size_t block = 0;
  for (const QuotedText::Parameter& parameter : quoted.Parameters()) {
    for (; block < parameter.block; ++block)
      shown += " |";
    shown += " [" + VARNEL_TL1::Unescaped(parameter.name) + (parameter.name.empty() ? "" : "=") +
             VARNEL_TL1::Unescaped(parameter.value) + "]";
  }
  for (; block + 1 < quoted.Blocks(); ++block)
    shown += " |";
  return shown + " " + std::to_string(quoted.Blocks());
}

TEST(Tl1Text, LinesLoseIndentAndLineEnds) {
  EXPECT_EQ(Lines("\r\n   \"a\" \r\n\n      b\n\tc\rd\r\n \r\n"), (Texts{"\"a\" ", "", "b", "c", "d"}));
  EXPECT_EQ(Lines("a"), Texts{"a"});
  EXPECT_EQ(Lines(std::string_view("a\r\0\nb\r\0c", 8)), (Texts{"a", "b", "c"}));
  EXPECT_EQ(Lines(" \r\n\t\n"), Texts{});
  EXPECT_EQ(Lines(""), Texts{});
}

TEST(Tl1Text, QuotedTextsBeginAtALineAndEndOne) {
  EXPECT_EQ(Quoted("   \"a\\\"b\" \r\n   c\r\n   \"d\"e\r\n   \"f\"\r\n   \"open"),
            (Texts{"\"a\\\"b\"", "", "", "\"f\"", ""}));
  EXPECT_EQ(Quoted("   \"a,\r\n   \"b\"\r\n"), (Texts{"", "\"b\""})) << "the first one is not closed at a line's end";
  EXPECT_EQ(Quoted("   \"a,\r\n   b\"\r\n   \"c\"\r\n"), (Texts{"\"a,\r\n   b\"", "", "\"c\""}));
  EXPECT_EQ(Quoted("   \"a\r\n   \"\r\n   b\"\r\n"), (Texts{"\"a\r\n   \"", "", ""}));
  EXPECT_EQ(Quoted("   \"a\r\n\r\n   \\\"b\r\n   c\"\r\n"), (Texts{"\"a\r\n\r\n   \\\"b\r\n   c\"", "", "", ""}));
}

TEST(Tl1Text, IsParsedIntoBlocksAndParameters) {
  EXPECT_EQ(TakenApart("\"SLOT-3:CR,LOS,SA\""), "SLOT-3: [CR] [LOS] [SA] 1");
  EXPECT_EQ(TakenApart("\"SLOT-3:CR,,X=1,SA:Y=2,:Z\""), "SLOT-3: [CR] [] [X=1] [SA] | [Y=2] [] | [Z] 3");
  EXPECT_EQ(TakenApart("\"SLOT-3\""), "SLOT-3: 0");
  EXPECT_EQ(TakenApart("\"SLOT-3:\""), "SLOT-3: 1");
  EXPECT_EQ(TakenApart("\"A::B:\""), "A: | [B] | 3");
  EXPECT_EQ(TakenApart("\":CR\""), ": [CR] 1");
  EXPECT_EQ(TakenApart("\"\""), ": 0");
  EXPECT_EQ(TakenApart("\"A:=1,B=,C=D=E\""), "A: [=1] [B=] [C=D=E] 1");
}

TEST(Tl1Text, SeparatorsInsideAQuotedValueAreOrdinary) {
  EXPECT_EQ(TakenApart(R"("A:\"b, c: d=e\",F=\"g=h, i\":\"j\"")"), "A: [b, c: d=e] [F=g=h, i] | [j] 2");
  EXPECT_EQ(TakenApart(R"("A:\"say \\\"b, c\\\"\",d")"), R"(A: [say \"b, c\"] [d] 1)");
  EXPECT_EQ(TakenApart(R"("A\"B:C\":d")"), R"(A"B:C": [d] 1)");
  EXPECT_EQ(TakenApart(R"("A:\"open, b")"), R"(A: ["open, b] 1)");
}

TEST(Tl1Text, IsUnescaped) {
  EXPECT_EQ(VARNEL_TL1::Unescaped(R"(a\\b\"c\d\)"), R"(a\b"c\d\)");
  EXPECT_EQ(VARNEL_TL1::Unescaped(R"(\"\")"), "");
  EXPECT_EQ(VARNEL_TL1::Unescaped(R"(\")"), "\"");
  EXPECT_EQ(VARNEL_TL1::Unescaped("ab\r\n   cd\n\re"), "abcde") << "folded";
  EXPECT_EQ(VARNEL_TL1::Unescaped("\x95\\\\x"), "\x95\\\\x") << "the first backslash is part of a character";
  EXPECT_EQ(VARNEL_TL1::Unescaped("\xC3\xA9\\\\x"), "\xC3\xA9\\x");
  std::string text = "kept ";
  VARNEL_TL1::AppendUnescaped("a", text);
  EXPECT_EQ(text, "kept a");
}

// The \" is a quote, as the backslash is the second byte of a character.
TEST(Tl1Text, QuotesAfterTwoByteCharacters) {
  EXPECT_EQ(Quoted("\"\x95\\\"\r\n\"b\""), (Texts{"\"\x95\\\"", "\"b\""}));
}

TEST(Tl1Text, ReadForgetsTheTextBefore) {
  QuotedText quoted;
  EXPECT_TRUE(quoted.Read("\"A:b:c\""));
  EXPECT_EQ(quoted.Positional(1, 0), "c");
  EXPECT_EQ(quoted.Positional(0, 1), "");
  for (const char* text : {"", "\"", "A:b", "\"A", "A\""}) {
    EXPECT_FALSE(quoted.Read(text)) << text;
    EXPECT_EQ(quoted.Aid(), "");
    EXPECT_EQ(quoted.Blocks(), 0U);
    EXPECT_TRUE(quoted.Parameters().empty());
  }
}

TEST(Tl1Text, TheSeverityIsTheFirstPositionalParameterOfTheFirstQuotedLine) {
  struct Case {
    const char* text;
    const char* severity;
  };
  for (const Case& c :
       {Case{"   \"A:CR,X\"\r\n", "CR"}, Case{"   /* x */\r\n   \"A:MJ\"\r\n", "MJ"}, Case{"\"A:MN:X\"", "MN"},
        Case{"\"A:CL,\"", "CL"}, Case{"\"A:XX\"\r\n\"A:CR\"", ""}, Case{"\"A:X,CR\"", ""}, Case{"A:CR", ""},
        Case{"\"A\"", ""}, Case{"", ""}, Case{"\"CR\"", ""}, Case{"\"A:N=1,CR\"", "CR"},
        Case{"\"A:N=\\\"a,b\\\",M=2:MJ\"", "MJ"}, Case{"\"A:CR=1\"", ""}, Case{"\"A::CR\"", "CR"}}) {
    Message message;
    message.text = c.text;
    EXPECT_EQ(VARNEL_TL1::Severity(message), c.severity) << c.text;
  }
}

TEST(Tl1Text, TakesLinearTime) {
  for (const std::string unit : {"\"a\r\n", "\"", "\\\"", "\\", ",", ":", "\r\n", "\"\r\n", "x=\\\"", "\x95"}) {
    const auto prepare = [&unit](size_t size) {
      std::string text = "\"";
      while (text.size() < size)
        text += unit;
      return text + "\"";
    };
    const auto read = [](const std::string& text) {
      Quoted(text);
      TakenApart(text);
    };
    EXPECT_LT(Growth(4000, prepare, read), LINEAR_GROWTH) << unit;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
