#include <cstddef>
#include <iomanip>
#include <iostream>
#include <memory>

#include "arguments.h"
#include "json.h"
#include "output.h"
#include "package_file.h"
#include "subcommand.h"

using VARNEL_COMMON::ZEP_DIR_HEAD;
using VARNEL_COMMON::ZEP_FILE_HEAD;

namespace {

constexpr char HELP_TEXT[] = R"(Show both headers of an NE software file, field by field.

Usage: varnel head [OPTION]... PATH

PATH is a software file, or - for standard input. Each line shows a field: its
offset in the header, its name, and its value in hexadecimal and decimal. The
stored checksums are compared with computed ones. The last line reports the
first fault. A missing header is left out.

Options:
      --json            Print one JSON object
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

JSON object:
  path, ok, error       The file, whether its headers are valid, and the first
                        fault or null
  directory, file       The fields of each header by name, or null
  stored, computed      Objects with the checksums of both headers, directory
                        and file; null for a missing header

Exit status:
  0  Both headers and the texts are valid.
  1  The file is bad or unreadable, or the result could not be written.
  2  The command line is wrong.

Examples:
  varnel head mainboard.pkg
      Show the headers of a file.
)";

// A field of a header.
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

// The value after a key.
template <typename Head, size_t N>
void AddFields(JsonWriter& json, const std::optional<FoundHead<Head>>& head, const Field (&fields)[N]) {
  if (!head) return json.Value(nullptr);
  const auto* bytes = reinterpret_cast<const unsigned char*>(&head->fields);
  json.BeginObject();
  for (const Field& field : fields) {
    const auto* value = bytes + field.offset;
    json.AnyKey(field.name);
    if (field.raw) {
      json.Value(HexBytes(value, field.size));
    } else {
      json.Value(Number(value, field.size));
    }
  }
  json.EndObject();
}

template <typename Head>
std::optional<uint32_t> StoredSum(const std::optional<FoundHead<Head>>& head) {
  return head ? std::optional<uint32_t>(head->fields.ulCheckSum) : std::nullopt;
}

template <typename Head>
std::optional<uint32_t> ComputedSum(const std::optional<FoundHead<Head>>& head) {
  return head ? std::optional<uint32_t>(head->computedSum) : std::nullopt;
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
            << " computed: " << (right ? Coloured(Colour::Good, "correct") : Coloured(Colour::Bad, "wrong")) << '\n';
}

class HeadCommand {
 public:
  explicit HeadCommand(CLI::App& command) {
    TakePaths(command.add_option("PATH", m_path))->required();
    command.add_flag("--json", m_json);
  }

  int Run() const {
    InputFile input(m_path);
    FileScanner scanner(input);
    const FileStart start = ReadFileStart(scanner);
    if (m_json) {
      PrintAsJson(start);
    } else {
      PrintAsTables(start);
    }
    return start.error.empty() ? EXIT_DONE : EXIT_BAD;
  }

 private:
  void PrintAsJson(const FileStart& start) const {
    JsonWriter json;
    json.Add("path", m_path).Add("ok", start.error.empty()).AddOrNull("error", start.error);
    json.Key("directory");
    AddFields(json, start.directoryHead, DIR_FIELDS);
    json.Key("file");
    AddFields(json, start.fileHead, FILE_FIELDS);
    json.Key("stored");
    json.BeginObject();
    json.Add("directory", StoredSum(start.directoryHead)).Add("file", StoredSum(start.fileHead));
    json.EndObject();
    json.Key("computed");
    json.BeginObject();
    json.Add("directory", ComputedSum(start.directoryHead)).Add("file", ComputedSum(start.fileHead));
    json.EndObject();
    json.Print();
  }

  void PrintAsTables(const FileStart& start) const {
    PrintHead("directory header", start.directoryHead, DIR_FIELDS);
    PrintHead("file header", start.fileHead, FILE_FIELDS);
    const bool good = start.error.empty();
    std::cout << Escaped(m_path) << ": "
              << (good ? Coloured(Colour::Good, "good") : Coloured(Colour::Bad, "bad") + ": " + start.error) << '\n';
  }

  std::string m_path;
  bool m_json = false;
};

}  // namespace

extern const Subcommand HEAD = {"head", HELP_TEXT, AddAs<HeadCommand>};
