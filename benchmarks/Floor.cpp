// The least that gives the same answer: nothing is copied that can be looked at, versions are compared as
// words, no expression is compiled for a name that cannot match it, and each issue is put in its place once.
#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <regex>
#include <unordered_map>
#include <utility>

#include "benchmarks/FloorExpression.h"
#include "benchmarks/FloorList.h"
#include "benchmarks/Judge.h"
#include "benchmarks/ReportTexts.h"

namespace benchmarks {

namespace {

constexpr int kFile = 4;
constexpr int kProperty = 5;

struct FloorComponent {
  int mKind = -1;
  std::string_view mName;
  std::string_view mValue;
  FloorVersion mVersion;
  std::uint32_t mRank = 0;  ///< equal for equal components, else in their order
};

struct FloorIssue {
  const FloorRule* mRule = nullptr;
  const FloorComponent* mComponent = nullptr;
  FloorTexts mTexts;
};

constexpr auto kSyntax = std::regex_constants::ECMAScript | std::regex_constants::nosubs;

/// An expression, compiled once for all candidates of a rule.
struct Compiled {
  std::regex mExpression;
  bool mIsWellFormed = false;
};

/// What is known of a rule's name once a candidate needed it.
struct Name {
  std::string mPiece;
  std::optional<Compiled> mExpression;
};

bool ComesBefore(const FloorComponent& left, const FloorComponent& right) {
  if (left.mKind != right.mKind) return left.mKind < right.mKind;
  if (const int order = left.mName.compare(right.mName)) return order < 0;
  if (!(left.mVersion == right.mVersion)) return left.mVersion <= right.mVersion;
  return left.mValue < right.mValue;
}

FloorVersion Transformed(FloorVersion version, const FloorRule& rule) {
  if (rule.mMask.mIsSet) {
    version.mHigh &= rule.mMask.mHigh;
    version.mLow &= rule.mMask.mLow;
  }
  if (!rule.mModulus.mIsSet) return version;
  FloorVersion reduced;
  for (int part = 0; part < 4; ++part) {
    const std::uint32_t by = rule.mModulus.Part(part);
    if (by != 0) reduced.SetPart(part, version.Part(part) % by);
  }
  return reduced;
}

bool Holds(int propertyOperator, long long comparison) {
  switch (propertyOperator) {
    case 0:
      return comparison == 0;
    case 1:
      return comparison != 0;
    case 2:
      return comparison < 0;
    case 3:
      return comparison <= 0;
    case 4:
      return comparison > 0;
    default:
      return comparison >= 0;
  }
}

long long ToInteger(std::string_view text) {
  return std::strtoll(std::string(text).c_str(), nullptr, 10);
}

class FloorJudge : public Judge {
 public:
  explicit FloorJudge(const Machine& machine) : mMachine(machine), mSorted(machine.mComponents.size()) {
    for (const MachineComponent& component : mMachine.mComponents) {
      mComponents.push_back({static_cast<int>(component.mType), component.mName, component.mValue,
                             ReadFloorVersion(component.mVersion)});
    }
    for (const FloorComponent& component : mComponents) {
      mOfKind[static_cast<std::size_t>(component.mKind)].push_back(&component);
    }
  }

  Verdict JudgeMachine(const std::string& blocklistPath) override {
    mList.Read(blocklistPath);
    mTimesLogged = 0;
    mFiles.clear();
    RankComponents();
    std::vector<FloorIssue> issues = FindIssues();
    // The same comparisons on the same beginning give the same order, also where issues tie.
    std::sort(issues.begin(), issues.end(), [](const FloorIssue& left, const FloorIssue& right) {
      if (left.mRule->mLevel != right.mRule->mLevel) return left.mRule->mLevel > right.mRule->mLevel;
      if (IsBefore(*left.mComponent, *right.mComponent)) return true;
      if (IsBefore(*right.mComponent, *left.mComponent)) return false;
      return left.mTexts.mMessage < right.mTexts.mMessage;
    });
    return {FloorGuidText(mList.Identify(HashMachine())), Report(issues), mTimesLogged};
  }

  bool IsUnchanged(const std::string& blocklistPath, const std::string& matchID) override {
    mList.Read(blocklistPath);
    return FloorGuidText(mList.Identify(HashMachine())) == matchID;
  }

 private:
  /// Files that were found have no rank.
  static bool IsBefore(const FloorComponent& left, const FloorComponent& right) {
    if (left.mKind != kFile && right.mKind != kFile) return left.mRank < right.mRank;
    return ComesBefore(left, right);
  }

