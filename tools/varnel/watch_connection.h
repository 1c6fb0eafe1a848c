#ifndef VARNEL_TOOLS_WATCH_CONNECTION_H
#define VARNEL_TOOLS_WATCH_CONNECTION_H

#include <ace/Event_Handler.h>
#include <ace/Reactor.h>
#include <ace/SOCK_Stream.h>
#include <atags.h>
#include <session.h>

#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "json.h"
#include "tl1_filter.h"
#include "tl1_output.h"
#include "watch_elements.h"
#include "watch_output.h"
#include "watch_resolver.h"

class WatchConnection;

/// The common data of the connections of a run.
struct WatchRun {
  using Time = WatchOutput::Time;

  struct Options {
    std::vector<VARNEL_TL1::Command> afterLogIn;
    double heartbeat = 60;  ///< seconds of silence; 0 for no heartbeat
    double retryMax = 60;   ///< the longest time between two attempts to connect, in seconds
    size_t limit = 1 << 20;
    std::string encoding = "UTF-8";
    Tl1Filter filter;
  };

  WatchRun(const Options& runOptions, ACE_Reactor& runReactor, WatchOutput& runOutput)
      : options(runOptions),
        reactor(runReactor),
        output(runOutput),
        resolver(runReactor),
        tl1(runOptions.encoding),
        received(RECEIVED_AT_ONCE, '\0') {}

  static constexpr size_t RECEIVED_AT_ONCE = 16384;

  const Options& options;
  ACE_Reactor& reactor;
  WatchOutput& output;
  WatchResolver resolver;
  std::set<std::pair<Time, WatchConnection*>> timers;  ///< at most one of each connection
  Tl1Output tl1;
  JsonWriter json;
  std::string line;
  std::string received;
  std::minstd_rand random{std::random_device()()};
};

/// One element: connects and reconnects, logs in, and prints messages and changes of the connection.
///
///     state        input                         action                                            next state
///     Waiting      time is over                  look up the address                               LookingUp
///     LookingUp    addresses                     connect to the first                              Connecting
///     Connecting   connected                     "up"; log in or send the commands                 Connected
///                  refused, its share is over    connect to the next address                       Connecting
///     LookingUp, Connecting: failed, time over   "down"                                            Waiting
///     Connected    bytes                         print messages; "login" and the commands          Connected
///                  log-in refused                "login_refused"                                   Waiting
///                  lost, no heartbeat            "down"                                            Waiting
///     any          Leave() or End()              log out                                           Leaving or Gone
///     Leaving      logged out, lost, time over   "down" unless it was End()                        Gone or Waiting
class WatchConnection : public ACE_Event_Handler {
 public:
  using Time = WatchRun::Time;

  /// @param run  must outlive the connection
  WatchConnection(WatchRun& run, WatchElement element);
  ~WatchConnection() override;

  /// Tries to connect.
  void Start();

  /// Accepts a new description; if it is the same line, the connection stays.
  void Change(const WatchElement& element);

  /// Logs out and ends. IsGone() becomes true, immediately or later.
  void Leave();

  /// As Leave(), without an event.
  void End();

  bool IsGone() const { return m_state == State::Gone; }

  /// Call it after the timer in WatchRun::timers has expired; it is then removed.
  void TimeOver();

 private:
  /// The name of an event in the output, and its values.
  struct Occurrence {
    const char* event;
    std::string reason{}, code{}, user{}, sid{};
    std::optional<uint64_t> count{};
    std::optional<double> retryIn{};
  };

  /// How the connection ends after all events of its session.
  struct Ending {
    const char* event = nullptr;  ///< null if it does not end
    std::string reason, code;
  };

  enum class State { Waiting, LookingUp, Connecting, Connected, Leaving, Gone };

  int handle_input(ACE_HANDLE handle) override;
  int handle_output(ACE_HANDLE handle) override;
  int handle_close(ACE_HANDLE handle, ACE_Reactor_Mask mask) override;

  void TakeLookup(const Lookup& result);
  void ConnectToNext();
  void TakeConnected();
  void StartSession();
  void SendNextCommand();
  void Proceed();
  void Take(const VARNEL_TL1::Event& event);
  void TakeRefusal(const VARNEL_TL1::Message* message);
  void Prove();
  void SendOutput();
  void Listen(ACE_Reactor_Mask mask);

  void LogOut(std::chrono::milliseconds wait);
  void Finish();
  void Fail(const Ending& ending);
  void Close();
  double TimeToRetry(bool longest);
  void SetTimer();
  void SetTimer(std::optional<Time> time);

  void Print(const Occurrence& occurrence);
  void Print(const VARNEL_TL1::Message& message);
  void PrintUp();

  WatchRun& m_run;
  WatchElement m_element;
  std::optional<WatchElement> m_next;  // after Leaving
  State m_state = State::Waiting;
  std::optional<Time> m_deadline;  // of the state
  std::optional<Time> m_timer;     // in m_run.timers

  std::shared_ptr<WatchResolver::Query> m_query;
  std::vector<ACE_INET_Addr> m_addresses;
  size_t m_nextAddress = 0;
  Time m_connectEnd;
  std::string m_connectError;
  ACE_SOCK_Stream m_stream;
  ACE_Reactor_Mask m_mask = NULL_MASK;

  std::unique_ptr<VARNEL_TL1::Session> m_session;
  size_t m_nextCommand = 0;
  VARNEL_TL1::Atags m_atags;
  std::string m_received;  // time of the last bytes

  Ending m_ending;
  bool m_proven = false;       // logged in, or without a user a message has come
  bool m_upIsPrinted = false;  // of this connection
  std::string m_lastFailure;   // the last printed one, unless something was proven since
  bool m_lastWasConnected = false;
  bool m_quiet = false;         // End() was called
  unsigned int m_failures = 0;  // since m_proven was set
};

#endif
