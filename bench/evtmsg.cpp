// Events: claiming a report, and reading its numbers.
#include <evtmsg.h>
#include <re2/set.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "bench.h"
#include "patterns.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int TL1_ELEMENT = 0x1000000;
constexpr size_t WAITING = 1000;
constexpr size_t REPORT_SIZE = 300;

std::string BoardName(size_t i) {
  return "BOARD-" + std::to_string(1000 + i);
}

// Events that wait, each for another board, and their peers.
struct Waiting {
  explicit Waiting(bool wildcards) : set(AnyBytes(), wildcards ? RE2::ANCHOR_BOTH : RE2::UNANCHORED) {
    for (size_t i = 0; i < WAITING; ++i) {
      pieces.push_back(BoardName(i) + (wildcards ? "" : " PROGRESS"));
      events.push_back(std::make_unique<CEvtMsg>());
      std::string& key = events.back()->m_strEvtKey;
      key = wildcards ? "*EVENT*" + pieces.back() + "*PROGRESS*" : pieces.back();
      patterns.push_back(wildcards ? key : '*' + key + '*');
      expressions.push_back(std::make_unique<RE2>(Expression(patterns.back()), AnyBytes()));
      set.Add(Expression(key), nullptr);
    }
    set.Compile();
  }

  std::vector<std::unique_ptr<CEvtMsg>> events;
  std::vector<std::string> patterns;
  std::vector<std::string> pieces;  // the longest piece of each key
  std::vector<std::unique_ptr<RE2>> expressions;
  RE2::Set set;
};

template <typename Range, typename Claims>
auto CountIf(const Range& range, Claims claims) {
  return [&range, claims] { return std::count_if(range.begin(), range.end(), claims); };
}

auto Offer(const std::string& name, const Waiting& all, const std::string& report) {
  const char* text = report.c_str();
  return Row("IsMyEvt", name, CountIf(all.events, [text](auto& event) { return event->IsMyEvt(text); }))
      .Peer("RE2",
            CountIf(all.expressions, [&report](auto& expression) { return RE2::FullMatch(report, *expression); }))
      .Peer("plain loop",
            CountIf(all.patterns, [text](auto& pattern) { return PlainMatch<SameChar>(text, pattern.c_str()); }));
}

void OfferReports(const std::string& kind, const Waiting& all) {
  const std::string& unclaimed = ReportText(2048);
  std::string text = unclaimed;
  const std::string& claimed = Keep(text.replace(text.size() / 2, 20, BoardName(WAITING / 2) + " PROGRESS "));
  Offer("1000 " + kind + " keys, 2 KB, none claims", all, unclaimed);
  Offer("1000 " + kind + " keys, 2 KB, one claims", all, claimed)
      // One automaton for all keys, while an event knows only its own.
      .Other("RE2::Set",
             [&all, &claimed, claims = std::vector<int>()]() mutable {
               all.set.Match(claimed, &claims);
               return static_cast<std::ptrdiff_t>(claims.size());
             })
      .Limit("strstr", CountIf(all.pieces, [&claimed](auto& piece) {
               return std::strstr(claimed.c_str(), piece.c_str()) != nullptr;
             }));
}

// A report of the usual size that contains `part`.
const std::string& Report(const std::string& part) {
  const std::string fill =
      "TASK_ID = 41, SOURCE = 10.0.0.7, board of 3-5 in use\r\n"
      "operator = admin, path = /load/3/vnctl201.bin, version = 1.02.20260115, mode = fast\r\n";
  const std::string around = fill.substr(0, (REPORT_SIZE - part.size()) / 2);
  return Keep("+++    NE-WEST        2026-01-15 10:01:00\r\n" + around + part + around + "\r\n---    END\r\n");
}

// Recognised or not, first number, second number.
using Counts = std::tuple<bool, unsigned int, unsigned int>;

// One form of a report: the pieces that must occur in this order, and how its two numbers are read.
struct Shape {
  std::vector<const char*> pieces;
  const char* expression;
  const char* first;   // formats of sscanf
  const char* second;  // null if the first reads both
};

using Shapes = std::vector<Shape>;

