#ifndef VARNEL_TESTS_SLOT_REFERENCES_H
#define VARNEL_TESTS_SLOT_REFERENCES_H

#include <optional>
#include <ostream>
#include <string>

/// The slot functions in the plainest way, with streams and sprintf(). The library's are compared with them.
namespace VARNEL_TEST::Reference {

/// What a parser of slots gives back.
struct ParsedSlot {
  bool found;
  unsigned short shelf;
  unsigned short slot;
};

bool operator==(const ParsedSlot& a, const ParsedSlot& b);
std::ostream& operator<<(std::ostream& out, const ParsedSlot& parsed);

/// Both start from a shelf and a slot that a parser may leave as they are.
ParsedSlot ParseTl1Slot(const char* text, unsigned short shelf, unsigned short slot);
ParsedSlot ParseMmlSlot(const char* text, unsigned short shelf, unsigned short slot);

std::string DecimalText(unsigned short word);
std::string HexadecimalText(unsigned short word);
unsigned short ReadWord(const std::string& text);

std::string DcText(unsigned int generation, int board);
/// Nothing where the sum of shelf and slot leaves the range of an int.
std::optional<unsigned int> ReadDcText(const std::string& text);

unsigned int ReadHex(std::string text);
unsigned int NeSlotId(unsigned short number);

}  // namespace VARNEL_TEST::Reference

#endif
