// The two promises: no byte is lost silently, and damage does not spread.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "growth.h"
#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;

const std::string ALARM = "\r\n\n   NORTH1 26-03-04 05:06:07\r\n*C 8 REPT ALM EQPT\r\n   \"A:CR\"\r\n;";
const std::string SHOWN_ALARM = "autonomous NORTH1 8 *C REPT ALM EQPT | \"A:CR\"";

TEST(Tl1Damage, AResponseThatIsCutOffHidesNoAlarm) {
  const std::string response = std::string(HEADER) + "M  7 COMPLD\r\n   \"SLOT-1:UP\"\r\n   \"SLOT-2:DOWN\"\r\n;";
  for (size_t length = 0; length < response.size(); ++length) {
    const Cut cut = CutStream(response.substr(0, length) + ALARM);
    ASSERT_FALSE(cut.messages.empty()) << length;
    const Message& alarm = cut.messages.back().View();
    EXPECT_EQ(Shown(alarm), SHOWN_ALARM) << length;
    EXPECT_EQ(alarm.offset + alarm.length, length + ALARM.size()) << length;
    ASSERT_LE(cut.messages.size(), 2U) << length;
    EXPECT_EQ(cut.messages.front().View().complete, cut.messages.size() == 1) << length;
  }
}

TEST(Tl1Damage, AStrayIdentificationLineHidesNoOtherMessage) {
  EXPECT_EQ(Read("noise\r\nM  9 COMPLD\r\nnoise" + ALARM),
            (Texts{"response 9 COMPLD incomplete | noise", SHOWN_ALARM}));
  EXPECT_EQ(Read("A  7 REPT\r\n" + ALARM), (Texts{"autonomous 7 A REPT incomplete", SHOWN_ALARM}));
}

TEST(Tl1Damage, ReadingGoesOnAfterAMessageBeyondTheLimit) {
  const std::string response = RESPONSE;
  for (const size_t pieceSize : {0U, 1U, 50U}) {
    const Cut cut = CutStream(
        response + std::string(HEADER) + "M  1 COMPLD\r\n   " + std::string(20000, 'b') + "\r\n   \"c\r\n;" + response,
        pieceSize, 100);
    ASSERT_EQ(cut.messages.size(), 3U);
    EXPECT_EQ(Shown(cut.messages[0].View()), SHOWN_RESPONSE);
    const Message& tooLong = cut.messages[1].View();
    EXPECT_TRUE(tooLong.tooLong);
    EXPECT_FALSE(tooLong.complete);
    EXPECT_EQ(tooLong.ctag, "1");
    EXPECT_EQ(tooLong.bytes.size(), 100U);
    EXPECT_EQ(tooLong.offset, response.size());
    EXPECT_EQ(Shown(cut.messages[2].View()), SHOWN_RESPONSE);
  }
}

TEST(Tl1Damage, TheLimitIsTheMostBytesOfAMessage) {
  const std::string header = HEADER;
  for (const std::string& message :
       {std::string(RESPONSE), header + "M  1 COMPLD;", header + "M  1 COMPLD\r\n   b ;", std::string("IP 7\r\n<"),
        header + "M  1 COMPLD\r\n   \"b\r\nc\"\r\n;", header + "M  1 COMPLD\r\n   \"b\r\n;", std::string("\r\n>")}) {
    for (const size_t limit : {message.size(), message.size() - 1}) {
      for (const size_t pieceSize : {0U, 1U}) {
        const Cut cut = CutStream(message + "\r\n" + ALARM, pieceSize, limit);
        ASSERT_GE(cut.messages.size(), 1U);
        const Message& first = cut.messages[0].View();
        EXPECT_EQ(first.tooLong, limit < message.size()) << message;
        EXPECT_EQ(first.complete, limit == message.size()) << message;
        EXPECT_EQ(first.bytes, message.substr(0, limit));
      }
    }
  }
}

TEST(Tl1Damage, TheLimitExcludesLineEndsBeforeAHeader) {
  const std::string open = std::string(HEADER) + "M  1 COMPLD\r\n   bbbbbbbbbb";
  EXPECT_EQ(Shown(CutStream(open + RESPONSE, 0, open.size()).messages),
            (Texts{"response NORTH1 1 COMPLD incomplete | bbbbbbbbbb", SHOWN_RESPONSE}));
}

TEST(Tl1Damage, QuotesHideALoneTerminatorOnlyUpToTheLimit) {
  const std::string stray = std::string(HEADER) + "M  1 COMPLD\r\n   \"b\r\n;";
  const std::string noise = "\r\nIP 7\r\n<" + std::string(50000, 'c') + "\r\n";
  for (const std::string& stream : {stray + noise, stray + noise + "   \"c\"\r\n;"})
    for (const size_t pieceSize : {0U, 999U})
      EXPECT_EQ(Shown(CutStream(stream, pieceSize, 1000).messages),
                (Texts{"response NORTH1 1 COMPLD | \"b", "acknowledgement 7 IP"}));
}

