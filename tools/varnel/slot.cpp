#include <publicdata.h>
#include <zepv2data.h>

#include <iostream>
#include <memory>

#include "arguments.h"
#include "json.h"
#include "output.h"
#include "slot_text.h"
#include "subcommand.h"

namespace {

constexpr size_t NAME_WIDTH = 12;

constexpr char HELP_TEXT[] = R"(Show a slot in each form in which it can be written.

Usage: varnel slot [OPTION]... TEXT...

TEXT is a slot in any form; - reads texts from standard input, one per line, and
skips empty lines.

Options:
      --generation CODE  Show the DC form only if elements of this generation
                        use it
      --json            Print one JSON object per text
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

How a text is read:
  0x0305                Hexadecimal: the word, shelf * 256 + slot
  FAC-1-SLOT-3-5        After the first SLOT-, as in TL1; SLOT-7 has no shelf,
                        and SLOT-305 is a plain number
  3-5                   Shelf and slot, as in MML parameters
  305                   From 200 on and with 3 to 11 digits, the DC form: shelf,
                        then two digits of slot
  7, 105                Other numbers: the slot, without a shelf
  If another reading is possible, a note describes it.

What is shown:
  Elements of old generations write shelves from 2 on in the DC form. Other
  slots, and all slots of the second generation (codes above 52099), are written
  with a dash and have no DC form. Without --generation the DC form is that of
  an old generation. The NE slot ID is shown for a text that is only a number.

JSON objects:
  text                  The text
  word, shelf, slot     Numbers
  dashed, hex, dc       Texts; dc is null if there is no DC form
  ne_slot_id            A number; null if the text is not a plain number
  If the text is not a slot, all values except text are null. Notes are printed
  on standard error.

Exit status:
  0  Every text is a slot.
  1  A text is not a slot, standard input cannot be read, or the result could
     not be written.
  2  The command line is wrong.

Examples:
  varnel slot 3-5 305 0x0305 FAC-1-SLOT-3-5
      Show one slot, given in four forms.
  varnel slot --generation 52100 10-31
      Show it as elements of the second generation write it.
  varnel slot --json - < slots.txt
      Read slots from a file, one per line, for a program.
)";

std::string HexAndDecimal(uint16_t number) {
  return Hex16(number) + "  " + std::to_string(number);
}

void PrintRow(const char* name, const std::string& value) {
  std::cout << "  " << Padded(name, NAME_WIDTH) << value << '\n';
}

class SlotCommand {
 public:
  explicit SlotCommand(CLI::App& command) {
    command.add_option("TEXT", m_texts)->required();
    AddGenerationOption(command, m_generation);
    command.add_flag("--json", m_json);
  }

  int Run() const {
    const bool all = ForEachText(m_texts, [this](const std::string& text) { return Show(text); });
    return all ? EXIT_DONE : EXIT_BAD;
  }

 private:
  bool Show(const std::string& text) const {
    SlotReading reading = ReadSlotText(text);
    if (reading.word) NoteDcReadBack(reading);
    if (!reading.error.empty()) Complain(text, reading.error);
    if (m_json || !reading.word) {
      for (const std::string& note : reading.notes)
        Complain(text, note);
    }
    if (m_json) {
      PrintAsJson(text, reading);
    } else if (reading.word) {
      PrintAsRows(text, reading);
    }
    return reading.error.empty();
  }

  std::optional<std::string> Dc(uint16_t word) const { return DcText(m_generation.value_or(OLD_GENERATION), word); }

  // From slot 100 on the DC form has three digits of slot and is read as another slot.
  void NoteDcReadBack(SlotReading& reading) const {
    const auto text = Dc(*reading.word);
    const unsigned int readBack = text ? VARNEL_COMMON::convertSlotDC(*text) : *reading.word;
    if (readBack == *reading.word) return;
    reading.notes.push_back("its DC form is read as shelf " + std::to_string(readBack >> 8) + ", slot " +
                            std::to_string(readBack & 0xFF));
  }

  void PrintAsJson(const std::string& text, const SlotReading& reading) const {
    JsonWriter json;
    json.Add("text", text);
    if (reading.word) {
      const uint16_t word = *reading.word;
      json.Add("word", word).Add("shelf", word >> 8).Add("slot", word & 0xFF);
      json.Add("dashed", VARNEL_COMMON::WSlotIDi2str(word)).Add("hex", VARNEL_COMMON::WSlotIDi2Hexstr(word));
      json.Add("dc", Dc(word));
    } else {
      json.Add("word", nullptr).Add("shelf", nullptr).Add("slot", nullptr);
      json.Add("dashed", nullptr).Add("hex", nullptr).Add("dc", nullptr);
    }
    json.Key("ne_slot_id");
    if (reading.plainNumber) {
      json.Value(VARNEL_COMMON::GetNESlotID(*reading.plainNumber));
    } else {
      json.Value(nullptr);
    }
    json.Print();
  }

  void PrintAsRows(const std::string& text, const SlotReading& reading) const {
    const uint16_t word = *reading.word;
    std::cout << Escaped(text) << ": shelf " << (word >> 8) << ", slot " << (word & 0xFF) << '\n';
    PrintRow("read as", reading.form);
    PrintRow("word", HexAndDecimal(word));
    PrintRow("dashed", VARNEL_COMMON::WSlotIDi2str(word));
    PrintRow("hexadecimal", VARNEL_COMMON::WSlotIDi2Hexstr(word));
    PrintRow("DC", Dc(word).value_or("none: written " + VARNEL_COMMON::WSlotIDi2str(word)));
    if (reading.plainNumber)
      PrintRow("NE slot ID", HexAndDecimal(static_cast<uint16_t>(VARNEL_COMMON::GetNESlotID(*reading.plainNumber))));
    for (const std::string& note : reading.notes)
      PrintRow("note", note);
  }

  std::vector<std::string> m_texts;
  std::optional<int> m_generation;
  bool m_json = false;
};

}  // namespace

extern const Subcommand SLOT = {"slot", HELP_TEXT, AddAs<SlotCommand>};
