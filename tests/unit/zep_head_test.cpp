#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "head_reading.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::readZEPFileHead;
using VARNEL_COMMON::ZEP_FILE_HEAD;

class ZepHeadReading : public HeadReading {
 protected:
  // The outcome for the given link text, with everything else valid.
  Outcome ReadLink(const std::string& link) {
    SoftwareFile file;
    file.link = link;
    return Read(file);
  }

  Outcome ReadVersion(const std::string& version) {
    SoftwareFile file;
    file.version = version;
    return Read(file);
  }
};

TEST_F(ZepHeadReading, SetsAllOutputs) {
  EXPECT_EQ(Read(FullFile()), (Outcome{0, "main.bin", "5.31", 0xBEEF, 26 + 128 + 12 + 16 + 13 + 11}));
  EXPECT_EQ(host.lines, Lines{});
  EXPECT_EQ(host.filtered, std::vector<std::string>{});
}

TEST_F(ZepHeadReading, OpensThePathOnceAsUtf8) {
  Read(FullFile());
  EXPECT_EQ(host.encodings, std::vector<std::string>{"UTF-8"});
}

TEST_F(ZepHeadReading, ReturnsTheWholeHeaderInTheOrderOfTheMachine) {
  SoftwareFile file;
  std::string bytes = file.Bytes();
  const size_t start = file.FileHeadOffset();
  PutBig16(bytes, start + 8, 0x0809);
  PutBig16(bytes, start + 10, 0x0A0B);
  bytes.replace(start + 12, 12, "twelve bytes");
  PutBig32(bytes, start + 24, 0x18191A1B);
  PutBig32(bytes, start + 28, 0x1C1D1E1F);
  PutBig16(bytes, start + 34, 0x2223);
  PutBig32(bytes, start + 36, 0x24252627);
  PutBig32(bytes, start + 40, 0x28292A2B);
  bytes.replace(start + 52, 8, "8 bytes.");
  PutBig32(bytes, start + 60, 0x3C3D3E3F);
  RepairSum(bytes, start);
  std::string converted = bytes.substr(start, 64);
  ASSERT_EQ(ReadBytes(bytes).result, 0U);

  ZEP_FILE_HEAD expected;
  std::memcpy(&expected, converted.data(), sizeof expected);
  expected.ToHostOrder();
  EXPECT_EQ(std::memcmp(&head, &expected, sizeof head), 0);
  EXPECT_EQ(head.ulMagic, 0x51584646U);
  EXPECT_EQ(head.usFileType, 1U);
  EXPECT_EQ(head.usLinkLen, file.link.size());
  EXPECT_EQ(head.ulValue60, 0x3C3D3E3FU);
}

TEST_F(ZepHeadReading, EachGapLengthMovesTheFileHeader) {
  for (size_t i = 0; i < 4; ++i) {
    for (const unsigned int gap : {1U, 255U, 256U, 65535U}) {
      SoftwareFile file;
      file.gaps[i] = static_cast<uint16_t>(gap);
      const auto texts = static_cast<unsigned int>(file.link.size() + file.version.size());
      EXPECT_EQ(Read(file), (Outcome{0, "target", "2.10", OLD_NUMBER, gap + 128 + texts})) << i;
    }
  }
}

TEST_F(ZepHeadReading, GapLengthsAddUpBeyond16Bits) {
  SoftwareFile file;
  file.gaps = {65535, 65535, 65535, 65535};
  file.link = "-> t";
  file.version = "v";
  EXPECT_EQ(Read(file), (Outcome{0, "t", "v", OLD_NUMBER, 4 * 65535 + 128 + 4 + 1}));
}

TEST_F(ZepHeadReading, LongestAreas) {
  SoftwareFile file;
  file.skipped.assign(65535, 's');
  file.link = "-> " + std::string(1020, 'l');
  file.version.assign(65534, 'v');
  file.tail.assign(65535, 't');
  EXPECT_EQ(Read(file), (Outcome{0, std::string(1020, 'l'), std::string(65534, 'v'), OLD_NUMBER,
                                 128 + 65535 + 1023 + 65534 + 65535}));
}

TEST_F(ZepHeadReading, FourthAreaAndPayloadMayBeMissing) {
  SoftwareFile file;
  file.tailLength = 65535;
  const auto texts = static_cast<unsigned int>(file.link.size() + file.version.size());
  EXPECT_EQ(Read(file), (Outcome{0, "target", "2.10", OLD_NUMBER, 128 + texts + 65535}));
}

