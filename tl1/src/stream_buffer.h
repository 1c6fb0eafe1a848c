#ifndef VARNEL_TL1_STREAM_BUFFER_H
#define VARNEL_TL1_STREAM_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "framer.h"

namespace VARNEL_TL1 {

/// The bytes of a stream that are still needed, in one piece and without telnet sequences.
///
/// A sequence is FF and a byte from F0 on; FF FA opens a subnegotiation up to FF F0. FF FF is the data byte FF, and so
/// is an FF before a smaller byte. A subnegotiation is bounded: it ends after MAX_SUBNEGOTIATION bytes, and where a
/// header in the strict form begins.
///
///     a FF FB 01 b   ->  a b, of which b has the offset 4
class StreamBuffer {
 public:
  static constexpr size_t MAX_SUBNEGOTIATION = 512;

  /// Appends the next bytes of the stream.
  void Append(std::string_view bytes);

  /// Ends the stream: an incomplete sequence stays incomplete.
  void Finish();

  /// Undoes an Append() that failed.
  void Truncate(size_t size) { m_bytes.resize(size); }

  /// Frees at most `count` bytes at the front.
  ///
  /// @return the number of freed bytes, by which all positions become smaller.
  size_t DropFront(size_t count);

  std::string_view Bytes() const { return m_bytes; }

  /// The offset in the stream of the byte at a position; for the size of the buffer, the offset after the last byte.
  uint64_t Offset(size_t position) const;

  /// Telnet sequences so far.
  uint64_t Sequences() const { return m_sequences; }

  Framer::NegotiationHandler onNegotiation;

 private:
  /// A position at which bytes of the stream were removed.
  struct Removal {
    size_t position;  ///< of the byte after them
    uint64_t total;   ///< bytes removed from the stream up to there
  };

  void TakeHeld(char byte);
  void TakeCommand(char byte);
  void TakeOption(char option);
  void TakeSubnegotiation(char byte);
  bool EndsSubnegotiation() const;
  void EndSubnegotiation(size_t length);
  void Remove(size_t length);

  std::string m_bytes;
  std::string m_held;  // an incomplete telnet sequence
  std::vector<Removal> m_removals;
  uint64_t m_dropped = 0;       // bytes of m_bytes dropped at the front
  uint64_t m_removedFront = 0;  // bytes removed from the stream up to the front
  uint64_t m_sequences = 0;
};

}  // namespace VARNEL_TL1

#endif