TEST(Tl1Damage, AnUnfinishedTelnetSubnegotiationLosesFewBytes) {
  const std::string open = "\xFF\xFA\x18";
  EXPECT_EQ(Read(open + ALARM), Texts{SHOWN_ALARM});
  EXPECT_EQ(Read(open + std::string(505, 'x') + ALARM), Texts{SHOWN_ALARM}) << "the header crosses the bound";
  EXPECT_EQ(Read(open + std::string(600, 'x') + ALARM), Texts{SHOWN_ALARM});
  EXPECT_EQ(Read("\xFF\xFB" + ALARM), Texts{SHOWN_ALARM}) << "cut off before the option";
  EXPECT_EQ(CutStream(open + std::string(600, 'x')).skipped.bytes, 603U);
}

// A message from which bytes are missing, or bytes that may be between two messages.
class Damager {
 public:
  explicit Damager(MessageMaker& maker) : m_maker(maker) {}

  std::string Noise() {
    constexpr std::string_view NOISE[] = {"\r\n   \"open",
                                          "\r\n   /* open",
                                          "\r\n;",
                                          "\r\n>",
                                          "\r\n< ",
                                          "\r\nNE1>",
                                          "\r\nRTRV-HDR:::1;\r\n",
                                          "\xFF",
                                          "\xFF\xFA\x18",
                                          "\xFF\xFB\x01",
                                          "\xFF\xFB",
                                          "\r\nM  9 COMPLD\r\n",
                                          "\r\nA  7 REPT EVT\r\n",
                                          "\r\nIP 7\r\n<",
                                          "\r\n   NORTH1 26-03-04 05:06:07\r\n",
                                          "\r\nHello; <all> of > you\r\n",
                                          "\r",
                                          "\n",
                                          "\\",
                                          "\"",
                                          "*/",
                                          "\x95",
                                          "\x1B[1m",
                                          "\r\n\r\n",
                                          "   text\r\n",
                                          "\r\n   \"text\"\r\n"};
    std::string noise;
    for (size_t count = m_maker.Random(4); count > 0; --count)
      noise += m_maker.OneOf(NOISE);
    if (m_maker.Random(4) == 0) noise += Damaged(m_maker.Make().bytes);
    return noise;
  }

  // A chunk removed, a chunk of another message inserted, or both.
  std::string Damaged(std::string bytes) {
    const size_t begin = m_maker.Random(bytes.size());
    if (m_maker.Random(3) > 0) bytes.erase(begin, 1 + m_maker.Random(bytes.size()));
    const std::string other = m_maker.Make().bytes;
    if (m_maker.Random(3) > 0) bytes.insert(std::min(begin, bytes.size()), other.substr(m_maker.Random(other.size())));
    return bytes;
  }

 private:
  MessageMaker& m_maker;
};

TEST(Tl1Damage, EveryUndamagedMessageIsReadCorrectly) {
  size_t untouched = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    MessageMaker maker(seed);
    Damager damager(maker);
    std::string stream;
    std::vector<std::pair<size_t, MessageMaker::Made>> made;
    for (size_t count = 1 + maker.Random(12); count > 0; --count) {
      stream += damager.Noise();
      made.emplace_back(stream.size(), maker.MakeWithHeader());
      stream += made.back().second.bytes;
    }
    stream += damager.Noise();
    const Cut cut = CutStream(stream);
    uint64_t end = 0, bytes = 0;
    auto message = cut.messages.begin();
    for (const auto& [offset, expected] : made) {
      while (message != cut.messages.end() && message->View().offset < offset)
        ++message;
      ASSERT_NE(message, cut.messages.end()) << seed << ::testing::PrintToString(stream);
      ASSERT_EQ(message->View().bytes, expected.bytes) << seed << ::testing::PrintToString(stream);
      ASSERT_EQ(Shown(message->View()), expected.shown) << seed;
      ASSERT_EQ(message->View().offset, offset) << seed;
      ++untouched;
    }
    for (const MessageCopy& copy : cut.messages) {
      ASSERT_GE(copy.View().offset, end) << seed;
      end = copy.View().offset + copy.View().length;
      bytes += copy.View().length;
    }
    ASSERT_EQ(bytes + cut.skipped.bytes, stream.size()) << seed;
    for (const size_t pieceSize : {size_t{1}, 1 + maker.Random(40)})
      ASSERT_EQ(ShownWithPlaces(CutStream(stream, pieceSize).messages), ShownWithPlaces(cut.messages))
          << seed << ::testing::PrintToString(stream);
  }
  EXPECT_GT(untouched, 15000U);
}

