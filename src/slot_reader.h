#ifndef VARNEL_SRC_SLOT_READER_H
#define VARNEL_SRC_SLOT_READER_H

#include <string_view>

#include "stream_reader.h"

namespace VARNEL_COMMON {

/// Reads a decimal slot, and where the text holds a "-" anywhere the shelf and one character, whichever it is, in front
/// of it. What cannot be read is as StreamReader leaves it.
inline void ReadShelfAndSlot(std::string_view text, unsigned short& shelf, unsigned short& slot) {
  StreamReader reader(text);
  if (text.find('-') != std::string_view::npos) {
    char separator;
    reader.Read(shelf);
    reader.Read(separator);
  }
  reader.Read(slot);
}

}  // namespace VARNEL_COMMON

#endif
