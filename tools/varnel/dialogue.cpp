#include "dialogue.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t CHUNK_SIZE = 65536;

}  // namespace

ElementConnection::Status Dialogue::Open(const std::string& address, MonotonicTime end) {
  const ElementConnection::Status status = m_connection.Open(ParseAddress(address).value(), end, m_signals);
  m_lost = m_connection.Error();
  return status;
}

bool Dialogue::Step(int input, std::optional<MonotonicTime> end) {
  const auto deadline = m_session.Deadline();
  if (deadline) end = end ? std::min(*end, *deadline) : *deadline;
  const short events = m_session.Output().empty() ? POLLIN : POLLIN | POLLOUT;
  pollfd waiting[] = {{m_connection.Waiting(), events, 0}, {m_signals.Waiting(), POLLIN, 0}, {input, POLLIN, 0}};
  PollUntil(waiting, 3, end);
  if ((waiting[0].revents & POLLOUT) != 0) Send();
  if ((waiting[0].revents & ~POLLOUT) != 0) Receive();
  if (deadline && waiting[0].revents == 0 && Clock::now() >= *deadline) m_session.Cut();
  return waiting[2].revents != 0;
}

// A failure is reported by receiving, after all bytes that the element sent before it.
void Dialogue::Send() {
  const std::string_view output = m_session.Output();
  const ssize_t count = m_connection.Send(output);
  if (count >= 0) return m_session.Sent(static_cast<size_t>(count));
  if (errno != EAGAIN && errno != EINTR) m_session.Sent(output.size());
}

void Dialogue::Receive() {
  char bytes[CHUNK_SIZE];
  const ssize_t count = m_connection.Receive(bytes, sizeof bytes);
  if (count > 0) return m_session.Receive({bytes, static_cast<size_t>(count)}, Clock::now());
  if (count == 0) return Lose("the element closed the connection");
  if (errno != EAGAIN && errno != EINTR) Lose(std::strerror(errno));
}

void Dialogue::Lose(const std::string& reason) {
  m_lost = reason;
  m_connection.Close();
  m_session.Cut();
}
