// Reports: recognising their shape and reading what they tell.
#include <evtmsg.h>
#include <re2/re2.h>
#include <str.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <regex>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "allocations.h"
#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int TL1_ELEMENT = 0x1000000;
constexpr size_t REPORT_SIZE = 300;

// Recognised or not, first number, second number.
using Counts = std::tuple<bool, unsigned int, unsigned int>;
constexpr Counts UNRECOGNISED{false, 0, 0};

// What the shapes of one kind of report look like: the pieces that must occur in their order, what to search for the
// numbers with, and how to read them.
struct Shape {
  std::vector<const char*> pieces;
  const char* expression;
  const char* firstFormat;
  const char* secondFormat;  // null where the first reads both
};

using Shapes = std::vector<Shape>;

const Shapes MML = {
    {{"EVT_SFTM_CPYFILE_PROGRESS", "DONE_NUM", "TOTAL_NUM"},
     "EVT_SFTM_CPYFILE_PROGRESS[^\\x00]*?DONE_NUM[^\\x00]*?TOTAL_NUM\\s+(\\d+)\\s+(\\d+)\\s+\\S",
     "TOTAL_NUM%u%u",
     nullptr},
    {{"status=completed", "done=", "total="},
     "status=completed[^\\x00]*?done=(\\d+)[^\\x00]*?total=(\\d+)",
     "done=%u",
     "total=%u"},
};

const Shapes TL1 = {
    {{"FILES_DONE=", "FILES_TOTAL="},
     "FILES_DONE=(\\d+)[^\\x00]*?FILES_TOTAL=(\\d+)",
     "FILES_DONE=%u",
     "FILES_TOTAL=%u"},
    {{"REPT EVT PROGRESS", "TRANSFEREDFILES=", "TOTALNUM="},
     "REPT EVT PROGRESS[^\\x00]*?TRANSFEREDFILES=(\\d+)[^\\x00]*?TOTALNUM=(\\d+)",
     "TRANSFEREDFILES=%u",
     "TOTALNUM=%u"},
    {{"SLOTSDONE=", "SLOTSTTL="}, "SLOTSDONE=(\\d+)[^\\x00]*?SLOTSTTL=(\\d+)", "SLOTSDONE=%u", "SLOTSTTL=%u"},
};

// The total comes first.
const Shapes SCRIPT = {
    {{"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL"},
     "EVENT[^\\x00]*?CAM[^\\x00]*?RUN[^\\x00]*?PROGRESS[^\\x00]*?TOTAL  DONE_NUM\\s+(\\d+)\\s+(\\d+)\\s+\\S",
     "TOTAL  DONE_NUM%u%u",
     nullptr},
};

RE2::Options Bytes() {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);
  return options;
}

const RE2& Prepared(const char* expression) {
  static std::vector<std::unique_ptr<RE2>> expressions;
  return *expressions.emplace_back(std::make_unique<RE2>(expression, Bytes()));
}

auto ByRe2(const Shapes& shapes, const std::string& report) {
  std::vector<const RE2*> expressions;
  for (const Shape& shape : shapes)
    expressions.push_back(&Prepared(shape.expression));
  return [expressions, &report] {
    Counts counts = UNRECOGNISED;
    auto& [recognised, first, second] = counts;
    for (const RE2* expression : expressions) {
      recognised = RE2::PartialMatch(report, *expression, &first, &second);
      if (recognised) break;
    }
    return counts;
  };
}

unsigned int NumberOf(const std::csub_match& match) {
  return static_cast<unsigned int>(std::stoul(match.str()));
}

auto ByRegex(const Shapes& shapes, const std::string& report) {
  std::vector<std::regex> expressions;
  for (const Shape& shape : shapes)
    expressions.emplace_back(shape.expression);
  return [expressions, &report]() -> Counts {
    std::cmatch match;
    for (const std::regex& expression : expressions) {
      if (std::regex_search(report.c_str(), match, expression)) return {true, NumberOf(match[1]), NumberOf(match[2])};
    }
    return UNRECOGNISED;
  };
}

