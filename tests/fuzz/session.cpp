// The options of a session and steps: calls, and bytes that arrive at any time.

#include <varnel_tl1/session.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "check.h"
#include "input.h"
#include "live_bytes.h"

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;
using VARNEL_TL1::Message;
using VARNEL_TL1::Session;
using VARNEL_TL1::SessionOptions;

namespace {

constexpr size_t LIMITS[] = {VARNEL_TL1::DEFAULT_LIMIT, 64, 200, 1000};
constexpr size_t TELNET_ANSWERS = size_t{3} * 2 * 256;
constexpr char PASSWORD[] = "K\"p\\7";
constexpr char COUNTED_PASSWORD[] = "kp7";  // without ignored characters

SessionOptions OptionsFrom(unsigned char byte) {
  SessionOptions options;
  options.limit = LIMITS[byte % std::size(LIMITS)];
  options.join = (byte & 4U) == 0;
  options.heartbeat = std::chrono::seconds((byte & 8U) == 0 ? 0 : 5);
  options.firstCtag = 5;
  return options;
}

std::string Counted(std::string_view text) {
  std::string counted;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > ' ' && c != '"' && c != '\\' && byte != 0x7F && byte != 0xFF)
      counted += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  return counted;
}

// Plays an input, with bytes received in pieces of a size, and checks each event.
class Play {
 public:
  Play(const std::string& bytes, size_t pieceSize) : m_pieceSize(pieceSize) {
    VARNEL_FUZZ::Input input(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    m_options = OptionsFrom(input.Byte());
    m_session = std::make_unique<Session>(m_options, m_now);
    while (!input.IsEmpty())
      DoStep(input.Field());
    m_session->Cut();
    TakeEvents();
    FUZZ_CHECK(m_pending == 0);
  }

  const std::vector<std::string>& Events() const { return m_events; }

 private:
  void DoStep(const std::string& step) {
    const std::string rest = step.substr(std::min<size_t>(step.size(), 1));
    switch (step.empty() ? '\0' : step.front()) {
      case 's':
        return SendCommand(rest);
      case 'l':
        return LogIn(rest);
      case 'o':
        LogOut();
        break;
      case 'c':
        m_session->Cut();
        break;
      case 't':
        return PassTime(std::chrono::seconds(rest.empty() ? 100 : static_cast<unsigned char>(rest.front())));
      case 'p':
        m_paused = true;
        m_session->Pause(m_now);
        break;
      case 'r':
        m_paused = false;
        m_session->Resume(m_now);
        break;
      default:
        Receive(step);
    }
    TakeEvents();
    CheckOutput();
  }

  void SendCommand(const std::string& text) {
    Command command;
    if (command.Parse(text) != nullptr || m_session->Send(command, m_now) != nullptr) return;
    FUZZ_CHECK(++m_pending == 1);
    Command again;
    FUZZ_CHECK(again.Parse(command.Text()) == nullptr && again.Text() == command.Text());
  }

  void LogIn(const std::string& user) {
    if (m_session->LogIn(user, PASSWORD, m_now) != nullptr) return;
    FUZZ_CHECK(++m_pending == 1);
    m_hasPassword = true;
  }

  // Abandons a pending command, and starts the clock.
  void LogOut() {
    if (!m_session->LogOut(m_now, std::chrono::seconds(2))) return;
    m_pending = 1;
    m_paused = false;
  }

  // No command is pending for longer than its deadline.
  void PassTime(std::chrono::seconds seconds) {
    const auto deadline = m_session->Deadline();
    FUZZ_CHECK(m_paused ? !deadline : m_pending == 0 || deadline);
    m_now += seconds;
    m_session->Tick(m_now);
    TakeEvents();
    if (deadline && *deadline <= m_now) FUZZ_CHECK(m_pending == 0);
    CheckOutput();
  }

  void Receive(std::string_view bytes) {
    while (!bytes.empty()) {
      const size_t length = m_pieceSize == 0 ? bytes.size() : std::min(m_pieceSize, bytes.size());
      m_session->Receive(bytes.substr(0, length), m_now);
      TakeEvents();
      bytes.remove_prefix(length);
    }
  }

  void TakeEvents() {
    for (Event event; m_session->Next(event);) {
      const bool ends = event.kind != EventKind::Message && event.kind != EventKind::Acknowledgement &&
                        event.kind != EventKind::Part && event.kind != EventKind::Lost;
      if (ends) FUZZ_CHECK(m_pending-- == 1);
      m_events.push_back(std::to_string(static_cast<int>(event.kind)));
      if (event.message != nullptr) CheckMessage(*event.message);
    }
  }

  void CheckMessage(const Message& message) {
    for (const std::string_view field : {message.sid, message.date, message.time, message.ctag, message.atag,
                                         message.code, message.verb, message.text, message.bytes}) {
      if (m_hasPassword) FUZZ_CHECK(Counted(field).find(COUNTED_PASSWORD) == std::string::npos);
      m_events.back().append("|").append(field);
    }
    m_events.back() += std::to_string(message.offset) + "+" + std::to_string(message.length);
  }

  // Received bytes do not increase the sent bytes.
  void CheckOutput() {
    m_session->Sent(m_session->Output().find(';') + 1);
    FUZZ_CHECK(m_session->Output().size() <= TELNET_ANSWERS + 4096);
  }

  const size_t m_pieceSize;
  SessionOptions m_options;
  Session::Time m_now{};
  std::unique_ptr<Session> m_session;
  int m_pending = 0;
  bool m_paused = false;
  bool m_hasPassword = false;
  std::vector<std::string> m_events;
};

// Memory does not grow with the repeated output of an element for a pending command.
void CheckMemory(const std::string& bytes) {
  constexpr size_t TOTAL = 300000, PIECE = 64, LIMIT = 1000, LINE = 4096, FIXED = 65536;
  constexpr size_t PER_BYTE = 32;  // if telnet sequences were removed before each byte
  std::string stream = bytes;
  while (!bytes.empty() && stream.size() < PIECE)
    stream += bytes;
  const size_t before = VARNEL_FUZZ::ResetPeak();
  SessionOptions options;
  options.limit = LIMIT;
  options.firstCtag = 5;
  Session session(options, {});
  for (size_t fed = 0, at = 0; fed < TOTAL && !stream.empty();) {
    Command command;
    command.Parse("RTRV-HDR:::7");
    session.Send(command, {});
    session.Sent(session.Output().size());
    const std::string_view piece = std::string_view(stream).substr(at, PIECE);
    session.Receive(piece, {});
    for (Event event; session.Next(event);) {
    }
    fed += piece.size();
    at = at + PIECE < stream.size() ? at + PIECE : 0;
  }
  FUZZ_CHECK(VARNEL_FUZZ::PeakBytes() - before <= FIXED + PER_BYTE * (LINE + LIMIT));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  FUZZ_CHECK(Play(bytes, 0).Events() == Play(bytes, 1).Events());
  // Slower than the other checks, therefore only for few inputs.
  const unsigned int sum = std::accumulate(
      bytes.begin(), bytes.end(), 0U, [](unsigned int all, char c) { return all + static_cast<unsigned char>(c); });
  if (sum % 64 == 0) CheckMemory(bytes);
  return 0;
}
