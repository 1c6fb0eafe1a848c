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
/// any number of times, folded over lines, in upper or lower case. Therefore quotes, backslashes, blanks and control
/// characters are ignored in both the password and the text:
///
///     password Ab"1  ->  masked in: Ab"1   AB\"1   ab\\\"1   ab"<CR><LF>   1
class Secrets {
 public:
  /// Only this many characters of a password are compared.
  static constexpr size_t MAX_COUNTED = 1024;
  /// The most passwords that are kept. The first one is that of the log-in and stays; a new one replaces the oldest of
  /// the others.
  static constexpr size_t MAX_SECRETS = 64;

  /// @return false if the password consists of ignored characters.
  bool Add(std::string_view password);

  /// Adds the passwords of a command, if it has any. Memory exhaustion may leave out some of them.
  void AddFrom(const Command& command);

  /// Masks a text.
  ///
  /// @param cut     the text is cut at its end: half of a password there is masked too.
  /// @param masked  receives the masked text; unchanged if there is nothing to mask.
  /// @return true if something was masked.
  bool Mask(std::string_view text, bool cut, std::string& masked) const;

 private:
  struct Secret {
    WipedText counted;              ///< its compared characters in lower case
    std::vector<uint16_t> borders;  ///< at i: the length of the longest border of its first i + 1 characters
  };
  static bool MaskOne(const Secret& secret, std::string_view text, bool cut, std::string& masked);

  std::vector<Secret> m_secrets;
};

}  // namespace VARNEL_TL1

#endif