bool Holds(const char* report, const std::vector<const char*>& pieces) {
  for (const char* piece : pieces) {
    report = std::strstr(report, piece);
    if (report == nullptr) return false;
    report += std::strlen(piece);
  }
  return true;
}

const char* At(const char* report, const char* format) {
  const std::string_view key(format, std::strcspn(format, "%"));
  const void* found = memmem(report, std::strlen(report), key.data(), key.size());
  return static_cast<const char*>(found);
}

Counts ByScanf(const Shapes& shapes, const char* report) {
  Counts counts = UNRECOGNISED;
  auto& [recognised, first, second] = counts;
  for (const Shape& shape : shapes) {
    if (!Holds(report, shape.pieces)) continue;
    if (shape.secondFormat == nullptr) {
      recognised = std::sscanf(At(report, shape.firstFormat), shape.firstFormat, &first, &second) == 2;
    } else {
      recognised = std::sscanf(At(report, shape.firstFormat), shape.firstFormat, &first) == 1 &&
                   std::sscanf(At(report, shape.secondFormat), shape.secondFormat, &second) == 1;
    }
    return counts;
  }
  return counts;
}

// Searches for the last two pieces of a shape.
size_t TwoSearches(const Shape& shape, const char* report) {
  size_t found = 0;
  for (size_t i = shape.pieces.size() - 2; i < shape.pieces.size(); ++i)
    found += std::strstr(report, shape.pieces[i]) != nullptr;
  return found;
}

// Searches for the first piece of each shape, all absent.
size_t SearchesInVain(const Shapes& shapes, const char* report) {
  size_t found = 0;
  for (const Shape& shape : shapes)
    found += std::strstr(report, shape.pieces.front()) != nullptr;
  return found;
}

// The least that it takes to recognise the shape of that number, or none of them.
template <typename Against>
void LimitOf(Against& row, const Shapes& shapes, size_t shape, const std::string& report) {
  const char* text = report.c_str();
  if (shape < shapes.size()) {
    row.Limit("two searches", [&looked = shapes[shape], text] { return TwoSearches(looked, text); });
  } else {
    row.Limit("one search for each shape", [&shapes, text] { return SearchesInVain(shapes, text); });
  }
}

// A report of the usual size with a shape in it; without one where `shape` is empty.
const std::string& Report(const std::string& shape) {
  std::string report = "+++    NE-WEST        2026-01-15 10:01:00\r\n";
  const size_t filled = (REPORT_SIZE - report.size() - shape.size()) / 2;
  const std::string fill = std::string("TASK_ID = 41, SOURCE = 10.0.0.7, board of 3-5 in use\r\n") +
                           "operator = admin, path = /load/3/vnctl201.bin, version = 1.02.20260115, mode = fast\r\n";
  report += fill.substr(0, filled);
  report += shape;
  report += fill.substr(0, filled);
  return Keep(report + "\r\n---    END\r\n");
}

template <typename Event>
auto Handling(Event& event, const std::string& report, unsigned int Event::*first, unsigned int Event::*second) {
  return [&event, &report, first, second]() -> Counts {
    const bool recognised = event.HandleReport(report.c_str());
    return recognised ? Counts(true, event.*first, event.*second) : UNRECOGNISED;
  };
}

template <typename Ours>
void Progress(const std::string& name, const std::string& report, const Shapes& shapes, size_t shape, Ours ours) {
  auto row = Row("HandleReport", name, report.size(), ours);
  row.Peer("RE2", ByRe2(shapes, report))
      .Peer("strstr and sscanf", [&report, &shapes] { return ByScanf(shapes, report.c_str()); })
      .Obvious("std::regex", ByRegex(shapes, report));
  LimitOf(row, shapes, shape, report);
}

void Package(const std::string& name, unsigned int element, const Shapes& shapes, size_t shape,
             const std::string& text) {
  static std::vector<std::unique_ptr<CVNPackGuageEvt>> events;
  auto& event = *events.emplace_back(std::make_unique<CVNPackGuageEvt>());
  event.m_dwNEID = element;
  const std::string& report = Report(text);
  Progress(name, report, shapes, shape,
           Handling(event, report, &CVNPackGuageEvt::m_dwDoneNum, &CVNPackGuageEvt::m_dwTotalNum));
}

