// Software files, lines, cold patches, boards. The files are in the page cache.
#include <fmt/format.h>
#include <fnmatch.h>
#include <publicdata.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string_view>
#include <utility>
#include <vector>

#include "bench.h"
#include "file_peers.h"
#include "patterns.h"
#include "software_file.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr size_t LINE_SIZE = 1024;
constexpr char COLD_PATCH[] = "[COLDPATCH]";

Heads OurHeads(const std::string& path) {
  Heads heads;
  ZEP_FILE_HEAD head;
  heads.valid = readZEPFileHead(path, head, heads.link, heads.version, heads.extension, heads.payload) == 0;
  heads.type = head.usFileType;
  return heads;
}

void ReadHeads(const std::string& name, const VARNEL_TEST::SoftwareFile& file) {
  const std::string path = InputFile(name + ".pkg", file.Bytes());
  Row("readZEPFileHead", name, [path] { return OurHeads(path); })
      .Peer("open and pread", [path] { return ReadHeadsByPread(path); })
      .Peer("std::ifstream", [path] { return ReadHeadsByStream(path); })
      .Limit("read and memchr", [path] { return ReadAndSearch(path); });
}

VARNEL_TEST::SoftwareFile LongTexts() {
  VARNEL_TEST::SoftwareFile file;
  file.gaps = {1000, 2000, 3000, 4000};
  file.fileType = 2;
  file.extension = 7;
  file.skipped = std::string(5000, 's');
  file.link = "sample -> " + std::string(1000, 'l');
  file.version = std::string(60000, '2');
  return file;
}

// The number of lines, and a sum over their lengths and first characters.
using Tally = std::pair<size_t, size_t>;

void AddLine(std::string_view line, Tally& tally) {
  ++tally.first;
  tally.second = tally.second * 31 + line.size() + (line.empty() ? 0 : static_cast<unsigned char>(line.front()));
}

Tally OurLines(const std::string& path) {
  Tally tally;
  Vnifstream file(path);
  char line[LINE_SIZE];
  while (file.GetLine(line, sizeof line))
    AddLine(line, tally);
  return tally;
}

template <typename Lines>
Tally TheirLines(const std::string& path) {
  Tally tally;
  Lines lines(path);
  for (std::string_view line; lines.NextLine(line);)
    AddLine(line, tally);
  return tally;
}

Tally StreamLines(const std::string& path) {
  Tally tally;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);)
    AddLine(line, tally);
  return tally;
}

// Searches for the text first, then examines its line.
bool HasMarkerMapped(const std::string& path) {
  const Mapped file(path);
  const std::string_view bytes = file.Bytes();
  for (size_t from = 0;; ++from) {
    const void* found = memmem(bytes.data() + from, bytes.size() - from, COLD_PATCH, std::strlen(COLD_PATCH));
    if (found == nullptr) return false;
    from = static_cast<size_t>(static_cast<const char*>(found) - bytes.data());
    const std::string_view before = bytes.substr(0, from);
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    if (line.size() + std::strlen(COLD_PATCH) < LINE_SIZE && line.find('\0') == std::string_view::npos) return true;
  }
}

bool HasMarkerByCLines(const std::string& path) {
  CLines lines(path);
  for (std::string_view line; lines.NextLine(line);) {
    if (std::strstr(line.data(), COLD_PATCH) != nullptr && line.find(COLD_PATCH) + std::strlen(COLD_PATCH) < LINE_SIZE)
      return true;
  }
  return false;
}

void ReadText(const std::string& size, size_t bytes) {
  const std::string package = PackageBytes(bytes / 40);
  const std::string path = InputFile("lines of " + size, package.substr(package.find("[File"), bytes));
  Row("Vnifstream", size, [path] { return OurLines(path); })
      .Peer("mmap and memchr", [path] { return TheirLines<Mapped>(path); })
      .Peer("getline(3)", [path] { return TheirLines<CLines>(path); })
      .Peer("std::getline", [path] { return StreamLines(path); })
      .Limit("read and memchr", [path] { return ReadAndSearch(path); });
  Row("isColdPatch", size + ", no marker", [path] {
    return isColdPatch(path);
  }).Peer("mmap and memmem", [path] {
      return HasMarkerMapped(path);
    }).Peer("getline(3) and strstr", [path] { return HasMarkerByCLines(path); });
}

