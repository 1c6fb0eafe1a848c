#ifndef VARNEL_TOOLS_SLOT_TEXT_H
#define VARNEL_TOOLS_SLOT_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The meaning of a slot text of any form.
struct SlotReading {
  std::optional<uint16_t> word;               ///< absent if there is an error
  const char* form = nullptr;                 ///< the name of the form of the text; null if unknown
  std::optional<unsigned short> plainNumber;  ///< the number, if the text is only a number
  std::string error;                          ///< for example "is empty"; empty for a valid text
  std::vector<std::string> notes;             ///< other readings and warnings
};

/// Reads a slot text more strictly than the library, which reads bad text as 0. Surrounding blanks are ignored.
///
///     "0x0305"            a word
///     "FAC-1-SLOT-3-5"    the text after the first "SLOT-", with or without a shelf
///     "3-5"               shelf and slot
///     "305", "7"          a number: in DC form if convertSlotDC() reads it so, else a slot
///
/// After the slot of the last three, further text may follow from a ",", ":", ";", "&", double quote or "-" on, and
/// in TL1 also from a blank on.
SlotReading ReadSlotText(std::string_view text);

/// "10-31, the word 0x0a1f"
std::string DescribeSlot(uint16_t word);

/// The DC form of a slot as an element of a generation writes it; absent if it writes the dashed form.
std::optional<std::string> DcText(int generation, uint16_t word);

/// A generation code of an element that writes the DC form.
constexpr int OLD_GENERATION = 0;

#endif
