// What a person means by the words behind --rule and --component.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"

namespace authoring {

/// Rules or names that were chosen, or why none was.
template <typename Key>
struct Choice {
  std::set<Key> mChosen;
  std::string mNote;     ///< what was chosen, where that is not plain from what was asked
  std::string mProblem;  ///< why nothing was chosen, and what there is; empty when something was
};

/// A rule by its number in the list, counted from 0, as "scr lint" tells of it, or by its identifier, as
/// "scr check" does. Rules may share an identifier.
[[nodiscard]] Choice<std::size_t> ChooseRules(const std::vector<qelsystemcompatibilityreport::SCRRule>& rules,
                                              const std::string& text);

/// The name that is `text`, or else all that hold it, whatever their capital and small letters.
[[nodiscard]] Choice<std::string> ChooseComponents(const std::set<std::string>& names,
                                                   const std::string& text);

/// The names of the registry's components, and of the files that the rules find on this machine.
[[nodiscard]] std::set<std::string> NamesOfCandidates(
    const std::vector<qelsystemcompatibilityreport::SCRRule>& rules,
    const qelcore::utility::OSComponentRegistry& registry);

}  // namespace authoring
