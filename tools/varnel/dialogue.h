#ifndef VARNEL_TOOLS_DIALOGUE_H
#define VARNEL_TOOLS_DIALOGUE_H

#include <session.h>

#include <optional>
#include <string>

#include "element_connection.h"

/// A session with an element over its connection.
class Dialogue {
 public:
  Dialogue(const VARNEL_TL1::SessionOptions& options, const Signals& signals)
      : m_signals(signals), m_session(options, std::chrono::steady_clock::now()) {}

  /// See ElementConnection::Open().
  ElementConnection::Status Open(const std::string& address, MonotonicTime end);

  VARNEL_TL1::Session& Session() { return m_session; }

  /// Waits until something happens, and exchanges bytes with the element. The session is cut if its time is over or the
  /// connection is lost. The caller then retrieves the events of the session.
  ///
  /// @param input  another descriptor to wait for; -1 for none.
  /// @param end    limits the wait.
  /// @return whether `input` is readable.
  bool Step(int input = -1, std::optional<MonotonicTime> end = std::nullopt);

  /// Why the connection is lost or could not be opened; else empty.
  const std::string& Lost() const { return m_lost; }

 private:
  void Send();
  void Receive();
  void Lose(const std::string& reason);

  const Signals& m_signals;
  ElementConnection m_connection;
  VARNEL_TL1::Session m_session;
  std::string m_lost;
};

#endif
