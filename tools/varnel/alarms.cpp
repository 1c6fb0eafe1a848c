#include <alarms.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "json.h"
#include "output.h"
#include "subcommand.h"
#include "tl1_run.h"

using VARNEL_TL1::Alarm;
using VARNEL_TL1::Alarms;
using VARNEL_TL1::Message;

namespace {

constexpr char HELP_TEXT[] = R"(List the active alarms of TL1 streams.

Usage: varnel alarms [OPTION]... [FILE]...

Each FILE is read to its end; without FILE, or if it is -, standard input is
read. An autonomous REPT ALM message raises an alarm, or clears it by the
severity CL, or by the alarm code A with CL among its values. An alarm is
identified by source, SID, AID and condition. At the end the alarms are printed
that are raised and not cleared.

Options:
      --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                        IPv6 address in brackets. PORT may be a service name
      --follow          Continue to read as FILE grows, also after another file
                        gets its name or it is truncated
      --timeout SECONDS  Stop after this time, up to a year (default: no limit)
      --idle SECONDS    Stop after this time without a byte (default: no limit)
      --json            Print one JSON object per alarm
      --changes         Print each alarm when it is raised, changed or cleared,
                        and no table at the end
      --encoding NAME   Read characters in this encoding of iconv, which must
                        extend ASCII (default: UTF-8)
      --limit BYTES     Accept messages up to this length, 1 to 1099511627776;
                        K and M are units of 1024 and 1048576 (default: 16M)
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines, what was skipped, and
                        which time limit was reached, on standard error

JSON objects:
  source                FILE or HOST:PORT
  sid, aid, condition   What identifies the alarm in its source
  severity              CR, MJ or MN; CL once it is cleared
  effect                SA or NSA, on service
  raised                Date and time of the message that raised it
  received              Time when that message came, in UTC; null for a file
                        that is not followed
  description           The text after these values
  change                Only with --changes: raised, changed or cleared
  Values that an alarm does not have are null.

Exit status:
  0  All was read, or a time limit was reached, whether alarms are active or
     not.
  1  A message is incomplete or too long, no TL1 was found, a FILE is
     unreadable, there is no connection, or the result could not be written.
  2  The command line is wrong.

Examples:
  varnel alarms capture.log
      Show which alarms were still active at the end of a file.
  varnel alarms --changes --json --connect 192.0.2.7:1400
      Follow the alarms of an element, for a program.
)";

struct AlarmsOptions : Tl1Options {
  bool changes = false;
};

Colour ColourOf(const std::string& severity) {
  return severity == "CR" || severity == "MJ" ? Colour::Bad : severity == "CL" ? Colour::Good : Colour::Warning;
}

class AlarmsRun : public Tl1Run {
 public:
  AlarmsRun(const AlarmsOptions& options, bool verbose)
      : Tl1Run(options, verbose), m_options(options), m_encoding(options.encoding) {}

  int RunToTable() {
    const int status = Run();
    if (m_options.changes) return status;
    if (m_options.json) {
      for (const auto& [key, alarm] : m_alarms.Active())
        PrintJson(alarm, nullptr);
    } else {
      PrintTable();
    }
    return status;
  }

 private:
  // The texts of an alarm as a row of the table.
  using Row = std::vector<std::string>;

  void Take(const Message& message) override {
    m_alarms.Add(Source(), message, Received(), [this](Alarms::Change change, const Alarm& alarm) {
      if (m_options.changes) PrintChange(VARNEL_TL1::ChangeName(change), alarm);
    });
    Examine(message);
  }

  void PrintChange(const char* change, const Alarm& alarm) {
    if (m_options.json) {
      PrintJson(alarm, change);
    } else {
      std::cout << Padded(change, 7) << "  " << Line(RowOf(alarm), {}) << '\n';
    }
  }

  void PrintJson(const Alarm& alarm, const char* change) {
    m_json.Add("source", alarm.source);
    AddText("sid", alarm.sid);
    AddText("aid", alarm.aid);
    AddText("condition", alarm.condition);
    AddText("severity", alarm.severity);
    AddText("effect", alarm.effect);
    AddText("raised", alarm.raised);
    AddText("received", alarm.received);
    AddText("description", alarm.description);
    if (change != nullptr) m_json.Add("change", change);
    m_json.Print();
  }

  template <size_t SIZE>
  void AddText(const char (&key)[SIZE], const std::string& text) {
    m_json.AddOrNull(key, m_encoding.ToUtf8(text));
  }

  void PrintTable() {
    std::vector<Row> rows = {{"SEV", "RAISED", "SID", "AID", "CONDITION", "EFFECT", "DESCRIPTION"}};
    if (NamesSource()) rows.front().insert(rows.front().begin() + 2, "SOURCE");
    for (const auto& [key, alarm] : m_alarms.Active())
      rows.push_back(RowOf(alarm));
    if (rows.size() == 1) {
      std::cout << "no active alarms\n";
      return;
    }
    const std::vector<size_t> widths = Widths(rows);
    for (const Row& row : rows)
      std::cout << Line(row, widths) << '\n';
  }

  bool NamesSource() const { return m_options.source.Names().size() > 1; }

  Row RowOf(const Alarm& alarm) {
    Row row = {alarm.severity, alarm.raised, alarm.sid, alarm.aid, alarm.condition, alarm.effect, alarm.description};
    for (std::string& text : row)
      text = text.empty() ? "-" : Escaped(m_encoding.ToUtf8(text));
    if (NamesSource()) row.insert(row.begin() + 2, Escaped(alarm.source));
    return row;
  }

  static std::vector<size_t> Widths(const std::vector<Row>& rows) {
    std::vector<size_t> widths(rows.front().size());
    for (const Row& row : rows) {
      for (size_t i = 0; i < row.size(); ++i)
        widths[i] = std::max(widths[i], Width(row[i]));
    }
    return widths;
  }

  // The severity has a colour; the last column is not padded. Without widths no column is.
  static std::string Line(const Row& row, const std::vector<size_t>& widths) {
    std::string line;
    for (size_t i = 0; i < row.size(); ++i) {
      const bool last = i + 1 == row.size();
      const std::string text = last || widths.empty() ? row[i] : Padded(row[i], widths[i]);
      line += i == 0 && row[i] != "SEV" ? Coloured(ColourOf(row[i]), text) : text;
      if (!last) line += "  ";
    }
    return line;
  }

  const AlarmsOptions& m_options;
  Encoding m_encoding;
  JsonWriter m_json;
  Alarms m_alarms;
};

class AlarmsCommand {
 public:
  explicit AlarmsCommand(CLI::App& command) : m_app(command) {
    AddTl1Options(command, m_options);
    command.add_flag("--changes", m_options.changes);
  }

  int Run() const { return AlarmsRun(m_options, m_app.get_parent()->count("--verbose") > 0).RunToTable(); }

 private:
  CLI::App& m_app;
  AlarmsOptions m_options;
};

}  // namespace

extern const Subcommand ALARMS = {"alarms", HELP_TEXT, AddAs<AlarmsCommand>};
