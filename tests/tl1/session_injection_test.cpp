// A conversation in which each allocation fails once: nothing leaks, no password is shown, every command has exactly
// one event, and a lost answer is noticed.
#include <gtest/gtest.h>

#include <new>
#include <optional>

#include "allocation.h"
#include "talk.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;
using VARNEL_TL1::Session;
using VARNEL_TL1::SessionOptions;

const std::string LONG(300, 'w');

class Trial {
 public:
  explicit Trial(size_t failAt) : m_failAt(failAt) {
    m_options.tid = "A TID that is long enough to be allocated";
    m_options.firstCtag = 8;
    m_options.heartbeat = seconds(60);
  }

  bool Failed() const { return m_failed; }

  void Run() {
    const auto create = [this] { m_session.emplace(m_options, m_now); };
    if (!Try(create)) create();
    Do([this] { ASSERT_EQ(m_session->LogIn("joe", "Secret1", m_now), nullptr); },
       "\xFF\xFD\x18" + Answer("10", "COMPLD", LONG + "Secret1"));
    Command command;
    command.Parse("ED-PID::joe:::Secret1,Secret2;");
    const auto send = [&] { ASSERT_EQ(m_session->Send(command, m_now), nullptr); };
    Do(send, Answer("11", "COMPLD", LONG, '>') + Alarm("7") + Answer("11", "COMPLD", "Secret2"));
    command.Parse("RTRV-HDR");
    Do(send, Answer("12", "COMPLD", LONG + "Secret1", '>') + Answer("12", "DENY") + "\r\nNA 12\r\n<");
    Beat();
    if (m_lost) return;
    const auto logOut = [this] { ASSERT_TRUE(m_session->LogOut(m_now, seconds(2))); };
    Do(logOut, Answer("14"));
  }

 private:
  // Runs a step. Returns false if memory ran out, which happens once.
  template <typename Step>
  bool Try(Step step) {
    try {
      const AllocationGuard guard(m_failAt);
      step();
      if (m_failAt > 0) m_failAt -= guard.Count();
      return true;
    } catch (const std::bad_alloc&) {
      m_failed = true;
      m_failAt = 0;
      return false;
    }
  }

  // Sends a command, which has one event at its end, and receives the answer.
  template <typename Step>
  void Do(Step send, const std::string& answer) {
    m_ends = 0;
    const std::string before(m_session->Output());
    if (!Try(send)) {
      EXPECT_EQ(m_session->Output(), before) << "no effect";
      send();
    }
    m_session->Sent(m_session->Output().size());
    Hear(answer);
    if (m_ends == 0) Tick();
    EXPECT_EQ(m_ends, 1);
  }

  void Hear(const std::string& bytes) {
    Try([&] { m_session->Receive(bytes, m_now); });
    TakeEvents();
  }

  void Tick() {
    ASSERT_TRUE(m_session->Deadline());
    m_now = *m_session->Deadline();
    m_session->Tick(m_now);
    TakeEvents();
  }

  void Beat() {
    m_session->Sent(m_session->Output().size());
    Tick();
    EXPECT_EQ(m_session->Output().substr(0, 8), "RTRV-HDR");
    Hear(Answer("13"));
    Tick();
  }

  void TakeEvents() {
    for (bool more = true; more;) {
      Event event;
      Try([&] { more = m_session->Next(event); });
      if (event.kind == EventKind::Lost) m_lost = true;
      if (event.kind == EventKind::Answer || event.kind == EventKind::NoAnswer || event.kind == EventKind::LoggedIn ||
          event.kind == EventKind::LogInRefused || event.kind == EventKind::LoggedOut)
        ++m_ends;
      if (event.message == nullptr) continue;
      EXPECT_EQ(event.message->bytes.find("Secret"), std::string::npos);
      EXPECT_EQ(event.message->text.find("Secret"), std::string::npos);
    }
  }

  size_t m_failAt;
  bool m_failed = false;
  SessionOptions m_options;
  Session::Time m_now{};
  std::optional<Session> m_session;
  int m_ends = 0;
  bool m_lost = false;
};

TEST(SessionInjection, EachAllocationFails) {
  size_t failures = 0;
  for (bool failed = true; failed;) {
    const size_t live = LiveAllocations();
    {
      Trial trial(failures + 1);
      trial.Run();
      failed = trial.Failed();
    }
    EXPECT_EQ(LiveAllocations(), live) << "leaked";
    if (failed) ++failures;
    if (HasFailure()) FAIL() << "allocation " << failures;
  }
  RecordProperty("injected", static_cast<int>(failures));
  EXPECT_GT(failures, 60U);
}

}  // namespace
}  // namespace VARNEL_TEST
