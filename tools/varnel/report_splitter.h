#ifndef VARNEL_TOOLS_REPORT_SPLITTER_H
#define VARNEL_TOOLS_REPORT_SPLITTER_H

#include <framer.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// A report cut out of a stream.
struct Report {
  std::string text;   ///< with the line or the separator that ends it, if any
  size_t bodyLength;  ///< without that
};

/// Cuts a stream of bytes into reports; the result does not depend on how the bytes arrive.
class ReportCutter {
 public:
  /// The most bytes of a report, the same limit as for the library's texts.
  static constexpr size_t MAX_LENGTH = 10485760;

  ReportCutter() = default;
  virtual ~ReportCutter() = default;
  ReportCutter(const ReportCutter&) = delete;
  ReportCutter& operator=(const ReportCutter&) = delete;

  virtual void Feed(std::string_view bytes) = 0;

  /// Ends the stream; an unfinished report becomes the last one.
  virtual void Finish() = 0;

  /// The next complete report; absent if more bytes are needed, or after one that is too long.
  virtual std::optional<Report> Next() = 0;

  /// True once a report has become longer than MAX_LENGTH. No further report is cut.
  virtual bool TooLong() const = 0;
};

/// The language of reports.
enum class Language { Mml, Tl1 };

/// Creates a cutter: at `separator` if it is not empty, else by the rules of the language.
std::unique_ptr<ReportCutter> MakeReportCutter(const std::string& separator, Language language);

/// Cuts reports at certain lines.
///
/// A report ends with a line that is ";", ">" or "<" alone, with a line from "---" to "END", or before an empty line.
/// One that begins with a line of "+++" may contain all of these and ends only with its "---" line, or before the next
/// "+++". Line ends are LF and CR LF. With a separator, a report ends only after each occurrence of that text. NUL
/// bytes become blanks, since a report is a NUL-terminated text to the library.
class ReportSplitter : public ReportCutter {
 public:
  /// @param separator  empty for the rules above
  explicit ReportSplitter(std::string separator);

  void Feed(std::string_view bytes) override;
  void Finish() override { m_finished = true; }
  std::optional<Report> Next() override;
  bool TooLong() const override { return m_tooLong; }

 private:
  // The ends of the body and of the report in m_bytes.
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
  size_t m_scanned = 0;    // end of the bytes that were examined
  bool m_started = false;  // the report has a line with text
  bool m_framed = false;   // the report begins with "+++"
  bool m_tooLong = false;
  bool m_finished = false;
};

/// Cuts TL1 messages as `varnel tl1` does: a ";" inside quotes or a comment ends no message. NUL bytes become blanks.
class Tl1ReportCutter : public ReportCutter {
 public:
  Tl1ReportCutter() : m_framer(MAX_LENGTH) {}

  void Feed(std::string_view bytes) override {
    if (!m_tooLong) m_framer.Append(bytes);
  }
  void Finish() override { m_framer.Finish(); }
  std::optional<Report> Next() override;
  bool TooLong() const override { return m_tooLong; }

 private:
  VARNEL_TL1::Framer m_framer;
  bool m_tooLong = false;
};

#endif
