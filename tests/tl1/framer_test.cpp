// How messages begin and end; the rules of docs/formats.md.
#include "varnel_tl1/framer.h"

#include <gtest/gtest.h>

#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::Skipped;

const std::string OPEN = std::string(HEADER) + "M  1 COMPLD\r\n   a\r\n";  // without its end
const std::string SHOWN_OPEN = "response NORTH1 1 COMPLD";

// A stream and the messages that are read from it.
struct Case {
  std::string stream;
  Texts messages;
};

void Check(const std::vector<Case>& cases) {
  for (const Case& c : cases)
    EXPECT_EQ(Read(c.stream), c.messages) << ::testing::PrintToString(c.stream);
}

TEST(Tl1Framer, ReturnsAMessageWithItsLastByte) {
  Framer framer;
  Message message;
  const std::string response = RESPONSE;
  framer.Append(response.substr(0, response.size() - 1));
  EXPECT_FALSE(framer.Next(message));
  framer.Append(";");
  ASSERT_TRUE(framer.Next(message));
  EXPECT_EQ(message.bytes, response);
  EXPECT_EQ(message.text, "   \"x\"\r\n");
}

TEST(Tl1Framer, HeaderLines) {
  struct HeaderCase {
    const char* line;
    const char* sid;
    const char* date;
    const char* time;
  };
  for (const HeaderCase& c : {HeaderCase{"   A 26-03-04 05:06:07", "A", "26-03-04", "05:06:07"},
                              {"   A 2026-03-04 05:06:07", "A", "2026-03-04", "05:06:07"},
                              {"\t\"A B\"  26-03-04  05:06:07 ", "A B", "26-03-04", "05:06:07"},
                              {"   \"\" 26-03-04 05:06:07", "", "26-03-04", "05:06:07"},
                              {"   A/B:C 04.03.2026 5:06", "A/B:C", "04.03.2026", "5:06"},
                              {"   26-03-04 05:06:07.25", "", "26-03-04", "05:06:07.25"},
                              {"   A 26-03-04 05:06:07 PM", "A", "26-03-04", "05:06:07 PM"},
                              {"   A 26-03-04 05:06:07PM", "A", "26-03-04", "05:06:07PM"},
                              {"   A 26-03-04 05:06:07 PM EST", "A", "26-03-04", "05:06:07 PM EST"},
                              {"   A 26-03-04 05:06:07 +02:00", "A", "26-03-04", "05:06:07 +02:00"},
                              {"   A 26-03-04 05:06:07Z", "A", "26-03-04", "05:06:07Z"},
                              {"\x1B[1m   A 26-03-04 05:06:07\x1B[0m", "A", "26-03-04", "05:06:07"},
                              {"   \x1B[32mA\x1B[0m 26-03-04 05:06:07\x1B[K", "A", "26-03-04", "05:06:07"},
                              {"   \x1B(BA 26-03-04 05:06:07", "A", "26-03-04", "05:06:07"}}) {
    const Cut cut = CutStream(std::string("\r\n\n") + c.line + "\r\nM  1 COMPLD\r\n;");
    ASSERT_EQ(cut.messages.size(), 1U) << c.line;
    const Message& message = cut.messages[0].View();
    EXPECT_EQ(message.sid, c.sid) << c.line;
    EXPECT_EQ(message.date, c.date) << c.line;
    EXPECT_EQ(message.time, c.time) << c.line;
    EXPECT_EQ(message.offset, 0U) << c.line;
  }
}

TEST(Tl1Framer, LinesThatAreNotHeaders) {
  for (const std::string line :
       {"   NORTH1 26-03-04", "   NORTH1 05:06:07", "   NORTH1 26-03 05:06:07", "   NORTH1 26-03-04 05",
        "   NORTH1 26--04 05:06:07", "   NORTH1 26-03-04x 05:06:07", "   NORTH1 26-03-04 05:06:07.",
        "   NORTH1 26-03-04 05:06:07 a b c", "   NORTH1 6-3-4 05:06:07"}) {
    const Cut cut = CutStream("\r\n\n" + line + "\r\nM  1 COMPLD\r\n;");
    EXPECT_EQ(Shown(cut.messages), Texts{"response 1 COMPLD"}) << line;
    EXPECT_EQ(cut.skipped.lines, 1U) << line;
  }
}

