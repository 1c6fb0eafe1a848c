#include <publicdata.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "arguments.h"
#include "byte_source.h"
#include "json.h"
#include "output.h"
#include "progress.h"
#include "report_reader.h"
#include "report_splitter.h"
#include "subcommand.h"

namespace {

constexpr char HELP_TEXT[] = R"(Follow package loads and script runs in the reports of elements.

Usage: varnel report [OPTION]... [FILE]

FILE is read to its end; without FILE, or if it is -, standard input is read. An
MML report ends at a line ;, >, < or --- END, or before an empty line; a TL1
report ends where a message of varnel tl1 ends. The language is the one in which
the first report is recognised.

Loads are distinguished by element and load: the SID and the AID in TL1, the
name after +++ and the number after TASK_ID in MML. The command stops when all
loads and runs that have begun are complete: a package load when all is done, a
script run with its end report. On a terminal a bar shows the progress.

Options:
      --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                        IPv6 address in brackets. PORT may be a service name
      --follow          Continue to read as FILE grows, also after another file
                        gets its name or it is truncated
      --timeout SECONDS  Stop after this time, up to a year (default: no limit)
      --idle SECONDS    Stop after this time without a byte (default: no limit)
      --first           Stop when the first load or run is complete
      --language NAME   Read reports in this language only: mml or tl1
      --ne ID           Read reports in the language of the element with this
                        identifier, 0 to 4294967295, decimal, or hexadecimal
                        after 0x: TL1 above 16777215 (0xFFFFFF), else MML
      --key TEXT        Read only reports that contain TEXT or match it as a
                        pattern with *; may be repeated
      --separator TEXT  End reports after TEXT instead of where the language
                        ends them
      --json            Print one JSON object per change
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON objects:
  event                 package or script (progress), complete (a package load),
                        end (a script run)
  source                FILE or HOST:PORT
  sid, load             The element, and which of its loads; null if unknown
  done, total, percent  Numbers of package and script
  result, code          The word and the number of the end result
  item, text            Where and why a run failed, or null

Exit status:
  0  All loads and runs that began succeeded; with --first, the first one.
  1  One failed, there was no end result, the input is unreadable, or the result
     could not be written.
  2  The command line is wrong.

Examples:
  varnel report load.log
      Show the progress recorded in a file.
  varnel report --connect 192.0.2.7:1400 --timeout 600
      Follow loads for ten minutes at most.
  varnel report --follow --json --key '*BOARD 3*' session.log
      Follow the reports of one board in a log.
)";

struct ReportOptions {
  SourceOptions source;
  std::optional<uint32_t> element;      // identifier of the element
  std::optional<std::string> language;  // mml or tl1
  std::vector<std::string> keys;        // only reports that match one of these; empty for all
  std::string separator;                // the end of a report; empty for the rules of its language
  bool first = false;
  bool json = false;
};

constexpr auto CLOCK_INTERVAL = std::chrono::milliseconds(1000);
constexpr auto NO_TICK = std::chrono::milliseconds(0);

// Reads the reports of one language.
struct Reading {
  Reading(Language of, const ReportOptions& options)
      : language(of), cutter(MakeReportCutter(options.separator, of)), reader(of, options.keys) {}

  Language language;
  std::unique_ptr<ReportCutter> cutter;
  ReportReader reader;
};

// A load or run, from its first report on.
struct Job {
  unsigned int done = 0, total = 0;
  bool shown = false;
  bool complete = false;
};

class ReportRun {
 public:
  explicit ReportRun(const ReportOptions& options)
      : m_options(options),
        m_source(options.source.Names().front()),
        m_bar(!options.json && isatty(STDERR_FILENO) != 0) {
    for (const Language language : {Language::Mml, Language::Tl1})
      if (Speaks(language)) m_readings.push_back(std::make_unique<Reading>(language, options));
  }

