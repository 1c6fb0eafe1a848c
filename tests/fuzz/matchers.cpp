// A repetition count, a pattern and a text: the matchers compared with plain ones, and on long texts the search for the
// pattern between two "*".

#include <evtmsg.h>
#include <str.h>

#include <algorithm>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "replay.h"
#include "string_references.h"

using VARNEL_TEST::ExactText;

namespace Reference = VARNEL_TEST::Reference;

namespace {

constexpr size_t LONGEST_PATTERN = 128;
constexpr size_t LONGEST_MATCHED = 256;  // the plain matchers need time for the product of the lengths
constexpr size_t LONGEST_SEARCHED = 8192;

void CheckMatchers(const std::string& text, const std::string& pattern) {
  static VARNEL_FUZZ::Answers matches("strmcmp"), matchesNoCase("strmcmpnocase");
  const ExactText exactText(text), exactPattern(pattern);
  const bool expected = Reference::MatchesStars(text, pattern);
  matches.Count(expected);
  FUZZ_CHECK((VARNEL_COMMON::strmcmp(exactText, exactPattern) != 0) == expected);
  const int expectedNoCase = Reference::MatchNoCase(text.c_str(), pattern.c_str());
  matchesNoCase.Count(expectedNoCase != 0);
  FUZZ_CHECK(VARNEL_COMMON::strmcmpnocase(exactText, exactPattern) == expectedNoCase);
}

// The piece has no wildcard.
void CheckSearch(std::string text, std::string piece) {
  const ExactText pattern("*" + piece + "*");
  const bool expected = text.find(piece) != std::string::npos;
  FUZZ_CHECK((VARNEL_COMMON::strmcmp(ExactText(text), pattern) != 0) == expected);
  VARNEL_COMMON::CEvtMsg event;
  event.m_strEvtKey = piece;
  FUZZ_CHECK(event.IsMyEvt(ExactText(text)) == expected);

  const int matches = VARNEL_COMMON::strmcmpnocase(ExactText(text), pattern);
  Reference::UpperCase(text);
  Reference::UpperCase(piece);
  FUZZ_CHECK(matches == (!text.empty() && text.find(piece) != std::string::npos ? 1 : 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const size_t repeats = input.Byte() + size_t{1};
  // The library reads both as C strings.
  const std::string pattern = input.Field().substr(0, LONGEST_PATTERN).c_str();
  const std::string text = input.Rest().c_str();
  CheckMatchers(text.substr(0, LONGEST_MATCHED), pattern);
  if (repeats == 1 || pattern.find_first_of("*?") != std::string::npos) return 0;

  std::string repeated;
  for (size_t i = 0; i < repeats && repeated.size() < LONGEST_SEARCHED; ++i)
    repeated += text;
  repeated.resize(std::min(repeated.size(), LONGEST_SEARCHED));
  CheckSearch(repeated, pattern);
  return 0;
}

void VARNEL_FUZZ::RunGenerated(Runner run) {
  using VARNEL_TEST::AllTexts;
  const auto runAll = [run](const std::vector<std::string>& patterns, const std::vector<std::string>& texts) {
    for (const std::string& pattern : patterns) {
      for (const std::string& text : texts)
        run('\0' + pattern + '\x1E' + text);
    }
  };
  runAll(AllTexts("ab*?", 5), AllTexts("ab", 7));
  runAll(AllTexts("aAb*", 4), AllTexts("aAb", 5));
  runAll(AllTexts("aB*?", 4), AllTexts("aAbB", 4));
  runAll(AllTexts("a*?", 5), AllTexts("a*?", 5));
}