TEST(Tl1Framer, IdentificationLinesAfterAHeader) {
  struct IdentificationCase {
    const char* line;
    const char* shown;
  };
  for (const IdentificationCase& c : {IdentificationCase{"M  1 COMPLD", "response NORTH1 1 COMPLD"},
                                      {"M 1 COMPLD ", "response NORTH1 1 COMPLD"},
                                      {"M  a7x  DENY", "response NORTH1 a7x DENY"},
                                      {"M  COMPLD", "response NORTH1 COMPLD"},
                                      {"M  0 PRTL", "response NORTH1 0 PRTL"},
                                      {"   M  1 DELAY", "response NORTH1 1 DELAY"},
                                      {"M  1 OTHER", "response NORTH1 1 OTHER"},
                                      {"M  1 \x1B[32mDENY\x1B[0m", "response NORTH1 1 DENY"},
                                      {"*C 1 REPT ALM EQPT", "autonomous NORTH1 1 *C REPT ALM EQPT"},
                                      {"** 1 REPT ALM", "autonomous NORTH1 1 ** REPT ALM"},
                                      {"**1 REPT ALM", "autonomous NORTH1 1 ** REPT ALM"},
                                      {"*  1 REPT EVT COM", "autonomous NORTH1 1 * REPT EVT COM"},
                                      {"A  7.8 REPT ALM X", "autonomous NORTH1 7.8 A REPT ALM X"},
                                      {"A 1 CANC", "autonomous NORTH1 1 A CANC"},
                                      {"AA 1 OTHER", "autonomous NORTH1 1 AA OTHER"},
                                      {"A^ 1 REPT EVT", "autonomous NORTH1 1 A^ REPT EVT"},
                                      {"\x1B[31m*C\x1B[0m 1 REPT ALM", "autonomous NORTH1 1 *C REPT ALM"},
                                      {"*C REPT ALM EQPT", "autonomous NORTH1 *C REPT ALM EQPT"}})
    EXPECT_EQ(Read(std::string(HEADER) + c.line + "\r\n;"), Texts{c.shown}) << c.line;
}

TEST(Tl1Framer, AHeaderThatNoIdentificationLineFollowsIsSkipped) {
  for (const std::string line :
       {"Authorised use only", "M", "M  1", "Must 1 COMPLD", "US citizens only", "ABC 1 REPT ALM", "A x REPT ALM",
        "A 1 rept", "A1 OTHER", "A", ";", "AB*1 REPT", "\"quoted\""}) {
    const Cut cut = CutStream(HEADER + line + "\r\n" + RESPONSE);
    EXPECT_EQ(Shown(cut.messages), Texts{SHOWN_RESPONSE}) << line;
    EXPECT_EQ(cut.skipped.bytes, std::string(HEADER).size() + line.size() + 2) << line;
  }
}

TEST(Tl1Framer, IdentificationLinesWithoutAHeader) {
  for (const std::string code : {"COMPLD", "DENY", "PRTL", "DELAY", "RTRV"}) {
    const std::string shown = "response 1 " + code + (code == "RTRV" ? " continues" : "");
    EXPECT_EQ(Read("M  1 " + code + "\r\n;"), Texts{shown});
    EXPECT_EQ(Read("M  1 " + code + ";"), Texts{shown});
  }
  Check({{"A  1 REPT EVT\r\n;", {"autonomous 1 A REPT EVT"}},
         {"A  1 CANC\r\n;", {"autonomous 1 A CANC"}},
         {"A  REPT EVT\r\n;", {"autonomous A REPT EVT"}},
         {"A  1 OTHER\r\n;", {}},
         {"A  x REPT EVT\r\n;", {}},
         {"   M  1 COMPLD\r\n;", {}},
         {"M  1 OTHER\r\n;", {}},
         {"M  1 OTHER;", {}}});
}

