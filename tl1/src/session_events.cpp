#include <utility>

#include "session_machine.h"

namespace VARNEL_TL1 {

namespace {

constexpr std::string_view Message::*FIELDS[] = {&Message::sid,  &Message::date, &Message::time,
                                                 &Message::ctag, &Message::atag, &Message::code,
                                                 &Message::verb, &Message::text, &Message::bytes};

bool IsAnswer(const Message& message) {
  return message.type == MessageType::Response || message.type == MessageType::Acknowledgement;
}

}  // namespace

bool SessionMachine::Next(Event& event) {
  Message message;
  if (m_leftover) {
    if (m_leftover->Next(message)) return Give(EventKind::Message, &message, event);
    m_leftover.reset();
  }
  for (;;) {
    if (m_parts && m_parts->Next(message)) return TakeJoined(message, event);
    if (m_framer->Next(message)) {
      if (TakeMessage(message, event)) return true;
    } else if (m_cut) {
      if (TakeCut(event)) return true;
    } else if (m_tick) {
      if (TakeTick(event)) return true;
    } else {
      return false;
    }
  }
}

bool SessionMachine::TakeMessage(Message message, Event& event) {
  message.offset += m_streamBegin;
  if (IsOwn(message)) {
    if (m_state != State::Beating) return TakeOwn(message, event);
    Rest();
    return false;
  }
  const bool late = IsAnswer(message) && !message.ctag.empty() && message.ctag == m_heartbeatCtag;
  return !late && Give(EventKind::Message, &message, event);
}

// A message received before the command was sent is not its answer.
bool SessionMachine::IsOwn(const Message& message) const {
  if (!IsPending() && m_state != State::Beating) return false;
  if (!IsAnswer(message) || message.offset + message.length <= m_sentAt) return false;
  if (message.ctag == m_ctag) return true;
  const bool anyCtag = message.ctag.empty() || message.ctag == "0" || message.ctag == "1";
  return anyCtag && (message.type == MessageType::Acknowledgement || message.code == "DENY");
}

bool SessionMachine::TakeOwn(const Message& message, Event& event) {
  const bool prolongs = message.code == "IP" || message.code == "PF";
  if ((prolongs || message.continues) && m_state != State::LoggingOut) StartClock(m_options.timeout);
  if (message.type == MessageType::Acknowledgement) {
    const bool refuses = !prolongs && message.code != "OK";
    return refuses ? Conclude(&message, event) : Give(EventKind::Acknowledgement, &message, event);
  }
  if (message.continues && !m_options.join) return Give(EventKind::Part, &message, event);
  if (!message.continues && !m_parts) return Conclude(&message, event);
  if (!m_parts) m_parts = std::make_unique<Joiner>(m_options.limit);
  m_parts->Add(message);
  return false;
}

// A part with another code than those before begins a new answer for the joiner, which then delivers the old one.
bool SessionMachine::TakeJoined(const Message& message, Event& event) {
  const bool otherFollows = message.continues && !message.tooLong && !m_partsEnd;
  return otherFollows ? Give(EventKind::Message, &message, event) : Conclude(&message, event);
}

bool SessionMachine::TakeCut(Event& event) {
  if (!m_finished) {
    m_framer->Finish();
    m_finished = true;
    return false;
  }
  if (IsPending()) return GiveUp(event);
  OpenStream();
  m_cut = false;
  return false;
}

bool SessionMachine::TakeTick(Event& event) {
  const bool passed = !m_paused && m_deadline && *m_deadline <= m_now;
  if (passed && IsPending()) return GiveUp(event);
  if (passed && m_state == State::Ready) SendHeartbeat();
  m_tick = false;
  if (!passed || m_state != State::Beating || *m_deadline > m_now) return false;
  m_state = State::Closed;
  m_deadline.reset();
  return Give(EventKind::Lost, nullptr, event);
}

// The received parts, if any, are the answer.
bool SessionMachine::GiveUp(Event& event) {
  if (!m_parts || m_partsEnd) return Conclude(nullptr, event);
  m_partsEnd = true;
  m_parts->Finish();
  return false;
}

bool SessionMachine::Conclude(const Message* message, Event& event) {
  const EventKind kind = Conclusion(message);
  if (m_parts && !m_partsEnd) m_parts->Finish();
  Give(kind, message, event);
  if (m_parts) m_leftover = std::move(m_parts);
  if (kind == EventKind::LoggedOut || (kind == EventKind::LogInRefused && message != nullptr)) m_user.clear();
  Rest();
  if (kind != EventKind::LoggedOut) return true;
  m_state = State::Closed;
  m_deadline.reset();
  return true;
}

EventKind SessionMachine::Conclusion(const Message* message) const {
  if (m_state == State::LoggingOut) return EventKind::LoggedOut;
  if (m_state == State::LoggingIn)
    return message != nullptr && message->code == "COMPLD" ? EventKind::LoggedIn : EventKind::LogInRefused;
  return message != nullptr ? EventKind::Answer : EventKind::NoAnswer;
}

bool SessionMachine::Give(EventKind kind, const Message* message, Event& event) {
  if (message != nullptr) Show(*message);
  event = {kind, message != nullptr ? &m_message : nullptr};
  return true;
}

void SessionMachine::Show(const Message& message) {
  m_message = message;
  for (size_t i = 0; i < m_maskedFields.size(); ++i) {
    std::string_view& field = m_message.*FIELDS[i];
    std::string masked;
    if (!m_secrets.Mask(field, !message.complete, masked)) continue;
    m_maskedFields[i].swap(masked);
    field = m_maskedFields[i];
  }
}

}  // namespace VARNEL_TL1
