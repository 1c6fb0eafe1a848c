#ifndef VARNEL_TL1JOINER_H
#define VARNEL_TL1JOINER_H

#include <cstddef>
#include <memory>

#include "tl1reader.h"
#include "varnel_export.h"

/// @file
/// Putting the parts of TL1 answers together.

namespace VARNEL_TL1 {

class JoinerAnswers;

/// Puts the parts of an answer together: parts of one type, SID, tag, code and verb become one, their lines one behind
/// the other, as long as the part before continues. Behind RTRV the last part may have another code, which becomes
/// that of the whole; a part without a SID belongs to the answer with its tag that grew last. What was put together
/// reaches from the beginning of its first part to the end of its last one in the stream.
///
/// A message that is no part of a longer answer passes at once, so it may overtake an answer that is not whole yet. An
/// object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc; from Add() and Finish() it loses
/// the answers that are not whole yet: what was ready before can still be taken, and nothing more is taken in.
class VARNEL_API Joiner {
 public:
  /// @param limit  the most bytes that the answers which are not whole yet may have together.
  explicit Joiner(size_t limit = DEFAULT_LIMIT);
  Joiner(const Joiner&) = delete;             ///< not copied: it is the one reader of its stream
  Joiner& operator=(const Joiner&) = delete;  ///< not copied: it is the one reader of its stream
  ~Joiner();                                  ///< drops what was not taken

  /// Takes the next message in.
  ///
  /// @param parts  of the message, as Reader::Read() gives them.
  /// @return false once the answers in hand have grown beyond the limit, or memory has run out in an earlier call;
  ///         nothing more is taken in then.
  bool Add(Parts parts);

  /// Gives up waiting: answers that are not whole become messages as they are, `continues` true, in their order.
  void Finish();

  /// Takes the oldest message that is ready.
  ///
  /// @param parts  gets it.
  /// @return false, `parts` unchanged, when there is none.
  bool Next(Parts& parts);

 private:
  std::unique_ptr<JoinerAnswers> m_inHand;
};

}  // namespace VARNEL_TL1

#endif
