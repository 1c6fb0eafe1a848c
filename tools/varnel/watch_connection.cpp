#include "watch_connection.h"

#include <ace/SOCK_Connector.h>
#include <sys/socket.h>
#include <text.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;
using VARNEL_TL1::Message;
using VARNEL_TL1::Session;
using VARNEL_TL1::SessionOptions;

namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::chrono::seconds CONNECT_TIME(30);      // for the look-up and all addresses together
constexpr std::chrono::seconds SETTLING_TIME(5);      // see PrintUp()
constexpr std::chrono::seconds LOG_OUT_TIME(2);       // of an element that leaves
constexpr std::chrono::seconds LAST_LOG_OUT_TIME(1);  // of all when the run ends
constexpr unsigned int MOST_DOUBLINGS = 30;

SessionOptions::Duration ToDuration(double seconds) {
  return std::chrono::duration_cast<SessionOptions::Duration>(Seconds(seconds));
}

// The first line of a text that is not empty.
std::string FirstLine(const Message& message) {
  VARNEL_TL1::LineReader lines(message.text);
  std::string_view line;
  while (line.empty() && lines.Next(line)) {
  }
  return std::string(line);
}

}  // namespace

WatchConnection::WatchConnection(WatchRun& run, WatchElement element)
    : ACE_Event_Handler(&run.reactor), m_run(run), m_element(std::move(element)) {}

WatchConnection::~WatchConnection() {
  SetTimer(std::nullopt);
  Close();
}

void WatchConnection::Start() {
  m_state = State::LookingUp;
  m_addresses.clear();
  m_nextAddress = 0;
  m_connectEnd = m_run.output.Now() + CONNECT_TIME;
  m_deadline = m_connectEnd;
  SetTimer();
  const auto take = [this](const Lookup& result) { TakeLookup(result); };
  m_query = m_run.resolver.Start(*ParseAddress(m_element.address), take);
}

void WatchConnection::Change(const WatchElement& element) {
  if (m_state != State::Leaving && element.IsSameLine(m_element)) {
    m_element.password = element.password;
    return;
  }
  m_next = element;
  LogOut(LOG_OUT_TIME);
}

void WatchConnection::Leave() {
  m_next.reset();
  LogOut(LOG_OUT_TIME);
}

void WatchConnection::End() {
  m_quiet = true;
  m_next.reset();
  LogOut(LAST_LOG_OUT_TIME);
}

void WatchConnection::LogOut(std::chrono::milliseconds wait) {
  if (m_state == State::Leaving || m_state == State::Gone) return;
  m_state = State::Leaving;
  m_deadline.reset();
  if (m_session == nullptr || !m_session->LogOut(m_run.output.Now(), wait)) return Finish();
  Proceed();
}

void WatchConnection::Finish() {
  Close();
  SetTimer(std::nullopt);
  if (!m_quiet) Print({"down", m_next ? "the list describes it differently" : "it is no longer in the list"});
  m_state = State::Gone;
  if (!m_next) return;
  if (m_next->address != m_element.address) m_atags = {};
  m_element = *std::exchange(m_next, std::nullopt);
  m_failures = 0;
  m_lastFailure.clear();
  Start();
}

void WatchConnection::TakeLookup(const Lookup& result) {
  m_query.reset();
  if (!result.error.empty()) return Fail({"down", result.error, ""});
  m_addresses = result.addresses;
  m_connectError = "no address";
  m_state = State::Connecting;
  ConnectToNext();
}

// The time is divided among the addresses: one that does not answer leaves time for the others.
void WatchConnection::ConnectToNext() {
  while (m_nextAddress < m_addresses.size()) {
    const Time now = m_run.output.Now();
    m_deadline = now + (m_connectEnd - now) / static_cast<int>(m_addresses.size() - m_nextAddress);
    ACE_SOCK_Connector connector;
    if (connector.connect(m_stream, m_addresses[m_nextAddress++], &ACE_Time_Value::zero) == 0) return TakeConnected();
    if (errno == EWOULDBLOCK) {
      Listen(WRITE_MASK);
      if (m_mask != NULL_MASK) return SetTimer();
    }
    m_connectError = std::strerror(errno);
    Close();
  }
  Fail({"down", m_connectError, ""});
}

