#include "message.h"

#include <array>
#include <functional>

namespace VARNEL_TL1 {

namespace {

std::array<std::string_view*, 9> Views(Message& message) {
  return {&message.bytes, &message.sid,  &message.date, &message.time, &message.ctag,
          &message.atag,  &message.code, &message.verb, &message.text};
}

bool IsWithin(std::string_view part, std::string_view whole) {
  const std::less_equal<const char*> notAfter;
  return notAfter(whole.data(), part.data()) && notAfter(part.data() + part.size(), whole.data() + whole.size());
}

}  // namespace

const char* TypeName(MessageType type) {
  switch (type) {
    case MessageType::Acknowledgement:
      return "acknowledgement";
    case MessageType::Response:
      return "response";
    case MessageType::Autonomous:
      return "autonomous";
    case MessageType::Prompt:
      return "prompt";
    default:
      return "unrecognised";
  }
}

// Most views show parts of the bytes, and are copied with them.
MessageCopy::MessageCopy(const Message& message) : m_view(message) {
  const auto views = Views(m_view);
  size_t size = message.bytes.size();
  for (const std::string_view* view : views)
    size += IsWithin(*view, message.bytes) ? 0 : view->size();
  m_bytes.reserve(size);
  m_bytes.assign(message.bytes.begin(), message.bytes.end());
  for (std::string_view* view : views) {
    if (view->empty()) {
      *view = {};
    } else if (IsWithin(*view, message.bytes)) {
      *view = {m_bytes.data() + (view->data() - message.bytes.data()), view->size()};
    } else {
      m_bytes.insert(m_bytes.end(), view->begin(), view->end());
      *view = {m_bytes.data() + (m_bytes.size() - view->size()), view->size()};
    }
  }
}

MessageCopy::MessageCopy(const MessageCopy& other) : MessageCopy(other.m_view) {}

MessageCopy& MessageCopy::operator=(const MessageCopy& other) {
  return *this = MessageCopy(other);
}

}  // namespace VARNEL_TL1
