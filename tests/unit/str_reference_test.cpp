#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "str.h"
#include "stream_reader.h"
#include "string_references.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::StreamReader;

// Blanks, line ends, neighbours of the white-space and letter ranges, and bytes that are blank or a letter elsewhere.
const std::string MIXED = std::string("aAzZ@[`{ \t\n\v\f\r\x08\x0E\x1F!,\"=\x85\xA0\xC1\xE1\xFF") + '\0';

std::string Shown(const std::string& text) {
  return ::testing::PrintToString(text);
}

void CompareTrimming(const std::string& text) {
  std::string expected = text, actual = text;
  Reference::TrimLeft(expected);
  VARNEL_COMMON::StrTrimLeft(actual);
  ASSERT_EQ(actual, expected) << "left of " << Shown(text);
  expected = actual = text;
  Reference::TrimRight(expected);
  VARNEL_COMMON::StrTrimRight(actual);
  ASSERT_EQ(actual, expected) << "right of " << Shown(text);
  expected = actual = text;
  Reference::Trim(expected);
  VARNEL_COMMON::StrTrim(actual);
  ASSERT_EQ(actual, expected) << "both of " << Shown(text);
}

TEST(StrReference, TrimmingAllShortTexts) {
  for (const std::string& text : AllTexts("a \t\xA0", 6))
    ASSERT_NO_FATAL_FAILURE(CompareTrimming(text));
}

TEST(StrReference, TrimmingRandomTexts) {
  RandomTexts random(1);
  for (int i = 0; i < 2000; ++i)
    ASSERT_NO_FATAL_FAILURE(CompareTrimming(random.Next(MIXED, 40)));
}

void CompareCollapsing(const std::string& text) {
  std::string expected = text, actual = text;
  Reference::Collapse(expected);
  VARNEL_COMMON::StrCollapse(actual);
  ASSERT_EQ(actual, expected) << Shown(text);
}

TEST(StrReference, CollapsingAllShortTexts) {
  for (const std::string& text : AllTexts("a \t", 7))
    ASSERT_NO_FATAL_FAILURE(CompareCollapsing(text));
}

TEST(StrReference, CollapsingRandomTexts) {
  RandomTexts random(2);
  for (int i = 0; i < 2000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareCollapsing(random.Next(MIXED, 100)));
    ASSERT_NO_FATAL_FAILURE(CompareCollapsing(random.Next("a \t\r\n\v\f", 200)));
  }
}

TEST(StrReference, UpperCaseOfRandomTexts) {
  RandomTexts random(3);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = random.Next(MIXED, 100);
    std::string expected = text, actual = text;
    Reference::UpperCase(expected);
    VARNEL_COMMON::toUpperCase(actual);
    ASSERT_EQ(actual, expected) << Shown(text);
  }
}

void CompareCleaning(const std::string& text) {
  ASSERT_EQ(VARNEL_COMMON::replaceEnterWithBlank(text.c_str()), Reference::CleanLineEnds(text.c_str())) << Shown(text);
}

TEST(StrReference, CleaningLineEndsOfAllShortTexts) {
  for (const std::string& text : AllTexts("a \r\n", 7))
    ASSERT_NO_FATAL_FAILURE(CompareCleaning(text));
}

TEST(StrReference, CleaningLineEndsOfRandomTexts) {
  RandomTexts random(4);
  for (int i = 0; i < 2000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareCleaning(random.Next(MIXED, 100)));
    ASSERT_NO_FATAL_FAILURE(CompareCleaning(random.Next("a \t\r\n\x85", 200)));
  }
}

void CompareSplitting(const std::string& text, char separator) {
  std::vector<std::string> expected{"first"}, appended{"first"}, fresh;
  Reference::Split(text.c_str(), separator, expected);
  VARNEL_COMMON::SplitStringByChar(text.c_str(), separator, appended);
  ASSERT_EQ(appended, expected) << Shown(text) << " at " << separator;
  VARNEL_COMMON::SplitStringByChar(text.c_str(), separator, fresh);
  expected.erase(expected.begin());
  ASSERT_EQ(fresh, expected) << Shown(text) << " at " << separator;
}

