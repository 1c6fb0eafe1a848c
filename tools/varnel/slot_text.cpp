#include "slot_text.h"

#include <str.h>
#include <zepv2data.h>

#include <charconv>
#include <limits>

#include "output.h"
#include "util/chars.h"

namespace {

constexpr unsigned int MAX_PART = 0xFF;
constexpr unsigned int MAX_WORD = 0xFFFF;
constexpr size_t WORD_DIGITS = 4;
constexpr std::string_view TL1_PREFIX = "SLOT-";
constexpr std::string_view DECIMAL_DIGITS = "0123456789";
constexpr std::string_view HEX_DIGITS = "0123456789abcdefABCDEF";

// The characters that may follow a slot, in an MML parameter and in TL1.
constexpr std::string_view MML_DELIMITERS = ",:;&\"-";
constexpr std::string_view TL1_DELIMITERS = ",:;&\"- ";

// Three-digit numbers below the DC form, which begins with shelf 2.
constexpr unsigned int FIRST_OF_SHELF_1 = 100;
constexpr unsigned int LAST_OF_SHELF_1 = 199;

std::string_view TakeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of(DECIMAL_DIGITS));
  text.remove_prefix(digits.size());
  return digits;
}

// A number that is too large is read as the largest value.
unsigned int ToNumber(std::string_view digits) {
  unsigned int number = std::numeric_limits<unsigned int>::max();
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// The numbers of a slot text.
struct Position {
  std::optional<std::string_view> shelf;
  std::string_view slot;
  std::string_view rest;
};

std::string ReadPosition(std::string_view text, std::string_view delimiters, Position& position) {
  position.slot = TakeDigits(text);
  if (position.slot.empty()) return "does not begin with a shelf or slot number";
  if (!text.empty() && text[0] == '-') {
    text.remove_prefix(1);
    position.shelf = position.slot;
    position.slot = TakeDigits(text);
    if (position.slot.empty()) return "has no slot number after " + std::string(*position.shelf) + "-";
  }
  position.rest = text;
  if (text.empty() || delimiters.find(text[0]) != std::string_view::npos) return "";
  return "has invalid text after the slot number";
}

// In the library, a slot above 255 carries into the shelf.
void SetWord(SlotReading& reading, const Position& position) {
  const unsigned int shelf = position.shelf ? ToNumber(*position.shelf) : 0;
  const unsigned int slot = ToNumber(position.slot);
  const std::string slotText = "slot " + std::string(position.slot);
  if (shelf > MAX_PART) {
    reading.error = "shelf " + std::string(*position.shelf) + " is above 255";
  } else if (slot > MAX_WORD - shelf * 256) {
    reading.error = slotText + " does not fit";
  } else {
    if (slot > MAX_PART) reading.notes.push_back(slotText + " is above 255 and carries into the shelf");
    reading.word = static_cast<uint16_t>(shelf * 256 + slot);
  }
}

// The DC form writes slots from 100 on with three digits. It is read as two digits of slot, and the others as the
// shelf.
std::optional<uint16_t> ThreeDigitSlot(std::string_view digits) {
  if (digits.size() < 4) return std::nullopt;
  const unsigned int shelf = ToNumber(digits.substr(0, digits.size() - 3));
  const unsigned int slot = ToNumber(digits.substr(digits.size() - 3));
  if (shelf > MAX_PART || slot > MAX_PART) return std::nullopt;
  const auto word = static_cast<uint16_t>(shelf * 256 + slot);
  return slot > 99 && DcText(OLD_GENERATION, word) == digits ? std::optional<uint16_t>(word) : std::nullopt;
}

void SetDcWord(SlotReading& reading, std::string_view digits, unsigned int number) {
  reading.form = "DC form";
  const unsigned int shelf = number / 100;
  if (shelf > MAX_PART) {
    reading.error = "is too large for the DC form (the largest shelf is 255)";
  } else {
    reading.word = static_cast<uint16_t>(shelf * 256 + number % 100);
  }
  if (number <= MAX_WORD) {
    reading.notes.push_back("as a plain number it is slot " + std::to_string(number) + ": " +
                            DescribeSlot(static_cast<uint16_t>(number)));
  }
  if (const auto other = ThreeDigitSlot(digits)) {
    reading.notes.push_back("old generations also write it for " + DescribeSlot(*other));
  }
}

void SetNumber(SlotReading& reading, const Position& position) {
  const unsigned int number = ToNumber(position.slot);
  if (number > MAX_WORD || VARNEL_COMMON::convertSlotDC(std::string(position.slot)) != number) {
    SetDcWord(reading, position.slot, number);
  } else {
    reading.form = "plain number";
    SetWord(reading, position);
    if (position.slot.size() == 3 && number >= FIRST_OF_SHELF_1 && number <= LAST_OF_SHELF_1) {
      reading.notes.push_back("not shelf 1, slot " + std::to_string(number % 100) +
                              ": the DC form begins with shelf 2");
    }
  }
  if (reading.word && position.rest.empty()) reading.plainNumber = static_cast<unsigned short>(number);
}

// In the library a "-" anywhere after a number makes it the shelf.
void NoteLibraryReading(SlotReading& reading, const Position& position) {
  if (!reading.word || position.shelf || position.rest.find('-') == std::string_view::npos) return;
  unsigned short shelf = 0;
  unsigned short slot = 0;
  VARNEL_COMMON::ParseMMLSlotID((std::string(position.slot) + std::string(position.rest)).c_str(), shelf, slot);
  reading.notes.push_back("the text contains a later -, therefore the library reads it as shelf " +
                          std::to_string(shelf) + ", slot " + std::to_string(slot));
}

SlotReading ReadHexadecimal(std::string_view digits) {
  SlotReading reading;
  reading.form = "hexadecimal word";
  if (digits.empty() || digits.find_first_not_of(HEX_DIGITS) != std::string_view::npos) {
    reading.error = "is not 0x and hexadecimal digits";
    return reading;
  }
  while (digits.size() > 1 && digits[0] == '0')
    digits.remove_prefix(1);
  if (digits.size() > WORD_DIGITS) {
    reading.error = "is above 0xffff";
  } else {
    reading.word = static_cast<uint16_t>(VARNEL_COMMON::HexStr2Int("0x" + std::string(digits)));
  }
  return reading;
}

SlotReading ReadTl1(std::string_view text) {
  SlotReading reading;
  reading.form = "TL1";
  Position position;
  reading.error = ReadPosition(text, TL1_DELIMITERS, position);
  if (!reading.error.empty()) return reading;
  SetWord(reading, position);
  NoteLibraryReading(reading, position);
  return reading;
}

SlotReading ReadParameter(std::string_view text) {
  SlotReading reading;
  Position position;
  reading.error = ReadPosition(text, MML_DELIMITERS, position);
  if (!reading.error.empty()) return reading;
  if (position.shelf) {
    reading.form = "dashed form";
    SetWord(reading, position);
  } else {
    SetNumber(reading, position);
  }
  if (reading.word && !position.rest.empty()) reading.notes.emplace_back("text after the slot number is ignored");
  NoteLibraryReading(reading, position);
  return reading;
}

SlotReading ReadAnyForm(std::string_view text) {
  if (text.empty()) return {{}, nullptr, {}, "is empty", {}};
  if (text.find('\0') != std::string_view::npos) return {{}, nullptr, {}, "contains a NUL", {}};
  if (text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X") return ReadHexadecimal(text.substr(2));
  const size_t prefix = text.find(TL1_PREFIX);
  if (prefix != std::string_view::npos) return ReadTl1(text.substr(prefix + TL1_PREFIX.size()));
  return ReadParameter(text);
}

}  // namespace

SlotReading ReadSlotText(std::string_view text) {
  SlotReading reading = ReadAnyForm(VARNEL_UTIL::Trimmed(text));
  if (reading.word == 0) reading.notes.emplace_back("the word 0 means no slot");
  return reading;
}

std::string DescribeSlot(uint16_t word) {
  return VARNEL_COMMON::WSlotIDi2str(word) + ", the word " + Hex16(word);
}

std::optional<std::string> DcText(int generation, uint16_t word) {
  const std::string text = VARNEL_COMMON::convertSlot2strDC(static_cast<unsigned int>(generation), word);
  return text == VARNEL_COMMON::WSlotIDi2str(word) ? std::nullopt : std::optional<std::string>(text);
}
