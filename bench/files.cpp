// Software files: heads, descriptions, lines, cold patches. What is read lies in the page cache.
#include <fcntl.h>
#include <pkgfile.h>
#include <publicdata.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <regex>
#include <utility>
#include <vector>

#include "file_peers.h"
#include "input_files.h"
#include "inputs.h"
#include "row.h"
#include "services.h"
#include "software_file.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr size_t LINE_SIZE = 1024;
constexpr char COLD_PATCH[] = "[COLDPATCH]";

// Reads a file and looks at every byte once.
auto ReadAndLook(const std::string& path, size_t size) {
  return [path, buffer = std::vector<char>(size)]() mutable {
    const Descriptor file(path);
    const ssize_t read = ::read(file.get(), buffer.data(), buffer.size());
    return std::memchr(buffer.data(), '\xFE', static_cast<size_t>(read));
  };
}

Heads OurHeads(const std::string& path) {
  Heads heads;
  ZEP_FILE_HEAD head;
  heads.valid = readZEPFileHead(path, head, heads.link, heads.version, heads.extension, heads.payload) == 0;
  heads.type = head.usFileType;
  return heads;
}

void ReadHead(const std::string& name, const VARNEL_TEST::SoftwareFile& file) {
  const std::string bytes = file.Bytes();
  const std::string path = InputFile(name + ".pkg", bytes + std::string(4096, 'x'));
  Row("readZEPFileHead", name, bytes.size(), [path] { return OurHeads(path); })
      .Peer("open and pread", [path] { return ReadHeadsByPread(path); })
      .Obvious("std::ifstream", [path] { return ReadHeadsByStream(path); })
      .Limit("read and memchr", ReadAndLook(path, bytes.size()));
}

struct OurDescription {
  std::shared_ptr<CPkgFile> package;
};

bool operator==(const OurDescription& ours, const Description& other) {
  if (ours.package->m_strVersion != other.version) return false;
  const auto same = [](const SOFT_INFO* a, const Entry& b) {
    return a->strColumn1 == b.name && a->strColumn2 == b.kind && a->uiColumn5 == b.size;
  };
  const auto& entries = ours.package->m_lstSoftInfo;
  return std::equal(entries.begin(), entries.end(), other.entries.begin(), other.entries.end(), same);
}

auto Describing(const std::string& path) {
  return [path] {
    OurDescription ours{std::make_shared<CPkgFile>(path)};
    ours.package->ParsePkgFile();
    return ours;
  };
}

std::string Package(size_t entries, size_t& size) {
  const std::string bytes = PackageBytes(entries);
  size = bytes.size();
  return InputFile("description" + std::to_string(entries) + ".pkg", bytes);
}

void Describe(size_t entries) {
  size_t size = 0;
  const std::string path = Package(entries, size);
  Row("CPkgFile", std::to_string(entries) + " entries", size, Describing(path))
      .Peer("mmap and memchr", [path] { return DescribeMapped(path); })
      .Peer("getline(3)", [path] { return DescribeByCLines(path); })
      .Peer("std::getline and Boost", [path] { return DescribeByBoost(path); })
      .Peer("libcsv", [path] { return DescribeByCsv(path); })
      .Obvious("streams", [path] { return DescribeByStreams(path); })
      .Limit("read and memchr", ReadAndLook(path, size));
}

// How many lines there are, and a sum that tells whether they are the same.
class Tally {
 public:
  void Add(std::string_view line) {
    ++m_lines;
    m_sum = m_sum * 31 + line.size() + (line.empty() ? 0 : static_cast<unsigned char>(line.front()));
  }
  bool operator==(const Tally& other) const { return m_lines == other.m_lines && m_sum == other.m_sum; }

 private:
  size_t m_lines = 0;
  size_t m_sum = 0;
};

Tally OurLines(const std::string& path) {
  Tally tally;
  Vnifstream file(path);
  char line[LINE_SIZE];
  while (file.GetLine(line, sizeof line))
    tally.Add(line);
  return tally;
}

