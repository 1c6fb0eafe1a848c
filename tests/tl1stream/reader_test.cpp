#include <gtest/gtest.h>
#include <tl1reader.h>

#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;
using VARNEL_TL1::Parts;
using VARNEL_TL1::Reader;
using Text = std::optional<std::string>;
using Lines = std::vector<std::string>;

Parts ReadBytes(const std::string& bytes) {
  Message message;
  message.bytes = bytes;
  return Reader().Read(message);
}

TEST(Tl1Reader, HeaderLines) {
  struct Case {
    const char* line;
    Text sid, date, time;
  };
  for (const Case& c : {Case{"   A 26-03-04 05:06:07", "A", "26-03-04", "05:06:07"},
                        Case{"A 2026-03-04 05:06:07", "A", "2026-03-04", "05:06:07"},
                        Case{"\t\"A B\"  26-03-04  05:06:07 ", "A B", "26-03-04", "05:06:07"},
                        Case{"   \"\" 26-03-04 05:06:07", std::nullopt, "26-03-04", "05:06:07"},
                        Case{"   A/B:C 04.03.2026 5:06", "A/B:C", "04.03.2026", "5:06"},
                        Case{"   26-03-04 05:06:07.25", std::nullopt, "26-03-04", "05:06:07.25"}}) {
    const Parts parts = ReadBytes(std::string("\r\n\n") + c.line + "\r\nM  1 COMPLD\r\n;");
    EXPECT_EQ(parts.type, MessageType::Response) << c.line;
    EXPECT_EQ(parts.sid, c.sid) << c.line;
    EXPECT_EQ(parts.date, c.date) << c.line;
    EXPECT_EQ(parts.time, c.time) << c.line;
  }
}

TEST(Tl1Reader, LinesThatAreNoHeaders) {
  for (const std::string line : {"   NORTH1 26-03-04", "   NORTH1 05:06:07", "   NORTH1 26-03 05:06:07",
                                 "   NORTH1 26-03-04 05", "   NORTH1 26--04 05:06:07", "   NORTH1 26-03-04 05:06:07 x",
                                 "   NORTH1 26-03-04x 05:06:07", "   NORTH1 26-03-04 05:06:07."}) {
    const Parts parts = ReadBytes("\r\n\n" + line + "\r\nM  1 COMPLD\r\n;");
    EXPECT_EQ(parts.type, MessageType::Unrecognised) << line;
    EXPECT_EQ(parts.date, std::nullopt) << line;
  }
}

TEST(Tl1Reader, ResponseLines) {
  struct Case {
    const char* line;
    Text ctag, code;
  };
  for (const Case& c : {Case{"M  1 COMPLD", "1", "COMPLD"}, Case{"M 1 COMPLD ", "1", "COMPLD"},
                        Case{"M  a7x  DENY", "a7x", "DENY"}, Case{"M  COMPLD", std::nullopt, "COMPLD"},
                        Case{"M  0 PRTL", "0", "PRTL"}, Case{"   M  1 DELAY", "1", "DELAY"}}) {
    const Parts parts = ReadBytes(std::string(c.line) + "\r\n;");
    EXPECT_EQ(parts.type, MessageType::Response) << c.line;
    EXPECT_EQ(parts.ctag, c.ctag) << c.line;
    EXPECT_EQ(parts.code, c.code) << c.line;
    EXPECT_EQ(parts.atag, std::nullopt) << c.line;
    EXPECT_EQ(parts.verb, std::nullopt) << c.line;
  }
}

TEST(Tl1Reader, AutonomousLines) {
  struct Case {
    const char* line;
    Text code, atag, verb;
  };
  for (const Case& c :
       {Case{"*C 1 REPT ALM EQPT", "*C", "1", "REPT ALM EQPT"}, Case{"** 1 REPT ALM", "**", "1", "REPT ALM"},
        Case{"*  1 REPT EVT COM", "*", "1", "REPT EVT COM"},
        Case{"A  7860.7858 REPT ALM X", "A", "7860.7858", "REPT ALM X"}, Case{"A 1 CANC", "A", "1", "CANC"},
        Case{"AA 1 REPT EVT", "AA", "1", "REPT EVT"}, Case{"I  1 REPT EVT", "I", "1", "REPT EVT"},
        Case{"WN 1 REPT EVT ", "WN", "1", "REPT EVT"}, Case{"A^ 1 REPT EVT", "A^", "1", "REPT EVT"},
        Case{"*C REPT ALM EQPT", "*C", std::nullopt, "REPT ALM EQPT"}}) {
    const Parts parts = ReadBytes(std::string(c.line) + "\r\n;");
    EXPECT_EQ(parts.type, MessageType::Autonomous) << c.line;
    EXPECT_EQ(parts.code, c.code) << c.line;
    EXPECT_EQ(parts.atag, c.atag) << c.line;
    EXPECT_EQ(parts.verb, c.verb) << c.line;
    EXPECT_EQ(parts.ctag, std::nullopt) << c.line;
  }
}

