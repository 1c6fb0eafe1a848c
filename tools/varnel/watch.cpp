#include <ace/ACE.h>
#include <ace/Dev_Poll_Reactor.h>
#include <ace/Reactor.h>

#include <map>

#include "arguments.h"
#include "byte_source.h"
#include "output.h"
#include "subcommand.h"
#include "watch_connection.h"
#include "watch_elements.h"

using VARNEL_TL1::Command;

namespace {

constexpr char HELP_TEXT[] = R"(Follow many elements and print their messages.

Usage: varnel watch [OPTION]... [ELEMENT]...

ELEMENT is [NAME=]HOST:PORT; write an IPv6 address in brackets. PORT may be a
service name. Without NAME, HOST:PORT is the name. Every message that an element
sends is printed as one JSON object per line, and so is every change of its
connection. A connection that is lost or refused is tried again after 1, 2, 4,
8 ... seconds.

Options:
      --elements FILE   Watch also the elements of this list. Each line is NAME
                        HOST:PORT [USER [PASSWORD-FILE]]; # begins a comment. A
                        relative PASSWORD-FILE is in the folder of the list
      --user NAME       Log in as this user if the list names no other
      --password-file FILE  Read the password from the first line of this file,
                        which only its owner may access, where the list names no
                        other
      --after-login COMMAND  Send this command after each log-in, or after each
                        connection without a user; may be given more than once
      --heartbeat SECONDS  Send RTRV-HDR after this time without a byte, and
                        connect again if nothing answers it in the same time; 0
                        for never (default: 60)
      --retry-max SECONDS  The longest time between two attempts to connect;
                        each is up to 25 % longer or shorter (default: 60)
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
                        K and M are units of 1024 and 1048576 (default: 1M)
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

LIST is one pattern, or several separated by commas, with * for any run of
characters and ? for one; case does not matter. Changes pass all filters.

JSON objects:
  Messages are printed as by varnel tl1 --json; source is the name of the
  element. The parts of an answer are not joined. Changes have these members,
  null if they do not apply:
  event                 up (connected), login, login_refused, down or missed. A
                        failure that repeats is printed once
  source, received      Name of the element; time in UTC
  reason                Why the connection or log-in failed
  code                  Completion code of the answer to the log-in
  user                  Who has logged in or was refused
  sid, count            How many autonomous messages of this element are missing
  retry_in              Seconds to the next attempt to connect. After a refused
                        log-in it is the longest time

Signals:
  SIGTERM and SIGINT log out everywhere and end within 2 seconds; lines that can
  no longer be printed are counted on standard error. SIGHUP reads the list and
  the password files again. Nothing is read while standard output is blocked.

Exit status:
  0  SIGTERM or SIGINT has arrived.
  1  The list or a password is bad or unreadable, or the result could not be
     written.
  2  The command line is wrong.

Examples:
  varnel watch east=192.0.2.7:1400 west=192.0.2.8:1400
      Follow two elements that need no log-in.
  varnel watch --elements all.txt --type autonomous --severity CR,MJ
      Follow the elements of a list and show critical and major alarms.
)";

constexpr uint64_t MOST_BYTES = uint64_t{1} << 40;
constexpr size_t WRITTEN_AT_ONCE = 32768;
constexpr unsigned int MOST_EVENTS = 64;                    // between two checks of standard output
constexpr std::chrono::milliseconds OUTPUT_INTERVAL(10);    // the same while it is blocked
constexpr std::chrono::milliseconds LAST_OUTPUT_TIME(500);  // after the log-outs
constexpr std::chrono::milliseconds LOG_OUT_TIME(1200);

using Milliseconds = std::chrono::milliseconds;

// Watches elements until a signal comes.
class Watch : private ACE_Event_Handler {
 public:
  Watch(const WatchRun::Options& options, WatchElements& list)
      : m_list(list), m_output(m_signals), m_reactor(&m_implementation), m_run(options, m_reactor, m_output) {
    m_reactor.register_handler(m_signals.Descriptor(), this, READ_MASK);
  }
  ~Watch() override { m_reactor.remove_handler(m_signals.Descriptor(), READ_MASK | DONT_CALL); }

  int Run(const std::vector<WatchElement>& elements) {
    for (const WatchElement& element : elements)
      Add(element);
    while (!m_signals.stop && !m_output.HasFailed())
      Step(std::nullopt);
    return Finish();
  }

 private:
  int handle_input(ACE_HANDLE) override {
    m_signals.Read();
    return 0;
  }

  void Add(const WatchElement& element) {
    auto& connection = m_connections[element.name];
    connection = std::make_unique<WatchConnection>(m_run, element);
    connection->Start();
  }

  void Step(std::optional<WatchOutput::Time> end) {
    if (std::exchange(m_signals.reload, false)) Reload();
    CallTimers();
    ACE_Time_Value wait;
    const int count = m_reactor.handle_events(SetWait(end, wait));
    m_events = count > 0 ? m_events + 1 : MOST_EVENTS;
    if (m_events < MOST_EVENTS && m_output.Size() < WRITTEN_AT_ONCE) return;
    m_output.Flush();
    m_blocked = m_output.Size() > 0;
    m_events = 0;
  }

