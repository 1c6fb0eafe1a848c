// Wildcard matches and the events that wait with them.
#include <evtmsg.h>
#include <fnmatch.h>
#include <publicdata.h>
#include <re2/re2.h>
#include <re2/set.h>
#include <str.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "inputs.h"
#include "productdata.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr size_t WAITING = 1000;

RE2::Options Bytes(bool caseSensitive = true) {
  RE2::Options options;
  options.set_encoding(RE2::Options::EncodingLatin1);
  options.set_dot_nl(true);
  options.set_case_sensitive(caseSensitive);
  return options;
}

// The pattern as a regular expression for a full match.
std::string Expression(const std::string& pattern) {
  std::string expression;
  for (const char c : pattern)
    expression += c == '*' ? ".*" : RE2::QuoteMeta(std::string(1, c));
  return expression;
}

const RE2& Prepared(const std::string& pattern, bool caseSensitive = true) {
  static std::vector<std::unique_ptr<RE2>> expressions;
  return *expressions.emplace_back(std::make_unique<RE2>(Expression(pattern), Bytes(caseSensitive)));
}

bool Same(char a, char b) {
  return a == b;
}

bool SameNoCase(char a, char b) {
  return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
}

// Goes back to the last "*" at every mismatch.
template <bool (*Equal)(char, char)>
bool Backtrack(const char* text, const char* pattern) {
  const char* star = nullptr;
  const char* resume = text;
  while (*text != '\0') {
    if (*pattern == '*') {
      star = ++pattern;
      resume = text;
    } else if (*pattern != '\0' && Equal(*pattern, *text)) {
      ++pattern;
      ++text;
    } else if (star != nullptr) {
      pattern = star;
      text = ++resume;
    } else {
      return false;
    }
  }
  while (*pattern == '*')
    ++pattern;
  return *pattern == '\0';
}

std::string Number(size_t i) {
  const std::string digits = std::to_string(i);
  return std::string(4 - digits.size(), '0') + digits;
}

std::string BoardName(size_t i) {
  return "BOARD-" + Number(i);
}

// A report that names a board in its middle. Boards from WAITING on are awaited by nobody.
const std::string& ReportOf(size_t size, size_t board) {
  std::string report = ReportText(size);
  const std::string middle = ' ' + BoardName(board) + " PROGRESS ";
  return Keep(report.replace(size / 2, middle.size(), middle));
}

const std::string& ReportWithout(size_t size) {
  return ReportText(size);
}

// Everything that waits, for the library and for those beside it.
struct Waiting {
  explicit Waiting(bool wildcards) : set(Bytes(), wildcards ? RE2::ANCHOR_BOTH : RE2::UNANCHORED) {
    for (size_t i = 0; i < WAITING; ++i) {
      pieces.push_back(BoardName(i) + (wildcards ? "" : " PROGRESS"));
      keys.push_back(wildcards ? "*EVENT*" + pieces.back() + "*PROGRESS*" : pieces.back());
      patterns.push_back(wildcards ? keys.back() : '*' + keys.back() + '*');
      events.push_back(std::make_unique<CVNPackGuageEvt>());
      events.back()->m_strEvtKey = keys.back();
      expressions.push_back(std::make_unique<RE2>(Expression(keys.back()), Bytes()));
      set.Add(Expression(keys.back()), nullptr);
    }
    set.Compile();
  }

  std::vector<std::string> keys;
  std::vector<std::string> pieces;    // the longest piece of each key
  std::vector<std::string> patterns;  // for a match with the whole report
  std::vector<std::unique_ptr<CEvtMsg>> events;
  std::vector<std::unique_ptr<RE2>> expressions;
  RE2::Set set;
};

template <typename Range, typename Claims>
size_t Count(const Range& range, Claims claims) {
  return static_cast<size_t>(std::count_if(range.begin(), range.end(), claims));
}

