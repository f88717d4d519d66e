// Ranges, mask and modulus.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/checks/Checks.h"
#include "authoring/model/KnownSystems.h"
#include "authoring/model/VersionSpan.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

constexpr std::uint32_t kLargest = OSComponentVersion::kLargestPart;

std::string WithoutBlanks(std::string_view text) {
  std::string compact(text);
  std::erase(compact, ' ');
  return compact;
}

/// What a range that is not written as meant holds.
std::string Holds(const VersionRange& range) {
  const std::string text = range.ToString();
  if (text.empty()) return "so the range holds every version";
  if (!range.GetMaxVersion()) return "so the range holds exactly " + text;
  return "so the range is " + Quoted(text);
}

class VersionCheck {
 public:
  VersionCheck(Document& document, std::size_t index, const RuleElement& rule)
      : mDocument(document), mIndex(index), mRule(rule), mFilter(rule.mMask, rule.mModulus) {}

  void Run() {
    CheckSingleVersions();
    CheckFilter("version_mask", mRule.mMask);
    CheckFilter("version_mod", mRule.mModulus);
    const bool isList = HasList();
    for (const RangeElement& range : mRule.mRanges) {
      // What the text of an older rule says was looked at above.
      if (isList && !CheckText(range)) continue;
      CheckSpan(range);
    }
    CheckCoverage();
    if (IsWindows()) CheckVersionsOfWindows();
  }

 private:
  void Add(Code code, const JsonNode& node, std::string what, std::string mend) {
    mDocument.AddToRule(mIndex, code, node.mOffset, std::move(what), std::move(mend));
  }

  [[nodiscard]] bool HasList() const {
    const JsonNode* const versions = mRule.mNode->Find("versions");
    return versions != nullptr && !versions->mElements.empty();
  }

  void CheckSingleVersions() {
    const bool isList = HasList();
    for (const char* const key : {"version", "max_version", "version_mask", "version_mod"}) {
      if (isList && std::string_view(key).ends_with("version")) continue;
      const JsonNode* const node = mRule.mNode->Find(key);
      if (node == nullptr || !node->Is(JsonKind::kText) || node->mText.empty()) continue;
      if (OSComponentVersion(node->mText)) {
        CheckBehindPlus(*node, node->mText);
        continue;
      }
      Add(Code::kNotAVersion, *node,
          '"' + std::string(key) + "\" is " + Quoted(node->mText) +
              ", which is not a version, so it counts as missing",
          "Write up to four numbers with points between them, such as \"31.0.15\", or a \"+\" for the "
          "largest number "
          "there and behind.");
    }
  }

  void CheckBehindPlus(const JsonNode& node, const std::string& version) {
    const std::size_t plus = version.find('+');
    if (plus == std::string::npos || plus + 1 == version.size()) return;
    Add(Code::kBehindPlus, node, "nothing behind the \"+\" of " + Quoted(version) + " is read",
        "The \"+\" stands for the largest number in its place and in all later ones: write " +
            AsJson(version.substr(0, plus + 1)) + ", or 4294967295 for the largest number in one place.");
  }

  void CheckFilter(const char* key, const OSComponentVersion& filter) {
    const JsonNode* const node = mRule.mNode->Find(key);
    if (node == nullptr || !filter) return;
    if (mRule.mRanges.empty()) {
      Add(Code::kMaskWithoutRange, *node, '"' + std::string(key) + "\" has no effect: the rule has no ranges",
          "Add \"versions\", or take it out.");
    }
    if (std::string_view(key) != "version_mask") return;
    for (const std::uint32_t number : NumbersOf(filter)) {
      if (number == 0 || number == kLargest) continue;
      Add(Code::kPartialMask, *node,
          "the number " + std::to_string(number) +
              " of the mask keeps some bits of the version's number only",
          "Write 0 to clear a number and \"+\" to keep it and all behind it. A remainder is what "
          "\"version_mod\" is for.");
      return;
    }
  }

