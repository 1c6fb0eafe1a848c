// Trim, collapse, upper-case, replace and split.
#include <absl/strings/ascii.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#include <str.h>

#include <boost/algorithm/string.hpp>
#include <cstring>
#include <regex>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

// Runs an operation that changes a text in place, on a fresh copy in the same buffer each time. The input is kept.
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

void Trim(size_t size) {
  const std::string& input =
      Keep(std::string(size / 4, ' ') + std::string(size / 2, 'x') + std::string(size / 4, '\t'));
  Row("StrTrim", SizeName(size), size, Changing(input, StrTrim))
      .Peer("abseil", Changing(input, [](std::string& s) { absl::StripAsciiWhitespace(&s); }))
      .Peer("Boost", Changing(input, [](std::string& s) { boost::trim(s, std::locale::classic()); }))
      .Limit("memcpy", Memcpy(input));
}

void EraseFromFront(std::string& s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front())))
    s.erase(s.begin());
  for (size_t i = 1; i < s.size();) {
    const bool blank = std::isspace(static_cast<unsigned char>(s[i]));
    if (blank && s[i - 1] == ' ') {
      s.erase(i, 1);
    } else {
      if (blank) s[i] = ' ';
      ++i;
    }
  }
  if (!s.empty() && s.back() == ' ') s.pop_back();
}

void Collapse(size_t size) {
  const std::string& input = ReportText(size);
  auto row = Row("StrCollapse", SizeName(size), size, Changing(input, StrCollapse));
  // abseil keeps the first character of a run, so the run's other white space stays where we write a blank.
  row.Other("abseil", Changing(input, [](std::string& s) { absl::RemoveExtraAsciiWhitespace(&s); }))
      .Limit("memcpy", Memcpy(input));
  if (size <= 64 << 10) row.Obvious("erasing", Changing(input, EraseFromFront));
}

void UpperCase(size_t size) {
  const std::string& input = ReportText(size);
  Row("toUpperCase", SizeName(size), size, Changing(input, toUpperCase))
      .Peer("abseil", Changing(input, [](std::string& s) { absl::AsciiStrToUpper(&s); }))
      .Peer("Boost", Changing(input, [](std::string& s) { boost::to_upper(s, std::locale::classic()); }))
      .Limit("memcpy", Memcpy(input));
}

void ReplaceFromStart(std::string& s, const std::string& from, const std::string& to) {
  for (size_t at; (at = s.find(from)) != std::string::npos;)
    s.replace(at, from.size(), to);
}

void Replace(size_t size, const std::string& name, const std::string& from, const std::string& to) {
  const std::string& input = ReportText(size);
  auto row = Row("ReplaceString", name + ", " + SizeName(size), size,
                 Changing(input, [=](std::string& s) { ReplaceString(s, from, to); }));
  row.Peer("abseil", Changing(input,
                              [=](std::string& s) {
                                absl::StrReplaceAll({{from, to}}, &s);
                              }))
      .Peer("Boost", Changing(input, [=](std::string& s) { boost::replace_all(s, from, to); }))
      .Limit("memcpy", Memcpy(input));
  if (size <= 64 << 10) {
    row.Obvious("from the start", Changing(input, [=](std::string& s) { ReplaceFromStart(s, from, to); }));
  }
}

std::vector<std::string> SplitByRegex(const std::string& line) {
  static const std::regex separator(":");
  return {std::sregex_token_iterator(line.begin(), line.end(), separator, -1), std::sregex_token_iterator()};
}

void Split(const std::string& name, const std::string& line) {
  Row("SplitStringByChar", name, line.size(),
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
      .Obvious("std::regex", [line] { return SplitByRegex(line); })
      .Limit("memcpy and one allocation for the columns", [line] {
        std::vector<std::string> copy(1, line);
        return copy;
      });
}

}  // namespace

void AddStrings() {
  for (const size_t size : {64, 4 << 10, 64 << 10, 4 << 20}) {
    Trim(size);
    Collapse(size);
    UpperCase(size);
    Replace(size, "same length", "slot=3", "SLOT_3");
    Replace(size, "longer", "of", "beyond the");
    Replace(size, "none", "absent=", "x");
  }
  Split("8 columns", "vnctl201.bin:board:1.02:20260115:1048576:0:0:1");
  std::string wide;
  for (int i = 0; i < 1000; ++i)
    wide += (i == 0 ? "column" : ":column") + std::to_string(i);
  Split("1000 columns", wide);

  for (const size_t size : GROWTH_SIZES) {
    const std::string& input = ReportText(size);
    Growth("StrCollapse", size, Changing(input, StrCollapse));
    Growth("toUpperCase", size, Changing(input, toUpperCase));
    Growth("ReplaceString", size, Changing(input, [](std::string& s) { ReplaceString(s, "of", "beyond the"); }));
  }
}

}  // namespace VARNEL_BENCH
