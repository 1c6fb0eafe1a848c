#ifndef VARNEL_TL1_JOINER_H
#define VARNEL_TL1_JOINER_H

#include <cstddef>
#include <memory>

#include "framer.h"
#include "message.h"
#include "varnel_export.h"

/// @file
/// Joining the parts of TL1 answers.

namespace VARNEL_TL1 {

class JoinerAnswers;

/// Joins the parts of an answer: parts of one type, SID, tag, code and verb become one message, as long as the part
/// before continues. After RTRV the last part may have another code, which becomes that of the whole; a part without a
/// SID belongs to the answer with its tag that grew last. The joined message has the header of its first part, the
/// texts and bytes of all, and reaches from the beginning of its first part to the end of its last one in the stream.
///
/// A message that is no part of a longer answer passes immediately, so it may overtake an answer that is not whole yet.
/// An answer whose last part never comes is delivered with `complete` false and `continues` true: when another answer
/// takes its place, when all unfinished answers together exceed the limit (the one that grew last, `tooLong`), and at
/// the end.
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc; from Add() and Finish() it loses
/// the answers that are not whole yet: what was ready before can still be taken, and nothing more is accepted.
class VARNEL_API Joiner {
 public:
  /// @param limit  the most bytes that the answers which are not whole yet may have together.
  explicit Joiner(size_t limit = DEFAULT_LIMIT);
  Joiner(const Joiner&) = delete;
  Joiner& operator=(const Joiner&) = delete;
  ~Joiner();

  /// Accepts the next message. Invalidates all views from Next(). Take all messages that are ready before the views of
  /// `message` become invalid: a message that passes is not copied.
  ///
  /// @param message  of the same stream as those before.
  void Add(const Message& message);

  /// Ends the stream: unfinished answers become ready, in the order of their beginnings.
  void Finish();

  /// Takes the oldest message that is ready.
  ///
  /// @param message  receives it; its views are valid until the next Add(), and as long as those given to Add().
  /// @return false, `message` unchanged, if none is ready.
  bool Next(Message& message);

 private:
  std::unique_ptr<JoinerAnswers> m_answers;
};

}  // namespace VARNEL_TL1

#endif
