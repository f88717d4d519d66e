#include "host/qelcore/linux/components/Versions.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::components {

utility::OSComponentVersion ReadVersion(std::string_view text) {
  text = Trim(text);
  if (text.starts_with('v') || text.starts_with('V')) text.remove_prefix(1);
  std::array<std::uint32_t, 4> parts{};
  std::size_t count = 0;
  while (count < parts.size()) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), parts[count]);
    if (error != std::errc{}) break;
    ++count;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    if (!text.starts_with('.') && !text.starts_with('-') && !text.starts_with('_')) break;
    text.remove_prefix(1);
  }
  if (count == 0) return {};
  return {parts[0], parts[1], parts[2], parts[3]};
}

std::string_view UpstreamVersion(std::string_view packageVersion) {
  std::string_view version = Trim(packageVersion);
  if (const std::size_t colon = version.find(':'); colon != std::string_view::npos) {
    version.remove_prefix(colon + 1);
  }
  return version.substr(0, version.find_first_of("-~+"));
}

}  // namespace qelcore::host::components
