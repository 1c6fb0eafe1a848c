#include "tl1nemsgparse.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "allocation.h"
#include "growth.h"
#include "recording_test.h"
#include "tl1_reference.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;

using VARNEL_COMMON::CTL1NEMsgParse;

constexpr char RESPONSE[] = "\r\n\n   NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n   \"a\"\r\n;";
constexpr char AUTONOMOUS[] = "\r\n\n   NE1 24-01-02 10:11:12\r\n*C 5 REPT ALM EQPT\r\n   \"SLOT-1:MJ,M\"\r\n;";
constexpr char HEADER[] = "\r\n\n   NE1 24-01-02 10:11:12\r\n";

// The log lines of the steps.
const LogLine EMPTY_MESSAGE = Warning("CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;", "tl1nemsgparse", "NEMsgParse");
const LogLine SID_FAILED = Warning("CTL1NEMsgParse::ParseSID(): ParseSID failed;", "tl1nemsgparse", "NEMsgParse");
const LogLine DATE_FAILED = Warning("CTL1NEMsgParse::ParseDate(): ParseDate failed;", "tl1nemsgparse", "NEMsgParse");
const LogLine CTAG_NOT_FOUND =
    Warning("CTL1NEMsgParse::ParseOutputAndAuto(): Not find ctag", "tl1nemsgparse", "ParseOutputAndAuto");
const LogLine CTAG_EMPTY =
    Warning("CTL1NEMsgParse::ParseOutputAndAuto(): ctag is empty", "tl1nemsgparse", "ParseOutputAndAuto");
const LogLine CODE_NOT_FOUND =
    Warning("CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode not find", "tl1nemsgparse", "ParseOutputAndAuto");
const LogLine CODE_EMPTY =
    Warning("CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode is empty", "tl1nemsgparse", "ParseOutputAndAuto");
const LogLine END_EMPTY =
    Warning("CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;", "tl1nemsgparse", "ParseMsgEndFlg");
const LogLine END_FAILED =
    Warning("CTL1NEMsgParse::ParseMsgEndFlg(): NEMsgParse() is faid;", "tl1nemsgparse", "ParseMsgEndFlg");

struct Outcome {
  bool result;
  Tl1Parts parts;
};

bool operator==(const Outcome& a, const Outcome& b) {
  return a.result == b.result && a.parts == b.parts;
}

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << (outcome.result ? "accepted: " : "refused: ") << outcome.parts;
}

Outcome Parsed(const std::string& message) {
  CTL1NEMsgParse parser(message);
  const bool result = parser.NEMsgParse();
  return {result, PartsOf(parser)};
}

// Parts of a message before anything is recognised.
Tl1Parts Unparsed(const std::string& message) {
  Tl1Parts parts;
  parts.message = message;
  return parts;
}

// Parts after HEADER, which all messages with a good header line have.
Tl1Parts WithHeader(const std::string& message) {
  Tl1Parts parts = Unparsed(message);
  parts.sid = "NE1";
  parts.date = "24-01-02";
  parts.time = "10:11:12";
  return parts;
}

Tl1Parts Response(const std::string& message, const std::string& ctag, const std::string& code,
                  const std::string& block) {
  Tl1Parts parts = WithHeader(message);
  parts.type = 3;
  parts.ctag = ctag;
  parts.code = code;
  parts.responseLine = "\r\nM  " + ctag + " " + code;
  parts.textBlock = block;
  return parts;
}

Tl1Parts Autonomous(const std::string& message, const std::string& code, const std::string& atag,
                    const std::string& verb, const std::string& block) {
  Tl1Parts parts = WithHeader(message);
  parts.type = 4;
  parts.code = code;
  parts.atag = atag;
  parts.verb = verb;
  parts.textBlock = block;
  return parts;
}

Outcome Accepted(const Tl1Parts& parts) {
  return {true, parts};
}

Outcome Refused(const Tl1Parts& parts) {
  return {false, parts};
}

const Outcome EMPTIED = Refused(Tl1Parts());

class Tl1Parser : public RecordingTest {
 protected:
  // The header ends in `tail`; only its position is kept, and one line says why.
  void ExpectHeaderRefused(const char* tail, const LogLine& line) {
    host.Reset();
    const std::string message = std::string("echo\r\n\n   ") + tail;
    Tl1Parts expected = Unparsed(message);
    expected.start = 4;
    EXPECT_EQ(Parsed(message), Refused(expected)) << tail;
    EXPECT_EQ(host.lines, Lines{line}) << tail;
    EXPECT_EQ(host.filtered, std::vector<std::string>{line.text}) << tail;
  }
};

