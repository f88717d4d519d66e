#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace testsupport {

TemporaryDirectory::TemporaryDirectory() {
  std::random_device random;
  do {
    mPath = std::filesystem::temp_directory_path() /
            ("qelscr-test-" + std::to_string(random()) + "-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(mPath));
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

std::filesystem::path TemporaryDirectory::Write(const std::string& relativePath,
                                                std::string_view content) const {
  const std::filesystem::path path = mPath / PathFrom(relativePath);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  EXPECT_TRUE(stream.good()) << path;
  return path;
}

std::string TemporaryDirectory::Read(const std::string& relativePath) const {
  return ReadWholeFile(mPath / PathFrom(relativePath));
}

std::filesystem::path PathFrom(std::string_view text) {
  return std::u8string(text.begin(), text.end());
}

std::string PathText(std::filesystem::path path) {
  const std::u8string text = path.make_preferred().u8string();
  return {text.begin(), text.end()};
}

std::string ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << path;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace testsupport