TEST(StrReference, SplittingAllShortTexts) {
  for (const std::string& text : AllTexts("a, \t", 6)) {
    ASSERT_NO_FATAL_FAILURE(CompareSplitting(text, ','));
    ASSERT_NO_FATAL_FAILURE(CompareSplitting(text, ' '));
  }
}

TEST(StrReference, SplittingRandomTexts) {
  RandomTexts random(5);
  for (int i = 0; i < 1000; ++i) {
    const std::string text = random.Next(MIXED, 100);
    for (const char separator : MIXED)
      ASSERT_NO_FATAL_FAILURE(CompareSplitting(text, separator));
  }
}

void CompareAttribute(const std::string& text, const std::string& name) {
  std::string expected = "old", actual = "old";
  const bool found = Reference::AttributeValue(text.c_str(), name, expected);
  ASSERT_EQ(VARNEL_COMMON::GetTL1AttrbuteString(text.c_str(), name, actual), found) << Shown(name) << Shown(text);
  ASSERT_EQ(actual, expected) << Shown(name) << " in " << Shown(text);
}

TEST(StrReference, AttributesOfAllShortTexts) {
  const std::vector<std::string> texts = AllTexts("a=,\"", 5);
  for (const std::string& name : AllTexts("a=,\"", 3)) {
    for (const std::string& text : texts)
      ASSERT_NO_FATAL_FAILURE(CompareAttribute(text, name));
  }
}

TEST(StrReference, AttributesOfRandomTexts) {
  RandomTexts random(6);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = random.Next("ab=", 60) + random.Next(MIXED, 20);
    ASSERT_NO_FATAL_FAILURE(CompareAttribute(text, random.Next("ab=", 6)));
    ASSERT_NO_FATAL_FAILURE(CompareAttribute(text, random.Next(MIXED, 2)));
  }
}

void CompareMatching(const std::string& text, const std::string& pattern) {
  ASSERT_EQ(VARNEL_COMMON::strmcmpnocase(text.c_str(), pattern.c_str()),
            Reference::MatchNoCase(text.c_str(), pattern.c_str()))
      << Shown(text) << " against " << Shown(pattern);
}

void CompareMatchingOfAll(const std::vector<std::string>& texts, const std::vector<std::string>& patterns) {
  for (const std::string& pattern : patterns) {
    for (const std::string& text : texts)
      ASSERT_NO_FATAL_FAILURE(CompareMatching(text, pattern));
  }
}

TEST(StrReference, MatchingAllShortTexts) {
  CompareMatchingOfAll(AllTexts("ab", 7), AllTexts("ab*?", 5));
}

TEST(StrReference, MatchingAllShortTextsOfBothCases) {
  CompareMatchingOfAll(AllTexts("aAbB", 4), AllTexts("aB*?", 4));
}

TEST(StrReference, MatchingAllShortTextsOfWildcardCharacters) {
  CompareMatchingOfAll(AllTexts("a*?", 5), AllTexts("a*?", 5));
}

TEST(StrReference, MatchingRandomTexts) {
  RandomTexts random(7);
  for (int i = 0; i < 20000; ++i) {
    ASSERT_NO_FATAL_FAILURE(CompareMatching(random.Next("aAbB", 60), random.Next("ab*?", 12)));
    ASSERT_NO_FATAL_FAILURE(CompareMatching(random.Next("abc\xC1\xE1\xFF", 60), random.Next("ab\xC1\xE1**?", 8)));
    ASSERT_NO_FATAL_FAILURE(
        CompareMatching(random.Next(MIXED, 20), random.Next(MIXED, 4) + "*" + random.Next("a*?", 4)));
  }
}

// Patterns made of pieces of the text reach further than wholly random ones.
TEST(StrReference, MatchingRandomTextsWithPatternsCutFromThem) {
  RandomTexts random(8);
  int matches = 0;
  for (int i = 0; i < 10000; ++i) {
    const std::string text = random.Next("ab", 200) + "b";
    std::string pattern = "*";
    for (size_t at = 0; at < text.size(); at += random.Below(100)) {
      pattern += text.substr(at, random.Below(80)) + (random.Below(2) == 0 ? "*" : "?");
    }
    ASSERT_NO_FATAL_FAILURE(CompareMatching(text, pattern));
    matches += VARNEL_COMMON::strmcmpnocase(text.c_str(), pattern.c_str());
  }
  EXPECT_GT(matches, 100);
  EXPECT_LT(matches, 9900);
}

