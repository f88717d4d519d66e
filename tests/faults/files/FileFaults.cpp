// Stands between a program and the file operations of its system: loaded before the C library, it counts the
// operations on files below one directory, writes them down, and makes one of them fail or the last.
//
//   FILE_FAULTS_UNDER   the directory
//   FILE_FAULTS_LOG     a file that gets one line for each operation: number, name, path and, where there is
//                       one, a second path or the written bytes in hexadecimal digits, separated by tabs
//   FILE_FAULTS_FAIL    "7 28": the 7th operation fails with the error number 28; "7+ 28": all from the 7th
//                       on do; "w 30": all that change something do
//   FILE_FAULTS_KILL    "7": the process is killed in the middle of the 7th operation, a write having done
//                       its half
//   FILE_FAULTS_SHORT   "3": no read and no write does more than 3 bytes
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

struct Plan {
  std::string mUnder = Variable("FILE_FAULTS_UNDER");
  std::string mLog = Variable("FILE_FAULTS_LOG");
  long mFailAt = 0;
  bool mFailsFromThen = false;
  bool mFailsChanges = false;
  int mError = 0;
  long mKillAt = 0;
  std::size_t mMostBytes = SSIZE_MAX;

  Plan() {
    const std::string fail = Variable("FILE_FAULTS_FAIL");
    if (!fail.empty()) {
      mFailsChanges = fail[0] == 'w';
      mFailAt = std::strtol(fail.c_str(), nullptr, 10);
      mFailsFromThen = fail.find('+') != std::string::npos;
      mError = static_cast<int>(std::strtol(fail.c_str() + fail.find(' '), nullptr, 10));
    }
    mKillAt = std::strtol(Variable("FILE_FAULTS_KILL").c_str(), nullptr, 10);
    const std::string most = Variable("FILE_FAULTS_SHORT");
    if (!most.empty()) mMostBytes = std::strtoul(most.c_str(), nullptr, 10);
  }

  static const Plan& Instance() {
    static const Plan plan;
    return plan;
  }
};

/// The files below the directory that are open, by their descriptors.
struct OpenFiles {
  std::mutex mMutex;
  std::array<std::string, 1024> mPaths;

  static OpenFiles& Instance() {
    // Never destroyed: files are closed until the very end.
    static auto* const files = new OpenFiles;
    return *files;
  }

  std::string PathOf(int descriptor) {
    if (descriptor < 0 || descriptor >= static_cast<int>(mPaths.size())) return {};
    const std::lock_guard lock(mMutex);
    return mPaths.at(static_cast<std::size_t>(descriptor));
  }

  void Set(int descriptor, const std::string& path) {
    if (descriptor < 0 || descriptor >= static_cast<int>(mPaths.size())) return;
    const std::lock_guard lock(mMutex);
    mPaths.at(static_cast<std::size_t>(descriptor)) = path;
  }
};

bool IsWatched(std::string_view path) {
  const std::string& under = Plan::Instance().mUnder;
  return !under.empty() && path.starts_with(under);
}

std::string Hexadecimal(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x",
                  static_cast<unsigned>(static_cast<unsigned char>(byte)));
    text += digits.data();
  }
  return text;
}

enum class Kind { kLook, kChange };

struct Operation {
  const char* mName;
  Kind mKind;
  std::string mPath;
  std::string mMore{};
};

std::atomic<long> gCount{0};

