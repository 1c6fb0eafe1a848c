#include <joiner.h>

#include <iostream>
#include <map>
#include <memory>

#include "arguments.h"
#include "subcommand.h"
#include "tl1_filter.h"
#include "tl1_run.h"
#include "tl1_strict.h"

using VARNEL_TL1::Atags;
using VARNEL_TL1::Joiner;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace {

constexpr char HELP_TEXT[] = R"(Cut a stream of bytes into TL1 messages and show their parts.

Usage: varnel tl1 [OPTION]... [FILE]...

Each FILE is read to its end; without FILE, or if it is -, standard input is
read. Any line ends are accepted. Echoes, banners, prompts and telnet bytes
between messages are skipped. A message that has no end is shown too, and
reported on standard error with its offset.

LIST is one pattern, or several separated by commas, with * for any run of
characters and ? for one; case does not matter. A message is shown if it passes
all filters.

Options:
      --connect HOST:PORT  Read from a TCP connection instead of FILE; write an
                        IPv6 address in brackets. PORT may be a service name
      --follow          Continue to read as FILE grows, also after another file
                        gets its name or it is truncated
      --timeout SECONDS  Stop after this time, up to a year (default: no limit)
      --idle SECONDS    Stop after this time without a byte (default: no limit)
      --count N         Stop after N messages are shown
      --json            Print one JSON object per message
      --join            Join the parts of an answer into one message
      --strict          Read messages with the library's strict parser, and
                        report where it refuses one
      --type LIST       Show only messages of these types: acknowledgement,
                        response, autonomous, prompt, unrecognised
      --sid LIST        Show only messages from these elements
      --verb LIST       Show only autonomous messages with these verbs, such as
                        'REPT ALM *'
      --ctag LIST       Show only messages with these correlation tags
      --code LIST       Show only messages with these codes, such as COMPLD or
                        *C; *, ** and * with one other character mean that alarm
                        code
      --severity LIST   Show only messages whose text begins with one of these
                        severities: CR, MJ, MN, CL
      --encoding NAME   Read characters in this encoding of iconv, which must
                        extend ASCII (default: UTF-8)
      --limit BYTES     Accept messages up to this length, 1 to 1099511627776;
                        K and M are units of 1024 and 1048576 (default: 16M)
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines, what was skipped, and
                        which time limit was reached, on standard error

JSON objects:
  type                  acknowledgement, response, autonomous, prompt or
                        unrecognised
  source                FILE or HOST:PORT
  received              Time when the end of the message came, in UTC; null for
                        a file that is not followed
  offset, length        Position of the message in the stream, in bytes
  complete              False if the message has no end or is too long, or if
                        with --join the last part is missing
  sid, date, time       From the header
  ctag, atag            The correlation tag of an answer; the tag of an
                        autonomous message
  code, verb            The completion or alarm code; the subject of an
                        autonomous message
  lines                 A list of the lines of its text
  text                  For each line null, or for a quoted one an object: aid,
                        positional (a list for each block after the aid) and
                        named (the values with names)
  severity              Of the first quoted line: CR, MJ, MN, CL or null
  missed                How many autonomous messages of this element are missing
                        before this one, by their atags; null if it is unknown
  continues             True if more parts of the answer follow
  raw                   The message in base64 if it is not valid in the encoding
  Values that a message does not have are null.

Exit status:
  0  All was read, or a time limit or N was reached.
  1  A message is incomplete, too long or refused, no TL1 was found, fewer than
     N messages were shown, a FILE is unreadable, there is no connection, or the
     result could not be written.
  2  The command line is wrong.

Examples:
  varnel tl1 capture.log
      Show all messages of a file.
  varnel tl1 --json --type autonomous --code '*C,**' *.log
      Show critical and major alarms in several files, for a program.
  varnel tl1 --connect 192.0.2.7:1400 --idle 60
      Show what an element sends until it is silent for a minute.
)";

