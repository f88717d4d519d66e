// Properties of the processor and the memory.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/qelcore/components/PlainText.h"
#include "host/qelcore/linux/components/Properties.h"

namespace qelcore::host::components {
namespace {

constexpr std::uint64_t kMostProcessors = 65'536;
constexpr std::string_view kProcessors = "sys/devices/system/cpu";

/// Calls `see` for each "key : value" line, both trimmed.
void ForEachEntry(std::string_view text,
                  const std::function<void(std::string_view key, std::string_view value)>& see) {
  ForEachLine(text, [&](std::string_view line) {
    if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
      see(Trim(line.substr(0, colon)), Trim(line.substr(colon + 1)));
    }
    return true;
  });
}

/// The numbers in a list such as "0-3,8,10-11". Nothing when it is not such a list or names too many.
std::optional<std::vector<std::uint64_t>> ParseNumberList(std::string_view text) {
  std::vector<std::uint64_t> numbers;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    const std::string_view range = text.substr(0, comma);
    const std::size_t dash = range.find('-');
    const auto first = ParseDecimal(range.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : ParseDecimal(range.substr(dash + 1));
    if (!first || !last || *last < *first || *last >= kMostProcessors) return std::nullopt;
    for (std::uint64_t number = *first; number <= *last && numbers.size() <= kMostProcessors; ++number) {
      numbers.push_back(number);
    }
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  }
  if (numbers.empty() || numbers.size() > kMostProcessors) return std::nullopt;
  return numbers;
}

/// The number of cores among these logical processors: each core is counted at the first processor that it
/// runs. Nothing when the kernel does not say which processors share a core.
std::optional<std::size_t> CountCores(const RootedFiles& files,
                                      const std::vector<std::uint64_t>& processors) {
  std::size_t cores = 0;
  for (const std::uint64_t processor : processors) {
    const std::string path =
        std::string(kProcessors) + "/cpu" + std::to_string(processor) + "/topology/thread_siblings_list";
    const std::string siblings = files.ReadLine(path);
    const auto first = ParseDecimal(std::string_view(siblings).substr(0, siblings.find_first_of(",-")));
    if (!first) return std::nullopt;
    if (*first == processor) ++cores;
  }
  return cores;
}

/// What /proc/cpuinfo says, for kernels and containers without the processors' directory in sysfs.
struct ProcessorInformation {
  std::string mName;
  std::size_t mLogicalProcessors = 0;
  std::set<std::pair<std::string, std::string>> mCores;
};

ProcessorInformation ReadProcessorInformation(const RootedFiles& files) {
  ProcessorInformation information;
  std::string package;
  ForEachEntry(files.Read("proc/cpuinfo").value_or(std::string()),
               [&](std::string_view key, std::string_view value) {
                 // The name's key differs between architectures.
                 const bool isName = key == "model name" || key == "Model Name" || key == "cpu model" ||
                                     key == "cpu" || key == "uarch";
                 if (isName && information.mName.empty()) information.mName = CleanText(value);
                 if (key == "processor") ++information.mLogicalProcessors;
                 if (key == "physical id") package = value;
                 if (key == "core id") information.mCores.emplace(package, value);
               });
  return information;
}

/// The first processor's name in the device tree, such as "arm,cortex-a72": 64-bit ARM kernels give no other.
std::string NameInDeviceTree(const RootedFiles& files) {
  const std::string directory = "sys/firmware/devicetree/base/cpus";
  for (const std::string& name : files.List(directory)) {
    if (!name.starts_with("cpu@")) continue;
    std::string text = CleanText(files.Read(directory + "/" + name + "/compatible").value_or(std::string()));
    if (!text.empty()) return text;
  }
  return {};
}

/// A value of /proc/meminfo, which is in KiB, in whole MiB.
std::string Mebibytes(std::string_view value) {
  const auto kibibytes = ParseDecimal(value.substr(0, value.find(' ')));
  return kibibytes ? std::to_string(*kibibytes / 1024) : std::string();
}

}  // namespace

void AddProcessorProperties(const RootedFiles& files, Properties& properties) {
  const ProcessorInformation information = ReadProcessorInformation(files);
  AddProperty(properties, "cpu.name",
              information.mName.empty() ? NameInDeviceTree(files) : information.mName);

  std::size_t logicalProcessors = information.mLogicalProcessors;
  std::size_t cores = information.mCores.size();
  if (const auto processors = ParseNumberList(files.ReadLine(std::string(kProcessors) + "/online"))) {
    logicalProcessors = processors->size();
    if (const auto counted = CountCores(files, *processors)) cores = *counted;
  }
  if (logicalProcessors > 0) {
    AddProperty(properties, "cpu.logical_processors", std::to_string(logicalProcessors));
  }
  if (cores > 0) AddProperty(properties, "cpu.cores", std::to_string(cores));

  ForEachEntry(files.Read("proc/meminfo").value_or(std::string()),
               [&](std::string_view key, std::string_view value) {
                 if (key == "MemTotal") AddProperty(properties, "memory.mb", Mebibytes(value));
                 if (key == "SwapTotal") AddProperty(properties, "swap.mb", Mebibytes(value));
               });
}

}  // namespace qelcore::host::components
