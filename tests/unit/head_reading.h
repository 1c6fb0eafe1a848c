#ifndef VARNEL_TESTS_HEAD_READING_H
#define VARNEL_TESTS_HEAD_READING_H

#include <cerrno>
#include <cstring>
#include <ostream>
#include <string>
#include <tuple>

#include "publicdata.h"
#include "recording_test.h"
#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_TEST {

constexpr unsigned int CANNOT_OPEN = 0x3BA00013;
constexpr unsigned int INVALID_HEAD = 0x3BA00B02;

// The outputs before a call.
constexpr char OLD_LINK[] = "old link";
constexpr char OLD_VERSION[] = "old version";
constexpr unsigned int OLD_NUMBER = 0xAAAAAAAA;

/// All outputs of readZEPFileHead() except the header.
struct Outcome {
  unsigned int result = 0;
  std::string link = OLD_LINK;
  std::string version = OLD_VERSION;
  unsigned int extension = OLD_NUMBER;
  unsigned int payloadOffset = OLD_NUMBER;
};

inline bool operator==(const Outcome& a, const Outcome& b) {
  const auto fields = [](const Outcome& o) {
    return std::tie(o.result, o.link, o.version, o.extension, o.payloadOffset);
  };
  return fields(a) == fields(b);
}

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << std::hex << outcome.result << std::dec << " link \"" << outcome.link << "\" version \""
             << outcome.version << "\" extension " << outcome.extension << " payload " << outcome.payloadOffset;
}

inline LogLine ShortRead(int error = 0) {
  return Warning("readZEPFileHead(): ACE_OS::fread failed! errno: " + std::to_string(error), "publicdata",
                 "readZEPFileHead");
}

inline LogLine OpenFailed(const std::string& path, int error) {
  return Warning("readZEPFileHead(): KELP_OS::fopen failed! filename:" + path + ". errno:" + std::to_string(error),
                 "publicdata", "readZEPFileHead");
}

/// Reads the headers of files that it writes to a temporary folder.
class HeadReading : public RecordingTest {
 protected:
  HeadReading() { std::memset(&head, 0xEE, sizeof head); }

  Outcome ReadPath(const std::string& path) {
    Outcome outcome;
    errno = 0;  // appears in the log line of a file that ends too early
    outcome.result = VARNEL_COMMON::readZEPFileHead(path, head, outcome.link, outcome.version, outcome.extension,
                                                    outcome.payloadOffset);
    return outcome;
  }
  Outcome ReadBytes(const std::string& bytes) { return ReadPath(folder.Write("file.bin", bytes)); }
  Outcome Read(const SoftwareFile& file) { return ReadBytes(file.Bytes()); }

  /// A valid file with every area.
  static SoftwareFile FullFile() {
    SoftwareFile file;
    file.gaps = {3, 5, 7, 11};
    file.fileType = 2;
    file.extension = 0xBEEF;
    file.skipped = "skipped area";
    file.link = "boot -> main.bin";
    file.version = "5.31T20240229";
    file.tail = "fourth area";
    file.payload = "payload";
    return file;
  }

  TempFolder folder;
  VARNEL_COMMON::ZEP_FILE_HEAD head;  ///< filled with the byte EE before
};

}  // namespace VARNEL_TEST

#endif