void Script(const std::string& name, size_t shape, const std::string& text) {
  static CVNScriptFileGuageEvt event;
  const std::string& report = Report(text);
  Progress(name, report, SCRIPT, shape,
           Handling(event, report, &CVNScriptFileGuageEvt::m_dwTotalNum, &CVNScriptFileGuageEvt::m_dwDoneNum));
}

// What the end of a script run tells.
struct End {
  bool recognised = false;
  std::string result;
  std::string item;
  std::string text;
  unsigned int code = 0;

  auto Fields() const { return std::tie(recognised, result, item, text, code); }
};

auto EndByUs(const std::string& report) {
  return [&report, event = std::make_shared<CVNScriptFileEndEvt>(), recognised = std::make_shared<bool>()] {
    event->m_strResultText.clear();
    *recognised = event->HandleReport(report.c_str());
    return std::tie(std::as_const(*recognised), std::as_const(event->m_strResult),
                    std::as_const(event->m_strResultItem), std::as_const(event->m_strResultText),
                    std::as_const(event->m_dwResultCode));
  };
}

// The words behind the item, each with one blank behind it.
void Words(std::string_view rest, std::string& text) {
  text.clear();
  while (true) {
    const size_t start = rest.find_first_not_of(" \t\r\n\v\f");
    if (start == std::string_view::npos) return;
    rest.remove_prefix(start);
    const size_t length = std::min(rest.find_first_of(" \t\r\n\v\f"), rest.size());
    text.append(rest.substr(0, length)).append(1, ' ');
    rest.remove_prefix(length);
  }
}

constexpr char SUCCEEDED[] = "EVENT[^\\x00]*?CAM[^\\x00]*?RUN[^\\x00]*?END[^\\x00]*?RSP\\s+(SUCCESS)\\s+(\\d+)";
constexpr char FAILED[] =
    "EVENT[^\\x00]*?CAM[^\\x00]*?RUN[^\\x00]*?END[^\\x00]*?RSP\\s+(FAIL)\\s+(\\d+)\\s+(\\S+)([^\\x00]*)";

auto EndByRe2(const std::string& report) {
  return [&report, &success = Prepared(SUCCEEDED), &failure = Prepared(FAILED), end = std::make_shared<End>()] {
    re2::StringPiece rest;
    end->recognised = RE2::PartialMatch(report, success, &end->result, &end->code);
    if (!end->recognised) {
      end->recognised = RE2::PartialMatch(report, failure, &end->result, &end->code, &end->item, &rest);
      if (end->recognised) Words({rest.data(), rest.size()}, end->text);
    }
    return end->Fields();
  };
}

auto EndByRegex(const std::string& report) {
  return [&report, success = std::regex(SUCCEEDED), failure = std::regex(FAILED), end = std::make_shared<End>()] {
    std::cmatch match;
    end->recognised = std::regex_search(report.c_str(), match, success);
    const bool failed = !end->recognised && std::regex_search(report.c_str(), match, failure);
    end->recognised |= failed;
    if (!end->recognised) return end->Fields();
    end->result = match[1].str();
    end->code = NumberOf(match[2]);
    if (failed) {
      end->item = match[3].str();
      Words(match[4].str(), end->text);
    }
    return end->Fields();
  };
}

void ScanEnd(const char* report, End& end) {
  end.recognised = false;
  if (!Holds(report, {"EVENT", "CAM", "RUN", "END"})) return;
  const char* behind = std::strstr(report, "RSP");
  if (behind == nullptr) return;
  const bool success = std::strstr(behind, "SUCCESS") != nullptr;
  if (!success && std::strstr(behind, "FAIL") == nullptr) return;
  char result[16], item[16];
  int length = 0;
  const int read = std::sscanf(behind, "RSP%15s%u%15s%n", result, &end.code, item, &length);
  end.recognised = read >= (success ? 2 : 3);
  if (!end.recognised) return;
  end.result = result;
  if (success) return;
  end.item = item;
  Words(behind + length, end.text);
}

