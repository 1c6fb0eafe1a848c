#include "session.h"

#include <utility>

#include "session_machine.h"

namespace VARNEL_TL1 {

Session::Session(SessionOptions options, Time now)
    : m_machine(std::make_unique<SessionMachine>(std::move(options), now)) {}

Session::~Session() = default;

const char* Session::LogIn(std::string_view user, std::string_view password, Time now) {
  return m_machine->LogIn(user, password, now);
}

const char* Session::Prepare(Command& command) {
  return m_machine->Prepare(command);
}

const char* Session::Send(Command& command, Time now) {
  return m_machine->Send(command, now);
}

bool Session::LogOut(Time now, Duration wait) {
  return m_machine->LogOut(now, wait);
}

void Session::Receive(std::string_view bytes, Time now) {
  m_machine->Receive(bytes, now);
}

void Session::Cut() {
  m_machine->Cut();
}

bool Session::Next(Event& event) {
  return m_machine->Next(event);
}

std::optional<Session::Time> Session::Deadline() const {
  return m_machine->Deadline();
}

void Session::Tick(Time now) {
  m_machine->Tick(now);
}

void Session::Pause(Time now) {
  m_machine->Pause(now);
}

void Session::Resume(Time now) {
  m_machine->Resume(now);
}

std::string_view Session::Output() const {
  return m_machine->output.View();
}

void Session::Sent(size_t count) {
  m_machine->output.RemoveFront(count);
}

}  // namespace VARNEL_TL1