int WatchConnection::handle_output(ACE_HANDLE) {
  if (m_state != State::Connecting) {
    Proceed();
    return 0;
  }
  int error = 0;
  int size = sizeof error;
  if (m_stream.get_option(SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
  if (error == 0) {
    TakeConnected();
  } else {
    m_connectError = std::strerror(error);
    Close();
    ConnectToNext();
  }
  return 0;
}

void WatchConnection::TakeConnected() {
  int on = 1;
  m_stream.set_option(SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
  m_stream.enable(ACE_NONBLOCK);
  m_state = State::Connected;
  m_deadline.reset();
  m_proven = m_upIsPrinted = false;
  m_nextCommand = 0;
  const bool mayRepeat = m_lastWasConnected && !m_lastFailure.empty();
  if (!mayRepeat) {
    PrintUp();
  } else if (m_element.user.empty()) {
    m_deadline = m_run.output.Now() + SETTLING_TIME;
  }
  StartSession();
  Proceed();
}

void WatchConnection::StartSession() {
  SessionOptions options;
  options.firstCtag = static_cast<unsigned int>(m_run.random());
  options.heartbeat = ToDuration(m_run.options.heartbeat);
  options.limit = m_run.options.limit;
  options.join = false;
  const Time now = m_run.output.Now();
  m_session = std::make_unique<Session>(options, now);
  if (m_element.user.empty()) return SendNextCommand();
  const char* const fault = m_session->LogIn(m_element.user, m_element.password->View(), now);
  if (fault != nullptr) m_ending = {"login_refused", fault, ""};
}

// A command without an answer is not repeated; the next ones are sent nevertheless.
void WatchConnection::SendNextCommand() {
  if (m_state != State::Connected || m_nextCommand == m_run.options.afterLogIn.size()) return;
  Command command = m_run.options.afterLogIn[m_nextCommand++];
  m_session->Send(command, m_run.output.Now());
}

int WatchConnection::handle_input(ACE_HANDLE) {
  if (m_session == nullptr) return 0;
  const ssize_t count = m_stream.recv(m_run.received.data(), m_run.received.size());
  if (count < 0 && (errno == EWOULDBLOCK || errno == EINTR)) return 0;
  m_received = CurrentTime();
  if (count > 0) {
    m_session->Receive({m_run.received.data(), static_cast<size_t>(count)}, m_run.output.Now());
  } else {
    m_ending = {"down", count == 0 ? "the element closed the connection" : std::strerror(errno), ""};
    m_session->Cut();
  }
  Proceed();
  return 0;
}

// The reactor calls it for a socket with an error that is neither readable nor writable.
int WatchConnection::handle_close(ACE_HANDLE, ACE_Reactor_Mask) {
  m_mask = NULL_MASK;
  m_ending = {"down", "the connection is lost", ""};
  Proceed();
  return 0;
}

// Processes all events, sends the output of the session, and ends the connection if an event requires it.
void WatchConnection::Proceed() {
  Event event;
  while (m_session != nullptr && m_session->Next(event))
    Take(event);
  if (m_session != nullptr && m_ending.event == nullptr) SendOutput();
  if (m_ending.event == nullptr) return SetTimer();
  const Ending ending = std::exchange(m_ending, {});
  m_state == State::Leaving ? Finish() : Fail(ending);
}

void WatchConnection::Take(const Event& event) {
  if (event.kind == EventKind::LoggedIn) Prove();
  if (event.message != nullptr) Print(*event.message);
  switch (event.kind) {
    case EventKind::LoggedIn:
      Print({"login", "", std::string(event.message->code), m_element.user});
      return SendNextCommand();
    case EventKind::LogInRefused:
      return TakeRefusal(event.message);
    case EventKind::LoggedOut:
      m_ending = {"down", "", ""};
      return;
    case EventKind::Lost:
      m_ending = {"down", "no answer to the heartbeat", ""};
      return;
    case EventKind::Answer:
    case EventKind::NoAnswer:
      if (m_ending.event == nullptr) SendNextCommand();
      return;
    default:
      return;
  }
}

// Without a message, the log-in was not answered, or the connection was lost before.
void WatchConnection::TakeRefusal(const Message* message) {
  if (m_ending.event != nullptr) return;
  m_ending.event = "login_refused";
  m_ending.reason = message != nullptr ? FirstLine(*message) : "no answer to the log-in";
  if (message != nullptr) m_ending.code = message->code;
}

// After success the next failure is not a repetition, and the waiting times start again at the shortest.
void WatchConnection::Prove() {
  if (!m_upIsPrinted) PrintUp();
  m_proven = true;
  m_lastFailure.clear();
  m_failures = 0;
}

void WatchConnection::SendOutput() {
  while (!m_session->Output().empty()) {
    const std::string_view output = m_session->Output();
    const ssize_t count = ::send(m_stream.get_handle(), output.data(), output.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) break;  // if it is lost, receiving reports why
    m_session->Sent(static_cast<size_t>(count));
  }
  Listen(m_session->Output().empty() ? READ_MASK : READ_MASK | WRITE_MASK);
  if (m_mask == NULL_MASK) m_ending = {"down", std::strerror(errno), ""};
}

// m_mask stays NULL_MASK if the reactor cannot register the socket.
void WatchConnection::Listen(ACE_Reactor_Mask mask) {
  if (mask == m_mask) return;
  const ACE_HANDLE handle = m_stream.get_handle();
  const int result = m_mask == NULL_MASK ? m_run.reactor.register_handler(handle, this, mask)
                                         : m_run.reactor.mask_ops(handle, mask, ACE_Reactor::SET_MASK);
  if (result != -1) m_mask = mask;
}

void WatchConnection::TimeOver() {
  m_timer.reset();
  const bool over = m_deadline && *m_deadline <= m_run.output.Now();
  if (over && m_state == State::Waiting) return Start();
  if (over && (m_state == State::LookingUp || m_state == State::Connecting)) {
    m_connectError = "no connection within 30 seconds";
    Close();
    return ConnectToNext();
  }
  if (over) {
    m_deadline.reset();
    PrintUp();
    m_lastFailure.clear();
  }
  if (m_session != nullptr) m_session->Tick(m_run.output.Now());
  Proceed();
}

// A repeated failure is reported once, and so is the "up" before it. Therefore "up" is printed only after the
// connection has lasted for some time, unless no failure was reported before.
void WatchConnection::Fail(const Ending& ending) {
  const bool isConnected = m_state == State::Connected;
  const bool isRefused = std::strcmp(ending.event, "login_refused") == 0;
  Close();
  m_state = State::Waiting;
  const double wait = TimeToRetry(isRefused);
  const std::string failure = std::string(ending.event) + ' ' + ending.code + ' ' + ending.reason;
  if (failure != m_lastFailure || isConnected != m_lastWasConnected) {
    if (isConnected && !m_upIsPrinted) PrintUp();
    Print({ending.event, ending.reason, ending.code, isRefused ? m_element.user : "", "", {}, wait});
  }
  m_lastFailure = isConnected && m_proven ? "" : failure;
  m_lastWasConnected = isConnected;
  m_deadline = m_run.output.Now() + ToDuration(wait);
  SetTimer();
}

// 1, 2, 4 ... seconds, or after a refused log-in the longest time; each 25 % longer or shorter at most.
double WatchConnection::TimeToRetry(bool longest) {
  const double most = m_run.options.retryMax;
  const double wait = longest ? most : std::min(most, std::ldexp(1, static_cast<int>(m_failures)));
  m_failures = std::min(m_failures + 1, MOST_DOUBLINGS);
  const double varied = wait * std::uniform_real_distribution<double>(0.75, 1.25)(m_run.random);
  return std::round(varied * 1000) / 1000;
}

void WatchConnection::Close() {
  if (m_query != nullptr) m_query->done = nullptr;
  m_query.reset();
  if (m_mask != NULL_MASK) m_run.reactor.remove_handler(m_stream.get_handle(), ALL_EVENTS_MASK | DONT_CALL);
  m_mask = NULL_MASK;
  m_stream.close();
  m_session.reset();
}

void WatchConnection::SetTimer() {
  std::optional<Time> time = m_deadline;
  if (m_session != nullptr) {
    const std::optional<Time> other = m_session->Deadline();
    if (other && (!time || *other < *time)) time = other;
  }
  SetTimer(time);
}

// A timer that expires too early is not removed: TimeOver() then does nothing and sets it again.
void WatchConnection::SetTimer(std::optional<Time> time) {
  if (m_timer && time && *m_timer <= *time) return;
  if (m_timer) m_run.timers.erase({*m_timer, this});
  m_timer = time;
  if (m_timer) m_run.timers.insert({*m_timer, this});
}

void WatchConnection::PrintUp() {
  Print({"up"});
  m_upIsPrinted = true;
}

void WatchConnection::Print(const Occurrence& occurrence) {
  JsonWriter& json = m_run.json;
  json.Add("event", occurrence.event).Add("source", m_element.name).Add("received", CurrentTime());
  json.AddOrNull("reason", occurrence.reason).AddOrNull("code", occurrence.code);
  json.AddOrNull("user", occurrence.user).AddOrNull("sid", occurrence.sid);
  json.Add("count", occurrence.count).Add("retry_in", occurrence.retryIn);
  m_run.line.clear();
  json.AppendTo(m_run.line);
  m_run.output.Add(m_run.line);
}

void WatchConnection::Print(const Message& message) {
  if (m_element.user.empty() && !m_proven) Prove();
  const std::optional<uint64_t> missed = m_atags.Missed(message);
  if (missed.value_or(0) > 0) Print({"missed", "", "", "", std::string(message.sid), missed});
  if (!m_run.options.filter.Passes(message)) return;
  m_run.tl1.Add(m_run.json, message, {m_element.name, m_received, missed});
  m_run.line.clear();
  m_run.json.AppendTo(m_run.line);
  m_run.output.Add(m_run.line);
}
