#include <cerrno>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "arguments.h"
#include "input_file.h"
#include "output.h"
#include "output_file.h"
#include "software_file.h"
#include "subcommands.h"

using VARNEL_COMMON::ZEP_DIR_HEAD;
using VARNEL_COMMON::ZEP_FILE_HEAD;

namespace {

constexpr size_t MAX_VERSION_LENGTH = 65534;

[[noreturn]] void FailToRead(const std::string& name) {
  throw std::runtime_error("cannot read " + Escaped(name) + ": " + std::strerror(errno));
}

// The head as it stands in the file. Summing first is right: a sum of bytes does not depend on their order.
template <typename Head>
std::string Stored(Head head) {
  head.ulCheckSum = HeadSum(head);
  head.ToHostOrder();
  return {reinterpret_cast<const char*>(&head), sizeof head};
}

class MakePackageCommand {
 public:
  explicit MakePackageCommand(Command& command) {
    command.add_option("OUTPUT", m_output, "File to write; - is standard output")->required();
    command.add_option("-d,--description", m_description, "File with the package description; - is standard input")
        ->type_name("FILE");
    command.add_option("-p,--payload", m_payload, "File with what follows the description; - is standard input")
        ->type_name("FILE");
    command
        .add_option("--version-text", m_version,
                    "Version text, up to " + std::to_string(MAX_VERSION_LENGTH) + " bytes; empty for none")
        ->type_name("TEXT")
        ->capture_default_str()
        ->check(LengthUpTo(MAX_VERSION_LENGTH));
    command
        .add_option("--link", m_link,
                    "Link text, \"NAME -> TARGET\", up to " + std::to_string(MAX_LINK_LENGTH) + " bytes")
        ->type_name("TEXT")
        ->capture_default_str()
        ->check(LengthUpTo(MAX_LINK_LENGTH))
        ->check([](const std::string& text) { return text.find("-> ") == text.npos ? "holds no \"-> \"" : ""; });
    TakeWord(command.add_option("-t,--type", m_type, "File type")->capture_default_str());
    TakeWord(command.add_option("--extension", m_extension, "Extension word, for file type 2 only"));
    TakeWord(command.add_option("--gap", m_gaps, "Lengths of up to four parts of the gap between the heads"))
        ->delimiter(',')
        ->expected(1, 4)
        ->allow_extra_args(false)
        ->type_name("N,N,N,N");
    TakeWord(command.add_option("--skip-length", m_skipLength, "Length of the area behind the heads")
                 ->capture_default_str());
    TakeWord(command.add_option("--tail-length", m_tailLength, "Length of the area behind the texts")
                 ->capture_default_str());
    Explain(command);
  }

  int Run() const {
    if (m_extension && m_type != EXTENDED_TYPE) throw CLI::ValidationError("--extension", "goes with --type 2 only");
    if (m_description == "-" && m_payload == "-") {
      throw CLI::ValidationError("--payload", "standard input is taken by --description");
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
  static CLI::Option* TakeWord(CLI::Option* option) { return TakeNumbers(option, 0, UINT16_MAX)->type_name("NUMBER"); }

  static void Explain(Command& command) {
    command.explanation = {
        {"",
         {{"",
           "Writes heads with right checksums, then the link and version texts, then the description and the "
           "payload. Numbers are decimal, or hexadecimal behind 0x. OUTPUT appears only once it is complete, "
           "and replaces a file of that name."}}},
        {"Description file",
         {{"",
           "A line [File Description], then a line for each entry, of eight columns that are separated by colons: "
           "the first is its name, the second its kind, the fifth its size. A line [END] ends it."}}}};
    command.SetExitStatus("The file is written.", "A file cannot be read");
    command.examples.paragraphs = {
        {"varnel make-package -d description.txt --version-text 2.10 mainboard.pkg",
         "Write a package that lists files."},
        {"varnel make-package --link 'board -> mainboard' -t 1 - | varnel head -", "Look at heads without a file."}};
  }

  static CLI::Validator LengthUpTo(size_t length) {
    return CLI::Validator(
        [length](const std::string& text) {
          return text.size() > length ? "is longer than " + std::to_string(length) + " bytes" : std::string();
        },
        "");
  }

  // What cannot be read is to be known before standard output gets the first byte.
  void WritePackage() const {
    OutputFile output(m_output);
    const File description = OpenIfNamed(m_description);
    const File payload = OpenIfNamed(m_payload);
    output.Write(Heads());
    output.Write(std::string(m_skipLength, '\0') + m_link + m_version + std::string(m_tailLength, '\0'));
    if (description != nullptr) {
      output.Write("\n");  // the first line of the description is not to hide behind the bytes in front of it
      Append(description.get(), m_description, output);
    }
    if (payload != nullptr) Append(payload.get(), m_payload, output);
    output.Finish();
  }

  std::string Heads() const {
    ZEP_DIR_HEAD directory = {};
    directory.ulMagic = DIR_MAGIC;
    uint16_t* const gaps[] = {&directory.usGapLen26, &directory.usGapLen32, &directory.usGapLen34,
                              &directory.usGapLen36};
    for (size_t i = 0; i < m_gaps.size(); ++i)
      *gaps[i] = m_gaps[i];

    ZEP_FILE_HEAD file = {};
    file.ulMagic = FILE_MAGIC;
    file.usFileType = m_type;
    file.usSkipLen = m_skipLength;
    file.usLinkLen = static_cast<uint16_t>(m_link.size());
    file.usVersionLen = static_cast<uint16_t>(m_version.size());
    file.usTailLen = m_tailLength;

    std::string heads = Stored(directory) + std::string(GapLength(directory), '\0') + Stored(file);
    if (m_type == EXTENDED_TYPE) {
      const uint16_t word = m_extension.value_or(0);
      heads.push_back(static_cast<char>(word >> 8));
      heads.push_back(static_cast<char>(word & 0xFF));
    }
    return heads;
  }

  // Null without a name.
  static File OpenIfNamed(const std::string& name) {
    if (name.empty()) return nullptr;
    const InputFile input(name);
    if (!input.Error().empty()) throw std::runtime_error("cannot read " + Escaped(name) + ": " + input.Error());
    File file = input.Open();
    if (file == nullptr) FailToRead(name);
    return file;
  }

  static void Append(FILE* file, const std::string& name, OutputFile& output) {
    char buffer[65536];
    for (size_t read; (read = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
      output.Write(buffer, read);
    if (std::ferror(file) != 0) FailToRead(name);
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

std::function<int()> AddMakePackage(Command& command) {
  const auto makePackage = std::make_shared<MakePackageCommand>(command);
  return [makePackage] { return makePackage->Run(); };
}
