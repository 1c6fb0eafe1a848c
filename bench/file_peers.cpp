#include "file_peers.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <boost/algorithm/string.hpp>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <tuple>

namespace VARNEL_BENCH {

namespace {

constexpr size_t HEAD_SIZE = 64;
constexpr size_t MAX_LINE = 1023;
constexpr size_t MAX_COLUMN = 255;
constexpr size_t COLUMNS = 8;
constexpr std::string_view SECTION = "[File Description]";

uint32_t Big(std::string_view bytes, size_t offset, size_t size) {
  uint32_t number = 0;
  for (const char byte : bytes.substr(offset, size))
    number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

bool IsHead(std::string_view bytes, std::string_view magic) {
  if (bytes.size() < HEAD_SIZE || bytes.substr(0, magic.size()) != magic) return false;
  uint32_t sum = 0;
  for (const char byte : bytes.substr(8, 52))
    sum += static_cast<unsigned char>(byte);
  return sum == Big(bytes, 4, 4);
}

uint32_t GapOf(std::string_view head) {
  return Big(head, 26, 2) + Big(head, 32, 2) + Big(head, 34, 2) + Big(head, 36, 2);
}

struct Lengths {
  explicit Lengths(std::string_view head)
      : skip(Big(head, 44, 2)), link(Big(head, 46, 2)), version(Big(head, 48, 2)), tail(Big(head, 50, 2)) {}
  uint32_t Total() const { return skip + link + version + tail; }
  uint32_t VersionBytes() const { return version == 65535 ? 0 : version; }

  uint32_t skip, link, version, tail;
};

bool TakeTexts(std::string_view link, std::string_view version, Heads& heads) {
  link = link.substr(0, link.find('\0'));
  const size_t marker = link.find("-> ");
  if (marker == std::string_view::npos) return false;
  heads.link = link.substr(marker + 3);
  version = version.substr(0, version.find('T'));
  heads.version = version.substr(0, version.find('\0'));
  return true;
}

// The bytes after the directory header: one read is enough unless the texts are long.
class Rest {
 public:
  Rest(const Descriptor& file, size_t offset)
      : m_file(file), m_offset(offset), m_size(Pread(m_piece.data(), m_piece.size(), offset)) {}

  std::string_view Head() const { return {m_piece.data(), m_size}; }

  std::string_view At(size_t offset, size_t size) {
    if (offset + size <= m_size) return Head().substr(offset, size);
    m_long.resize(size);
    return std::string_view(m_long).substr(0, Pread(m_long.data(), size, m_offset + offset));
  }

 private:
  size_t Pread(char* dest, size_t size, size_t offset) const {
    const ssize_t read = ::pread(m_file.get(), dest, size, static_cast<off_t>(offset));
    return read < 0 ? 0 : static_cast<size_t>(read);
  }

  const Descriptor& m_file;
  size_t m_offset;
  std::array<char, 2048> m_piece;
  size_t m_size;
  std::string m_long;
};

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

std::string_view Visible(std::string_view line) {
  line = line.substr(0, MAX_LINE);
  return line.substr(0, line.find('\0'));
}

bool EndsSection(std::string_view line) {
  return line.substr(0, 1) == "[" || line.find("[END]") != std::string_view::npos;
}

unsigned int NumberOf(std::string_view text) {
  unsigned int number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc::result_out_of_range ? UINT32_MAX : number;
}

// Adds an entry of eight trimmed columns unless it is a comment; false for a column that is too long.
template <typename Columns>
bool TakeEntry(const Columns& columns, Description& description) {
  const std::string_view first = columns[0];
  if (first.substr(0, 1) == "#" || first.find("\xA3\xA3") != std::string_view::npos) return true;
  for (const auto& column : columns) {
    if (column.size() > MAX_COLUMN) return false;
  }
  description.entries.push_back({std::string(columns[0]), std::string(columns[1]), NumberOf(columns[4])});
  return true;
}

bool TakeLine(std::string_view line, Description& description) {
  std::array<std::string_view, COLUMNS> columns;
  size_t count = 0;
  for (size_t start = 0; start <= line.size(); ++count) {
    if (count == COLUMNS) return true;
    const size_t end = std::min(line.find(':', start), line.size());
    columns[count] = Trimmed(line.substr(start, end - start));
    start = end + 1;
  }
  return count != COLUMNS || TakeEntry(columns, description);
}

template <typename Lines>
Description Describe(const std::string& path) {
  Description description;
  description.version = ReadHeadsByPread(path).version;
  Lines lines(path);
  std::string_view line;
  while (lines.NextLine(line) && Visible(line).find(SECTION) == std::string_view::npos) {
  }
  while (lines.NextLine(line) && !EndsSection(line = Visible(line))) {
    if (!TakeLine(line, description)) break;
  }
  return description;
}

}  // namespace

Descriptor::Descriptor(const std::string& path) : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

Descriptor::~Descriptor() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

Mapped::Mapped(const std::string& path) {
  const Descriptor file(path);
  struct stat status;
  if (::fstat(file.get(), &status) != 0 || status.st_size == 0) return;
  const auto size = static_cast<size_t>(status.st_size);
  void* bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file.get(), 0);
  if (bytes == MAP_FAILED) return;
  m_rest = m_bytes = {static_cast<const char*>(bytes), size};
}

Mapped::~Mapped() {
  if (!m_bytes.empty()) ::munmap(const_cast<char*>(m_bytes.data()), m_bytes.size());
}

bool Mapped::NextLine(std::string_view& line) {
  if (m_rest.empty()) return false;
  const size_t length = std::min(m_rest.find('\n'), m_rest.size());
  line = m_rest.substr(0, length);
  m_rest.remove_prefix(std::min(length + 1, m_rest.size()));
  return true;
}

CLines::CLines(const std::string& path) : m_file(std::fopen(path.c_str(), "rbe")) {}

CLines::~CLines() {
  std::free(m_line);
  if (m_file != nullptr) std::fclose(m_file);
}

bool CLines::NextLine(std::string_view& line) {
  const ssize_t read = ::getline(&m_line, &m_size, m_file);
  if (read < 0) return false;
  line = {m_line, static_cast<size_t>(read)};
  if (line.back() == '\n') line.remove_suffix(1);
  return true;
}

bool operator==(const Heads& a, const Heads& b) {
  return std::tie(a.valid, a.type, a.extension, a.payload, a.link, a.version) ==
         std::tie(b.valid, b.type, b.extension, b.payload, b.link, b.version);
}

Heads ReadHeadsByPread(const std::string& path) {
  Heads heads;
  const Descriptor file(path);
  char bytes[HEAD_SIZE];
  if (::pread(file.get(), bytes, HEAD_SIZE, 0) != static_cast<ssize_t>(HEAD_SIZE)) return heads;
  const std::string_view dirHead(bytes, HEAD_SIZE);
  if (!IsHead(dirHead, "QXDD")) return heads;
  Rest rest(file, HEAD_SIZE + GapOf(dirHead));
  if (!IsHead(rest.Head(), "QXFF")) return heads;

  const Lengths lengths(rest.Head());
  heads.type = Big(rest.Head(), 32, 2);
  heads.payload = GapOf(dirHead) + 2 * HEAD_SIZE + lengths.Total();
  const size_t extension = heads.type == 2 ? 2 : 0;
  if (extension != 0) heads.extension = Big(rest.At(HEAD_SIZE, 2), 0, 2);
  const size_t link = HEAD_SIZE + extension + lengths.skip;
  const std::string_view texts = rest.At(link, lengths.link + lengths.VersionBytes());
  heads.valid = lengths.link <= MAX_LINE && texts.size() == lengths.link + lengths.VersionBytes() &&
                TakeTexts(texts.substr(0, lengths.link), texts.substr(lengths.link), heads);
  return heads;
}

Heads ReadHeadsByStream(const std::string& path) {
  Heads heads;
  std::ifstream file(path, std::ios::binary);
  std::string head(HEAD_SIZE, '\0');
  if (!file.read(head.data(), HEAD_SIZE) || !IsHead(head, "QXDD")) return heads;
  const uint32_t gap = GapOf(head);
  file.seekg(gap, std::ios::cur);
  if (!file.read(head.data(), HEAD_SIZE) || !IsHead(head, "QXFF")) return heads;

  const Lengths lengths(head);
  heads.type = Big(head, 32, 2);
  heads.payload = gap + 2 * HEAD_SIZE + lengths.Total();
  char word[2];
  if (heads.type == 2 && file.read(word, sizeof word)) heads.extension = Big({word, sizeof word}, 0, 2);
  file.seekg(lengths.skip, std::ios::cur);
  std::string link(lengths.link, '\0');
  std::string version(lengths.VersionBytes(), '\0');
  if (link.size() > MAX_LINE || !file.read(link.data(), static_cast<std::streamsize>(link.size())) ||
      !file.read(version.data(), static_cast<std::streamsize>(version.size()))) {
    return heads;
  }
  heads.valid = TakeTexts(link, version, heads);
  return heads;
}

const void* ReadAndSearch(const std::string& path) {
  static std::vector<char> piece(1 << 20);
  const Descriptor file(path);
  const void* found = nullptr;
  for (ssize_t size; (size = ::read(file.get(), piece.data(), piece.size())) > 0;)
    found = std::memchr(piece.data(), '\xFE', static_cast<size_t>(size));
  return found;
}

Description DescribeMapped(const std::string& path) {
  return Describe<Mapped>(path);
}

Description DescribeByCLines(const std::string& path) {
  return Describe<CLines>(path);
}

Description DescribeByBoost(const std::string& path) {
  Description description;
  description.version = ReadHeadsByPread(path).version;
  std::ifstream file(path, std::ios::binary);
  std::string line;
  while (std::getline(file, line) && Visible(line).find(SECTION) == std::string_view::npos) {
  }
  std::vector<std::string> columns;
  while (std::getline(file, line) && !EndsSection(line)) {
    boost::split(columns, Visible(line), [](char c) { return c == ':'; });
    if (columns.size() != COLUMNS) continue;
    for (std::string& column : columns)
      boost::trim(column, std::locale::classic());
    if (!TakeEntry(columns, description)) break;
  }
  return description;
}

}  // namespace VARNEL_BENCH
