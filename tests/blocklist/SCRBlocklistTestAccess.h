// What tests see of a blocklist's inside.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/blocklist/RuleList.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"

namespace qelsystemcompatibilityreport {

struct SCRBlocklistTestAccess {
  using DefaultInfoAndURL = SCRBlocklist::DefaultInfoAndURL;

  static const DefaultInfoAndURL& Defaults(const SCRBlocklist& blocklist, std::int32_t kind) {
    return blocklist.GetDefaultInfoAndURL(OSComponentType{kind});
  }

  /// As the constructor, but by the dictionary at once.
  static SCRBlocklist FromDictionary(const std::string& text) {
    SCRBlocklist blocklist("{}");
    AtBoundary("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist",
               [&] { blocklist.ReadFromDictionary(text); });
    return blocklist;
  }

  static bool AreEqual(const SCRBlocklist& left, const SCRBlocklist& right) {
    const auto areTheSame = [](const DefaultInfoAndURL& one, const DefaultInfoAndURL& other) {
      return one.info_message == other.info_message && one.info_url == other.info_url;
    };
    return std::equal(left.mDefaults.begin(), left.mDefaults.end(), right.mDefaults.begin(),
                      right.mDefaults.end(), areTheSame) &&
           AllRules(left) == AllRules(right) && left.Rules().Hashes() == right.Rules().Hashes() &&
           left.Rules().HasFileRule() == right.Rules().HasFileRule() &&
           left.mSecondWarning == right.mSecondWarning;
  }

  static std::vector<SCRRule> AllRules(const SCRBlocklist& blocklist) {
    std::vector<SCRRule> rules;
    blocklist.Rules().Visit([&](const SCRRule& rule) { rules.push_back(rule); });
    return rules;
  }

  /// Whether it came to its rules without the dictionary.
  static bool IsReadFromText(const SCRBlocklist& blocklist) { return blocklist.Rules().IsReadFromDocument(); }

  static std::size_t CountRules(const SCRBlocklist& blocklist) { return blocklist.Rules().Size(); }
};

}  // namespace qelsystemcompatibilityreport