  int Run() {
    using Status = ByteSource::Status;
    TimeLimits limits(m_options.source);
    const auto source = MakeByteSource(m_options.source, m_source, limits, m_bar.Enabled() ? CLOCK_INTERVAL : NO_TICK);
    std::string bytes;
    while (std::cout.flush()) {
      const Status status = source->Read(bytes);
      Take(bytes, status == Status::End || status == Status::Restarted);
      if (IsDone()) return Finish();
      if (status == Status::Restarted) StartCutters();
      if (m_readings.front()->cutter->TooLong())
        return GiveUp("a report is longer than " + std::to_string(ReportCutter::MAX_LENGTH) + " bytes");
      if (status == Status::Failed) return GiveUp(source->Error());
      if (status == Status::TimedOut) return GiveUp("no end result: " + source->Error() + Hint());
      if (status == Status::End) return GiveUp("no end result: the input ends" + Hint());
      m_bar.ShowTime();
    }
    return EXIT_BAD;
  }

 private:
  using JobName = std::pair<ReportEvent::Kind, LoadName>;

  bool Speaks(Language language) const {
    const bool tl1 = m_options.element ? VARNEL_COMMON::IsTL1NeID(*m_options.element) : m_options.language == "tl1";
    const bool fixed = m_options.element || m_options.language;
    return !fixed || tl1 == (language == Language::Tl1);
  }

  int GiveUp(const std::string& reason) {
    m_bar.Hide();
    Complain(m_source, reason);
    return EXIT_BAD;
  }

  std::string Hint() const {
    if (!m_jobs.empty()) return "";
    const char* language = m_readings.size() > 1 ? "" : m_readings.front()->language == Language::Tl1 ? "TL1 " : "MML ";
    return std::string("; no ") + language + "report was recognised";
  }

  // The language of the first recognised report is that of all. Until then each line is passed to all readings, so that
  // they stay at the same position.
  void Take(std::string_view bytes, bool ends) {
    while (m_readings.size() > 1) {
      const size_t end = std::min(bytes.find('\n'), bytes.size());
      if (end == bytes.size()) break;
      TakeAll(bytes.substr(0, end + 1), false);
      bytes.remove_prefix(end + 1);
    }
    TakeAll(bytes, ends);
  }

  void TakeAll(std::string_view bytes, bool ends) {
    for (size_t i = 0; i < m_readings.size(); ++i) {
      m_readings[i]->cutter->Feed(bytes);
      if (ends) m_readings[i]->cutter->Finish();
      if (!TakeReports(*m_readings[i]) || m_readings.size() == 1) continue;
      std::swap(m_readings[i], m_readings.front());
      m_readings.erase(m_readings.begin() + 1, m_readings.end());
      return;
    }
  }

  // True if a report was recognised.
  bool TakeReports(Reading& reading) {
    bool recognised = false;
    while (!IsDone()) {
      const std::optional<Report> report = reading.cutter->Next();
      if (!report) break;
      for (const ReportEvent& event : reading.reader.Read(*report)) {
        recognised = true;
        Take(event);
      }
    }
    return recognised;
  }

  void StartCutters() {
    for (const auto& reading : m_readings)
      reading->cutter = MakeReportCutter(m_options.separator, reading->language);
  }

  void Take(const ReportEvent& event) {
    if (event.kind == ReportEvent::Kind::End) return EndScript(event);
    Job& job = JobOf(event);
    const bool changed = !job.shown || job.done != event.done || job.total != event.total;
    job.done = event.done;
    job.total = event.total;
    if (changed) Show(event);
    job.shown = true;
    if (event.kind != ReportEvent::Kind::Package) return;
    // Elements send no end report of a package: it ends when all of it is done.
    const bool complete = event.total != 0 && event.done >= event.total;
    if (complete && !job.complete) ShowComplete(event);
    SetComplete(job, complete);
  }

  Job& JobOf(const ReportEvent& event) {
    const auto [found, isNew] = m_jobs.try_emplace({event.kind, event.name});
    if (isNew) ++m_active;
    return found->second;
  }

