#include "ask_run.h"

#include <text.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <random>

#include "byte_source.h"
#include "output.h"
#include "subcommand.h"

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;
using VARNEL_TL1::Session;
using VARNEL_TL1::SessionOptions;

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto LOG_OUT_TIME = std::chrono::seconds(2), INTERRUPTED_LOG_OUT_TIME = std::chrono::seconds(1);

SessionOptions::Duration InTicks(double seconds) {
  return std::chrono::ceil<SessionOptions::Duration>(std::chrono::duration<double>(seconds));
}

SessionOptions MakeSessionOptions(const AskOptions& options) {
  SessionOptions session;
  session.tid = options.tid;
  session.firstCtag = std::random_device()();
  session.timeout = InTicks(options.timeout);
  return session;
}

// The code of an answer and the lines of its text: "DENY PICC".
std::string Summary(const Message& message) {
  std::string summary(message.code);
  VARNEL_TL1::LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);)
    summary.append(1, ' ').append(line);
  return summary;
}

}  // namespace

// Tried in a session whose output is not sent.
std::string CheckLogIn(std::string_view user, std::string_view password) {
  const char* const fault = Session({}, Clock::now()).LogIn(user, password, Clock::now());
  return fault == nullptr ? "" : fault;
}

AskRun::AskRun(const AskOptions& options)
    : m_options(options),
      m_dialogue(MakeSessionOptions(options), m_signals),
      m_output(options.address, options.json, options.commands.size() > 1 || options.commands.front() == "-",
               m_signals),
      m_input(STDIN_FILENO, Command::MAX_LENGTH),
      m_status(EXIT_DONE) {
  PrepareCommands();
}

int AskRun::Run() {
  if (m_options.dryRun) {
    ShowAll();
  } else if (ReadPassword() && Connect()) {
    if (LogIn()) ForEachCommand([this](Command& command) { return Send(command); });
    LogOut();
  }
  return m_signals.Arrived() != 0 ? 128 + m_signals.Arrived() : m_status;
}

// All of them first: no assigned ctag may be an explicit one of a later command.
void AskRun::PrepareCommands() {
  for (const std::string& text : m_options.commands) {
    Command& command = m_commands.emplace_back();
    if (text == "-") continue;
    const char* const fault = command.Parse(text);
    if (fault != nullptr) throw CLI::ValidationError("COMMAND " + std::to_string(m_commands.size()), fault);
  }
  for (const bool isExplicit : {true, false}) {
    for (Command& command : m_commands) {
      if (command.Text().empty() || command.Block(Command::CTAG).empty() == isExplicit) continue;
      if (const char* const fault = m_dialogue.Session().Prepare(command)) throw CLI::ValidationError("COMMAND", fault);
    }
  }
  m_masked = m_commands.front().Masked();
}

bool AskRun::ForEachCommand(const Use& use) {
  return std::all_of(m_commands.begin(), m_commands.end(), [this, &use](Command& command) {
    return command.Text().empty() ? ForEachLine(use) : use(command);
  });
}

bool AskRun::ForEachLine(const Use& use) {
  do {
    for (std::string_view line; m_input.Next(line);) {
      if (!UseLine(line, use)) return false;
    }
  } while (WaitForInput());
  return m_input.HasEnded() && m_input.Error().empty();
}

bool AskRun::UseLine(std::string_view line, const Use& use) {
  const size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string_view::npos || line[begin] == '#') return true;
  Command command;
  const char* fault = command.Parse(line);
  if (fault == nullptr) fault = m_dialogue.Session().Prepare(command);
  if (fault == nullptr) return use(command);
  Complain("line " + std::to_string(m_input.LineNumber()) + " of standard input", fault);
  m_status = EXIT_USAGE;
  return m_options.keepGoing;
}

// False if there is none, or if the run ends.
bool AskRun::WaitForInput() {
  m_masked.clear();
  m_sent = false;
  if (!m_input.Error().empty()) {
    Complain("standard input", m_input.Error());
    m_status = std::max<int>(m_status, EXIT_BAD);
  }
  if (m_input.HasEnded() || IsOver()) return false;
  if (m_dialogue.Step(STDIN_FILENO)) {
    m_input.Read();
  } else if (!m_dialogue.Lost().empty()) {
    Fail(m_dialogue.Lost());
    return false;
  }
  TakeEvents();
  return true;
}

// The session is used for its ctags and for the commands of log-in and log-out.
void AskRun::ShowAll() {
  Session& session = m_dialogue.Session();
  const bool logsIn = !m_options.user.empty();
  if (logsIn) {
    session.LogIn(m_options.user, "any", Clock::now());
    ShowOutput();
    session.LogOut(Clock::now(), SessionOptions::Duration::zero());
  }
  const auto show = [this](const Command& command) {
    m_output.ShowCommand(command.Masked());
    return !IsOver();
  };
  if (ForEachCommand(show) && logsIn) ShowOutput();
}

