#include "ask_output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <iostream>

#include "output.h"

using VARNEL_TL1::Message;

AskOutput::AskOutput(std::string_view source, bool json, bool showCommand, Signals& signals)
    : m_source(source),
      m_json(json),
      m_showCommand(showCommand),
      m_signals(signals),
      m_before(std::cout.rdbuf(m_composed.rdbuf())) {
  std::signal(SIGPIPE, SIG_IGN);
}

// A closed pipe ends the process here, as in every other subcommand.
AskOutput::~AskOutput() {
  std::cout.rdbuf(m_before);
  std::signal(SIGPIPE, SIG_DFL);
  if (m_error == EPIPE) std::raise(SIGPIPE);
  if (m_error != 0) std::cout.setstate(std::ios::badbit);
}

void AskOutput::ShowCommand(const std::string& masked) {
  if (m_json) {
    m_writer.Add("command", masked).Print();
  } else {
    std::cout << Escaped(masked) << '\n';
  }
  Print();
}

void AskOutput::ShowAnswer(const std::string& masked, const Message& message) {
  if (m_showCommand && !m_json) std::cout << Escaped(masked) << '\n';
  Compose(&masked, message);
  Print();
  if (!message.complete) Complain(m_source, masked + " the answer is incomplete");
}

void AskOutput::ShowError(const std::string& masked, const std::string& error, bool sent) {
  if (m_json && !masked.empty()) m_writer.Add("command", masked).Add("error", error).Print();
  Print();
  Complain(m_source, sent ? masked + ' ' + error : error);
}

void AskOutput::ShowEvent(const Message& message) {
  Compose(nullptr, message);
  Write(STDERR_FILENO);
}

void AskOutput::Compose(const std::string* masked, const Message& message) {
  if (m_json) {
    m_writer.Key("command");
    masked != nullptr ? m_writer.Value(*masked) : m_writer.Value(nullptr);
    m_messages.Add(m_writer, message, {m_source, CurrentTime(), std::nullopt});
    m_writer.Print();
  } else {
    m_messages.Print(message, {});
  }
}

void AskOutput::Print() {
  const int error = Write(STDOUT_FILENO);
  if (m_error == 0) m_error = error;
}

// Writes the composed text in small pieces, which a ready pipe accepts without blocking. If a signal arrives while
// output is blocked, the rest is dropped. Returns 0 or an errno value.
int AskOutput::Write(int file) {
  const std::string composed = m_composed.str();
  m_composed.str("");
  if (file == STDOUT_FILENO && m_error != 0) return m_error;
  for (std::string_view rest = composed; !rest.empty();) {
    pollfd waiting[] = {{file, POLLOUT, 0}, {m_signals.Waiting(), POLLIN, 0}};
    const bool interrupted = m_signals.Arrived() != 0;
    PollUntil(waiting, 2, interrupted ? std::optional(MonotonicTime()) : std::nullopt);
    if (waiting[0].revents == 0 && m_signals.Arrived() != 0) break;
    const ssize_t count = write(file, rest.data(), std::min<size_t>(rest.size(), PIPE_BUF));
    if (count >= 0) {
      rest.remove_prefix(static_cast<size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
      return errno;
    }
  }
  return 0;
}
