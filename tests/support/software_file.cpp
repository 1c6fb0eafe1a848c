#include "software_file.h"

#include <numeric>

namespace VARNEL_TEST {

namespace {

constexpr size_t HEAD_SIZE = 64;

uint16_t Claimed(const std::optional<uint16_t>& claim, const std::string& text) {
  return claim.value_or(static_cast<uint16_t>(text.size()));
}

}  // namespace

void PutBig16(std::string& bytes, size_t offset, uint16_t value) {
  bytes[offset] = static_cast<char>(value >> 8);
  bytes[offset + 1] = static_cast<char>(value & 0xFF);
}

void PutBig32(std::string& bytes, size_t offset, uint32_t value) {
  PutBig16(bytes, offset, static_cast<uint16_t>(value >> 16));
  PutBig16(bytes, offset + 2, static_cast<uint16_t>(value & 0xFFFF));
}

void RepairSum(std::string& bytes, size_t offset) {
  uint32_t sum = 0;
  for (size_t i = offset + 8; i < offset + 60; ++i)
    sum += static_cast<unsigned char>(bytes[i]);
  PutBig32(bytes, offset + 4, sum);
}

size_t SoftwareFile::FileHeadOffset() const {
  return std::accumulate(gaps.begin(), gaps.end(), HEAD_SIZE);
}

std::string SoftwareFile::Bytes() const {
  const size_t fileHead = FileHeadOffset();
  std::string bytes(fileHead + HEAD_SIZE, '\0');
  bytes.replace(0, 4, "QXDD");
  constexpr size_t GAP_OFFSETS[] = {26, 32, 34, 36};
  for (size_t i = 0; i < gaps.size(); ++i)
    PutBig16(bytes, GAP_OFFSETS[i], gaps[i]);
  RepairSum(bytes, 0);

  bytes.replace(fileHead, 4, "QXFF");
  PutBig16(bytes, fileHead + 32, fileType);
  PutBig16(bytes, fileHead + 44, Claimed(skipLength, skipped));
  PutBig16(bytes, fileHead + 46, Claimed(linkLength, link));
  PutBig16(bytes, fileHead + 48, Claimed(versionLength, version));
  PutBig16(bytes, fileHead + 50, Claimed(tailLength, tail));
  RepairSum(bytes, fileHead);

  if (extension) {
    bytes.append(2, '\0');
    PutBig16(bytes, bytes.size() - 2, *extension);
  }
  return bytes + skipped + link + version + tail + payload;
}

}  // namespace VARNEL_TEST
