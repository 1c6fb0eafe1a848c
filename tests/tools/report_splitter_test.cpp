#include "report_splitter.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace VARNEL_TEST {

namespace {

using Texts = std::vector<std::string>;

Texts Bodies(ReportSplitter& splitter) {
  Texts bodies;
  while (const std::optional<Report> report = splitter.Next())
    bodies.push_back(report->text.substr(0, report->bodyLength));
  return bodies;
}

void Append(Texts& texts, const Texts& more) {
  texts.insert(texts.end(), more.begin(), more.end());
}

// The rest at the end of the stream; may be empty.
std::string Rest(ReportCutter& splitter) {
  splitter.Finish();
  const std::optional<Report> rest = splitter.Next();
  return rest ? rest->text : "";
}

// The bodies of all reports of a stream that arrives in two pieces.
Texts BodiesOfTwo(const std::string& stream, size_t split, const std::string& separator) {
  ReportSplitter splitter(separator);
  splitter.Feed(std::string_view(stream).substr(0, split));
  Texts bodies = Bodies(splitter);
  splitter.Feed(std::string_view(stream).substr(split));
  Append(bodies, Bodies(splitter));
  bodies.push_back(Rest(splitter));
  return bodies;
}

Texts BodiesByteByByte(const std::string& stream, const std::string& separator) {
  ReportSplitter splitter(separator);
  Texts bodies;
  for (const char byte : stream) {
    splitter.Feed({&byte, 1});
    Append(bodies, Bodies(splitter));
  }
  bodies.push_back(Rest(splitter));
  return bodies;
}

void ExpectHoweverCut(const Texts& expected, const std::string& stream, const std::string& separator) {
  for (size_t split = 0; split <= stream.size(); ++split)
    EXPECT_EQ(expected, BodiesOfTwo(stream, split, separator)) << "split at " << split;
  EXPECT_EQ(expected, BodiesByteByByte(stream, separator));
}

TEST(Tl1ReportCutter, CutsMessagesButNotInsideQuotes) {
  const auto cutter = MakeReportCutter("", Language::Tl1);
  const std::string first = "\r\n\n   NE 26-01-15 12:00:00\r\nA  1 REPT EVT\r\n   \"a\r\n;b\"\r\n;";
  cutter->Feed(first + "\r\n\n   NE 26-01-15 12:00:01\r\nA  2 REPT EVT\r\n   \"c" + std::string(1, '\0') + "d");
  const std::optional<Report> report = cutter->Next();
  ASSERT_TRUE(report);
  EXPECT_EQ(first, report->text);
  EXPECT_EQ(first.size(), report->bodyLength);
  EXPECT_FALSE(cutter->Next());
  EXPECT_NE(std::string::npos, Rest(*cutter).find("\"c d"));
  EXPECT_FALSE(cutter->TooLong());
}

TEST(Tl1ReportCutter, StopsAtAReportBeyondTheLimit) {
  const auto cutter = MakeReportCutter("", Language::Tl1);
  cutter->Feed("\r\n\n   NE 26-01-15 12:00:00\r\nA  1 REPT EVT\r\n" + std::string(ReportCutter::MAX_LENGTH, 'x'));
  EXPECT_FALSE(cutter->Next());
  EXPECT_TRUE(cutter->TooLong());
}

TEST(ReportCutter, SeparatorCutsTl1Too) {
  const auto cutter = MakeReportCutter("|", Language::Tl1);
  cutter->Feed("a|b");
  const std::optional<Report> report = cutter->Next();
  ASSERT_TRUE(report);
  EXPECT_EQ("a|", report->text);
}

}  // namespace

TEST(ReportSplitter, CutsAtLinesForAnyCutOfTheStream) {
  const std::string stream =
      "\r\n\n a\r\nb;\r\n;\r\nc\n\n \t\r\nd\n > \n<\n+++ e\n\n;\n>\n---    END\nf\n+++ g\n\n+++ h\n---END\n--- "
      "ENDED\ni";
  const Texts expected = {" a\r\nb;\r\n", "c\n",     "d\n",         "", "+++ e\n\n;\n>\n", "f\n",
                          "+++ g\n\n",    "+++ h\n", "--- ENDED\ni"};
  ExpectHoweverCut(expected, stream, "");
}

TEST(ReportSplitter, CutsAfterASeparatorForAnyCutOfTheStream) {
  ExpectHoweverCut({"a;\n\n", "b=", "", "c="}, "a;\n\n==!b===!==!c=", "==!");
}

TEST(ReportSplitter, KeepsTheEndingLineAfterTheBody) {
  ReportSplitter splitter("");
  splitter.Feed("text\n  ;\r\nrest");
  const std::optional<Report> report = splitter.Next();
  ASSERT_TRUE(report);
  EXPECT_EQ("text\n  ;\r\n", report->text);
  EXPECT_EQ(5U, report->bodyLength);
  EXPECT_EQ("rest", Rest(splitter));
}

TEST(ReportSplitter, ReplacesNulBytesByBlanks) {
  ReportSplitter splitter("");
  splitter.Feed(std::string("a\0b\0\n\0\n", 7));
  EXPECT_EQ(Texts{"a b \n"}, Bodies(splitter));
}

TEST(ReportSplitter, AcceptsReportsUpToTheLimit) {
  ReportSplitter splitter("|");
  splitter.Feed(std::string(ReportSplitter::MAX_LENGTH - 1, 'x') + '|');
  EXPECT_TRUE(splitter.Next());
  EXPECT_FALSE(splitter.TooLong());
}

TEST(ReportSplitter, CutsNothingAfterAReportBeyondTheLimit) {
  ReportSplitter splitter("|");
  splitter.Feed(std::string(ReportSplitter::MAX_LENGTH, 'x') + "|y|");
  EXPECT_FALSE(splitter.Next());
  EXPECT_TRUE(splitter.TooLong());
  EXPECT_FALSE(splitter.Next());
}

TEST(ReportSplitter, ReportsTooLongBeforeTheEndArrives) {
  ReportSplitter splitter("");
  splitter.Feed(std::string(ReportSplitter::MAX_LENGTH, 'x'));
  EXPECT_FALSE(splitter.Next());
  EXPECT_FALSE(splitter.TooLong());
  splitter.Feed("x");
  EXPECT_FALSE(splitter.Next());
  EXPECT_TRUE(splitter.TooLong());
}

}  // namespace VARNEL_TEST
