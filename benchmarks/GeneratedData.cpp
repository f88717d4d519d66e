#include "benchmarks/GeneratedData.h"

#include <algorithm>
#include <array>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/qelcore/Json.h"

namespace benchmarks {

namespace json = qelcore::json;

namespace {

/// Makers with families of their devices; a number is put after the family.
struct Family {
  const char* mKind;
  const char* mMaker;
  const char* mName;
};

constexpr std::array<Family, 24> kFamilies{{
    {"Video", "NVIDIA", "NVIDIA GeForce GTX"},
    {"Video", "NVIDIA", "NVIDIA GeForce RTX"},
    {"Video", "NVIDIA", "NVIDIA Quadro P"},
    {"Video", "Intel", "Intel(R) HD Graphics"},
    {"Video", "Intel", "Intel(R) Iris(R) Xe Graphics"},
    {"Video", "Intel", "Intel Corporation UHD Graphics [Mobile]"},
    {"Video", "AMD", "AMD Radeon(TM) RX"},
    {"Video", "AMD", "Advanced Micro Devices, Inc. [AMD/ATI] Navi"},
    {"Video", "Mesa", "Mesa"},
    {"Audio", "Realtek", "Realtek High Definition Audio"},
    {"Audio", "Realtek", "Realtek(R) Audio"},
    {"Audio", "Intel", "Intel(R) Display Audio"},
    {"Audio", "NVIDIA", "NVIDIA Virtual Audio Device (Wave Extensible) (WDM)"},
    {"Audio", "USB", "USB Audio Device #"},
    {"Audio", "AMD", "AMD High Definition Audio Device"},
    {"Audio",
     "\xC3\x89"
     "cran",
     "Haut-parleurs \xC3\x89"
     "cran"},
    {"Network", "Miniport", "WAN Miniport (PPTP)"},
    {"Network", "Miniport", "WAN Miniport (IKEv2)"},
    {"Network", "Intel", "Intel(R) Wi-Fi 6E AX"},
    {"Network", "Intel", "Intel(R) Ethernet Connection I"},
    {"Network", "Realtek", "Realtek PCIe GbE Family Controller"},
    {"Network", "Realtek", "Realtek Semiconductor Co., Ltd. RTL"},
    {"Network", "Killer", "Killer E*500 Gigabit Ethernet Controller"},
    {"Network", "Bluetooth", "Bluetooth Device (Personal Area Network)"},
}};
constexpr std::array<const char*, 4> kLevels{"INFO", "WARN", "ERROR", "FATAL"};
constexpr std::array<const char*, 6> kKinds{"OS", "Video", "Audio", "Network", "File", "Property"};
constexpr std::array<const char*, 6> kProperties{"memory.mb",   "cpu.cores",   "gpu.device_ids",
                                                 "os.language", "display.dpi", "directx.version"};
constexpr std::array<const char*, 8> kValues{"4096", "16384", "8", "96", "10de:2484", "en-US", "12", ""};
constexpr std::array<const char*, 6> kTextOperators{"eq", "ne", "lt", "lte", "gt", "gte"};
constexpr std::array<const char*, 6> kIntegerOperators{"ieq", "ine", "ilt", "ilte", "igt", "igte"};
constexpr std::array<const char*, 6> kMalformed{"Intel(R", "[z-a]", "*", "Card {2,1}", "NVIDIA [", "a)"};
constexpr int kNumbersOfAFamily = 40;

class Drawing {
 public:
  explicit Drawing(std::uint64_t seed) : mRandom(seed) {}

  /// From 0 to one less than `end`. The standard distributions differ between libraries, the numbers do not.
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(mRandom() % end); }
  bool Chance(std::size_t percent) { return Below(100) < percent; }

  template <typename Table>
  const auto& OneOf(const Table& table) {
    return table[Below(table.size())];
  }

  std::string Name(const Family& family) {
    return std::string(family.mName) + ' ' + std::to_string(100 + 10 * Below(kNumbersOfAFamily));
  }

  /// Versions of a family lie in a narrow range, so that rules and components meet.
  std::string Version() {
    return "27.20." + std::to_string(10 + Below(6)) + '.' + std::to_string(1000 + Below(3000));
  }

