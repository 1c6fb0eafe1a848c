#include <gtest/gtest.h>
#include <tl1framer.h>

#include "growth.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::Skipped;

const std::string HEADER = "\r\n\n   NORTH1 26-03-04 05:06:07\r\n";
const std::string RESPONSE = HEADER + "M  1 COMPLD\r\n   \"x\"\r\n;";

std::vector<std::string> Bytes(const Messages& messages) {
  std::vector<std::string> bytes;
  for (const Message& message : messages)
    bytes.push_back(message.bytes);
  return bytes;
}

using Texts = std::vector<std::string>;

TEST(Tl1Framer, GivesAMessageWithItsLastByte) {
  Framer framer;
  Message message;
  ASSERT_TRUE(framer.Feed(RESPONSE.substr(0, RESPONSE.size() - 1)));
  EXPECT_FALSE(framer.Next(message));
  ASSERT_TRUE(framer.Feed(";"));
  ASSERT_TRUE(framer.Next(message));
  EXPECT_EQ(message.bytes, RESPONSE);
}

TEST(Tl1Framer, AnEmptyStreamHasNoMessages) {
  Skipped skipped;
  EXPECT_TRUE(CutWhole("", &skipped).empty());
  EXPECT_EQ(skipped.bytes, 0U);
}

TEST(Tl1Framer, TellsOfALastMessageWithoutItsEnd) {
  for (const std::string& rest :
       {HEADER + "M  2 COMPLD\r\n   \"x", HEADER + "M  2 CO", HEADER, std::string("\r\n\n   NORTH1 26-0"),
        std::string("IP 2\r\n"), std::string("IP 2"), std::string("M  2 COMPLD\r\n   \"x\"\r\n")}) {
    const Messages messages = CutWhole(RESPONSE + rest);
    ASSERT_EQ(messages.size(), 2U) << rest;
    EXPECT_EQ(Shown(messages[0]), "0+" + std::to_string(RESPONSE.size()) + " complete " + RESPONSE);
    EXPECT_EQ(Shown(messages[1]),
              std::to_string(RESPONSE.size()) + "+" + std::to_string(rest.size()) + " incomplete " + rest);
  }
}

TEST(Tl1Framer, WhatLooksLikeNoMessageIsNoIncompleteOne) {
  for (const std::string rest : {"\r\n", "\r\n< ", "\r\nRTRV-H", "\r\nHI there\r\n", "OK\xFF", "   text"})
    EXPECT_EQ(CutWhole(RESPONSE + rest).size(), 1U) << rest;
}

TEST(Tl1Framer, CountsWhatItSkips) {
  Skipped skipped;
  CutWhole("Welcome\r\nto NORTH1\r\n< RTRV-X:::1;\xFF\xFB\x01" + RESPONSE + "\r\n;\r\n> \xFF\xFA\x18\xFF\xF0\r\n",
           &skipped);
  EXPECT_EQ(skipped.lines, 2U);
  EXPECT_EQ(skipped.prompts, 3U);
  EXPECT_EQ(skipped.echoes, 1U);
  EXPECT_EQ(skipped.telnet, 2U);
  EXPECT_EQ(skipped.bytes, 9U + 11 + 13 + 3 + 14);
}

TEST(Tl1Framer, APromptIsAMessageOnlyAloneOnItsLine) {
  EXPECT_EQ(Bytes(CutWhole("\r\n>")), Texts{"\r\n>"});
  EXPECT_EQ(Bytes(CutWhole("\n>\r\n")), Texts{"\n>"});
  EXPECT_EQ(Bytes(CutWhole(">\r\n\r\n>\r\n>")), (Texts{"\r\n>", "\r\n>"}));
  for (const std::string stream : {">", "\r\n> ", "\r\n>>", "\r\n>RTRV-X:::1;\r\n", "\r\nA>"})
    EXPECT_TRUE(CutWhole(stream).empty()) << stream;
}

TEST(Tl1Framer, AHeaderOfABannerIsDroppedForARealOne) {
  const std::string banner = "\r\n\n   System time 26-03-04 05:06:07\r\n   Authorised use only\r\n";
  Skipped skipped;
  EXPECT_EQ(Bytes(CutWhole(banner + RESPONSE, &skipped)), Texts{RESPONSE});
  EXPECT_EQ(Bytes(CutWhole(banner + "< " + RESPONSE, &skipped)), Texts{RESPONSE});
  EXPECT_EQ(Bytes(CutWhole("OK then\r\n" + RESPONSE, &skipped)), Texts{RESPONSE});
}