TEST(Tl1Reader, Acknowledgements) {
  EXPECT_EQ(ReadBytes("IP 1\r\n<").ctag, Text("1"));
  EXPECT_EQ(ReadBytes("IP\r\n<").code, Text("IP"));
  EXPECT_EQ(ReadBytes("OK  a7 \n\n<").ctag, Text("a7"));
  EXPECT_EQ(ReadBytes("XY 1\r\n<").type, MessageType::Acknowledgement);
  for (const std::string bytes : {"XY\r\n<", "ip 1\r\n<", "IP 1 2\r\n<", "IPX 1\r\n<", "<", "IP 1\r\n"})
    EXPECT_NE(ReadBytes(bytes).type, MessageType::Acknowledgement) << bytes;
}

TEST(Tl1Reader, TextLosesIndentAndLineEndsOnly) {
  EXPECT_EQ(ReadBytes("M  1 COMPLD\r\n\r\n   \"a\" \r\n\n      b\n\tc\rd\r\n\r\n;").lines,
            (Lines{"\"a\" ", "", "b", "c", "d"}));
  EXPECT_EQ(ReadBytes("M  1 COMPLD;").lines, Lines{});
  EXPECT_EQ(ReadBytes("M  1 DENY\r\n   IICM\r\n   /* x */\r\n;").lines, (Lines{"IICM", "/* x */"}));
}

TEST(Tl1Reader, WhatIsNoMessageKeepsItsText) {
  const Parts parts = ReadBytes("   A 26-03-04 05:06:07\r\nhello there\r\n;");
  EXPECT_EQ(parts.type, MessageType::Unrecognised);
  EXPECT_EQ(parts.sid, Text("A"));
  EXPECT_EQ(parts.lines, Lines{"hello there"});
  EXPECT_EQ(ReadBytes("").type, MessageType::Unrecognised);
}

TEST(Tl1Reader, AnIncompleteMessageKeepsItsLastByte) {
  Message message;
  message.bytes = "M  1 COMPLD\r\n   x";
  message.complete = false;
  EXPECT_EQ(Reader().Read(message).lines, Lines{"x"});
}

TEST(Tl1Reader, MorePartsFollow) {
  EXPECT_TRUE(ReadBytes("M  1 COMPLD\r\n>").continues);
  EXPECT_TRUE(ReadBytes("M  1 RTRV\r\n;").continues);
  EXPECT_TRUE(ReadBytes("\r\n>").continues);
  EXPECT_FALSE(ReadBytes("M  1 COMPLD\r\n;").continues);
  EXPECT_FALSE(ReadBytes("IP 1\r\n<").continues);
}

TEST(Tl1Reader, BareTextBelongsToThePartBefore) {
  Reader reader;
  Message first, bare;
  first.bytes = "   A 26-03-04 05:06:07\r\n*C 1 REPT ALM\r\n   x\r\n>";
  bare.bytes = "   y\r\n;";
  bare.bareText = true;
  reader.Read(first);
  const Parts parts = reader.Read(bare);
  EXPECT_EQ(parts.type, MessageType::Autonomous);
  EXPECT_EQ(parts.sid, Text("A"));
  EXPECT_EQ(parts.atag, Text("1"));
  EXPECT_EQ(parts.code, Text("*C"));
  EXPECT_EQ(parts.verb, Text("REPT ALM"));
  EXPECT_EQ(parts.date, std::nullopt);
  EXPECT_EQ(parts.lines, Lines{"y"});
}

}  // namespace
}  // namespace VARNEL_TEST