struct ShowOptions : Tl1Options {
  bool join = false;
  bool strict = false;
  std::optional<uint64_t> count;
  Tl1Filter filter;
};

// Passes messages from the framer through parser, joiner and filter to standard output.
class ShowRun : public Tl1Run {
 public:
  ShowRun(const ShowOptions& options, bool verbose)
      : Tl1Run(options, verbose),
        m_options(options),
        m_namesSource(options.source.Names().size() > 1),
        m_output(options.encoding) {}

  int Show() {
    const int status = Run();
    if (!m_options.count || m_shown == *m_options.count) return status;
    Fail("only " + std::to_string(m_shown) + " of " + std::to_string(*m_options.count) + " messages came");
    return EXIT_BAD;
  }

 private:
  void StartSource() override { m_atags.emplace(); }

  void StartStream() override {
    m_joiner.emplace(m_options.limit);
    m_missed.clear();
  }

  void Take(const Message& message) override {
    const std::optional<uint64_t> missed = m_atags->Missed(message);
    if (!m_options.strict) return Pass(message, missed);
    const StrictMessage strict = ReadStrictly(message);
    if (!strict.refusedAt.empty()) {
      Fail("the message at offset " + std::to_string(message.offset) + " is refused: bad " + strict.refusedAt);
    }
    Pass(strict.message.View(), missed);
  }

  void Pass(const Message& message, std::optional<uint64_t> missed) {
    if (!m_options.join) return Show(message, missed);
    if (message.type == MessageType::Autonomous) m_missed.emplace(message.offset, missed);
    m_joiner->Add(message);
    ShowJoined();
  }

  void FinishStream() override {
    m_joiner->Finish();
    ShowJoined();
  }

  void ShowJoined() {
    Message message;
    while (!IsDone() && m_joiner->Next(message))
      Show(message, TakeMissed(message));
  }

  // Returns the count of the first part and removes the entries of all parts.
  std::optional<uint64_t> TakeMissed(const Message& message) {
    const auto first = m_missed.find(message.offset);
    if (first == m_missed.end()) return std::nullopt;
    const std::optional<uint64_t> missed = first->second;
    m_missed.erase(first, m_missed.lower_bound(message.offset + message.length));
    return missed;
  }

  void Show(const Message& message, std::optional<uint64_t> missed) {
    if (m_options.filter.Passes(message)) {
      Print(message, missed);
      ++m_shown;
    }
    Examine(message);
  }

  void Print(const Message& message, std::optional<uint64_t> missed) {
    if (m_options.json) {
      m_output.Add(m_json, message, {Source(), Received(), missed});
      m_json.Print();
    } else {
      m_output.Print(message, {m_namesSource ? Source() : "", {}, missed});
    }
  }

  bool IsDone() const override { return m_shown == m_options.count; }

  const ShowOptions& m_options;
  const bool m_namesSource;
  Tl1Output m_output;
  JsonWriter m_json;
  std::optional<Joiner> m_joiner;
  std::optional<Atags> m_atags;
  std::map<uint64_t, std::optional<uint64_t>> m_missed;  // by offset, of messages that are still in the joiner
  uint64_t m_shown = 0;
};

class Tl1Command {
 public:
  explicit Tl1Command(CLI::App& command) : m_app(command) {
    AddTl1Options(command, m_options);
    m_options.filter.AddOptions(command);
    command.add_flag("--join", m_options.join);
    command.add_flag("--strict", m_options.strict);
    TakeNumbers(command.add_option("--count", m_options.count), 1, UINT64_MAX);
  }

  int Run() const { return ShowRun(m_options, m_app.get_parent()->count("--verbose") > 0).Show(); }

 private:
  CLI::App& m_app;
  ShowOptions m_options;
};

}  // namespace

extern const Subcommand TL1 = {"tl1", HELP_TEXT, AddAs<Tl1Command>};