TEST_F(ZepHeadReading, OnlyType2HasAnExtensionWord) {
  for (const unsigned int type : {0U, 1U, 3U, 14U, 0x0200U, 0x0202U, 0xFFFFU}) {
    SoftwareFile file;
    file.fileType = static_cast<uint16_t>(type);
    const Outcome outcome = Read(file);
    EXPECT_EQ(outcome.result, 0U) << type;
    EXPECT_EQ(outcome.link, "target") << type;
    EXPECT_EQ(outcome.extension, OLD_NUMBER) << type;
  }
}

TEST_F(ZepHeadReading, ExtensionWordIsBeforeTheSkippedAreaButNotInThePayloadOffset) {
  SoftwareFile plain;
  plain.skipped = "abc";
  SoftwareFile extended = plain;
  extended.fileType = 2;
  for (const unsigned int word : {0U, 1U, 0x0100U, 0x8001U, 0xFFFFU}) {
    extended.extension = static_cast<uint16_t>(word);
    Outcome expected = Read(plain);
    expected.extension = word;
    EXPECT_EQ(Read(extended), expected);
  }
}

TEST_F(ZepHeadReading, ExtensionWordCutShortIsZero) {
  SoftwareFile file;
  file.fileType = 2;
  file.linkLength = 0;
  file.version.clear();
  for (const char* left : {"", "\x7F"}) {
    file.link = left;
    EXPECT_EQ(Read(file), (Outcome{INVALID_HEAD, OLD_LINK, OLD_VERSION, 0, 128}));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepHeadReading, LinkTargetFollowsTheFirstMarker) {
  const std::pair<std::string, std::string> accepted[] = {
      {"abc -> def", "def"},
      {"-> def", "def"},
      {"abc-> def", "def"},
      {"abc -> ", ""},
      {"-> ", ""},
      {"->  def ", " def "},
      {"->-> def", "def"},
      {"--> def", "def"},
      {"a->b -> c", "c"},
      {"a -> b -> c", "b -> c"},
      {std::string("a -> b\0c", 8), "b"},
      {std::string("a -> \0c", 7), ""},
      {"\xC3\xA9 -> \xE4\xB8\xAD\xFF", "\xE4\xB8\xAD\xFF"},
      {"a\n-> b\r\n", "b\r\n"},
  };
  for (const auto& [link, target] : accepted) {
    const Outcome outcome = ReadLink(link);
    EXPECT_EQ(outcome.result, 0U) << link;
    EXPECT_EQ(outcome.link, target) << link;
    EXPECT_EQ(outcome.version, "2.10") << link;
  }
}

TEST_F(ZepHeadReading, LinkWithoutMarkerIsRefusedSilently) {
  const std::string refused[] = {"",
                                 "abc->def",
                                 "abc ->",
                                 "abc -\t> def",
                                 "abc - > def",
                                 "abc ->\tdef",
                                 "=> def",
                                 std::string("abc\0-> def", 10),
                                 std::string("abc ->\0 def", 11),
                                 std::string("\0-> def", 7)};
  for (const std::string& link : refused) {
    const auto offset = static_cast<unsigned int>(128 + link.size() + 13);
    EXPECT_EQ(ReadLink(link), (Outcome{INVALID_HEAD, OLD_LINK, OLD_VERSION, OLD_NUMBER, offset})) << link;
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepHeadReading, LinkDoesNotExtendIntoTheVersion) {
  SoftwareFile file;
  file.link = "abc ->";
  file.version = " def";
  EXPECT_EQ(Read(file).result, INVALID_HEAD);
}

TEST_F(ZepHeadReading, LinkOf1023BytesIsRead) {
  const std::string front(1019, 'x');
  const Outcome outcome = ReadLink(front + "-> t");
  EXPECT_EQ(outcome.result, 0U);
  EXPECT_EQ(outcome.link, "t");
}

TEST_F(ZepHeadReading, LongerLinksAreRefusedSilently) {
  for (const size_t length : {1024U, 1025U, 65535U}) {
    const auto offset = static_cast<unsigned int>(128 + length + 13);
    EXPECT_EQ(ReadLink("-> " + std::string(length - 3, 'l')),
              (Outcome{INVALID_HEAD, OLD_LINK, OLD_VERSION, OLD_NUMBER, offset}));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepHeadReading, LongerLinkIsRefusedBeforeItIsRead) {
  SoftwareFile file;
  file.linkLength = 1024;
  EXPECT_EQ(Read(file).result, INVALID_HEAD);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepHeadReading, VersionEndsAtItsFirstCapitalT) {
  const std::pair<std::string, std::string> texts[] = {
      {"2.10T20200101", "2.10"},
      {"2.10", "2.10"},
      {"2.10T", "2.10"},
      {"T20200101", ""},
      {"T", ""},
      {"1T2T3", "1"},
      {"2.10t2020", "2.10t2020"},
      {"2.10tT2020", "2.10t"},
      {" 2.10 T", " 2.10 "},
      {std::string("2.10\0x", 6), "2.10"},
      {std::string("2.10\0T", 6), "2.10"},
      {std::string("2.1T\0x", 6), "2.1"},
      {std::string("\0T2", 3), ""},
      {std::string("\0", 1), ""},
      {"\xC3\xA9\xFFTx", "\xC3\xA9\xFF"},
  };
  for (const auto& [version, read] : texts) {
    const Outcome outcome = ReadVersion(version);
    EXPECT_EQ(outcome.result, 0U) << version;
    EXPECT_EQ(outcome.version, read) << version;
  }
}

TEST_F(ZepHeadReading, VersionDoesNotExtendIntoTheFourthArea) {
  SoftwareFile file;
  file.version = "2";
  file.tail = ".10";
  EXPECT_EQ(Read(file).version, "2");
}

TEST_F(ZepHeadReading, VersionLengths0And65535KeepTheOldVersion) {
  SoftwareFile file;
  file.version.clear();
  EXPECT_EQ(Read(file), (Outcome{0, "target", OLD_VERSION, OLD_NUMBER, 128 + 16}));
  file.versionLength = 65535;
  EXPECT_EQ(Read(file), (Outcome{0, "target", OLD_VERSION, OLD_NUMBER, 128 + 16 + 65535}));
  file.version.assign(65535, 'v');
  EXPECT_EQ(Read(file), (Outcome{0, "target", OLD_VERSION, OLD_NUMBER, 128 + 16 + 65535}));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ZepHeadReading, SkipLengthBeyondTheFileIsAShortRead) {
  SoftwareFile file;
  file.skipLength = 65535;
  EXPECT_EQ(Read(file), (Outcome{INVALID_HEAD, OLD_LINK, OLD_VERSION, OLD_NUMBER, 128 + 65535 + 16 + 13}));
  EXPECT_EQ(host.lines, Lines{ShortRead()});
}

TEST_F(ZepHeadReading, LinkLengthBeyondTheFileIsAShortRead) {
  SoftwareFile file;
  file.linkLength = 1023;
  EXPECT_EQ(Read(file), (Outcome{INVALID_HEAD, OLD_LINK, OLD_VERSION, OLD_NUMBER, 128 + 1023 + 13}));
  EXPECT_EQ(host.lines, Lines{ShortRead()});
}

TEST_F(ZepHeadReading, VersionLengthBeyondTheFileIsAShortRead) {
  for (const unsigned int length : {14U, 65534U}) {
    host.Reset();
    SoftwareFile file;
    file.versionLength = static_cast<uint16_t>(length);
    EXPECT_EQ(Read(file), (Outcome{INVALID_HEAD, "target", OLD_VERSION, OLD_NUMBER, 128 + 16 + length}));
    EXPECT_EQ(host.lines, Lines{ShortRead()});
  }
}

TEST_F(ZepHeadReading, GapBeyondTheFileIsAShortRead) {
  SoftwareFile file;
  std::string bytes = file.Bytes();
  PutBig16(bytes, 26, 65535);
  RepairSum(bytes, 0);
  EXPECT_EQ(ReadBytes(bytes), Outcome{INVALID_HEAD});
  EXPECT_EQ(host.lines, Lines{ShortRead()});
}

TEST_F(ZepHeadReading, OutputsMayBeThePathItself) {
  unsigned int number = 0;
  std::string path = folder.Write("a.bin", FullFile().Bytes());
  std::string version;
  EXPECT_EQ(readZEPFileHead(path, head, path, version, number, number), 0U);
  EXPECT_EQ(path, "main.bin");

  path = folder.Path("a.bin");
  std::string link;
  EXPECT_EQ(readZEPFileHead(path, head, link, path, number, number), 0U);
  EXPECT_EQ(path, "5.31");
}

TEST_F(ZepHeadReading, OneVariableForTwoOutputsKeepsTheLaterValue) {
  const std::string path = folder.Write("a.bin", FullFile().Bytes());
  unsigned int number = 0;
  std::string text;
  EXPECT_EQ(readZEPFileHead(path, head, text, text, number, number), 0U);
  EXPECT_EQ(text, "5.31");
  EXPECT_EQ(number, 206U);
}

TEST_F(ZepHeadReading, ClosesTheFile) {
  const std::string path = folder.Write("a.bin", FullFile().Bytes());
  const size_t before = OpenDescriptors();
  ReadPath(path);
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace VARNEL_TEST
