#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "allocation.h"
#include "evtmsg.h"
#include "exact_text.h"
#include "recording_test.h"
#include "report_shapes.h"
#include "str.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int TL1_NE = 0x1000000;

// Calls that recognise nothing must not allocate: most reports are passed to objects that ignore them.
class NoAllocation : public RecordingTest {};

template <typename Run>
size_t AllocationsOf(Run run) {
  const AllocationGuard guard;
  run();
  return guard.Count();
}

// Reports of several sizes with the words of every shape, in the wrong order.
std::vector<std::string> UnrecognisedReports() {
  std::string words = "TOTAL RSP SUCCESS FAIL \xFF";
  for (const auto& shape : WordsOfAllShapes()) {
    for (const std::string& word : shape)
      words.insert(0, word + ' ');
  }
  std::vector<std::string> reports{"", " ", words};
  for (const size_t size : {300U, 4096U, 65536U})
    reports.push_back(std::string(size, 'x') + words);
  return reports;
}

template <typename Event>
void ExpectNoAllocation(unsigned int element) {
  Event event;
  event.m_dwNEID = element;
  for (const std::string& text : UnrecognisedReports()) {
    const ExactText report(text);
    bool recognised = true;
    EXPECT_EQ(AllocationsOf([&] { recognised = event.HandleReport(report); }), 0U) << text.size();
    EXPECT_FALSE(recognised) << text.size();
  }
}

TEST_F(NoAllocation, GuardCountsAllocations) {
  std::string text;
  EXPECT_EQ(AllocationsOf([&] { text.assign(100, 'x'); }), 1U);
}

TEST_F(NoAllocation, ReportsThatNoShapeMatches) {
  ExpectNoAllocation<CVNPackGuageEvt>(0);
  ExpectNoAllocation<CVNPackGuageEvt>(TL1_NE);
  ExpectNoAllocation<CVNScriptFileGuageEvt>(0);
  ExpectNoAllocation<CVNScriptFileGuageEvt>(TL1_NE);
  ExpectNoAllocation<CVNScriptFileEndEvt>(0);
  ExpectNoAllocation<CVNScriptFileEndEvt>(TL1_NE);
}

TEST_F(NoAllocation, ReportsOfOtherEvents) {
  CEvtMsg event;
  for (const char* key : {"key", "*ke*y", "a key that is too long to be held in place",
                          "*a pattern*that is too long to be held in place*"}) {
    event.m_strEvtKey = key;
    for (const std::string& text : UnrecognisedReports()) {
      const ExactText report(text);
      bool claimed = true;
      EXPECT_EQ(AllocationsOf([&] { claimed = event.IsMyEvt(report); }), 0U) << key;
      EXPECT_FALSE(claimed) << key;
    }
  }
}

TEST_F(NoAllocation, PatternsThatDoNotMatch) {
  for (const char* pattern : {"", "absent", "*absent*", "x*x*absent", "*EVENT*absent*in all of these texts*"}) {
    for (const std::string& content : UnrecognisedReports()) {
      if (content.empty() && *pattern == '\0') continue;
      const ExactText text(content);
      int matched = 1;
      EXPECT_EQ(AllocationsOf([&] { matched = strmcmp(text, pattern); }), 0U) << pattern;
      EXPECT_EQ(matched, 0) << pattern;
      matched = 1;
      EXPECT_EQ(AllocationsOf([&] { matched = strmcmpnocase(text, pattern); }), 0U) << pattern;
      EXPECT_EQ(matched, 0) << pattern;
    }
  }
}

template <typename Number>
void ExpectZeroWithoutAllocation(const char* text) {
  Number number = 7;
  EXPECT_EQ(AllocationsOf([&] { ConvertFromString(text, number); }), 0U) << text;
  EXPECT_EQ(number, 0U) << text;
}

TEST_F(NoAllocation, TextsWithoutANumber) {
  const std::string letters(1000, 'x');
  for (const char* text : {"x", "  -", "+x1", letters.c_str()}) {
    ExpectZeroWithoutAllocation<unsigned int>(text);
    ExpectZeroWithoutAllocation<unsigned short>(text);
  }
  char letter = 'a';
  EXPECT_EQ(AllocationsOf([&] { ConvertFromString(" \t\r\n", letter); }), 0U);
  EXPECT_EQ(letter, 'a');
}

}  // namespace
}  // namespace VARNEL_TEST