  std::string Path() { return "C:\\Windows\\System32\\driver" + std::to_string(Below(60)) + ".dll"; }

 private:
  std::mt19937_64 mRandom;
};

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    if (std::string_view("^$\\.*+?()[]{}|").find(character) != std::string_view::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::string Expression(const Family& family, Drawing& drawing) {
  const std::string maker = Escaped(family.mMaker);
  switch (drawing.Below(6)) {
    case 0:
    case 1:
      return "^.*\\b" + maker + "\\b.*$";
    case 2:
      return "^.*\\b(" + maker + '|' + Escaped(drawing.OneOf(kFamilies).mMaker) + ")\\b.*$";
    case 3:
      return '^' + Escaped(family.mName) + " [0-9]+$";
    case 4:
      return ".*" + std::to_string(100 + 10 * drawing.Below(kNumbersOfAFamily)) + "( Series)?";
    default:
      return "(?!.*Virtual).*" + maker + ".*";
  }
}

void AddVersions(json::Dictionary& rule, Drawing& drawing) {
  switch (drawing.Below(12)) {
    case 0:
      json::Set(rule, "version_mask", std::string("0.0.+"));
      json::Set(rule, "version_mod", std::string("0.0.10.+"));
      json::Set(rule, "version", std::string("0.0.2.1"));
      json::Set(rule, "max_version", std::string("0.0.2.+"));
      return;
    case 1:
      json::Set(rule, "version_mask", std::string("0.0.0.+"));
      json::Set(rule, "versions", json::Array{"-0.0.0." + std::to_string(1000 + drawing.Below(2000))});
      return;
    case 2:
    case 3:
      return;
    case 4:
    case 5:
      json::Set(rule, "version", drawing.Version());
      return;
    case 6:
    case 7: {
      json::Array ranges;
      for (std::size_t left = 2 + drawing.Below(5); left > 0; --left) {
        ranges.push_back(drawing.Chance(50) ? drawing.Version()
                                            : drawing.Version() + " - " + drawing.Version());
      }
      json::Set(rule, "versions", std::move(ranges));
      return;
    }
    default:
      json::Set(rule, "version", "27.20." + std::to_string(10 + drawing.Below(3)) + ".0");
      json::Set(rule, "max_version", drawing.Version());
  }
}

json::Dictionary Dependency(Drawing& drawing) {
  json::Dictionary rule;
  if (drawing.Chance(60)) {
    json::Set(rule, "type", std::string("OS"));
    json::Set(rule, "name", std::string("Windows"));
    json::Set(rule, "version", std::to_string(6 + drawing.Below(6)) + ".0");
    json::Set(rule, "max_version", std::string("10.+"));
  } else if (drawing.Chance(50)) {
    json::Set(rule, "type", std::string("Property"));
    json::Set(rule, "name", std::string("memory.mb"));
    json::Set(rule, "ilt", std::string("8192"));
  } else {
    const Family& family = drawing.OneOf(kFamilies);
    json::Set(rule, "type", std::string(family.mKind));
    json::Set(rule, "name", drawing.Chance(50) ? Expression(family, drawing) : drawing.Name(family));
  }
  return rule;
}

void AddComparison(json::Dictionary& rule, Drawing& drawing) {
  if (drawing.Chance(15)) json::Set(rule, "regex", std::string("[0-9]+.*"));
  if (drawing.Chance(40)) json::Set(rule, drawing.OneOf(kTextOperators), std::string(drawing.OneOf(kValues)));
  if (drawing.Chance(60)) {
    json::Set(rule, drawing.OneOf(kIntegerOperators), std::string(drawing.OneOf(kValues)));
  }
}

json::Dictionary Rule(Drawing& drawing, bool malformed) {
  json::Dictionary rule;
  const std::size_t share = drawing.Below(100);
  if (share < 2) {
    json::Set(rule, "type", std::string("File"));
    json::Set(rule, "name", drawing.Path());
    AddVersions(rule, drawing);
  } else if (share < 5) {
    json::Set(rule, "type", std::string("Property"));
    json::Set(rule, "name", std::string(drawing.OneOf(kProperties)));
    AddComparison(rule, drawing);
    if (malformed && drawing.Chance(20)) json::Set(rule, "regex", std::string(drawing.OneOf(kMalformed)));
  } else {
    const Family& family = drawing.OneOf(kFamilies);
    json::Set(rule, "type", std::string(family.mKind));
    json::Set(rule, "name", share < 30 ? Expression(family, drawing) : drawing.Name(family));
    if (malformed && drawing.Chance(3)) json::Set(rule, "name", std::string(drawing.OneOf(kMalformed)));
    AddVersions(rule, drawing);
  }
  if (drawing.Chance(12)) {
    json::Array dependencies;
    for (std::size_t left = 1 + drawing.Below(2); left > 0; --left) {
      dependencies.emplace_back(Dependency(drawing));
    }
    json::Set(rule, "dependencies", std::move(dependencies));
  }
  json::Set(rule, "error_level", std::string(drawing.OneOf(kLevels)));
  if (drawing.Chance(40)) {
    json::Set(rule, "info_message", "Known problem " + std::to_string(drawing.Below(100'000)) + " of this.");
    if (drawing.Chance(80)) {
      json::Set(rule, "info_url", "https://example.com/kb/" + std::to_string(drawing.Below(100'000)));
    }
  }
  json::Set(rule, "osblc_version", std::int64_t{1});
  json::Set(rule, "osc_version", std::int64_t{1});
  return rule;
}

}  // namespace

std::string GenerateBlocklist(std::size_t ruleCount, std::uint64_t seed, bool malformed) {
  Drawing drawing(seed);
  // The rules are not kept in one document, which would take a hundred times the memory of the text.
  std::string text = "{\"blocklist_version\": 1,\n\"default_info\": ";
  json::Dictionary defaults;
  for (const char* const kind : kKinds) {
    json::Dictionary entry;
    json::Set(entry, "info_message", std::string("This is known to cause issues: ") + kind);
    json::Set(entry, "info_url", std::string("https://example.com/help/") + kind);
    json::Set(defaults, kind, std::move(entry));
  }
  text +=
      json::Serialise(defaults) + ",\n\"second_warning\": \"Incompatibilities can lead to loss of data.\",\n";
  text += "\"blocklist\": [";
  for (std::size_t index = 0; index < ruleCount; ++index) {
    text += index == 0 ? "\n" : ",\n";
    text += json::Serialise(Rule(drawing, malformed));
  }
  return text + "\n]}\n";
}

std::string GenerateMachine(std::size_t componentCount, std::uint64_t seed) {
  Drawing drawing(seed);
  json::Array components;
  const auto add = [&](const char* kind, std::string name, const char* key, std::string value) {
    json::Dictionary component;
    json::Set(component, "type", std::string(kind));
    json::Set(component, "name", std::move(name));
    json::Set(component, key, std::move(value));
    components.emplace_back(std::move(component));
  };
  add("OS", "Windows", "version", "10.0.19045.1");
  std::vector<std::pair<const char*, std::string>> devices;
  const std::size_t propertyCount = componentCount / 10;
  while (devices.size() + propertyCount + 1 < componentCount) {
    const Family& family = drawing.OneOf(kFamilies);
    devices.emplace_back(family.mKind, drawing.Name(family));
  }
  std::stable_sort(devices.begin(), devices.end(), [](const auto& left, const auto& right) {
    return std::string_view(left.first) < std::string_view(right.first);
  });
  for (auto& [kind, name] : devices) add(kind, std::move(name), "version", drawing.Version());
  for (std::size_t index = 0; index < propertyCount; ++index) {
    const std::string name = kProperties[index % kProperties.size()];
    add("Property", index < kProperties.size() ? name : name + '.' + std::to_string(index), "value",
        drawing.OneOf(kValues));
  }
  json::Array files;
  for (int index = 0; index < 20; ++index) {
    json::Dictionary file;
    json::Set(file, "path", drawing.Path());
    json::Set(file, "version", drawing.Version());
    files.emplace_back(std::move(file));
  }
  json::Dictionary machine;
  json::Set(machine, "components", std::move(components));
  json::Set(machine, "files", std::move(files));
  return json::Serialise(machine) + "\n";
}

}  // namespace benchmarks
