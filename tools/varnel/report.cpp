#include <evtmsg.h>
#include <publicdata.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "arguments.h"
#include "byte_source.h"
#include "output.h"
#include "progress.h"
#include "report_splitter.h"
#include "subcommands.h"

namespace {

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;

constexpr char HELP_TEXT[] = R"(Follow a package load or script run in an element's reports.

Usage: varnel report [OPTION]... [FILE]

FILE is read to its end; without FILE, or if it is -, standard input is read. An
element with an identifier above 16777215 (0xFFFFFF) speaks TL1, others speak
MML. An MML report ends at a line ;, >, < or --- END, or before an empty line; a
TL1 report ends where a message of varnel tl1 ends.

The command stops at the end result: of a package load when all is done, of a
script run with its end report. On a terminal a bar shows the progress.

Options:
      --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                        IPv6 address in brackets
      --follow          Continue to read as FILE grows
      --timeout SECONDS  Stop if there is no end result after this time, up to a
                        year (default: no limit)
      --ne ID           Set the identifier of the element, 0 to 4294967295,
                        decimal, or hexadecimal after 0x (default: 0)
      --key TEXT        Read only reports that contain TEXT or match it as a
                        pattern with *; may be repeated
      --separator TEXT  End reports after TEXT instead of where the language
                        ends them
      --json            Print one JSON object per change
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON objects:
  event                 package, script or end
  done, total, percent  Numbers of package and script
  result, code          The word and the number of the end result
  item, text            Where and why a run failed, or null

Exit status:
  0  The load or run succeeded.
  1  It failed, there was no end result, the input is unreadable, or the result
     could not be written.
  2  The command line is wrong.

Examples:
  varnel report load.log
      Show the progress recorded in a file.
  varnel report --connect 192.0.2.7:1400 --ne 0x1000001 --timeout 600
      Follow a load for ten minutes at most.
  varnel report --follow --json --key '*BOARD 3*' session.log
      Follow the reports of one board in a log.
)";

struct ReportOptions {
  SourceOptions source;
  uint32_t element = 0;           // identifier of the element
  std::vector<std::string> keys;  // only reports that one of these is for; empty for all
  std::string separator;          // what ends a report; empty for the rules of its language
  bool json = false;
};

constexpr auto CLOCK_INTERVAL = std::chrono::milliseconds(1000);
constexpr auto NO_TICK = std::chrono::milliseconds(0);

class ReportRun {
 public:
  explicit ReportRun(const ReportOptions& options)
      : m_options(options), m_keys(options.keys), m_bar(!options.json && isatty(STDERR_FILENO) != 0) {
    m_package.m_dwNEID = m_script.m_dwNEID = m_end.m_dwNEID = options.element;
    if (m_keys.empty()) m_keys.emplace_back();
  }

  int Run() {
    const auto source = MakeByteSource(m_options.source, Limit::WholeRun, m_bar.Enabled() ? CLOCK_INTERVAL : NO_TICK);
    const auto reports = MakeReportCutter(m_options.separator, SpeaksTl1());
    std::string bytes;
    while (std::cout.flush()) {
      const ByteSource::Status status = source->Read(bytes);
      reports->Feed(bytes);
      if (status == ByteSource::Status::End) reports->Finish();
      OfferAll(*reports);
      if (m_result) return *m_result;
      if (reports->TooLong())
        return GiveUp("a report is longer than " + std::to_string(ReportCutter::MAX_LENGTH) + " bytes");
      if (status == ByteSource::Status::Failed) return GiveUp(source->Error());
      if (status == ByteSource::Status::TimedOut) return GiveUp("no end result: " + source->Error() + Hint());
      if (status == ByteSource::Status::End) return GiveUp("no end result: the input ends" + Hint());
      m_bar.ShowTime();
    }
    return EXIT_BAD;
  }

 private:
  int GiveUp(const std::string& reason) {
    m_bar.Hide();
    Complain(m_options.source.Name(), reason);
    return EXIT_BAD;
  }

  std::string Hint() const {
    if (m_shownPackage || m_shownScript) return "";
    return SpeaksTl1() ? "; no TL1 report was recognised" : "; no MML report was recognised (for TL1 give --ne)";
  }

