#include "package_file.h"

#include <gtest/gtest.h>
#include <pkgfile.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_TEST {

namespace {

using VARNEL_COMMON::CPkgFile;

// The results of the library for a file, including failures.
struct FromLibrary {
  explicit FromLibrary(const std::string& path) : description(path) {
    ZEP_FILE_HEAD head;
    headsValid = VARNEL_COMMON::readZEPFileHead(path, head, linkTarget, version, extensionWord, payloadOffset) == 0;
    typeAccepted = VARNEL_COMMON::CheckZEPFileHead(path, fileType, linkTarget, version) == 0;
    coldPatch = VARNEL_COMMON::isColdPatch(path);
    descriptionValid = description.ParsePkgSoftInfo(path) == 0;
  }

  using ZEP_FILE_HEAD = VARNEL_COMMON::ZEP_FILE_HEAD;
  std::string linkTarget, version = "absent";
  unsigned int extensionWord = 0xABCDEF, payloadOffset = 0;
  int fileType = 0;
  bool headsValid, typeAccepted, coldPatch, descriptionValid;
  CPkgFile description;
};

void ExpectSameStart(const FromLibrary& library, const FileStart& start) {
  ASSERT_EQ(library.headsValid, start.error.empty()) << start.error;
  EXPECT_EQ(library.headsValid, start.linkTarget.has_value());
  EXPECT_EQ(library.typeAccepted, start.typeAccepted.value_or(false));
  if (!library.headsValid) return;
  EXPECT_EQ(library.linkTarget, start.linkTarget);
  EXPECT_EQ(library.version, start.version.value_or("absent"));
  EXPECT_EQ(library.extensionWord, start.extensionWord.value_or(0xABCDEF));
  EXPECT_EQ(library.payloadOffset, start.payloadOffset);
  EXPECT_EQ(library.fileType, int{*start.fileType});
}

void ExpectSameLines(const FromLibrary& library, const FileLines& lines) {
  EXPECT_EQ(library.coldPatch, lines.coldPatch);
  EXPECT_EQ(library.descriptionValid, lines.entries && lines.remark.empty()) << lines.remark;
  const std::list<VARNEL_COMMON::SOFT_INFO*> none;
  const auto& expected = library.description.m_lstSoftInfo;
  const std::vector<Entry> entries = lines.entries.value_or(std::vector<Entry>());
  ASSERT_EQ(expected.size(), entries.size());
  auto entry = entries.begin();
  for (const auto* info : expected) {
    EXPECT_EQ(info->strColumn1, entry->name);
    EXPECT_EQ(info->strColumn2, entry->kind);
    EXPECT_EQ(info->uiColumn5, entry->size);
    ++entry;
  }
}

void ExpectSame(const std::string& path) {
  const FromLibrary library(path);
  InputFile input(path);
  FileScanner scanner(input);
  ExpectSameStart(library, ReadFileStart(scanner));
  ExpectSameLines(library, ReadFileLines(scanner));
  InputFile again(path);
  FileScanner rescanner(again);
  EXPECT_EQ(library.coldPatch, HasColdPatchMarker(rescanner));
}

constexpr char DESCRIPTION[] =
    "\n[File Description]\na.bin : app : x : y : 10 : p : q : r\r\n#c:o:m:m:1:e:n:t\n[END]\n";

// A valid file with a gap, an extension word and all areas.
SoftwareFile FileWithAllAreas() {
  SoftwareFile file;
  file.gaps = {3, 0, 1, 2};
  file.fileType = 2;
  file.extension = 0x8081;
  file.skipped = "skipped";
  file.tail = "tail";
  file.payload = DESCRIPTION;
  return file;
}

std::string WithPayload(const std::string& payload) {
  SoftwareFile file;
  file.payload = payload;
  return file.Bytes();
}

class PackageFile : public testing::Test {
 protected:
  void ExpectSameOf(const std::string& bytes) const {
    ExpectSame(m_folder.Write("file", bytes));
    if (HasFailure())
      ADD_FAILURE() << "of " << bytes.size() << " bytes: " << testing::PrintToString(bytes.substr(0, 2000));
  }

  std::vector<std::string> Lines(const std::string& bytes) const {
    InputFile input(m_folder.Write("lines", bytes));
    FileScanner scanner(input);
    std::vector<std::string> lines;
    for (std::string_view line; scanner.NextLine(line);)
      lines.emplace_back(line);
    EXPECT_EQ(lines.size(), scanner.LineNumber());
    return lines;
  }

  std::vector<std::string> LibraryLines() const {
    VARNEL_COMMON::Vnifstream file(m_folder.Path("lines"));
    std::vector<std::string> lines;
    for (char line[1024]; file.GetLine(line, sizeof line);)
      lines.emplace_back(line);
    return lines;
  }

