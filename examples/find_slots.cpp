// Finds the slots of boards in several notations, and writes them in the notation of each generation.

#include <varnel_common/publicdata.h>
#include <varnel_common/str.h>
#include <varnel_common/zepv2data.h>

#include <iostream>
#include <string>

using namespace VARNEL_COMMON;

namespace {

void PrintSlot(const std::string& text, unsigned short word) {
  constexpr int OLDER = 50000, SECOND_GENERATION = 52100;
  std::cout << text << ": shelf " << (word >> 8) << ", slot " << (word & 0xFF) << "; written "
            << convertSlot2strDC(OLDER, word) << " or " << convertSlot2strDC(SECOND_GENERATION, word) << '\n';
}

unsigned short Word(unsigned short shelf, unsigned short slot) {
  return static_cast<unsigned short>(shelf << 8 | (slot & 0xFF));
}

}  // namespace

int main() {
  // Set shelf and slot to 0 first: a value that the text lacks is unchanged.
  unsigned short shelf = 0, slot = 0;
  const char* const alarm = "FAC-1-SLOT-3-12";
  if (!ParseTL1SlotID(alarm, shelf, slot)) return 1;
  PrintSlot(alarm, Word(shelf, slot));

  shelf = slot = 0;
  const char* const parameter = "10-31";
  if (!ParseMMLSlotID(parameter, shelf, slot)) return 1;
  PrintSlot(parameter, Word(shelf, slot));

  // The same text means different slots; the caller chooses the notation.
  PrintSlot("305 as DC form", static_cast<unsigned short>(convertSlotDC("305")));
  PrintSlot("305 plainly", WSlotIDstr2i("305"));
  std::cout << "305 as the NE slot ID of an older element: " << GetNESlotID(305) << '\n';

  for (const char* board : {"VCUA", "mainboard"})
    std::cout << board << (IsSccBdName(board) ? ": a" : ": not a") << " system-control board\n";
  std::cout << "KVA-4210 of generation 50000" << (IsKorvaneNE(50000, "KVA-4210") ? "" : " not") << " of the Korvane"
            << " family\n";
}