const Shapes MML = {
    {{"EVT_SFTM_CPYFILE_PROGRESS", "DONE_NUM", "TOTAL_NUM"},
     "EVT_SFTM_CPYFILE_PROGRESS.*?DONE_NUM.*?TOTAL_NUM\\s+(\\d+)\\s+(\\d+)\\s+\\S",
     "TOTAL_NUM%u%u",
     nullptr},
    {{"status=completed", "done=", "total="}, "status=completed.*?done=(\\d+).*?total=(\\d+)", "done=%u", "total=%u"},
};

const Shapes TL1 = {
    {{"FILES_DONE=", "FILES_TOTAL="}, "FILES_DONE=(\\d+).*?FILES_TOTAL=(\\d+)", "FILES_DONE=%u", "FILES_TOTAL=%u"},
    {{"REPT EVT PROGRESS", "TRANSFEREDFILES=", "TOTALNUM="},
     "REPT EVT PROGRESS.*?TRANSFEREDFILES=(\\d+).*?TOTALNUM=(\\d+)",
     "TRANSFEREDFILES=%u",
     "TOTALNUM=%u"},
    {{"SLOTSDONE=", "SLOTSTTL="}, "SLOTSDONE=(\\d+).*?SLOTSTTL=(\\d+)", "SLOTSDONE=%u", "SLOTSTTL=%u"},
};

const Shapes SCRIPT = {
    // the total comes first
    {{"EVENT", "CAM", "RUN", "PROGRESS", "TOTAL"},
     "EVENT.*?CAM.*?RUN.*?PROGRESS.*?TOTAL  DONE_NUM\\s+(\\d+)\\s+(\\d+)\\s+\\S",
     "TOTAL  DONE_NUM%u%u",
     nullptr},
};

using Expressions = std::vector<std::unique_ptr<RE2>>;

Counts ByRe2(const Expressions& expressions, const std::string& report) {
  Counts counts;
  auto& [recognised, first, second] = counts;
  for (const auto& expression : expressions) {
    recognised = RE2::PartialMatch(report, *expression, &first, &second);
    if (recognised) break;
  }
  return counts;
}

bool Holds(const char* report, const std::vector<const char*>& pieces) {
  for (const char* piece : pieces) {
    report = std::strstr(report, piece);
    if (report == nullptr) return false;
    report += std::strlen(piece);
  }
  return true;
}

const char* Find(const char* report, const char* format) {
  return std::strstr(report, std::string(format, std::strcspn(format, "%")).c_str());
}

Counts ByScanf(const Shapes& shapes, const char* report) {
  Counts counts;
  auto& [recognised, first, second] = counts;
  for (const Shape& shape : shapes) {
    if (!Holds(report, shape.pieces)) continue;
    recognised = std::sscanf(Find(report, shape.first), shape.first, &first, &second) > 0;
    if (shape.second != nullptr) std::sscanf(Find(report, shape.second), shape.second, &second);
    break;
  }
  return counts;
}

template <typename Event>
auto Progress(const std::string& name, unsigned int element, const Shapes& shapes, const std::string& part,
              unsigned int Event::*first, unsigned int Event::*second) {
  const std::string& report = Report(part);
  auto event = std::make_shared<Event>();
  event->m_dwNEID = element;
  auto expressions = std::make_shared<Expressions>();
  for (const Shape& shape : shapes)
    expressions->push_back(std::make_unique<RE2>(shape.expression, AnyBytes()));
  return Row("HandleReport", name,
             [=, &report] {
               const bool recognised = event->HandleReport(report.c_str());
               return recognised ? Counts(true, (*event).*first, (*event).*second) : Counts();
             })
      .Peer("RE2", [=, &report] { return ByRe2(*expressions, report); })
      .Peer("strstr and sscanf", [&shapes, &report] { return ByScanf(shapes, report.c_str()); });
}

