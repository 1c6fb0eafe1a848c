#ifndef VARNEL_TL1_SESSION_H
#define VARNEL_TL1_SESSION_H

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "framer.h"
#include "message.h"
#include "varnel_export.h"

/// @file
/// Talking to an element, without input and output.

namespace VARNEL_TL1 {

/// What happened in a session.
enum class EventKind {
  Message,          ///< a message that is not an answer: autonomous, with another ctag, or a prompt
  Acknowledgement,  ///< IP, PF or OK for the pending command, whose answer is still to come
  Part,             ///< a part of the answer, more follow; only if SessionOptions::join is false
  Answer,           ///< the answer to the command: joined, or its last part. Also a refusal (NA, NG, RL)
  NoAnswer,         ///< the time limit passed, or Cut() was called, and no part of the answer was received
  LoggedIn,         ///< the log-in was accepted
  LogInRefused,     ///< it was refused; without a message, it was not answered
  LoggedOut,        ///< the log-out was answered in any way; without a message, it was not
  Lost,             ///< no answer to the heartbeat: close the connection
};

/// An event of a session.
struct Event {
  EventKind kind = EventKind::Message;  ///< what happened
  /// What the element sent; null if the kind has no message. Passwords that were sent in this session are masked with
  /// "******" in all fields. Valid until the next call of a function of the session that is not const.
  const Message* message = nullptr;
};

/// How a session works.
struct SessionOptions {
  using Duration = std::chrono::steady_clock::duration;  ///< of time limits

  std::string tid;                              ///< fills empty TIDs of commands
  unsigned int firstCtag = 0;                   ///< the first assigned ctag; preferably a random number
  Duration timeout = std::chrono::seconds(30);  ///< for an answer; IP, PF and each part start it again
  Duration heartbeat = Duration::zero();        ///< silence before RTRV-HDR is sent; zero for no heartbeat
  size_t limit = DEFAULT_LIMIT;                 ///< the most bytes of a message, and of a joined answer
  bool join = true;                             ///< join the parts of answers
};

class SessionMachine;

/// A session with an element over a connection that the caller owns. The session has no socket and no clock:
///
///     session.Receive(bytes, now);                      // what arrived
///     while (session.Next(event)) Use(event);           // and after each Receive(), Tick() and Cut()
///     session.Sent(Write(session.Output()));            // what is to be sent
///     Wait(socket, session.Deadline());                 // then Receive(), or Tick() once the deadline is over
///
/// One command at a time is pending: the caller sends the next one after Answer or NoAnswer, LoggedIn or LogInRefused.
/// Each command has exactly one of these events, unless LogOut() abandons it. An answer is recognised by the ctag;
/// while a command is pending, a DENY or an acknowledgement with ctag 0, 1 or none counts as its answer.
///
/// Telnet negotiation is answered with one refusal per option and direction. The heartbeat runs while no command is
/// pending; its answers cause no events. Memory is limited by SessionOptions::limit and the bytes of one Receive().
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc: LogIn(), Send() and LogOut()
/// then have no effect; after Receive() nothing more is received; Next() may have lost a message or a part of an
/// answer.
class VARNEL_API Session {
 public:
  using Time = std::chrono::steady_clock::time_point;  ///< of the caller's clock, which never goes back
  using Duration = SessionOptions::Duration;           ///< of time limits

  /// @param options  how it works.
  /// @param now      when the connection was made.
  Session(SessionOptions options, Time now);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();  ///< wipes all passwords

  /// Sends ACT-USER. The event is LoggedIn or LogInRefused.
  ///
  /// @param user      quoted unless it is a letter followed by letters and digits.
  /// @param password  likewise. The caller may wipe it after the call; the session keeps it until its end, to mask it.
  /// @return null, or why it cannot be sent: a constant text.
  const char* LogIn(std::string_view user, std::string_view password, Time now);

  /// Fills an empty TID with SessionOptions::tid, and an empty ctag with a number of up to six digits that is neither 0
  /// nor 1 and was not used in this session yet. An explicit ctag is kept and not assigned afterwards.
  ///
  /// @param command  is changed.
  /// @return null, or why the command cannot be prepared: a constant text.
  const char* Prepare(Command& command);

  /// Prepares and sends a command. The event is Answer or NoAnswer.
  ///
  /// @param command  is changed by Prepare().
  /// @return null, or why it cannot be sent: a constant text.
  const char* Send(Command& command, Time now);

  /// Sends CANC-USER if a log-in was sent and not refused. A pending command is abandoned and has no event; a stopped
  /// clock is started. The event is LoggedOut.
  ///
  /// @param wait  for the answer.
  /// @return false if there is nothing to log out from.
  bool LogOut(Time now, Duration wait);

  /// Accepts received bytes.
  void Receive(std::string_view bytes, Time now);

  /// Ends the stream of received bytes, because the connection ended or the caller no longer waits: an unfinished
  /// message is delivered with `complete` false, also as the answer to the pending command. If no part of the answer
  /// was received, the event is the same as after the time limit. Bytes received afterwards begin a new stream.
  void Cut();

  /// Retrieves the next event.
  ///
  /// @param event  receives it.
  /// @return false, `event` unchanged, if there is none.
  bool Next(Event& event);

  /// @return when Tick() is to be called; absent if nothing is waited for.
  std::optional<Time> Deadline() const;

  /// Ends every wait whose time limit has passed; see Next().
  void Tick(Time now);

  /// Stops the clock, for example while the caller cannot process events: no deadline passes. No effect if it is
  /// stopped.
  void Pause(Time now);

  /// Starts the clock again: deadlines move by the length of the pause. No effect if it is running.
  void Resume(Time now);

  /// @return the bytes to send, owned by this object and valid until the next call that is not const.
  std::string_view Output() const;

  /// Removes bytes that were sent from Output() and wipes them.
  ///
  /// @param count  how many, from the start of the output.
  void Sent(size_t count);

 private:
  std::unique_ptr<SessionMachine> m_machine;
};

}  // namespace VARNEL_TL1

#endif