TEST(Tl1Framer, AStrayQuoteEndsWithTheNextStart) {
  const std::string stray = HEADER + "M  1 COMPLD\r\n   \"x\r\n;";
  const std::string comment = HEADER + "M  1 COMPLD\r\n   /* x\r\n>";
  for (const std::string& lost : {stray, comment}) {
    for (const std::string& next : {RESPONSE, "\r\nIP 4\r\n<" + RESPONSE, "\r\n< RTRV-X:::4;" + RESPONSE,
                                    "\r\n;\r\nNORTH1>" + RESPONSE, std::string("\r\nM  4 DENY\r\n;")}) {
      const Messages messages = CutWhole(lost + next);
      ASSERT_GE(messages.size(), 2U) << lost << next;
      EXPECT_EQ(messages[0].bytes, lost);
      EXPECT_EQ(messages.back().bytes.back(), ';');
      EXPECT_TRUE(messages.back().complete);
    }
    EXPECT_EQ(Bytes(CutWhole(lost)), Texts{lost});
    EXPECT_EQ(Bytes(CutWhole(lost + "\r\n< ")), Texts{lost});
  }
}

TEST(Tl1Framer, AFoldedQuoteEndsNothing) {
  for (const std::string text : {"\"a\r\n;\r\nb\"", "\"a\r\n; x\r\n;\r\n\r\n;\r\n > \"", "\"\\\"\r\n;\r\n\\\"\"",
                                 "/* a \"\r\n;\r\n*/", "/*/\r\n;\r\n*/", "\"/*\r\n;\r\n\" /* \r\n;\r\n*/"}) {
    const std::string message = HEADER + "M  1 COMPLD\r\n   " + text + "\r\n;";
    EXPECT_EQ(Bytes(CutWhole(message + RESPONSE)), (Texts{message, RESPONSE})) << text;
  }
}

TEST(Tl1Framer, ABackslashIsNoEscapeAsTheSecondByteOfACharacter) {
  for (const std::string text :
       {"\"\x95\\\"", "\"\xB1\xB1\xB1\\\"", "\"\xC3\xA9\\\"\"", "\"\xD6\xD0\\\"\"", "\"\xE6\x9D\xB1\\\"\""}) {
    const std::string message = HEADER + "M  1 COMPLD\r\n   " + text + "\r\n;";
    Framer framer;
    framer.Feed(message);
    Message first;
    EXPECT_TRUE(framer.Next(first)) << text;
  }
}

TEST(Tl1Framer, TelnetSequences) {
  const std::string start = HEADER + "M  1 COMPLD\r\n   ";
  const std::string subnegotiation = "\xFF\xFA" + std::string(600, 'x');
  struct Case {
    std::string sent, kept;
    uint64_t sequences;
  };
  for (const Case& c : {Case{"a\xFF\xFFz", "a\xFFz", 0}, Case{"a\xFFz", "a\xFFz", 0}, Case{"a\xFF\r", "a\xFF\r", 0},
                        Case{"\xFF\xF1", "", 1}, Case{"\xFF\xFB;\xFF\xFE\"", "", 2},
                        Case{"\xFF\xFA;\r\n;\xFF\xFF\xFF\xF0", "", 1}, Case{subnegotiation, std::string(87, 'x'), 1}}) {
    Skipped skipped;
    const Messages messages = CutWhole(start + c.sent + "\r\n;", &skipped);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].bytes, start + c.kept + "\r\n;");
    EXPECT_EQ(messages[0].length, (start + c.sent + "\r\n;").size());
    EXPECT_EQ(skipped.telnet, c.sequences);
  }
}

TEST(Tl1Framer, OffsetsCountTelnetBytesBetweenAndInside) {
  const std::string noise = "\xFF\xFB\x01<\xFF\xF1 ";
  const Messages messages = CutWhole(noise + "I\xFF\xF1P 1\r\n<");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(Shown(messages[0]), "7+9 complete IP 1\r\n<");
}

// What is held of it is cut like any long line, however much negotiation stands between its bytes.
TEST(Tl1Framer, ALineThatGrowsSlowlyBetweenNegotiationsIsOneLongLine) {
  constexpr size_t LONG = 10000;
  Framer framer(1000);
  for (size_t i = 0; i < LONG; ++i)
    ASSERT_TRUE(framer.Feed("x\xFF\xFB\x01"));
  ASSERT_TRUE(framer.Feed("\r\n" + RESPONSE));
  Message message;
  ASSERT_TRUE(framer.Next(message));
  EXPECT_EQ(message.bytes, RESPONSE);
  const Skipped skipped = framer.GetSkipped();
  EXPECT_EQ(skipped.telnet, LONG);
  EXPECT_EQ(skipped.lines, 1U);
  EXPECT_EQ(message.offset, skipped.bytes);
}

