#include <cstring>
#include <string_view>

#include "slot_reader.h"
#include "str.h"

namespace VARNEL_COMMON {

bool ParseTL1SlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  constexpr std::string_view PREFIX = "SLOT-";
  const char* found = text == nullptr ? nullptr : std::strstr(text, PREFIX.data());
  return found != nullptr && ParseMMLSlotID(found + PREFIX.size(), shelf, slot);
}

bool ParseMMLSlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  if (text == nullptr) return false;
  ReadShelfAndSlot(text, shelf, slot);
  return true;
}

}  // namespace VARNEL_COMMON
