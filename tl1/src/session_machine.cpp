#include "session_machine.h"

#include <limits>
#include <utility>

#include "chars.h"
#include "command_text.h"

namespace VARNEL_TL1 {

namespace {

constexpr unsigned int FIRST_CTAG = 2, CTAGS = 999998;  // up to 999999

// A time that cannot be represented becomes the last one that can.
Session::Time Later(Session::Time time, Session::Duration by) {
  Session::Duration::rep sum = 0;
  if (__builtin_add_overflow(time.time_since_epoch().count(), by.count(), &sum))
    sum = std::numeric_limits<Session::Duration::rep>::max();
  return Session::Time(Session::Duration(sum));
}

// "joe" stays, "j.o" becomes "\"j.o\"".
void AppendIdentifier(std::string_view value, WipedText& text) {
  const bool plain = AllOf(value, [](char c) { return IsLetter(c) || IsDigit(c); }) && IsLetter(value.front());
  plain ? text.Append(value) : AppendQuoted(value, text);
}

}  // namespace

SessionMachine::SessionMachine(SessionOptions options, Time now)
    : m_options(std::move(options)), m_now(now), m_nextCtag(m_options.firstCtag % CTAGS) {
  OpenStream();
  Rest();
}

const char* SessionMachine::LogIn(std::string_view user, std::string_view password, Time now) {
  if (const char* const fault = CannotSend()) return fault;
  if (user.empty()) return "no user name";
  if (AnyOf(user, IsUnsendable)) return "control character or byte 255 in the user name";
  if (AnyOf(password, IsUnsendable)) return "control character or byte 255 in the password";
  if (password.size() > Secrets::MAX_COUNTED) return "password longer than 1024 bytes";
  if (!m_secrets.Add(password)) return "no password, or one of nothing but blanks, quotes and backslashes";
  WipedText name, secret;
  AppendIdentifier(user, name);
  AppendIdentifier(password, secret);
  Command command;
  command.Parse("ACT-USER");
  command.SetBlock(Command::AID, name.View());
  if (const char* const fault = command.SetBlock(Command::DATA, secret.View())) return fault;
  if (const char* const fault = Prepare(command)) return fault;
  std::string sentUser(name.View());
  m_now = now;
  Transmit(command, State::LoggingIn, m_options.timeout);
  m_user.swap(sentUser);
  return nullptr;
}

const char* SessionMachine::Prepare(Command& command) {
  if (command.Block(Command::TID).empty() && !m_options.tid.empty()) {
    if (const char* const fault = command.SetParameters(Command::TID, {{"", m_options.tid}})) return fault;
  }
  const std::string_view ctag = command.Block(Command::CTAG);
  if (ctag.empty()) return command.SetBlock(Command::CTAG, NewCtag());
  if (ctag.size() > 6 || !AllOf(ctag, IsDigit)) return nullptr;
  m_explicitCtags.insert(static_cast<unsigned int>(std::stoul(std::string(ctag))));
  return nullptr;
}

const char* SessionMachine::Send(Command& command, Time now) {
  if (const char* const fault = CannotSend()) return fault;
  if (const char* const fault = Prepare(command)) return fault;
  m_secrets.AddFrom(command);
  m_now = now;
  Transmit(command, State::Waiting, m_options.timeout);
  return nullptr;
}

bool SessionMachine::LogOut(Time now, Duration wait) {
  if (m_user.empty() || m_state == State::LoggingOut || m_state == State::Closed) return false;
  Command command;
  command.Parse("CANC-USER");
  command.SetBlock(Command::AID, m_user);
  Prepare(command);
  if (m_parts) m_parts->Finish();
  Resume(now);
  m_now = now;
  Transmit(command, State::LoggingOut, wait);
  if (m_parts) m_leftover = std::move(m_parts);
  return true;
}

void SessionMachine::Receive(std::string_view bytes, Time now) {
  if (!m_paused) m_now = now;
  m_received += bytes.size();
  if (m_state == State::Ready && !bytes.empty()) Rest();
  m_framer->Append(bytes);
}

void SessionMachine::Tick(Time now) {
  if (m_paused) return;
  m_now = now;
  m_tick = true;
}

// While the clock is stopped, m_now is the time when it was stopped, also for deadlines that begin during the pause.
void SessionMachine::Pause(Time now) {
  if (m_paused) return;
  m_now = now;
  m_paused = true;
}

void SessionMachine::Resume(Time now) {
  if (!m_paused) return;
  m_paused = false;
  if (m_deadline) m_deadline = Later(*m_deadline, now - m_now);
  m_now = now;
}

const char* SessionMachine::CannotSend() const {
  if (m_state == State::Closed) return "the session is over";
  return IsPending() ? "another command is pending" : nullptr;
}

std::string SessionMachine::NewCtag() {
  unsigned int ctag = 0;
  for (unsigned int tried = 0; tried < CTAGS; ++tried) {
    ctag = FIRST_CTAG + m_nextCtag;
    m_nextCtag = (m_nextCtag + 1) % CTAGS;
    if (m_explicitCtags.count(ctag) == 0) break;
  }
  return std::to_string(ctag);
}

void SessionMachine::Transmit(const Command& command, State state, Duration wait) {
  std::string ctag(command.Block(Command::CTAG));
  output.Append(command.Text());
  m_ctag.swap(ctag);
  m_sentAt = m_received;
  m_partsEnd = false;
  m_state = state;
  StartClock(wait);
}

void SessionMachine::SendHeartbeat() {
  Command command;
  command.Parse("RTRV-HDR");
  Prepare(command);
  std::string ctag(command.Block(Command::CTAG));
  Transmit(command, State::Beating, m_options.heartbeat);
  m_heartbeatCtag.swap(ctag);
}

void SessionMachine::Rest() {
  m_state = State::Ready;
  m_deadline.reset();
  if (m_options.heartbeat > Duration::zero()) StartClock(m_options.heartbeat);
}

void SessionMachine::StartClock(Duration wait) {
  m_deadline = Later(m_now, wait);
}

void SessionMachine::OpenStream() {
  auto framer = std::make_unique<Framer>(m_options.limit);
  framer->OnNegotiation([this](unsigned char command, unsigned char option) { Refuse(command, option); });
  m_framer = std::move(framer);
  m_streamBegin = m_received;
  m_finished = false;
}

// An offer or a demand is refused only once for each option: two refusing sides must not answer each other forever.
void SessionMachine::Refuse(unsigned char command, unsigned char option) {
  constexpr unsigned char WILL = 251, WONT = 252, DO = 253, DONT = 254, ESCAPE = 255;
  if (command != WILL && command != DO) return;
  std::bitset<256>& refused = m_refused[command == WILL ? 0 : 1];
  if (refused[option]) return;
  const unsigned char answer[] = {ESCAPE, command == WILL ? DONT : WONT, option};
  output.Append({reinterpret_cast<const char*>(answer), sizeof answer});
  refused.set(option);
}

}  // namespace VARNEL_TL1
