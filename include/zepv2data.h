#ifndef VARNEL_ZEPV2DATA_H
#define VARNEL_ZEPV2DATA_H

#include <string>

#include "varnel_export.h"

/// @file
/// Word slot identifiers, their texts, and the generations of network elements.
///
/// A word slot identifier is an unsigned 16-bit number: the shelf in its high byte (0 for none), the slot in its low
/// byte. 0 means no slot. Its text is "3-5" for shelf 3, slot 5, and "7" for slot 7 without a shelf.
///
/// All functions are reentrant. Memory exhaustion throws std::bad_alloc.

namespace VARNEL_COMMON {

/// Reads a hexadecimal number: "0x" or "0X" and one to eight digits of either case.
///
/// @param text  everything after its tenth character is ignored.
/// @return the number; 0 for every text of another form, so "0x0" looks like a failure.
VARNEL_API unsigned int HexStr2Int(const std::string& text);

/// Returns whether an element is of the second generation.
///
/// @param generation  its generation code.
/// @return true above 52099.
VARNEL_API bool IsZepv2(int generation);

/// Compares a generation code with the lower of the two thresholds.
///
/// @param generation  the generation code of an element.
/// @return true above 50799, therefore also whenever IsZepv2() is true.
VARNEL_API bool IsZep08(int generation);

/// Returns whether a slot text has a shelf part.
///
/// @param text  not null.
/// @return true when it contains a "-" anywhere.
VARNEL_API bool IsExistShelfID(const char* text);

/// Returns the decimal text of a slot. WSlotIDstr2i() is the inverse.
///
/// @param slotId  a word slot identifier.
/// @return "3-5"; "7" without a shelf; "3-0", "0".
VARNEL_API std::string WSlotIDi2str(unsigned short slotId);

/// Returns the hexadecimal text of a slot, for display only: WSlotIDstr2i() would read "10", slot 16, as slot 10.
///
/// @param slotId  a word slot identifier.
/// @return "a-1f", in lower case and without "0x"; "1f" without a shelf; "0".
VARNEL_API std::string WSlotIDi2Hexstr(unsigned short slotId);

/// Reads a decimal slot text: "3-5" is shelf 3, slot 5; "7" is slot 7 without a shelf.
///
/// Numbers are read as ConvertFromString() reads them, a sign included: "-5" is the shelf 65531.
///
/// @param text  leading white space is skipped, the text after the slot is ignored. If the text contains a "-", any
///              character that is not white space may separate shelf and slot. A NUL is an ordinary character.
/// @return the word slot identifier. A slot above 255 carries into the shelf, and only the low 8 bits of the shelf are
///         kept. A part that does not parse is 0, a number above 65535 counts as 65535; after such a shelf the slot is
///         0.
VARNEL_API unsigned short WSlotIDstr2i(const std::string& text);

/// Returns the slot text that an element of a generation uses. From shelf 2 on, an element that is not of the second
/// generation uses the compact DC form: the shelf followed by the slot with at least two digits, "305".
///
/// A bounded format that fails is logged, and the text that it left in its buffer replaces the slot.
///
/// @param neid  generation code; one of 2^31 and above is not of the second generation.
/// @param bdid  board: the word slot identifier in its low 16 bits. In the DC form bits 16 to 23 belong to the shelf.
///              A negative one is written dashed, by its low 16 bits.
/// @return the text; the dashed form of WSlotIDi2str() if the DC form is not used.
VARNEL_API std::string convertSlot2strDC(unsigned int neid, int bdid);

/// Reads a slot text of either form, "3-5" or "305".
///
/// Without a "-", a text of 3 to 11 characters whose number is 200 or more is of the DC form: its last two characters
/// are the slot, the others the shelf. Every other text is read by WSlotIDstr2i(): "105" is slot 105. From slot 100 on
/// the DC form is ambiguous: "10100" is shelf 101, slot 0.
///
/// A bounded copy that fails is logged; its part is then read from the contents of the buffer. An overflow of the sum
/// of both parts ends the process; it requires such a failure, or a negative number after a NUL.
///
/// @param text  read up to its first NUL; its length includes the characters after it.
/// @return shelf * 256 + slot, in 32 bits: "30000" is shelf 300 and no word slot identifier. 0 for an empty text.
VARNEL_API unsigned int convertSlotDC(const std::string& text);

}  // namespace VARNEL_COMMON

#endif
