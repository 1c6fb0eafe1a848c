#include "talk.h"

#include <algorithm>

namespace VARNEL_TEST {

using VARNEL_TL1::Command;
using VARNEL_TL1::Event;
using VARNEL_TL1::EventKind;

namespace {

std::string KindName(EventKind kind) {
  switch (kind) {
    case EventKind::Message:
      return "Message";
    case EventKind::Acknowledgement:
      return "Acknowledgement";
    case EventKind::Part:
      return "Part";
    case EventKind::Answer:
      return "Answer";
    case EventKind::NoAnswer:
      return "NoAnswer";
    case EventKind::LoggedIn:
      return "LoggedIn";
    case EventKind::LogInRefused:
      return "LogInRefused";
    case EventKind::LoggedOut:
      return "LoggedOut";
    case EventKind::Lost:
      return "Lost";
  }
  return "?";
}

void Append(Texts& all, const Texts& more) {
  all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

std::string Answer(const std::string& ctag, const std::string& code, const std::string& text, char terminator) {
  return HEADER + ("M  " + ctag) + " " + code + "\r\n   " + text + "\r\n" + terminator;
}

std::string Alarm(const std::string& atag) {
  return HEADER + ("*C " + atag) + " REPT ALM T1\r\n   \"a\"\r\n;";
}

std::string Talk::Send(std::string_view text) {
  Command command;
  const char* fault = command.Parse(text);
  if (fault == nullptr) fault = session.Send(command, now);
  if (fault != nullptr) return "(" + std::string(fault) + ")";
  const std::string output = Output();
  return output == command.Text() ? output : "not as prepared: " + output;
}

std::string Talk::LogIn(std::string_view user, std::string_view password) {
  const char* const fault = session.LogIn(user, password, now);
  return fault == nullptr ? Output() : "(" + std::string(fault) + ")";
}

std::string Talk::LogOut(seconds wait) {
  return session.LogOut(now, wait) ? Output() : "(false)";
}

Texts Talk::Hear(std::string_view bytes, size_t pieceSize) {
  Texts events;
  while (!bytes.empty()) {
    const size_t length = pieceSize == 0 ? bytes.size() : std::min(pieceSize, bytes.size());
    session.Receive(bytes.substr(0, length), now);
    Append(events, Events());
    bytes.remove_prefix(length);
  }
  return events;
}

Texts Talk::Wait(VARNEL_TL1::Session::Duration duration) {
  Texts events;
  const auto end = now + duration;
  for (auto deadline = session.Deadline(); deadline && *deadline <= end; deadline = session.Deadline()) {
    session.Tick(*deadline - milliseconds(1));
    Append(events, Events());
    now = *deadline;
    session.Tick(now);
    Append(events, Events());
  }
  now = end;
  return events;
}

Texts Talk::Cut() {
  session.Cut();
  return Events();
}

Texts Talk::Events() {
  Texts events;
  for (Event event; session.Next(event);)
    events.push_back(KindName(event.kind) + (event.message == nullptr ? "" : " " + Shown(*event.message)));
  return events;
}

std::string Talk::Output() {
  const std::string output(session.Output());
  session.Sent(output.size());
  return output;
}

}  // namespace VARNEL_TEST
