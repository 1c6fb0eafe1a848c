// A software file in memory: headers, description, lines and cold-patch marker compared with plain readers.

#include <pkgfile.h>
#include <publicdata.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "check.h"
#include "description_reference.h"
#include "input.h"
#include "kept_log.h"
#include "replay.h"
#include "software_file.h"
#include "string_references.h"

using VARNEL_COMMON::CheckZEPFileHead;

namespace {

constexpr unsigned int INVALID_HEAD = 0x3BA00B02;
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;
constexpr unsigned int OLD = 0xAAAAAAAA;

// A file in memory that has a path.
class MemoryFile {
 public:
  MemoryFile() : m_file(memfd_create("varnel", MFD_CLOEXEC)), m_path("/proc/self/fd/" + std::to_string(m_file)) {
    FUZZ_CHECK(m_file >= 0);
  }

  const std::string& Write(const std::string& bytes) const {
    FUZZ_CHECK(ftruncate(m_file, 0) == 0);
    FUZZ_CHECK(pwrite(m_file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    return m_path;
  }

 private:
  int m_file;
  std::string m_path;
};

struct Heads {
  unsigned int result = INVALID_HEAD;
  std::string link = "old link";
  std::string version = "old version";
  unsigned int extension = OLD;
  unsigned int payloadOffset = OLD;
  unsigned short type = 0;
};

// Both headers and their texts, read with substr() only.
class PlainHeads {
 public:
  explicit PlainHeads(const std::string& bytes) : m_bytes(bytes) { Read(); }

  Heads heads;

 private:
  unsigned int Big16(size_t at) const {
    return static_cast<unsigned char>(m_bytes[at]) * 256U + static_cast<unsigned char>(m_bytes[at + 1]);
  }

  bool IsHead(size_t at, const char* magic) const {
    if (m_bytes.size() < at + 64 || m_bytes.compare(at, 4, magic) != 0) return false;
    unsigned int sum = 0;
    for (size_t i = at + 8; i < at + 60; ++i)
      sum += static_cast<unsigned char>(m_bytes[i]);
    return Big16(at + 4) * 65536 + Big16(at + 6) == sum;
  }

  bool Has(size_t at, size_t length) const { return at <= m_bytes.size() && m_bytes.size() - at >= length; }

  void Read() {
    if (!IsHead(0, "QXDD")) return;
    const unsigned int gap = Big16(26) + Big16(32) + Big16(34) + Big16(36);
    const size_t head = 64 + size_t{gap};
    if (!IsHead(head, "QXFF")) return;
    heads.type = static_cast<unsigned short>(Big16(head + 32));
    const unsigned int skip = Big16(head + 44), link = Big16(head + 46), version = Big16(head + 48);
    heads.payloadOffset = gap + 128 + skip + link + version + Big16(head + 50);
    size_t at = head + 64;
    if (heads.type == 2) {
      heads.extension = Has(at, 2) ? Big16(at) : 0;
      at += 2;
    }
    at += skip;
    if (ReadLink(at, link) && ReadVersion(at + link, version)) heads.result = 0;
  }

  bool ReadLink(size_t at, size_t length) {
    if (length > 1023 || !Has(at, length)) return false;
    const std::string text = m_bytes.substr(at, length).c_str();
    const size_t marker = text.find("-> ");
    if (marker == std::string::npos) return false;
    heads.link = text.substr(marker + 3);
    return true;
  }

  bool ReadVersion(size_t at, size_t length) {
    if (length == 0 || length == 65535) return true;
    if (!Has(at, length)) return false;
    const std::string text = m_bytes.substr(at, length).c_str();
    heads.version = text.substr(0, text.find('T'));
    return true;
  }

  const std::string& m_bytes;
};

bool IsUsualType(int type) {
  return (type >= 0 && type <= 13) || type == 15 || type == 513;
}

void CheckHeads(const std::string& path, const Heads& expected) {
  static VARNEL_FUZZ::Answers answers("CheckZEPFileHead");
  answers.Count(expected.result == 0);
  Heads actual;
  actual.result =
      CheckZEPFileHead(path, actual.extension, actual.payloadOffset, actual.link, actual.type, actual.version);
  FUZZ_CHECK(actual.result == expected.result);
  FUZZ_CHECK(actual.link == expected.link);
  FUZZ_CHECK(actual.version == expected.version);
  FUZZ_CHECK(actual.extension == expected.extension);
  FUZZ_CHECK(actual.payloadOffset == expected.payloadOffset);
  if (expected.result == 0) FUZZ_CHECK(actual.type == expected.type);

  int type = -1;
  std::string link, version;
  const unsigned int result = CheckZEPFileHead(path, type, link, version);
  FUZZ_CHECK(type == (expected.result == 0 ? expected.type : -1));
  FUZZ_CHECK(result == (expected.result == 0 && IsUsualType(type) ? 0 : INVALID_HEAD));
}

// The log line for an incomplete description.
void CheckReport(const std::string& path, VARNEL_TEST::Ending ending) {
  const std::string texts[] = {"", "CPkgFile::ParsePkgSoftInfo(): , not find [File Description], File: " + path,
                               "CPkgFile::ParsePkgSoftInfo(): the line is not correct, File: " + path,
                               "CSPHPkgFile::ParsePkgSoftInfo(): , m_lstSoftInfo is empty, File: " + path};
  std::string reported;
  for (const auto& line : VARNEL_FUZZ::KeptLog()) {
    if (line.function == "ParsePkgSoftInfo") reported += line.text;
  }
  const std::string& text = texts[static_cast<size_t>(ending)];
  FUZZ_CHECK(reported == (text.empty() ? "" : "ErrorCode:0x3ba0120f, " + text));
}

void CheckDescription(const std::string& path, const std::string& bytes, const Heads& heads) {
  static VARNEL_FUZZ::Answers answers("ParsePkgFile");
  const VARNEL_TEST::Description expected = VARNEL_TEST::Reference::ReadDescription(bytes);
  VARNEL_COMMON::CPkgFile package(path);
  const bool isGood = expected.ending == VARNEL_TEST::Ending::Complete;
  answers.Count(isGood);
  FUZZ_CHECK(package.ParsePkgFile() == (isGood ? 0 : INVALID_DESCRIPTION));
  FUZZ_CHECK(package.m_strVersion == (heads.version == "old version" ? "" : heads.version));
  FUZZ_CHECK(VARNEL_TEST::EntriesIn(package) == expected.entries);
  CheckReport(path, expected.ending);
}

std::vector<std::string> LinesOf(const std::string& bytes) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < bytes.size(); at += lines.back().size() + 1)
    lines.push_back(bytes.substr(at, std::min(bytes.find('\n', at), bytes.size()) - at));
  return lines;
}

// Each line whole, and each cut to a size.
void CheckLines(const std::string& path, const std::vector<std::string>& lines, size_t size) {
  VARNEL_COMMON::Vnifstream file(path);
  std::vector<char> buffer(size);
  for (const std::string& line : lines) {
    FUZZ_CHECK(file.GetLine(buffer.data(), static_cast<unsigned int>(buffer.size())));
    const size_t length = std::min(line.size(), size - 1);
    FUZZ_CHECK(std::equal(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(length), line.begin()));
    FUZZ_CHECK(buffer[length] == '\0');
  }
  FUZZ_CHECK(!file.GetLine(buffer.data(), static_cast<unsigned int>(buffer.size())));
}

void CheckColdPatch(const std::string& path, const std::vector<std::string>& lines) {
  const bool expected = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    return std::string(line.substr(0, 1023).c_str()).find("[COLDPATCH]") != std::string::npos;
  });
  FUZZ_CHECK(VARNEL_COMMON::isColdPatch(path) == expected);
}

