#ifndef VARNEL_TOOLS_SLOT_TEXT_H
#define VARNEL_TOOLS_SLOT_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a slot text says, in whatever form it is written.
struct SlotReading {
  std::optional<uint16_t> word;               ///< none when `error` says why
  const char* form = nullptr;                 ///< how the text was read, in words; null for a text of no known form
  std::optional<unsigned short> plainNumber;  ///< the number, where the text is nothing but one
  std::string error;                          ///< "is empty"; empty for a text that is fine
  std::vector<std::string> notes;             ///< further readings, and what else a person should know
};

/// Reads a slot text more strictly than the library, which takes what it cannot read for 0. Surrounding blanks do not
/// count.
///
///     "0x0305"            a word
///     "FAC-1-SLOT-3-5"    the text after the first "SLOT-", with or without a shelf
///     "3-5"               shelf and slot
///     "305", "7"          a number: of the DC form where convertSlotDC() takes it so, else a slot
///
/// After the slot of the last three, further text may follow from a ",", ":", ";", "&", double quote or "-" on, and
/// in TL1 also from a blank on.
SlotReading ReadSlotText(std::string_view text);

/// "10-31, the word 0x0a1f"
std::string DescribeSlot(uint16_t word);

/// The DC form of a slot as an element of a generation writes it; nothing where it writes the dashed form.
std::optional<std::string> DcText(int generation, uint16_t word);

/// A generation code of an element that writes the DC form.
constexpr int OLD_GENERATION = 0;

#endif