TEST_F(Tl1Parser, NewObjectKeepsTheMessageUnparsed) {
  const CTL1NEMsgParse parser(RESPONSE);
  EXPECT_EQ(PartsOf(parser), Unparsed(RESPONSE));
  EXPECT_EQ(parser.GetNEMsgType(), -1);
  EXPECT_EQ(parser.GetMsgStartPos(), 0U);
  EXPECT_EQ(parser.GetRetRspCode(), "");
  EXPECT_EQ(parser.GetCtage(), "");
  EXPECT_EQ(parser.GetSID(), "");
  EXPECT_EQ(parser.GetTextBlock(), "");
}

TEST_F(Tl1Parser, InitAllPrivateEmptiesEverything) {
  CTL1NEMsgParse parser("");
  for (std::string* text : {&parser.m_strNEMsg, &parser.m_strSID, &parser.m_strDate, &parser.m_strTime,
                            &parser.m_strEcho, &parser.m_strRspLine, &parser.m_strTextBlock, &parser.m_strVerb,
                            &parser.m_strRetRspCode, &parser.m_strCtag, &parser.m_strAtag}) {
    *text = "x";
  }
  parser.m_nMsgType = 3;
  parser.m_nMsgStartPos = 5;
  parser.InitAllPrivate();
  EXPECT_EQ(PartsOf(parser), Tl1Parts());
}

TEST_F(Tl1Parser, GettersReturnFieldsByType) {
  CTL1NEMsgParse parser("");
  parser.m_strSID = "sid";
  parser.m_strTextBlock = "block";
  parser.m_strRetRspCode = "code\0x"s;
  parser.m_strCtag = "ctag\0x"s;
  parser.m_nMsgStartPos = 4294967295;
  for (const int type : {-1, 0, 1, 2, 3, 4, 5}) {
    parser.m_nMsgType = type;
    const bool hasHeader = type == 3 || type == 4;
    EXPECT_EQ(parser.GetNEMsgType(), type);
    EXPECT_EQ(parser.GetSID(), hasHeader ? "sid" : "") << type;
    EXPECT_EQ(parser.GetTextBlock(), hasHeader ? "block" : "") << type;
    EXPECT_EQ(parser.GetRetRspCode(), "code\0x"s) << type;
    EXPECT_EQ(parser.GetCtage(), "ctag\0x"s) << type;
    EXPECT_EQ(parser.GetMsgStartPos(), 4294967295U) << type;
  }
}

