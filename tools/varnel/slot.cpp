#include <publicdata.h>
#include <zepv2data.h>

#include <iostream>
#include <memory>

#include "arguments.h"
#include "output.h"
#include "slot_text.h"
#include "subcommands.h"

namespace {

constexpr size_t NAME_WIDTH = 12;

std::string HexAndDecimal(uint16_t number) {
  return Hex16(number) + "  " + std::to_string(number);
}

void PrintRow(const char* name, const std::string& value) {
  std::cout << "  " << Padded(name, NAME_WIDTH) << value << '\n';
}

class SlotCommand {
 public:
  explicit SlotCommand(Command& command) {
    command.add_option("TEXT", m_texts, "Slots in any form; - reads them from standard input, one a line")->required();
    AddGenerationOption(command, m_generation, "Give the DC form only where elements of this generation write it");
    command.add_flag("--json", m_json, "Print one JSON object per text");
    Explain(command);
  }

  int Run() const {
    const bool all = ForEachText(m_texts, [this](const std::string& text) { return Show(text); });
    return all ? EXIT_DONE : EXIT_BAD;
  }

 private:
  static void Explain(Command& command) {
    command.explanation = {
        {"How a text is read",
         {{"0x0305", "hexadecimal: the word, shelf * 256 + slot"},
          {"FAC-1-SLOT-3-5", "behind the first SLOT- as in TL1; SLOT-7 has no shelf, and SLOT-305 is a plain number"},
          {"3-5", "shelf and slot, as in MML parameters"},
          {"305", "from 200 on and with 3 to 11 digits in the DC form: shelf, and two digits of slot"},
          {"7, 105", "other numbers plainly: the slot, without a shelf"},
          {"", "Where another reading is possible, a note tells it. Empty lines of standard input are passed over."}}},
        {"What is shown",
         {{"",
           "Elements of old generations write shelves from 2 on in the DC form; other slots, and all of the second "
           "generation (codes above 52099), are written dashed and have none. Without --generation the DC form is "
           "that of an old generation. The NE slot ID is that of a text which is a number and nothing else."}}},
        {"JSON objects",
         {{"text", "The text given."},
          {"word, shelf, slot", "Numbers."},
          {"dashed, hex, dc", "Texts; dc is null where there is no DC form."},
          {"ne_slot_id", "A number, or null where the text is not a plain number."},
          {"", "All but text are null for a text that is no slot. Notes go to standard error."}}}};
    command.SetExitStatus("Every text is a slot.", "A text is none, or standard input cannot be read");
    command.examples.paragraphs = {
        {"varnel slot 3-5 305 0x0305 FAC-1-SLOT-3-5", "Show one slot, given in four forms."},
        {"varnel slot --generation 52100 10-31", "Show it as elements of the second generation write it."},
        {"varnel slot --json - < slots.txt", "Read slots from a file, one a line, for a program."}};
  }

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

  // From slot 100 on the DC form has three digits of slot, and would be read as another slot.
  void NoteDcReadBack(SlotReading& reading) const {
    const auto text = Dc(*reading.word);
    const unsigned int readBack = text ? VARNEL_COMMON::convertSlotDC(*text) : *reading.word;
    if (readBack == *reading.word) return;
    reading.notes.push_back("its DC form reads back as shelf " + std::to_string(readBack >> 8) + ", slot " +
                            std::to_string(readBack & 0xFF));
  }

  void PrintAsJson(const std::string& text, const SlotReading& reading) const {
    Json object = {{"text", text},      {"word", nullptr}, {"shelf", nullptr}, {"slot", nullptr},
                   {"dashed", nullptr}, {"hex", nullptr},  {"dc", nullptr},    {"ne_slot_id", nullptr}};
    if (reading.word) {
      const uint16_t word = *reading.word;
      object["word"] = word;
      object["shelf"] = word >> 8;
      object["slot"] = word & 0xFF;
      object["dashed"] = VARNEL_COMMON::WSlotIDi2str(word);
      object["hex"] = VARNEL_COMMON::WSlotIDi2Hexstr(word);
      object["dc"] = OrNull(Dc(word));
    }
    if (reading.plainNumber) object["ne_slot_id"] = VARNEL_COMMON::GetNESlotID(*reading.plainNumber);
    PrintJson(object);
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

std::function<int()> AddSlot(Command& command) {
  const auto slot = std::make_shared<SlotCommand>(command);
  return [slot] { return slot->Run(); };
}