int NextDescriptor() {
  const int descriptor = dup(STDERR_FILENO);
  close(descriptor);
  return descriptor;
}

constexpr size_t HEAD_SIZE = 64;

size_t Big16(const std::string& bytes, size_t at) {
  return static_cast<unsigned char>(bytes[at]) * size_t{256} + static_cast<unsigned char>(bytes[at + 1]);
}

void PutHead(std::string& bytes, size_t at, const char* magic) {
  bytes.replace(at, 4, magic);
  VARNEL_TEST::RepairSum(bytes, at);
}

// The gaps place the file header before the end of the bytes.
void Repair(std::string& bytes) {
  for (const size_t gap : {size_t{26}, size_t{32}, size_t{34}, size_t{36}}) {
    if (Big16(bytes, gap) > 64) VARNEL_TEST::PutBig16(bytes, gap, static_cast<uint16_t>(Big16(bytes, gap) % 64));
  }
  const size_t head = HEAD_SIZE + Big16(bytes, 26) + Big16(bytes, 32) + Big16(bytes, 34) + Big16(bytes, 36);
  PutHead(bytes, 0, "QXDD");
  if (bytes.size() >= head + HEAD_SIZE) PutHead(bytes, head, "QXFF");
}

// Lengths that fit the file let the texts be read.
void ShortenLengths(std::string& bytes, unsigned int seed) {
  const size_t head = HEAD_SIZE + Big16(bytes, 26) + Big16(bytes, 32) + Big16(bytes, 34) + Big16(bytes, 36);
  if (bytes.size() < head + HEAD_SIZE) return;
  for (size_t length = 44; length <= 50; length += 2) {
    if ((seed >>= 1) % 2 == 0) continue;
    VARNEL_TEST::PutBig16(bytes, head + length, static_cast<uint16_t>(Big16(bytes, head + length) % 32));
  }
  PutHead(bytes, head, "QXFF");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const MemoryFile file;
  VARNEL_FUZZ::KeptLog().clear();
  const std::string bytes = VARNEL_FUZZ::Input(data, size).Rest();
  const std::string& path = file.Write(bytes);
  const int descriptor = NextDescriptor();
  const Heads heads = PlainHeads(bytes).heads;
  CheckHeads(path, heads);
  CheckDescription(path, bytes, heads);
  const std::vector<std::string> lines = LinesOf(bytes);
  CheckLines(path, lines, bytes.size() + 1);
  CheckLines(path, lines, bytes.size() % 97 + 1);
  CheckColdPatch(path, lines);
  FUZZ_CHECK(NextDescriptor() == descriptor);  // nothing is left open
  return 0;
}

