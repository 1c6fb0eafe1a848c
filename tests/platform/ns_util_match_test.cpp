#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "growth.h"
#include "platform/ns_util.h"

namespace VARNEL_TEST {
namespace {

int Match(const char* text, const char* pattern) {
  return NS_UTIL::RepalaceSensInfo().strmcmp(text, pattern);
}

bool Matches(const std::string& text, const std::string& pattern) {
  return Match(text.c_str(), pattern.c_str()) != 0;
}

TEST(WildcardMatch, Accepted) {
  constexpr const char* CASES[][2] = {
      {"", ""},
      {"", "*"},
      {"", "**"},
      {"a", "a"},
      {"a", "*"},
      {"a", "**"},
      {"a", "a*"},
      {"a", "*a"},
      {"a", "*a*"},
      {"aa", "a*a"},
      {"aba", "a*a"},
      {"abc", "*b*"},
      {"abc", "a*c"},
      {"abc", "a**c"},
      {"abcbc", "a*bc"},
      {"abab", "*ab"},
      {"aab", "*ab"},
      {"xaxbx", "*a*b*"},
      {"a?c", "a?c"},
      {"?", "?"},
      {"a*c", "a*c"},
      {"*", "*"},
      {"a.c", "a.c"},
      {"[a]", "[a]"},
      {"a\\c", "a\\c"},
      {"\xFF\x80", "\xFF*"},
      {"\xA3\xA3x", "*\xA3\xA3*"},
      {"mississippi", "m*iss*ppi"},
      {"DONE=7,TOTAL=9", "*DONE=*TOTAL=*"},
  };
  for (const auto& [text, pattern] : CASES)
    EXPECT_NE(Match(text, pattern), 0) << '"' << text << "\" \"" << pattern << '"';
}

TEST(WildcardMatch, Rejected) {
  constexpr const char* CASES[][2] = {
      {"", "a"},       {"a", ""},        {"a", "A"},     {"A", "*a*"},       {"a", "a*a"},
      {"ab", "ab*ab"}, {"aba", "ab*ba"}, {"abc", "?bc"}, {"abc", "a?c"},     {"abc", "*?"},
      {"abc", "*d*"},  {"abc", "b*"},    {"abc", "*b"},  {"ab", "*b*a*"},    {"abc", "abc?"},
      {"abc", "abcd"}, {"abc", "ab"},    {"abc", "a*d"}, {"aXb", "*a*a*b*"}, {"TOTAL=9,DONE=7", "*DONE=*TOTAL=*"},
  };
  for (const auto& [text, pattern] : CASES)
    EXPECT_EQ(Match(text, pattern), 0) << '"' << text << "\" \"" << pattern << '"';
}

TEST(WildcardMatch, NullNeverMatches) {
  EXPECT_EQ(Match(nullptr, "*"), 0);
  EXPECT_EQ(Match("a", nullptr), 0);
  EXPECT_EQ(Match("", nullptr), 0);
  EXPECT_EQ(Match(nullptr, nullptr), 0);
}

// The definition of the match, by trying every split.
bool MatchesByDefinition(const char* text, const char* pattern) {
  if (*pattern == '\0') return *text == '\0';
  if (*pattern != '*') return *text == *pattern && MatchesByDefinition(text + 1, pattern + 1);
  return MatchesByDefinition(text, pattern + 1) || (*text != '\0' && MatchesByDefinition(text + 1, pattern));
}

std::vector<std::string> AllTexts(const std::string& alphabet, size_t longest) {
  std::vector<std::string> texts{""};
  for (size_t i = 0; i < texts.size() && texts[i].size() < longest; ++i) {
    for (const char letter : alphabet)
      texts.push_back(texts[i] + letter);
  }
  return texts;
}

TEST(WildcardMatch, AgreesWithAPlainMatcherOnAllSmallTexts) {
  const auto texts = AllTexts("ab", 7);
  const auto patterns = AllTexts("ab*", 5);
  ASSERT_EQ(texts.size() * patterns.size(), 255U * 364U);
  size_t matching = 0;
  for (const std::string& pattern : patterns) {
    for (const std::string& text : texts) {
      const bool expected = MatchesByDefinition(text.c_str(), pattern.c_str());
      matching += expected ? 1 : 0;
      if (Matches(text, pattern) != expected) ADD_FAILURE() << '"' << text << "\" \"" << pattern << '"';
    }
  }
  EXPECT_GT(matching, 1000U);
}

void ExpectLinear(const std::string& textUnit, const std::string& patternUnit, const std::string& patternEnd) {
  const auto repeat = [](const std::string& unit, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
      text += unit;
    return text;
  };
  const auto prepare = [&](size_t size) {
    return std::pair(repeat(textUnit, size), repeat(patternUnit, size / 2) + patternEnd);
  };
  const auto match = [](const auto& input) { EXPECT_FALSE(Matches(input.first, input.second)); };
  EXPECT_LT(Growth(16384, prepare, match), LINEAR_GROWTH) << textUnit << ' ' << patternUnit << ' ' << patternEnd;
}

TEST(WildcardMatch, ManyPiecesAreLinear) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers examine the whole rest of the text for each piece";
#endif
  ExpectLinear("a", "*a", "*b");
  ExpectLinear("a", "*a", "b");
}

TEST(WildcardMatch, HostilePatternsAreLinear) {
  ExpectLinear("a", "a", "*b*");
  ExpectLinear("ab", "*", "abba*");
  ExpectLinear("a", "*", "c");
  ExpectLinear("ab", "ab", "c*");
}

TEST(WildcardMatch, ManyLongPiecesAreLinear) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers examine the whole rest of the text for each piece";
#endif
  const std::string piece(40, 'a');
  ExpectLinear(piece, piece + "*", "c");
}

TEST(WildcardMatch, PiecesOfAnyLengthAreFoundInOrder) {
  std::string first;
  for (char c = 'A'; c <= 'z'; ++c)
    first += c == '*' ? '.' : c;
  for (size_t size = 1; size < first.size(); ++size) {
    const std::string piece = first.substr(0, size), other = first.substr(first.size() - size);
    const std::string text = "(" + piece + ")(" + other + ")";
    EXPECT_TRUE(Matches(text, "*(" + piece + ")*" + other + ")"));
    EXPECT_TRUE(Matches(text, "*" + piece + "*" + other + "*"));
    EXPECT_FALSE(Matches(text, "*" + other + ")*(" + piece + "*")) << size;
  }
}

TEST(WildcardMatch, LongPieceThatAlmostMatchesIsLinear) {
  const auto prepare = [](size_t size) {
    return std::pair(std::string(size, 'a'), "*b" + std::string(size / 2, 'a') + "*");
  };
  EXPECT_LT(Growth(16384, prepare, [](const auto& input) { EXPECT_FALSE(Matches(input.first, input.second)); }),
            LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
