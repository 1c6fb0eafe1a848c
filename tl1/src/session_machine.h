#ifndef VARNEL_TL1_SESSION_MACHINE_H
#define VARNEL_TL1_SESSION_MACHINE_H

#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "framer.h"
#include "joiner.h"
#include "secrets.h"
#include "session.h"
#include "wiped_text.h"

namespace VARNEL_TL1 {

/// The state machine of a session. Events are created when the caller retrieves them, one at a time.
///
///     input                       Ready        Beating       LoggingIn      Waiting   LoggingOut   Closed
///     LogIn()                     LoggingIn    LoggingIn     refused        refused   refused      refused
///     Send()                      Waiting      Waiting       refused        refused   refused      refused
///     LogOut()                    LoggingOut   LoggingOut    LoggingOut     LoggingOut   false     false
///     bytes                       clock        -             -              -         -            -
///     own IP, PF                  Message      Ready         Acknowledgement, clock (1)            Message
///     own OK                      Message      Ready         Acknowledgement (1)                   Message
///     own part                    Message      Ready         Part or none, clock (1)               Message
///     own answer, NA, NG, RL      Message      Ready         end            end       end          Message
///     answer to a heartbeat       none         Ready         none           none      none         none
///     anything else               Message      Message       Message        Message   Message      Message
///     deadline, Cut()             Beating (2)  Lost: Closed  end            end       end          -
///
///     end                                                    LoggedIn or    Answer or LoggedOut:   -
///                                                            LogInRefused:  NoAnswer: Closed
///                                                            Ready          Ready
///
/// "clock" restarts the deadline; "none" is no event. (1) In the three states with a pending command. (2) Not after
/// Cut(), which leaves Beating as it is too. LogOut() is false without a log-in.
class SessionMachine {
 public:
  using Time = Session::Time;
  using Duration = Session::Duration;

  SessionMachine(SessionOptions options, Time now);

  const char* LogIn(std::string_view user, std::string_view password, Time now);
  const char* Prepare(Command& command);
  const char* Send(Command& command, Time now);
  bool LogOut(Time now, Duration wait);
  void Receive(std::string_view bytes, Time now);
  void Cut() { m_cut = true; }
  bool Next(Event& event);
  std::optional<Time> Deadline() const { return m_paused ? std::nullopt : m_deadline; }
  void Tick(Time now);
  void Pause(Time now);
  void Resume(Time now);

  WipedText output;

 private:
  enum class State { Ready, Beating, LoggingIn, Waiting, LoggingOut, Closed };

  const char* CannotSend() const;
  bool IsPending() const { return m_state != State::Ready && m_state != State::Beating && m_state != State::Closed; }
  std::string NewCtag();
  void Transmit(const Command& command, State state, Duration wait);
  void SendHeartbeat();
  void Rest();
  void StartClock(Duration wait);

  void OpenStream();
  void Refuse(unsigned char command, unsigned char option);
  bool IsOwn(const Message& message) const;
  bool TakeMessage(Message message, Event& event);
  bool TakeOwn(const Message& message, Event& event);
  bool TakeJoined(const Message& message, Event& event);
  bool TakeCut(Event& event);
  bool TakeTick(Event& event);
  bool GiveUp(Event& event);
  bool Conclude(const Message* message, Event& event);
  EventKind Conclusion(const Message* message) const;
  bool Give(EventKind kind, const Message* message, Event& event);
  void Show(const Message& message);

  const SessionOptions m_options;
  State m_state = State::Ready;
  Time m_now;
  std::optional<Time> m_deadline;
  bool m_paused = false;
  bool m_tick = false;      // the deadline must be checked
  bool m_cut = false;       // the stream must be ended
  bool m_finished = false;  // the framer's stream has ended

  std::unique_ptr<Framer> m_framer;
  uint64_t m_received = 0;                    // bytes
  uint64_t m_streamBegin = 0;                 // bytes received before the framer's stream
  std::unique_ptr<Joiner> m_parts;            // of the answer to the pending command
  bool m_partsEnd = false;                    // no other part is expected
  std::unique_ptr<Joiner> m_leftover;         // its unread messages after the event of the command
  std::array<std::bitset<256>, 2> m_refused;  // telnet options: of the element, of this side

  std::string m_ctag;           // of the pending command or heartbeat
  uint64_t m_sentAt = 0;        // m_received when it was sent
  std::string m_heartbeatCtag;  // of the last heartbeat
  std::string m_user;           // as sent, if somebody may be logged in
  unsigned int m_nextCtag;
  std::set<unsigned long> m_explicitCtags;

  Secrets m_secrets;
  Message m_message;  // of the last event
  std::array<std::string, 9> m_maskedFields;
};

}  // namespace VARNEL_TL1

#endif