TEST(Tl1Framer, AMessageBeyondTheLimitIsAnError) {
  Framer framer(RESPONSE.size());
  EXPECT_TRUE(framer.Feed(RESPONSE + RESPONSE));
  EXPECT_FALSE(framer.Feed(HEADER + "M  1 COMPLD\r\n   \"xy\"\r\n;" + RESPONSE));
  EXPECT_TRUE(framer.TooLong());
  EXPECT_EQ(framer.TooLongOffset(), 2 * RESPONSE.size());
  EXPECT_FALSE(framer.Feed(RESPONSE));
  framer.Finish();
  Message message;
  EXPECT_TRUE(framer.Next(message));
  EXPECT_TRUE(framer.Next(message));
  EXPECT_FALSE(framer.Next(message));
}

// The line that would decide about the stray quote may be what does not fit.
TEST(Tl1Framer, AMessageBeyondTheLimitIsNotGivenOutAsWell) {
  const std::string start = "   NE1 26-01-15 12:00:07\r\nM  7 COMPLD\r\n   \"a\r\n;\r\n";
  const std::string stream = start + "   NE1 26-01-15 12:00:08\r\nM  8 DENY\r\n;";
  for (size_t limit = 1; limit < stream.size(); ++limit) {
    Framer framer(limit);
    framer.Feed(stream);
    framer.Finish();
    uint64_t end = 0;
    for (Message message; framer.Next(message);)
      end = message.offset + message.length;
    EXPECT_EQ(framer.TooLong(), end == 0) << limit;
  }
}

// A line is held until its end before it counts as the beginning of a message.
TEST(Tl1Framer, ALastLineBeyondTheLimitIsAnError) {
  const std::string header = "   NE1 26-01-15 12:00:07";
  for (const size_t limit : {header.size() - 1, header.size()}) {
    Framer framer(limit);
    EXPECT_TRUE(framer.Feed(header)) << limit;
    framer.Finish();
    Message message;
    EXPECT_EQ(framer.TooLong(), limit < header.size()) << limit;
    EXPECT_EQ(framer.Next(message), limit == header.size()) << limit;
  }
}

TEST(Tl1Framer, TheLimitCountsTheSameInAnyCut) {
  for (size_t limit = 1; limit < RESPONSE.size() + 2; ++limit) {
    Framer whole(limit), bytes(limit);
    whole.Feed(RESPONSE);
    for (const char c : RESPONSE)
      bytes.Feed(std::string_view(&c, 1));
    EXPECT_EQ(whole.TooLong(), limit < RESPONSE.size()) << limit;
    EXPECT_EQ(bytes.TooLong(), whole.TooLong()) << limit;
  }
}

// Time per byte must not depend on how long the text is, on where it is cut, or on what it is made of.
class Tl1Growth : public ::testing::TestWithParam<const char*> {};

std::string Repeated(std::string_view unit, size_t size) {
  std::string text;
  while (text.size() < size)
    text += unit;
  return text;
}

TEST_P(Tl1Growth, IsLinearInOneMessage) {
  const auto prepare = [](size_t size) { return HEADER + "M  1 COMPLD\r\n" + Repeated(GetParam(), size) + "\r\n;"; };
  EXPECT_LT(Growth(4000, prepare, [](const std::string& stream) { CutWhole(stream); }), LINEAR_GROWTH);
}

TEST_P(Tl1Growth, IsLinearBetweenMessages) {
  const auto prepare = [](size_t size) { return Repeated(GetParam(), size); };
  EXPECT_LT(Growth(4000, prepare, [](const std::string& stream) { Cut(stream, 1); }), LINEAR_GROWTH);
}

INSTANTIATE_TEST_SUITE_P(Hostile, Tl1Growth,
                         ::testing::Values("x", "\"", "\r\n", "\"\r\n;", "\"\r\n;\r\n", "/*\r\n;\r\n*", "\xFF\xF1",
                                           "\xFF", "\xFF\xFA", "\\\"", ";", "\r\n>", "   NORTH1 26-03-04 05:06:07\r\n",
                                           "IP 1\r\n", "\r\n;\r\n   NORTH1 26-03-04 05:06:07\r\n\"", "M  1 COMPLD",
                                           "a;"));

TEST(Tl1Framer, ManyMessagesAreLinear) {
  const auto prepare = [](size_t count) { return Repeated(RESPONSE, count * RESPONSE.size()); };
  EXPECT_LT(Growth(300, prepare, [](const std::string& stream) { CutWhole(stream); }), LINEAR_GROWTH);
}

TEST(Tl1Framer, NothingIsKeptOfEndlessNoise) {
  const std::string lead = HEADER + "M  1 COMPLD\r\n   \"open\r\n;";
  for (const std::string noise : {"noise ", "noise\r\n", "\xFF\xF1", "\xFF\xFA"}) {
    Framer framer(1000);
    const std::string piece = Repeated(noise, 1000);
    for (int i = 0; i < 1000; ++i)
      ASSERT_TRUE(framer.Feed(piece)) << noise;
    Message message;
    ASSERT_FALSE(framer.Next(message));
  }
}

}  // namespace
}  // namespace VARNEL_TEST