// No single message exceeds the limit; the result at the limit must not depend on the cut either.
TEST(Tl1Damage, EveryCutReturnsTheSameMessagesWithinAnyLimit) {
  for (unsigned seed = 0; seed < 1000; ++seed) {
    MessageMaker maker(seed);
    Damager damager(maker);
    std::string stream;
    for (size_t count = maker.Random(6); count > 0; --count)
      stream += damager.Noise() + (maker.Random(4) == 0 ? std::string(3000 + maker.Random(3000), 'x') : "") +
                damager.Damaged(maker.Make().bytes);
    const size_t limit = 1 + maker.Random(400);
    const Cut cut = CutStream(stream, 0, limit);
    uint64_t bytes = cut.skipped.bytes;
    for (const MessageCopy& copy : cut.messages) {
      ASSERT_LE(copy.View().bytes.size(), limit) << seed;
      bytes += copy.View().length;
    }
    ASSERT_EQ(bytes, stream.size()) << seed;
    const Cut pieces = CutStream(stream, 1 + maker.Random(20), limit);
    ASSERT_EQ(ShownWithPlaces(pieces.messages), ShownWithPlaces(cut.messages))
        << seed << ::testing::PrintToString(stream);
    ASSERT_EQ(pieces.skipped.lines, cut.skipped.lines) << seed;
  }
}

TEST(Tl1Damage, AllWellFormedMessagesOfAStreamAreRead) {
  MessageMaker maker(20260304);
  std::string stream;
  Texts expected;
  for (size_t i = 0; i < 20000; ++i) {
    const MessageMaker::Made made = maker.Make();
    expected.push_back(made.shown);
    stream += made.bytes;
  }
  const Cut cut = CutStream(stream, 1000);
  EXPECT_EQ(Shown(cut.messages), expected);
  EXPECT_EQ(cut.skipped.bytes, 0U);
}

std::string Repeated(std::string_view unit, size_t size) {
  std::string text;
  while (text.size() < size)
    text += unit;
  return text;
}

// Time per byte must not depend on the length, the cut or the content of the text.
class Tl1Growth : public ::testing::TestWithParam<const char*> {
 protected:
  static void Check(const std::string& before, const std::string& after, size_t pieceSize) {
    const auto prepare = [&](size_t size) { return before + Repeated(GetParam(), size) + after; };
    const auto read = [&](const std::string& stream) { CutStream(stream, pieceSize); };
    EXPECT_LT(Growth(4000, prepare, read), LINEAR_GROWTH);
  }
};

TEST_P(Tl1Growth, IsLinearInAMessage) {
  Check(std::string(HEADER) + "M  1 COMPLD\r\n", "\r\n;", 0);
}

TEST_P(Tl1Growth, IsLinearInAQuotedText) {
  Check(std::string(HEADER) + "M  1 COMPLD\r\n   /*\r\n", ALARM, 0);
}

TEST_P(Tl1Growth, IsLinearByteByByte) {
  Check("", "", 1);
}

INSTANTIATE_TEST_SUITE_P(Hostile, Tl1Growth,
                         ::testing::Values("x", "\"", "\r\n", "\n", "\r", "\"\r\n;", "\"\r\n;\r\n", "/*\r\n;\r\n*",
                                           "M  1 COMPLD\n/*\n;\n", "M  1 COMPLD\r\"\r;\r", "\xFF\xF1", "\xFF",
                                           "\xFF\xFA", "\\\"", ";", "x;\r\n", "x;\n", "x;\r", "\r\n>", "IP 1\r\n", "a;",
                                           "   NORTH1 26-03-04 05:06:07\r\n", "   N 26-03-04 05:06:07\n\n",
                                           "\r\n;\r\n   NORTH1 26-03-04 05:06:07\r\n\"", "M  1 COMPLD",
                                           "\r\n\n   N 26-03-04 05:06:07\r\nM  1 COMPLD\r\n\"\r\n;\r\n"));

TEST(Tl1Damage, EndlessNoiseIsNotKept) {
  for (const std::string noise : {"noise ", "noise\r\n", "\xFF\xF1", "\xFF\xFA", "\r\n   \"open\r\n"}) {
    Framer framer(1000);
    const std::string piece = Repeated(noise, 1000);
    for (int i = 0; i < 1000; ++i)
      framer.Append(piece);
    Message message;
    EXPECT_FALSE(framer.Next(message)) << noise;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
