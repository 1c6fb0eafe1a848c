#include <cstddef>
#include <iomanip>
#include <iostream>
#include <memory>

#include "input_file.h"
#include "output.h"
#include "software_file.h"
#include "subcommands.h"

using VARNEL_COMMON::ZEP_DIR_HEAD;
using VARNEL_COMMON::ZEP_FILE_HEAD;

namespace {

// A field of a head: where it stands, how wide it is and how it is called.
struct Field {
  const char* name;
  size_t offset;
  size_t size;
  bool raw;  ///< bytes instead of a number
};

#define NUMBER(Head, field) \
  { #field, offsetof(Head, field), sizeof(Head::field), false }
#define BYTES(Head, field) \
  { #field, offsetof(Head, field), sizeof(Head::field), true }

constexpr Field DIR_FIELDS[] = {
    NUMBER(ZEP_DIR_HEAD, ulMagic),    NUMBER(ZEP_DIR_HEAD, ulCheckSum), NUMBER(ZEP_DIR_HEAD, usValue08),
    NUMBER(ZEP_DIR_HEAD, usValue10),  NUMBER(ZEP_DIR_HEAD, ulValue12),  BYTES(ZEP_DIR_HEAD, aucBytes16),
    NUMBER(ZEP_DIR_HEAD, usValue22),  NUMBER(ZEP_DIR_HEAD, usValue24),  NUMBER(ZEP_DIR_HEAD, usGapLen26),
    NUMBER(ZEP_DIR_HEAD, ulValue28),  NUMBER(ZEP_DIR_HEAD, usGapLen32), NUMBER(ZEP_DIR_HEAD, usGapLen34),
    NUMBER(ZEP_DIR_HEAD, usGapLen36), BYTES(ZEP_DIR_HEAD, aucBytes38),  NUMBER(ZEP_DIR_HEAD, ulValue60)};

constexpr Field FILE_FIELDS[] = {
    NUMBER(ZEP_FILE_HEAD, ulMagic),   NUMBER(ZEP_FILE_HEAD, ulCheckSum),   NUMBER(ZEP_FILE_HEAD, usValue08),
    NUMBER(ZEP_FILE_HEAD, usValue10), BYTES(ZEP_FILE_HEAD, aucBytes12),    NUMBER(ZEP_FILE_HEAD, ulValue24),
    NUMBER(ZEP_FILE_HEAD, ulValue28), NUMBER(ZEP_FILE_HEAD, usFileType),   NUMBER(ZEP_FILE_HEAD, usValue34),
    NUMBER(ZEP_FILE_HEAD, ulValue36), NUMBER(ZEP_FILE_HEAD, ulValue40),    NUMBER(ZEP_FILE_HEAD, usSkipLen),
    NUMBER(ZEP_FILE_HEAD, usLinkLen), NUMBER(ZEP_FILE_HEAD, usVersionLen), NUMBER(ZEP_FILE_HEAD, usTailLen),
    BYTES(ZEP_FILE_HEAD, aucBytes52), NUMBER(ZEP_FILE_HEAD, ulValue60)};

#undef NUMBER
#undef BYTES

uint32_t Number(const unsigned char* bytes, size_t size) {
  if (size == sizeof(uint16_t)) {
    uint16_t number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
  }
  uint32_t number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

std::string HexBytes(const unsigned char* bytes, size_t size) {
  std::string text;
  for (size_t i = 0; i < size; ++i)
    text += Hex32(bytes[i]).substr(8);
  return text;
}

template <typename Head, size_t N>
Json FieldsToJson(const std::optional<FoundHead<Head>>& head, const Field (&fields)[N]) {
  if (!head) return nullptr;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&head->fields);
  Json object;
  for (const Field& field : fields) {
    const auto* value = bytes + field.offset;
    object[field.name] = field.raw ? Json(HexBytes(value, field.size)) : Json(Number(value, field.size));
  }
  return object;
}

template <typename Head>
Json StoredSum(const std::optional<FoundHead<Head>>& head) {
  return head ? Json(head->fields.ulCheckSum) : Json(nullptr);
}

template <typename Head>
Json ComputedSum(const std::optional<FoundHead<Head>>& head) {
  return head ? Json(head->computedSum) : Json(nullptr);
}

template <typename Head, size_t N>
void PrintHead(const char* title, const std::optional<FoundHead<Head>>& head, const Field (&fields)[N]) {
  if (!head) return;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&head->fields);
  std::cout << title << " at offset " << head->offset << '\n';
  for (const Field& field : fields) {
    const auto* value = bytes + field.offset;
    std::cout << std::setw(6) << field.offset << "  " << Padded(field.name, 12) << "  ";
    if (field.raw) {
      std::cout << HexBytes(value, field.size);
    } else {
      const std::string hex = Hex32(Number(value, field.size));
      std::cout << "0x" << hex.substr(10 - 2 * field.size) << "  " << Number(value, field.size);
    }
    std::cout << '\n';
  }
  const bool right = head->fields.ulCheckSum == head->computedSum;
  std::cout << "  checksum " << Hex32(head->fields.ulCheckSum) << " stored, " << Hex32(head->computedSum)
            << " computed: " << (right ? Coloured(Colour::Good, "right") : Coloured(Colour::Bad, "wrong")) << '\n';
}

class HeadCommand {
 public:
  explicit HeadCommand(Command& command) {
    command.add_option("PATH", m_path, "A software file; - is standard input")->required();
    command.add_flag("--json", m_json, "Print one JSON object");
    command.explanation = {
        {"",
         {{"",
           "Each line shows a field: its offset in the head, its name, and its value in hexadecimal and decimal. "
           "The checksums that are stored are compared with computed ones, and the first fault is told. A head "
           "that cannot be found is left out."}}},
        {"JSON object",
         {{"path, ok, error", "The file, whether its heads are valid, and the first fault or null."},
          {"directory, file", "The fields of each head by their names, or null."},
          {"stored, computed",
           "Objects with the checksums of the heads, directory and file; null for one that is absent."}}}};
    command.SetExitStatus("Both heads are valid.", "The file is bad or unreadable");
    command.examples.paragraphs = {{"varnel head mainboard.pkg", "Show the heads of a file."}};
  }

  int Run() const {
    const InputFile input(m_path);
    const SoftwareFile file = InspectSoftwareFile(input);
    if (m_json) {
      PrintAsJson(input, file);
    } else {
      PrintAsTables(input, file);
    }
    return file.error.empty() ? EXIT_DONE : EXIT_BAD;
  }

 private:
  static void PrintAsJson(const InputFile& input, const SoftwareFile& file) {
    PrintJson({{"path", input.Name()},
               {"ok", file.error.empty()},
               {"error", file.error.empty() ? Json(nullptr) : Json(file.error)},
               {"directory", FieldsToJson(file.directory, DIR_FIELDS)},
               {"file", FieldsToJson(file.file, FILE_FIELDS)},
               {"stored", {{"directory", StoredSum(file.directory)}, {"file", StoredSum(file.file)}}},
               {"computed", {{"directory", ComputedSum(file.directory)}, {"file", ComputedSum(file.file)}}}});
  }

  static void PrintAsTables(const InputFile& input, const SoftwareFile& file) {
    PrintHead("directory head", file.directory, DIR_FIELDS);
    PrintHead("file head", file.file, FILE_FIELDS);
    const bool good = file.error.empty();
    std::cout << Escaped(input.Name()) << ": "
              << (good ? Coloured(Colour::Good, "good") : Coloured(Colour::Bad, "bad") + ": " + file.error) << '\n';
  }

  std::string m_path;
  bool m_json = false;
};

}  // namespace

std::function<int()> AddHead(Command& command) {
  const auto head = std::make_shared<HeadCommand>(command);
  return [head] { return head->Run(); };
}
