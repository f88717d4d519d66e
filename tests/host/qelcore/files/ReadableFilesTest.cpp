// Which files are read, and how much of them.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "host/qelcore/files/FileContent.h"
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

class ReadableFiles : public testing::Test {
 protected:
  [[nodiscard]] std::string At(const std::string& name) const {
    return (mHost.Files().Path() / name).string();
  }

  testsupport::TestHost mHost;
};

TEST_F(ReadableFiles, AFileOfMoreThan64MiBIsNotRead) {
  const std::string path = mHost.Files().Write("large", "").string();
  // It has that length without taking the room.
  std::filesystem::resize_file(path, 67'108'865);
  IPlatformByteStream input(FileAt(path));
  const std::system_error error = ErrorOf([&] { static_cast<void>(input.ReadAll()); });
  EXPECT_EQ(error.code(), std::errc::file_too_large);
  EXPECT_EQ(error.what(), path + ": File too large");
}

TEST_F(ReadableFiles, AFileIsReadUpToTheLimit) {
  struct Row {
    std::size_t mSize;
    std::size_t mLimit;
    bool mIsRead;
  };
  for (const Row& row : {Row{0, 0, true},
                         {1, 0, false},
                         {10, 10, true},
                         {11, 10, false},
                         {65'536, 65'535, false},
                         {65'536, 65'536, true},
                         {300'000, 299'999, false},
                         {300'000, 300'000, true}}) {
    const std::string content(row.mSize, 'x');
    const std::string path = mHost.Files().Write("file", content).string();
    if (row.mIsRead) {
      EXPECT_EQ(ReadContent(path, row.mLimit), content) << row.mSize;
      continue;
    }
    const std::system_error error = ErrorOf([&] { static_cast<void>(ReadContent(path, row.mLimit)); });
    EXPECT_EQ(error.code(), std::errc::file_too_large) << row.mSize;
  }
}

}  // namespace