auto EndByScanf(const std::string& report) {
  return [&report, end = std::make_shared<End>()] {
    ScanEnd(report.c_str(), *end);
    return end->Fields();
  };
}

void ScriptEnd(const std::string& name, size_t shape, const std::string& text) {
  static const Shapes END = {{{"EVENT", "CAM", "RUN", "END", "RSP"}, "", "", ""}};
  const std::string& report = Report(text);
  auto row = Row("HandleReport", name, report.size(), EndByUs(report));
  row.Peer("RE2", EndByRe2(report))
      .Peer("strstr and sscanf", EndByScanf(report))
      .Obvious("std::regex", EndByRegex(report));
  LimitOf(row, END, shape, report);
}

template <typename Event>
void MustNotAllocateFor(const char* report, unsigned int element) {
  Event event;
  event.m_dwNEID = element;
  for (const char* key :
       {"a key that is too long to be held in place", "*a key*that is too long to be held in place*"}) {
    event.m_strEvtKey = key;
    MustNotAllocate("IsMyEvt", [&] { return event.IsMyEvt(report); });
  }
  MustNotAllocate("HandleReport", [&] { return event.HandleReport(report); });
}

// Nothing is allocated on any path that recognises nothing.
void CheckAllocations(const char* report) {
  MustNotAllocateFor<CVNPackGuageEvt>(report, 0);
  MustNotAllocateFor<CVNPackGuageEvt>(report, TL1_ELEMENT);
  MustNotAllocateFor<CVNScriptFileGuageEvt>(report, 0);
  MustNotAllocateFor<CVNScriptFileEndEvt>(report, 0);
  MustNotAllocate("strmcmp", [&] { return strmcmp(report, "*of*absent*from every report of this text*"); });
  MustNotAllocate("strmcmpnocase", [&] { return strmcmpnocase(report, "*OF*absent*from every report of this text*"); });
  unsigned int number = 0;
  MustNotAllocate("ConvertFromString", [&] { ConvertFromString(report, number); });
}

}  // namespace

void AddEvents() {
  for (const size_t size : {size_t{0}, REPORT_SIZE, size_t{64 << 10}})
    CheckAllocations(size == 0 ? "" : ReportText(size).c_str());

  Package("MML columns", 0, MML, 0,
          "EVENT  EVT_SFTM_CPYFILE_PROGRESS\r\n\r\nDONE_NUM   TOTAL_NUM\r\n3          12\r\n");
  Package("MML status", 0, MML, 1, "load package status=completed done=2 total=4\r\n");
  Package("MML, unrecognised", 0, MML, MML.size(), "");
  Package("TL1 files", TL1_ELEMENT, TL1, 0, "A  711 REPT EVT SWDL\r\n   \"FILES_DONE=5,FILES_TOTAL=8\"\r\n");
  Package("TL1 transferred files", TL1_ELEMENT, TL1, 1,
          "A  701 REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n");
  Package("TL1 slots", TL1_ELEMENT, TL1, 2, "A  721 REPT EVT SWACT\r\n   \"SLOTSDONE=2,SLOTSTTL=3\"\r\n");
  Package("TL1, unrecognised", TL1_ELEMENT, TL1, TL1.size(), "");
  Script("script progress", 0, "EVENT  CAM RUN PROGRESS\r\n\r\nTOTAL  DONE_NUM\r\n20     15\r\n");
  Script("script progress, unrecognised", 1, "");
  ScriptEnd("script end, success", 0, "EVENT  CAM RUN END\r\nRSP SUCCESS 0\r\n");
  ScriptEnd("script end, failure", 0, "EVENT  CAM RUN END\r\nRSP FAIL 1203 17 board 3 does not answer\r\n");
  ScriptEnd("script end, unrecognised", 1, "");
}

}  // namespace VARNEL_BENCH
