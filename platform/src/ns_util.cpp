#include "platform/ns_util.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// strstr() reads a report of 2 KB in half the time of memmem(), but is linear only for short pieces.
constexpr size_t STRSTR_LIMIT = 32;

// The part of a text that is still to be matched.
class Rest {
 public:
  explicit Rest(const char* text) : m_text(text) {}

  // Moves past the first occurrence of a piece. False without one.
  bool SkipPast(std::string_view piece) {
    const char* found = piece.size() <= STRSTR_LIMIT ? FindShort(piece) : FindLong(piece);
    if (found == nullptr) return false;
    m_text = found + piece.size();
    return true;
  }

  bool EndsWith(std::string_view tail) {
    return Size() >= tail.size() && std::string_view(End() - tail.size(), tail.size()) == tail;
  }

 private:
  const char* FindShort(std::string_view piece) const {
    if (piece.empty()) return m_text;
    char copy[STRSTR_LIMIT + 1];
    copy[piece.copy(copy, STRSTR_LIMIT)] = '\0';
    return std::strstr(m_text, copy);
  }

  const char* FindLong(std::string_view piece) {
    return static_cast<const char*>(memmem(m_text, Size(), piece.data(), piece.size()));
  }

  // Searched once and only if needed: many matches end before the end of the text, and a pattern may have many pieces.
  const char* End() {
    if (m_end == nullptr) m_end = m_text + std::strlen(m_text);
    return m_end;
  }

  size_t Size() { return static_cast<size_t>(End() - m_text); }

  const char* m_text;
  const char* m_end = nullptr;
};

// Skips each piece of `pieces`, a pattern that ends in "*".
bool SkipPieces(Rest& rest, std::string_view pieces) {
  while (!pieces.empty()) {
    const size_t star = pieces.find('*');
    if (!rest.SkipPast(pieces.substr(0, star))) return false;
    pieces.remove_prefix(star + 1);
  }
  return true;
}

// Each piece between two "*" matches at its first occurrence: a later one leaves less text for the rest.
bool Matches(const char* text, const char* pattern) {
  const char* star = std::strchr(pattern, '*');
  if (star == nullptr) return std::strcmp(text, pattern) == 0;
  const auto head = static_cast<size_t>(star - pattern);
  if (std::strncmp(text, pattern, head) != 0) return false;

  std::string_view tail = star + 1;
  const std::string_view pieces = tail.substr(0, tail.rfind('*') + 1);
  tail.remove_prefix(pieces.size());
  Rest rest(text + head);
  return SkipPieces(rest, pieces) && (tail.empty() || rest.EndsWith(tail));
}

// "link/" would mean the folder to which a symbolic link points.
std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

// The system refuses to remove "x/." and "x/..", but would allow to empty them.
bool IsRefused(const std::string& path) {
  if (path.find('\0') != std::string::npos) return true;
  const std::string name = WithoutTrailingSlashes(path);
  const size_t last = name.rfind('/') + 1;
  return name.compare(last, name.npos, ".") == 0 || name.compare(last, name.npos, "..") == 0;
}

// Removes a file, or a folder with AT_REMOVEDIR. Returns 0 or an errno value: ENOTEMPTY for a folder that is not empty.
int Unlink(int parent, const char* name, int flags = 0) {
  return unlinkat(parent, name, flags) == 0 ? 0 : errno;
}

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

// Null with errno set on failure. Does not follow a symbolic link in the last component.
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

// Empties a tree of any depth with one open folder at a time: neither the stack nor the descriptors can run out. Each
// step returns 0 or an errno value. Only folders that are not empty are opened: an empty one may be unreadable.
class TreeRemover {
 public:
  explicit TreeRemover(OpenFolder root) : m_folder(std::move(root)) {}

  int Empty() {
    int error = RemoveEntries();
    while (error == 0 && !(m_levels.size() == 1 && m_levels.back().folders.empty()))
      error = m_levels.back().folders.empty() ? ClimbAndRemove() : Descend();
    return error;
  }

 private:
  struct Level {
    struct ::stat identity;
    std::vector<std::string> folders;  // the last one is being emptied
  };

  int Here() const { return dirfd(m_folder.get()); }

  // Removes everything from the open folder except folders that are not empty. These become its level.
  int RemoveEntries() {
    Level level;
    if (fstat(Here(), &level.identity) != 0) return errno;
    const dirent* entry;
    while (errno = 0, (entry = readdir(m_folder.get())) != nullptr) {
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") continue;
      int error = Unlink(Here(), entry->d_name);
      if (error == EISDIR) error = Unlink(Here(), entry->d_name, AT_REMOVEDIR);
      if (error == ENOTEMPTY) {
        level.folders.emplace_back(name);
      } else if (error != 0) {
        return error;
      }
    }
    if (errno != 0) return errno;
    m_levels.push_back(std::move(level));
    return 0;
  }

  int Descend() {
    OpenFolder folder = Open(Here(), m_levels.back().folders.back().c_str());
    if (folder == nullptr) return errno;
    m_folder = std::move(folder);
    return RemoveEntries();
  }

  int ClimbAndRemove() {
    OpenFolder parent = Open(Here(), "..");
    struct ::stat identity;
    if (parent == nullptr || fstat(dirfd(parent.get()), &identity) != 0) return errno;
    m_levels.pop_back();
    // If another process has moved the folder, its parent is not part of the tree.
    if (!IsSameFolder(identity, m_levels.back().identity)) return ENOENT;
    m_folder = std::move(parent);
    const std::string name = std::move(m_levels.back().folders.back());
    m_levels.back().folders.pop_back();
    return Unlink(Here(), name.c_str(), AT_REMOVEDIR);
  }

  OpenFolder m_folder;
  std::vector<Level> m_levels;
};

}  // namespace

namespace NS_UTIL {

int RepalaceSensInfo::strmcmp(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && Matches(text, pattern) ? 1 : 0;
}

int RemoveFile(const std::string& path) {
  return IsRefused(path) ? EINVAL : Unlink(AT_FDCWD, path.c_str());
}

int RemoveDir(const std::string& path) {
  if (IsRefused(path)) return EINVAL;
  const std::string name = WithoutTrailingSlashes(path);
  const int error = Unlink(AT_FDCWD, name.c_str(), AT_REMOVEDIR);
  if (error != ENOTEMPTY) return error;
  OpenFolder folder = Open(AT_FDCWD, name.c_str());
  if (folder == nullptr) return errno;
  const int failure = TreeRemover(std::move(folder)).Empty();
  return failure != 0 ? failure : Unlink(AT_FDCWD, name.c_str(), AT_REMOVEDIR);
}

}  // namespace NS_UTIL
