#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "growth.h"
#include "string_references.h"
#include "util/find.h"
#include "util/wildcard.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;
using namespace VARNEL_UTIL;

constexpr size_t NPOS = std::string_view::npos;

TEST(Find, FindsFromAPositionOn) {
  EXPECT_EQ(FindLinear("abcabc", "bc"), 1U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 1), 1U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 2), 4U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 5), NPOS);
  EXPECT_EQ(FindLinear("abc", "bc", 3), NPOS);
}

TEST(Find, EmptyPieceIsFoundAtTheStart) {
  EXPECT_EQ(FindLinear("", ""), 0U);
  EXPECT_EQ(FindLinear("abc", "", 3), 3U);
}

TEST(Find, PieceLongerThanTheTextIsNotFound) {
  EXPECT_EQ(FindLinear("", "a"), NPOS);
  EXPECT_EQ(FindLinear("ab", "abc"), NPOS);
}

TEST(Find, TreatsNulAndHighBytesAsOrdinary) {
  EXPECT_EQ(FindLinear("a\0b\0b"s, "\0b"s, 2), 3U);
  EXPECT_EQ(FindLinear("\x80\xFF\x7F\xFE", "\xFF\x7F"), 1U);
}

TEST(Find, AgreesWithThePlainSearchOnAllShortTexts) {
  const auto pieces = AllTexts("zq ", 3);
  for (const std::string& text : AllTexts("zq ", 6)) {
    for (const std::string& piece : pieces) {
      for (size_t from = 0; from <= text.size(); ++from)
        ASSERT_EQ(FindLinear(text, piece, from), text.find(piece, from)) << text << "|" << piece << "|" << from;
    }
  }
}

TEST(Find, AgreesWithThePlainSearchForLongPieces) {
  RandomTexts random(41);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = random.Next(i % 2 == 0 ? "zqa" : "zzzzzzzq", 3000);
    const size_t from = text.empty() ? 0 : random.Below(text.size());
    const std::string piece = i % 3 == 0 ? random.Next("zzq", 80) : text.substr(from / 2, random.Below(80));
    ASSERT_EQ(FindLinear(text, piece, from), text.find(piece, from)) << piece << " from " << from << " in " << text;
  }
}

TEST(FindInString, AgreesWithThePlainSearchOnAllShortTexts) {
  const auto pieces = AllTexts("zq ", 3);
  for (const std::string& text : AllTexts("zq ", 6)) {
    for (const std::string& piece : pieces)
      ASSERT_EQ(FindInString(text.c_str(), piece.c_str()), std::strstr(text.c_str(), piece.c_str())) << text << piece;
  }
}

TEST(FindInString, FindsPiecesOfAnyLength) {
  std::string text(200, '.');
  std::iota(text.begin(), text.end(), '\x1F');
  for (size_t start = 1; start < text.size() / 2; start += 7) {
    for (size_t size = 0; size <= 2 * PLAIN_SEARCH_LIMIT; ++size) {
      const std::string piece = text.substr(start, size);
      const char* expected = size == 0 ? text.c_str() : text.c_str() + start;
      ASSERT_EQ(FindInString(text.c_str(), piece.c_str()), expected) << start << ' ' << size;
      ASSERT_EQ(FindInString(text.c_str(), (piece + "\x01").c_str()), nullptr) << start << ' ' << size;
    }
  }
}

TEST(FindInString, IsLinearIfThePieceAlmostOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'z'); };
  const auto search = [](const std::string& all) {
    ASSERT_EQ(FindInString(all.c_str(), (std::string(all.size() / 2, 'z') + "a").c_str()), nullptr);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

TEST(FindInString, IsLinearIfPairsRepeat) {
  const auto text = [](size_t size) {
    std::string all;
    while (all.size() < size)
      all += "zq";
    return all;
  };
  const auto search = [](const std::string& all) {
    ASSERT_EQ(FindInString(all.c_str(), (all.substr(0, all.size() / 2) + "a").c_str()), nullptr);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

TEST(Find, IsLinearIfThePieceAlmostOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'z'); };
  const auto search = [](const std::string& all) {
    const std::string half(all.size() / 2, 'z');
    ASSERT_EQ(FindLinear(all, half + "a" + half), NPOS);
    ASSERT_EQ(FindLinear(all, half.substr(1) + "a"), NPOS);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

size_t PlainNoCase(std::string text, std::string literal, size_t from) {
  Reference::UpperCase(text);
  Reference::UpperCase(literal);
  return text.find(literal, from);
}

TEST(FindNoCase, AgreesWithThePlainSearchOnAllShortTexts) {
  const auto texts = AllTexts("zZq5", 5);
  for (const std::string& literal : AllTexts("zQ5", 3)) {
    for (const std::string& text : texts) {
      for (size_t from = 0; !literal.empty() && from <= text.size(); ++from)
        ASSERT_EQ(FindNoCase(text, literal, from), PlainNoCase(text, literal, from)) << text << "|" << literal;
    }
  }
}

TEST(FindNoCase, AgreesWithThePlainSearchForLiteralsOfAnyLength) {
  RandomTexts random(42);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = random.Next(i % 2 == 0 ? "zQa5\xE4" : "zzzzZZZZZq", 500);
    const size_t from = text.empty() ? 0 : random.Below(text.size());
    std::string literal = i % 3 == 0 ? random.Next("zzZq", 50) : text.substr(from / 2, random.Below(80));
    literal += 'z';
    ASSERT_EQ(FindNoCase(text, literal, from), PlainNoCase(text, literal, from)) << literal << " in " << text;
  }
}

TEST(FindNoCase, IsLinearIfTheLiteralAlmostOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'Z'); };
  const auto search = [](const std::string& all) {
    ASSERT_EQ(FindNoCase(all, std::string(all.size() / 2, 'z') + "a", 0), NPOS);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
