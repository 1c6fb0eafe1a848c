// Strings, numbers, wildcards and times.
#include <absl/strings/ascii.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#include <absl/time/time.h>
#include <fmt/chrono.h>
#include <fnmatch.h>
#include <str.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

#include "bench.h"
#include "patterns.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

// Runs an operation that changes a text in place, each time on a fresh copy in the same buffer.
template <typename Change>
auto Changing(const std::string& input, Change change) {
  return [&input, change, copy = std::string()]() mutable -> const std::string& {
    copy.assign(input);
    change(copy);
    return copy;
  };
}

auto Memcpy(const std::string& input) {
  return Changing(input, [](std::string&) {});
}

auto Trim(const std::string& name, size_t size) {
  const std::string& input =
      Keep(std::string(size / 4, ' ') + std::string(size / 2, 'x') + std::string(size / 4, '\t'));
  return Row("StrTrim", name, Changing(input, StrTrim))
      .Peer("abseil", Changing(input, [](std::string& s) { absl::StripAsciiWhitespace(&s); }))
      .Peer("Boost", Changing(input, [](std::string& s) { boost::trim(s, std::locale::classic()); }));
}

void EraseFromFront(std::string& s) {
  for (size_t i = 0; i < s.size();) {
    const bool blank = absl::ascii_isspace(static_cast<unsigned char>(s[i]));
    if (blank) s[i] = ' ';
    if (blank && (i == 0 || s[i - 1] == ' ')) {
      s.erase(i, 1);
    } else {
      ++i;
    }
  }
  if (!s.empty() && s.back() == ' ') s.pop_back();
}

// abseil keeps the first character of a run, for instance a tab, which becomes a blank.
void CollapseByAbseil(std::string& s) {
  absl::RemoveExtraAsciiWhitespace(&s);
  std::replace_if(
      s.begin(), s.end(), [](unsigned char c) { return absl::ascii_isspace(c); }, ' ');
}

auto Collapse(const std::string& name, size_t size) {
  const std::string& input = ReportText(size);
  return Row("StrCollapse", name, Changing(input, StrCollapse))
      .Peer("abseil", Changing(input, CollapseByAbseil))
      .Peer("std::string::erase", Changing(input, EraseFromFront));
}

auto UpperCase(const std::string& name, size_t size) {
  const std::string& input = ReportText(size);
  return Row("toUpperCase", name, Changing(input, toUpperCase))
      .Peer("abseil", Changing(input, [](std::string& s) { absl::AsciiStrToUpper(&s); }))
      .Peer("Boost", Changing(input, [](std::string& s) { boost::to_upper(s, std::locale::classic()); }));
}

void FindAndReplace(std::string& s, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = s.find(from, at)) != std::string::npos; at += to.size())
    s.replace(at, from.size(), to);
}

auto Replace(const std::string& name, const std::string& input, const std::string& from, const std::string& to) {
  const std::string& kept = Keep(input);
  return Row("ReplaceString", name, Changing(kept, [=](std::string& s) { ReplaceString(s, from, to); }))
      .Peer("abseil", Changing(kept,
                               [=](std::string& s) {
                                 absl::StrReplaceAll({{from, to}}, &s);
                               }))
      .Peer("Boost", Changing(kept, [=](std::string& s) { boost::replace_all(s, from, to); }))
      .Peer("find and replace", Changing(kept, [=](std::string& s) { FindAndReplace(s, from, to); }));
}

std::vector<std::string> SplitByStream(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, ':');)
    fields.push_back(field);
  return fields;
}

auto Split(const std::string& name, const std::string& line) {
  return Row("SplitStringByChar", name,
             [line] {
               std::vector<std::string> fields;
               SplitStringByChar(line.c_str(), ':', fields);
               return fields;
             })
      .Peer("abseil", [line] { return std::vector<std::string>(absl::StrSplit(line, ':')); })
      .Peer("Boost",
            [line] {
              std::vector<std::string> fields;
              return boost::split(fields, line, [](char c) { return c == ':'; });
            })
      .Peer("std::getline", [line] { return SplitByStream(line); });
}

