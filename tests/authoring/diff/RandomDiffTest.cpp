// What holds for the differences of any two lists on any machine.
#include <set>

#include "authoring/diff/DiffOutputs.h"
#include "tests/authoring/diff/DiffedLists.h"
#include "tests/rules/RandomRules.h"
#include "tests/support/RandomCases.h"
#include "tests/support/TestHost.h"

namespace {

namespace json = qelcore::json;
using authoring::IssueChange;
using authoring::MachineDiff;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;
using testsupport::DiffedLists;
using testsupport::ListOfRules;

using IDs = std::set<std::string>;

/// Rules of which a list can be made.
std::string AnyRules() {
  std::string rules;
  for (int left = *rc::gen::inRange(0, 6); left > 0; --left) {
    const std::string rule = *testsupport::AnyRule();
    SCRRule readable;
    if (readable.FromJSON(json::Parse(rule))) rules += (rules.empty() ? "" : ", ") + rule;
  }
  return rules;
}

OSComponentRegistry ReadMachine(const std::string& text) {
  OSComponentRegistry::Components components;
  const std::any value = json::Parse(text);
  for (const std::any& element : *json::FindArray(json::AsDictionary(value), "components")) {
    auto component = std::make_shared<OSComponent>();
    if (component->FromJSON(element)) components.push_back(std::move(component));
  }
  return OSComponentRegistry(std::move(components));
}

IDs IDsOf(const SCRBlocklist& blocklist, const OSComponentRegistry& machine) {
  qelcore::Guid matchID;
  IDs ids;
  for (const SCRIssue& issue : blocklist.MatchToOSComponents(machine, matchID)) ids.insert(issue.GetID());
  return ids;
}

IDs IDsOf(const std::vector<IssueChange>& some, const std::vector<IssueChange>& others) {
  IDs ids;
  for (const auto* const changes : {&some, &others}) {
    for (const IssueChange& change : *changes) ids.insert(change.mID);
  }
  return ids;
}

TEST(RandomDiffTest, AListDoesNotDifferFromItself) {
  const testsupport::TestHost host;
  OSComponent::EnableSupportProperties(true);
  testsupport::CheckOnRandomCases("a list does not differ from itself", [] {
    const std::string text = ListOfRules(AnyRules());
    const DiffedLists lists(text, text);
    RC_ASSERT(lists.mDiff.IsEmpty());
    RC_ASSERT(lists.mDiff.Changes().empty());
    RC_ASSERT(lists.mDiff.Warnings().empty());
    const OSComponentRegistry machine = ReadMachine(*testsupport::AnyMachine());
    const MachineDiff diff =
        CompareOnMachine({lists.mOld.mBlocklist, lists.mNew.mBlocklist}, lists.mDiff, machine);
    RC_ASSERT(diff.IsEmpty());
  });
}

TEST(RandomDiffTest, EveryIssueOfEitherListIsToldOnce) {
  const testsupport::TestHost host;
  OSComponent::EnableSupportProperties(true);
  testsupport::CheckOnRandomCases("every issue of either list is told once", [] {
    // Some rules are in both lists, and some of those stand elsewhere.
    const std::string common = AnyRules();
    const std::string more = AnyRules();
    const std::string separator = common.empty() || more.empty() ? "" : ", ";
    const DiffedLists lists(
        ListOfRules(common + separator + more),
        ListOfRules(*rc::gen::element(common, more, more + separator + common, AnyRules())));
    const OSComponentRegistry machine = ReadMachine(*testsupport::AnyMachine());
    const MachineDiff diff =
        CompareOnMachine({lists.mOld.mBlocklist, lists.mNew.mBlocklist}, lists.mDiff, machine);
    RC_ASSERT(IDsOf(diff.mNew, diff.mOngoing) == IDsOf(lists.mNew.mBlocklist, machine));
    RC_ASSERT(IDsOf(diff.mResolved, diff.mOngoing) == IDsOf(lists.mOld.mBlocklist, machine));
    RC_ASSERT(diff.mNew.size() + diff.mOngoing.size() + diff.mResolved.size() ==
              IDsOf(diff.mNew, diff.mOngoing).size() + diff.mResolved.size());
    // What users notice, the lists differ in.
    RC_ASSERT(diff.IsEmpty() || !lists.mDiff.IsEmpty());
    RC_ASSERT(json::Parse(WriteJson(diff, {"machine"})).has_value());
    RC_ASSERT(json::Parse(WriteJson(lists.mDiff, {"old", "new"})).has_value());
  });
}

}  // namespace