void AskRun::ShowOutput() {
  Command command;
  command.Parse(m_dialogue.Session().Output());
  m_output.ShowCommand(command.Masked());
  m_dialogue.Session().Sent(m_dialogue.Session().Output().size());
}

bool AskRun::ReadPassword() {
  if (m_options.user.empty()) return true;
  const bool asks = m_options.passwordFile.empty();
  const std::string prompt = "Password of " + Escaped(m_options.user) + " at " + Escaped(m_options.address) + ": ";
  std::string error = asks ? m_password.Ask(prompt, m_signals.Waiting())
                           : m_password.ReadFile(m_options.passwordFile, m_signals.Waiting());
  if (error.empty()) error = CheckLogIn(m_options.user, m_password.View());
  if (error.empty()) return true;
  if (m_signals.Arrived() == 0) Complain(asks ? "password of " + m_options.user : m_options.passwordFile, error);
  m_status = EXIT_BAD;
  return false;
}

bool AskRun::Connect() {
  using Status = ElementConnection::Status;
  const Status status = m_dialogue.Open(m_options.address, Clock::now() + InTicks(m_options.timeout));
  if (status == Status::TimedOut) Fail("no connection within " + InSeconds(m_options.timeout));
  if (status == Status::Failed) Fail(m_dialogue.Lost());
  return status == Status::Open;
}

bool AskRun::LogIn() {
  if (m_options.user.empty()) return true;
  m_dialogue.Session().LogIn(m_options.user, m_password.View(), Clock::now());  // accepted by CheckLogIn()
  m_password.Wipe();
  Await();
  return m_completed && !IsOver();
}

bool AskRun::Send(Command& command) {
  m_masked = command.Masked();
  m_sent = true;
  const char* fault = m_dialogue.Lost().empty() ? m_dialogue.Session().Send(command, Clock::now()) : "";
  if (fault == nullptr) {
    Await();
    if (m_pending && m_signals.Arrived() != 0) Fail("interrupted");
  } else {
    Fail(*fault == '\0' ? m_dialogue.Lost() : fault);
  }
  const bool goesOn = m_completed || (m_options.keepGoing && m_dialogue.Lost().empty());
  return goesOn && !IsOver();
}

// The result of the log-out is ignored.
void AskRun::LogOut() {
  const bool interrupted = m_signals.Arrived() != 0;
  const auto begin = Clock::now();
  auto end = begin + (interrupted ? INTERRUPTED_LOG_OUT_TIME : LOG_OUT_TIME);
  m_pending = m_dialogue.Lost().empty() && m_dialogue.Session().LogOut(begin, end - begin);
  while (m_pending && Clock::now() < end) {
    m_dialogue.Step(-1, end);
    TakeEvents();
    if (!interrupted && m_signals.Arrived() != 0) end = std::min(end, Clock::now() + INTERRUPTED_LOG_OUT_TIME);
  }
}

// Until the pending command is answered, or the run ends.
void AskRun::Await() {
  m_pending = true;
  m_completed = false;
  while (m_pending && !IsOver()) {
    m_dialogue.Step();
    TakeEvents();
  }
}

void AskRun::TakeEvents() {
  for (Event event; m_dialogue.Session().Next(event);)
    Take(event);
}

void AskRun::Take(const Event& event) {
  switch (event.kind) {
    case EventKind::Answer:
      return TakeAnswer(*event.message);
    case EventKind::NoAnswer:
      return Fail(NoAnswer());
    case EventKind::LoggedIn:
      m_completed = true;
      break;
    case EventKind::LogInRefused:
      return Fail(event.message != nullptr ? "the log-in was refused: " + Summary(*event.message)
                                           : "the log-in failed: " + NoAnswer());
    case EventKind::LoggedOut:
      break;
    default:
      if (m_options.events && event.message != nullptr && event.message->type == MessageType::Autonomous)
        m_output.ShowEvent(*event.message);
      return;
  }
  m_pending = false;
}

void AskRun::TakeAnswer(const Message& message) {
  m_output.ShowAnswer(m_masked, message);
  m_pending = false;
  m_completed = message.code == "COMPLD" && message.complete;
  if (!m_completed) m_status = std::max<int>(m_status, EXIT_BAD);
}

std::string AskRun::NoAnswer() const {
  return m_dialogue.Lost().empty() ? "no answer within " + InSeconds(m_options.timeout) : m_dialogue.Lost();
}

void AskRun::Fail(const std::string& error) {
  m_output.ShowError(m_masked, error, m_sent);
  m_pending = false;
  m_status = std::max<int>(m_status, EXIT_BAD);
}
