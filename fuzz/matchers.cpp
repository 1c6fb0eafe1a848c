// How often the text is repeated, a pattern and a text: both matchers and both searches against the plain ones.

#include <str.h>

#include <algorithm>
#include <cctype>

#include "check.h"
#include "exact_text.h"
#include "find.h"
#include "input.h"
#include "no_case_finder.h"
#include "string_references.h"

using VARNEL_TEST::ExactText;

namespace Reference = VARNEL_TEST::Reference;

namespace {

constexpr size_t LONGEST_PATTERN = 128;
constexpr size_t LONGEST_MATCHED = 256;  // the plain matchers take the product of the lengths
constexpr size_t LONGEST_SEARCHED = 8192;

void CheckMatchers(const std::string& text, const std::string& pattern) {
  const ExactText exactText(text), exactPattern(pattern);
  FUZZ_CHECK((VARNEL_COMMON::strmcmp(exactText, exactPattern) != 0) ==
             Reference::MatchesStars(text.c_str(), pattern.c_str()));
  FUZZ_CHECK(VARNEL_COMMON::strmcmpnocase(exactText, exactPattern) ==
             Reference::MatchNoCase(text.c_str(), pattern.c_str()));
}

// From one occurrence to the next, each search beginning inside the last hit.
void CheckFinder(const std::string& text, const std::string& piece) {
  const VARNEL_INTERNAL::Finder finder(piece);
  size_t from = 0;
  for (int hits = 0; hits < 64; ++hits) {
    const size_t found = finder.Find(text, from);
    FUZZ_CHECK(found == text.find(piece, from));
    if (found == std::string::npos || found == text.size()) return;
    from = found + 1;
  }
}

std::string Lower(std::string text) {
  for (char& c : text)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

void CheckNoCaseFinder(const std::string& text, const std::string& piece) {
  if (piece.empty()) return;
  VARNEL_COMMON::NoCaseFinder finder;
  finder.Assign(piece);
  const std::string lowerText = Lower(text), lowerPiece = Lower(piece);
  size_t from = 0;
  for (int hits = 0; hits < 64 && from <= text.size(); ++hits) {
    const size_t end = finder.FindEnd(text, from);
    const size_t expected = lowerText.find(lowerPiece, from);
    FUZZ_CHECK(end == (expected == std::string::npos ? expected : expected + piece.size()));
    if (end == std::string::npos) return;
    from = end - piece.size() + 1;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const size_t repeats = input.Byte() + size_t{1};
  const std::string pattern = input.Field().substr(0, LONGEST_PATTERN);
  const std::string text = input.Rest();
  CheckMatchers(text.substr(0, LONGEST_MATCHED), pattern);

  std::string repeated;
  for (size_t i = 0; i < repeats && repeated.size() < LONGEST_SEARCHED; ++i)
    repeated += text;
  repeated.resize(std::min(repeated.size(), LONGEST_SEARCHED));
  CheckFinder(repeated, pattern);
  CheckNoCaseFinder(repeated, pattern);
  return 0;
}