  TempFolder m_folder;
};

TEST_F(PackageFile, ReadsEveryLengthOfATruncatedFile) {
  const std::string bytes = FileWithAllAreas().Bytes();
  for (size_t length = 0; length <= bytes.size(); ++length)
    ExpectSameOf(bytes.substr(0, length));
}

TEST_F(PackageFile, ReadsEveryFlippedByteOfTheHeaders) {
  const std::string bytes = FileWithAllAreas().Bytes();
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::string damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x15);
    ExpectSameOf(damaged);
  }
}

TEST_F(PackageFile, AcceptsAndRefusesFileTypes) {
  for (const unsigned int type : {0U, 2U, 13U, 14U, 15U, 16U, 512U, 513U, 514U, 65535U}) {
    SoftwareFile file;
    file.fileType = static_cast<uint16_t>(type);
    ExpectSameOf(file.Bytes() + "..");
  }
}

TEST_F(PackageFile, ReadsTextsOfAllKinds) {
  using namespace std::string_literals;
  SoftwareFile file;
  for (const std::string& link : {""s, "->"s, "-> "s, "a\0-> b"s, "a -> b\0c"s, "a -> b -> c"s,
                                  "-> "s + std::string(1020, 'x'), "-> "s + std::string(1021, 'x')}) {
    file.link = link;
    ExpectSameOf(file.Bytes());
  }
  file.link = "a -> b";
  for (const std::string& version : {""s, "T"s, "1\0T2"s, "1T\0"s, std::string(65534, 'v'), std::string(65535, 'v')}) {
    file.version = version;
    ExpectSameOf(file.Bytes());
  }
}

TEST_F(PackageFile, ReadsTheLargestStart) {
  SoftwareFile file = FileWithAllAreas();
  file.gaps = {65535, 65535, 65535, 65535};
  file.skipped = std::string(65535, 's');
  file.link = "-> " + std::string(1020, 'l');
  file.version = std::string(65534, 'v');
  const std::string bytes = file.Bytes();
  for (const size_t missing : {0U, 1U, 200U, 65536U, 65537U})
    ExpectSameOf(bytes.substr(0, bytes.size() - missing));
}

TEST_F(PackageFile, ReadsDescriptionsOfAllKinds) {
  for (const std::string& description : std::initializer_list<std::string>{
           "[File Description]", "[File Description]\n", "[File Description]\n[Other]\na:b:c:d:5:f:g:h\n",
           "[File Description]\na:b:c:d:5:f:g:h", "x[File Description]y\na:b:c:d:-1:f:g:h\r\n [x\nb:::::::\n:::::::",
           "[File Description]\na:b:c:d:5:f:g:h\nx[END]x\nc:b:c:d:5:f:g:h\n",
           "[File Description]\na:b:c:d:5:f:g\na:b:c:d:5:f:g:h:i\n\n\n" + std::string(1, '\0') + "a:b:c:d:5:f:g:h\n",
           "[File Description]\n\xA3\xA3:b:c:d:5:f:g:h\n #:b:c:d:5:f:g:h\nx#:b:c:d:5:f:g:h\n",
           "[File Description]\na:b:c:d:5:f:g:h\na:b:c:d:5:f:g:" + std::string(256, 'h') + "\na:b:c:d:5:f:g:h\n",
           "[File Description]\na:b:c:d:5:f:g:  " + std::string(255, 'h') + "  \n",
           "[File Description]\n[File Description]\na:b:c:d:5:f:g:h\n", "[file description]\na:b:c:d:5:f:g:h\n",
           "[COLDPATCH][File Description]\na:b:c:d:5:f:g:h\n",
           "[File Description]\na:b:c:d:5:f:g:h\n[END]\n[File Description]\nb:b:c:d:5:f:g:h\nx [COLDPATCH]"})
    ExpectSameOf(WithPayload('\n' + description));
}

