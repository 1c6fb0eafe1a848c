// The initial counts, an event key and a report: the handlers of all events compared with plain ones.

#include <evtmsg.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>
#include <tuple>
#include <vector>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "replay.h"
#include "report_shapes.h"
#include "string_references.h"

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;
using VARNEL_TEST::ExactText;

// Plain handlers, with streams and strtoul().
namespace Reference {
namespace {

using VARNEL_TEST::Reference::AttributeValue;
using VARNEL_TEST::Reference::Collapse;
using VARNEL_TEST::Reference::MatchesStars;
using VARNEL_TEST::Reference::Split;

struct ScriptEnd {
  std::string result;
  std::string item;
  std::string text;
  unsigned int code;
};

constexpr size_t NPOS = std::string::npos;

// Whether the words of the pattern, each between two "*", occur in order.
bool HasShape(const std::string& report, std::string_view pattern) {
  size_t at = 0;
  for (pattern.remove_prefix(1); !pattern.empty();) {
    const std::string_view word = pattern.substr(0, pattern.find('*'));
    at = report.find(word, at);
    if (at == NPOS) return false;
    at += word.size();
    pattern.remove_prefix(word.size() + 1);
  }
  return true;
}

bool ReadTwoNumbers(std::string text, unsigned int& first, unsigned int& second) {
  Collapse(text);
  std::stringstream stream(text);
  stream >> first;
  stream >> second;
  return stream.tellg() > 2;
}

bool ConvertDigits(const char* text, unsigned int& number) {
  char* end;
  number = static_cast<unsigned int>(std::strtoul(text, &end, 10));
  return end != text;
}

void ReadAttribute(const std::string& report, const std::string& name, unsigned int& number) {
  std::string value;
  AttributeValue(report.c_str(), name, value);
  std::stringstream(value) >> number;
}

bool ClaimsReport(const std::string& key, const std::string& report) {
  return MatchesStars(report, key) || report.find(key) != NPOS;
}

bool ReadMmlPackageProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  if (HasShape(report, VARNEL_TEST::COPY_SHAPE)) {
    return ReadTwoNumbers(report.substr(report.find("TOTAL_NUM") + 9), done, total);
  }
  if (!HasShape(report, VARNEL_TEST::COMPLETED_SHAPE)) return false;
  const bool hasDone = ConvertDigits(report.c_str() + report.find("done=") + 5, done);
  const bool hasTotal = ConvertDigits(report.c_str() + report.find("total=") + 6, total);
  return hasDone && hasTotal;
}

bool ReadTl1PackageProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  for (const VARNEL_TEST::Tl1Shape& shape : VARNEL_TEST::TL1_SHAPES) {
    if (!HasShape(report, shape.pattern)) continue;
    ReadAttribute(report, shape.done, done);
    ReadAttribute(report, shape.total, total);
    return total != 0;
  }
  return false;
}

bool ReadScriptProgress(const std::string& report, unsigned int& done, unsigned int& total) {
  if (!HasShape(report, VARNEL_TEST::SCRIPT_PROGRESS_SHAPE)) return false;
  const size_t at = report.find("TOTAL");
  if (at == NPOS || report.size() - at < 15) return false;
  return ReadTwoNumbers(report.substr(at + 15), total, done);
}

bool ReadScriptEnd(const std::string& report, ScriptEnd& end) {
  if (!HasShape(report, VARNEL_TEST::SCRIPT_END_SHAPE)) return false;
  const size_t at = report.find("RSP");
  if (at == NPOS) return false;
  std::string text = report.substr(at + 3);
  Collapse(text);
  if (text.find("SUCCESS") != NPOS) {
    std::stringstream stream(text);
    stream >> end.result;
    stream >> end.code;
    return true;
  }
  if (text.find("FAIL") == NPOS) return false;
  std::vector<std::string> words;
  Split(text.c_str(), ' ', words);
  if (words.size() < 4) return false;
  end.result = words[0];
  std::stringstream(words[1]) >> end.code;
  end.item = words[2];
  for (size_t i = 3; i < words.size(); ++i)
    end.text += words[i] + " ";
  return true;
}

}  // namespace
}  // namespace Reference

