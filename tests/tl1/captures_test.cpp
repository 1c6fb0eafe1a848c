// Captured output of elements, tests/captures/*.tl1, and the messages expected from each, tests/captures/expected.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "streams.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;

const std::filesystem::path FOLDER = VARNEL_CAPTURES;

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The captures by name.
const std::map<std::string, std::string>& Captures() {
  static const auto captures = [] {
    std::map<std::string, std::string> all;
    for (const auto& file : std::filesystem::directory_iterator(FOLDER))
      if (file.path().extension() == ".tl1") all[file.path().stem()] = FileBytes(file.path());
    return all;
  }();
  return captures;
}

// Each capture has a line with its name, and its messages after it.
TEST(Tl1Captures, AreReadAsExpected) {
  ASSERT_GE(Captures().size(), 16U);
  std::string shown;
  for (const auto& [name, bytes] : Captures()) {
    shown += "== " + name + '\n';
    for (const std::string& message : ShownWithPlaces(CutStream(bytes).messages))
      shown += message + '\n';
  }
  const std::string expected = FileBytes(FOLDER / "expected");
  if (shown != expected) std::ofstream("captures-read", std::ios::binary) << shown;
  EXPECT_EQ(shown, expected) << "the actual messages are in the file captures-read";
}

TEST(Tl1Captures, AreTheSameCutAnywhere) {
  for (const auto& [name, bytes] : Captures()) {
    const Texts whole = ShownWithPlaces(CutStream(bytes).messages);
    for (size_t size = 1; size < bytes.size(); ++size)
      ASSERT_EQ(ShownWithPlaces(CutStream(bytes, size).messages), whole) << name << " by " << size;
  }
}

TEST(Tl1Captures, AlwaysAccountForAllBytes) {
  for (const auto& [name, bytes] : Captures()) {
    for (size_t length = 0; length <= bytes.size(); ++length) {
      const std::string_view stream = std::string_view(bytes).substr(0, length);
      const Cut cut = CutStream(stream);
      uint64_t sum = cut.skipped.bytes;
      for (const MessageCopy& copy : cut.messages) {
        const Message& message = copy.View();
        sum += message.length;
        const std::string_view sent =
            stream.substr(static_cast<size_t>(message.offset), static_cast<size_t>(message.length));
        const bool telnet = sent.find('\xFF') != std::string::npos;
        ASSERT_TRUE(telnet || message.bytes == sent) << name << " up to " << length;
      }
      ASSERT_EQ(sum, length) << name;
    }
  }
}

}  // namespace
}  // namespace VARNEL_TEST
