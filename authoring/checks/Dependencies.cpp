// Dependencies that can never hold beside what else the rule asks for.
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "authoring/checks/Checks.h"
#include "authoring/model/Comparisons.h"
#include "authoring/model/KnownKeys.h"
#include "authoring/model/KnownSystems.h"
#include "authoring/model/VersionSpan.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

/// Kernels beside Windows, of which a machine runs one. Beside its kernel such a machine lists its
/// distribution.
constexpr std::string_view kKernels[] = {"Linux", "FreeBSD"};

/// What is known of names of systems, each of which is looked at once.
using SystemsByName = std::unordered_map<std::string, SystemsOfName>;

/// What all that a rule asks for says about one component of the machine.
struct Demand {
  std::vector<VersionSpan> mSpans;
  std::optional<ComparedValues> mValues;
};

/// Adds the demands of a rule and of everything that it depends on. Systems and properties are looked at: a
/// machine has one of each name.
class DemandCheck {
 public:
  DemandCheck(Document& document, SystemsByName& systems, std::size_t index)
      : mDocument(document), mSystemsByName(systems), mIndex(index) {}

  void Run() {
    const RuleElement& rule = mDocument.Rules()[mIndex];
    static_cast<void>(Add(rule));
    for (const RuleElement& dependency : rule.mDependencies) {
      if (!AddAll(dependency)) return;
    }
  }

 private:
  bool AddAll(const RuleElement& dependency) {
    if (!dependency.mIsReadable) return true;
    if (!Add(dependency)) {
      mDocument.AddToRule(mIndex, Code::kDependencyNeverHolds, dependency.mNode->mOffset,
                          "the dependency on " + Quoted(dependency.mName) + " contradicts " + mOther +
                              ", so the rule hits nothing",
                          "A rule hits only when all its dependencies hold. Write two rules to mean \"or\".");
      return false;
    }
    for (const RuleElement& nested : dependency.mDependencies) {
      if (!AddAll(nested)) return false;
    }
    return true;
  }

  /// False when this cannot hold beside what was added before.
  bool Add(const RuleElement& rule) {
    if (rule.IsProperty()) return AddProperty(rule);
    return rule.mKind != OSComponentType::kOS || AddSystem(rule);
  }

  bool AddProperty(const RuleElement& rule) {
    const ComparedValues values(*rule.mNode);
    Demand& demand = mProperties[rule.mName];
    mOther = "another condition on this property";
    if (!demand.mValues) {
      demand.mValues = values;
      return true;
    }
    // What contradicts itself is told elsewhere.
    const bool wereEmpty = AreImpossible(*demand.mValues) || AreImpossible(values);
    demand.mValues->Intersect(values);
    return wereEmpty || !AreImpossible(*demand.mValues);
  }

  static bool AreImpossible(const ComparedValues& values) {
    return values.AreEmpty() || values.FindContradiction().has_value();
  }

  bool AddSystem(const RuleElement& rule) {
    if (!AddWindows(rule)) return false;
    if (Contains(kKernels, rule.mName)) {
      if (mKernel.empty()) mKernel = rule.mName;
      mOther = "that the system is " + Quoted(mKernel);
      if (mKernel != rule.mName) return false;
    }
    if (rule.mMask || rule.mModulus || rule.mRanges.empty()) return true;
    std::vector<VersionSpan> spans;
    for (const RangeElement& range : rule.mRanges) spans.push_back(SpanOf(range.mRange));
    spans = Merge(std::move(spans));
    const auto [place, isNew] = mSystems.emplace(rule.mName, Demand{spans, std::nullopt});
    if (isNew || spans.empty() || place->second.mSpans.empty()) return true;
    mOther = "another condition on the version of this system";
    place->second.mSpans = Intersect(place->second.mSpans, spans);
    return !place->second.mSpans.empty();
  }

  /// False when one condition asks for Windows and another for what no Windows is.
  bool AddWindows(const RuleElement& rule) {
    const auto [place, isNew] = mSystemsByName.try_emplace(rule.mName);
    if (isNew) place->second = SystemsOf(rule.mName);
    const SystemsOfName& systems = place->second;
    if (!systems.mMayBeWindows && mNotWindows.empty()) mNotWindows = rule.mName;
    if (!systems.mMayBeAnother && mWindows.empty()) mWindows = rule.mName;
    if (mWindows.empty() || mNotWindows.empty()) return true;
    mOther = "that the system is " + Quoted(mWindows == rule.mName ? mNotWindows : mWindows);
    return false;
  }

  static std::vector<VersionSpan> Intersect(const std::vector<VersionSpan>& left,
                                            const std::vector<VersionSpan>& right) {
    std::vector<VersionSpan> both;
    for (auto first = left.begin(), second = right.begin(); first != left.end() && second != right.end();) {
      const VersionSpan common{std::max(first->mFirst, second->mFirst),
                               std::min(first->mLast, second->mLast)};
      if (!common.IsEmpty()) both.push_back(common);
      ++(first->mLast < second->mLast ? first : second);
    }
    return both;
  }

  Document& mDocument;
  SystemsByName& mSystemsByName;
  std::size_t mIndex;
  std::map<std::string, Demand, std::less<>> mSystems;
  std::map<std::string, Demand, std::less<>> mProperties;
  std::string mKernel;
  std::string mWindows;     ///< the condition by which the system is Windows
  std::string mNotWindows;  ///< the one by which it is another
  std::string mOther;
};

}  // namespace

void CheckDependencies(Document& document) {
  SystemsByName systems;
  for (std::size_t index = 0; index < document.Rules().size(); ++index) {
    if (document.Rules()[index].mIsReadable) DemandCheck(document, systems, index).Run();
  }
}

}  // namespace authoring
