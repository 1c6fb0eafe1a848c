#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "event_references.h"
#include "evtmsg.h"
#include "exact_text.h"
#include "string_references.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;

using Words = std::vector<std::string>;

constexpr int REPORTS = 100000;
constexpr unsigned int MML_NE = 0xFFFFFF;
constexpr unsigned int TL1_NE = 0x1000000;

const Words FILLERS = {" ", " ", "  ", "\r\n", "\t", "\v \f", "x", ",", "\"", "-", "+", "\x85", "\xA0", "\xFF"};
const Words NUMBERS = {"0",
                       "3",
                       "12",
                       "9",
                       "10",
                       "-4",
                       "+5",
                       "007",
                       "4294967295",
                       "4294967296",
                       "-4294967295",
                       "18446744073709551615",
                       "18446744073709551616",
                       "1x",
                       "0x10",
                       "5,6",
                       "99999999999999999999999"};

// Reports put together from the words of a shape, mostly in order, with numbers and other text between, and cut.
class Reports {
 public:
  Reports(unsigned int seed, const std::vector<Words>& shapes) : m_random(seed), m_shapes(shapes) {}

  std::string Next() {
    std::string report;
    for (size_t parts = m_random.Below(8) == 0 ? 2 : 1; parts > 0; --parts)
      report += m_random.Below(4) == 0 ? Mixture() : InOrder(OneOf(m_shapes));
    switch (m_random.Below(8)) {
      case 0:
        return report.substr(0, m_random.Below(report.size() + 1));
      case 1:
        return report.substr(m_random.Below(report.size() + 1));
      default:
        return report;
    }
  }

 private:
  template <typename Element>
  const Element& OneOf(const std::vector<Element>& all) {
    return all[m_random.Below(all.size())];
  }

  // Nothing, blanks, a number or something else, so that every word is followed by anything.
  std::string Between() {
    std::string text;
    for (size_t count = m_random.Below(4); count > 0; --count)
      text += m_random.Below(2) == 0 ? OneOf(NUMBERS) + OneOf(FILLERS) : OneOf(FILLERS);
    return text;
  }

  std::string InOrder(const Words& shape) {
    std::string text;
    for (const std::string& word : shape) {
      if (m_random.Below(32) == 0) continue;
      text += Between() + word;
      if (m_random.Below(16) == 0) text += OneOf(shape);
    }
    return text + Between();
  }

  std::string Mixture() {
    std::string text;
    for (size_t count = m_random.Below(12); count > 0; --count)
      text += OneOf(OneOf(m_shapes)) + Between();
    return text;
  }

  RandomTexts m_random;
  const std::vector<Words>& m_shapes;
};

// Both answers must have come up often, or the comparison says little.
class Answers {
 public:
  void Add(bool answer) { ++(answer ? m_yes : m_no); }
  ~Answers() {
    EXPECT_GT(m_yes, REPORTS / 20);
    EXPECT_GT(m_no, REPORTS / 20);
  }

 private:
  int m_yes = 0;
  int m_no = 0;
};

using Counts = std::tuple<bool, unsigned int, unsigned int>;

template <typename Event, typename Reference>
void CompareCounts(Reports reports, unsigned int element, Reference reference) {
  Answers answers;
  for (int i = 0; i < REPORTS; ++i) {
    const std::string report = reports.Next();
    const auto before = static_cast<unsigned int>(i % 3);
    unsigned int done = before, total = before;
    const bool expected = reference(report, done, total);
    Event event;
    event.m_dwNEID = element;
    event.m_dwDoneNum = event.m_dwTotalNum = before;
    const bool actual = event.HandleReport(ExactText(report));
    ASSERT_EQ((Counts{actual, event.m_dwDoneNum, event.m_dwTotalNum}), (Counts{expected, done, total}))
        << ::testing::PrintToString(report);
    answers.Add(actual);
  }
}

TEST(EventReference, MmlPackageProgress) {
  const std::vector<Words> shapes = {{"EVT_SFTM_CPYFILE_PROGRESS", "DONE_NUM", "TOTAL_NUM"},
                                     {"status=completed", "done=", "total="}};
  CompareCounts<CVNPackGuageEvt>(Reports(1, shapes), MML_NE, Reference::ReadMmlPackageProgress);
}

TEST(EventReference, Tl1PackageProgress) {
  const std::vector<Words> shapes = {{"FILES_DONE=", "FILES_TOTAL="},
                                     {"REPT EVT PROGRESS", "TRANSFEREDFILES=", "TOTALNUM="},
                                     {"SLOTSDONE=", "SLOTSTTL="}};
  CompareCounts<CVNPackGuageEvt>(Reports(2, shapes), TL1_NE, Reference::ReadTl1PackageProgress);
}

TEST(EventReference, ScriptProgress) {
  const std::vector<Words> shapes = {{"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL"},
                                     {"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL_COMMANDS="},
                                     {"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL_COMMANDS= 12\t5\r\n"},
                                     {"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL      \r\n  "}};
  CompareCounts<CVNScriptFileGuageEvt>(Reports(3, shapes), MML_NE, Reference::ReadScriptProgress);
}

TEST(EventReference, ScriptEnd) {
  const std::vector<Words> shapes = {{"EVENT", "CAM", "RUN", "END", "RSP", "SUCCESS"},
                                     {"EVENT", "CAM", "RUN", "END", "RSP", "FAIL", " ", " "},
                                     {"EVENT", "CAM", "RUN", "END", "RSP", "FAIL"}};
  Reports reports(4, shapes);
  Answers answers;
  for (int i = 0; i < REPORTS; ++i) {
    const std::string report = reports.Next();
    Reference::ScriptEnd end{"result", "item", "text ", 77};
    const bool expected = Reference::ReadScriptEnd(report, end);
    CVNScriptFileEndEvt event;
    event.m_strResult = "result";
    event.m_strResultItem = "item";
    event.m_strResultText = "text ";
    event.m_dwResultCode = 77;
    const bool actual = event.HandleReport(ExactText(report));
    ASSERT_EQ(std::tie(actual, event.m_strResult, event.m_dwResultCode, event.m_strResultItem, event.m_strResultText),
              std::tie(expected, end.result, end.code, end.item, end.text))
        << ::testing::PrintToString(report);
    ASSERT_EQ(event.m_dwExtra, 0U);
    answers.Add(actual);
  }
}

TEST(EventReference, ClaimedReports) {
  RandomTexts random(5);
  Answers answers;
  CEvtMsg event;
  for (int i = 0; i < REPORTS; ++i) {
    const std::string report = random.Next("ab*\xFF", 12);
    event.m_strEvtKey = random.Next("ab*\xFF", 5);
    const bool expected = Reference::ClaimsReport(event.m_strEvtKey, report);
    ASSERT_EQ(event.IsMyEvt(ExactText(report)), expected) << event.m_strEvtKey << " in " << report;
    answers.Add(expected);
  }
}

}  // namespace
}  // namespace VARNEL_TEST
