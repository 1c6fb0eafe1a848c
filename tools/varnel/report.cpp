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

class ReportCommand {
 public:
  explicit ReportCommand(Command& command) {
    AddSourceOptions(command, m_source, "Give up when there is no end result after so many seconds");
    TakeNumbers(command.add_option("--ne", m_element, "Identifier of the element"), 0, UINT32_MAX)
        ->capture_default_str()
        ->type_name("ID");
    command.add_option("--key", m_keys, "Look only at reports that hold TEXT or match it as a pattern with *")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    command.add_option("--separator", m_separator, "A report ends behind TEXT, not where its language ends it")
        ->type_name("TEXT")
        ->check([](const std::string& text) { return text.empty() ? "is empty" : ""; });
    command.add_flag("--json", m_json, "Print one JSON object per change");
    Explain(command);
  }

  int Run() {
    m_package.m_dwNEID = m_script.m_dwNEID = m_end.m_dwNEID = m_element;
    if (m_keys.empty()) m_keys.emplace_back();
    LiveBar bar(!m_json && isatty(STDERR_FILENO) != 0);
    m_bar = &bar;
    const auto source =
        MakeByteSource(m_source, Limit::WholeRun, bar.Enabled() ? CLOCK_INTERVAL : std::chrono::milliseconds(0));
    return Follow(*source);
  }

 private:
  static void Explain(Command& command) {
    command.explanation = {
        {"",
         {{"",
           "An element with an identifier above 16777215 (0xFFFFFF) speaks TL1, others speak MML. Give the "
           "identifier in decimal, or in hexadecimal behind 0x."},
          {"",
           "An MML report ends at a line ;, >, < or --- END, or before an empty line; a TL1 report as varnel "
           "tl1 cuts it."},
          {"",
           "The command ends with the end result: a package load when all is done, a script run with its end "
           "report. On a terminal a bar shows the progress."}}},
        {"JSON objects",
         {{"event", "package, script or end."},
          {"done, total, percent", "Of package and script: numbers."},
          {"result, code", "Of end: the word and the number that the element gives."},
          {"item, text", "Of end: where and why a run failed, or null."}}}};
    command.SetExitStatus("The load or run ended well.",
                          "It failed, there was no end result, or the input is unreadable");
    command.examples.paragraphs = {
        {"varnel report load.log", "Show the progress that is written down in a file."},
        {"varnel report --connect 192.0.2.7:1400 --ne 0x1000001 --timeout 600",
         "Follow a load for ten minutes at most."},
        {"varnel report --follow --json --key '*BOARD 3*' session.log", "Follow the reports of one board in a log."}};
  }

  int Follow(ByteSource& source) {
    const auto reports = MakeReportCutter(m_separator, SpeaksTl1());
    std::string bytes;
    while (std::cout.flush()) {
      const ByteSource::Status status = source.Read(bytes);
      reports->Feed(bytes);
      if (status == ByteSource::Status::End) reports->Finish();
      while (!m_result) {
        std::optional<Report> report = reports->Next();
        if (!report) break;
        Offer(std::move(*report));
      }
      if (m_result) return *m_result;
      if (reports->TooLong())
        return GiveUp("a report is longer than " + std::to_string(ReportCutter::MAX_LENGTH) + " bytes");
      if (status == ByteSource::Status::Failed) return GiveUp(source.Error());
      if (status == ByteSource::Status::TimedOut) return GiveUp("no end result: " + source.Error() + Hint());
      if (status == ByteSource::Status::End) return GiveUp("no end result: the input ends" + Hint());
      m_bar->ShowTime();
    }
    return EXIT_BAD;
  }

  int GiveUp(const std::string& reason) {
    m_bar->Hide();
    Complain(m_source.Name(), reason);
    return EXIT_BAD;
  }

  std::string Hint() const {
    if (m_shownPackage || m_shownScript) return "";
    return std::string("; no ") + (SpeaksTl1() ? "TL1" : "MML") + " report was recognised";
  }

  bool SpeaksTl1() const { return VARNEL_COMMON::IsTL1NeID(m_package.m_dwNEID); }

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
    m_bar->Show(progress);
    if (m_json) {
      PrintJson({{"event", progress.event},
                 {"done", progress.done},
                 {"total", progress.total},
                 {"percent", progress.percent}});
    } else if (!m_bar->Enabled() || !OnTerminal()) {
      std::cout << ToText(progress) << '\n';
    }
  }

  // Elements send no end report of a package: with all of it done it has ended.
  void EndPackage() {
    m_result = EXIT_DONE;
    m_bar->Hide();
    if (!m_json) std::cout << "package " << Coloured(Colour::Good, "complete") << '\n';
  }

  void EndScript() {
    const bool failed = !m_end.m_strResultText.empty();  // only a failure has a text, and never an empty one
    m_result = failed ? EXIT_BAD : EXIT_DONE;
    m_bar->Hide();
    if (m_json) {
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

  SourceOptions m_source;
  unsigned int m_element = 0;
  std::vector<std::string> m_keys;
  std::string m_separator;
  bool m_json = false;

  CVNPackGuageEvt m_package;
  CVNScriptFileGuageEvt m_script;
  CVNScriptFileEndEvt m_end;
  LiveBar* m_bar = nullptr;
  std::optional<Progress> m_shownPackage;
  std::optional<Progress> m_shownScript;
  std::optional<int> m_result;
};

}  // namespace

std::function<int()> AddReport(Command& command) {
  const auto report = std::make_shared<ReportCommand>(command);
  return [report] { return report->Run(); };
}
