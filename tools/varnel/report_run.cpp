#include "report_run.h"

#include <evtmsg.h>
#include <publicdata.h>
#include <unistd.h>

#include <iostream>
#include <optional>
#include <utility>

#include "live_bar.h"
#include "output.h"
#include "report_splitter.h"
#include "subcommands.h"

namespace {

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;

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
  LiveBar m_bar;
  std::optional<Progress> m_shownPackage;
  std::optional<Progress> m_shownScript;
  std::optional<int> m_result;
};

}  // namespace

int FollowReports(const ReportOptions& options) {
  return ReportRun(options).Run();
}
