#ifndef VARNEL_TESTS_TL1_TALK_H
#define VARNEL_TESTS_TL1_TALK_H

#include <gtest/gtest.h>
#include <varnel_tl1/session.h>

#include <string>
#include <string_view>

#include "streams.h"

namespace VARNEL_TEST {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// The bytes of a response of one line, or of one part of it.
std::string Answer(const std::string& ctag, const std::string& code = "COMPLD", const std::string& text = "\"x\"",
                   char terminator = ';');

/// An autonomous message with an atag.
std::string Alarm(const std::string& atag);

/// A session on a scripted clock, and its events: "Answer response NORTH1 9 COMPLD | \"x\"".
class Talk {
 public:
  explicit Talk(VARNEL_TL1::SessionOptions options = {}) : session(std::move(options), now) {}

  /// Sends a command and returns the sent bytes; an error is returned in parentheses.
  std::string Send(std::string_view text);
  std::string LogIn(std::string_view user, std::string_view password);
  std::string LogOut(seconds wait = seconds(2));

  /// Receives bytes at the current time, in pieces of a size; 0 for one piece. Returns the events.
  Texts Hear(std::string_view bytes, size_t pieceSize = 0);
  /// Lets time pass, up to each deadline on the way. Returns the events.
  Texts Wait(VARNEL_TL1::Session::Duration duration);
  Texts Cut();
  /// The events that are ready.
  Texts Events();
  /// The bytes to send.
  std::string Output();

  VARNEL_TL1::Session::Time now{std::chrono::hours(1)};
  VARNEL_TL1::Session session;
};

/// Options with a first ctag: 8 becomes 10.
inline VARNEL_TL1::SessionOptions With(unsigned int firstCtag) {
  VARNEL_TL1::SessionOptions options;
  options.firstCtag = firstCtag;
  return options;
}

/// A session whose first ctag is 10.
class SessionTest : public ::testing::Test {
 protected:
  Talk talk{With(8)};
};

/// The event of Answer("10").
constexpr char SHOWN_COMPLD[] = "response NORTH1 10 COMPLD | \"x\"";

}  // namespace VARNEL_TEST

#endif
