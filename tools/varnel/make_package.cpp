#include <memory>
#include <stdexcept>
#include <vector>

#include "arguments.h"
#include "output.h"
#include "package_file.h"
#include "subcommand.h"

using namespace VARNEL_COMMON;

namespace {

constexpr size_t MAX_VERSION_LENGTH = ZEP_NO_VERSION_LENGTH - 1;

constexpr char HELP_TEXT[] = R"(Write an NE software file with valid headers.

Usage: varnel make-package [OPTION]... OUTPUT

OUTPUT is the file to write, or - for standard output, which must not be a
terminal. The file consists of headers with valid checksums, the link and
version texts, the description and the payload. It appears under its name only
when it is complete, and replaces a file of that name.

NUMBER is 0 to 65535, decimal, or hexadecimal after 0x.

Options:
  -d, --description FILE  Take the package description from FILE; - is standard
                        input
  -p, --payload FILE    Append FILE after the description; - is standard input
      --version-text TEXT  Set the version text, up to 65534 bytes; empty for no
                        version text (default: 1.0)
      --link TEXT       Set the link text "NAME -> TARGET", up to 1023 bytes
                        (default: package -> package)
  -t, --type NUMBER     Set the file type (default: 1)
      --extension NUMBER  Set the extension word; requires --type 2
      --gap N,N,N,N     Set up to four lengths that make up the gap between the
                        headers
      --skip-length NUMBER  Set the length of the area after the headers
                        (default: 0)
      --tail-length NUMBER  Set the length of the area after the texts
                        (default: 0)
  -h, --help            Print this help and exit
  -v, --verbose         Show the library's log lines on standard error

Description file:
  The line [File Description], then one line per entry with eight columns
  separated by colons: the first is the name, the second the kind, the fifth the
  size. The line [END] ends the list.

Exit status:
  0  The file is written.
  1  A file cannot be read, or the result could not be written.
  2  The command line is wrong.

Examples:
  varnel make-package -d description.txt --version-text 2.10 mainboard.pkg
      Write a package that lists files.
  varnel make-package --link 'board -> mainboard' -t 1 - | varnel head -
      Look at headers without a file.
)";

void RefuseUnreadable(const InputFile& input) {
  if (input.Error().empty()) return;
  throw std::runtime_error("cannot read " + Escaped(input.Name()) + ": " + input.Error());
}

// The header in the byte order of the file. The sum of its bytes does not depend on their order.
template <typename Head>
std::string Stored(Head head) {
  head.ulCheckSum = HeadSum(head);
  head.ToHostOrder();
  return {reinterpret_cast<const char*>(&head), sizeof head};
}

class MakePackageCommand {
 public:
  explicit MakePackageCommand(CLI::App& command) {
    TakePaths(command.add_option("OUTPUT", m_output))->required();
    TakePaths(command.add_option("-d,--description", m_description));
    TakePaths(command.add_option("-p,--payload", m_payload));
    command.add_option("--version-text", m_version)->check(LengthUpTo(MAX_VERSION_LENGTH));
    command.add_option("--link", m_link)->check(LengthUpTo(ZEP_MAX_LINK_LENGTH))->check(HasLinkMarker);
    TakeWord(command.add_option("-t,--type", m_type));
    TakeWord(command.add_option("--extension", m_extension));
    TakeWord(command.add_option("--gap", m_gaps))->delimiter(',')->expected(1, 4)->allow_extra_args(false);
    TakeWord(command.add_option("--skip-length", m_skipLength));
    TakeWord(command.add_option("--tail-length", m_tailLength));
  }

  int Run() const {
    if (m_extension && m_type != ZEP_EXTENDED_TYPE) throw CLI::ValidationError("--extension", "requires --type 2");
    if (m_description == "-" && m_payload == "-") {
      throw CLI::ValidationError("--payload", "standard input is already read by --description");
    }
    try {
      WritePackage();
    } catch (const std::runtime_error& error) {
      Complain(m_output, error.what());
      return EXIT_BAD;
    }
    return EXIT_DONE;
  }

 private:
  static CLI::Option* TakeWord(CLI::Option* option) { return TakeNumbers(option, 0, UINT16_MAX); }

  static std::string HasLinkMarker(const std::string& text) {
    return text.find(ZEP_LINK_MARKER) == std::string::npos ? "has no \"-> \" (expected NAME -> TARGET)" : "";
  }

  static CLI::Validator LengthUpTo(size_t length) {
    return CLI::Validator(
        [length](const std::string& text) {
          return text.size() > length ? "is longer than " + std::to_string(length) + " bytes" : std::string();
        },
        "");
  }

  // Inputs are opened first: if one cannot be read, nothing is written to standard output.
  void WritePackage() const {
    OutputFile output(m_output);
    const auto description = OpenIfNamed(m_description);
    const auto payload = OpenIfNamed(m_payload);
    output.Write(Heads());
    output.Write(std::string(m_skipLength, '\0') + m_link + m_version + std::string(m_tailLength, '\0'));
    if (description != nullptr) {
      output.Write("\n");  // the description must begin on a new line
      Append(*description, output);
    }
    if (payload != nullptr) Append(*payload, output);
    output.Finish();
  }

  std::string Heads() const {
    ZEP_DIR_HEAD directory = {};
    directory.ulMagic = ZEP_DIR_MAGIC;
    uint16_t* const gaps[] = {&directory.usGapLen26, &directory.usGapLen32, &directory.usGapLen34,
                              &directory.usGapLen36};
    for (size_t i = 0; i < m_gaps.size(); ++i)
      *gaps[i] = m_gaps[i];

    ZEP_FILE_HEAD file = {};
    file.ulMagic = ZEP_FILE_MAGIC;
    file.usFileType = m_type;
    file.usSkipLen = m_skipLength;
    file.usLinkLen = static_cast<uint16_t>(m_link.size());
    file.usVersionLen = static_cast<uint16_t>(m_version.size());
    file.usTailLen = m_tailLength;

    std::string headers = Stored(directory) + std::string(GapLength(directory), '\0') + Stored(file);
    if (m_type == ZEP_EXTENDED_TYPE) {
      const uint16_t word = m_extension.value_or(0);
      headers.push_back(static_cast<char>(word >> 8));
      headers.push_back(static_cast<char>(word & 0xFF));
    }
    return headers;
  }

  // Null without a name. A pipe is read to its end here.
  static std::unique_ptr<InputFile> OpenIfNamed(const std::string& name) {
    if (name.empty()) return nullptr;
    auto input = std::make_unique<InputFile>(name);
    input->StorePipe();
    RefuseUnreadable(*input);
    return input;
  }

  static void Append(InputFile& input, OutputFile& output) {
    char buffer[65536];
    for (size_t count; (count = input.Read(buffer, sizeof buffer)) > 0;)
      output.Write(buffer, count);
    RefuseUnreadable(input);
  }

  std::string m_output;
  std::string m_description;
  std::string m_payload;
  std::string m_version = "1.0";
  std::string m_link = "package -> package";
  uint16_t m_type = 1;
  std::optional<uint16_t> m_extension;
  std::vector<uint16_t> m_gaps;
  uint16_t m_skipLength = 0;
  uint16_t m_tailLength = 0;
};

}  // namespace

extern const Subcommand MAKE_PACKAGE = {"make-package", HELP_TEXT, AddAs<MakePackageCommand>};
