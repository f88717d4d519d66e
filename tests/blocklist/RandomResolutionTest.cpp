// The resolution against a transcription of it that edits the list step by step, on random sequences.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "tests/support/RandomCases.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::ResolutionLogger;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SCRRuleErrorLevel;

using Texts = std::vector<std::string>;

bool ResolveStepByStep(SCRRuleErrorLevel level, const std::vector<SCRIssue>& issues, Texts& remembered,
                       const ResolutionLogger& logger) {
  if (issues.empty()) {
    for (const std::string& id : remembered) logger.LogResolvedIssue(level, id);
    remembered.clear();
    return false;
  }
  std::vector<bool> marks(issues.size(), true);
  for (std::size_t place = 0; place < remembered.size();) {
    bool isPresent = false;
    for (std::size_t issue = 0; issue < issues.size(); ++issue) {
      if (!marks[issue]) continue;
      if (issues[issue].GetErrorLevel() != level) {
        marks[issue] = false;
      } else if (issues[issue].GetID() == remembered[place]) {
        marks[issue] = false;
        if (!isPresent) logger.LogExistingIssue(issues[issue]);
        isPresent = true;
      }
    }
    if (isPresent) {
      ++place;
      continue;
    }
    logger.LogResolvedIssue(level, remembered[place]);
    remembered.erase(remembered.begin() + static_cast<std::ptrdiff_t>(place));
  }
  bool foundNew = false;
  for (std::size_t issue = 0; issue < issues.size(); ++issue) {
    if (!marks[issue] || issues[issue].GetErrorLevel() != level) continue;
    remembered.push_back(issues[issue].GetID());
    logger.LogNewIssue(issues[issue]);
    for (std::size_t later = issue + 1; later < issues.size(); ++later) {
      if (issues[later].GetErrorLevel() == level && issues[later].GetID() == issues[issue].GetID()) {
        marks[later] = false;
      }
    }
    foundNew = true;
  }
  return foundNew;
}

/// A logger that writes down what it hears.
ResolutionLogger Recorder(Texts& heard) {
  return {[&](const SCRIssue& issue) { heard.push_back("new " + issue.GetID() + issue.GetName()); },
          [&](const SCRIssue& issue) { heard.push_back("existing " + issue.GetID() + issue.GetName()); },
          [&](SCRRuleErrorLevel level, const std::string& id) {
            heard.push_back("resolved " + SCRRule::ErrorLevelToString(level) + id);
          }};
}

SCRRule Rule(int number, SCRRuleErrorLevel level) {
  const OSComponentVersion none;
  return {OSComponentType::kVideo, std::to_string(number), none, none, none, none, "", "", {}, level};
}

SCRRuleErrorLevel AnyLevel() {
  return *rc::gen::element(SCRRuleErrorLevel::WARN, SCRRuleErrorLevel::INFO);
}

TEST(RandomResolutionTest, ItDoesWhatEachStepSays) {
  const testsupport::TestHost host;
  testsupport::CheckOnRandomCases("the resolution does what each step says", [&] {
    const SCRRuleErrorLevel level = SCRRuleErrorLevel::WARN;
    Texts remembered;
    for (int left = *rc::gen::inRange(0, 6); left > 0; --left) {
      remembered.push_back(Rule(*rc::gen::inRange(0, 4), AnyLevel()).GetID());
    }
    Texts expected = remembered;
    for (int run = *rc::gen::inRange(1, 4); run > 0; --run) {
      std::vector<SCRIssue> issues;
      for (int left = *rc::gen::inRange(0, 6); left > 0; --left) {
        const std::string component = std::to_string(*rc::gen::inRange(0, 3));
        issues.emplace_back(*testsupport::Component(OSComponentType::kVideo, component, "1"),
                            Rule(*rc::gen::inRange(0, 4), AnyLevel()));
      }
      Texts heard;
      Texts expectedHeard;
      const bool foundNew = ResolveIssuesOfErrorLevel(level, issues, remembered, Recorder(heard));
      RC_ASSERT(foundNew == ResolveStepByStep(level, issues, expected, Recorder(expectedHeard)));
      RC_ASSERT(remembered == expected);
      RC_ASSERT(heard == expectedHeard);
    }
  });
}

}  // namespace
