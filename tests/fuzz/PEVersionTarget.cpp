// The version resource of a Windows program, read from its bytes.
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>

#include "host/qelcore/files/PEVersion.h"
#include "platform/qelcore/Components.h"
#include "tests/fuzz/support/Require.h"

namespace {

using fuzz::Require;

/// Counts how often something is asked for.
class CountingBuffer : public std::stringbuf {
 public:
  explicit CountingBuffer(const std::string& content) : std::stringbuf(content, std::ios::in) {}

  std::size_t mReads = 0;

 protected:
  std::streamsize xsgetn(char* bytes, std::streamsize count) override {
    ++mReads;
    return std::stringbuf::xsgetn(bytes, count);
  }
};

/// Four numbers of 16 bits joined by points.
bool IsVersion(std::string_view text) {
  for (int part = 0; part < 4; ++part) {
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (part < 3 && !text.starts_with('.')) return false;
    if (part < 3) text.remove_prefix(1);
  }
  return text.empty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(data, data + size);
  CountingBuffer buffer(content);
  std::istream stream(&buffer);
  const std::string version = qelcore::host::ReadPEFileVersion(stream);
  Require(version.empty() || IsVersion(version), "a version has four numbers");
  // Headers, 96 sections of three numbers, three directories of 4,096 entries, and the resource.
  Require(buffer.mReads < 13'000, "only what leads to the resource is read");

  std::istringstream longer(content + std::string(64, '\xFF'));
  const std::string again = qelcore::host::ReadPEFileVersion(longer);
  Require(version.empty() || again == version, "what follows the program changes nothing");
  return 0;
}
