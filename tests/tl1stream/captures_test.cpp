#include <gtest/gtest.h>

#include <set>

#include "streams.h"
#include "tl1_strict.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Message;
using VARNEL_TL1::Parts;

TEST(Tl1Captures, AreReadAsExpected) {
  ASSERT_GE(Captures().size(), 16U);
  for (const Capture& capture : Captures())
    EXPECT_EQ(ReadAll(capture.bytes), capture.expected) << capture.name;
}

TEST(Tl1Captures, ShowEveryMessageType) {
  std::set<std::string> types;
  for (const Capture& capture : Captures()) {
    for (const std::string& line : capture.expected)
      types.insert(line.substr(9, line.find('"', 9) - 9));
  }
  EXPECT_EQ(types, (std::set<std::string>{"acknowledgement", "autonomous", "prompt", "response", "unrecognised"}));
}

TEST(Tl1Captures, AreTheSameCutAtEveryPosition) {
  for (const Capture& capture : Captures()) {
    const auto whole = Shown(CutWhole(capture.bytes));
    for (size_t position = 0; position <= capture.bytes.size(); ++position)
      ASSERT_EQ(Shown(CutAt(capture.bytes, position)), whole) << capture.name << " at " << position;
  }
}

TEST(Tl1Captures, AreTheSameInSmallPieces) {
  for (const Capture& capture : Captures()) {
    const auto whole = Shown(CutWhole(capture.bytes));
    for (const size_t size : {1U, 2U, 3U, 7U})
      EXPECT_EQ(Shown(Cut(capture.bytes, size)), whole) << capture.name << " by " << size;
  }
}

TEST(Tl1Captures, LoseNoMessageWhenTheyEndEarly) {
  for (const Capture& capture : Captures()) {
    const Messages whole = CutWhole(capture.bytes);
    for (size_t length = 0; length < capture.bytes.size(); ++length) {
      const auto early = Shown(CutWhole(std::string_view(capture.bytes).substr(0, length)));
      for (size_t i = 0; i < whole.size() && whole[i].offset + whole[i].length <= length; ++i) {
        ASSERT_GT(early.size(), i) << capture.name << " up to " << length;
        ASSERT_EQ(early[i], Shown(whole[i])) << capture.name << " up to " << length;
      }
    }
  }
}

TEST(Tl1Captures, HoldTheBytesOfTheirMessages) {
  for (const Capture& capture : Captures()) {
    uint64_t end = 0;
    for (const Message& message : CutWhole(capture.bytes)) {
      EXPECT_GE(message.offset, end) << capture.name;
      end = message.offset + message.length;
      const std::string stood = capture.bytes.substr(message.offset, message.length);
      const bool telnet = stood.find('\xFF') != std::string::npos;
      EXPECT_EQ(message.bytes == stood, !telnet) << capture.name << ": " << stood;
    }
    EXPECT_LE(end, capture.bytes.size()) << capture.name;
  }
}

TEST(Tl1Captures, AreReadTheSameByTheStrictParserWhereItTakesThem) {
  size_t accepted = 0;
  // Taken there, but read in another way: SIDs with blanks, missing tags, ";" on the identification line or in the
  // text of a part that ends in ">".
  const std::set<std::string> narrow{"03-sids", "05-tags", "08-end-behind-the-code", "09-continuations"};
  for (const Capture& capture : Captures()) {
    if (narrow.count(capture.name) > 0) continue;
    VARNEL_TL1::Reader reader;
    for (const Message& message : CutWhole(capture.bytes)) {
      const Parts strict = ReadStrictly(message);
      const Parts tolerant = reader.Read(message);
      if (strict.type == VARNEL_TL1::MessageType::Unrecognised) continue;
      ++accepted;
      EXPECT_EQ(Shown(tolerant), Shown(strict)) << capture.name;
    }
  }
  EXPECT_GT(accepted, 50U);
}

}  // namespace
}  // namespace VARNEL_TEST