// Only a clean code or verb ends a message there.
TEST(Tl1Framer, ASemicolonEndsAMessageOnItsIdentificationLine) {
  const std::string header = HEADER;
  Check({{header + "M  1 COMPLD;", {"response NORTH1 1 COMPLD"}},
         {header + "M  1 OTHER;" + RESPONSE, {"response NORTH1 1 OTHER", SHOWN_RESPONSE}},
         {header + "M  1 DENY ; x\r\n", {"response NORTH1 1 DENY"}},
         {header + "A  1 REPT EVT EQPT;", {"autonomous NORTH1 1 A REPT EVT EQPT"}},
         {header + "A  1 REPT a;b\r\n;", {"autonomous NORTH1 1 A REPT a;b"}},
         {header + "M  1 a;b\r\n;", {"response NORTH1 1 a;b"}}});
  for (const std::string& before : {header, std::string()}) {
    Framer framer;
    Message message;
    framer.Append(before + "M  1 COMPLD;");
    EXPECT_TRUE(framer.Next(message)) << "before the end of the line";
  }
}

TEST(Tl1Framer, Acknowledgements) {
  for (const std::string code : {"IP", "PF", "OK", "NA", "NG", "RL"}) {
    EXPECT_EQ(Read(code + " 7\r\n<"), Texts{"acknowledgement 7 " + code});
    EXPECT_EQ(Read(code + "\r\n<"), Texts{"acknowledgement " + code});
  }
  Check({{"OK  a7 \n\n<", {"acknowledgement a7 OK"}},
         {"IP 7 <", {"acknowledgement 7 IP"}},
         {"IP 7<RTRV-X;\r\n", {"acknowledgement 7 IP"}},
         {"< IP 7\r\n<", {"acknowledgement 7 IP"}},
         {"Welcome\r\nIP 7\r\n<", {"acknowledgement 7 IP"}},
         {"Last login on 26-03-04 05:06:07\r\nIP 7\r\n<", {"acknowledgement 7 IP"}},
         {"IP 7\r\n" + std::string(RESPONSE), {"acknowledgement 7 IP incomplete", SHOWN_RESPONSE}},
         {"IP 7", {"acknowledgement 7 IP incomplete"}},
         {"OK then\r\n" + std::string(RESPONSE), {SHOWN_RESPONSE}},
         {"OK\r\nOK", {}},
         {"XY 7\r\n<", {}},
         {"ip 7\r\n<", {}},
         {"IP 7 8\r\n<", {}},
         {"IPX 7\r\n<", {}}});
}

TEST(Tl1Framer, WhatCutsAnOpenMessage) {
  const std::string cut = SHOWN_OPEN + " incomplete | a";
  for (const std::string header : {HEADER, "   NORTH1 26-03-04 05:06:07\r\n", "NORTH1 26-03-04 05:06:07\r\n",
                                   "\r\n\r\n   NORTH1 26-03-04 05:06:07 PM\r\n", "   \"NORTH1\" 26-03-04 05:06:07\r\n",
                                   "   NORTH1 26-03-04 05:06:07\r\n\r\n"})
    EXPECT_EQ(Read(OPEN + header + "*C 8 REPT ALM EQPT\r\n   b\r\n;"),
              (Texts{cut, "autonomous NORTH1 8 *C REPT ALM EQPT | b"}))
        << header;
  Check({{OPEN + "M  2 DENY\r\n   b\r\n;", {cut, "response 2 DENY | b"}},
         {OPEN + "A  8 REPT EVT\r\n;", {cut, "autonomous 8 A REPT EVT"}},
         {OPEN + "*C 8 CANC X\r\n;", {cut, "autonomous 8 *C CANC X"}},
         {OPEN + "**8 REPT ALM\r\n;", {cut, "autonomous 8 ** REPT ALM"}},
         {OPEN + "IP 7\r\n<" + RESPONSE, {cut, "acknowledgement 7 IP", SHOWN_RESPONSE}},
         {OPEN + "RL\r\n<" + RESPONSE, {cut, "acknowledgement RL", SHOWN_RESPONSE}}});
  EXPECT_EQ(ShownWithPlaces(CutStream(OPEN + RESPONSE).messages)[0],
            "0+" + std::to_string(OPEN.size()) + " 26-03-04 05:06:07 " + cut)
      << "the line ends before a header belong to it";
}

