#include "temp_folder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace VARNEL_TEST {

namespace fs = std::filesystem;

TempFolder::TempFolder() : m_path((fs::canonical(fs::temp_directory_path()) / "varnel-test-XXXXXX").string()) {
  if (mkdtemp(m_path.data()) == nullptr) throw std::runtime_error("cannot make a folder for the test");
  fs::permissions(m_path, fs::perms::all);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::string TempFolder::Write(const std::string& name, const std::string& bytes) const {
  const std::string path = Path(name);
  fs::remove(path);  // emptying a file instead makes some file systems wait for the disk
  std::ofstream file(path, std::ios::binary);
  if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
  return path;
}

std::string ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

size_t OpenDescriptors() {
  return static_cast<size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

}  // namespace VARNEL_TEST
