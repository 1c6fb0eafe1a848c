#include "evtmsg.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "publicdata.h"
#include "str.h"
#include "util/chars.h"
#include "util/find.h"
#include "util/stream_reader.h"

namespace VARNEL_COMMON {

using VARNEL_UTIL::FindInString;
using VARNEL_UTIL::StreamReader;
using VARNEL_UTIL::TrimmedRight;

namespace {

constexpr size_t SCRIPT_COUNTS_OFFSET = 15;  // from "TOTAL" to its number, including column header and separator
constexpr unsigned int FEW_COMMANDS = 9;

bool Matches(const char* report, const char* pattern) {
  return strmcmp(report, pattern) != 0;
}

// The text after the first occurrence of `word`, or null.
const char* After(const char* report, const char* word) {
  const char* found = std::strstr(report, word);
  return found == nullptr ? nullptr : found + std::strlen(word);
}

// Both numbers must be followed by a character that is not white space. At the end of the text a stream's tellg()
// returns -1, and the report is not recognised. Example: "3 12 " is refused, "3 12 ;" is accepted.
bool ReadTwoNumbers(std::string_view text, unsigned int& first, unsigned int& second) {
  StreamReader reader(TrimmedRight(text));
  reader.Read(first);
  reader.Read(second);
  return !reader.Failed() && !reader.AtEnd();
}

// Converts as strtoul() does and keeps the low 32 bits; false without a digit.
bool ReadUnsigned(const char* text, unsigned int& number) {
  uint64_t wide = 0;
  StreamReader reader(text);
  reader.Read(wide);
  number = static_cast<unsigned int>(wide);
  return !reader.Failed() || wide != 0;  // an overflow fails although there are digits
}

unsigned int Percent(unsigned int done, unsigned int total) {
  return total == 0 ? 0 : done * 100U / total;
}

struct Tl1Shape {
  const char* pattern;
  const char* done;
  const char* total;
};

// The misspellings are those of the elements. docs/formats.md lists all shapes, also those of MML.
constexpr Tl1Shape TL1_SHAPES[] = {
    {"*FILES_DONE=*FILES_TOTAL=*", "FILES_DONE=", "FILES_TOTAL="},
    {"*REPT EVT PROGRESS*TRANSFEREDFILES=*TOTALNUM=*", "TRANSFEREDFILES=", "TOTALNUM="},
    {"*SLOTSDONE=*SLOTSTTL=*", "SLOTSDONE=", "SLOTSTTL="},
};

}  // namespace

CEvtMsg::CEvtMsg() : m_dwUserData1(0), m_dwUserData2(0), m_dwNEID(0) {}

CEvtMsg::~CEvtMsg() = default;

bool CEvtMsg::IsMyEvt(const char* report) {
  if (report == nullptr) return false;
  return Matches(report, m_strEvtKey.c_str()) || FindInString(report, m_strEvtKey.c_str()) != nullptr;
}

bool CEvtMsg::HandleReport(const char* /*report*/) {
  return true;
}

CEvtMsg* CEvtMsg::Duplicate() {
  auto copy = std::make_unique<CEvtMsg>();
  CopyMembersTo(*copy);
  return copy.release();
}

void CEvtMsg::CopyMembersTo(CEvtMsg& copy) {
  copy.m_strEvtKey = m_strEvtKey;
  copy.m_dwUserData1 = m_dwUserData1;
  copy.m_dwUserData2 = m_dwUserData2;
  copy.m_dwNEID = m_dwNEID;
  copy.m_cmd.SetMsg(m_cmd.GetMsg());
}

CVNPackGuageEvt::CVNPackGuageEvt() : m_dwDoneNum(0), m_dwTotalNum(0) {}

CVNPackGuageEvt::~CVNPackGuageEvt() = default;

bool CVNPackGuageEvt::HandleReport(const char* report) {
  if (report == nullptr) return false;
  return IsTL1NeID(m_dwNEID) ? HandleTL1LReport(report) : HandleMMLReport(report);
}

CEvtMsg* CVNPackGuageEvt::Duplicate() {
  auto copy = std::make_unique<CVNPackGuageEvt>();
  CopyMembersTo(*copy);
  copy->m_dwDoneNum = m_dwDoneNum;
  copy->m_dwTotalNum = m_dwTotalNum;
  return copy.release();
}

bool CVNPackGuageEvt::HandleMMLReport(const char* report) {
  if (report == nullptr) return false;
  // A plain search for a word of the shape is cheaper than a match that fails.
  const char* counts = After(report, "TOTAL_NUM");
  if (counts != nullptr && Matches(report, "*EVT_SFTM_CPYFILE_PROGRESS*DONE_NUM*TOTAL_NUM*")) {
    return ReadTwoNumbers(counts, m_dwDoneNum, m_dwTotalNum);
  }
  const char* done = After(report, "done=");
  const char* total = done == nullptr ? nullptr : After(report, "total=");
  if (total == nullptr || !Matches(report, "*status=completed*done=*total=*")) return false;
  const bool hasDone = ReadUnsigned(done, m_dwDoneNum);
  const bool hasTotal = ReadUnsigned(total, m_dwTotalNum);
  return hasDone && hasTotal;
}

bool CVNPackGuageEvt::HandleTL1LReport(const char* report) {
  if (report == nullptr) return false;
  for (const Tl1Shape& shape : TL1_SHAPES) {
    if (std::strstr(report, shape.done) == nullptr || !Matches(report, shape.pattern)) continue;
    std::string done;
    std::string total;
    GetTL1AttrbuteString(report, shape.done, done);
    GetTL1AttrbuteString(report, shape.total, total);
    ConvertFromString(done.c_str(), m_dwDoneNum);
    ConvertFromString(total.c_str(), m_dwTotalNum);
    return m_dwTotalNum != 0;
  }
  return false;
}

unsigned int CVNPackGuageEvt::GetGuage() const {
  return Percent(m_dwDoneNum, m_dwTotalNum);
}

CVNScriptFileGuageEvt::CVNScriptFileGuageEvt() : m_dwDoneNum(0), m_dwTotalNum(0) {}

CVNScriptFileGuageEvt::~CVNScriptFileGuageEvt() = default;

bool CVNScriptFileGuageEvt::HandleReport(const char* report) {
  return !IsTL1NeID(m_dwNEID) && HandleMMLReport(report);
}

CEvtMsg* CVNScriptFileGuageEvt::Duplicate() {
  auto copy = std::make_unique<CVNScriptFileGuageEvt>();
  CopyMembersTo(*copy);
  copy->m_dwDoneNum = m_dwDoneNum;
  copy->m_dwTotalNum = m_dwTotalNum;
  return copy.release();
}

bool CVNScriptFileGuageEvt::HandleMMLReport(const char* report) {
  const char* found = report == nullptr ? nullptr : std::strstr(report, "TOTAL");
  if (found == nullptr || !Matches(report, "*EVENT*CAM*RUN*PROGRESS*")) return false;
  const std::string_view counts = found;
  if (counts.size() < SCRIPT_COUNTS_OFFSET) return false;
  return ReadTwoNumbers(counts.substr(SCRIPT_COUNTS_OFFSET), m_dwTotalNum, m_dwDoneNum);
}

unsigned int CVNScriptFileGuageEvt::GetGuage() const {
  return m_dwTotalNum <= FEW_COMMANDS ? 100 : Percent(m_dwDoneNum, m_dwTotalNum);
}

CVNScriptFileEndEvt::CVNScriptFileEndEvt() : m_dwResultCode(0), m_dwExtra(0) {}

CVNScriptFileEndEvt::~CVNScriptFileEndEvt() = default;

bool CVNScriptFileEndEvt::HandleReport(const char* report) {
  return !IsTL1NeID(m_dwNEID) && HandleMMLReport(report);
}

CEvtMsg* CVNScriptFileEndEvt::Duplicate() {
  auto copy = std::make_unique<CVNScriptFileEndEvt>();
  CopyMembersTo(*copy);
  copy->m_strResult = m_strResult;
  copy->m_strResultItem = m_strResultItem;
  copy->m_strResultText = m_strResultText;
  copy->m_dwResultCode = m_dwResultCode;
  copy->m_dwExtra = m_dwExtra;
  return copy.release();
}

bool CVNScriptFileEndEvt::HandleMMLReport(const char* report) {
  const char* result = report == nullptr ? nullptr : After(report, "RSP");
  if (result == nullptr || !Matches(report, "*EVENT*CAM*RUN*END*")) return false;
  const bool success = std::strstr(result, "SUCCESS") != nullptr;
  if (!success && std::strstr(result, "FAIL") == nullptr) return false;

  std::string text = result;
  StrCollapse(text);
  if (success) {
    m_strResult = text.substr(0, text.find(' '));
    ConvertFromString(text.c_str() + m_strResult.size(), m_dwResultCode);
    return true;
  }
  std::vector<std::string> words;
  SplitStringByChar(text.c_str(), ' ', words);
  if (words.size() < 4) return false;
  std::string resultText = m_strResultText;
  for (size_t i = 3; i < words.size(); ++i)
    resultText.append(words[i]).append(1, ' ');
  m_strResult = std::move(words[0]);
  ConvertFromString(words[1].c_str(), m_dwResultCode);
  m_strResultItem = std::move(words[2]);
  m_strResultText = std::move(resultText);
  return true;
}

}  // namespace VARNEL_COMMON