  void CallTimers() {
    const WatchOutput::Time now = m_output.Now();
    while (!m_run.timers.empty() && m_run.timers.begin()->first <= now) {
      WatchConnection* const connection = m_run.timers.begin()->second;
      m_run.timers.erase(m_run.timers.begin());
      connection->TimeOver();
    }
  }

  // Null waits without limit. If output can be written, there is no wait.
  ACE_Time_Value* SetWait(std::optional<WatchOutput::Time> end, ACE_Time_Value& wait) const {
    const WatchOutput::Time now = m_output.Now();
    std::optional<WatchOutput::Time> first = end;
    const auto include = [&first](WatchOutput::Time time) { first = first ? std::min(*first, time) : time; };
    if (!m_run.timers.empty()) include(m_run.timers.begin()->first);
    if (m_output.Size() > 0) include(m_blocked ? now + OUTPUT_INTERVAL : now);
    if (!first) return nullptr;
    wait.set(std::max(std::chrono::ceil<Milliseconds>(*first - now), Milliseconds(0)));
    return &wait;
  }

  void Reload() {
    try {
      std::map<std::string, WatchElement> listed;
      for (const WatchElement& element : m_list.Read())
        listed.emplace(element.name, element);
      Forget();
      for (const auto& [name, connection] : m_connections)
        if (listed.count(name) == 0) connection->Leave();
      for (const auto& [name, element] : listed) {
        const auto known = m_connections.find(name);
        known == m_connections.end() ? Add(element) : known->second->Change(element);
      }
    } catch (const ElementError& error) {
      Complain(error.Subject(), error.what());
    }
  }

  // Removes those that have gone.
  void Forget() {
    for (auto connection = m_connections.begin(); connection != m_connections.end();)
      connection = connection->second->IsGone() ? m_connections.erase(connection) : std::next(connection);
  }

  int Finish() {
    m_signals.stop = true;
    for (const auto& [name, connection] : m_connections)
      connection->End();
    const WatchOutput::Time end = m_output.Now() + LOG_OUT_TIME;
    for (Forget(); !m_connections.empty() && m_output.Now() < end; Forget())
      Step(end);
    m_output.FlushUntil(std::chrono::steady_clock::now() + LAST_OUTPUT_TIME);
    if (m_output.HasFailed()) Complain("standard output", "cannot write");
    if (m_output.Dropped() > 0) Complain("standard output", std::to_string(m_output.Dropped()) + " lines are lost");
    return m_output.HasFailed() ? EXIT_BAD : EXIT_DONE;
  }

  WatchElements& m_list;
  WatchSignals m_signals;
  WatchOutput m_output;
  ACE_Dev_Poll_Reactor m_implementation;
  ACE_Reactor m_reactor;
  WatchRun m_run;
  std::map<std::string, std::unique_ptr<WatchConnection>> m_connections;
  unsigned int m_events = 0;  // since the last check of standard output
  bool m_blocked = false;     // at that check
};

class WatchCommand {
 public:
  explicit WatchCommand(CLI::App& command) {
    command.add_option("ELEMENT", m_list.arguments)->check(WatchElements::Check);
    TakePaths(command.add_option("--elements", m_list.file));
    command.add_option("--user", m_list.user);
    TakePaths(command.add_option("--password-file", m_list.passwordFile));
    const auto addCommand = [this](const std::string& text) { AddCommand(text); };
    command
        .add_option_function<std::vector<std::string>>("--after-login",
                                                       [addCommand](const auto& texts) {
                                                         for (const std::string& text : texts)
                                                           addCommand(text);
                                                       })
        ->allow_extra_args(false);
    TakeSeconds(command.add_option("--heartbeat", m_options.heartbeat), Zero::Accepted);
    TakeSeconds(command.add_option("--retry-max", m_options.retryMax));
    command.add_option("--encoding", m_options.encoding)->check(Encoding::Check);
    TakeSizes(command.add_option("--limit", m_options.limit), 1, MOST_BYTES);
    m_options.filter.AddOptions(command);
  }

  int Run() {
    if (m_list.arguments.empty() && m_list.file.empty()) throw CLI::RequiredError("ELEMENT or --elements");
    ACE::set_handle_limit(-1);  // a descriptor for each element
    try {
      const std::vector<WatchElement> elements = m_list.Read();
      return Watch(m_options, m_list).Run(elements);
    } catch (const ElementError& error) {
      Complain(error.Subject(), error.what());
      return EXIT_BAD;
    }
  }

 private:
  void AddCommand(const std::string& text) {
    Command command;
    if (const char* const fault = command.Parse(text)) throw CLI::ValidationError("--after-login", fault);
    m_options.afterLogIn.push_back(command);
  }

  WatchElements m_list;
  WatchRun::Options m_options;
};

}  // namespace

extern const Subcommand WATCH = {"watch", HELP_TEXT, AddAs<WatchCommand>};
