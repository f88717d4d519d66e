// One rule: reading, writing, identity, matching. Everything is compared with a second reading and matching.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/MatchExplanation.h"
#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/fuzz/support/JsonMutator.h"
#include "tests/fuzz/support/Machines.h"
#include "tests/fuzz/support/QuietHost.h"
#include "tests/fuzz/support/Require.h"

namespace {

namespace json = qelcore::json;
using fuzz::Require;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRRule;

void CheckContent(const SCRRule& rule, const testsupport::NaiveRule& naive) {
  Require(qelcore::utility::ComponentTypeToString(rule.GetType()) == naive.mType, "the kind is read");
  Require(rule.GetName() == naive.mName, "the name is read");
  Require(rule.GetInfoMessage() == naive.mMessage, "the message is read");
  Require(rule.GetInfoURL() == naive.mLink, "the link is read");
  Require(SCRRule::ErrorLevelToString(rule.GetErrorLevel()) == naive.mLevel, "the level is read");
  Require(rule.GetVersions().size() == naive.mRanges.size(), "the ranges are read");
  Require(rule.GetDependencies().size() == naive.mDependencies.size(), "the dependencies are read");
  Require(rule.GetPropertyComparisons().size() ==
              naive.mTextComparisons.size() + naive.mIntegerComparisons.size(),
          "the comparisons are read");
}

void CheckWriting(const SCRRule& rule) {
  const std::string text = json::Serialise(rule.ToJSON());
  SCRRule again;
  Require(again.FromJSON(json::Parse(text)), "a written rule can be read");
  Require(json::Serialise(again.ToJSON()) == text, "a rule is written as it was read");
  // "version" becomes a range, which is all that a second writing may change.
  SCRRule third;
  Require(third.FromJSON(again.ToJSON()) && third == again, "a written rule reads back equal");
  Require(again.GetID() == third.GetID(), "equal rules have one identifier");
  const SCRRule copy = rule;  // NOLINT(performance-unnecessary-copy-initialization)
  Require(copy == rule && copy.GetID() == rule.GetID(), "a copy is equal");
}

class Hits : public qelsystemcompatibilityreport::MatchObserver {
 public:
  OSComponentRegistry::Components mHits;

  void BeginCandidate(const std::shared_ptr<OSComponent>& component) override { mOpen.push_back(component); }
  void EndCandidate(qelsystemcompatibilityreport::MatchVerdict verdict) override {
    const bool isHit = verdict == qelsystemcompatibilityreport::MatchVerdict::kHit;
    if (isHit && mOpen.size() == 1) mHits.push_back(mOpen.back());
    mOpen.pop_back();
  }

 private:
  OSComponentRegistry::Components mOpen;  ///< the candidate, and those of dependencies
};

void CheckExplanation(const SCRRule& rule, const OSComponentRegistry& registry,
                      const OSComponentRegistry::Components& hits, const std::vector<std::string>& logged) {
  qelsystemcompatibilityreport::ExpressionBudget::Start();
  Hits explained;
  qelsystemcompatibilityreport::ExplainMatch(rule, registry, explained);
  Require(explained.mHits == hits, "the explained match hits what the silent one hits");
  Require(fuzz::QuietHost::Instance().TakeExceptions() == logged, "and logs what that logs");
}

void CheckMatching(const SCRRule& rule, const testsupport::NaiveRule& naive,
                   const OSComponentRegistry& registry) {
  qelsystemcompatibilityreport::ExpressionBudget::Start();
  static_cast<void>(fuzz::QuietHost::Instance().TakeExceptions());
  const auto hits = rule.FindMatchingOSComponents(registry);
  const std::vector<std::string> logged = fuzz::QuietHost::Instance().TakeExceptions();
  CheckExplanation(rule, registry, hits, logged);
  if (!fuzz::IsHarmless(naive)) return;
  const auto expected = testsupport::MatchNaively(naive, fuzz::NaiveMachineOf(registry));
  Require(hits.size() == expected.mHits.size(), "the rule hits what the naive matcher hits");
  for (std::size_t index = 0; index < hits.size(); ++index) {
    const auto& all = registry.GetAllComponents();
    const std::size_t place = expected.mHits[index];
    Require(place < all.size() ? hits[index] == all[place]
                               : hits[index]->GetType() == qelcore::utility::OSComponentType::kFile,
            "the hits are the registry's components, in its order");
  }
  Require(logged == expected.mLogged, "each refused expression is logged once for each candidate");
}

}  // namespace

std::span<const std::string_view> fuzz::JsonVocabulary() {
  static constexpr std::string_view kWords[] = {"name",
                                                "type",
                                                "version",
                                                "max_version",
                                                "versions",
                                                "version_mask",
                                                "version_mod",
                                                "dependencies",
                                                "error_level",
                                                "info_message",
                                                "info_url",
                                                "osc_version",
                                                "osblc_version",
                                                "value",
                                                "eq",
                                                "ne",
                                                "lt",
                                                "lte",
                                                "gt",
                                                "gte",
                                                "regex",
                                                "ieq",
                                                "ine",
                                                "ilt",
                                                "ilte",
                                                "igt",
                                                "igte",
                                                "OS",
                                                "Video",
                                                "Audio",
                                                "Network",
                                                "File",
                                                "Property",
                                                "INFO",
                                                "WARN",
                                                "ERROR",
                                                "FATAL",
                                                "Windows",
                                                "NVIDIA Quadro P600",
                                                "^NVIDIA .*$",
                                                "WAN Miniport (PPTP)",
                                                "memory.mb",
                                                "session",
                                                "wayland",
                                                "16384",
                                                "9223372036854775808",
                                                "-9223372036854775809",
                                                "/usr/lib/libexample.so",
                                                "C:\\old.dll",
                                                "10.0.17763.1",
                                                "0.0.4.0-0.0.4.+",
                                                "-6.1.+",
                                                "0.0.+",
                                                "0.0.10.+",
                                                "",
                                                "+",
                                                "-",
                                                " ",
                                                "(",
                                                ")",
                                                "[a-z]",
                                                "[^a]",
                                                "[[:alpha:]]",
                                                "{1,2}",
                                                "(?:",
                                                "\\b",
                                                "\\B",
                                                "|",
                                                ".*",
                                                "^",
                                                "$",
                                                "\\d+",
                                                "\\x41",
                                                "\\u0041"};
  return kWords;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::QuietHost::Instance();
  static const qelcore::host::RecordedFilesScope files(fuzz::MachineFiles());
  OSComponent::EnableSupportProperties(true);
  SCRRule::ForgetFileComponents();

  const std::string text(data, data + size);
  const std::any root = json::Parse(text);
  SCRRule rule;
  testsupport::NaiveRule naive;
  const bool isRead = rule.FromJSON(root);
  Require(isRead == testsupport::ReadNaiveRule(root, naive), "both readings take the same rules");
  if (!isRead) {
    // What was read until then may be used all the same.
    static_cast<void>(rule.FindMatchingOSComponents(fuzz::ReadMachine(root)));
    static_cast<void>(rule.ToJSON());
    static_cast<void>(rule.GetID());
    static_cast<void>(fuzz::QuietHost::Instance().TakeExceptions());
    return 0;
  }
  CheckContent(rule, naive);
  Require(SCRRule(text) == rule, "a rule made from its text is that rule");
  CheckWriting(rule);
  CheckMatching(rule, naive, fuzz::ReadMachine(root));
  return 0;
}