TEST(Tl1Framer, WhatDoesNotCutAnOpenMessage) {
  for (const std::string line : {"   NORTH1 26-03-04 05:06:07", "NORTH1 26-03-04 05:06:07", "   M  2 COMPLD",
                                 "M  2 OTHER", "A  8 OTHER", "   IP 7", "IP 7", "OK", "XY 7", "   *C 8 REPT ALM"}) {
    const size_t indent = line.find_first_not_of(' ');
    EXPECT_EQ(Read(OPEN + line + "\r\n   b\r\n;"), Texts{SHOWN_OPEN + " | a | " + line.substr(indent) + " | b"})
        << line;
  }
  EXPECT_EQ(Read(OPEN + "   IP 7\r\n< b\r\n;"), Texts{SHOWN_OPEN + " | a | IP 7 | < b"});
  EXPECT_EQ(Read(OPEN + "   X 26-03-04 05:06:07\r\n   M  2 COMPLD\r\n;"),
            Texts{SHOWN_OPEN + " | a | X 26-03-04 05:06:07 | M  2 COMPLD"});
}

TEST(Tl1Framer, ATerminatorInTheFirstColumnEndsAMessage) {
  Check({{OPEN + ";trailing;\r\n", {SHOWN_OPEN + " | a"}},
         {OPEN + "> trailing\r\n", {SHOWN_OPEN + " continues | a"}},
         {OPEN + ";   NORTH1 26-03-04 05:06:07\r\nM  9 COMPLD\r\n   \"x\"\r\n;", {SHOWN_OPEN + " | a", SHOWN_RESPONSE}},
         {OPEN + "   ;b\r\n   x;\r\n   <\r\n;", {SHOWN_OPEN + " | a | ;b | x; | <"}},
         {OPEN + "   >\r\n;", {SHOWN_OPEN + " | a | >"}}});
}

TEST(Tl1Framer, ASemicolonAtTheEndOfALineEndsAMessageIfSomethingNewFollows) {
  for (const std::string follows : {"", "\r\n", "\r\n\r\n", "\r\n \t\r\n", "\r\n< ", "\r\n> ", "\r\n>>", "\r\nNE1>",
                                    "\r\nRTRV-HDR:::1;\r\n", "\r\nA RTRV-HDR:::1;\r\n\r\n"}) {
    const bool text = follows.find("A RTRV") != std::string::npos;
    const Texts ended{SHOWN_OPEN + " | a | \"b\""}, open{SHOWN_OPEN + " | a | \"b\"; | A RTRV-HDR:::1"};
    EXPECT_EQ(Read(OPEN + "   \"b\";" + follows), text ? open : ended) << follows;
  }
  const std::string ended = SHOWN_OPEN + " | a";
  Check({{OPEN + " ;" + RESPONSE, {ended, SHOWN_RESPONSE}},
         {OPEN + " ; \r\n   NORTH1 26-03-04 05:06:07\r\nM  9 COMPLD\r\n   \"x\"\r\n;", {ended, SHOWN_RESPONSE}},
         {OPEN + " ;\r\nM  2 DENY\r\n;", {ended, "response 2 DENY"}},
         {OPEN + " ;\r\nIP 7\r\n<", {ended, "acknowledgement 7 IP"}},
         {OPEN + "   b */;\r\n", {ended + " | b */"}},
         {OPEN + "   /* b */ ;\r\n", {ended + " | /* b */ "}},
         {OPEN + "   \"b\r\n   c\" ;\r\n", {ended + " | \"b | c\" "}}});
}

// As in texts of several unquoted lines.
TEST(Tl1Framer, ASemicolonAtTheEndOfALineOfTextEndsNothing) {
  Check({{OPEN + "   b;\r\n   c;\r\n   d:e;\r\n;", {SHOWN_OPEN + " | a | b; | c; | d:e;"}},
         {OPEN + "   b;\r\nc;\r\n;", {SHOWN_OPEN + " | a | b; | c;"}},
         {OPEN + "   b;\r\n>", {SHOWN_OPEN + " continues | a | b;"}},
         {OPEN + "   b;\r\n>\r\n", {SHOWN_OPEN + " continues | a | b;"}},
         {OPEN + "   b;\r\n>c\r\n", {SHOWN_OPEN + " continues | a | b;"}},
         {OPEN + "   b;\r\n   X 26-03-04 05:06:07\r\n;", {SHOWN_OPEN + " | a | b; | X 26-03-04 05:06:07"}},
         {OPEN + "   b;\r\nIP 7\r\n;", {SHOWN_OPEN + " | a | b; | IP 7"}},
         {OPEN + "   \"b;\r\n   c\"\r\n;", {SHOWN_OPEN + " | a | \"b; | c\""}}});
}

