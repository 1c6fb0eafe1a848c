// A software file in memory: heads, description, lines and cold-patch mark against plain readings of the same bytes.

#include <pkgfile.h>
#include <publicdata.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "check.h"
#include "description_reference.h"
#include "input.h"
#include "kept_log.h"

using VARNEL_COMMON::CheckZEPFileHead;

namespace {

constexpr unsigned int INVALID_HEAD = 0x3BA00B02;
constexpr unsigned int INVALID_DESCRIPTION = 0x3BA0120F;
constexpr unsigned int OLD = 0xAAAAAAAA;

// A file that lives in memory only, and has a path all the same.
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

// Both heads and their texts, read with substr() only.
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

void CheckDescription(const std::string& path, const std::string& bytes, const Heads& heads) {
  const VARNEL_TEST::Description expected = VARNEL_TEST::Reference::ReadDescription(bytes);
  VARNEL_COMMON::CPkgFile package(path);
  const bool isGood = expected.ending == VARNEL_TEST::Ending::Complete;
  FUZZ_CHECK(package.ParsePkgFile() == (isGood ? 0 : INVALID_DESCRIPTION));
  FUZZ_CHECK(package.m_strVersion == (heads.version == "old version" ? "" : heads.version));
  FUZZ_CHECK(VARNEL_TEST::EntriesIn(package) == expected.entries);
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const MemoryFile file;
  VARNEL_FUZZ::KeptLog().clear();
  const std::string bytes = VARNEL_FUZZ::Input(data, size).Rest();
  const std::string& path = file.Write(bytes);
  const Heads heads = PlainHeads(bytes).heads;
  CheckHeads(path, heads);
  CheckDescription(path, bytes, heads);
  const std::vector<std::string> lines = LinesOf(bytes);
  CheckLines(path, lines, bytes.size() + 1);
  CheckLines(path, lines, bytes.size() % 97 + 1);
  CheckColdPatch(path, lines);
  return 0;
}
