#ifndef VARNEL_TL1_TEXT_H
#define VARNEL_TL1_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "message.h"
#include "varnel_export.h"

/// @file
/// The text of a message: its lines, and the parts of quoted lines.

namespace VARNEL_TL1 {

/// Reads the lines of a text, without copying.
///
///     LineReader lines(message.text);
///     for (std::string_view line; lines.Next(line);) Use(line);
///
/// Lines end in CR, LF or CR LF. They lose indent and line end; blank lines at both ends of the text are left out.
class VARNEL_API LineReader {
 public:
  /// @param text  Message::text, or any text.
  explicit LineReader(std::string_view text);

  /// @param line  receives the next line, a view into the text.
  /// @return false, `line` unchanged, if there is no other line.
  bool Next(std::string_view& line);

  /// Call it after each Next() or not at all, as it remembers where a folded text ends.
  ///
  /// @return the quoted text that begins with the line that Next() read last, for QuotedText::Read(): from its first
  ///         quote to the one that closes it, which is the last character of this line or, if the text is folded, of
  ///         a later one. Empty for every other line, also for the later lines of a folded text.
  std::string_view Quoted();

 private:
  std::string_view m_line;                         // read last
  std::string_view m_fromLine;                     // the same, and all after it
  std::string_view m_rest;                         // after it
  size_t m_afterQuoted = static_cast<size_t>(-1);  // bytes after the quoted text that was found last
};

/// The parts of a quoted text: "AID:positional,...,NAME=VALUE,...:...".
///
///     "SLOT-3:CR,LOS,SA:NAME=\"a, b\""  ->  aid SLOT-3, 2 blocks; CR, LOS and SA in block 0, NAME=\"a, b\" in block 1
///
/// Blocks are separated by ":", parameters by ",". Inside a value quoted with \" these and "=" are ordinary characters.
/// Views are raw; AppendUnescaped() appends their meaning. An object can be used again, which saves memory allocations.
class VARNEL_API QuotedText {
 public:
  /// A parameter of a block.
  struct Parameter {
    size_t block = 0;        ///< 0 for the first block after the AID
    std::string_view name;   ///< empty for a positional parameter
    std::string_view value;  ///< raw; may be empty
  };

  /// Parses a text.
  ///
  /// @param quoted  with its enclosing quotes, as LineReader::Quoted() returns it; must outlive the views.
  /// @return false, everything empty, if `quoted` has no quotes around it.
  bool Read(std::string_view quoted);

  /// @return the part before the first ":", raw; empty if it is missing.
  std::string_view Aid() const { return m_aid; }

  /// @return the number of blocks after the AID. A block without parameters counts.
  size_t Blocks() const { return m_blocks; }

  /// @return the parameters of all blocks in their order. An empty block has none.
  const std::vector<Parameter>& Parameters() const { return m_parameters; }

  /// @param block  counted from 0.
  /// @param index  counted from 0 over the positional parameters of that block.
  /// @return the raw value; empty if there is no such parameter.
  std::string_view Positional(size_t block, size_t index) const;

 private:
  VARNEL_HIDDEN size_t ReadParameter(std::string_view text, size_t begin);

  std::string_view m_aid;
  size_t m_blocks = 0;
  std::vector<Parameter> m_parameters;
};

/// Appends the meaning of a raw AID, name or value: \" and \\ lose their backslash, \" around the whole is dropped, and
/// so are the line ends and indents of a folded text.
///
/// @param raw   from a QuotedText.
/// @param text  grows. Unchanged if memory runs out.
VARNEL_API void AppendUnescaped(std::string_view raw, std::string& text);

/// @param raw  from a QuotedText.
/// @return what AppendUnescaped() appends.
VARNEL_API std::string Unescaped(std::string_view raw);

/// @param text  a text taken apart.
/// @return "CR", "MJ", "MN" or "CL" if that is the first positional parameter, else empty; a view into the text.
VARNEL_API std::string_view Severity(const QuotedText& text);

/// @param message  any message.
/// @return the severity of the first quoted line; empty without one.
VARNEL_API std::string_view Severity(const Message& message);

}  // namespace VARNEL_TL1

#endif
