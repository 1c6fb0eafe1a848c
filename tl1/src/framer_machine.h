#ifndef VARNEL_TL1_FRAMER_MACHINE_H
#define VARNEL_TL1_FRAMER_MACHINE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "framer.h"
#include "lines.h"
#include "scan.h"
#include "stream_buffer.h"

namespace VARNEL_TL1 {

/// The state machine over the lines of a stream. Each step examines one line, at m_pos, or waits for more bytes.
///
///     state      line                                                 becomes
///     Between    blank, prompt, echo, anything else                   skipped
///                ">" alone                                            a prompt
///                header that an identification line follows           begins a message: Body
///                unindented identification line                       the same; with ";" at its end a whole message
///                acknowledgement                                      a whole message, incomplete without "<"
///                anything else, if the last part ended in ">"         begins a message of bare text: Body
///     InLine     the rest of a line that is too long                  skipped: Between
///     Body       ";" or ">" in the first column                       ends the message: Between
///                header that an unindented identification line
///                follows, such a line, acknowledgement with "<"       cuts the message: Between, at that line
///                opens a quotation or comment                         Open, or Rest if closed on the same line
///                ends in ";"                                          Semicolon
///                beyond the limit                                     cuts the message: InLine
///     Open       closed before a strict header                        Rest
///                strict header, end of the stream, or the limit       ends the message at the first line with nothing
///                                                                     but ";" or ">", else cuts it: Between
///     Rest       ends in ";"                                          Semicolon, else Body
///     Semicolon  a line follows with which something new begins       ends the message at the ";": Between, else Body
///
/// The end of the stream cuts a message in any state.
///
/// All positions are offsets in the buffer. Bytes from m_pos on were read only by the finders, which remember their
/// results; therefore it costs nothing to go back to the position at which a message ended inside quotes.
class FramerMachine {
 public:
  explicit FramerMachine(size_t limit);

  void Append(std::string_view bytes);
  void Finish();
  bool Next(Message& message);

  Skipped skipped;
  StreamBuffer buffer;

 private:
  enum class State { Between, InLine, Body, Open, Rest, Semicolon };
  enum class Step { Again, Message, NeedBytes };

  /// A part of the message, relative to its beginning.
  struct Span {
    size_t begin = 0, length = 0;
  };
  struct Fields {
    MessageType type = MessageType::Unrecognised;
    Span sid, date, time, tag, code, verb;
  };
  /// An identification line that was found.
  struct FoundIdentification {
    Identification parts;
    Line line;
  };

  std::string_view View(const Line& line) const { return m_text.Between(line.begin, line.end); }
  Line FindLine(size_t begin) { return m_lines.Find(m_text, begin); }
  Step GoTo(State state, size_t position);

  Step DoStep();
  Step StepInLine();
  Step StepBody();
  Step StepOpen();
  Step StepRest();
  Step StepSemicolon();
  Step StepThroughText(const Line& line, size_t restBegin);
  Step CloseLine(const Line& line, size_t restBegin);
  size_t FindClosing(size_t from);
  Step EndOpen(size_t to);
  Step TooLong();
  Step End(size_t textEnd, size_t end);
  Step Cut(size_t end);
  Step Emit(size_t textEnd, size_t end, bool complete, bool tooLong = false);
  template <typename Operation>
  void Change(Operation change);
  void RememberPart();
  void KeepPart();
  Span SpanOf(std::string_view view) const;
  std::string_view ViewOf(const Span& span) const;
  void Shift(size_t dropped);

  // framer_between.cpp: lines between messages. No value if the line is something else.
  Step StepBetween();
  std::optional<Step> JudgeLine(const Line& line);
  bool IsTextOfPart(const Line& line) const;
  std::optional<Step> JudgePrompt(const Line& line);
  std::optional<Step> JudgeUnindented(const Line& line);
  std::optional<Step> JudgeHeader(const Line& line);
  std::optional<Step> JudgeAcknowledgement(const Line& line);
  std::optional<Step> JudgeCutHeader(const Line& line);
  Step SkipLine(const Line& line, size_t promptLength);
  Step SkipLongLine(const Line& line);
  Step BeginIdentified(const FoundIdentification& found);
  Step BeginBare(size_t begin);
  Step EmitAcknowledgement(const AcknowledgementLine& parts, size_t begin, size_t end, bool complete);
  void Begin(size_t begin);
  void SetHeader(const HeaderLine& header);
  Step FinishStream();

  // framer_follow.cpp: what follows a line. These leave the state as it is.
  Answer FindIdentification(size_t begin, bool unindented, FoundIdentification& found);
  Answer FindAcknowledgementEnd(const Line& line, size_t maxLineEnds, size_t& end) const;
  Answer CutsBody(const Line& line, size_t& cut);
  Answer BeginsSomething(size_t begin);
  Answer BeginsUnindented(const Line& line) const;
  size_t HeaderBegin(size_t lineBegin) const;

  const size_t m_limit;
  Text m_text;
  LineFinder m_lines, m_loneLines;
  Finder<QuoteSearch> m_quotes;
  Finder<CommentEndSearch> m_commentEnds;
  StrictHeaderFinder m_strictHeaders;

  size_t m_pos = 0;              // of the next line to examine
  size_t m_lastEnd = 0;          // of the message before
  uint64_t m_lastEndOffset = 0;  // the same in the stream

  // The pending message.
  size_t m_begin = 0;
  size_t m_textBegin = 0;
  size_t m_openFrom = 0;   // after the mark that opened the quotation or comment
  size_t m_semicolon = 0;  // that may end the message
  Fields m_fields;

  Message m_part;                // the fields of the last part that ended in ">"
  std::string m_partText;        // their text after the buffer changed
  Message* m_message = nullptr;  // receives the next one

  State m_state = State::Between;
  bool m_broken = false;      // bytes were lost because memory ran out
  bool m_bare = false;        // the message has begun with text
  bool m_comment = false;     // a comment is open, not a quotation
  bool m_moreToCome = false;  // the last part ended in ">"
  bool m_partKept = false;    // m_part shows m_partText
};

}  // namespace VARNEL_TL1

#endif
