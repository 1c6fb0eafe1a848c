#include "find.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "byte_blocks.h"
#include "growth.h"
#include "no_case_finder.h"
#include "piece.h"
#include "string_references.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;
using VARNEL_COMMON::AppendPiece;
using VARNEL_COMMON::BLOCK;
using VARNEL_COMMON::CopyOf;
using VARNEL_COMMON::FindNear;
using VARNEL_COMMON::ForEachPlace;
using VARNEL_COMMON::NoCaseFinder;
using VARNEL_COMMON::SHORT_PIECE;
using VARNEL_INTERNAL::Finder;
using VARNEL_INTERNAL::FindInString;
using VARNEL_INTERNAL::FindLinear;

constexpr size_t NPOS = std::string_view::npos;

TEST(Find, FindsFromAPositionOn) {
  EXPECT_EQ(FindLinear("abcabc", "bc"), 1U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 1), 1U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 2), 4U);
  EXPECT_EQ(FindLinear("abcabc", "bc", 5), NPOS);
  EXPECT_EQ(FindLinear("abc", "bc", 3), NPOS);
}

TEST(Find, EmptyPieceIsFoundAtOnce) {
  EXPECT_EQ(FindLinear("", ""), 0U);
  EXPECT_EQ(FindLinear("abc", "", 3), 3U);
}

TEST(Find, PieceLongerThanTheTextIsNot) {
  EXPECT_EQ(FindLinear("", "a"), NPOS);
  EXPECT_EQ(FindLinear("ab", "abc"), NPOS);
}

TEST(Find, TakesNulAndHighBytesAsTheyAre) {
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

// Long enough for the budget of the search by the rarest byte to run out on the way.
TEST(Find, AgreesWithThePlainSearchWhereTheRarestByteIsEverywhere) {
  RandomTexts random(41);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = random.Next(i % 2 == 0 ? "zqa" : "zzzzzzzq", 3000);
    const std::string piece = random.Next(i % 2 == 0 ? "zqa" : "zzzzzzzq", 12);
    const size_t from = text.empty() ? 0 : random.Below(text.size());
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
    for (size_t size = 0; size <= 2 * VARNEL_INTERNAL::STRSTR_LIMIT; ++size) {
      const std::string piece = text.substr(start, size);
      const char* expected = size == 0 ? text.c_str() : text.c_str() + start;
      ASSERT_EQ(FindInString(text.c_str(), piece.c_str()), expected) << start << ' ' << size;
      ASSERT_EQ(FindInString(text.c_str(), (piece + "\x01").c_str()), nullptr) << start << ' ' << size;
    }
  }
}

TEST(FindInString, AgreesWithThePlainSearchWhereTheRarestByteIsEverywhere) {
  RandomTexts random(43);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = random.Next(i % 2 == 0 ? "zqa" : "zzzzzzzq", 3000);
    const std::string piece = random.Next(i % 2 == 0 ? "zqa" : "zzzzzzzq", 48);
    ASSERT_EQ(FindInString(text.c_str(), piece.c_str()), std::strstr(text.c_str(), piece.c_str())) << text << piece;
  }
}

TEST(FindInString, TextShorterThanThePlaceOfTheRarestByteHoldsNothing) {
  EXPECT_EQ(FindInString("z", "aaaaaaz"), nullptr);
  EXPECT_EQ(FindInString("", "z"), nullptr);
}