void WriteDown(long number, const Operation& operation) {
  const std::string& log = Plan::Instance().mLog;
  if (log.empty()) return;
  const std::string line = std::to_string(number) + "\t" + operation.mName + "\t" + operation.mPath + "\t" +
                           operation.mMore + "\n";
  // Past this library's own functions.
  const int file = static_cast<int>(
      syscall(SYS_openat, AT_FDCWD, log.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  syscall(SYS_write, file, line.data(), line.size());
  syscall(SYS_close, file);
}

enum class Verdict { kGoOn, kFail, kKill };

Verdict Announce(const Operation& operation) {
  const Plan& plan = Plan::Instance();
  const long number = ++gCount;
  WriteDown(number, operation);
  if (plan.mKillAt == number) return Verdict::kKill;
  const bool fails = number == plan.mFailAt || (plan.mFailsFromThen && number > plan.mFailAt) ||
                     (plan.mFailsChanges && operation.mKind == Kind::kChange);
  if (!fails) return Verdict::kGoOn;
  errno = plan.mError;
  return Verdict::kFail;
}

/// Does an operation on something below the directory, unless it shall fail.
template <typename Do, typename Result>
Result Guard(const Operation& operation, Result failure, Do&& proceed) {
  if (!IsWatched(operation.mPath)) return proceed();
  const Verdict verdict = Announce(operation);
  if (verdict == Verdict::kKill) raise(SIGKILL);
  return verdict == Verdict::kFail ? failure : proceed();
}

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The path that a function gets which takes names below an open directory.
std::string PathBelow(int directory, const char* path) {
  if (directory == AT_FDCWD || path[0] == '/') return path;
  const std::string parent = OpenFiles::Instance().PathOf(directory);
  return parent.empty() ? std::string() : parent + "/" + path;
}

constexpr int kWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;

int OpenFile(const char* function, const char* path, int flags, mode_t mode) {
  const bool isChange = (flags & kWriting) != 0;
  const int descriptor =
      Guard({isChange ? "create" : "open", isChange ? Kind::kChange : Kind::kLook, path}, -1,
            [&] { return Next<int(const char*, int, ...)>(function)(path, flags, mode); });
  OpenFiles::Instance().Set(descriptor, IsWatched(path) ? path : "");
  return descriptor;
}

FILE* OpenStream(const char* function, const char* path, const char* mode) {
  const bool isChange = std::string_view(mode).find_first_of("wa+") != std::string_view::npos;
  FILE* const stream = Guard({isChange ? "create" : "open", isChange ? Kind::kChange : Kind::kLook, path},
                             static_cast<FILE*>(nullptr),
                             [&] { return Next<FILE*(const char*, const char*)>(function)(path, mode); });
  if (stream != nullptr) OpenFiles::Instance().Set(fileno(stream), IsWatched(path) ? path : "");
  return stream;
}

template <typename Do>
int CloseFile(int descriptor, Do&& proceed) {
  const std::string path = OpenFiles::Instance().PathOf(descriptor);
  OpenFiles::Instance().Set(descriptor, "");
  if (!IsWatched(path)) return proceed();
  const Verdict verdict = Announce({"close", Kind::kLook, path});
  if (verdict == Verdict::kKill) raise(SIGKILL);
  const int error = errno;
  // The descriptor is gone in any case, as the system has it.
  const int result = proceed();
  if (verdict != Verdict::kFail) return result;
  errno = error;
  return -1;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const auto mode = static_cast<mode_t>(va_arg(arguments, unsigned));
  va_end(arguments);
  return OpenFile("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const auto mode = static_cast<mode_t>(va_arg(arguments, unsigned));
  va_end(arguments);
  return OpenFile("open64", path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  return OpenStream("fopen", path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  return OpenStream("fopen64", path, mode);
}

int openat(int directory, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const auto mode = static_cast<mode_t>(va_arg(arguments, unsigned));
  va_end(arguments);
  const std::string whole = PathBelow(directory, path);
  const bool isChange = (flags & kWriting) != 0;
  const int descriptor =
      Guard({isChange ? "create" : "open", isChange ? Kind::kChange : Kind::kLook, whole}, -1,
            [&] { return Next<int(int, const char*, int, ...)>("openat")(directory, path, flags, mode); });
  OpenFiles::Instance().Set(descriptor, IsWatched(whole) ? whole : "");
  return descriptor;
}

ssize_t read(int descriptor, void* buffer, size_t size) {
  const std::string path = OpenFiles::Instance().PathOf(descriptor);
  if (IsWatched(path)) size = std::min(size, Plan::Instance().mMostBytes);
  return Guard({"read", Kind::kLook, path}, ssize_t{-1},
               [&] { return Next<ssize_t(int, void*, size_t)>("read")(descriptor, buffer, size); });
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
  auto* const proceed = Next<ssize_t(int, const void*, size_t)>("write");
  const std::string path = OpenFiles::Instance().PathOf(descriptor);
  if (!IsWatched(path)) return proceed(descriptor, bytes, size);
  size = std::min(size, Plan::Instance().mMostBytes);
  const Verdict verdict =
      Announce({"write", Kind::kChange, path, Hexadecimal({static_cast<const char*>(bytes), size})});
  if (verdict == Verdict::kFail) return -1;
  if (verdict == Verdict::kKill) {
    proceed(descriptor, bytes, size / 2);
    raise(SIGKILL);
  }
  return proceed(descriptor, bytes, size);
}

ssize_t writev(int descriptor, const iovec* parts, int count) {
  if (!IsWatched(OpenFiles::Instance().PathOf(descriptor)))
    return Next<ssize_t(int, const iovec*, int)>("writev")(descriptor, parts, count);
  std::string bytes;
  for (int index = 0; index < count; ++index)
    bytes.append(static_cast<const char*>(parts[index].iov_base), parts[index].iov_len);
  return write(descriptor, bytes.data(), bytes.size());
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream) {
  auto* const proceed = Next<size_t(const void*, size_t, size_t, FILE*)>("fwrite");
  const std::string path = OpenFiles::Instance().PathOf(fileno(stream));
  if (!IsWatched(path)) return proceed(bytes, size, count, stream);
  const Verdict verdict =
      Announce({"write", Kind::kChange, path, Hexadecimal({static_cast<const char*>(bytes), size * count})});
  if (verdict == Verdict::kFail) return 0;
  if (verdict == Verdict::kKill) {
    proceed(bytes, 1, size * count / 2, stream);
    fflush(stream);
    raise(SIGKILL);
  }
  return proceed(bytes, size, count, stream);
}

int flock(int descriptor, int operation) {
  return Guard({"lock", Kind::kLook, OpenFiles::Instance().PathOf(descriptor)}, -1,
               [&] { return Next<int(int, int)>("flock")(descriptor, operation); });
}

int fsync(int descriptor) {
  return Guard({"flush", Kind::kChange, OpenFiles::Instance().PathOf(descriptor)}, -1,
               [&] { return Next<int(int)>("fsync")(descriptor); });
}

int close(int descriptor) {
  return CloseFile(descriptor, [&] { return Next<int(int)>("close")(descriptor); });
}

int fclose(FILE* stream) {
  return CloseFile(fileno(stream), [&] { return Next<int(FILE*)>("fclose")(stream); });
}

int rename(const char* from, const char* to) {
  return Guard({"move", Kind::kChange, from, to}, -1,
               [&] { return Next<int(const char*, const char*)>("rename")(from, to); });
}

int unlink(const char* path) {
  return Guard({"remove", Kind::kChange, path}, -1, [&] { return Next<int(const char*)>("unlink")(path); });
}

int remove(const char* path) {
  return Guard({"remove", Kind::kChange, path}, -1, [&] { return Next<int(const char*)>("remove")(path); });
}

int unlinkat(int directory, const char* path, int flags) {
  return Guard({"remove", Kind::kChange, PathBelow(directory, path)}, -1,
               [&] { return Next<int(int, const char*, int)>("unlinkat")(directory, path, flags); });
}

int truncate(const char* path, off_t length) {
  return Guard({"cut", Kind::kChange, path}, -1,
               [&] { return Next<int(const char*, off_t)>("truncate")(path, length); });
}

int mkdir(const char* path, mode_t mode) {
  return Guard({"make-directory", Kind::kChange, path}, -1,
               [&] { return Next<int(const char*, mode_t)>("mkdir")(path, mode); });
}

int fchmod(int descriptor, mode_t mode) {
  return Guard({"set-rights", Kind::kChange, OpenFiles::Instance().PathOf(descriptor)}, -1,
               [&] { return Next<int(int, mode_t)>("fchmod")(descriptor, mode); });
}

int stat(const char* path, struct stat* status) {
  return Guard({"look", Kind::kLook, path}, -1,
               [&] { return Next<int(const char*, struct stat*)>("stat")(path, status); });
}

int lstat(const char* path, struct stat* status) {
  return Guard({"look", Kind::kLook, path}, -1,
               [&] { return Next<int(const char*, struct stat*)>("lstat")(path, status); });
}

int fstat(int descriptor, struct stat* status) {
  return Guard({"look", Kind::kLook, OpenFiles::Instance().PathOf(descriptor)}, -1,
               [&] { return Next<int(int, struct stat*)>("fstat")(descriptor, status); });
}

int fstat64(int descriptor, struct stat64* status) {
  return Guard({"look", Kind::kLook, OpenFiles::Instance().PathOf(descriptor)}, -1,
               [&] { return Next<int(int, struct stat64*)>("fstat64")(descriptor, status); });
}

int fstatat(int directory, const char* path, struct stat* status, int flags) {
  return Guard({"look", Kind::kLook, PathBelow(directory, path)}, -1, [&] {
    return Next<int(int, const char*, struct stat*, int)>("fstatat")(directory, path, status, flags);
  });
}

ssize_t readlink(const char* path, char* buffer, size_t size) {
  return Guard({"look", Kind::kLook, path}, ssize_t{-1},
               [&] { return Next<ssize_t(const char*, char*, size_t)>("readlink")(path, buffer, size); });
}

DIR* opendir(const char* path) {
  return Guard({"open", Kind::kLook, path}, static_cast<DIR*>(nullptr),
               [&] { return Next<DIR*(const char*)>("opendir")(path); });
}

}  // extern "C"
