#ifndef VARNEL_TESTS_SOFTWARE_FILE_H
#define VARNEL_TESTS_SOFTWARE_FILE_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace VARNEL_TEST {

void PutBig16(std::string& bytes, size_t offset, uint16_t value);
void PutBig32(std::string& bytes, size_t offset, uint32_t value);

/// Stores the correct sum in a 64-byte header that begins at `offset`.
void RepairSum(std::string& bytes, size_t offset);

/// Builds NE software files byte by byte, without the library. Valid by default; a test sets some fields, or changes
/// bytes and repairs the sum.
struct SoftwareFile {
  std::array<uint16_t, 4> gaps{};  ///< the lengths at 26, 32, 34 and 36 of the directory head
  uint16_t fileType = 1;
  std::optional<uint16_t> extension;  ///< written after the file header if set, for any type
  std::string skipped;
  std::string link = "sample -> target";
  std::string version = "2.10T20200101";
  std::string tail;
  std::string payload;
  std::optional<uint16_t> skipLength, linkLength, versionLength, tailLength;  ///< claimed instead of the real ones

  size_t FileHeadOffset() const;
  std::string Bytes() const;
};

}  // namespace VARNEL_TEST

#endif
