#include "authoring/model/KnownSystems.h"

#include <algorithm>

#include "authoring/model/Matcher.h"
#include "authoring/model/NameShape.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

using qelcore::utility::OSComponentType;

/// Kernels, other systems, and distributions of Linux by the "NAME" that they give themselves.
constexpr std::string_view kOthers[] = {"Linux",
                                        "FreeBSD",
                                        "macOS",
                                        "Android",
                                        "Debian GNU/Linux",
                                        "Ubuntu",
                                        "Fedora",
                                        "Fedora Linux",
                                        "Arch Linux",
                                        "Linux Mint",
                                        "openSUSE Leap",
                                        "openSUSE Tumbleweed",
                                        "Red Hat Enterprise Linux",
                                        "CentOS Linux",
                                        "CentOS Stream",
                                        "Rocky Linux",
                                        "AlmaLinux",
                                        "Manjaro Linux",
                                        "Pop!_OS",
                                        "Gentoo",
                                        "NixOS"};

bool Hits(const std::string& name, std::string_view system) {
  return HitsName(OSComponentType::kOS, name, std::string(system));
}

}  // namespace

std::optional<std::string_view> SystemInOtherCase(std::string_view name) {
  if (name == kWindows) return std::nullopt;
  if (EqualsIgnoringCase(name, kWindows)) return kWindows;
  std::optional<std::string_view> found;
  for (const std::string_view system : kOthers) {
    if (name == system) return std::nullopt;
    if (EqualsIgnoringCase(name, system)) found = system;
  }
  return found;
}

bool SpeaksOfWindows(std::string_view name) {
  for (std::size_t place = 0; place + kWindows.size() <= name.size(); ++place) {
    if (EqualsIgnoringCase(name.substr(place, kWindows.size()), kWindows)) return true;
  }
  return false;
}

SystemsOfName SystemsOf(const std::string& name) {
  if (!HasSigns(name)) return {name == kWindows, name != kWindows};
  // What is malformed or refused is told elsewhere. Asking gives each name a budget of its own.
  if (!ExpressionJudge().Judge(name).IsSound()) return {};
  SystemsOfName systems;
  systems.mMayBeWindows = Hits(name, kWindows);
  if (systems.mMayBeWindows && name.find("Win") != std::string::npos) {
    // An expression that has a part of the name in it and hits no other system was written for this one.
    systems.mMayBeAnother = std::any_of(std::begin(kOthers), std::end(kOthers),
                                        [&](std::string_view system) { return Hits(name, system); });
  }
  return systems;
}

}  // namespace authoring