// Random bytes rarely pass the magic words and sums of both headers: most inputs get valid ones after each mutation.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (size < HEAD_SIZE || seed % 16 == 0) return size;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  Repair(bytes);
  if (seed / 16 % 4 == 0) ShortenLengths(bytes, seed / 64);
  std::copy(bytes.begin(), bytes.end(), data);
  return size;
}

// Every prefix of a package, and descriptions made of all their markers and separators.
void VARNEL_FUZZ::RunGenerated(Runner run) {
  const std::string section = "[File Description]\n";
  VARNEL_TEST::SoftwareFile file;
  file.gaps = {1, 2, 3, 4};
  file.payload =
      "\n[Package Info]\r\nname=x\r\n\r\n[File Description]\r\n#name:kind:c3:c4:size:c6:c7:c8\r\n"
      "mainboard.bin : app : x : y : 1048576 : a : b : c\r\n\r\npatch.bin:pat:x:y:2048:a:b\r\n"
      "\xA3\xA3:::::::\r\n:::::::\r\n[COLDPATCH]\r\nlate.bin:::::::\r\n[END]\r\n";
  const std::string bytes = file.Bytes();
  for (size_t size = 0; size <= bytes.size(); ++size)
    run(bytes.substr(0, size));
  for (const size_t length : {254U, 255U, 256U, 1011U, 1012U, 1013U, 1020U, 1021U, 1022U, 1023U, 1024U, 2047U}) {
    const std::string text(length, 'x');
    run(section + text + ":k:::7:::\n");
    run(section + "n:k:::7:::" + text + "\n[END]\n");
    run(text + section + text + "[END]\nn:k:::7:::");
    run(text + "[COLDPATCH]\n");
    file.link = "-> " + text;
    run(file.Bytes());
  }
  for (const std::string& lines : VARNEL_TEST::AllTexts(
           {":", "a:b:::1:::", ":::::::", "\n", "\r\n", "#", "[", "[END]", " ", "\xA3\xA3", std::string(1, '\0')}, 4))
    run(section + lines);
}
