#include "varnel_tl1/joiner.h"

#include <gtest/gtest.h>

#include "growth.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Joiner;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

// A part of an answer, ten bytes long; each is ten bytes after the one before.
struct Part {
  std::string_view sid, ctag, code, text;
  bool continues = false;
};

Message MessageOf(const Part& part, uint64_t number) {
  Message message;
  message.type = MessageType::Response;
  message.offset = number * 10;
  message.length = 10;
  message.bytes = "0123456789";
  message.sid = part.sid;
  message.ctag = part.ctag;
  message.code = part.code;
  message.text = part.text;
  message.continues = part.continues;
  return message;
}

Texts Joined(const std::vector<Part>& parts, size_t limit = VARNEL_TL1::DEFAULT_LIMIT) {
  Joiner joiner(limit);
  Texts shown;
  const auto take = [&] {
    for (Message message; joiner.Next(message);)
      shown.push_back(std::to_string(message.offset) + "+" + std::to_string(message.length) + " " + Shown(message));
  };
  for (size_t i = 0; i < parts.size(); ++i) {
    joiner.Add(MessageOf(parts[i], i));
    take();
  }
  joiner.Finish();
  take();
  return shown;
}

TEST(Tl1Joiner, JoinsThePartsToOneMessage) {
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a\r\n", true},
                    {"A", "1", "COMPLD", "b", true},
                    {"A", "1", "COMPLD", "c\n", false},
                    {"A", "1", "COMPLD", "d", false}}),
            (Texts{"0+30 response A 1 COMPLD | a | b | c", "30+10 response A 1 COMPLD | d"}));
}

TEST(Tl1Joiner, JoinsTheBytes) {
  Joiner joiner;
  joiner.Add(MessageOf({"A", "1", "COMPLD", "a", true}, 0));
  joiner.Add(MessageOf({"A", "1", "COMPLD", "b", false}, 1));
  Message message;
  ASSERT_TRUE(joiner.Next(message));
  EXPECT_EQ(message.bytes, "01234567890123456789");
}

TEST(Tl1Joiner, KeepsAnswersApart) {
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a", true},
                    {"B", "1", "COMPLD", "b", true},
                    {"A", "2", "COMPLD", "c", true},
                    {"A", "2", "COMPLD", "C", false},
                    {"B", "1", "COMPLD", "B", false},
                    {"A", "1", "COMPLD", "A", false}}),
            (Texts{"20+20 response A 2 COMPLD | c | C", "10+40 response B 1 COMPLD | b | B",
                   "0+60 response A 1 COMPLD | a | A"}));
}

TEST(Tl1Joiner, AnotherCodeBeginsAnotherAnswer) {
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a", true}, {"A", "1", "DENY", "b", false}}),
            (Texts{"0+10 response A 1 COMPLD continues incomplete | a", "10+10 response A 1 DENY | b"}));
  EXPECT_EQ(Joined({{"A", "1", "RTRV", "a", true}, {"A", "1", "RTRV", "b", true}, {"A", "1", "COMPLD", "c", false}}),
            (Texts{"0+30 response A 1 COMPLD | a | b | c"}));
}

TEST(Tl1Joiner, APartWithoutSidBelongsToTheLatestAnswer) {
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a", true},
                    {"B", "1", "COMPLD", "b", true},
                    {"", "1", "COMPLD", "c", true},
                    {"A", "1", "COMPLD", "d", true},
                    {"", "1", "COMPLD", "e", false}}),
            (Texts{"0+50 response A 1 COMPLD | a | d | e", "10+20 response B 1 COMPLD continues incomplete | b | c"}));
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a", true},
                    {"A", "1", "COMPLD", "b", false},
                    {"", "1", "COMPLD", "c", true},
                    {"A", "1", "COMPLD", "d", false}}),
            (Texts{"0+20 response A 1 COMPLD | a | b", "30+10 response A 1 COMPLD | d",
                   "20+10 response 1 COMPLD continues incomplete | c"}))
      << "the answer before is whole";
}

TEST(Tl1Joiner, UnfinishedAnswersAreIncompleteAtTheEnd) {
  EXPECT_EQ(
      Joined({{"B", "1", "COMPLD", "a", true}, {"A", "1", "RTRV", "b", true}}),
      (Texts{"0+10 response B 1 COMPLD continues incomplete | a", "10+10 response A 1 RTRV continues incomplete | b"}));
}

TEST(Tl1Joiner, OtherTypesPass) {
  Message prompt;
  prompt.type = MessageType::Prompt;
  prompt.continues = true;
  Joiner joiner;
  joiner.Add(prompt);
  Message taken;
  ASSERT_TRUE(joiner.Next(taken));
  EXPECT_EQ(taken.type, MessageType::Prompt);
  EXPECT_FALSE(joiner.Next(taken));
}

TEST(Tl1Joiner, AnswersBeyondTheLimitAreIncomplete) {
  EXPECT_EQ(Joined({{"A", "1", "COMPLD", "a", true},
                    {"A", "2", "COMPLD", "b", true},
                    {"A", "1", "COMPLD", "c", true},
                    {"A", "2", "COMPLD", "d", true},
                    {"A", "2", "COMPLD", "e", false},
                    {"A", "1", "COMPLD", "f", false}},
                   30),
            (Texts{"10+30 response A 2 COMPLD continues incomplete tooLong | b | d", "40+10 response A 2 COMPLD | e",
                   "0+60 response A 1 COMPLD | a | c | f"}));
}

TEST(Tl1Joiner, ManyOpenAnswersAreCheap) {
  const auto prepare = [](size_t count) {
    Texts ctags;
    for (size_t i = 0; i < count; ++i)
      ctags.push_back(std::to_string(i));
    return ctags;
  };
  const auto join = [](const Texts& ctags) {
    Joiner joiner;
    for (const std::string& ctag : ctags)
      joiner.Add(MessageOf({"A", ctag, "COMPLD", "a", true}, 0));
    joiner.Finish();
  };
  EXPECT_LT(Growth(200, prepare, join), LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