  /// Whether the text says what it holds.
  bool CheckText(const RangeElement& element) {
    const std::string text = WithoutBlanks(element.mNode->mText);
    if (text.empty()) {
      Add(Code::kUnlimitedRange, *element.mNode, "an empty range holds every version",
          "Write the range, or leave \"versions\" out.");
      return false;
    }
    const std::size_t hyphen = text.find('-');
    const std::string minimum = text.substr(0, hyphen);
    const std::string maximum = hyphen == std::string::npos ? std::string() : text.substr(hyphen + 1);
    for (const std::string& piece : {minimum, maximum}) {
      if (piece.empty()) continue;
      if (OSComponentVersion(piece)) {
        CheckBehindPlus(*element.mNode, piece);
        continue;
      }
      Add(Code::kNotAVersion, *element.mNode,
          Quoted(piece) + " in the range " + Quoted(element.mNode->mText) +
              " is not a version and counts as missing, " + Holds(element.mRange),
          "Write up to four numbers with points between them. \"5.0-5.+\" is all of 5, \"-6.1.+\" is up to "
          "6.1, "
          "\"7.0-+\" is from 7.0 on.");
      return false;
    }
    if (hyphen != std::string::npos && maximum.empty()) {
      Add(Code::kOpenEnd, *element.mNode,
          "the range " + Quoted(element.mNode->mText) + " has no end, " + Holds(element.mRange),
          minimum.empty()
              ? "Leave \"versions\" out to mean every version."
              : "Write " + AsJson(minimum + "-+") + " to mean from there on, or " + AsJson(minimum) + '.');
      return false;
    }
    return true;
  }

  void CheckSpan(const RangeElement& element) {
    const VersionSpan span = SpanOf(element.mRange);
    const std::string text = Quoted(element.mRange.ToString());
    if (span.IsEmpty()) {
      const VersionRange swapped(element.mRange.GetMaxVersion(), element.mRange.GetMinVersion());
      Add(Code::kReversedRange, *element.mNode,
          "the range " + text + " holds nothing: its lower end is above its upper end",
          "Swap the ends: " + AsJson(swapped.ToString()) + '.');
    } else if (!mFilter.MayReach(span)) {
      Add(Code::kUnreachableRange, *element.mNode,
          "the range " + text + " holds nothing that " + FilterText() + " can leave of a version",
          "The range is compared with what is left: write 0 where the mask or the modulus gives 0.");
    } else {
      CheckBounds(element, text);
    }
  }

  void CheckBounds(const RangeElement& element, const std::string& text) {
    for (const OSComponentVersion& bound : {element.mRange.GetMinVersion(), element.mRange.GetMaxVersion()}) {
      if (!bound) continue;
      const VersionNumbers numbers = NumbersOf(bound);
      for (std::size_t index = 0; index < numbers.size(); ++index) {
        const std::uint32_t largest = mFilter[index].Largest();
        if (numbers[index] == kLargest || numbers[index] <= largest) continue;
        static constexpr const char* kPlaces[] = {"first", "second", "third", "fourth"};
        Add(Code::kBoundOutOfReach, *element.mNode,
            "the range " + text + " has " + std::to_string(numbers[index]) + " in the " + kPlaces[index] +
                " place, where " + FilterText() + " leaves " +
                (largest == 0 ? "0" : "at most " + std::to_string(largest)),
            "The range is compared with what is left of a version: write the end in these terms.");
        return;
      }
    }
  }

  [[nodiscard]] std::string FilterText() const {
    if (mRule.mMask && mRule.mModulus) {
      return "the mask " + Quoted(mRule.mMask.ToString()) + " with the modulus " +
             Quoted(mRule.mModulus.ToString());
    }
    return mRule.mMask ? "the mask " + Quoted(mRule.mMask.ToString())
                       : "the modulus " + Quoted(mRule.mModulus.ToString());
  }

  [[nodiscard]] bool IsWindows() const {
    return mRule.mKind == OSComponentType::kOS && !mRule.mMask && !mRule.mModulus &&
           (mRule.mName == kWindows || mRule.mName == "^Windows$");
  }

