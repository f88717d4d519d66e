#include "host/qelcore/linux/components/RootedFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <memory>
#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::components {
namespace {

constexpr int kMostLinks = 40;
constexpr std::size_t kMostNames = 65'536;
constexpr std::size_t kFirstBlock = 4096;

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : mDescriptor(descriptor) {}
  ~FileDescriptor() {
    if (mDescriptor >= 0) close(mDescriptor);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  [[nodiscard]] int Get() const { return mDescriptor; }
  [[nodiscard]] int Release() { return std::exchange(mDescriptor, -1); }

 private:
  int mDescriptor;
};

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

/// Puts the names of a path on the stack, the first on top.
void PushNames(std::string_view path, std::vector<std::string>& stack) {
  while (!path.empty()) {
    const std::size_t slash = path.rfind('/');
    const std::size_t begin = slash == std::string_view::npos ? 0 : slash + 1;
    if (const std::string_view name = path.substr(begin); !name.empty() && name != ".")
      stack.emplace_back(name);
    path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
  }
}

std::string Join(const std::string& directory, std::string_view name) {
  std::string path = directory;
  if (!path.empty()) path += '/';
  return path += name;
}

const char* OrHere(const std::string& path) {
  return path.empty() ? "." : path.c_str();
}

}  // namespace

RootedFiles::RootedFiles(const std::filesystem::path& root)
    : mRoot(open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

RootedFiles::~RootedFiles() {
  if (mRoot >= 0) close(mRoot);
}

std::optional<std::string> RootedFiles::ReadLink(const std::string& path, bool& isPresent) const {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlinkat(mRoot, path.c_str(), target.data(), target.size());
  isPresent = length >= 0 || errno == EINVAL;
  if (length < 0 || static_cast<std::size_t>(length) == target.size()) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(length));
}

std::optional<std::string> RootedFiles::Resolve(std::string_view path) const {
  if (mRoot < 0 || path.find('\0') != std::string_view::npos) return std::nullopt;
  std::vector<std::string> stack;
  PushNames(path, stack);
  std::string resolved;
  int links = 0;
  while (!stack.empty()) {
    const std::string name = std::move(stack.back());
    stack.pop_back();
    if (name == "..") {
      const std::size_t slash = resolved.rfind('/');
      resolved.resize(slash == std::string::npos ? 0 : slash);
      continue;
    }
    std::string next = Join(resolved, name);
    bool isPresent = false;
    const std::optional<std::string> target = ReadLink(next, isPresent);
    if (!isPresent) return std::nullopt;
    if (!target) {
      resolved = std::move(next);
      continue;
    }
    if (++links > kMostLinks) return std::nullopt;
    if (target->starts_with('/')) resolved.clear();
    PushNames(*target, stack);
  }
  return resolved;
}

std::optional<std::string> RootedFiles::Read(std::string_view path, std::size_t limit) const {
  const std::optional<std::string> resolved = Resolve(path);
  if (!resolved) return std::nullopt;
  // Asked before the file is opened, since opening a device or a pipe may have effects.
  struct stat status {};
  if (fstatat(mRoot, OrHere(*resolved), &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  const FileDescriptor file(
      openat(mRoot, resolved->c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (file.Get() < 0) return std::nullopt;

  // The files of sysfs and procfs do not tell their length, so reading goes on until there is nothing more.
  // One byte more than others tell makes room to see their end.
  std::string content;
  std::size_t length = 0;
  std::size_t room = std::max(kFirstBlock, static_cast<std::size_t>(std::max<off_t>(status.st_size, 0)) + 1);
  while (length < limit) {
    if (length == content.size()) content.resize(std::min(limit, length + room));
    const ssize_t got = read(file.Get(), content.data() + length, content.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
    room = std::max(kFirstBlock, length);
  }
  content.resize(length);
  return content;
}

std::string RootedFiles::ReadLine(std::string_view path) const {
  const std::string content = Read(path).value_or(std::string());
  return std::string(Trim(std::string_view(content).substr(0, content.find('\n'))));
}

std::vector<std::string> RootedFiles::List(std::string_view directory) const {
  std::vector<std::string> names;
  const std::optional<std::string> resolved = Resolve(directory);
  if (!resolved) return names;
  FileDescriptor descriptor(
      openat(mRoot, OrHere(*resolved), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (descriptor.Get() < 0) return names;
  const std::unique_ptr<DIR, CloseDirectory> stream(fdopendir(descriptor.Get()));
  if (!stream) return names;
  static_cast<void>(descriptor.Release());
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    if (names.size() == kMostNames) break;
  }
  std::sort(names.begin(), names.end(), NaturalLess);
  return names;
}

std::string RootedFiles::LinkName(std::string_view path) const {
  const std::size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const std::optional<std::string> directory =
      slash == std::string_view::npos ? Resolve("") : Resolve(path.substr(0, slash));
  if (!directory || name.empty() || name == "." || name == "..") return {};
  bool isPresent = false;
  const std::optional<std::string> target = ReadLink(Join(*directory, name), isPresent);
  if (!target) return {};
  const std::size_t end = target->find_last_not_of('/');
  if (end == std::string::npos) return {};
  const std::string whole = target->substr(0, end + 1);
  return whole.substr(whole.rfind('/') + 1);
}

}  // namespace qelcore::host::components
