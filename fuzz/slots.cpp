// Three numbers and a text: slots written and read, against the plain versions.

#include <publicdata.h>
#include <str.h>
#include <zepv2data.h>

#include "check.h"
#include "exact_text.h"
#include "input.h"
#include "slot_references.h"

using VARNEL_TEST::ExactText;
using VARNEL_TEST::Reference::ParsedSlot;

namespace Reference = VARNEL_TEST::Reference;

namespace {

void CheckWriting(unsigned short word, unsigned int generation, int board) {
  const std::string decimal = VARNEL_COMMON::WSlotIDi2str(word);
  FUZZ_CHECK(decimal == Reference::DecimalText(word));
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDstr2i(decimal) == word);
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDi2Hexstr(word) == Reference::HexadecimalText(word));
  FUZZ_CHECK(VARNEL_COMMON::convertSlot2strDC(generation, board) == Reference::DcText(generation, board));
  FUZZ_CHECK(VARNEL_COMMON::GetNESlotID(word) == Reference::NeSlotId(word));
}

ParsedSlot Parsed(bool (*parse)(const char*, unsigned short&, unsigned short&), const char* text, ParsedSlot before) {
  before.found = parse(text, before.shelf, before.slot);
  return before;
}

void CheckParsing(const char* text, unsigned short shelf, unsigned short slot) {
  const ParsedSlot before{false, shelf, slot};
  FUZZ_CHECK(Parsed(VARNEL_COMMON::ParseTL1SlotID, text, before) == Reference::ParseTl1Slot(text, shelf, slot));
  FUZZ_CHECK(Parsed(VARNEL_COMMON::ParseMMLSlotID, text, before) == Reference::ParseMmlSlot(text, shelf, slot));
}

void CheckReading(const std::string& text) {
  FUZZ_CHECK(VARNEL_COMMON::WSlotIDstr2i(text) == Reference::ReadWord(text));
  FUZZ_CHECK(VARNEL_COMMON::HexStr2Int(text) == Reference::ReadHex(text));
  FUZZ_CHECK(VARNEL_COMMON::HexStr2Int("0x" + text) == Reference::ReadHex("0x" + text));
  const auto dc = Reference::ReadDcText(text);
  if (dc) FUZZ_CHECK(VARNEL_COMMON::convertSlotDC(text) == *dc);  // the sum of others ends the process
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const auto word = static_cast<unsigned short>(input.Number());
  const unsigned int generation = input.Word();
  const auto board = static_cast<int>(input.Word());
  const std::string text = input.Rest();
  CheckWriting(word, generation, board);
  CheckParsing(ExactText(text), word, static_cast<unsigned short>(generation));
  CheckReading(text);
  return 0;
}
