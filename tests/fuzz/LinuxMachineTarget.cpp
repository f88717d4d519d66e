// The readers of a Linux machine: the input is a machine's tree of files, in the form of the recorded
// machines.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/qelcore/Components.h"
#include "tests/fuzz/support/MachineComponents.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"
#include "tests/host/qelcore/linux/components/MachineTree.h"

namespace {

/// What stands in a file outside of the machine, where links of the input may point.
constexpr std::string_view kSecret = "5417.5417.5417.5417";

constexpr std::size_t kMostLines = 400;

/// The lines that the tree understands; a link may lead anywhere.
std::string Understood(std::string_view text) {
  std::string result;
  for (std::size_t count = 0; count < kMostLines && !text.empty(); ++count) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const std::size_t blank = line.find(' ');
    const std::string_view rest =
        blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1);
    const std::string_view name = line.substr(0, blank);
    const bool isPlain = line.empty() || line.starts_with("    ") || line.starts_with('#');
    const bool isPath =
        !line.starts_with('@') && (line.ends_with('/') || line.ends_with(':') || name.ends_with(':') ||
                                   rest.starts_with("-> ") || rest.starts_with('='));
    const bool isValue =
        name == "@architecture" || (name == "@environment" && rest.find('=') != std::string_view::npos) ||
        (name == "@free_bytes" && !rest.empty() && rest.size() < 19 &&
         std::all_of(rest.begin(), rest.end(), [](char digit) { return digit >= '0' && digit <= '9'; }));
    const bool hasZero = line.find('\0') != std::string_view::npos;
    if (!hasZero && (isPlain || (isPath && (blank != std::string_view::npos || !line.ends_with(' '))) ||
                     (isValue && blank != std::string_view::npos))) {
      result += std::string(line) + '\n';
    }
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost& host = fuzz::QuietHost::Instance();
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  static const bool hasSecret = [&] {
    fuzz::WriteFile(host.Directory() / "secret", kSecret);
    return true;
  }();
  fuzz::Require(hasSecret, "there is something to find outside");

  std::string text = Understood(std::string(data, data + size));
  const std::string outside = (host.Directory() / "secret").string();
  for (std::size_t place = text.find("OUTSIDE"); place != std::string::npos;
       place = text.find("OUTSIDE", place)) {
    text.replace(place, 7, outside);
  }
  const testsupport::MachineTree machine(text, testsupport::MachineTree::Broken::kIsLeftOut);
  const auto components = machine.Read();
  fuzz::RequireSoundComponents(components);
  fuzz::RequireEqualComponents(components, machine.Read());
  if (text.find("5417") == std::string::npos) {
    for (const auto& component : components) {
      const std::string said =
          component->GetName() + component->GetVersion().ToString() + component->GetPropertyValue();
      fuzz::Require(said.find("5417") == std::string::npos, "nothing outside of the root is read");
    }
  }
  return 0;
}
