#include <memory>

#include "arguments.h"
#include "report_run.h"
#include "subcommands.h"

namespace {

class ReportCommand {
 public:
  explicit ReportCommand(Command& command) {
    AddSourceOptions(command, m_options.source, "Give up when there is no end result after so many seconds");
    TakeNumbers(command.add_option("--ne", m_options.element, "Identifier of the element"), 0, UINT32_MAX)
        ->capture_default_str()
        ->type_name("ID");
    command.add_option("--key", m_options.keys, "Look only at reports that hold TEXT or match it as a pattern with *")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    command.add_option("--separator", m_options.separator, "A report ends behind TEXT, not where its language ends it")
        ->type_name("TEXT")
        ->check([](const std::string& text) { return text.empty() ? "is empty" : ""; });
    command.add_flag("--json", m_options.json, "Print one JSON object per change");
    Explain(command);
  }

  int Run() const { return FollowReports(m_options); }

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

  ReportOptions m_options;
};

}  // namespace

std::function<int()> AddReport(Command& command) {
  const auto report = std::make_shared<ReportCommand>(command);
  return [report] { return report->Run(); };
}