void Offer(const Waiting& all, bool wildcards, const std::string& name, const std::string& report) {
  const char* text = report.c_str();
  Row("IsMyEvt", "1000 " + name, report.size() * WAITING,
      [&all, text] { return Count(all.events, [text](auto& event) { return event->IsMyEvt(text); }); })
      .Peer("fnmatch",
            [&all, text] {
              return Count(all.patterns, [text](auto& pattern) { return fnmatch(pattern.c_str(), text, 0) == 0; });
            })
      .Peer("RE2",
            [&all, &report, wildcards] {
              return Count(all.expressions, [&report, wildcards](auto& expression) {
                return wildcards ? RE2::FullMatch(report, *expression) : RE2::PartialMatch(report, *expression);
              });
            })
      .Obvious("backtracking",
               [&all, &report] {
                 return Count(all.keys, [&report](auto& key) {
                   return Backtrack<Same>(report.c_str(), key.c_str()) || report.find(key) != std::string::npos;
                 });
               })
      // Knows all keys at once, where an event knows its own only.
      .Other("RE2::Set",
             [&all, &report, claims = std::vector<int>()]() mutable {
               all.set.Match(report, &claims);
               return claims.size();
             })
      .Limit("strstr",
             [&all, text] {
               return Count(all.pieces, [text](auto& piece) { return std::strstr(text, piece.c_str()) != nullptr; });
             })
      .Limit("memmem", [&all, &report] {
        return Count(all.pieces, [&report](auto& piece) {
          return memmem(report.data(), report.size(), piece.data(), piece.size()) != nullptr;
        });
      });
}

void OfferReports(bool wildcards) {
  static const Waiting waiting[] = {Waiting(false), Waiting(true)};
  const Waiting& all = waiting[wildcards];
  const std::string kind = wildcards ? "wildcard keys, " : "plain keys, ";
  for (const size_t size : {200, 2 << 10, 64 << 10}) {
    Offer(all, wildcards, kind + SizeName(size) + ", one claims", ReportOf(size, WAITING / 2));
    Offer(all, wildcards, kind + SizeName(size) + ", nearly claimed", ReportOf(size, WAITING));
    Offer(all, wildcards, kind + SizeName(size) + ", nobody claims", ReportWithout(size));
  }
}

void Wildcard(const std::string& name, const std::string& text, const std::string& pattern, const std::string& piece) {
  const RE2& expression = Prepared(pattern);
  Row("strmcmp", name, text.size(), [&text, pattern] { return strmcmp(text.c_str(), pattern.c_str()) != 0; })
      .Peer("fnmatch", [&text, pattern] { return fnmatch(pattern.c_str(), text.c_str(), 0) == 0; })
      .Peer("RE2", [&text, &expression] { return RE2::FullMatch(text, expression); })
      .Obvious("backtracking", [&text, pattern] { return Backtrack<Same>(text.c_str(), pattern.c_str()); })
      .Limit("strstr", [&text, piece] { return std::strstr(text.c_str(), piece.c_str()) != nullptr; })
      .Limit("memmem",
             [&text, piece] { return memmem(text.data(), text.size(), piece.data(), piece.size()) != nullptr; });
}

void Wildcards(size_t size) {
  const std::string pattern = "*EVENT*BOARD-0417*PROGRESS*";
  Wildcard(SizeName(size) + ", match", ReportOf(size, 417), pattern, "BOARD-0417");
  Wildcard(SizeName(size) + ", near miss", ReportOf(size, 418), pattern, "BOARD-0417");
  Wildcard(SizeName(size) + ", miss", ReportWithout(size), pattern, "BOARD-0417");
}

// The least that a search without case can do: looks once at every byte for one letter in both cases. The blocks have
// a fixed size so that the compiler turns them into vector instructions.
size_t CountLetter(std::string_view text, char lower) {
  constexpr size_t BLOCK = 128;
  size_t count = 0;
  for (; text.size() >= BLOCK; text.remove_prefix(BLOCK)) {
    unsigned char found = 0;
    for (size_t i = 0; i < BLOCK; ++i)
      found = static_cast<unsigned char>(found + ((text[i] | 0x20) == lower));
    count += found;
  }
  for (const char c : text)
    count += (c | 0x20) == lower;
  return count;
}

auto WildcardNoCase(const std::string& name, const std::string& text, const std::string& pattern) {
  const RE2& expression = Prepared(pattern, false);
  return Row("strmcmpnocase", name, text.size(),
             [&text, pattern] { return strmcmpnocase(text.c_str(), pattern.c_str()) != 0; })
      .Peer("fnmatch", [&text, pattern] { return fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD) == 0; })
      .Peer("RE2", [&text, &expression] { return RE2::FullMatch(text, expression); })
      .Obvious("backtracking", [&text, pattern] { return Backtrack<SameNoCase>(text.c_str(), pattern.c_str()); })
      .Limit("looking at every byte", [&text] { return CountLetter(text, 'b'); });
}

