#include <gtest/gtest.h>

#include <iterator>

#include "streams.h"
#include "tl1_strict.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::Parts;
using VARNEL_TL1::Reader;

constexpr size_t PIECE = 1000;

TEST(Tl1Generated, TolerantAndStrictReadingAgree) {
  constexpr size_t COUNT = 100000;
  StrictMessages generator(20260304);
  Framer framer;
  Reader reader;
  uint64_t offset = 0;
  for (size_t i = 0; i < COUNT; ++i) {
    StrictMessages::Made made = generator.Make();
    made.parts.offset = offset;
    offset += made.bytes.size();
    ASSERT_TRUE(framer.Feed(made.bytes));
    Message message;
    ASSERT_TRUE(framer.Next(message)) << made.bytes;
    ASSERT_EQ(message.bytes, made.bytes);
    const Parts tolerant = reader.Read(message);
    const Parts strict = ReadStrictly(message);
    ASSERT_TRUE(Same(tolerant, made.parts)) << Shown(tolerant) << '\n' << Shown(made.parts);
    ASSERT_TRUE(Same(strict, made.parts)) << Shown(strict) << '\n' << Shown(made.parts);
    ASSERT_FALSE(framer.Next(message));
  }
  framer.Finish();
  EXPECT_EQ(framer.GetSkipped().bytes, 0U);
}

TEST(Tl1Generated, NoiseBetweenMessagesIsSkipped) {
  constexpr std::string_view NOISE[] = {"",
                                        "\r\n",
                                        "\n",
                                        "\r\n< ",
                                        "\r\n> ",
                                        "\r\n;\r\n",
                                        "\r\nNORTH1> ",
                                        "RTRV-HDR:::1;\r\n",
                                        "\r\n\r\n",
                                        "TL1>>\r\n",
                                        "\xFF\xFB\x01",
                                        "\xFF\xF1",
                                        "\xFF\xFA\x18;\r\n<\xFF\xF0",
                                        "\r\nBe careful; <this> is watched\r\n",
                                        "\r\n< ENT-USER-SECU::\"a;b\":9::\"p>w\";\r\n"};
  StrictMessages generator(7);
  std::string stream;
  std::vector<Parts> expected;
  for (size_t i = 0; i < 20000; ++i) {
    stream += "\r\n";
    for (size_t count = generator.Random(4); count > 0; --count)
      stream += NOISE[generator.Random(std::size(NOISE))];
    stream += "\r\n";
    StrictMessages::Made made = generator.Make();
    made.parts.offset = stream.size();
    stream += made.bytes;
    expected.push_back(made.parts);
  }
  Reader reader;
  std::vector<Parts> read;
  for (const Message& message : Cut(stream, PIECE))
    read.push_back(reader.Read(message));
  ASSERT_EQ(read.size(), expected.size());
  for (size_t i = 0; i < read.size(); ++i)
    ASSERT_TRUE(Same(read[i], expected[i])) << Shown(read[i]) << '\n' << Shown(expected[i]);
}

TEST(Tl1Generated, AnyBytesGiveTheSameMessagesInAnyCut) {
  constexpr std::string_view PIECES[] = {"\r",
                                         "\n",
                                         "\r\n",
                                         "   ",
                                         ";",
                                         ">",
                                         "<",
                                         "\"",
                                         "\\",
                                         "/*",
                                         "*/",
                                         "\xFF",
                                         "\xFA",
                                         "\xF0",
                                         "IP 1",
                                         "M  1 COMPLD",
                                         "A 1 REPT EVT",
                                         "   NORTH1 26-03-04 05:06:07",
                                         "x",
                                         std::string_view("\0", 1),
                                         "\r\n;\r\n",
                                         "\r\n\n   NORTH1 26-03-04 05:06:07\r\n",
                                         "RTRV-X:::1;",
                                         "\x95"};
  StrictMessages generator(11);
  for (size_t round = 0; round < 3000; ++round) {
    std::string stream;
    for (size_t count = generator.Random(60); count > 0; --count)
      stream += PIECES[generator.Random(std::size(PIECES))];
    const auto whole = Shown(CutWhole(stream));
    ASSERT_EQ(Shown(Cut(stream, 1)), whole) << round;
    ASSERT_EQ(Shown(CutAt(stream, generator.Random(stream.size() + 1))), whole) << round;
  }
}

TEST(Tl1Generated, EveryByteIsInAMessageOrSkipped) {
  StrictMessages generator(13);
  for (size_t round = 0; round < 3000; ++round) {
    std::string stream;
    for (size_t count = generator.Random(4); count > 0; --count)
      stream += generator.Make().bytes;
    for (size_t count = generator.Random(5); count > 0 && !stream.empty(); --count)
      stream[generator.Random(stream.size())] = "\r\n;>< \"\\\xFF\xFA*/"[generator.Random(13)];
    VARNEL_TL1::Skipped skipped;
    uint64_t sum = 0, end = 0;
    for (const Message& message : CutWhole(stream, &skipped)) {
      ASSERT_GE(message.offset, end);
      end = message.offset + message.length;
      sum += message.length;
    }
    ASSERT_EQ(sum + skipped.bytes, stream.size()) << round;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
