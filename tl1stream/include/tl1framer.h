#ifndef VARNEL_TL1FRAMER_H
#define VARNEL_TL1FRAMER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "varnel_export.h"

/// @file
/// Cutting a stream into TL1 messages.

namespace VARNEL_TL1 {

/// The largest message taken where nothing else is said: 16 MiB.
constexpr size_t DEFAULT_LIMIT = size_t{16} << 20;

/// A message cut out of a stream.
struct Message {
  std::string bytes;      ///< from the line ends in front of the header to the terminator, without telnet sequences
  uint64_t offset = 0;    ///< of its first byte in the stream
  uint64_t length = 0;    ///< bytes that it takes up in the stream, telnet sequences included
  bool complete = true;   ///< false for the last message of a stream that ends before the message does
  bool bareText = false;  ///< only text, without header and identification line, behind a part that ended in ">"
};

/// What stood between the messages.
struct Skipped {
  uint64_t bytes = 0;    ///< all bytes that belong to no message, line ends included
  uint64_t echoes = 0;   ///< echoed commands
  uint64_t prompts = 0;  ///< prompts, alone on a line or in front of something
  uint64_t lines = 0;    ///< other lines, such as banners
  uint64_t telnet = 0;   ///< telnet commands and negotiations, also inside messages
};

class FramerMachine;

/// Cuts a stream of bytes into TL1 messages: feed it, then take the messages.
///
///     framer.Feed(bytes);
///     while (framer.Next(message)) Use(message);
///
/// The messages do not depend on how the stream is cut into pieces. A message begins with its header line (date and
/// time at its end), or without one with its identification line; an acknowledgement with its code; text begins one
/// where the part before ended in ">". It ends with ";" or ">" in the first column (an acknowledgement with "<"), or
/// with ";" on its identification line. Lines end in CR, LF or CR LF. CR LF ">" alone where a message could begin is
/// a message too, a prompt; with a blank or something else behind the ">" it is skipped like all other prompts.
///
/// A terminator inside quotes ("\" takes the meaning from the next character) or inside /* */ ends nothing, with one
/// exception: where it is alone on its line and the next line that is neither blank nor a prompt looks like a header,
/// an identification line, an acknowledgement or the echo of a command, or where the stream ends, the quote was a
/// stray one and the terminator counts. Nothing but a whole line within the next 4096 bytes can tell so.
///
/// Telnet sequences are taken out: FF and a byte from F0 on, up to FF F0 or 512 bytes for a subnegotiation; FF FF
/// is the data byte FF, and so is an FF in front of a smaller byte.
///
/// Time grows with the bytes fed, memory with the largest message and the bytes of one Feed(). An object belongs to
/// one thread at a time. Memory exhaustion throws std::bad_alloc; from Feed() and Finish() it ends the stream as a
/// message beyond the limit does: the messages before can still be taken, and nothing more is read.
class VARNEL_API Framer {
 public:
  /// @param limit  the most bytes that a message may have.
  explicit Framer(size_t limit = DEFAULT_LIMIT);
  Framer(const Framer&) = delete;             ///< not copied: it is the one reader of its stream
  Framer& operator=(const Framer&) = delete;  ///< not copied: it is the one reader of its stream
  ~Framer();                                  ///< drops what was not taken

  /// Takes the next bytes of the stream.
  ///
  /// @param bytes  any number of them; not needed after the call.
  /// @return false once a message has grown beyond the limit, or memory has run out in an earlier call: the messages
  ///         before can still be taken, and nothing more is read. So does every further call.
  bool Feed(std::string_view bytes);

  /// Ends the stream. What a message without an end holds becomes the last one, `complete` false; where it is
  /// beyond the limit, TooLong() tells so. Nothing is to be fed afterwards.
  void Finish();

  /// Takes the oldest message that was not taken yet.
  ///
  /// @param message  gets it.
  /// @return false, `message` unchanged, when there is none.
  bool Next(Message& message);

  /// Tells why the stream ended.
  ///
  /// @return true once a message has grown beyond the limit.
  bool TooLong() const;

  /// Tells which message was too long.
  ///
  /// @return where in the stream the message begins that grew beyond the limit; of no meaning while TooLong() is false.
  uint64_t TooLongOffset() const;

  /// Tells what was skipped so far.
  ///
  /// @return the counts, owned by this object and kept up to date; `bytes` up to the last message, after Finish() up
  ///         to the end.
  const Skipped& GetSkipped() const;

 private:
  std::unique_ptr<FramerMachine> m_machine;
};

}  // namespace VARNEL_TL1

#endif
