#ifndef VARNEL_TOOLS_SOFTWARE_FILE_H
#define VARNEL_TOOLS_SOFTWARE_FILE_H

#include <publicdata.h>

#include <cstdint>
#include <optional>
#include <string>

#include "input_file.h"

/// One of the two heads as it stands in a file, in the machine's byte order.
template <typename Head>
struct FoundHead {
  Head fields;
  uint32_t computedSum;
  uint64_t offset;  ///< where it begins in the file
};

/// What an NE software file holds in front of its payload, as far as it can be read.
struct SoftwareFile {
  std::optional<FoundHead<VARNEL_COMMON::ZEP_DIR_HEAD>> directory;
  std::optional<FoundHead<VARNEL_COMMON::ZEP_FILE_HEAD>> file;  ///< only behind a valid directory head
  std::string error;  ///< the first fault, in words; empty when heads and texts are valid

  /// The following are set when there is no fault.
  std::optional<std::string> linkTarget;
  std::optional<std::string> version;         ///< absent too where the file has none
  std::optional<unsigned int> extensionWord;  ///< only for the file type that has one
  std::optional<unsigned int> payloadOffset;
  bool typeAccepted = false;
};

/// Reads a software file through the library and finds out what is wrong with one that the library refuses.
SoftwareFile InspectSoftwareFile(const InputFile& input);

constexpr uint32_t DIR_MAGIC = 0x51584444;
constexpr uint32_t FILE_MAGIC = 0x51584646;
constexpr size_t MAX_LINK_LENGTH = 1023;
constexpr unsigned short EXTENDED_TYPE = 2;

/// Bytes between the two heads.
uint32_t GapLength(const VARNEL_COMMON::ZEP_DIR_HEAD& head);

/// Sum of the part of a head that its checksum covers.
template <typename Head>
uint32_t HeadSum(const Head& head) {
  return VARNEL_COMMON::GetUCCheckSum(reinterpret_cast<const char*>(&head) + 8, 52);
}

#endif