TEST(StrReference, MatchingByTheHostOfAllShortTexts) {
  const std::vector<std::string> texts = AllTexts("aAb", 5);
  for (const std::string& pattern : AllTexts("aAb*", 4)) {
    for (const std::string& text : texts) {
      ASSERT_EQ(VARNEL_COMMON::strmcmp(text.c_str(), pattern.c_str()) != 0, Reference::MatchesStars(text, pattern))
          << Shown(text) << " against " << Shown(pattern);
    }
  }
}

// A pair whose `to` holds `from` never ends and leaves the text as it is; others that do not end are left out.
bool CompareReplacing(const std::string& text, const std::string& from, const std::string& to) {
  const bool endless = to.find(from) != std::string::npos;
  const auto expected = endless ? text : Reference::Replace(text, from, to, 500);
  if (!expected) return false;
  std::string actual = text;
  VARNEL_COMMON::ReplaceString(actual, from, to);
  EXPECT_EQ(actual, *expected) << Shown(text) << ", " << Shown(from) << " by " << Shown(to);
  return true;
}

void CompareReplacingOfAll(const std::string& alphabet, size_t longestText, size_t longestTo) {
  const std::vector<std::string> texts = AllTexts(alphabet, longestText);
  const std::vector<std::string> replacements = AllTexts(alphabet, longestTo);
  for (const std::string& from : AllTexts(alphabet, 3)) {
    if (from.empty()) continue;
    for (const std::string& to : replacements) {
      for (const std::string& text : texts) {
        ASSERT_TRUE(CompareReplacing(text, from, to)) << "no pair as short as these goes on for ever";
        ASSERT_FALSE(::testing::Test::HasFailure());
      }
    }
  }
}

TEST(StrReference, ReplacingInAllShortTextsOfTwoLetters) {
  CompareReplacingOfAll("ab", 8, 3);
}

TEST(StrReference, ReplacingInAllShortTextsOfThreeLetters) {
  CompareReplacingOfAll("abc", 4, 2);
}

TEST(StrReference, ReplacingInRandomTexts) {
  RandomTexts random(9);
  int compared = 0;
  for (int i = 0; i < 20000; ++i) {
    compared += CompareReplacing(random.Next("ab", 60), random.Next("ab", 5) + "a", random.Next("abx", 6)) ? 1 : 0;
    compared +=
        CompareReplacing(random.Next("ab \xA0", 60), random.Next("ab \xA0", 1) + " ", random.Next("ab", 2)) ? 1 : 0;
    compared += CompareReplacing(random.Next(MIXED, 100), random.Next(MIXED, 1) + "a", random.Next(MIXED, 3)) ? 1 : 0;
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(compared, 59000);
}

// `from` is cut from the text itself and long, so that its table does not fit into the fixed one.
TEST(StrReference, ReplacingLongTexts) {
  RandomTexts random(10);
  for (int i = 0; i < 1000; ++i) {
    const std::string from = random.Next("ab", 150) + "ab";
    const std::string half = from.substr(0, random.Below(from.size()));
    std::string text;
    for (size_t pieces = random.Below(10); pieces > 0; --pieces)
      text += random.Below(2) == 0 ? from : half;
    CompareReplacing(text, from, from.substr(from.size() - random.Below(from.size())));
    CompareReplacing(text + from, from, half);
    ASSERT_FALSE(HasFailure());
  }
}

template <typename T>
std::string AsNumber(T value) {
  return std::to_string(static_cast<unsigned int>(static_cast<std::make_unsigned_t<T>>(value)));
}

template <typename T>
void CompareConverting(const std::string& text) {
  constexpr T BEFORE = 77;
  T expected = BEFORE, actual = BEFORE;
  std::stringstream(text.c_str()) >> expected;
  VARNEL_COMMON::ConvertFromString(text.c_str(), actual);
  ASSERT_EQ(AsNumber(actual), AsNumber(expected)) << Shown(text);
}

template <typename First, typename Second>
void CompareTwoReads(const std::string& text) {
  First expectedFirst = 77, first = 77;
  Second expectedSecond = 88, second = 88;
  std::istringstream stream(text);
  StreamReader reader(text);
  stream >> expectedFirst;
  reader.Read(first);
  ASSERT_EQ(AsNumber(first), AsNumber(expectedFirst)) << Shown(text);
  ASSERT_EQ(reader.Failed(), stream.fail()) << Shown(text);
  ASSERT_EQ(reader.AtEnd(), stream.eof()) << Shown(text);
  stream >> expectedSecond;
  reader.Read(second);
  ASSERT_EQ(AsNumber(second), AsNumber(expectedSecond)) << Shown(text);
  ASSERT_EQ(reader.Failed(), stream.fail()) << Shown(text);
  ASSERT_EQ(reader.AtEnd(), stream.eof()) << Shown(text);
}

void CompareReading(const std::string& text) {
  ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned int>(text));
  ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned short>(text));
  ASSERT_NO_FATAL_FAILURE(CompareConverting<char>(text));
}

