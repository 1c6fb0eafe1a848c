#ifndef VARNEL_TL1_TELNET_FILTER_H
#define VARNEL_TL1_TELNET_FILTER_H

#include <cstddef>

namespace VARNEL_TL1 {

/// Takes telnet commands out of a stream, one byte at a time.
class TelnetFilter {
 public:
  static constexpr char IAC = '\xFF';
  /// A negotiation longer than this is none; the byte FF stood there by chance.
  static constexpr size_t MAX_NEGOTIATION = 512;

  enum class Verdict {
    Data,       ///< the byte belongs to the text
    DataAfter,  ///< the byte belongs to the text, and so does an FF in front of it
    Taken,      ///< the byte is part of a telnet sequence, or may turn out to be
    End,        ///< the byte ends a telnet sequence
  };

  Verdict Take(char byte) {
    if (m_state == State::Text && byte != IAC) return Verdict::Data;
    return TakeRest(static_cast<unsigned char>(byte));
  }

  bool InText() const { return m_state == State::Text; }
  /// True when the last byte was an FF that may be a data byte.
  bool HoldsByte() const { return m_state == State::Command; }

 private:
  enum class State { Text, Command, Option, Negotiation, NegotiationCommand };

  Verdict TakeRest(unsigned char byte);
  Verdict TakeCommand(unsigned char byte);
  Verdict TakeNegotiation(unsigned char byte);
  Verdict GoTo(State state, Verdict verdict);

  State m_state = State::Text;
  size_t m_length = 0;
};

}  // namespace VARNEL_TL1

#endif
