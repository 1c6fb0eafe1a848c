// Random bytes would hardly ever get past the magic words and sums of both heads, so that most inputs get them back
// after each mutation.

#include <algorithm>
#include <cstdint>
#include <string>

#include "software_file.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

constexpr size_t HEAD_SIZE = 64;

size_t Big16(const std::string& bytes, size_t at) {
  return static_cast<unsigned char>(bytes[at]) * size_t{256} + static_cast<unsigned char>(bytes[at + 1]);
}

void PutHead(std::string& bytes, size_t at, const char* magic) {
  bytes.replace(at, 4, magic);
  VARNEL_TEST::RepairSum(bytes, at);
}

// Gaps keep the file head where the bytes end, so that it is there at all.
void Repair(std::string& bytes) {
  for (const size_t gap : {size_t{26}, size_t{32}, size_t{34}, size_t{36}}) {
    if (Big16(bytes, gap) > 64) VARNEL_TEST::PutBig16(bytes, gap, static_cast<uint16_t>(Big16(bytes, gap) % 64));
  }
  const size_t head = HEAD_SIZE + Big16(bytes, 26) + Big16(bytes, 32) + Big16(bytes, 34) + Big16(bytes, 36);
  PutHead(bytes, 0, "QXDD");
  if (bytes.size() >= head + HEAD_SIZE) PutHead(bytes, head, "QXFF");
}

// Lengths that fit the file let the texts be read.
void ShortenLengths(std::string& bytes, unsigned int seed) {
  const size_t head = HEAD_SIZE + Big16(bytes, 26) + Big16(bytes, 32) + Big16(bytes, 34) + Big16(bytes, 36);
  if (bytes.size() < head + HEAD_SIZE) return;
  for (size_t length = 44; length <= 50; length += 2) {
    if ((seed >>= 1) % 2 == 0) continue;
    VARNEL_TEST::PutBig16(bytes, head + length, static_cast<uint16_t>(Big16(bytes, head + length) % 32));
  }
  PutHead(bytes, head, "QXFF");
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (size < HEAD_SIZE || seed % 16 == 0) return size;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  Repair(bytes);
  if (seed / 16 % 4 == 0) ShortenLengths(bytes, seed / 64);
  std::copy(bytes.begin(), bytes.end(), data);
  return size;
}
