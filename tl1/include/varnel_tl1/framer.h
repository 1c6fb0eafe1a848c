#ifndef VARNEL_TL1_FRAMER_H
#define VARNEL_TL1_FRAMER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "message.h"
#include "varnel_export.h"

/// @file
/// Cutting a stream into TL1 messages and reading their parts.

namespace VARNEL_TL1 {

/// The longest message if the caller sets no other limit: 16 MiB.
constexpr size_t DEFAULT_LIMIT = size_t{16} << 20;

/// What was found between the messages.
struct Skipped {
  uint64_t bytes = 0;    ///< all bytes that belong to no message, line ends included
  uint64_t echoes = 0;   ///< echoed commands
  uint64_t prompts = 0;  ///< prompts, alone on a line or before something else
  uint64_t lines = 0;    ///< other lines, such as banners and headers without an identification line
  uint64_t telnet = 0;   ///< telnet commands and negotiations, also inside messages
};

class FramerMachine;

/// Cuts a stream of bytes into TL1 messages: append bytes, then retrieve the messages.
///
///     framer.Append(bytes);
///     while (framer.Next(message)) Use(message);
///
/// docs/formats.md describes what is read. Two promises hold for any bytes:
///
/// 1. Nothing is lost silently. Every byte belongs to a message or is counted in Skipped::bytes. A message without its
///    end is delivered with `complete` false; so is the beginning of a message beyond the limit (`tooLong`), whose
///    rest is skipped.
/// 2. Damage does not spread. After any damage the next well-formed message is read correctly.
///
/// The messages do not depend on how the stream is cut into pieces. Time is linear in the bytes appended; memory in the
/// longest message and the bytes of one Append(), as long as all messages are retrieved before the next Append().
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc from the constructor and from
/// Append(); after the latter the stream has ended: messages appended before can still be retrieved, but nothing more
/// is read.
class VARNEL_API Framer {
 public:
  /// @param limit  the most bytes that a message may have, telnet sequences not counted; 1 or more.
  explicit Framer(size_t limit = DEFAULT_LIMIT);
  Framer(const Framer&) = delete;
  Framer& operator=(const Framer&) = delete;
  ~Framer();

  /// Called for a telnet negotiation: with WILL, WONT, DO or DONT (251 to 254) and the option.
  using NegotiationHandler = std::function<void(unsigned char command, unsigned char option)>;

  /// Lets the caller answer telnet negotiations.
  ///
  /// @param handler  called from Append() for each negotiation, in their order; must not use this framer. An exception
  ///                 that it throws leaves Append(), with the effect of memory exhaustion. Empty to ignore them, as
  ///                 initially.
  void OnNegotiation(NegotiationHandler handler);

  /// Appends the next bytes of the stream. Invalidates all views from Next().
  ///
  /// @param bytes  any number of them; not needed after the call.
  void Append(std::string_view bytes);

  /// Ends the stream. Next() then also returns a message that has no end. Bytes appended afterwards are ignored.
  void Finish();

  /// Retrieves the next message.
  ///
  /// @param message  receives it; its views are valid until the next Append() or the framer's destruction.
  /// @return false, `message` unchanged, if there is no other message yet.
  bool Next(Message& message);

  /// @return the counts of skipped data so far, owned by this object. After Finish() and the last message, `bytes` and
  ///         the lengths of all messages add up to the length of the stream.
  const Skipped& GetSkipped() const;

 private:
  std::unique_ptr<FramerMachine> m_machine;
};

}  // namespace VARNEL_TL1

#endif
