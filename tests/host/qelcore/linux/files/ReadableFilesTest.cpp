// What is no file on the disk: pipes, sockets, devices, and what was handed over open.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <thread>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/files/FileContent.h"
#include "platform/qelcore/DebugDatabase.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::filesupport::File;
using qelcore::filesupport::IPlatformByteStream;
using qelcore::host::ReadContent;
using qelcore::string::UTF8to16;

File FileAt(const std::string& path) {
  return File(UTF8to16(path));
}

/// The error of an operation; fails the test when there is none.
std::system_error ErrorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const std::system_error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return std::system_error(std::error_code());
}

/// An open file of the process, as a shell hands one over.
class OpenDescriptor {
 public:
  explicit OpenDescriptor(int descriptor) : mDescriptor(descriptor) { EXPECT_GE(descriptor, 0); }
  ~OpenDescriptor() { ::close(mDescriptor); }
  OpenDescriptor(const OpenDescriptor&) = delete;
  OpenDescriptor& operator=(const OpenDescriptor&) = delete;

  [[nodiscard]] int Get() const { return mDescriptor; }
  [[nodiscard]] std::string Name(const std::string& folder) const {
    return folder + std::to_string(mDescriptor);
  }

 private:
  int mDescriptor;
};

class ReadableFiles : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const {
    return (mHost.Files().Path() / name).string();
  }

  testsupport::TestHost mHost;
};

TEST_F(ReadableFiles, WhatIsNoRegularFileIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("pipe", At("link to a pipe"));
  std::filesystem::create_symlink("/dev/stdin", At("link to the standard input"));
  int ends[2] = {-1, -1};
  ASSERT_EQ(::pipe(ends), 0);
  const OpenDescriptor reading(ends[0]);
  const OpenDescriptor writing(ends[1]);
  ASSERT_GE(::dup2(reading.Get(), STDIN_FILENO), 0);
  const OpenDescriptor otherEnd(::open(At("pipe").c_str(), O_RDWR | O_CLOEXEC));
  for (const std::string& path : {At("pipe"), At("link to a pipe"), At("link to the standard input"),
                                  std::string("/dev/zero"), std::string("/dev/null")}) {
    const std::system_error error = ErrorOf([&] { IPlatformByteStream stream(FileAt(path)); });
    EXPECT_EQ(error.what(), path + ": not a regular file: Operation not supported");
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(ReadContent(path, 10)); }).code(), error.code()) << path;
  }
}

TEST_F(ReadableFiles, ASocketIsRefused) {
  const OpenDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const std::string path = At("socket");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof(address.sun_path));
  path.copy(address.sun_path, path.size());
  // The interface of sockets takes addresses of every family by the pointer to one.
  const void* const untyped = &address;
  ASSERT_EQ(::bind(socket.Get(), static_cast<const sockaddr*>(untyped), sizeof(address)), 0);
  const std::string message = ErrorOf([&] { IPlatformByteStream stream(FileAt(path)); }).what();
  EXPECT_TRUE(message.starts_with(path + ": ")) << message;
}

TEST_F(ReadableFiles, WhatTheProcessWasHandedOpenIsReadToItsEnd) {
  for (const char* const folder : {"/dev/fd/", "/proc/self/fd/"}) {
    const std::string content(200'000, 'x');
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe(ends), 0);
    const OpenDescriptor reading(ends[0]);
    std::thread writer([&content, end = ends[1]] {
      for (std::size_t written = 0; written < content.size();) {
        const ssize_t count = ::write(end, content.data() + written, content.size() - written);
        if (count <= 0) break;
        written += static_cast<std::size_t>(count);
      }
      ::close(end);
    });
    {
      IPlatformByteStream input(FileAt(reading.Name(folder)));
      EXPECT_EQ(input.GetLength(), 0U) << folder;
      EXPECT_EQ(input.ReadAll(), content) << folder;
    }
    writer.join();
  }
}

TEST_F(ReadableFiles, TheStandardInputIsRead) {
  const OpenDescriptor file(::open(mHost.Files().Write("input", "typed").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_GE(::dup2(file.Get(), STDIN_FILENO), 0);
  EXPECT_EQ(IPlatformByteStream(FileAt("/dev/stdin")).ReadAll(), "typed");
}

TEST_F(ReadableFiles, ADirectoryThatWasHandedOverIsRefused) {
  const OpenDescriptor directory(::open(At("").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  EXPECT_EQ(ErrorOf([&] { IPlatformByteStream stream(FileAt(directory.Name("/dev/fd/"))); }).code(),
            std::errc::is_a_directory);
}

TEST_F(ReadableFiles, WhatNeverEndsIsReadUpToTheLimit) {
  for (const std::size_t limit : {0U, 1U, 65'535U, 65'536U, 1'000'000U}) {
    const OpenDescriptor device(::open("/dev/zero", O_RDONLY | O_CLOEXEC));
    const std::string path = device.Name("/dev/fd/");
    const std::system_error error = ErrorOf([&] { static_cast<void>(ReadContent(path, limit)); });
    EXPECT_EQ(error.code(), std::errc::file_too_large) << limit;
    EXPECT_EQ(error.what(), path + ": File too large") << limit;
  }
}

TEST_F(ReadableFiles, SettingsThatAreAPipeAreNotWaitedFor) {
  ASSERT_EQ(::mkfifo(At("preferences/DebugDatabase.json").c_str(), 0600), 0);
  EXPECT_EQ(qelcore::DebugDatabase::Instance().GetEntry("key", "usual"), "usual");
  ASSERT_EQ(mHost.mExceptionTexts.size(), 1U);
  EXPECT_TRUE(mHost.mExceptionTexts[0].starts_with(At("preferences/DebugDatabase.json") + ": "));
}

}  // namespace