  /// Finds what holds no Windows: a version without a build, and Windows 11 by the number that it is sold
  /// under.
  void CheckVersionsOfWindows() {
    bool isBeyond = !mRule.mRanges.empty();
    for (const RangeElement& element : mRule.mRanges) isBeyond &= SpanOf(element.mRange).mFirst[0] >= 11;
    for (const RangeElement& element : mRule.mRanges) {
      const VersionSpan span = SpanOf(element.mRange);
      // These two are told of above.
      if (span.IsEmpty() || WithoutBlanks(element.mNode->mText).ends_with('-')) continue;
      const std::string text = "the range " + Quoted(element.mNode->mText);
      if (isBeyond) {
        Add(Code::kNoVersionOfWindows, *element.mNode,
            text + " holds no Windows: Windows 11 has the version 10.0, too, with a build from 22000 on",
            "Write \"10.0.22000-10.0.+\" for Windows 11.");
      } else if (span.mFirst == span.mLast && span.mFirst[0] != 0 && span.mFirst[2] == 0 &&
                 span.mFirst[3] == 0) {
        const std::string number = std::to_string(span.mFirst[0]) + '.' + std::to_string(span.mFirst[1]);
        Add(Code::kNoVersionOfWindows, *element.mNode,
            text + " is exactly " + number + ".0.0, and every Windows has a build in the third place",
            "Write " + AsJson(number + '-' + number + ".+") + " for every build.");
      }
    }
  }

  /// Finds ranges that lie within one other, or within two others together. Of equal ones the first counts.
  void CheckCoverage() {
    struct Entry {
      VersionSpan mSpan;
      const RangeElement* mElement;
    };
    std::vector<Entry> entries;
    for (const RangeElement& element : mRule.mRanges) {
      const VersionSpan span = SpanOf(element.mRange);
      if (!span.IsEmpty()) entries.push_back({span, &element});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& left, const Entry& right) {
      if (left.mSpan.mFirst != right.mSpan.mFirst) return left.mSpan.mFirst < right.mSpan.mFirst;
      return right.mSpan.mLast < left.mSpan.mLast;
    });
    const Entry* widest = nullptr;
    std::vector<const Entry*> left;
    for (const Entry& entry : entries) {
      if (widest == nullptr || widest->mSpan.mLast < entry.mSpan.mLast) {
        widest = &entry;
        left.push_back(widest);
        continue;
      }
      Add(Code::kCoveredRange, *entry.mElement->mNode,
          "the range " + Quoted(entry.mElement->mRange.ToString()) + " lies within the range " +
              Quoted(widest->mElement->mRange.ToString()) + " of the same rule",
          "Take it out.");
    }
    // What is left ascends at both ends, so that only the one before and the one behind can hold one
    // together.
    for (std::size_t index = 1; index + 1 < left.size();) {
      const Entry& before = *left[index - 1];
      const Entry& behind = *left[index + 1];
      if (!Covers(Merge({before.mSpan, behind.mSpan}), {left[index]->mSpan})) {
        ++index;
        continue;
      }
      Add(Code::kCoveredRange, *left[index]->mElement->mNode,
          "the range " + Quoted(left[index]->mElement->mRange.ToString()) + " lies within the ranges " +
              Quoted(before.mElement->mRange.ToString()) + " and " +
              Quoted(behind.mElement->mRange.ToString()) + " of the same rule together",
          "Take it out.");
      left.erase(left.begin() + static_cast<std::ptrdiff_t>(index));
    }
  }

  Document& mDocument;
  std::size_t mIndex;
  const RuleElement& mRule;
  VersionFilter mFilter;
};

}  // namespace

void CheckVersions(Document& document) {
  ForEachRule(document, [&](std::size_t index, const RuleElement& rule) {
    if (!rule.IsProperty()) VersionCheck(document, index, rule).Run();
  });
}

}  // namespace authoring