void Contains(const std::string& name, const std::string& text, const std::string& piece) {
  WildcardNoCase(name, text, '*' + piece + '*').Peer("Boost", [&text, piece] {
    return boost::icontains(text, piece, std::locale::classic());
  });
}

void WildcardsNoCase(size_t size) {
  const std::string last = "Board-0417";
  std::string text = ReportText(size);
  Contains(SizeName(size) + ", match at the end", Keep(text.replace(size - last.size(), last.size(), last)),
           "bOARD-0417");
  Contains(SizeName(size) + ", miss", ReportText(size), "bOARD-0417");
  WildcardNoCase(SizeName(size) + ", 64 a and b in a text of a", Keep(std::string(size, 'a')),
                 '*' + std::string(64, 'a') + 'b');
}

bool IsLikeBoardName(const std::string& name, const std::string& pattern) {
  const std::locale& classic = std::locale::classic();
  if (pattern.front() != '*') return boost::iequals(name, pattern, classic);
  return boost::icontains(name, std::string_view(pattern).substr(1, pattern.size() - 2), classic);
}

const RE2& SccExpression() {
  std::string expression;
  for (const std::string_view pattern : SCC_BOARD_NAMES)
    expression += (expression.empty() ? "" : "|") + Expression(std::string(pattern));
  static const RE2 prepared(expression, Bytes(false));
  return prepared;
}

template <typename Matches>
auto CountBoards(const std::vector<std::string>& names, Matches matches) {
  return [&names, matches] {
    return Count(names, [&matches](auto& name) {
      return std::any_of(std::begin(SCC_BOARD_NAMES), std::end(SCC_BOARD_NAMES),
                         [&](std::string_view pattern) { return matches(name, pattern.data()); });
    });
  };
}

void Boards(const std::string& title, const std::vector<std::string>& names) {
  Row("IsSccBdName", title, 0, [&names] { return Count(names, IsSccBdName); })
      .Peer("fnmatch",
            CountBoards(names, [](auto& name,
                                  const char* pattern) { return fnmatch(pattern, name.c_str(), FNM_CASEFOLD) == 0; }))
      .Peer("RE2",
            [&names, &expression = SccExpression()] {
              return Count(names, [&](auto& name) { return RE2::FullMatch(name, expression); });
            })
      .Peer("Boost", CountBoards(names, IsLikeBoardName))
      .Obvious("backtracking",
               CountBoards(
                   names, [](auto& name, const char* pattern) { return Backtrack<SameNoCase>(name.c_str(), pattern); }))
      .Limit("looking at every byte", [&names] {
        size_t count = 0;
        for (const std::string& name : names)
          count += CountLetter(name, 'v');
        return count;
      });
}

void GrowthPoints(size_t size) {
  const std::string& text = ReportText(size);
  Growth("strmcmp", size, [&text] { return strmcmp(text.c_str(), "*EVENT*BOARD-0417*PROGRESS*"); });
  Growth("strmcmpnocase", size, [&text] { return strmcmpnocase(text.c_str(), "*event*board-0417*progress*"); });
  static CVNPackGuageEvt event;
  event.m_strEvtKey = "*EVENT*BOARD-0417*PROGRESS*";
  Growth("IsMyEvt", size, [&text] { return event.IsMyEvt(text.c_str()); });
}

}  // namespace

void AddMatching() {
  OfferReports(false);
  OfferReports(true);
  for (const size_t size : {200, 2 << 10, 64 << 10, 4 << 20})
    Wildcards(size);
  for (const size_t size : {4 << 10, 64 << 10, 4 << 20})
    WildcardsNoCase(size);
  static const std::vector<std::string> CONTROL = {"VNSCC01", "tnsce", "VMCU2", "VNCTL201", "vnmcp02", "VNMCX10A",
                                                   "VNSTG01", "VCU",   "vcue",  "VMUA",     "61VCU",   "VB22"};
  static const std::vector<std::string> OTHERS = {"VNETH08", "VNOPT16", "vnpwr1", "VNFAN03", "VNAUX",  "VNTRB4",
                                                  "VNCTL30", "VCUX",    "VB23",   "vnmcp03", "BOARD7", "VNMUX2"};
  Boards("12 control boards", CONTROL);
  Boards("12 other boards", OTHERS);
  for (const size_t size : GROWTH_SIZES)
    GrowthPoints(size);
}

}  // namespace VARNEL_BENCH
