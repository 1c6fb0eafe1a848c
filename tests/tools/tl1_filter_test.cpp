#include "tl1_filter.h"

#include <algorithm>

#include <gtest/gtest.h>

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace VARNEL_TEST {

namespace {

Tl1Filter Filter(std::vector<std::string> arguments) {
  CLI::App app;
  Tl1Filter filter;
  filter.AddOptions(app);
  std::reverse(arguments.begin(), arguments.end());
  app.parse(arguments);
  return filter;
}

bool CodePasses(const std::string& pattern, const std::string& code) {
  Message message;
  message.type = MessageType::Autonomous;
  message.code = code;
  return Filter({"--code", pattern}).Passes(message);
}

}  // namespace

TEST(MatchesPatternTest, StarsAndQuestionMarks) {
  for (const char* pattern :
       {"abcab", "*", "a*", "*b", "**", "?bcab", "*ab", "a*b", "*ca*", "a?c*", "ABCAB", "*abcab*"})
    EXPECT_TRUE(MatchesPattern(pattern, "abcab")) << pattern;
  for (const char* pattern : {"", "abca", "abcabc", "?", "????", "*c", "b*", "a?b*", "*x*", "??????"})
    EXPECT_FALSE(MatchesPattern(pattern, "abcab")) << pattern;
  EXPECT_TRUE(MatchesPattern("*", ""));
  EXPECT_FALSE(MatchesPattern("?", ""));
}

TEST(Tl1FilterTest, AStarInACodeIsAnAlarmCode) {
  EXPECT_TRUE(CodePasses("*", "*"));
  EXPECT_FALSE(CodePasses("*", "**"));
  EXPECT_FALSE(CodePasses("*", "A"));
  EXPECT_TRUE(CodePasses("**", "**"));
  EXPECT_FALSE(CodePasses("**", "*C"));
  EXPECT_TRUE(CodePasses("*c", "*C"));
  EXPECT_FALSE(CodePasses("*C", "COMPC"));
  EXPECT_TRUE(CodePasses("*LD", "COMPLD"));
  EXPECT_TRUE(CodePasses("?*", "**"));
}

TEST(Tl1FilterTest, EveryListMustHaveAPatternForTheMessage) {
  Message message;
  message.type = MessageType::Autonomous;
  message.sid = "NE-EAST";
  message.verb = "REPT ALM EQPT";
  message.text = "   \"A1:MJ,LOS\"";
  EXPECT_TRUE(Filter({}).Passes(message));
  EXPECT_TRUE(
      Filter({"--type", "resp*,auto*", "--sid", "x,ne-*", "--verb", "* ALM *", "--severity", "CR,MJ"}).Passes(message));
  EXPECT_FALSE(Filter({"--type", "autonomous", "--sid", "NE-WEST"}).Passes(message));
  EXPECT_FALSE(Filter({"--severity", "CR"}).Passes(message));
  EXPECT_FALSE(Filter({"--ctag", "*"}).Passes(message));  // the message has no ctag
}

TEST(Tl1FilterTest, RefusesUnknownTypesAndEmptyItems) {
  EXPECT_THROW(Filter({"--type", "alarm"}), CLI::ValidationError);
  EXPECT_THROW(Filter({"--sid", ""}), CLI::ValidationError);
}

}  // namespace VARNEL_TEST