TEST(Tl1Framer, QuotesAndCommentsHideTerminators) {
  for (const std::string text : {"\"b\r\n;\r\nc\"", "\"b\r\n; x\r\n;\r\n\r\n;\r\n > \"", "\"\\\"\r\n;\r\n\\\"\"",
                                 "/* b \"\r\n;\r\n*/", "/*/\r\n;\r\n*/", "\"/*\r\n;\r\n\"", "\"\\\\\\\"\r\n;\r\n\""}) {
    const std::string message = std::string(HEADER) + "M  1 COMPLD\r\n   " + text + "\r\n;";
    EXPECT_EQ(Read(message + RESPONSE), (Texts{"response NORTH1 1 COMPLD" + ShownText(text), SHOWN_RESPONSE})) << text;
  }
}

TEST(Tl1Framer, QuotesAndCommentsOpenOnlyAtTheBeginningOfALine) {
  for (const std::string text : {"b \"", "6\" rack", "x /*", "\"b\" \"", "\"b\\\\\"", "/* b */ /*", "/* b */ \"", "*/"})
    EXPECT_EQ(Read(std::string(HEADER) + "M  1 COMPLD\r\n   " + text + "\r\n;" + RESPONSE),
              (Texts{"response NORTH1 1 COMPLD | " + text, SHOWN_RESPONSE}))
        << text;
}

TEST(Tl1Framer, ABalancedQuotedLineClosesAnOlderQuotation) {
  EXPECT_EQ(Read(OPEN + "   \"stray\r\n   \"b\"\r\n;" + RESPONSE),
            (Texts{SHOWN_OPEN + " | a | \"stray | \"b\"", SHOWN_RESPONSE}));
}

TEST(Tl1Framer, ABackslashIsNoEscapeAsTheSecondByteOfACharacter) {
  for (const std::string text : {"\"\x95\\\"", "\"\xB1\xB1\xB1\\\"", "\"\xC3\xA9\\\"\"", "\"\xD6\xD0\\\"\"",
                                 "\"\xE6\x9D\xB1\\\"\"", "\"\x95\\\\\"\"", "\"\xF0\x9F\x98\x80\\\"\""})
    EXPECT_EQ(Read(std::string(HEADER) + "M  1 COMPLD\r\n   " + text + "\r\n;" + RESPONSE).size(), 2U) << text;
}

TEST(Tl1Framer, InsideQuotesOnlyTheStrictFormCuts) {
  const std::string body = "   NORTH1 26-03-04 05:06:07\r\nM  9 COMPLD\r\n   \"x\"\r\n;";
  for (const std::string mark : {"\"b", "/* b"}) {
    const std::string open = OPEN + "   " + mark;
    for (const std::string lead : {"\r\n\n", "\n\n", "\r\n\r\n", "\r\r"})
      EXPECT_EQ(Read(open + lead + body), (Texts{SHOWN_OPEN + " incomplete | a | " + mark, SHOWN_RESPONSE})) << open;
    const Texts others = {"\r\n" + body,
                          "\r\n\n " + body,
                          "\r\n\nNORTH1 26-03-04 05:06:07\r\nM  9 COMPLD\r\n;",
                          "\r\n\n   26-03-04 05:06:07\r\nM  9 COMPLD\r\n;",
                          std::string(HEADER) + "   M  9 COMPLD\r\n",
                          std::string(HEADER) + "text\r\n",
                          "\r\nM  9 COMPLD\r\n",
                          "\r\nIP 7\r\n<"};
    for (const std::string& other : others)
      EXPECT_EQ(Read(open + other + "\r\n   closed \" */\r\n;").size(), 1U) << open << other;
  }
}