void HandleProgress() {
  const auto done = &CVNPackGuageEvt::m_dwDoneNum;
  const auto total = &CVNPackGuageEvt::m_dwTotalNum;
  Progress("MML columns", 0, MML, "EVENT  EVT_SFTM_CPYFILE_PROGRESS\r\n\r\nDONE_NUM   TOTAL_NUM\r\n3          12\r\n",
           done, total);
  Progress("TL1 transferred files", TL1_ELEMENT, TL1,
           "A  701 REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n", done, total)
      .Limit("two searches", [report = std::string(Report("TRANSFEREDFILES=4,TOTALNUM=12,"))] {
        return (std::strstr(report.c_str(), "TRANSFEREDFILES=") != nullptr) +
               (std::strstr(report.c_str(), "TOTALNUM=") != nullptr);
      });
  Progress("TL1 without progress", TL1_ELEMENT, TL1, "A  701 REPT ALM EQPT\r\n", done, total);
  Progress("script progress", 0, SCRIPT, "EVENT  CAM RUN PROGRESS\r\n\r\nTOTAL  DONE_NUM\r\n20     15\r\n",
           &CVNScriptFileGuageEvt::m_dwTotalNum, &CVNScriptFileGuageEvt::m_dwDoneNum);
}

// The words of a text, each with one blank after it.
std::string Words(std::string_view text) {
  constexpr char BLANKS[] = " \t\r\n\v\f";
  std::string words;
  for (size_t at = 0; (at = text.find_first_not_of(BLANKS, at)) != std::string_view::npos;) {
    const size_t end = std::min(text.find_first_of(BLANKS, at), text.size());
    words.append(text.substr(at, end - at)).append(1, ' ');
    at = end;
  }
  return words;
}

// Recognised or not, result code, item, words after the item.
using End = std::tuple<bool, unsigned int, std::string, std::string>;

End EndByRe2(const RE2& expression, const std::string& report) {
  End end;
  auto& [recognised, code, item, text] = end;
  re2::StringPiece rest;
  recognised = RE2::PartialMatch(report, expression, &code, &item, &rest);
  text = Words({rest.data(), rest.size()});
  return end;
}

End EndByScanf(const char* report) {
  End end;
  auto& [recognised, code, item, text] = end;
  if (!Holds(report, {"EVENT", "CAM", "RUN", "END", "RSP", "FAIL"})) return end;
  const char* response = std::strstr(report, "RSP");
  char word[16] = "";
  int length = 0;
  recognised = std::sscanf(response, "RSP FAIL%u%15s%n", &code, word, &length) == 2;
  item = word;
  text = Words(response + length);
  return end;
}

void HandleEnd() {
  const std::string& report = Report("EVENT  CAM RUN END\r\nRSP FAIL 1203 17 board 3 does not answer\r\n");
  const auto expression =
      std::make_shared<RE2>("EVENT.*?CAM.*?RUN.*?END.*?RSP\\s+FAIL\\s+(\\d+)\\s+(\\S+)(.*)", AnyBytes());
  Row("HandleReport", "script end", [&report] {
    CVNScriptFileEndEvt event;
    const bool recognised = event.HandleReport(report.c_str());
    return End(recognised, event.m_dwResultCode, event.m_strResultItem, event.m_strResultText);
  }).Peer("RE2", [expression, &report] {
      return EndByRe2(*expression, report);
    }).Peer("strstr and sscanf", [&report] { return EndByScanf(report.c_str()); });
}

auto OneOf(size_t count) {
  const std::string& report =
      Report("A  701 REPT EVT PROGRESS\r\n   \"SLOT-3:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"\r\n");
  const auto make = [](size_t number) {
    auto event = std::make_unique<CVNPackGuageEvt>();
    event->m_strEvtKey = "*REPT EVT PROGRESS*TOTALNUM=*";
    event->m_dwNEID = TL1_ELEMENT + static_cast<unsigned int>(number);
    return event;
  };
  return EachInTurn(count, make, [&report](CVNPackGuageEvt& event) {
    return event.IsMyEvt(report.c_str()) && event.HandleReport(report.c_str());
  });
}

}  // namespace

void AddEvtMsg() {
  static const Waiting plain(false);
  static const Waiting wildcards(true);
  OfferReports("plain", plain);
  OfferReports("wildcard", wildcards);
  HandleProgress();
  HandleEnd();
  Row("IsMyEvt and HandleReport", "1000000 events alive", OneOf(1000000)).Limit("one event", OneOf(1));
}

}  // namespace VARNEL_BENCH