namespace {

constexpr unsigned int MML_NE = 0xFFFFFF;
constexpr unsigned int TL1_NE = 0x1000000;
constexpr size_t LONGEST_REPORT = 2048;  // the plain versions are slow on longer ones
constexpr size_t LONGEST_KEY = 64;

using VARNEL_FUZZ::Answers;

template <typename Event, typename Read>
void CheckCounts(Answers& answers, unsigned int element, unsigned int before, const std::string& report, Read read) {
  unsigned int done = before, total = before;
  const bool expected = read(report, done, total);
  answers.Count(expected);
  Event event;
  event.m_dwNEID = element;
  event.m_dwDoneNum = event.m_dwTotalNum = before;
  FUZZ_CHECK(event.HandleReport(ExactText(report)) == expected);
  FUZZ_CHECK(event.m_dwDoneNum == done);
  FUZZ_CHECK(event.m_dwTotalNum == total);
  if (total != 0 && done <= total) FUZZ_CHECK(event.GetGuage() <= 100);
}

void CheckEnd(const std::string& report) {
  static Answers answers("end of a script");
  Reference::ScriptEnd end{"result", "item", "text ", 77};
  const bool expected = Reference::ReadScriptEnd(report, end);
  answers.Count(expected);
  CVNScriptFileEndEvt event;
  event.m_strResult = "result";
  event.m_strResultItem = "item";
  event.m_strResultText = "text ";
  event.m_dwResultCode = 77;
  FUZZ_CHECK(event.HandleReport(ExactText(report)) == expected);
  FUZZ_CHECK(event.m_dwExtra == 0);
  FUZZ_CHECK(std::tie(event.m_strResult, event.m_dwResultCode, event.m_strResultItem, event.m_strResultText) ==
             std::tie(end.result, end.code, end.item, end.text));
  const std::unique_ptr<CEvtMsg> copy(event.Duplicate());
  FUZZ_CHECK(dynamic_cast<CVNScriptFileEndEvt&>(*copy).m_strResultText == end.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const unsigned int before = input.Byte();
  // The library reads both as C strings.
  const std::string key = input.Field().substr(0, LONGEST_KEY).c_str();
  const std::string report = input.Rest().substr(0, LONGEST_REPORT).c_str();

  static Answers mml("MML load"), tl1("TL1 load"), script("script progress"), mine("IsMyEvt");
  CheckCounts<CVNPackGuageEvt>(mml, MML_NE, before, report, Reference::ReadMmlPackageProgress);
  CheckCounts<CVNPackGuageEvt>(tl1, TL1_NE, before, report, Reference::ReadTl1PackageProgress);
  CheckCounts<CVNScriptFileGuageEvt>(script, MML_NE, before, report, Reference::ReadScriptProgress);
  CheckEnd(report);

  CEvtMsg event;
  event.m_strEvtKey = key;
  const bool isMine = Reference::ClaimsReport(key, report);
  mine.Count(isMine);
  FUZZ_CHECK(event.IsMyEvt(ExactText(report)) == isMine);
  return 0;
}

// The words of each shape in any order, and in their order with values after them.
void VARNEL_FUZZ::RunGenerated(Runner run) {
  using VARNEL_TEST::AllTexts;
  const std::string start = "\x02\x1E";
  for (const std::vector<std::string>& words : VARNEL_TEST::WordsOfAllShapes()) {
    std::vector<std::string> pieces = words;
    pieces.insert(pieces.end(), {"3,", "x"});
    for (const std::string& report : AllTexts(pieces, 5))
      run(start + report);

    std::string inOrder = start;
    for (const std::string& word : words)
      inOrder += word;
    for (const char* marker : {"", "RSP", "RSP SUCCESS ", "RSP\nFAIL ", "TOTAL_COMMANDS= "}) {
      for (const std::string& values : AllTexts({"12 ", "-3\t", "4294967296\r\n", "x ", ",", "\"", words.back()}, 4))
        run(inOrder + marker + values);
    }
  }
  for (const std::string& key : AllTexts("ab*", 4)) {
    for (const std::string& report : AllTexts("ab*", 5))
      run('\0' + key + '\x1E' + report);
  }
}