  void RankComponents() {
    std::iota(mSorted.begin(), mSorted.end(), std::size_t{0});
    std::sort(mSorted.begin(), mSorted.end(), [&](std::size_t left, std::size_t right) {
      return ComesBefore(mComponents[left], mComponents[right]);
    });
    mRanks = 0;
    for (std::size_t index = 0; index < mSorted.size(); ++index) {
      if (index > 0 && ComesBefore(mComponents[mSorted[index - 1]], mComponents[mSorted[index]])) ++mRanks;
      mComponents[mSorted[index]].mRank = mRanks;
    }
  }

  XXH128_canonical_t HashMachine() const {
    std::string all;
    std::string bytes;
    XXH128_canonical_t canonical;
    for (const FloorComponent& component : mComponents) {
      bytes.clear();
      AppendComponentBytes(component.mKind, component.mName, component.mVersion, component.mValue, bytes);
      XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes.data(), bytes.size()));
      all.append(reinterpret_cast<const char*>(canonical.digest), sizeof canonical.digest);
    }
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(all.data(), all.size()));
    return canonical;
  }

  std::vector<FloorIssue> FindIssues() {
    std::vector<FloorIssue> issues;
    for (const FloorRule& rule : mList.Rules()) {
      const FloorTexts& defaults = mList.Defaults(rule.mKind);
      FloorTexts texts = rule.mTexts;
      if (texts.mMessage.empty()) {
        texts = {defaults.mMessage, texts.mURL.empty() ? defaults.mURL : texts.mURL};
      }
      ForEachHit(rule, [&](const FloorComponent& component) {
        issues.push_back({&rule, &component, texts});
        return true;
      });
    }
    return issues;
  }

  /// Calls `onHit` for every hit until it returns false.
  template <typename OnHit>
  void ForEachHit(const FloorRule& rule, OnHit&& onHit) {
    if (rule.mKind == kFile) {
      const FloorComponent* const file = FindFile(rule.mName);
      if (file != nullptr && HoldsVersion(rule, file->mVersion) && HasDependencies(rule)) onHit(*file);
      return;
    }
    std::optional<Name> name;
    std::optional<bool> hasDependencies;
    for (const FloorComponent* const component : mOfKind[static_cast<std::size_t>(rule.mKind)]) {
      const bool passes =
          rule.mKind == kProperty
              ? component->mName == rule.mName && HoldsValue(rule, component->mValue)
              : HoldsVersion(rule, component->mVersion) && HoldsName(rule.mName, component->mName, name);
      if (!passes) continue;
      if (!hasDependencies) hasDependencies = HasDependencies(rule);
      if (*hasDependencies && !onHit(*component)) return;
    }
  }

  bool HasDependencies(const FloorRule& rule) {
    for (std::uint32_t index = rule.mDependencies.mBegin; index < rule.mDependencies.mEnd; ++index) {
      bool found = false;
      ForEachHit(mList.Dependency(index), [&](const FloorComponent&) { return !(found = true); });
      if (!found) return false;
    }
    return true;
  }

  const FloorComponent* FindFile(std::string_view path) {
    const auto version = mMachine.mFileVersions.find(path);
    if (version == mMachine.mFileVersions.end()) return nullptr;
    return &mFiles.try_emplace(path, FloorComponent{kFile, path, {}, ReadFloorVersion(version->second), 0})
                .first->second;
  }

  bool HoldsVersion(const FloorRule& rule, const FloorVersion& given) const {
    if (rule.mRanges.mBegin == rule.mRanges.mEnd) return true;
    const FloorVersion version = Transformed(given, rule);
    for (std::uint32_t index = rule.mRanges.mBegin; index < rule.mRanges.mEnd; ++index) {
      const FloorRange& range = mList.Range(index);
      const bool holds = range.mMaximum.mIsSet ? range.mMinimum <= version && version <= range.mMaximum
                                               : !range.mMinimum.mIsSet || version == range.mMinimum;
      if (holds) return true;
    }
    return false;
  }

  bool HoldsName(std::string_view expression, std::string_view text, std::optional<Name>& name) {
    if (expression.empty() || text.empty()) return false;
    if (expression == text) return true;
    if (!name) name = Name{FindRequiredPiece(expression), {}};
    return text.find(name->mPiece) != std::string_view::npos && Matches(expression, text, name->mExpression);
  }

  bool Matches(std::string_view expression, std::string_view text, std::optional<Compiled>& compiled) {
    if (!compiled) {
      compiled.emplace();
      try {
        compiled->mExpression.assign(expression.begin(), expression.end(), kSyntax);
        compiled->mIsWellFormed = true;
      } catch (const std::regex_error&) {
        compiled->mIsWellFormed = false;
      }
    }
    if (compiled->mIsWellFormed) return std::regex_match(text.begin(), text.end(), compiled->mExpression);
    ++mTimesLogged;
    return false;
  }

  bool HoldsValue(const FloorRule& rule, std::string_view value) {
    // When there are comparisons of texts they decide alone.
    bool hasTexts = false;
    bool textsHold = true;
    bool integersHold = true;
    const std::size_t timesLoggedBefore = mTimesLogged;
    for (std::uint32_t index = rule.mComparisons.mBegin; index < rule.mComparisons.mEnd; ++index) {
      const auto& [comparison, operand] = mList.Comparison(index);
      if (comparison >= 6 && comparison < 12) {
        const long long left = ToInteger(value);
        const long long right = ToInteger(operand);
        integersHold &= Holds(comparison - 6, left < right ? -1 : left > right ? 1 : 0);
        continue;
      }
      hasTexts = true;
      std::optional<Compiled> compiled;
      textsHold &=
          comparison == 12 ? Matches(operand, value, compiled) : Holds(comparison, value.compare(operand));
    }
    if (!hasTexts) return integersHold;
    return textsHold && mTimesLogged == timesLoggedBefore;
  }

  std::string Report(const std::vector<FloorIssue>& issues) {
    std::vector<std::vector<const FloorIssue*>> ofRank(std::size_t{mRanks} + 1);
    for (const FloorIssue& issue : issues) {
      if (issue.mComponent->mKind != kFile) ofRank[issue.mComponent->mRank].push_back(&issue);
    }
    std::string text(kHeading);
    int kind = 0;
    for (const FloorComponent& component : mComponents) {
      if (component.mKind != kind) {
        kind = component.mKind;
        text.append("\n").append(76, '-').append("\n");
      }
      AppendName(component, text);
      if (kind == kProperty) {
        text.append(kValueSeparator).append(component.mValue);
      } else {
        text.append(kVersionPrefix);
        AppendFloorVersion(component.mVersion, text);
      }
      text += '\n';
      const std::vector<const FloorIssue*>& own = ofRank[component.mRank];
      if (!own.empty()) text += kIssuesLabel;
      for (std::size_t index = 0; index < own.size(); ++index) AppendIssue(index + 1, *own[index], text);
    }
    bool isFirst = true;
    for (const FloorIssue& issue : issues) {
      if (issue.mComponent->mKind != kFile) continue;
      if (std::exchange(isFirst, false)) text.append("\n").append(76, '-').append("\n");
      AppendName(*issue.mComponent, text);
      if (issue.mComponent->mVersion.mIsSet) {
        text += kVersionPrefix;
        AppendFloorVersion(issue.mComponent->mVersion, text);
      }
      text.append("\n").append(kIssuesLabel);
      AppendIssue(1, issue, text);
    }
    text.append("\n").append(76, '_').append("\n\n").append(kDebugSettings);
    return text;
  }

  static void AppendName(const FloorComponent& component, std::string& text) {
    const auto kind = static_cast<qelcore::utility::OSComponentType>(component.mKind);
    text.append("[").append(LabelOf(kind)).append("] ").append(component.mName);
  }

  void AppendIssue(std::size_t number, const FloorIssue& issue, std::string& text) {
    text.append(std::to_string(number)).append(".\t").append(issue.mTexts.mMessage).append("\n");
    if (!issue.mTexts.mURL.empty()) {
      text.append("\t").append(kURL).append(" ").append(issue.mTexts.mURL).append("\n");
    }
    text.append("\t").append(kID).append("  HASH:");
    text.append(FloorGuidText(mList.Hash(*issue.mRule, issue.mTexts))).append("\n");
  }

  Machine mMachine;
  std::vector<FloorComponent> mComponents;
  std::array<std::vector<const FloorComponent*>, 6> mOfKind;
  std::vector<std::size_t> mSorted;
  std::uint32_t mRanks = 0;
  FloorList mList;
  std::unordered_map<std::string_view, FloorComponent> mFiles;
  std::size_t mTimesLogged = 0;
};

}  // namespace

std::unique_ptr<Judge> MakeFloorJudge(const Machine& machine) {
  return std::make_unique<FloorJudge>(machine);
}

}  // namespace benchmarks