TEST_F(PackageFile, CutsLinesAsTheLibraryDoes) {
  using namespace std::string_literals;
  std::vector<std::string> texts{""s, "\n"s, "a"s, "a\n"s, "a\r\nb"s, "\n\na\n\n"s, "a\0b\nc\0"s, "\0\n\0"s};
  for (const size_t length : {1022U, 1023U, 1024U, 1025U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string line(length, 'x');
    for (const std::string& end : {""s, "\n"s, "\r\n"s, "\nb"s})
      texts.push_back(line + end);
    texts.push_back("a\n" + line + "\n\n" + line);
  }
  for (const std::string& text : texts) {
    const std::vector<std::string> lines = Lines(text);
    EXPECT_EQ(LibraryLines(), lines) << text.size() << testing::PrintToString(text.substr(0, 9));
  }
}

TEST_F(PackageFile, FindsMarkersAtEveryPositionOfALineAndABlock) {
  const std::string heads = SoftwareFile().Bytes() + '\n';
  for (const std::string& marker :
       std::initializer_list<std::string>{"[COLDPATCH]", "[File Description]\na:b:c:d:5:f:g:h"}) {
    for (size_t column = 1000; column < 1030; ++column)
      ExpectSameOf(heads + std::string(column, 'x') + marker + '\n');
    for (size_t place = 65536 - 50; place < 65536 + 5; ++place)
      ExpectSameOf(heads + std::string(place - heads.size() - 1, '.') + '\n' + marker + '\n');
  }
}

TEST_F(PackageFile, ReadsGeneratedFiles) {
  std::mt19937 random(20260115);
  const std::vector<std::string> pieces{":",
                                        ":::",
                                        ":b:c:d:5:f:g:h",
                                        "#",
                                        "[",
                                        "[END]",
                                        " ",
                                        "\xA3\xA3",
                                        "\r",
                                        "\n",
                                        "\n",
                                        "\n",
                                        "a",
                                        "42",
                                        std::string(1, '\0'),
                                        std::string(255, 'x'),
                                        std::string(1020, 'y'),
                                        std::string(30000, 'z'),
                                        "[COLDPATCH]",
                                        "[File Description]\n"};
  for (int i = 0; i < 1000; ++i) {
    std::string payload;
    for (size_t n = random() % 40; n > 0; --n)
      payload += pieces[random() % pieces.size()];
    ExpectSameOf(WithPayload(payload));
  }
}

// A file of 4 GiB and 150 bytes has its first 150 bytes as lines: the mark after them is not found.
TEST_F(PackageFile, ReadsTheSizeOfHugeSparseFilesModulo32Bits) {
  const std::string path = m_folder.Write("huge", WithPayload("\n[COLDPATCH]\n"));
  const uintmax_t size = std::filesystem::file_size(path);
  for (const uintmax_t more : {uintmax_t{0}, size - 3, size - 1, size + 100}) {
    std::filesystem::resize_file(path, (uintmax_t{1} << 32) + more);
    ExpectSame(path);
  }
}

TEST_F(PackageFile, ReadsPipesToTheirEnd) {
  const std::string bytes = WithPayload(DESCRIPTION + std::string(300000, 'x') + "\n[COLDPATCH]");
  const std::string path = m_folder.Path("pipe");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  std::thread writer([&] { std::ofstream(path) << bytes; });
  InputFile input(path);
  FileScanner scanner(input);
  const FileStart start = ReadFileStart(scanner);
  const FileLines lines = ReadFileLines(scanner);
  writer.join();
  EXPECT_EQ("", start.error);
  EXPECT_EQ("target", start.linkTarget);
  EXPECT_EQ(1U, lines.entries->size());
  EXPECT_EQ(true, lines.coldPatch);
}

TEST_F(PackageFile, NamesTheLineOfALongColumn) {
  const std::string path =
      m_folder.Write("file", SoftwareFile().Bytes() + "\n[File Description]\n\na:b:c:d:5:f:g:" + std::string(256, 'h'));
  InputFile input(path);
  FileScanner scanner(input);
  EXPECT_EQ("line 4: a column is longer than 255 bytes, the entries from there on are not listed",
            ReadFileLines(scanner).remark);
}

TEST_F(PackageFile, ReportsUnreadableFiles) {
  const auto error = [](const std::string& path) {
    InputFile input(path);
    FileScanner scanner(input);
    return ReadFileStart(scanner).error;
  };
  EXPECT_EQ("No such file or directory", error(m_folder.Path("absent")));
  EXPECT_EQ("is a folder", error(m_folder.Path()));
  EXPECT_EQ("not a regular file", error("/dev/null"));
  EXPECT_EQ("Input/output error", error("/proc/self/mem"));
}

TEST_F(PackageFile, UsesLittleMemoryForLargeFiles) {
  const std::string path = m_folder.Write("large", SoftwareFile().Bytes());
  std::filesystem::resize_file(path, 64 << 20);
  rusage before, after;
  getrusage(RUSAGE_SELF, &before);
  InputFile input(path);
  FileScanner scanner(input);
  EXPECT_EQ("", ReadFileStart(scanner).error);
  EXPECT_EQ(false, ReadFileLines(scanner).coldPatch);
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 4096);
}

}  // namespace

}  // namespace VARNEL_TEST