template <typename Lines>
Tally TheirLines(const std::string& path) {
  Tally tally;
  Lines lines(path);
  for (std::string_view line; lines.NextLine(line);)
    tally.Add(line);
  return tally;
}

Tally StreamLines(const std::string& path) {
  Tally tally;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);)
    tally.Add(line);
  return tally;
}

// Lines as a description has them.
std::string LinesOf(size_t size) {
  std::string bytes;
  for (size_t i = 0; bytes.size() < size; ++i)
    bytes += "board" + std::to_string(i) + ".bin:app:1.02:20260115:1048576:0:0:1\n";
  bytes.resize(size, 'x');
  return bytes;
}

void ReadLines(size_t size) {
  const std::string path = InputFile("lines" + std::to_string(size) + ".txt", LinesOf(size));
  Row("Vnifstream", "lines of " + SizeName(size), size, [path] { return OurLines(path); })
      .Peer("mmap and memchr", [path] { return TheirLines<Mapped>(path); })
      .Peer("getline(3)", [path] { return TheirLines<CLines>(path); })
      .Peer("std::getline", [path] { return StreamLines(path); })
      .Limit("read and memchr", ReadAndLook(path, size));
}

// Finds the text first and looks at its line then.
bool HasMarkerMapped(const std::string& path) {
  const Mapped file(path);
  const std::string_view marker = COLD_PATCH;
  const char* const begin = file.Bytes().data();
  const char* const end = begin + file.Bytes().size();
  for (const char* at = begin;; ++at) {
    at = static_cast<const char*>(::memmem(at, static_cast<size_t>(end - at), marker.data(), marker.size()));
    if (at == nullptr) return false;
    const auto* lineFeed = static_cast<const char*>(::memrchr(begin, '\n', static_cast<size_t>(at - begin)));
    const char* line = lineFeed == nullptr ? begin : lineFeed + 1;
    const auto before = static_cast<size_t>(at - line);
    if (before + marker.size() < LINE_SIZE && std::memchr(line, '\0', before) == nullptr) return true;
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

bool HasMarkerByRegex(const std::string& path) {
  static const std::regex marker("\\[COLDPATCH\\]");
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (std::regex_search(line.substr(0, LINE_SIZE - 1), marker)) return true;
  }
  return false;
}

void ColdPatch(const std::string& name, const std::string& bytes) {
  const std::string path = InputFile("patch " + name, bytes);
  Row("isColdPatch", name, bytes.size(), [path] { return isColdPatch(path); })
      .Peer("mmap and memmem", [path] { return HasMarkerMapped(path); })
      .Peer("getline(3) and strstr", [path] { return HasMarkerByCLines(path); })
      .Obvious("std::getline and std::regex", [path] { return HasMarkerByRegex(path); })
      .Limit("read and memchr", ReadAndLook(path, bytes.size()));
}

}  // namespace

void AddFiles() {
  ReadHead("short texts", {});
  VARNEL_TEST::SoftwareFile large;
  large.gaps = {1000, 2000, 3000, 4000};
  large.fileType = 2;
  large.extension = 7;
  large.skipped = std::string(5000, 's');
  large.link = "sample -> " + std::string(1000, 'l');
  large.version = std::string(60000, '2');
  ReadHead("long texts", large);

  for (const size_t entries : {10, 1000, 100000})
    Describe(entries);
  for (const size_t size : {4 << 10, 256 << 10, 4 << 20}) {
    ReadLines(size);
    ColdPatch("marker absent, " + SizeName(size), LinesOf(size));
    ColdPatch("marker at the end, " + SizeName(size), LinesOf(size - std::strlen(COLD_PATCH)) + COLD_PATCH);
  }

  for (const size_t size : GROWTH_SIZES) {
    size_t bytes = 0;
    const std::string path = Package(size / 48, bytes);
    Growth("CPkgFile", bytes, Describing(path));
    Growth("isColdPatch", bytes, [path] { return isColdPatch(path); });
  }
}

}  // namespace VARNEL_BENCH