TEST(FindInString, IsLinearWhereThePieceNearlyOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'z'); };
  const auto search = [](const std::string& all) {
    ASSERT_EQ(FindInString(all.c_str(), (std::string(all.size() / 2, 'z') + "a").c_str()), nullptr);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

TEST(FindInString, IsLinearWherePairsRepeat) {
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

TEST(Find, RarestByteIsLookedForAtBothEnds) {
  using VARNEL_INTERNAL::RarestByte;
  EXPECT_EQ(RarestByte("a"), 0U);
  EXPECT_EQ(RarestByte("eaZe"), 2U);
  EXPECT_EQ(RarestByte("aaaaaaaZ"), 7U);
  EXPECT_EQ(RarestByte("aaaaZ"), 4U);
  EXPECT_EQ(RarestByte(std::string(100, 'a') + "Z"), 100U);
  EXPECT_EQ(RarestByte("aaaZ" + std::string(100, 'a')), 3U);
  EXPECT_EQ(RarestByte(std::string(20, 'a') + "Z" + std::string(20, 'a')), 0U) << "not in the middle";
}

TEST(Find, FinderServesSeveralTexts) {
  const Finder finder("_END");
  EXPECT_EQ(finder.Find("a_END"), 1U);
  EXPECT_EQ(finder.Find("nothing"), NPOS);
  EXPECT_EQ(finder.Find("_EN_END"), 3U);
}

TEST(Find, IsLinearWhereThePieceNearlyOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'z'); };
  const auto search = [](const std::string& all) {
    const std::string half(all.size() / 2, 'z');
    ASSERT_EQ(FindLinear(all, half + "a" + half), NPOS);
    ASSERT_EQ(FindLinear(all, half.substr(1) + "a"), NPOS);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

size_t PlainNoCase(const std::string& text, const std::string& literal, size_t from) {
  std::string upperText = text, upperLiteral = literal;
  Reference::UpperCase(upperText);
  Reference::UpperCase(upperLiteral);
  const size_t found = upperText.find(upperLiteral, from);
  return found == NPOS ? NPOS : found + literal.size();
}

TEST(FindNoCase, AgreesWithThePlainSearchOnAllShortTexts) {
  const auto literals = AllTexts("zQ5", 3);
  const auto texts = AllTexts("zZq5", 5);
  for (const std::string& literal : literals) {
    if (literal.empty()) continue;
    NoCaseFinder finder;
    for (const std::string& text : texts) {
      finder.Assign(literal);
      for (size_t from = 0; from <= text.size(); ++from)
        ASSERT_EQ(finder.FindEnd(text, from), PlainNoCase(text, literal, from)) << text << "|" << literal;
    }
  }
}

TEST(FindNoCase, AgreesWithThePlainSearchOnLongTextsFromHitToHit) {
  RandomTexts random(42);
  for (int i = 0; i < 200; ++i) {
    const std::string alphabet = i % 2 == 0 ? "zQa5\xE4" : "zzzzZZZZZq";
    const std::string text = random.Next(alphabet, 2000);
    const std::string literal = random.Next(alphabet, 6) + "z";
    NoCaseFinder finder;
    finder.Assign(literal);
    size_t from = 0;
    while (from != NPOS) {
      const size_t expected = PlainNoCase(text, literal, from);
      const size_t found = finder.FindEnd(text, from);
      ASSERT_EQ(found, expected) << literal << " from " << from << " in " << text;
      from = found;
    }
  }
}

TEST(FindNoCase, FindsBehindALongStretchWithoutEitherCase) {
  for (const char* tail : {"Zq", "zQ"}) {
    const std::string text = std::string(5000, 'a') + tail;
    NoCaseFinder finder;
    finder.Assign("zq");
    EXPECT_EQ(finder.FindEnd(text, 0), text.size());
  }
}

TEST(FindNoCase, IsLinearWhereTheLiteralNearlyOccursEverywhere) {
  const auto text = [](size_t size) { return std::string(size, 'Z'); };
  const auto search = [](const std::string& all) {
    const std::string literal = std::string(all.size() / 2, 'z') + "a";
    NoCaseFinder finder;
    finder.Assign(literal);
    ASSERT_EQ(finder.FindEnd(all, 0), NPOS);
  };
  EXPECT_LT(Growth(20000, text, search), LINEAR_GROWTH);
}

TEST(FindNear, FindsAsAPlainSearchDoesWhateverTheDistance) {
  for (size_t size = 0; size <= 3 * BLOCK; ++size) {
    for (size_t place = 0; place <= size; ++place) {
      std::string text(size, '.');
      if (place < size) text[place] = 'x';
      for (size_t from = 0; from <= size + 2; ++from) {
        ASSERT_EQ(FindNear(text, 'x', from), text.find('x', from)) << "size " << size << ", from " << from;
      }
    }
  }
}

TEST(FindNear, FarBehindTheEndIsNothing) {
  EXPECT_EQ(FindNear("x", 'x', NPOS), NPOS);
  EXPECT_EQ(FindNear(std::string(2 * BLOCK, 'x'), 'x', NPOS - 1), NPOS);
}

TEST(ForEachPlace, TellsEveryPlaceInOrder) {
  for (size_t size = 0; size <= 3 * BLOCK; ++size) {
    for (size_t step = 1; step <= BLOCK + 1; ++step) {
      std::string text(size, '.');
      std::vector<size_t> expected;
      for (size_t at = step - 1; at < size; at += step) {
        text[at] = ':';
        expected.push_back(at);
      }
      std::vector<size_t> places;
      ForEachPlace(text, ':', [&](size_t place) { places.push_back(place); });
      ASSERT_EQ(places, expected) << "size " << size << ", step " << step;
    }
  }
}

TEST(Piece, IsCopiedWhereverItStands) {
  const std::string text = "abcdefghijklmnopqrstuvwxyz0123456789";
  for (size_t start = 0; start <= text.size(); ++start) {
    for (size_t size = 0; size <= text.size() - start; ++size) {
      std::vector<std::string> pieces;
      AppendPiece(pieces, text, start, size);
      ASSERT_EQ(pieces, std::vector{text.substr(start, size)});
      if (text.size() - start >= SHORT_PIECE) {
        ASSERT_EQ(CopyOf({text.data() + start, size}), text.substr(start, size));
      }
    }
  }
}

}  // namespace
}  // namespace VARNEL_TEST
