#include "software_file.h"

#include <cerrno>
#include <cstring>

#include "output.h"

using VARNEL_COMMON::ZEP_DIR_HEAD;
using VARNEL_COMMON::ZEP_FILE_HEAD;

namespace {

constexpr unsigned short NO_VERSION = 65535;

std::string EndsAfter(size_t read, size_t wanted) {
  return "the file ends after " + std::to_string(read) + " of " + std::to_string(wanted) + " bytes";
}

std::string Quoted(uint32_t magic) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8)
    text.push_back(static_cast<char>(magic >> shift & 0xFF));
  return " (\"" + text + "\")";
}

// Reads and judges one head; gives the fault, or nothing.
template <typename Head>
std::string ReadHead(FILE* file, uint32_t magic, std::optional<FoundHead<Head>>& found) {
  const auto offset = static_cast<uint64_t>(std::ftell(file));
  Head head;
  const size_t read = std::fread(&head, 1, sizeof head, file);
  if (std::ferror(file) != 0) return std::strerror(errno);
  if (read != sizeof head) return EndsAfter(read, sizeof head);
  head.ToHostOrder();
  found = FoundHead<Head>{head, HeadSum(head), offset};
  if (head.ulMagic != magic) return "magic word " + Hex32(head.ulMagic) + ", not " + Hex32(magic) + Quoted(magic);
  if (head.ulCheckSum == found->computedSum) return "";
  return "checksum " + Hex32(head.ulCheckSum) + " stored, " + Hex32(found->computedSum) + " computed";
}

// Reads the link and version texts that the library refused and gives the fault.
std::string TextFault(FILE* file, const ZEP_FILE_HEAD& head) {
  const long extension = head.usFileType == EXTENDED_TYPE ? 2 : 0;
  std::fseek(file, extension + head.usSkipLen, SEEK_CUR);
  if (head.usLinkLen > MAX_LINK_LENGTH) {
    return "link text: " + std::to_string(head.usLinkLen) + " bytes, at most " + std::to_string(MAX_LINK_LENGTH) +
           " are allowed";
  }
  std::string text(head.usLinkLen, '\0');
  const size_t linkRead = std::fread(text.data(), 1, text.size(), file);
  if (linkRead != text.size()) return "link text: " + EndsAfter(linkRead, text.size());
  if (std::strstr(text.c_str(), "-> ") == nullptr) return "link text: there is no \"-> \" in it";
  text.resize(head.usVersionLen);
  const size_t versionRead = std::fread(text.data(), 1, text.size(), file);
  return "version text: " + EndsAfter(versionRead, text.size());
}

// Looks at what the library refused, step by step as it does.
std::string FindFault(const InputFile& input, SoftwareFile& result, bool refused) {
  const File file = input.Open();
  if (file == nullptr) return std::strerror(errno);
  const std::string dirFault = ReadHead(file.get(), DIR_MAGIC, result.directory);
  if (!dirFault.empty()) return "directory head: " + dirFault;
  std::fseek(file.get(), static_cast<long>(GapLength(result.directory->fields)), SEEK_CUR);
  const std::string fileFault = ReadHead(file.get(), FILE_MAGIC, result.file);
  if (!fileFault.empty()) return "file head: " + fileFault;
  return refused ? TextFault(file.get(), result.file->fields) : "";
}

}  // namespace

uint32_t GapLength(const ZEP_DIR_HEAD& head) {
  return uint32_t{head.usGapLen26} + head.usGapLen32 + head.usGapLen34 + head.usGapLen36;
}

SoftwareFile InspectSoftwareFile(const InputFile& input) {
  SoftwareFile result;
  result.error = input.Error();
  if (!result.error.empty()) return result;

  ZEP_FILE_HEAD head;
  std::string linkTarget, version;
  unsigned int extensionWord = 0, payloadOffset = 0;
  const bool refused =
      VARNEL_COMMON::readZEPFileHead(input.Path(), head, linkTarget, version, extensionWord, payloadOffset) != 0;
  result.error = FindFault(input, result, refused);
  if (refused || !result.error.empty()) return result;

  result.linkTarget = linkTarget;
  result.payloadOffset = payloadOffset;
  if (head.usVersionLen != 0 && head.usVersionLen != NO_VERSION) result.version = version;
  if (head.usFileType == EXTENDED_TYPE) result.extensionWord = extensionWord;
  int type = 0;
  result.typeAccepted = VARNEL_COMMON::CheckZEPFileHead(input.Path(), type, linkTarget, version) == 0;
  return result;
}
