#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "description_reference.h"
#include "package_reports.h"
#include "pkgfile.h"
#include "recording_test.h"
#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_TEST {
namespace {

namespace fs = std::filesystem;
using VARNEL_COMMON::CPkgFile;

// Pieces that descriptions are thrown together from.
const std::vector<std::string> COMMON_PIECES{":",
                                             ":",
                                             ":",
                                             ":",
                                             ":",
                                             ":",
                                             ":",
                                             ":",
                                             "#",
                                             "[",
                                             "]",
                                             "[END]",
                                             "END",
                                             " ",
                                             " ",
                                             "\t",
                                             "\xA3",
                                             "\xA3\xA3",
                                             "\r",
                                             "\n",
                                             "\n",
                                             "\r\n",
                                             "a",
                                             "bc",
                                             "7",
                                             "42",
                                             "-1",
                                             "99999999999",
                                             "\na:b:c:d:5:f:g:h\n",
                                             "\n n.bin : k : : : 77 : : : \r\n",
                                             "\n#a:b:c:d:5:f:g:h\n",
                                             "\n\xA3\xA3:b:c:d:5:f:g:h\n",
                                             "[File Description]"};
const std::vector<std::string> RARE_PIECES{std::string("\0", 1),
                                           std::string(255, 'x'),
                                           std::string(256, 'y'),
                                           std::string(700, 'z'),
                                           "\nn:k:::1:::" + std::string(255, 'x') + "\n",
                                           "\nn:k:::1:::" + std::string(256, 'y') + "\n"};

class Descriptions {
 public:
  std::string Next() {
    const std::vector<std::string> starts{"", "intro\n", "[File Description]\n", "intro\n[File Description]\r\n"};
    std::string text = OneOf(starts);
    for (size_t count = Pick(60); count > 0; --count)
      text += OneOf(Pick(50) == 0 ? RARE_PIECES : COMMON_PIECES);
    return text;
  }

 private:
  size_t Pick(size_t choices) { return m_random() % choices; }
  const std::string& OneOf(const std::vector<std::string>& texts) { return texts[Pick(texts.size())]; }

  std::mt19937 m_random{20240229};
};

class DescriptionAgainstPlainParse : public RecordingTest {
 protected:
  Lines LinesOf(Ending ending) const {
    switch (ending) {
      case Ending::SectionMissing:
        return {SectionMissing(path)};
      case Ending::LineNotCorrect:
        return {LineNotCorrect(path)};
      case Ending::ListEmpty:
        return {ListEmpty(path)};
      case Ending::Complete:
        break;
    }
    return {};
  }

  TempFolder folder;
  const std::string path = folder.Path("package.txt");
};

TEST_F(DescriptionAgainstPlainParse, GeneratedDescriptions) {
  Descriptions descriptions;
  size_t endings[4] = {};
  size_t entries = 0;
  for (int i = 0; i < 5000; ++i) {
    const std::string text = descriptions.Next();
    const Description expected = Reference::ReadDescription(text);
    folder.Write("package.txt", text);
    host.Reset();
    CPkgFile package(path);
    ASSERT_EQ(package.ParsePkgSoftInfo(path), expected.ending == Ending::Complete ? 0U : INVALID_DESCRIPTION) << text;
    ASSERT_EQ(EntriesIn(package), expected.entries) << text;
    ASSERT_EQ(host.lines, LinesOf(expected.ending)) << text;
    ++endings[static_cast<size_t>(expected.ending)];
    entries += expected.entries.size();
  }
  // The comparison is worth something only where each ending comes up often enough.
  EXPECT_GT(*std::min_element(std::begin(endings), std::end(endings)), 100U);
  EXPECT_GT(entries, 2000U);
}

TEST_F(DescriptionAgainstPlainParse, EveryPrefixOfAPackage) {
  SoftwareFile file;
  file.gaps = {1, 2, 3, 4};
  file.payload =
      "\n[Package Info]\r\nname=x\r\n\r\n[File Description]\r\n#name:kind:c3:c4:size:c6:c7:c8\r\n"
      "mainboard.bin : app : x : y : 1048576 : a : b : c\r\n\r\npatch.bin:pat:x:y:2048:a:b\r\n"
      "\xA3\xA3:::::::\r\nlong.bin:" +
      std::string(255, 'k') +
      ":::4096:::\r\n:::::::\r\n"
      "too.long:" +
      std::string(256, 'k') + ":::1:::\r\nlate.bin:::::::\r\n[END]\r\n";
  const std::string bytes = file.Bytes();
  const size_t versionEnd = file.FileHeadOffset() + 64 + file.link.size() + file.version.size();
  const LogLine shortRead =
      Warning("readZEPFileHead(): ACE_OS::fread failed! errno: 0", "publicdata", "readZEPFileHead");
  folder.Write("package.txt", bytes);
  const size_t descriptors = OpenDescriptors();

  for (size_t size = bytes.size() + 1; size-- > 0;) {
    fs::resize_file(path, size);
    const Description expected = Reference::ReadDescription(bytes.substr(0, size));
    host.Reset();
    CPkgFile package(path);
    ASSERT_EQ(package.ParsePkgFile(), expected.ending == Ending::Complete ? 0U : INVALID_DESCRIPTION) << size;
    ASSERT_EQ(EntriesIn(package), expected.entries) << size;
    ASSERT_EQ(package.m_strVersion, size < versionEnd ? "" : "2.10") << size;
    Lines lines = LinesOf(expected.ending);
    if (size < versionEnd) lines.insert(lines.begin(), shortRead);
    ASSERT_EQ(host.lines, lines) << size;
    ASSERT_EQ(OpenDescriptors(), descriptors) << size;
  }
}

}  // namespace
}  // namespace VARNEL_TEST