TEST(Tl1Framer, AStrayQuoteEndsAtTheFirstLoneTerminator) {
  const std::string stray = SHOWN_OPEN + " | a | \"b", acknowledgement = "acknowledgement 7 IP";
  Check({{OPEN + "   \"b\r\n;\r\n" + RESPONSE, {stray, SHOWN_RESPONSE}},
         {OPEN + "   /* b\r\n;" + RESPONSE, {SHOWN_OPEN + " | a | /* b", SHOWN_RESPONSE}},
         {OPEN + "   \"b\r\n;\r\nIP 7\r\n<\r\n;" + RESPONSE, {stray, acknowledgement, SHOWN_RESPONSE}},
         {OPEN + "   \"b\r\n>\r\n   c\r\n;" + RESPONSE,
          {SHOWN_OPEN + " continues | a | \"b", "response NORTH1 1 COMPLD bare | c", SHOWN_RESPONSE}},
         {OPEN + "   \"b\r\n; \r\n ;\r\n;x" + RESPONSE,
          {SHOWN_OPEN + " incomplete | a | \"b | ;  | ; | ;x", SHOWN_RESPONSE}},
         {OPEN + "   /* b\r\n;\r\nM  2 COMPLD\r\n   /* c\r\n;\r\nM  3 COMPLD\r\n   /* d\r\n;" + RESPONSE,
          {SHOWN_OPEN + " | a | /* b", "response 2 COMPLD | /* c", "response 3 COMPLD | /* d", SHOWN_RESPONSE}},
         {OPEN + "   \"b\r\n;", {stray}},
         {OPEN + "   \"b\r\n;\r\nIP 7\r\n<", {stray, acknowledgement}},
         {OPEN + "   \"b\r\n", {SHOWN_OPEN + " incomplete | a | \"b"}}});
}

TEST(Tl1Framer, TextAfterAPartBelongsToItsAnswer) {
  const std::string part = OPEN + ">";
  const std::string first = SHOWN_OPEN + " continues | a", second = "response NORTH1 1 COMPLD bare | b";
  Check({{part + "\r\n   b\r\n;", {first, second}},
         {part + "\r\nb\r\n;", {first, second}},
         {part + "\r\n\r\nb\r\n>\r\nc\r\n;",
          {first, "response NORTH1 1 COMPLD bare continues | b", "response NORTH1 1 COMPLD bare | c"}},
         {part + "\r\nb" + RESPONSE, {first, "response NORTH1 1 COMPLD bare incomplete | b", SHOWN_RESPONSE}},
         {part + "\r\nIP 7\r\n<\r\n   b\r\n;", {first, "acknowledgement 7 IP", second}},
         {part + "\r\n>\r\n   b\r\n;", {first, "prompt continues", second}},
         {part + "\r\n< \r\nRTRV-HDR:::1;\r\n" + RESPONSE, {first, SHOWN_RESPONSE}},
         {part + "\r\nNE1> b\r\n" + RESPONSE, {first, SHOWN_RESPONSE}},
         {part + RESPONSE + "\r\n   b\r\n;", {first, SHOWN_RESPONSE}},
         {part + "\r\n   X 26-03-04 05:06:07\r\n;", {first, "response NORTH1 1 COMPLD bare | X 26-03-04 05:06:07"}},
         {std::string(RESPONSE) + "\r\n   b\r\n;", {SHOWN_RESPONSE}}});
  const std::string event = std::string(HEADER) + "*C 5 REPT ALM\r\n>\r\nb\r\n;";
  const std::string shown = "autonomous NORTH1 5 *C REPT ALM";
  for (const size_t size : {0U, 1U, 7U})
    EXPECT_EQ(Shown(CutStream(event, size).messages), (Texts{shown + " continues", shown + " bare | b"})) << size;
}

TEST(Tl1Framer, APromptIsAMessageOnlyAloneOnItsLine) {
  Check({{"\r\n>", {"prompt continues"}},
         {"\n>\r\n", {"prompt continues"}},
         {">\r\n\r\n>\r\n>", {"prompt continues", "prompt continues"}}});
  for (const std::string stream : {">", "\r\n> ", "\r\n>>", "\r\n>RTRV-X:::1;\r\n", "\r\nA>"})
    EXPECT_EQ(Read(stream), Texts{}) << stream;
  EXPECT_EQ(ShownWithPlaces(CutStream("x\r\n\r\n>").messages), Texts{"3+3 prompt continues"});
}

TEST(Tl1Framer, LineEndsOfEveryKind) {
  for (const std::string& end : Texts{"\r\n", "\n", "\r", {"\r\0", 2}, {"\r\0\n", 3}}) {
    std::string stream;
    for (const char* line : {"", "   A 26-03-04 05:06:07", "M  1 COMPLD", "   b", "", "   c", ";"})
      stream += line + end;
    EXPECT_EQ(Read(stream + stream), (Texts(2, "response A 1 COMPLD | b |  | c"))) << ::testing::PrintToString(end);
  }
}

