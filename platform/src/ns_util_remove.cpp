#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ns_util.h"

namespace {

bool HoldsNul(const std::string& path) {
  return path.find('\0') != std::string::npos;
}

// "link/" would name the folder behind a symbolic link instead of the link.
std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

// Null with errno set on failure. Never follows a symbolic link in the last place.
OpenFolder Open(int parent, const char* name) {
  const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor == -1) return nullptr;
  OpenFolder folder(fdopendir(descriptor));
  if (folder == nullptr) close(descriptor);
  return folder;
}

bool IsSameFolder(const struct ::stat& a, const struct ::stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Empties a tree of any depth with one open folder at a time, so that neither the stack nor the limit on descriptors
// can run out. Each step gives 0 or an errno value.
class TreeRemover {
 public:
  explicit TreeRemover(OpenFolder root) : m_folder(std::move(root)) {}

  int Empty() {
    int error = RemoveFiles();
    while (error == 0 && !(m_levels.size() == 1 && m_levels.back().folders.empty()))
      error = m_levels.back().folders.empty() ? ClimbAndRemove() : Descend();
    return error;
  }

 private:
  struct Level {
    struct ::stat identity;
    std::vector<std::string> folders;  // the last one is the one that is being emptied
  };

  int Here() const { return dirfd(m_folder.get()); }

  // Removes all but the folders of the open folder, which stay behind as its level.
  int RemoveFiles() {
    Level level;
    if (fstat(Here(), &level.identity) != 0) return errno;
    const dirent* entry;
    while (errno = 0, (entry = readdir(m_folder.get())) != nullptr) {
      const std::string_view name = entry->d_name;
      if (name == "." || name == ".." || unlinkat(Here(), entry->d_name, 0) == 0) continue;
      if (errno != EISDIR) return errno;
      level.folders.emplace_back(name);
    }
    if (errno != 0) return errno;
    m_levels.push_back(std::move(level));
    return 0;
  }

  int Descend() {
    OpenFolder folder = Open(Here(), m_levels.back().folders.back().c_str());
    if (folder == nullptr) return errno;
    m_folder = std::move(folder);
    return RemoveFiles();
  }

  int ClimbAndRemove() {
    OpenFolder parent = Open(Here(), "..");
    struct ::stat identity;
    if (parent == nullptr || fstat(dirfd(parent.get()), &identity) != 0) return errno;
    m_levels.pop_back();
    // Where the folder was moved away meanwhile, what is above it is none of ours.
    if (!IsSameFolder(identity, m_levels.back().identity)) return ENOENT;
    m_folder = std::move(parent);
    const std::string name = std::move(m_levels.back().folders.back());
    m_levels.back().folders.pop_back();
    return unlinkat(Here(), name.c_str(), AT_REMOVEDIR) == 0 ? 0 : errno;
  }

  OpenFolder m_folder;
  std::vector<Level> m_levels;
};

}  // namespace

namespace NS_UTIL {

int RemoveFile(const std::string& path) {
  if (HoldsNul(path)) return EINVAL;
  return unlink(path.c_str()) == 0 ? 0 : errno;
}

int RemoveDir(const std::string& path) {
  if (HoldsNul(path)) return EINVAL;
  const std::string name = WithoutTrailingSlashes(path);
  OpenFolder folder = Open(AT_FDCWD, name.c_str());
  if (folder == nullptr) return errno;
  const int error = TreeRemover(std::move(folder)).Empty();
  if (error != 0) return error;
  return rmdir(name.c_str()) == 0 ? 0 : errno;
}

}  // namespace NS_UTIL