TEST_F(Tl1Parser, CopiesAreIndependent) {
  CTL1NEMsgParse parser(RESPONSE);
  ASSERT_TRUE(parser.NEMsgParse());
  const CTL1NEMsgParse copy(parser);
  parser.InitAllPrivate();
  EXPECT_EQ(PartsOf(copy), Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n"));
}

TEST_F(Tl1Parser, EmptyMessageIsReported) {
  EXPECT_EQ(Parsed(""), EMPTIED);
  EXPECT_EQ(host.lines, Lines{EMPTY_MESSAGE});
  EXPECT_EQ(host.filtered, std::vector<std::string>{EMPTY_MESSAGE.text});
}

TEST_F(Tl1Parser, TextWithoutAnyMarkerIsRefusedSilently) {
  for (const char* message :
       {"x", ";", ">", "<", "\r\n", "\r\n;", "\r<", "\n<", "IP 12 <",
        "\r\n\n  NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n;", "\n\n   NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n;",
        "\r\n   NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n;"}) {
    EXPECT_EQ(Parsed(message), Refused(Unparsed(message))) << message;
  }
  EXPECT_EQ(host.lines, Lines{});
}

Tl1Parts Prompt(const std::string& message, unsigned int start) {
  Tl1Parts parts = Unparsed(message);
  parts.type = 4;
  parts.start = start;
  return parts;
}

TEST_F(Tl1Parser, ContinuationPrompt) {
  EXPECT_EQ(Parsed("\r\n>"), Accepted(Prompt("\r\n>", 0)));
  EXPECT_EQ(Parsed("\r\n>\r\n>"), Accepted(Prompt("\r\n>\r\n>", 0)));
  EXPECT_EQ(Parsed("any echo\r\n> more"), Accepted(Prompt("any echo\r\n> more", 8)));
  EXPECT_EQ(Parsed("\0\xFF\r\n>\0"s), Accepted(Prompt("\0\xFF\r\n>\0"s, 2)));
  EXPECT_EQ(host.lines, Lines{});
}

Tl1Parts Acknowledgement(const std::string& message, const std::string& code, const std::string& ctag) {
  Tl1Parts parts = Unparsed(message);
  parts.type = 2;
  parts.code = code;
  parts.ctag = ctag;
  return parts;
}

TEST_F(Tl1Parser, KindsAreTriedInOrder) {
  const std::string all = "\r\n>\r\n<"s + RESPONSE;
  Tl1Parts response = Response(all, "7", "COMPLD", "\n   \"a\"\r\n");
  response.echo = "\r\n>\r\n<";
  response.start = 6;
  EXPECT_EQ(Parsed(all), Accepted(response)) << "a header goes before everything";
  EXPECT_EQ(Parsed("\r\n>IP 12\r\n<"), Accepted(Acknowledgement("\r\n>IP 12\r\n<", "\r\n>IP", "12")));
  EXPECT_EQ(Parsed("\r\n>\r\n<"), EMPTIED) << "no prompt once it is no acknowledgement";
}

TEST_F(Tl1Parser, AcknowledgementHasCodeAndCtag) {
  struct Case {
    std::string code, ctag;
  };
  const Case cases[] = {{"IP", "12"},         {"PF", "a"},          {"NA", "1 2"},     {"IP", " "},
                        {"\r\nIP", "12"},     {"\r\n>IP", "12"},    {"\r\n<IP", "12"}, {"x;", "<"},
                        {"\xFF\x80", "\xA0"}, {"I\0P"s, "1\0002"s}, {"IP", "\r\n"},    {"IP", "\r"},
                        {"IP", "\r\n>"}};
  for (const auto& [code, ctag] : cases) {
    const std::string message = std::string(code).append(" ").append(ctag).append("\r\n<");
    EXPECT_EQ(Parsed(message), Accepted(Acknowledgement(message, code, ctag)));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, OtherAcknowledgementsEmptyTheObjectSilently) {
  for (const std::string& message :
       {"\r\n<"s, "IP\r\n<"s, " 12\r\n<"s, "IP \r\n<"s, "IP 12\r\n< "s, "IP 12\r\n<;"s, "IP 12\r\n<\0"s,
        "IP 12\r\n<\r\n<"s, "\r\n<IP 12"s, "\r\n< IP 12"s, "IP\r\n< 12"s}) {
    EXPECT_EQ(Parsed(message), EMPTIED) << message;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, HeaderLineIsCutAtBlanks) {
  struct Case {
    std::string sid, date, time;
  };
  const Case cases[] = {{"NE1", "24-01-02", "10:11:12"},      {"N", "d", "t"},
                        {"\"NE;>", "24\r\n01", "10 11 12  "}, {"\r\n\n", "\r\n\n", " "},
                        {"N\0E"s, "\0"s, "1\0000"s},          {"\xFF\x80", "\xA0", "\xFF"}};
  for (const auto& [sid, date, time] : cases) {
    std::string message = "\r\n\n   ";
    message.append(sid).append(" ").append(date).append(" ").append(time).append("\r\nM  7 COMPLD\r\n;");
    Tl1Parts expected = Response(message, "7", "COMPLD", "\n");
    expected.sid = sid;
    expected.date = date;
    expected.time = time;
    EXPECT_EQ(Parsed(message), Accepted(expected));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, TextBeforeTheHeaderIsTheEcho) {
  for (const std::string& echo : {"RTRV-NE:::7;"s, "\r\n\n  "s, "\r\n"s, "IP 7\r\n<"s, "M"s, " "s, "\0"s, "\xFF"s}) {
    Tl1Parts response = Response(echo + RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n");
    response.echo = echo;
    response.start = static_cast<unsigned int>(echo.size());
    EXPECT_EQ(Parsed(echo + RESPONSE), Accepted(response)) << echo;
  }
}

TEST_F(Tl1Parser, FailingSid) {
  for (const char* tail :
       {"", "NE1", " NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n;", "NE1\r\nM\t7\tCOMPLD\r\n;", " ", "\xFF"})
    ExpectHeaderRefused(tail, SID_FAILED);
}

TEST_F(Tl1Parser, FailingDateEmptiesTheSid) {
  for (const char* tail : {"NE1 ", "NE1 24-01-02", "NE1  10:11:12\r\nM  7 COMPLD\r\n;", "NE1  "})
    ExpectHeaderRefused(tail, DATE_FAILED);
}

TEST_F(Tl1Parser, FailingTimeEmptiesDateAndSidAndIsReportedAsTheDate) {
  for (const char* tail : {"NE1 24-01-02 ", "NE1 24-01-02 10:11:12", "NE1 24-01-02 10:11:12\nM  7 COMPLD;",
                           "NE1 24-01-02 \r\nM  7 COMPLD\r\n;"})
    ExpectHeaderRefused(tail, DATE_FAILED);
}

TEST_F(Tl1Parser, HeaderWithoutALineEndOrAnMAfterItIsRefusedSilently) {
  for (const char* tail :
       {"\r", "\r ", "\rM  7 COMPLD", "\r\n", "\r\n;", "\r\nm  7 DENY\r\n;", "\r\nA 5 REPT EVT\r\n   \"x\"\r\n;"}) {
    const std::string message = std::string("echo\r\n\n   NE1 24-01-02 10:11:12") + tail;
    Tl1Parts expected = WithHeader(message);
    expected.start = 4;
    expected.echo = "echo";
    EXPECT_EQ(Parsed(message), Refused(expected)) << tail;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, ResponseFields) {
  EXPECT_EQ(Parsed(RESPONSE), Accepted(Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n")));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, ResponseParts) {
  struct Case {
    std::string ctag, code, tail, block;
  };
  const Case cases[] = {{"7", "COMPLD", ";", "\n"},
                        {"7", "COMPLD", ">", "\n"},
                        {"7", "DENY", "   IICT\r\n   /* bad */\r\n;", "\n   IICT\r\n   /* bad */\r\n"},
                        {"7", "COMPLD", "a\r\n>", "\na\r\n"},
                        {"7", "COMPLD", "a;b\r\n;", "\na;b\r\n"},
                        {"7", "COMPLD", "a;b\r\n>", "\na"},
                        {"7", "COMPLD", ";\r\n>", "\n"},
                        {"7", "COMPLD", "a>b\r\n>", "\na>b\r\n"},
                        {"7", "COMPLD", "a>b\r\n;", "\na>b\r\n"},
                        {"7", "PRTL more", ";", "\n"},
                        {"7", " ", ";", "\n"},
                        {"7", ";", ">", ""},
                        {"a;b", "COMPLD", ">", ""},
                        {"7", "C;D", "a>", ""},
                        {"1\r\n2", "COMPLD", ";", "\n"},
                        {"7\0"s, "C\0D"s, "\0;"s, "\n\0"s},
                        {"\xFF", "\x80\xA0", "\xE1;", "\n\xE1"}};
  for (const auto& [ctag, code, tail, block] : cases) {
    const std::string message =
        std::string(HEADER).append("M  ").append(ctag).append(" ").append(code).append("\r\n").append(tail);
    EXPECT_EQ(Parsed(message), Accepted(Response(message, ctag, code, block)));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, TwoCharactersAfterTheMAreIgnored) {
  for (const char* start : {"M  ", "MXX", "M\r\n", "M;>"}) {
    const std::string message = std::string(HEADER).append(start).append("7 COMPLD\r\n>;");
    EXPECT_EQ(Parsed(message), Accepted(Response(message, "7", "COMPLD", "\n>"))) << start;
  }
}

TEST_F(Tl1Parser, SemicolonBeforeTheBlockLeavesItEmpty) {
  const std::string message = ";"s + HEADER + "M  7 COMPLD\r\n   a\r\n>";
  Tl1Parts expected = Response(message, "7", "COMPLD", "");
  expected.echo = ";";
  expected.start = 1;
  EXPECT_EQ(Parsed(message), Accepted(expected));
}

TEST_F(Tl1Parser, FailingResponsesEmptyTheObjectAndAreReported) {
  struct Case {
    std::string line;
    LogLine report;
  };
  const Case cases[] = {
      {"M", CTAG_NOT_FOUND},
      {"M ", CTAG_NOT_FOUND},
      {"M  ", CTAG_NOT_FOUND},
      {"M  7", CTAG_NOT_FOUND},
      {"M  7\r\n;", CTAG_NOT_FOUND},
      {"M 7\r\n;", CTAG_NOT_FOUND},
      {"M   COMPLD\r\n;", CTAG_EMPTY},
      {"M   ", CTAG_EMPTY},
      {"M  7 COMPLD", CODE_NOT_FOUND},
      {"M  7 COMPLD;", CODE_NOT_FOUND},
      {"M  7 COMPLD\n;", CODE_NOT_FOUND},
      {"M  7 ", CODE_NOT_FOUND},
      {"M  7 \r\n;", CODE_EMPTY},
      {"M  7 \r\n", CODE_EMPTY},
  };
  for (const auto& [line, report] : cases) {
    host.Reset();
    EXPECT_EQ(Parsed("echo"s + HEADER + line), EMPTIED) << line;
    EXPECT_EQ(host.lines, Lines{report}) << line;
    EXPECT_EQ(host.filtered, std::vector<std::string>{report.text}) << line;
  }
}

TEST_F(Tl1Parser, ResponseWithoutTerminatorKeepsItsFields) {
  for (const char* tail : {"", "   \"a\"\r\n", ";\r\n", "; ", ">x", ";>\n"}) {
    const std::string message = std::string(HEADER).append("M  7 COMPLD\r\n").append(tail);
    EXPECT_EQ(Parsed(message), Refused(Response(message, "7", "COMPLD", ""))) << tail;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, AutonomousFields) {
  EXPECT_EQ(Parsed(AUTONOMOUS),
            Accepted(Autonomous(AUTONOMOUS, "*C", "5", "REPT ALM EQPT", "\n   \"SLOT-1:MJ,M\"\r\n")));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, AutonomousParts) {
  struct Case {
    std::string line, code, atag, verb, block;
  };
  const Case cases[] = {
      {"A 5 REPT M\r\n   x\r\n;", "A", "5", "REPT M", "\n   x\r\n"},
      {"** 12.3 REPT EVT\r\n   xM\r\n>", "**", "12.3", "REPT EVT", "\n   xM\r\n"},
      {"A 5 REPT M\r\n   a;b\r\n;", "A", "5", "REPT M", "\n   a;b\r\n"},
      {"A 5 REPT M\r\n   a;b\r\n>", "A", "5", "REPT M", "\n   a"},
      {"A 5 REPT M\r\n   a>b\r\n>", "A", "5", "REPT M", "\n   a>b\r\n"},
      {"A 5 REPT M\r\n   a\r\n   b\r\n;", "A", "5", "REPT M", "\n   a\r\n   b\r\n"},
      {"A 5 REPT M\r\n  x\r\n   y\r\n;", "A", "5", "REPT M\r\n  x", "\n   y\r\n"},
      {"A 5 REPT M\r\n   ;", "A", "5", "REPT M", "\n   "},
      {"A\r\nM 5 REPT\r\n   x\r\n;", "A\r\nM", "5", "REPT", "\n   x\r\n"},
      {"m 5 M\r\n   x\r\n;", "m", "5", "M", "\n   x\r\n"},
      {"A\0 5\0 M\0\r\n   \0;"s, "A\0"s, "5\0"s, "M\0"s, "\n   \0"s},
      {"\xFF\x80 \xA0 \xE1M\r\n   \xC1;", "\xFF\x80", "\xA0", "\xE1M", "\n   \xC1"},
  };
  for (const auto& [line, code, atag, verb, block] : cases) {
    const std::string message = HEADER + line;
    EXPECT_EQ(Parsed(message), Accepted(Autonomous(message, code, atag, verb, block)));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, AtagIncludesASecondBlank) {
  const std::string two = HEADER + "A  5 REPT M\r\n   x;"s;
  EXPECT_EQ(Parsed(two), Accepted(Autonomous(two, "A", " 5", "REPT M", "\n   x")));
  const std::string three = HEADER + "A   5 REPT M\r\n   x;"s;
  EXPECT_EQ(Parsed(three), Accepted(Autonomous(three, "A", " ", "5 REPT M", "\n   x")));
}

TEST_F(Tl1Parser, VerbWithoutATextBlockExtendsToTheTerminator) {
  const std::pair<std::string, std::string> cases[] = {
      {"REPT M;", "REPT M"}, {"REPT M>", "REPT M"}, {"REPT M\r\n;", "REPT M\r\n"},
      {"REPT;M>", "REPT;M"}, {"M>;", "M>"},         {"M\r\n  ;", "M\r\n  "}};
  for (const auto& [tail, verb] : cases) {
    const std::string message = HEADER + "A 5 "s + tail;
    EXPECT_EQ(Parsed(message), Accepted(Autonomous(message, "A", "5", verb, ""))) << tail;
  }
}

TEST_F(Tl1Parser, SemicolonWithinTheVerbLeavesTheBlockEmpty) {
  const std::string message = HEADER + "A 5 ;M\r\n   x>"s;
  EXPECT_EQ(Parsed(message), Accepted(Autonomous(message, "A", "5", ";M", "")));
}

TEST_F(Tl1Parser, OtherAutonomousMessagesEmptyTheObjectSilently) {
  for (const char* line : {"AM", "AM;", "AM ", "AM 5", "AM 5;", "A\tM;", " 5 REPT M\r\n   x\r\n;", "  M  ;", "AM 5 ",
                           "AM 5 ;", "AM 5 >", "AM 5 \r\n   x\r\n;", "AM 5 REPT", "AM 5 REPT\r\n  x", "AM 5 REPT; "}) {
    EXPECT_EQ(Parsed("echo"s + HEADER + line), EMPTIED) << line;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, AutonomousMessageWithoutTerminatorKeepsItsFields) {
  for (const char* tail : {"\r\n   ", "\r\n   x", "\r\n   x;\r\n", "\r\n   x> "}) {
    const std::string message = HEADER + "A 5 REPT M"s + tail;
    EXPECT_EQ(Parsed(message), Refused(Autonomous(message, "A", "5", "REPT M", ""))) << tail;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, ParsingAgainReturnsTheSame) {
  for (const char* message : {RESPONSE, AUTONOMOUS, "IP 12\r\n<", "\r\n>"}) {
    CTL1NEMsgParse parser(message);
    EXPECT_TRUE(parser.NEMsgParse());
    const Tl1Parts first = PartsOf(parser);
    EXPECT_TRUE(parser.NEMsgParse());
    EXPECT_EQ(PartsOf(parser), first);
  }
}

TEST_F(Tl1Parser, ParsingAnotherMessageResetsNothing) {
  CTL1NEMsgParse parser(AUTONOMOUS);
  ASSERT_TRUE(parser.NEMsgParse());
  parser.m_strNEMsg = RESPONSE;
  ASSERT_TRUE(parser.NEMsgParse());
  Tl1Parts expected = Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n");
  expected.atag = "5";
  expected.verb = "REPT ALM EQPT";
  EXPECT_EQ(PartsOf(parser), expected);

  parser.m_strNEMsg = "x\r\n>";
  ASSERT_TRUE(parser.NEMsgParse());
  expected.message = "x\r\n>";
  expected.type = 4;
  expected.start = 1;
  EXPECT_EQ(PartsOf(parser), expected);
  EXPECT_EQ(parser.GetSID(), "NE1");

  parser.m_strNEMsg = "IP 12\r\n<";
  ASSERT_TRUE(parser.NEMsgParse());
  expected.message = "IP 12\r\n<";
  expected.type = 2;
  expected.start = 0;
  expected.code = "IP";
  expected.ctag = "12";
  EXPECT_EQ(PartsOf(parser), expected);
  EXPECT_EQ(parser.GetSID(), "");
}

TEST_F(Tl1Parser, FailuresOfASecondParseKeepTheOtherFields) {
  CTL1NEMsgParse parser(RESPONSE);
  ASSERT_TRUE(parser.NEMsgParse());
  Tl1Parts expected = PartsOf(parser);

  expected.message = parser.m_strNEMsg = "no marker";
  EXPECT_FALSE(parser.NEMsgParse());
  EXPECT_EQ(PartsOf(parser), expected);

  expected.message = parser.m_strNEMsg = "x\r\n\n   NE2";
  expected.start = 1;
  EXPECT_FALSE(parser.NEMsgParse());
  EXPECT_EQ(PartsOf(parser), expected) << "without an end of the SID";

  expected.message = parser.m_strNEMsg = "x\r\n\n   NE2 date time";
  expected.sid = expected.date = "";
  EXPECT_FALSE(parser.NEMsgParse());
  EXPECT_EQ(PartsOf(parser), expected) << "without an end of the time";

  expected.message = parser.m_strNEMsg = "";
  EXPECT_FALSE(parser.NEMsgParse());
  EXPECT_EQ(PartsOf(parser), expected);
  EXPECT_EQ(host.lines, (Lines{SID_FAILED, DATE_FAILED, EMPTY_MESSAGE}));
}

bool IsComplete(const std::string& message) {
  return CTL1NEMsgParse("old").ParseMsgEndFlg(message);
}

TEST_F(Tl1Parser, CompleteMessagesEndInALineOfASemicolon) {
  for (const std::string& message :
       {std::string(RESPONSE), std::string(AUTONOMOUS), "IP 7\r\n<"s + RESPONSE, HEADER + "M  7 COMPLD\r\n;"s,
        HEADER + "M  7 COMPLD\r\n   a\r\n;\r\n>"s, "\r\n;"s + HEADER + "M  7 COMPLD\r\n   a\r\n>"s,
        HEADER + "A 5 M\r\n;"s, "\r\n>\r\n;"s, "\r\n;\r\n>"s}) {
    EXPECT_TRUE(IsComplete(message)) << message;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, RecognisedMessagesThatAreNotComplete) {
  for (const std::string& message :
       {HEADER + "M  7 COMPLD\r\n   a\r\n>"s, HEADER + "M  7 COMPLD\r\n   a;"s, HEADER + "M  7 COMPLD\r\n   a\n;"s,
        HEADER + "A 5 M\r\n   a\r\n>"s, HEADER + "A 5 M;"s, "\r\n>"s, "\r\n>;"s, "IP 12\r\n<"s, "IP \r\n;\r\n<"s}) {
    EXPECT_FALSE(IsComplete(message)) << message;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(Tl1Parser, UnrecognisedMessagesAreReportedAsSuch) {
  struct Case {
    std::string message;
    Lines reports;
  };
  const Case cases[] = {{"\r\n;", {END_FAILED}},
                        {"IP 12\r\n< ", {END_FAILED}},
                        {"\r\n\n   NE1", {SID_FAILED, END_FAILED}},
                        {"\r\n\n   NE1 24-01-02", {DATE_FAILED, END_FAILED}},
                        {"\r\n\n   NE1 24-01-02 10:11:12", {DATE_FAILED, END_FAILED}},
                        {HEADER, {END_FAILED}},
                        {HEADER + "M  7;"s, {CTAG_NOT_FOUND, END_FAILED}},
                        {HEADER + "M   7 COMPLD\r\n;"s, {CTAG_EMPTY, END_FAILED}},
                        {HEADER + "M  7 COMPLD;"s, {CODE_NOT_FOUND, END_FAILED}},
                        {HEADER + "M  7 \r\n;"s, {CODE_EMPTY, END_FAILED}},
                        {HEADER + "M  7 COMPLD\r\n;x"s, {END_FAILED}},
                        {HEADER + "AM\r\n;"s, {END_FAILED}}};
  for (const auto& [message, reports] : cases) {
    host.Reset();
    EXPECT_FALSE(IsComplete(message)) << message;
    EXPECT_EQ(host.lines, reports) << message;
  }
}

TEST_F(Tl1Parser, EndFlagOfAnEmptyMessageLeavesTheObject) {
  CTL1NEMsgParse parser(RESPONSE);
  ASSERT_TRUE(parser.NEMsgParse());
  EXPECT_FALSE(parser.ParseMsgEndFlg(""));
  EXPECT_EQ(PartsOf(parser), Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n"));
  EXPECT_EQ(host.lines, Lines{END_EMPTY});
  EXPECT_EQ(host.filtered, std::vector<std::string>{END_EMPTY.text});
}

TEST_F(Tl1Parser, EndFlagResetsTheObject) {
  CTL1NEMsgParse parser(AUTONOMOUS);
  ASSERT_TRUE(parser.NEMsgParse());
  EXPECT_TRUE(parser.ParseMsgEndFlg(RESPONSE));
  EXPECT_EQ(PartsOf(parser), Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n"));
  EXPECT_FALSE(parser.ParseMsgEndFlg("\r\n>"));
  EXPECT_EQ(PartsOf(parser), Prompt("\r\n>", 0));
  EXPECT_FALSE(parser.ParseMsgEndFlg("no marker"));
  EXPECT_EQ(PartsOf(parser), Unparsed("no marker"));
  EXPECT_FALSE(parser.ParseMsgEndFlg("\r\n<"));
  EXPECT_EQ(PartsOf(parser), Tl1Parts());
}

TEST_F(Tl1Parser, EndFlagOfTheOwnMembers) {
  CTL1NEMsgParse parser(RESPONSE);
  EXPECT_TRUE(parser.ParseMsgEndFlg(parser.m_strNEMsg));
  EXPECT_EQ(PartsOf(parser), Response(RESPONSE, "7", "COMPLD", "\n   \"a\"\r\n"));
  parser.m_strTextBlock = AUTONOMOUS;
  EXPECT_TRUE(parser.ParseMsgEndFlg(parser.m_strTextBlock));
  EXPECT_EQ(PartsOf(parser), Autonomous(AUTONOMOUS, "*C", "5", "REPT ALM EQPT", "\n   \"SLOT-1:MJ,M\"\r\n"));
}

TEST_F(Tl1Parser, PrefixesOfMessagesAreNotComplete) {
  for (const std::string& message : {std::string(RESPONSE), std::string(AUTONOMOUS), "IP 12\r\n<"s, "\r\n>"s}) {
    EXPECT_TRUE(Parsed(message).result);
    for (size_t length = 0; length < message.size(); ++length) {
      const std::string prefix = message.substr(0, length);
      Tl1Reference reference(prefix);
      const bool expected = reference.Parse();
      EXPECT_EQ(Parsed(prefix), (Outcome{expected, reference.parts})) << length;
      EXPECT_FALSE(expected) << length;
      EXPECT_FALSE(IsComplete(prefix)) << length;
    }
  }
}

const std::string LONG(40, 'x');
const std::string LONG_HEADER = "echo" + LONG + "\r\n\n   " + LONG + " " + LONG + " " + LONG + "\r\n";
const std::string LONG_MESSAGES[] = {
    LONG_HEADER + "M  " + LONG + " " + LONG + "\r\n" + LONG + "\r\n;",
    LONG_HEADER + "M" + "  " + LONG + " " + LONG + "\r\n" + LONG,
    LONG_HEADER + "A" + LONG + " " + LONG + " M" + LONG + "\r\n   " + LONG + "\r\n;",
    LONG_HEADER + "A" + LONG + " " + LONG + " M" + LONG,
    LONG_HEADER + "M  " + LONG,
    "\r\n\n   " + LONG + " " + LONG + " " + LONG,
    LONG + " " + LONG + "\r\n<",
    LONG + " " + LONG + "\r\n<;",
    LONG + "\r\n>",
    LONG,
    "",
};

// An object without empty members.
CTL1NEMsgParse UsedParser(const std::string& message) {
  CTL1NEMsgParse parser(AUTONOMOUS);
  EXPECT_TRUE(parser.NEMsgParse());
  parser.m_strNEMsg = RESPONSE;
  EXPECT_TRUE(parser.NEMsgParse());
  parser.m_strEcho = "old echo";
  parser.m_nMsgStartPos = 99;
  parser.m_strNEMsg = message;
  return parser;
}

// Runs a parse with each allocation failing. The object must then parse as a fresh one does.
template <typename Operation>
void ExpectUsableAfterFailures(const CTL1NEMsgParse& prepared, Operation operation) {
  CTL1NEMsgParse fresh("");
  EXPECT_TRUE(fresh.ParseMsgEndFlg(RESPONSE));
  auto parser = std::make_unique<CTL1NEMsgParse>(prepared);
  const auto check = [&] {
    EXPECT_TRUE(parser->ParseMsgEndFlg(RESPONSE));
    EXPECT_EQ(PartsOf(*parser), PartsOf(fresh));
    parser = std::make_unique<CTL1NEMsgParse>(prepared);
  };
  FailEachAllocation([&] { operation(*parser); }, check);
}

TEST_F(Tl1Parser, AllocationFailuresLeaveAUsableObject) {
  const size_t live = LiveAllocations();
  for (const std::string& message : LONG_MESSAGES) {
    const auto parse = [](CTL1NEMsgParse& parser) { parser.NEMsgParse(); };
    ExpectUsableAfterFailures(CTL1NEMsgParse(message), parse);
    ExpectUsableAfterFailures(UsedParser(message), parse);
    ExpectUsableAfterFailures(UsedParser("old"), [&](CTL1NEMsgParse& parser) { parser.ParseMsgEndFlg(message); });
  }
  host.Reset();
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(Tl1Parser, ThrowingLogServiceLeaksNothing) {
  const size_t live = LiveAllocations();
  host.logThrows = true;
  EXPECT_THROW(Parsed(""), std::runtime_error);
  EXPECT_THROW(Parsed(HEADER + "M  7"s), std::runtime_error);
  EXPECT_THROW(IsComplete(LONG), std::runtime_error);
  host.Reset();
  EXPECT_EQ(LiveAllocations(), live);
}

// Messages of this size are small enough for a constant cost per copied byte.
TEST_F(Tl1Parser, ParsingIsLinear) {
  const std::string starts[] = {"", HEADER, HEADER + "M  7 COMPLD\r\n"s, HEADER + "A 5 M"s, HEADER + "M  7 "s, "IP "};
  for (const std::string& start : starts) {
    for (const std::string& unit : {"\r\n"s, " "s, "\r\n\n"s, "\r\n\n  "s, "\r\n  "s, "M"s, ";"s, ">"s, "x"s}) {
      const auto prepare = [&](size_t size) {
        std::string message = start;
        while (message.size() < size)
          message += unit;
        return message + ";";
      };
      EXPECT_LT(Growth(4096, prepare, [](const std::string& message) { CTL1NEMsgParse("").ParseMsgEndFlg(message); }),
                LINEAR_GROWTH)
          << ::testing::PrintToString(start + unit);
      host.Reset();
    }
  }
}

}  // namespace
}  // namespace VARNEL_TEST