void AddTexts() {
  Trim("64 B", 64);
  Trim("4 KB", 4096).Limit("memcpy", Memcpy(ReportText(4096)));
  Collapse("64 B", 64);
  Collapse("4 KB", 4096).Limit("memcpy", Memcpy(ReportText(4096)));
  UpperCase("64 B", 64);
  UpperCase("64 KB", 64 << 10).Limit("memcpy", Memcpy(ReportText(64 << 10)));
  Replace("64 B, one hit", ReportText(64), "board", "card");
  std::string slots;
  while (slots.size() < 4096)
    slots += "shelf=3,slot=17;";
  Replace("4 KB, 256 hits", slots, "slot=", "position=").Limit("memcpy", Memcpy(ReportText(4096)));
  Replace("4 KB, no hit", ReportText(4096), "absent=", "x");
  Split("8 columns", "vnctl201.bin:board:1.02:20260115:1048576:0:0:1");
  std::string wide = "column";
  for (int i = 1; i < 1000; ++i)
    wide += ":column" + std::to_string(i);
  Split("1000 columns", wide);
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && absl::ascii_isspace(static_cast<unsigned char>(text.front())))
    text.remove_prefix(1);
  return text;
}

template <typename Number>
Number FromChars(std::string_view text) {
  Number number = 0;
  text = WithoutBlanks(text);
  const auto error = std::from_chars(text.data(), text.data() + text.size(), number).ec;
  return error == std::errc::result_out_of_range ? std::numeric_limits<Number>::max() : number;
}

template <typename Number>
Number FromAbseil(const char* text) {
  constexpr uint32_t MAX = std::numeric_limits<Number>::max();
  uint32_t number = 0;
  return static_cast<Number>(absl::SimpleAtoi(text, &number) ? std::min(number, MAX) : MAX);
}

template <typename Number>
Number FromStream(const std::string& text) {
  Number number = 0;
  std::istringstream(text) >> number;
  return number;
}

template <typename Number>
void Convert(const std::string& name, const std::string& text) {
  Row("ConvertFromString", name,
      [text] {
        Number number = 0;
        ConvertFromString(text.c_str(), number);
        return number;
      })
      .Peer("from_chars", [text] { return FromChars<Number>(text.c_str()); })
      .Peer("abseil", [text] { return FromAbseil<Number>(text.c_str()); })
      .Peer("strtoul", [text] { return static_cast<Number>(std::strtoul(text.c_str(), nullptr, 10)); })
      .Peer("std::istringstream", [text] { return FromStream<Number>(text); });
}

constexpr char KEY[] = "*EVENT*BOARD-0417*PROGRESS*";

void Wildcard(const std::string& name, const std::string& text) {
  Row("strmcmp", name, [text] { return strmcmp(text.c_str(), KEY) != 0; })
      .Peer("fnmatch", [text] { return fnmatch(KEY, text.c_str(), 0) == 0; })
      .Peer("RE2", [text, expression = std::make_shared<RE2>(Expression(KEY),
                                                             AnyBytes())] { return RE2::FullMatch(text, *expression); })
      .Peer("plain loop", [text] { return PlainMatch<SameChar>(text.c_str(), KEY); })
      .Limit("strstr", [text] { return std::strstr(text.c_str(), "BOARD-0417") != nullptr; });
}

auto WildcardNoCase(const std::string& name, const std::string& text, const std::string& pattern) {
  return Row("strmcmpnocase", name, [=] { return strmcmpnocase(text.c_str(), pattern.c_str()) != 0; })
      .Peer("fnmatch", [=] { return fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD) == 0; })
      .Peer("RE2", [text, expression = std::make_shared<RE2>(
                              Expression(pattern), AnyBytes(false))] { return RE2::FullMatch(text, *expression); })
      .Peer("plain loop", [=] { return PlainMatch<SameLetter>(text.c_str(), pattern.c_str()); });
}

void AddWildcards() {
  std::string report = ReportText(300);
  Wildcard("300 B, match", report.replace(150, 20, "BOARD-0417 PROGRESS "));
  Wildcard("2 KB, no match", ReportText(2048));
  WildcardNoCase("board name", "VNCTL201", "vnctl201").Limit("strcasecmp", [name = std::string("VNCTL201")] {
    return strcasecmp(name.c_str(), "vnctl201") == 0;
  });
  const std::string& text = ReportText(4096);
  WildcardNoCase("4 KB, no match", text, "*bOARD-0417*")
      .Peer("Boost", [&text] { return boost::icontains(text, "bOARD-0417", std::locale::classic()); })
      .Peer("strcasestr", [&text] { return strcasestr(text.c_str(), "bOARD-0417") != nullptr; });
}

