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
/// SID belongs to the most recently extended answer with its tag. The joined message has the header of its first part,
/// the texts and bytes of all, and reaches from the beginning of its first part to the end of its last one in the
/// stream.
///
/// A message that is not part of a longer answer passes immediately, even while an earlier answer is still unfinished.
/// An answer whose last part never comes is delivered with `complete` false and `continues` true: when a part of
/// another answer with the same SID and tag arrives, when all unfinished answers together exceed the limit (the most
/// recently extended one, `tooLong`), and at the end.
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc; from Add() and Finish() it loses
/// the unfinished answers: messages that were ready before can still be retrieved, but nothing more is accepted.
class VARNEL_API Joiner {
 public:
  /// @param limit  the most bytes that all unfinished answers may have together.
  explicit Joiner(size_t limit = DEFAULT_LIMIT);
  Joiner(const Joiner&) = delete;
  Joiner& operator=(const Joiner&) = delete;
  ~Joiner();

  /// Accepts the next message. Invalidates all views from Next(). Retrieve all messages that are ready before the views
  /// of `message` become invalid: a message that passes is not copied.
  ///
  /// @param message  of the same stream as those before.
  void Add(const Message& message);

  /// Ends the stream: unfinished answers become ready, in the order of their beginnings.
  void Finish();

  /// Retrieves the oldest message that is ready.
  ///
  /// @param message  receives it; its views are valid until the next Add(), and as long as those given to Add().
  /// @return false, `message` unchanged, if none is ready.
  bool Next(Message& message);

 private:
  std::unique_ptr<JoinerAnswers> m_answers;
};

}  // namespace VARNEL_TL1

#endif
