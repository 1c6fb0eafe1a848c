#include <cstring>
#include <string_view>

#include "str.h"
#include "stream_reader.h"

namespace VARNEL_COMMON {

bool ParseTL1SlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  constexpr std::string_view PREFIX = "SLOT-";
  const char* found = text == nullptr ? nullptr : std::strstr(text, PREFIX.data());
  return found != nullptr && ParseMMLSlotID(found + PREFIX.size(), shelf, slot);
}

bool ParseMMLSlotID(const char* text, unsigned short& shelf, unsigned short& slot) {
  if (text == nullptr) return false;
  StreamReader reader(text);
  if (std::strchr(text, '-') != nullptr) {
    char separator;
    reader.Read(shelf);
    reader.Read(separator);
  }
  reader.Read(slot);
  return true;
}

}  // namespace VARNEL_COMMON
