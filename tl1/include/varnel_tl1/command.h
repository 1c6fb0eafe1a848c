#ifndef VARNEL_TL1_COMMAND_H
#define VARNEL_TL1_COMMAND_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cmdstr.h"
#include "varnel_export.h"

/// @file
/// TL1 commands, block by block.

namespace VARNEL_TL1 {

/// A TL1 command: blocks separated by ":", with a ";" at the end. Inside quotes both are ordinary characters.
///
///     RTRV-ALM-ALL:NE1:SLOT-3:12::;    verb RTRV-ALM-ALL, TID NE1, AID SLOT-3, ctag 12, general block and data empty
///
/// A command contains nothing that cannot be sent: no control character, no byte 0xFF (telnet reads it as a command),
/// no second ";", no quotation without end. Functions that could break this return null for success. Otherwise they
/// return the reason as a constant text, such as "control character", and leave the command unchanged.
///
/// The text may contain passwords: it is kept in a CCmdStr and wiped when it is replaced or destroyed. Memory
/// exhaustion throws std::bad_alloc and leaves the command unchanged. An object belongs to one thread at a time.
class VARNEL_API Command {
 public:
  /// Numbers of blocks. Further data blocks follow DATA.
  enum BlockNumber : size_t { VERB, TID, AID, CTAG, GENERAL, DATA };

  /// The most bytes of a command, the ";" included.
  static constexpr size_t MAX_LENGTH = 10485760;

  Command() = default;                 ///< an empty command, which cannot be sent
  Command(const Command&) = default;   ///< copies the text
  Command& operator=(const Command&);  ///< copies the text
  ~Command() = default;                ///< wipes the text

  /// Replaces the command by a text.
  ///
  /// @param text  VERB-MODIFIER[:TID[:AID[:CTAG[:GENERAL[:DATA...]]]]][;], blanks around it are dropped. The verb is a
  ///              letter followed by letters, digits, "-" and "_"; the ctag, unless empty, letters, digits, "-", "_"
  ///              and ".".
  const char* Parse(std::string_view text);

  /// Replaces a block; missing ones before it are added empty.
  ///
  /// @param number  of the block.
  /// @param text    as it is sent: already quoted if needed.
  const char* SetBlock(size_t number, std::string_view text);

  /// A parameter of a block: positional without a name.
  struct VARNEL_HIDDEN Parameter {
    std::string_view name;   ///< a letter followed by letters, digits, "-" and "_", or empty
    std::string_view value;  ///< as it is meant: SetParameters() quotes and escapes it
  };

  /// Replaces a block by parameters: {{"", "CR"}, {"NAME", "a \"b\""}} becomes CR,NAME="a \"b\"".
  ///
  /// A value is quoted unless it is empty or consists of letters, digits, "-", "_", "." and "/".
  const char* SetParameters(size_t number, const std::vector<Parameter>& parameters);

  /// @param number  of the block.
  /// @return the block as it is sent; empty if there is no such block. Valid until the command changes.
  std::string_view Block(size_t number) const;

  /// @return the text to send, with its ";"; empty for an empty command. Valid until the command changes.
  std::string_view Text() const;

  /// @return Text() for display: the block after the fifth colon of ACT-USER, ED-PID, ENT-USER-SECU and
  /// ED-USER-SECU,
  ///         which contains the password, becomes "******" unless it is empty.
  std::string Masked() const;

 private:
  mutable VARNEL_COMMON::CCmdStr m_text;  // reading a CCmdStr is not const
};

}  // namespace VARNEL_TL1

#endif
