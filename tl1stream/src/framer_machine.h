#ifndef VARNEL_TL1_FRAMER_MACHINE_H
#define VARNEL_TL1_FRAMER_MACHINE_H

#include <deque>
#include <string>
#include <string_view>

#include "held_line.h"
#include "telnet_filter.h"
#include "text_scanner.h"
#include "tl1framer.h"

namespace VARNEL_TL1 {

/// The state between two bytes of a stream.
class FramerMachine {
 public:
  explicit FramerMachine(size_t limit) : m_limit(limit) {}

  void Feed(std::string_view bytes);
  void Finish();

  std::deque<Message> messages;
  Skipped skipped;
  bool tooLong = false;
  bool broken = false;  ///< a step failed half-way
  uint64_t Start() const { return m_start; }

 private:
  enum class State {
    Between,          ///< no message has begun
    Acknowledgement,  ///< its first line is there, "<" is to follow
    Opening,          ///< a header is there, an identification line is to follow
    Body,             ///< text
  };

  /// A terminator inside quotes, alone on its line, that may be the end of the message all the same.
  struct Candidate {
    bool active = false;
    bool onItsLine = false;
    size_t size = 0;          ///< of the message up to it
    uint64_t end = 0;         ///< where it ends in the stream
    uint64_t telnet = 0;      ///< count of telnet sequences up to it
    std::string bytesBehind;  ///< as they came
  };

  size_t TakeRun(std::string_view bytes);
  void TakeByte(char byte);
  void TakeData(char byte, uint64_t offset);
  void TakeText(char c, uint64_t offset);
  void TakeTextBetween(char c);
  void TakeTextOfOpening(char c, uint64_t offset);
  void TakeTextOfBody(char c);
  void EndLine(char c, uint64_t offset);
  void EndLineOfOpening();
  void EndLineOfBody(char c);
  void AddLead(char c, uint64_t offset);
  void HoldText(char c, uint64_t offset);

  void JudgeLine();
  bool JudgeMessageLine(size_t prompt);
  bool BeginBareText();
  void Begin(State state, size_t leadLength);
  bool EmitPrompt();
  void Abandon();
  void Append(char c);
  void Emit(bool complete);
  void ToBetween();

  void NoteCandidate();
  void JudgeCandidate();
  void CutAtCandidate();
  void FinishBetween();
  void FinishMessage();

  const size_t m_limit;
  TelnetFilter m_telnet;
  TextScanner m_scanner;
  State m_state = State::Between;

  uint64_t m_offset = 0;   // of the next byte in the stream
  uint64_t m_start = 0;    // of the message in m_buffer
  uint64_t m_lastEnd = 0;  // of the message before

  std::string m_buffer;    // the message so far; empty between messages
  size_t m_lineStart = 0;  // of the current line in m_buffer
  HeldLine m_lead;         // line ends in front of the current line, not in the body
  HeldLine m_line;         // the current line, not in the body
  bool m_atLineStart = true;
  bool m_afterCr = false;
  bool m_lineTooLong = false;    // m_line holds only its beginning
  bool m_semicolonSeen = false;  // on the current line
  bool m_tentative = false;      // the header may be another text that ends in date and time
  bool m_moreToCome = false;     // the last part ended in ">"
  bool m_bareText = false;
  Candidate m_candidate;
};

}  // namespace VARNEL_TL1

#endif