  void SetComplete(Job& job, bool complete) {
    if (complete && !job.complete) {
      --m_active;
      m_ended = true;
    } else if (!complete && job.complete) {
      ++m_active;
    }
    job.complete = complete;
  }

  // An end report without a number ends all runs of its element.
  void EndScript(ReportEvent event) {
    ShowEnd(event);
    m_failed = m_failed || event.failed;
    event.kind = ReportEvent::Kind::Script;
    SetComplete(JobOf(event), true);
    if (!event.name.load.empty()) return;
    for (auto& [name, job] : m_jobs)
      if (name.first == event.kind && name.second.sid == event.name.sid) SetComplete(job, true);
  }

  bool IsDone() const { return m_ended && (m_options.first || m_active == 0); }

  int Finish() {
    m_bar.Hide();
    return m_failed ? EXIT_BAD : EXIT_DONE;
  }

  // "NE-WEST 41"
  static std::string NameOf(const LoadName& name) {
    return Escaped(name.sid) + (name.sid.empty() || name.load.empty() ? "" : " ") + Escaped(name.load);
  }

  JsonWriter& Begin(const char* kind, const LoadName& name) {
    return m_json.Add("event", kind).Add("source", m_source).AddOrNull("sid", name.sid);
  }

  void Show(const ReportEvent& event) {
    const char* kind = event.kind == ReportEvent::Kind::Package ? "package" : "script";
    const Progress progress{kind, event.done, event.total, event.percent, NameOf(event.name)};
    m_bar.Show(progress);
    if (m_options.json) {
      Begin(kind, event.name).AddOrNull("load", event.name.load);
      m_json.Add("done", event.done).Add("total", event.total).Add("percent", event.percent).Print();
    } else if (!m_bar.Enabled() || !OnTerminal()) {
      std::cout << ToText(progress) << '\n';
    }
  }

  void ShowComplete(const ReportEvent& event) {
    m_bar.Hide();
    if (m_options.json) {
      Begin("complete", event.name).AddOrNull("load", event.name.load).Add("total", event.total).Print();
    } else {
      std::cout << "package " << Coloured(Colour::Good, "complete") << Suffix(event.name) << '\n';
    }
  }

  void ShowEnd(const ReportEvent& event) {
    m_bar.Hide();
    if (m_options.json) {
      Begin("end", event.name).Add("result", event.result).Add("code", event.code);
      m_json.AddOrNull("item", event.item).AddOrNull("text", event.text).Print();
      return;
    }
    const Colour colour = event.failed ? Colour::Bad : Colour::Good;
    std::cout << "end " << Coloured(colour, Escaped(event.result)) << ", code " << event.code;
    if (event.failed) std::cout << ", item " << Escaped(event.item) << ": " << Escaped(event.text);
    std::cout << Suffix(event.name) << '\n';
  }

  static std::string Suffix(const LoadName& name) {
    const std::string text = NameOf(name);
    return text.empty() ? "" : "  " + text;
  }

  const ReportOptions& m_options;
  const std::string m_source;
  std::vector<std::unique_ptr<Reading>> m_readings;  // of each language that the reports may have
  JsonWriter m_json;
  LiveProgress m_bar;
  std::map<JobName, Job> m_jobs;
  size_t m_active = 0;  // jobs that are not complete
  bool m_ended = false;
  bool m_failed = false;
};

class ReportCommand {
 public:
  explicit ReportCommand(CLI::App& command) {
    AddSourceOptions(command, m_options.source, Operands::One);
    command.add_flag("--first", m_options.first);
    CLI::Option* language = command.add_option("--language", m_options.language)->check(OneOf({"mml", "tl1"}));
    TakeNumbers(command.add_option("--ne", m_options.element), 0, UINT32_MAX)->excludes(language);
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

extern const Subcommand REPORT = {"report", HELP_TEXT, AddAs<ReportCommand>};
