#include "tests/fuzz/support/Machines.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/qelcore/Json.h"

namespace fuzz {

namespace json = qelcore::json;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelcore::utility::OSComponentVersion;

namespace {

constexpr std::size_t kMostBroughtAlong = 16;
constexpr std::size_t kLongestHarmlessText = 64;

bool IsHarmlessExpression(std::string_view text) {
  const auto count = [&](std::string_view signs) {
    return std::count_if(text.begin(), text.end(),
                         [&](char sign) { return signs.find(sign) != std::string_view::npos; });
  };
  const auto repeats = count("*+");
  if (text.size() > kLongestHarmlessText || repeats > 1 || count("?") > 8) return false;
  // Choices under a repeat double the way with each character of the text.
  if (repeats == 1 && count("|?") > 0) return false;
  if (text.find("(?") != std::string_view::npos || text.find('{') != std::string_view::npos) return false;
  for (std::size_t place = 0; place + 1 < text.size(); ++place) {
    if (text[place] == '\\' && text[place + 1] >= '0' && text[place + 1] <= '9') return false;
  }
  return true;
}

bool IsHarmlessAtLevel(const testsupport::NaiveRule& rule, int level) {
  if (level > 2 || rule.mDependencies.size() > 4 || !IsHarmlessExpression(rule.mName)) return false;
  const bool compareHarmlessly =
      std::all_of(rule.mTextComparisons.begin(), rule.mTextComparisons.end(), [](const auto& comparison) {
        return comparison.first != "regex" || IsHarmlessExpression(comparison.second);
      });
  return compareHarmlessly && std::all_of(rule.mDependencies.begin(), rule.mDependencies.end(),
                                          [&](const testsupport::NaiveRule& dependency) {
                                            return IsHarmlessAtLevel(dependency, level + 1);
                                          });
}

}  // namespace

const std::map<std::string, std::string, std::less<>>& MachineFiles() {
  static const std::map<std::string, std::string, std::less<>> files{
      {"/usr/lib/libexample.so", "5.8.1.0"}, {"C:\\old.dll", "1.2.3.4"}, {"$HOME/plug-in", ""}};
  return files;
}

OSComponentRegistry ReadMachine(const std::any& document) {
  const auto component = [](OSComponentType type, const char* name, const char* version) {
    return std::make_shared<OSComponent>(type, name, OSComponentVersion(version));
  };
  const auto property = [](const char* name, const char* value) {
    return std::make_shared<OSComponent>(OSComponentType::kProperty, name, OSComponentVersion(), value);
  };
  OSComponentRegistry::Components components{
      component(OSComponentType::kOS, "Windows", "10.0.17763.1"),
      component(OSComponentType::kVideo, "NVIDIA Quadro P600", "24.21.14.1195"),
      component(OSComponentType::kVideo, "Intel(R) HD Graphics", ""),
      component(OSComponentType::kAudio, "Speakers (Realtek(R) Audio)", "6.0.9912.1"),
      component(OSComponentType::kNetwork, "WAN Miniport (PPTP)", "10.0.+"),
      property("memory.mb", "16384 MB"),
      property("session", "wayland"),
  };
  const auto* const object = std::any_cast<json::Dictionary>(&document);
  const auto found = object == nullptr ? json::Dictionary::const_iterator() : object->find("components");
  if (object == nullptr || found == object->end()) return OSComponentRegistry(components);
  const auto* const array = std::any_cast<json::Array>(found->second.get());
  if (array == nullptr) return OSComponentRegistry(components);
  for (std::size_t place = 0; place < std::min(array->size(), kMostBroughtAlong); ++place) {
    auto brought = std::make_shared<OSComponent>();
    if (brought->FromJSON((*array)[place])) components.push_back(std::move(brought));
  }
  return OSComponentRegistry(components);
}

testsupport::NaiveMachine NaiveMachineOf(const OSComponentRegistry& registry) {
  testsupport::NaiveMachine machine;
  for (const auto& component : registry.GetAllComponents()) {
    machine.mComponents.push_back(testsupport::ReadNaiveComponent(component->ToJSON()));
  }
  machine.mFiles.insert(MachineFiles().begin(), MachineFiles().end());
  return machine;
}

bool IsHarmless(const testsupport::NaiveRule& rule) {
  return IsHarmlessAtLevel(rule, 0);
}

}  // namespace fuzz
