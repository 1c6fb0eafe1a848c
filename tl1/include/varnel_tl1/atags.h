#ifndef VARNEL_TL1_ATAGS_H
#define VARNEL_TL1_ATAGS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "message.h"
#include "varnel_export.h"

/// @file
/// Gaps in the tags of autonomous messages.

namespace VARNEL_TL1 {

/// Finds missing autonomous messages of one stream by their atags. The digits before a dot count: 7860.7858 is 7860.
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc and changes nothing.
class VARNEL_API Atags {
 public:
  /// The number of SIDs that are remembered; messages of further ones are not examined.
  static constexpr size_t MAX_SIDS = 65536;

  /// Examines the next message of the stream.
  ///
  /// @param message  any message; only autonomous ones count.
  /// @return how many atags of the SID are missing before this one; 0 also if it has the same atag as the one before.
  ///         Absent for the first message of a SID, after a restart (a smaller atag), and if the atag is not a number
  ///         of up to 18 digits.
  std::optional<uint64_t> Missed(const Message& message);

 private:
  std::map<std::string, uint64_t, std::less<>> m_last;
};

}  // namespace VARNEL_TL1

#endif
