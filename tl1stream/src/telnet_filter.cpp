#include "telnet_filter.h"

namespace VARNEL_TL1 {

namespace {

constexpr unsigned char END_NEGOTIATION = 0xF0;  // and the smallest command
constexpr unsigned char NEGOTIATION = 0xFA;
constexpr unsigned char WILL = 0xFB;  // WONT, DO and DONT follow
constexpr unsigned char DONT = 0xFE;
constexpr unsigned char ESCAPE = 0xFF;

}  // namespace

TelnetFilter::Verdict TelnetFilter::GoTo(State state, Verdict verdict) {
  m_state = state;
  return verdict;
}

TelnetFilter::Verdict TelnetFilter::TakeRest(unsigned char byte) {
  switch (m_state) {
    case State::Text:
      return GoTo(State::Command, Verdict::Taken);
    case State::Command:
      return TakeCommand(byte);
    case State::Option:
      return GoTo(State::Text, Verdict::End);
    default:
      return TakeNegotiation(byte);
  }
}

TelnetFilter::Verdict TelnetFilter::TakeCommand(unsigned char byte) {
  m_length = 0;
  if (byte == ESCAPE) return GoTo(State::Text, Verdict::Data);
  if (byte < END_NEGOTIATION) return GoTo(State::Text, Verdict::DataAfter);
  if (byte == NEGOTIATION) return GoTo(State::Negotiation, Verdict::Taken);
  if (byte >= WILL && byte <= DONT) return GoTo(State::Option, Verdict::Taken);
  return GoTo(State::Text, Verdict::End);
}

TelnetFilter::Verdict TelnetFilter::TakeNegotiation(unsigned char byte) {
  if (++m_length > MAX_NEGOTIATION) return GoTo(State::Text, Verdict::End);
  if (m_state == State::NegotiationCommand) {
    return byte == END_NEGOTIATION ? GoTo(State::Text, Verdict::End) : GoTo(State::Negotiation, Verdict::Taken);
  }
  return GoTo(byte == ESCAPE ? State::NegotiationCommand : State::Negotiation, Verdict::Taken);
}

}  // namespace VARNEL_TL1
