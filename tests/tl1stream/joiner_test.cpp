#include <gtest/gtest.h>
#include <tl1joiner.h>

#include "growth.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Joiner;
using VARNEL_TL1::MessageType;
using VARNEL_TL1::Parts;

// A part of an answer, ten bytes long; each stands ten bytes behind the one before.
Parts Part(uint64_t number, const char* sid, const char* ctag, const char* code, const char* line, bool continues) {
  Parts parts;
  parts.type = MessageType::Response;
  parts.offset = number * 10;
  parts.length = 10;
  if (*sid != '\0') parts.sid = sid;
  parts.ctag = ctag;
  parts.code = code;
  parts.lines = {line};
  parts.continues = continues;
  return parts;
}

std::vector<std::string> Joined(const std::vector<Parts>& all) {
  Joiner joiner;
  std::vector<std::string> shown;
  const auto take = [&] {
    for (Parts parts; joiner.Next(parts);) {
      std::string text = parts.sid.value_or("-") + " " + parts.ctag.value_or("-") + " " + parts.code.value_or("-") +
                         " " + std::to_string(parts.offset) + "+" + std::to_string(parts.length) + ":";
      for (const std::string& line : parts.lines)
        text += " " + line;
      shown.push_back(text + (parts.continues ? " ..." : ""));
    }
  };
  for (const Parts& parts : all) {
    EXPECT_TRUE(joiner.Add(parts));
    take();
  }
  joiner.Finish();
  take();
  return shown;
}

using Texts = std::vector<std::string>;

TEST(Tl1Joiner, MakesOneMessageOfTheParts) {
  EXPECT_EQ(Joined({Part(0, "A", "1", "COMPLD", "a", true), Part(1, "A", "1", "COMPLD", "b", true),
                    Part(2, "A", "1", "COMPLD", "c", false), Part(3, "A", "1", "COMPLD", "d", false)}),
            (Texts{"A 1 COMPLD 0+30: a b c", "A 1 COMPLD 30+10: d"}));
}

TEST(Tl1Joiner, KeepsAnswersApart) {
  EXPECT_EQ(Joined({Part(0, "A", "1", "COMPLD", "a", true), Part(1, "B", "1", "COMPLD", "b", true),
                    Part(2, "A", "2", "COMPLD", "c", true), Part(3, "A", "2", "COMPLD", "C", false),
                    Part(4, "B", "1", "COMPLD", "B", false), Part(5, "A", "1", "COMPLD", "A", false)}),
            (Texts{"A 2 COMPLD 20+20: c C", "B 1 COMPLD 10+40: b B", "A 1 COMPLD 0+60: a A"}));
}

TEST(Tl1Joiner, AnotherCodeIsAnotherAnswer) {
  EXPECT_EQ(Joined({Part(0, "A", "1", "COMPLD", "a", true), Part(1, "A", "1", "DENY", "b", false)}),
            (Texts{"A 1 COMPLD 0+10: a ...", "A 1 DENY 10+10: b"}));
  EXPECT_EQ(Joined({Part(0, "A", "1", "RTRV", "a", true), Part(1, "A", "1", "RTRV", "b", true),
                    Part(2, "A", "1", "COMPLD", "c", false)}),
            (Texts{"A 1 COMPLD 0+30: a b c"}));
}

TEST(Tl1Joiner, APartWithoutSidBelongsToTheLatest) {
  EXPECT_EQ(Joined({Part(0, "A", "1", "COMPLD", "a", true), Part(1, "B", "1", "COMPLD", "b", true),
                    Part(2, "", "1", "COMPLD", "c", false), Part(3, "A", "1", "COMPLD", "d", false)}),
            (Texts{"B 1 COMPLD 10+20: b c", "A 1 COMPLD 0+40: a d"}));
}

TEST(Tl1Joiner, GivesWhatIsNotWholeAtTheEnd) {
  EXPECT_EQ(Joined({Part(0, "B", "1", "COMPLD", "a", true), Part(1, "A", "1", "COMPLD", "b", true)}),
            (Texts{"B 1 COMPLD 0+10: a ...", "A 1 COMPLD 10+10: b ..."}));
}

TEST(Tl1Joiner, OtherTypesPass) {
  Parts prompt;
  prompt.type = MessageType::Prompt;
  prompt.continues = true;
  Joiner joiner;
  Parts taken;
  joiner.Add(prompt);
  ASSERT_TRUE(joiner.Next(taken));
  EXPECT_EQ(taken.type, MessageType::Prompt);
}

TEST(Tl1Joiner, IsBoundedByTheLimit) {
  Joiner joiner(30);
  EXPECT_TRUE(joiner.Add(Part(0, "A", "1", "COMPLD", "a", true)));
  EXPECT_TRUE(joiner.Add(Part(1, "A", "1", "COMPLD", "a", true)));
  EXPECT_TRUE(joiner.Add(Part(2, "A", "1", "COMPLD", "a", false)));
  for (uint64_t i = 3; i < 6; ++i)
    EXPECT_TRUE(joiner.Add(Part(i, "A", "2", "COMPLD", "a", true)));
  EXPECT_FALSE(joiner.Add(Part(6, "A", "3", "COMPLD", "a", true)));
  EXPECT_FALSE(joiner.Add(Part(7, "A", "4", "COMPLD", "a", false)));
}

TEST(Tl1Joiner, ManyOpenAnswersAreCheap) {
  const auto prepare = [](size_t count) { return count; };
  const auto join = [](size_t count) {
    Joiner joiner;
    for (size_t i = 0; i < count; ++i)
      joiner.Add(Part(i, "A", std::to_string(i).c_str(), "COMPLD", "a", true));
    joiner.Finish();
  };
  EXPECT_LT(Growth(200, prepare, join), LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
