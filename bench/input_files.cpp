#include "input_files.h"

#include "software_file.h"
#include "temp_folder.h"

namespace VARNEL_BENCH {

namespace {

const VARNEL_TEST::TempFolder& Folder() {
  static const VARNEL_TEST::TempFolder folder;
  return folder;
}

}  // namespace

const std::string& InputFolder() {
  return Folder().Path();
}

std::string InputFile(const std::string& name, const std::string& bytes) {
  return Folder().Write(name, bytes);
}

std::string PackageBytes(size_t entries) {
  VARNEL_TEST::SoftwareFile file;
  file.payload = "\n[File Description]\n";
  for (size_t i = 0; i < entries; ++i) {
    const std::string number = std::to_string(100000 + i);
    file.payload += "board" + number + ".bin:app:1.02:20260115:" + number + ":0:0:1\n";
  }
  file.payload += "[END]\n";
  return file.Bytes();
}

}  // namespace VARNEL_BENCH