template <typename Digits>
unsigned int Identifier(Digits digits) {
  unsigned short number = 305;
  benchmark::DoNotOptimize(number);
  const std::string text = digits(number);
  if (text.size() != 3) return number;
  return static_cast<unsigned int>(text[0]) << 5 | static_cast<unsigned int>(text[1]);
}

std::string Printed(unsigned int number) {
  char text[16];
  return {text, static_cast<size_t>(std::snprintf(text, sizeof text, "%u", number))};
}

using Names = std::vector<std::string>;

// The patterns of the boards that IsSccBdName() knows.
constexpr const char* CONTROL_BOARDS[] = {
    "*scc*", "*sce*", "*vmcu*", "*vscu*", "vnctl201", "vnmcp01", "vnmcp02", "*vnmcx10*", "vnstg01", "vnstg02", "vcu",
    "vcua",  "vcub",  "vcuc",   "vcud",   "vcue",     "vpu",     "vmu",     "vmua",      "61vcu",   "vb21",    "vb22",
};

const RE2& ControlExpression() {
  std::string expression;
  for (const char* pattern : CONTROL_BOARDS)
    expression += (expression.empty() ? "" : "|") + Expression(pattern);
  static const RE2 prepared(expression, AnyBytes(false));
  return prepared;
}

template <typename IsControl>
auto CountIf(const Names& names, IsControl isControl) {
  return [&names, isControl] { return std::count_if(names.begin(), names.end(), isControl); };
}

template <typename Matches>
auto CountByTable(const Names& names, Matches matches) {
  return CountIf(names, [matches](const std::string& name) {
    return std::any_of(std::begin(CONTROL_BOARDS), std::end(CONTROL_BOARDS),
                       [&](const char* pattern) { return matches(name.c_str(), pattern); });
  });
}

bool MatchesByBoost(std::string_view name, std::string_view pattern) {
  const std::locale& classic = std::locale::classic();
  if (pattern.front() != '*') return boost::iequals(name, pattern, classic);
  return boost::icontains(name, pattern.substr(1, pattern.size() - 2), classic);
}

void Boards(const std::string& title, const Names& names) {
  Row("IsSccBdName", title, CountIf(names, IsSccBdName))
      .Peer("fnmatch",
            CountByTable(names, [](auto* name, auto* pattern) { return fnmatch(pattern, name, FNM_CASEFOLD) == 0; }))
      .Peer("RE2", CountIf(names, [&expression =
                                       ControlExpression()](auto& name) { return RE2::FullMatch(name, expression); }))
      .Peer("Boost", CountByTable(names, MatchesByBoost))
      .Peer("plain loop", CountByTable(names, PlainMatch<SameLetter>));
}

}  // namespace

void AddPublicData() {
  ReadHeads("short texts", {});
  ReadHeads("long texts", LongTexts());
  ReadText("4 KB", 4096);
  ReadText("4 MB", 4 << 20);
  Row("GetNESlotID", "305", [] {
    return GetNESlotID(305);
  }).Peer("fmt", [] {
      return Identifier([](auto number) { return fmt::format("{}", number); });
    }).Peer("snprintf", [] { return Identifier(Printed); });
  static const Names CONTROL = {"VNSCC01", "tnsce", "VMCU2", "VNCTL201", "vnmcp02", "VNMCX10A",
                                "VNSTG01", "VCU",   "vcue",  "VMUA",     "61VCU",   "VB22"};
  static const Names OTHERS = {"VNETH08", "VNOPT16", "vnpwr1", "VNFAN03", "VNAUX",  "VNTRB4",
                               "VNCTL30", "VCUX",    "VB23",   "vnmcp03", "BOARD7", "VNMUX2"};
  Boards("12 control boards", CONTROL);
  Boards("12 other boards", OTHERS);
}

}  // namespace VARNEL_BENCH
