// What `scr` prints and writes about the machine that it runs on tells neither which machine that is nor who
// sits at it.
#include <ifaddrs.h>
#include <netdb.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "tests/app/ScrTest.h"

namespace {

using testsupport::Blocklist;

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return text;
}

std::string FirstLine(const std::filesystem::path& path) {
  std::ifstream stream(path);
  std::string line;
  std::getline(stream, line);
  return line;
}

/// Names that many machines share, and that are words of devices and systems as well.
constexpr std::string_view kCommonNames[] = {"android", "computer", "debian",     "default", "desktop",
                                             "fedora",  "generic",  "localhost",  "laptop",  "server",
                                             "system",  "ubuntu",   "workstation"};

/// What identifies this machine and its user, in lower case: as much as this process is told. Texts that
/// identify nothing, such as "root" or "To be filled by O.E.M.", are left out with all that is as short or
/// has blanks in it.
std::set<std::string> Identifiers() {
  std::set<std::string> found;
  const auto add = [&](const std::string& text) {
    constexpr std::size_t kShortest = 6;
    const bool isZero = text.find_first_not_of("0:-.") == std::string::npos;
    const bool isCommon = std::find(std::begin(kCommonNames), std::end(kCommonNames), LowerCase(text)) !=
                          std::end(kCommonNames);
    if (text.size() >= kShortest && !isZero && !isCommon && text.find(' ') == std::string::npos)
      found.insert(LowerCase(text));
  };
  for (const char* const file : {"/etc/machine-id", "/proc/sys/kernel/random/boot_id", "/etc/hostname",
                                 "/sys/class/dmi/id/product_serial", "/sys/class/dmi/id/product_uuid",
                                 "/sys/class/dmi/id/board_serial", "/sys/class/dmi/id/chassis_serial",
                                 "/sys/class/dmi/id/chassis_asset_tag"})
    add(FirstLine(file));
  if (std::filesystem::exists("/sys/class/net")) {
    for (const auto& interface : std::filesystem::directory_iterator("/sys/class/net"))
      add(FirstLine(interface.path() / "address"));
  }
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) == 0) add(name.data());
  if (const passwd* const user = getpwuid(getuid())) add(user->pw_name);
  ifaddrs* addresses = nullptr;
  if (getifaddrs(&addresses) == 0) {
    for (const ifaddrs* address = addresses; address != nullptr; address = address->ifa_next) {
      if (address->ifa_addr == nullptr) continue;
      const int family = address->ifa_addr->sa_family;
      if (family != AF_INET && family != AF_INET6) continue;
      const socklen_t length = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
      std::array<char, NI_MAXHOST> text{};
      if (getnameinfo(address->ifa_addr, length, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) == 0)
        add(text.data());
    }
    freeifaddrs(addresses);
  }
  return found;
}

class OwnMachineTest : public testsupport::ScrTest {};

TEST_F(OwnMachineTest, IsNotTold) {
  const std::set<std::string> identifiers = Identifiers();
  ASSERT_FALSE(identifiers.empty());
  // Every component, so that all of them are in issues and events.
  std::string rules;
  for (const char* const kind : {"OS", "Video", "Audio", "Network"})
    rules += std::string(rules.empty() ? "" : ",") + R"({"type": ")" + kind +
             R"(", "name": ".*", "error_level": "WARN"})";
  Write("application/SystemCompatibilityReport/blocklist.en_US.json", Blocklist(rules));
  std::string everything;
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--trace", "6", "report"},
        {"components"},
        {"components", "--json"},
        {"launch"},
        {"--trace", "6", "check", Path("application/SystemCompatibilityReport/blocklist.en_US.json")},
        {"events"},
        {"events", "--statistics"},
        {"trail"},
        {"state", "show"},
        {"settings"}}) {
    const auto result = Scr(arguments);
    everything += result.mOutput + result.mErrors;
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(mFiles.Path() / "preferences")) {
    if (entry.is_regular_file()) everything += testsupport::ReadWholeFile(entry.path());
  }
  ASSERT_GT(everything.size(), 10'000U);
  everything = LowerCase(everything);
  for (const std::string& identifier : identifiers) {
    const std::size_t place = everything.find(identifier);
    EXPECT_EQ(place, std::string::npos)
        << identifier << " in " << everything.substr(place < 80 ? 0 : place - 80, 200);
  }
}

}  // namespace
