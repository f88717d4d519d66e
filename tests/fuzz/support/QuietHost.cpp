#include "tests/fuzz/support/QuietHost.h"

#include <fstream>
#include <iterator>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "tests/fuzz/support/Require.h"

namespace fuzz {

namespace {

std::filesystem::path MakeDirectory() {
  std::random_device random;
  for (;;) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("scr-fuzz-" + std::to_string(random()));
    if (std::filesystem::create_directory(path)) return path;
  }
}

}  // namespace

QuietHost& QuietHost::Instance() {
  static QuietHost host;
  return host;
}

QuietHost::QuietHost() : mDirectory(MakeDirectory()) {
  const auto create = [&](const char* name) {
    const std::filesystem::path path = mDirectory / name;
    std::filesystem::create_directory(path);
    return path.string();
  };
  namespace host = qelcore::host;
  host::SetDirectories({.mPreferences = create("preferences"),
                        .mApplication = create("application"),
                        .mDocuments = create("documents"),
                        .mState = create("state")});
  host::SetApplicationLanguage("en_US");
  host::SetTraceSink([](std::string_view, int, std::string_view) {});
  host::SetTraceLevel(6);
  host::SetExceptionSink(
      [this](const std::exception_ptr&, std::string_view context) { mExceptions.emplace_back(context); });
  qelappsupport::host::SetEventSink([](const qelappsupport::analytics::SDMEvent&) {});
  host::SetUsageSink([](const host::UsageEntry&) {});
}

QuietHost::~QuietHost() {
  std::error_code ignored;
  std::filesystem::remove_all(mDirectory, ignored);
}

std::vector<std::string> QuietHost::TakeExceptions() {
  return std::exchange(mExceptions, {});
}

void WriteFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  Require(file.good(), "the target can write its own files");
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  Require(file.good(), "the target can read its own files");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace fuzz
