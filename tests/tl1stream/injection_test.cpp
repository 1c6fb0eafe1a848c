// Memory that runs out while a stream is read: nothing leaks, no message is wrong, and what was ready can be taken.
#include <gtest/gtest.h>
#include <tl1stream.h>

#include <algorithm>
#include <new>

#include "allocation.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Joiner;
using VARNEL_TL1::Message;
using VARNEL_TL1::Parts;
using VARNEL_TL1::Reader;

const std::string LONG(200, 'w');
const std::string HEADER = "\r\n\n   \"" + LONG + "\" 20-01-01 12:34:56\r\n";
const std::string ANSWER = HEADER + "M  " + LONG + " COMPLD\r\n   \"" + LONG + "\"\r\n";
// All kinds of messages, an echo, a telnet sequence, a stray quote, and a message without an end.
const std::string STREAM = "RTRV-ALM:" + LONG + ";" + ANSWER + ";\r\n\xFF\xFB\x01" + ANSWER + ">" + ANSWER +
                           ">\r\n   " + LONG + "\r\n;IP " + LONG + "\r\n<" + HEADER + "*C 7 REPT ALM " + LONG +
                           "\r\n   \"" + LONG + "\r\n;" + ANSWER + ";\r\n>" + HEADER + "M  7 COMPLD\r\n   " + LONG;

// Runs an operation with each allocation failing; afterwards nothing may be left of it.
template <typename Operation>
size_t FailEach(Operation operation) {
  size_t live = LiveAllocations();
  return FailEachAllocation(
      [&] {
        live = LiveAllocations();
        operation();
      },
      [&] { EXPECT_EQ(LiveAllocations(), live); });
}

std::vector<Parts> AllParts() {
  Reader reader;
  std::vector<Parts> all;
  for (const Message& message : CutWhole(STREAM))
    all.push_back(reader.Read(message));
  return all;
}

TEST(StreamInjection, MessagesTakenFromABrokenStreamAreRight) {
  const std::vector<std::string> whole = Shown(CutWhole(STREAM));
  ASSERT_GE(whole.size(), 8U);
  size_t failures = 0;
  for (const size_t pieceSize : {size_t{1}, size_t{50}, STREAM.size()}) {
    for (size_t n = 1;; ++n) {
      const size_t live = LiveAllocations();
      bool failed = false;
      {
        Framer framer;
        try {
          const AllocationGuard guard(n);
          for (size_t at = 0; at < STREAM.size(); at += pieceSize)
            framer.Feed(std::string_view(STREAM).substr(at, pieceSize));
          framer.Finish();
        } catch (const std::bad_alloc&) {
          failed = true;
          EXPECT_FALSE(framer.Feed(ANSWER + ";")) << "nothing more is read";
          framer.Finish();
        }
        Messages taken;
        for (Message message; framer.Next(message);)
          taken.push_back(message);
        const std::vector<std::string> shown = Shown(taken);
        EXPECT_LE(shown.size(), whole.size());
        EXPECT_TRUE(std::equal(shown.begin(), shown.end(), whole.begin())) << "allocation " << n;
        EXPECT_TRUE(failed || shown.size() == whole.size());
      }
      EXPECT_EQ(LiveAllocations(), live);
      if (!failed) break;
      ++failures;
    }
  }
  RecordProperty("injected", static_cast<int>(failures));
  EXPECT_GT(failures, 100U);
}

TEST(StreamInjection, FramerThatCannotBeMadeLeaksNothing) {
  EXPECT_GT(FailEach([] { const Framer framer; }), 0U);
  EXPECT_GT(FailEach([] { const Joiner joiner; }), 0U);
}

TEST(StreamInjection, NextNeedsNoMemory) {
  Framer framer;
  framer.Feed(STREAM);
  Message message;
  const AllocationGuard guard;
  while (framer.Next(message)) {
  }
  EXPECT_EQ(guard.Count(), 0U);
}

// What a reader makes of bare text shows all that it keeps.
Parts Probe(Reader reader) {
  Message bare;
  bare.bytes = "   text\r\n;";
  bare.bareText = true;
  return reader.Read(bare);
}

TEST(StreamInjection, ReaderIsAsBeforeOrAfter) {
  const std::string other = HEADER + "*C other REPT ALM " + LONG + "\r\n>";  // so that two continue, unlike each other
  size_t failures = 0;
  Reader reader;
  for (const Message& message : CutWhole(STREAM + "\r\n;" + other + STREAM)) {
    Reader done = reader;
    const Parts right = done.Read(message);
    const Parts before = Probe(reader);
    const Parts after = Probe(done);
    const size_t live = LiveAllocations();
    for (size_t n = 1, failed = 1; failed > 0; ++n) {
      Reader used = reader;
      failed = 0;
      try {
        const AllocationGuard guard(n);
        used.Read(message);
      } catch (const std::bad_alloc&) {
        failed = 1;
      }
      failures += failed;
      const Parts probe = Probe(used);
      EXPECT_TRUE(Same(probe, after) || (failed > 0 && Same(probe, before))) << "allocation " << n;
      EXPECT_TRUE(Same(used.Read(message), right));
    }
    EXPECT_EQ(LiveAllocations(), live);
    reader = done;
  }
  RecordProperty("injected", static_cast<int>(failures));
  EXPECT_GT(failures, 40U);
}

// Adds parts until memory runs out and shows what can be taken then; `failed` tells whether it ran out.
std::vector<std::string> JoinWithFailure(const std::vector<Parts>& parts, size_t failAt, bool& failed) {
  Joiner joiner;
  std::vector<Parts> copies = parts;
  failed = false;
  try {
    const AllocationGuard guard(failAt);
    for (Parts& part : copies)
      joiner.Add(std::move(part));
    joiner.Finish();
  } catch (const std::bad_alloc&) {
    failed = true;
    EXPECT_FALSE(joiner.Add(parts.front())) << "nothing more is taken in";
    joiner.Finish();
  }
  std::vector<std::string> shown;
  for (Parts taken; joiner.Next(taken);)
    shown.push_back(Shown(taken));
  return shown;
}

TEST(StreamInjection, AnswersTakenFromABrokenJoinerAreRight) {
  const std::vector<Parts> parts = AllParts();
  bool failed = false;
  const std::vector<std::string> whole = JoinWithFailure(parts, 0, failed);
  ASSERT_LT(whole.size(), parts.size()) << "some are joined";
  size_t failures = 0;
  for (size_t n = 1;; ++n) {
    const size_t live = LiveAllocations();
    {
      const std::vector<std::string> shown = JoinWithFailure(parts, n, failed);
      EXPECT_TRUE(shown.size() <= whole.size() && std::equal(shown.begin(), shown.end(), whole.begin()))
          << "allocation " << n << ": " << ::testing::PrintToString(shown);
    }
    EXPECT_EQ(LiveAllocations(), live);
    if (!failed) break;
    ++failures;
  }
  RecordProperty("injected", static_cast<int>(failures));
  EXPECT_GT(failures, 10U);
}

TEST(StreamInjection, FunctionsOfTheReaderLeakNothing) {
  const std::string text = "   " + LONG + "\r\n   " + LONG + "\r\n";
  size_t failures = FailEach([&] { EXPECT_EQ(VARNEL_TL1::TextLines(text).size(), 2U); });
  failures += FailEach([&] { EXPECT_TRUE(VARNEL_TL1::Field(text)); });
  failures += FailEach([&] { EXPECT_TRUE(VARNEL_TL1::SidField("\"" + LONG + "\"")); });
  EXPECT_GE(failures, 5U);
}

}  // namespace
}  // namespace VARNEL_TEST