std::tm Local(time_t seconds) {
  std::tm local = {};
  localtime_r(&seconds, &local);
  return local;
}

std::string ByStrftime(time_t seconds, const char* format) {
  const std::tm local = Local(seconds);
  char text[32];
  return {text, std::strftime(text, sizeof text, format, &local)};
}

std::string ByPutTime(time_t seconds, const char* format) {
  const std::tm local = Local(seconds);
  std::ostringstream stream;
  stream << std::put_time(&local, format);
  return stream.str();
}

void AddTimes() {
  constexpr char TIME[] = "%Y-%m-%d %H:%M:%S";
  constexpr time_t MOMENT = 1768471200;
  Row("MakeTimeFormated", "2026", [] { return MakeTimeFormated(MOMENT); })
      .Peer("strftime", [=] { return ByStrftime(MOMENT, TIME); })
      .Peer("fmt", [] { return fmt::format("{:%Y-%m-%d %H:%M:%S}", Local(MOMENT)); })
      .Peer("abseil",
            [=, zone = absl::LocalTimeZone()] { return absl::FormatTime(TIME, absl::FromTimeT(MOMENT), zone); })
      .Peer("std::put_time", [=] { return ByPutTime(MOMENT, TIME); })
      .Limit("localtime_r", [] { return Local(MOMENT).tm_sec; });
  Row("GetCurDateFormated", "today", GetCurDateFormated)
      .Peer("strftime", [] { return ByStrftime(std::time(nullptr), "%Y%m%d"); })
      .Peer("fmt", [] { return fmt::format("{:%Y%m%d}", Local(std::time(nullptr))); })
      .Limit("localtime_r", [] { return Local(std::time(nullptr)).tm_mday; });
}

std::string AttributeByFind(const std::string& text, std::string_view name) {
  const size_t found = text.find(name);
  if (found == std::string::npos) return "";
  const size_t start = found + name.size();
  return text.substr(start, std::min(text.find(',', start), text.find('"', start)) - start);
}

using ShelfAndSlot = std::pair<unsigned short, unsigned short>;

ShelfAndSlot SlotByScanf(const char* text) {
  ShelfAndSlot result;
  const char* found = std::strstr(text, "SLOT-");
  if (found != nullptr) std::sscanf(found, "SLOT-%hu-%hu", &result.first, &result.second);
  return result;
}

ShelfAndSlot SlotByFromChars(std::string_view text) {
  ShelfAndSlot result;
  const size_t found = text.find("SLOT-");
  if (found == std::string_view::npos) return result;
  const char* end = text.data() + text.size();
  const char* rest = std::from_chars(text.data() + found + 5, end, result.first).ptr;
  if (rest != end) std::from_chars(rest + 1, end, result.second);
  return result;
}

void AddParameters() {
  const std::string& text = Keep(ReportText(256) + " \"SLOT-12-34:SWDL,TRANSFEREDFILES=4,TOTALNUM=12,:\"");
  Row("GetTL1AttrbuteString", "300 B",
      [&text] {
        std::string value;
        GetTL1AttrbuteString(text.c_str(), "TOTALNUM=", value);
        return value;
      })
      .Peer("RE2",
            [&text, expression = std::make_shared<RE2>("TOTALNUM=([^,\"]*)")] {
              std::string value;
              RE2::PartialMatch(text, *expression, &value);
              return value;
            })
      .Peer("std::string::find", [&text] { return AttributeByFind(text, "TOTALNUM="); });
  Row("ParseTL1SlotID", "300 B", [&text] {
    ShelfAndSlot result;
    ParseTL1SlotID(text.c_str(), result.first, result.second);
    return result;
  }).Peer("strstr and sscanf", [&text] {
      return SlotByScanf(text.c_str());
    }).Peer("find and from_chars", [&text] { return SlotByFromChars(text); });
}

}  // namespace

void AddStr() {
  AddTexts();
  Convert<unsigned int>("unsigned int 7", "7");
  Convert<unsigned short>("unsigned short 7860 after blanks", "  7860");
  AddWildcards();
  AddParameters();
  AddTimes();
}

}  // namespace VARNEL_BENCH
