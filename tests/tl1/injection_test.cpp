// Memory exhaustion while a stream is read: nothing leaks, no message is wrong, and ready messages can be retrieved.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "allocation.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Joiner;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;

const std::string LONG(200, 'w');
const std::string HEADER_LINE = "\r\n\n   \"" + LONG + "\" 20-01-01 12:34:56\r\n";
const std::string ANSWER = HEADER_LINE + "M  " + LONG + " COMPLD\r\n   \"" + LONG + "\"\r\n";
// All kinds of messages, an echo, telnet sequences, a stray quote, and a message without an end.
const std::string STREAM = "RTRV-ALM:" + LONG + ";" + ANSWER + ";\r\n\xFF\xFB\x01" + ANSWER + ">" + ANSWER +
                           ">\r\n   " + LONG + "\r\n;\xFF\xFA" + LONG + "\r\nIP " + LONG + "\r\n<" + HEADER_LINE +
                           "*C 7 REPT ALM " + LONG + "\r\n   \"" + LONG + "\r\n;" + ANSWER + ";\r\n>" + HEADER_LINE +
                           "M  7 COMPLD\r\n   " + LONG;

// Runs an operation with the first, second, ... allocation failing, until none fails; returns how many did.
template <typename Operation>
size_t FailEach(Operation operation) {
  size_t failures = 0;
  for (bool failed = true; failed;) {
    const size_t live = LiveAllocations();
    failed = operation(failures + 1);
    EXPECT_EQ(LiveAllocations(), live) << "allocation " << failures + 1;
    failures += failed ? 1 : 0;
  }
  return failures;
}

// Whether the retrieved messages are the first ones of all.
void CheckBegins(const Texts& taken, const Texts& all) {
  EXPECT_TRUE(taken.size() <= all.size() && std::equal(taken.begin(), taken.end(), all.begin()))
      << ::testing::PrintToString(taken);
}

TEST(Tl1Injection, MessagesOfABrokenStreamAreCorrect) {
  const Texts whole = Shown(CutStream(STREAM).messages);
  ASSERT_GE(whole.size(), 7U);
  for (const size_t pieceSize : {size_t{50}, STREAM.size()}) {
    const auto read = [&](size_t n) {
      Framer framer;
      bool failed = false;
      Texts taken;
      try {
        const AllocationGuard guard(n);
        for (size_t at = 0; at < STREAM.size(); at += pieceSize)
          framer.Append(std::string_view(STREAM).substr(at, pieceSize));
        framer.Finish();
      } catch (const std::bad_alloc&) {
        failed = true;
        framer.Append(ANSWER + ";");
        framer.Finish();
      }
      for (Message message; framer.Next(message);)
        taken.push_back(Shown(message));
      CheckBegins(taken, whole);
      EXPECT_TRUE(failed || taken.size() == whole.size());
      return failed;
    };
    EXPECT_GT(FailEach(read), 4U);
  }
}

TEST(Tl1Injection, NextNeedsNoMemory) {
  Framer framer;
  framer.Append(STREAM);
  Message message;
  const AllocationGuard guard;
  while (framer.Next(message)) {
  }
  EXPECT_EQ(guard.Count(), 0U);
}

TEST(Tl1Injection, AnswersOfABrokenJoinerAreCorrect) {
  const Messages messages = CutStream(STREAM).messages;
  Texts whole;
  const auto join = [&](size_t n) {
    Joiner joiner;
    bool failed = false;
    try {
      const AllocationGuard guard(n);
      for (const MessageCopy& message : messages)
        joiner.Add(message.View());
      joiner.Finish();
    } catch (const std::bad_alloc&) {
      failed = true;
      joiner.Add(messages.front().View());
      joiner.Finish();
    }
    Texts taken;
    for (Message message; joiner.Next(message);)
      taken.push_back(Shown(message));
    if (n == 0) {
      whole = taken;
    } else {
      CheckBegins(taken, whole);
    }
    return failed;
  };
  ASSERT_FALSE(join(0));
  EXPECT_LT(whole.size(), messages.size()) << "some are joined";
  EXPECT_GT(FailEach(join), 10U);
}

// Objects without a promise about their state leak nothing.
TEST(Tl1Injection, TheOthersLeakNothing) {
  const Messages messages = CutStream(STREAM).messages;
  const std::string text = "\"" + LONG + ":a,b\"";
  const auto use = [&](size_t n) {
    try {
      const AllocationGuard guard(n);
      const Framer framer;
      const Joiner joiner;
      VARNEL_TL1::Alarms alarms;
      VARNEL_TL1::Atags atags;
      VARNEL_TL1::QuotedText quoted;
      for (const MessageCopy& message : messages) {
        const MessageCopy copy = message;
        alarms.Add(LONG, copy.View());
        atags.Missed(copy.View());
      }
      quoted.Read(text);
      return VARNEL_TL1::Unescaped(quoted.Aid()) != LONG;
    } catch (const std::bad_alloc&) {
      return true;
    }
  };
  EXPECT_GT(FailEach(use), 15U);
}

TEST(Tl1Injection, UnescapedTextIsUnchangedIfMemoryRunsOut) {
  std::string text = "kept";
  {
    const AllocationGuard guard(1);
    EXPECT_THROW(VARNEL_TL1::AppendUnescaped(LONG, text), std::bad_alloc);
  }
  EXPECT_EQ(text, "kept");
}

}  // namespace
}  // namespace VARNEL_TEST
