#ifndef VARNEL_TOOLS_REPORT_SPLITTER_H
#define VARNEL_TOOLS_REPORT_SPLITTER_H

#include <optional>
#include <string>
#include <string_view>

/// A report as it was cut out of a stream.
struct Report {
  std::string text;   ///< with the line or the separator that ends it, if any
  size_t bodyLength;  ///< without that
};

/// Cuts a stream of bytes into reports, however it arrives.
///
/// A report ends with a line that is ";", ">" or "<" alone, with a line from "---" to "END", or before an empty line.
/// One that begins with a line of "+++" may hold all of these and ends with its "---" line only, or before the next
/// "+++". Line ends are LF and CR LF. With a separator of one's own, a report ends behind each occurrence of that text
/// and nowhere else. NUL bytes become blanks, since a report is a NUL-terminated text to the library.
class ReportSplitter {
 public:
  /// Length in bytes up to which a report is taken; as for the library's texts.
  static constexpr size_t MAX_LENGTH = 10485760;

  /// @param separator  empty for the rules above
  explicit ReportSplitter(std::string separator);

  void Feed(std::string_view bytes);

  /// The next complete report; nothing when more bytes are needed, or after one that is too long.
  std::optional<Report> Next();

  /// True once a report has become longer than MAX_LENGTH. Nothing is cut from then on.
  bool TooLong() const { return m_tooLong; }

  /// What has no end yet, for the end of the stream; may be empty.
  Report TakeRest();

 private:
  // Where the body and the whole of the report end, in m_bytes.
  struct Ends {
    size_t body, whole;
  };

  std::optional<Ends> FindSeparator();
  std::optional<Ends> FindEnd();
  std::optional<Ends> EndAtLine(size_t begin, size_t end);
  Report Take(const Ends& ends);

  std::string m_separator;
  std::string m_bytes;
  size_t m_begin = 0;      // of the report that is being read
  size_t m_lineBegin = 0;  // of the line that has no end yet; unused with a separator
  size_t m_scanned = 0;    // behind what has been looked at
  bool m_started = false;  // the report has a line with text
  bool m_framed = false;   // the report begins with "+++"
  bool m_tooLong = false;
};

#endif
