#ifndef VARNEL_TOOLS_LINE_INPUT_H
#define VARNEL_TOOLS_LINE_INPUT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Lines of a descriptor as they arrive. They may contain passwords, therefore read bytes are wiped.
class LineInput {
 public:
  /// @param limit  the most bytes of a line; of a longer one, `limit` + 1 bytes are kept
  LineInput(int file, size_t limit) : m_file(file), m_limit(limit) {}
  ~LineInput() { Drop(m_end); }
  LineInput(const LineInput&) = delete;
  LineInput& operator=(const LineInput&) = delete;

  /// Retrieves a line without its line end (LF or CR LF); the last one needs none. The view is valid until the next
  /// call. False if another Read() is needed, or after the end.
  bool Next(std::string_view& line);

  /// Reads once; call it when the descriptor is readable.
  void Read();

  bool HasEnded() const { return m_ended; }
  /// Why reading failed; else empty.
  const std::string& Error() const { return m_error; }
  /// The number of the line that Next() returned, from 1.
  size_t LineNumber() const { return m_number; }

 private:
  static constexpr size_t CHUNK_SIZE = 4096;

  void Drop(size_t count);
  void MakeRoom();

  const int m_file;
  const size_t m_limit;
  std::vector<char> m_bytes = std::vector<char>(CHUNK_SIZE);  // those up to m_end are read and not yet retrieved
  size_t m_end = 0;
  size_t m_searched = 0;  // no line end is before it
  size_t m_taken = 0;     // the line that Next() returned, which the next call drops
  size_t m_number = 0;
  bool m_ended = false;
  std::string m_error;
};

#endif
