#ifndef VARNEL_BENCH_FILE_PEERS_H
#define VARNEL_BENCH_FILE_PEERS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Peers of the operations on files: the same work with other libraries.
namespace VARNEL_BENCH {

/// An open file that closes itself.
class Descriptor {
 public:
  explicit Descriptor(const std::string& path);
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_descriptor; }

 private:
  int m_descriptor;
};

/// A whole file mapped for reading.
class Mapped {
 public:
  explicit Mapped(const std::string& path);
  ~Mapped();
  Mapped(const Mapped&) = delete;
  Mapped& operator=(const Mapped&) = delete;

  std::string_view Bytes() const { return m_bytes; }

  /// Retrieves the next line, without its line feed; false at the end.
  bool NextLine(std::string_view& line);

 private:
  std::string_view m_bytes;
  std::string_view m_rest;
};

/// The lines of getline(3).
class CLines {
 public:
  explicit CLines(const std::string& path);
  ~CLines();
  CLines(const CLines&) = delete;
  CLines& operator=(const CLines&) = delete;

  /// As Mapped::NextLine(); the line is valid until the next one is read.
  bool NextLine(std::string_view& line);

 private:
  FILE* m_file;
  char* m_line = nullptr;
  size_t m_size = 0;
};

/// The results of readZEPFileHead().
struct Heads {
  bool valid = false;
  unsigned int type = 0, extension = 0, payload = 0;
  std::string link, version;
};

bool operator==(const Heads& a, const Heads& b);

Heads ReadHeadsByPread(const std::string& path);
Heads ReadHeadsByStream(const std::string& path);

/// Reads a file in large pieces and searches them for a byte that they do not contain: the limit of all of these.
const void* ReadAndSearch(const std::string& path);

struct Entry {
  std::string name, kind;
  unsigned int size;
};

/// The results of CPkgFile.
struct Description {
  std::string version;
  std::vector<Entry> entries;
};

Description DescribeMapped(const std::string& path);
Description DescribeByCLines(const std::string& path);
Description DescribeByBoost(const std::string& path);

}  // namespace VARNEL_BENCH

#endif