  bool SpeaksTl1() const { return VARNEL_COMMON::IsTL1NeID(m_options.element); }

  void OfferAll(ReportCutter& reports) {
    while (!m_result) {
      std::optional<Report> report = reports.Next();
      if (!report) return;
      Offer(std::move(*report));
    }
  }

  // Each event looks at the report, as several may know it. Counts are recognised by what stands behind them; the text
  // of an end result does without.
  void Offer(Report report) {
    const char* const text = report.text.c_str();
    if (Knows(m_package, text)) {
      Show({"package", m_package.m_dwDoneNum, m_package.m_dwTotalNum, m_package.GetGuage()}, m_shownPackage);
      if (m_package.m_dwTotalNum != 0 && m_package.m_dwDoneNum >= m_package.m_dwTotalNum) return EndPackage();
    }
    if (Knows(m_script, text)) {
      Show({"script", m_script.m_dwDoneNum, m_script.m_dwTotalNum, m_script.GetGuage()}, m_shownScript);
    }
    report.text.resize(report.bodyLength);
    if (Knows(m_end, report.text.c_str())) EndScript();
  }

  bool Knows(CEvtMsg& event, const char* report) const {
    for (const std::string& key : m_keys) {
      event.m_strEvtKey = key;
      if (event.IsMyEvt(report)) return event.HandleReport(report);
    }
    return false;
  }

  void Show(const Progress& progress, std::optional<Progress>& shown) {
    if (shown && shown->done == progress.done && shown->total == progress.total) return;
    shown = progress;
    m_bar.Show(progress);
    if (m_options.json) {
      PrintJson({{"event", progress.event},
                 {"done", progress.done},
                 {"total", progress.total},
                 {"percent", progress.percent}});
    } else if (!m_bar.Enabled() || !OnTerminal()) {
      std::cout << ToText(progress) << '\n';
    }
  }

  // Elements send no end report of a package: with all of it done it has ended.
  void EndPackage() {
    m_result = EXIT_DONE;
    m_bar.Hide();
    if (!m_options.json) std::cout << "package " << Coloured(Colour::Good, "complete") << '\n';
  }

  void EndScript() {
    const bool failed = !m_end.m_strResultText.empty();  // only a failure has a text, and never an empty one
    m_result = failed ? EXIT_BAD : EXIT_DONE;
    m_bar.Hide();
    if (m_options.json) {
      PrintJson({{"event", "end"},
                 {"result", m_end.m_strResult},
                 {"code", m_end.m_dwResultCode},
                 {"item", failed ? Json(m_end.m_strResultItem) : Json(nullptr)},
                 {"text", failed ? Json(ResultText()) : Json(nullptr)}});
      return;
    }
    std::cout << "end " << Coloured(failed ? Colour::Bad : Colour::Good, Escaped(m_end.m_strResult)) << ", code "
              << m_end.m_dwResultCode;
    if (failed) std::cout << ", item " << Escaped(m_end.m_strResultItem) << ": " << Escaped(ResultText());
    std::cout << '\n';
  }

  // Without the blank that stands behind each of its words.
  std::string ResultText() const { return m_end.m_strResultText.substr(0, m_end.m_strResultText.size() - 1); }

  const ReportOptions& m_options;
  std::vector<std::string> m_keys;

  CVNPackGuageEvt m_package;
  CVNScriptFileGuageEvt m_script;
  CVNScriptFileEndEvt m_end;
  LiveProgress m_bar;
  std::optional<Progress> m_shownPackage;
  std::optional<Progress> m_shownScript;
  std::optional<int> m_result;
};

class ReportCommand {
 public:
  explicit ReportCommand(CLI::App& command) {
    AddSourceOptions(command, m_options.source);
    TakeNumbers(command.add_option("--ne", m_options.element), 0, UINT32_MAX);
    command.add_option("--key", m_options.keys)->allow_extra_args(false);
    command.add_option("--separator", m_options.separator)->check([](const std::string& text) {
      return text.empty() ? "is empty" : "";
    });
    command.add_flag("--json", m_options.json);
  }

  int Run() const { return ReportRun(m_options).Run(); }

 private:
  ReportOptions m_options;
};

}  // namespace

const Subcommand REPORT = {"report", HELP_TEXT, AddAs<ReportCommand>};
