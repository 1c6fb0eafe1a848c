#ifndef VARNEL_TL1_SECRETS_H
#define VARNEL_TL1_SECRETS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"
#include "wiped_text.h"

namespace VARNEL_TL1 {

/// Passwords that must not be shown. They are recognised in any form in which an element echoes them: quoted, escaped
/// any number of times, folded over lines, in upper or lower case. For this, quotes, backslashes, blanks and control
/// characters do not count, neither in the password nor in the text:
///
///     password Ab"1  ->  masked in: Ab"1   AB\"1   ab\\\"1   ab"<CR><LF>   1
class Secrets {
 public:
  /// Only this many characters of a password count.
  static constexpr size_t MAX_COUNTED = 1024;
  /// The passwords that are kept; the oldest one but the first, which is that of the log-in, makes room.
  static constexpr size_t MAX_SECRETS = 64;

  /// @return false if no character of the password counts.
  bool Add(std::string_view password);

  /// Adds the passwords of a command, if it has any. Memory exhaustion may leave out some of them.
  void AddFrom(const Command& command);

  /// Masks a text.
  ///
  /// @param cut     the text is cut at its end: half a password there is masked too.
  /// @param masked  receives the masked text; unchanged if there is nothing to mask.
  /// @return whether there was something to mask.
  bool Mask(std::string_view text, bool cut, std::string& masked) const;

 private:
  struct Secret {
    WipedText counted;              ///< its characters that count, in lower case
    std::vector<uint16_t> borders;  ///< at i: the length of the longest border of its first i + 1 characters
  };
  static bool MaskOne(const Secret& secret, std::string_view text, bool cut, std::string& masked);

  std::vector<Secret> m_secrets;
};

}  // namespace VARNEL_TL1

#endif