void CompareAllTwoReads(const std::string& text) {
  ASSERT_NO_FATAL_FAILURE((CompareTwoReads<unsigned int, unsigned int>(text)));
  ASSERT_NO_FATAL_FAILURE((CompareTwoReads<unsigned short, unsigned short>(text)));
  ASSERT_NO_FATAL_FAILURE((CompareTwoReads<unsigned short, char>(text)));
  ASSERT_NO_FATAL_FAILURE((CompareTwoReads<char, unsigned int>(text)));
  ASSERT_NO_FATAL_FAILURE((CompareTwoReads<char, char>(text)));
}

TEST(StrReference, ReadingAllShortTexts) {
  for (const std::string& text : AllTexts("09-+ x", 6)) {
    ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned int>(text));
    ASSERT_NO_FATAL_FAILURE(CompareConverting<unsigned short>(text));
  }
  for (const std::string& text : AllTexts("09-+ x", 4))
    ASSERT_NO_FATAL_FAILURE(CompareConverting<char>(text));
}

TEST(StrReference, TwoReadsOfAllShortTexts) {
  for (const std::string& text : AllTexts("09-+ x", 5))
    ASSERT_NO_FATAL_FAILURE((CompareTwoReads<unsigned short, unsigned int>(text)));
  for (const std::string& text : AllTexts("7- x", 5))
    ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads(text));
}

std::vector<std::string> NumbersAroundTheLimits() {
  std::vector<std::string> numbers;
  for (const unsigned long long limit :
       {65535ULL, 655350ULL, 65535ULL * 65536, 4294967295ULL, 42949672950ULL, 4294967295ULL * 4294967296ULL,
        std::numeric_limits<unsigned long long>::max()}) {
    for (unsigned long long distance = 0; distance < 12; ++distance) {
      numbers.push_back(std::to_string(limit - distance));
      numbers.push_back(std::to_string(limit + distance));
    }
    numbers.push_back(std::to_string(limit) + "0");
    numbers.push_back(std::to_string(limit) + std::string(300, '9'));
  }
  return numbers;
}

TEST(StrReference, ReadingNumbersAroundTheLimits) {
  for (const std::string& number : NumbersAroundTheLimits()) {
    for (const char* before : {"", "-", "+", " -", "000000000000000000000", "-0", "\v\f+00"}) {
      for (const char* behind : {"", " ", "x", ".5", "-1", " 65536", ",3"}) {
        ASSERT_NO_FATAL_FAILURE(CompareReading(before + number + behind));
        ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads(before + number + behind));
      }
    }
  }
}

TEST(StrReference, ReadingRandomTexts) {
  RandomTexts random(11);
  for (int i = 0; i < 10000; ++i) {
    const std::string digits = random.Next(" -+", 2) + random.Next("0123456789", 12) + random.Next(MIXED, 2);
    ASSERT_NO_FATAL_FAILURE(CompareReading(digits + random.Next("01 ", 20)));
    ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads(digits + random.Next("-0123456789 ", 12)));
    ASSERT_NO_FATAL_FAILURE(CompareReading(random.Next(MIXED, 10)));
    ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads(random.Next(MIXED, 10)));
  }
}

TEST(StrReference, ReadingEverySingleByte) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    ASSERT_NO_FATAL_FAILURE(CompareReading(text));
    ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads(text));
    ASSERT_NO_FATAL_FAILURE(CompareAllTwoReads("1" + text + "2"));
  }
}

}  // namespace
}  // namespace VARNEL_TEST