TEST(Tl1Framer, CountsWhatItSkips) {
  const Skipped skipped = CutStream("Welcome\r\nto NORTH1\r\n< RTRV-X:::1;\xFF\xFB\x01" + std::string(RESPONSE) +
                                    "\r\n;\r\n> \xFF\xFA\x18\xFF\xF0\r\n" + std::string(5000, 'x'))
                              .skipped;
  EXPECT_EQ(skipped.lines, 3U);
  EXPECT_EQ(skipped.prompts, 3U);
  EXPECT_EQ(skipped.echoes, 1U);
  EXPECT_EQ(CutStream("word;\r\nword-a;\r\nword:a;\r\n").skipped.echoes, 2U);
  EXPECT_EQ(skipped.telnet, 2U);
  EXPECT_EQ(skipped.bytes, 9U + 11 + 13 + 3 + 14 + 5000);
}

TEST(Tl1Framer, TelnetSequencesAreRemoved) {
  const std::string start = std::string(HEADER) + "M  1 COMPLD\r\n   ";
  struct TelnetCase {
    std::string sent, kept;
    uint64_t sequences;
  };
  for (const TelnetCase& c : {TelnetCase{"a\xFF\xFFz", "a\xFFz", 0},
                              {"a\xFFz", "a\xFFz", 0},
                              {"a\xFF\xEFz", "a\xFF\xEFz", 0},
                              {"a\xFF\xF0z", "az", 1},
                              {"\xFF\xF1x", "x", 1},
                              {"x\xFF\xFB;\xFF\xFE\"", "x", 2},
                              {"x\xFF\xFB\r\nz", "x\r\nz", 1},
                              {"x\xFF\xFA;\r\n;\xFF\xFF\xF0\r\n;\xFF\xFF\xFF\xF0y", "xy", 1},
                              {"\xFF\xFA" + std::string(600, 'x'), std::string(90, 'x'), 1}}) {
    const std::string stream = "\xFF\xF1" + start + c.sent + "\r\n;\xFF\xF1";
    for (const size_t pieceSize : {0U, 1U}) {
      const Cut cut = CutStream(stream, pieceSize);
      ASSERT_EQ(cut.messages.size(), 1U) << c.sent;
      const Message& message = cut.messages[0].View();
      EXPECT_EQ(message.bytes, start + c.kept + "\r\n;");
      EXPECT_EQ(message.offset, 2U);
      EXPECT_EQ(message.length, stream.size() - 4) << c.sent;
      EXPECT_EQ(cut.skipped.telnet, c.sequences + 2);
      EXPECT_EQ(cut.skipped.bytes, 4U);
    }
  }
}

TEST(Tl1Framer, TelnetNegotiationsAreReported) {
  Framer framer;
  Texts negotiations;
  framer.OnNegotiation([&negotiations](unsigned char command, unsigned char option) {
    negotiations.push_back(std::to_string(command) + " " + std::to_string(option));
  });
  framer.Append("\xFF\xFB\x01x\xFF\xFD");
  framer.Append("\x18\xFF\xF1\xFF\xFA\x18\xFF\xF0\xFF\xFE\xFF");
  EXPECT_EQ(negotiations, (Texts{"251 1", "253 24", "254 255"}));
}

TEST(Tl1Framer, AStreamThatEndsInAHeader) {
  Check({{HEADER, {"unrecognised NORTH1 incomplete"}},
         {HEADER + std::string("Some"), {"unrecognised NORTH1 incomplete | Some"}},
         {"\r\n\n   NORTH1 26-0", {"unrecognised incomplete | NORTH1 26-0"}},
         {HEADER + std::string("text\r\n"), {}},
         {"\r\n   NORTH1 26-03-04 05:06:07\r\n", {}},
         {"\r\n\n   NORTH1 26-0\r\n", {}},
         {HEADER + std::string("M  2 CO"), {"response NORTH1 2 CO incomplete"}}});
}

TEST(Tl1Framer, BytesAfterTheEndAreIgnored) {
  Framer framer;
  framer.Finish();
  framer.Append(RESPONSE);
  Message message;
  EXPECT_FALSE(framer.Next(message));
  EXPECT_EQ(framer.GetSkipped().bytes, 0U);
}

}  // namespace
}  // namespace VARNEL_TEST
