#include "report_reader.h"

#include <framer.h>
#include <text.h>

#include <string_view>

using VARNEL_COMMON::CVNScriptFileEndEvt;

namespace {

constexpr unsigned int MML_ELEMENT = 0, TL1_ELEMENT = 0x1000000;
constexpr std::string_view BLANKS = " \t\r\n";
constexpr std::string_view DIGITS = "0123456789";

// The first run of characters of a set.
std::string FirstRun(std::string_view text, std::string_view set) {
  text.remove_prefix(std::min(text.find_first_of(set), text.size()));
  return std::string(text.substr(0, text.find_first_not_of(set)));
}

std::string FirstWord(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
  return std::string(text.substr(0, text.find_first_of(BLANKS)));
}

bool TakeHead(std::string_view& line, std::string_view head) {
  if (line.substr(0, head.size()) != head) return false;
  line.remove_prefix(head.size());
  return true;
}

// "+++ NE-WEST ..." and "TASK_ID = 41" -> NE-WEST, 41
LoadName MmlName(std::string_view report) {
  LoadName name;
  VARNEL_TL1::LineReader lines(report);
  for (std::string_view line; lines.Next(line);) {
    if (name.sid.empty() && TakeHead(line, "+++")) name.sid = FirstWord(line);
    if (name.load.empty() && TakeHead(line, "TASK_ID")) name.load = FirstRun(line, DIGITS);
  }
  return name;
}

// "FILES_DONE=2,FILES_TOTAL=8" has no AID.
std::string AidOf(const VARNEL_TL1::QuotedText& text) {
  std::string aid = VARNEL_TL1::Unescaped(text.Aid());
  return aid.find('=') == std::string::npos ? aid : "";
}

}  // namespace

ReportReader::ReportReader(Language language, std::vector<std::string> keys)
    : m_language(language), m_keys(std::move(keys)) {
  if (m_keys.empty()) m_keys.emplace_back();
  m_package.m_dwNEID = language == Language::Tl1 ? TL1_ELEMENT : MML_ELEMENT;
}

std::vector<ReportEvent> ReportReader::Read(const Report& report) {
  std::vector<ReportEvent> events;
  if (!IsWanted(report.text.c_str())) return events;
  if (m_language == Language::Tl1) {
    ReadTl1(report, events);
  } else {
    ReadMml(report, events);
  }
  return events;
}

bool ReportReader::IsWanted(const char* report) {
  for (const std::string& key : m_keys) {
    m_any.m_strEvtKey = key;
    if (m_any.IsMyEvt(report)) return true;
  }
  return false;
}

// Every event examines the report, as several may recognise it.
void ReportReader::ReadMml(const Report& report, std::vector<ReportEvent>& events) {
  const LoadName name = MmlName(report.text);
  ReadPackage(name, report.text, events);
  ReadScript(name, report, events);
}

// A message can report several loads, each on a quoted line; the library reads only the first one of a text.
void ReportReader::ReadTl1(const Report& report, std::vector<ReportEvent>& events) {
  VARNEL_TL1::Framer framer;
  framer.Append(report.text);
  framer.Finish();
  VARNEL_TL1::Message message;
  framer.Next(message);
  LoadName name{std::string(message.sid), ""};
  VARNEL_TL1::LineReader lines(message.text);
  VARNEL_TL1::QuotedText text;
  std::string firstAid;
  for (std::string_view line; lines.Next(line);) {
    const std::string_view quoted = lines.Quoted();
    if (!text.Read(quoted)) continue;
    name.load = AidOf(text);
    if (firstAid.empty()) firstAid = name.load;
    ReadPackage(name, std::string(message.verb).append("\n").append(quoted), events);
  }
  name.load = firstAid;
  if (events.empty()) ReadPackage(name, report.text, events);
}

bool ReportReader::ReadPackage(const LoadName& name, const std::string& text, std::vector<ReportEvent>& events) {
  const auto known = m_loads.find(name);
  m_package.m_dwDoneNum = known == m_loads.end() ? 0 : known->second.first;
  m_package.m_dwTotalNum = known == m_loads.end() ? 0 : known->second.second;
  if (!m_package.HandleReport(text.c_str())) return false;
  m_loads[name] = {m_package.m_dwDoneNum, m_package.m_dwTotalNum};
  ReportEvent event(ReportEvent::Kind::Package, name);
  event.done = m_package.m_dwDoneNum;
  event.total = m_package.m_dwTotalNum;
  event.percent = m_package.GetGuage();
  events.push_back(event);
  return true;
}

// Counts need a character after them; the text of an end result extends to the end of the report.
void ReportReader::ReadScript(const LoadName& name, const Report& report, std::vector<ReportEvent>& events) {
  if (m_script.HandleReport(report.text.c_str())) {
    ReportEvent event(ReportEvent::Kind::Script, name);
    event.done = m_script.m_dwDoneNum;
    event.total = m_script.m_dwTotalNum;
    event.percent = m_script.GetGuage();
    events.push_back(event);
  }
  CVNScriptFileEndEvt end;
  if (!end.HandleReport(report.text.substr(0, report.bodyLength).c_str())) return;
  ReportEvent event(ReportEvent::Kind::End, name);
  event.result = end.m_strResult;
  event.code = end.m_dwResultCode;
  event.failed = !end.m_strResultText.empty();  // only a failure has a text, and never an empty one
  event.item = end.m_strResultItem;
  event.text = end.m_strResultText.substr(0, end.m_strResultText.size() - (event.failed ? 1 : 0));  // ends in a blank
  events.push_back(event);
}
