#include "tests/support/NaiveMatcher.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <regex>

#include "platform/qelcore/Json.h"

namespace testsupport {

namespace {

using qelcore::json::Array;
using qelcore::json::Dictionary;

/// A value of the wrong JSON type.
struct WrongType {};

const std::any* Member(const Dictionary& object, const std::string& key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : found->second.get();
}

std::optional<std::string> MaybeText(const Dictionary& object, const std::string& key) {
  const std::any* const member = Member(object, key);
  if (member == nullptr) return std::nullopt;
  const auto* const text = std::any_cast<std::string>(member);
  if (text == nullptr) throw WrongType();
  return *text;
}

std::string TextOrEmpty(const Dictionary& object, const std::string& key) {
  return MaybeText(object, key).value_or("");
}

std::optional<std::uint64_t> MaybeInteger(const Dictionary& object, const std::string& key) {
  const std::any* const member = Member(object, key);
  if (member == nullptr) return std::nullopt;
  if (const auto* const number = std::any_cast<std::int64_t>(member)) {
    return static_cast<std::uint64_t>(*number);
  }
  if (const auto* const number = std::any_cast<std::uint64_t>(member)) return *number;
  throw WrongType();
}

std::optional<Array> MaybeArray(const Dictionary& object, const std::string& key) {
  const std::any* const member = Member(object, key);
  if (member == nullptr) return std::nullopt;
  const auto* const array = std::any_cast<Array>(member);
  if (array == nullptr) throw WrongType();
  return *array;
}

bool IsLessOrEqual(const NaiveVersion& left, const NaiveVersion& right) {
  for (std::size_t part = 0; part < 4; ++part) {
    if (left.mParts[part] < right.mParts[part]) return true;
    if (left.mParts[part] > right.mParts[part]) return false;
  }
  return true;
}

bool Holds(const NaiveRange& range, const NaiveVersion& version) {
  if (!range.mMinimum.mIsSet && !range.mMaximum.mIsSet) return true;
  if (!range.mMaximum.mIsSet) return version.mParts == range.mMinimum.mParts;
  return IsLessOrEqual(range.mMinimum, version) && IsLessOrEqual(version, range.mMaximum);
}

void ReadVersionFields(const Dictionary& object, const NaiveVersion& version, NaiveRule& rule) {
  if (const auto versions = MaybeArray(object, "versions")) {
    for (const std::any& element : *versions) {
      if (std::any_cast<std::string>(&element) == nullptr) throw WrongType();
    }
    for (const std::any& element : *versions) {
      rule.mRanges.push_back(ReadNaiveRange(std::any_cast<std::string>(element)));
    }
  }
  if (rule.mRanges.empty()) {
    const std::string maximum = TextOrEmpty(object, "max_version");
    if (!maximum.empty()) {
      rule.mRanges.push_back({version, ReadNaiveVersion(maximum)});
    } else if (version.mIsSet) {
      rule.mRanges.push_back({version, NaiveVersion()});
    }
  }
  rule.mMask = ReadNaiveVersion(TextOrEmpty(object, "version_mask"));
  rule.mModulus = ReadNaiveVersion(TextOrEmpty(object, "version_mod"));
}

void ReadComparisons(const Dictionary& object, NaiveRule& rule) {
  for (const char* const key : {"eq", "ne", "lt", "lte", "gt", "gte", "regex"}) {
    if (const auto operand = MaybeText(object, key)) rule.mTextComparisons.emplace_back(key, *operand);
  }
  for (const char* const key : {"ieq", "ine", "ilt", "ilte", "igt", "igte"}) {
    if (const auto operand = MaybeText(object, key)) rule.mIntegerComparisons.emplace_back(key, *operand);
  }
}

template <typename Value>
bool Relates(const std::string& relation, const Value& left, const Value& right) {
  if (relation == "eq") return left == right;
  if (relation == "ne") return !(left == right);
  if (relation == "lt") return left < right;
  if (relation == "lte") return !(right < left);
  if (relation == "gt") return right < left;
  return !(left < right);
}

std::vector<unsigned char> Bytes(const std::string& text) {
  return {text.begin(), text.end()};
}

/// By hand, digit by digit.
std::int64_t Number(const std::string& text) {
  constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
  std::size_t place = text.find_first_not_of(" \t\n\v\f\r");
  if (place == std::string::npos) return 0;
  const bool isNegative = text[place] == '-';
  if (text[place] == '-' || text[place] == '+') ++place;
  std::int64_t number = 0;
  for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place) {
    const std::int64_t digit = text[place] - '0';
    if (isNegative) {
      if (number < (smallest + digit) / 10) return smallest;
      number = number * 10 - digit;
    } else {
      if (number > (largest - digit) / 10) return largest;
      number = number * 10 + digit;
    }
  }
  return number;
}

bool MatchesExpression(const std::string& expression, const std::string& text) {
  return std::regex_match(text, std::regex(expression, std::regex::ECMAScript));
}

class Matching {
 public:
  Matching(const NaiveMachine& machine, const NaiveSwitches& switches)
      : mMachine(machine), mSwitches(switches) {}

  std::vector<std::size_t> Find(const NaiveRule& rule) {
    std::vector<std::size_t> hits;
    if (rule.mType.empty()) return hits;
    if (rule.mType == "File") {
      const auto file = mMachine.mFiles.find(rule.mName);
      if (rule.mName.empty() || file == mMachine.mFiles.end()) return hits;
      const NaiveComponent component{"File", file->first, ReadNaiveVersion(file->second), ""};
      if (IsHit(rule, component)) hits.push_back(mMachine.mComponents.size());
      return hits;
    }
    for (std::size_t place = 0; place < mMachine.mComponents.size(); ++place) {
      const NaiveComponent& candidate = mMachine.mComponents[place];
      if (candidate.mType == rule.mType && IsHit(rule, candidate)) hits.push_back(place);
    }
    return hits;
  }

  std::vector<std::string> mLogged;

 private:
  bool IsHit(const NaiveRule& rule, const NaiveComponent& candidate) {
    if (mSwitches.mByType) return true;
    if (rule.mType == "Property") {
      if (!mMachine.mSupportsProperties) return false;
      if (!MatchesProperty(rule, candidate)) return false;
    } else {
      if (!mSwitches.mByName && !PassesVersionTest(rule, candidate.mVersion)) return false;
      if (rule.mType != "File" && !PassesNameTest(rule.mName, candidate.mName)) return false;
    }
    for (const NaiveRule& dependency : rule.mDependencies) {
      if (Find(dependency).empty()) return false;
    }
    return true;
  }

  static bool PassesVersionTest(const NaiveRule& rule, NaiveVersion version) {
    for (std::size_t part = 0; part < 4; ++part) {
      if (rule.mMask.mIsSet) version.mParts[part] &= rule.mMask.mParts[part];
      if (rule.mModulus.mIsSet) {
        const std::uint32_t by = rule.mModulus.mParts[part];
        version.mParts[part] = by == 0 ? 0 : version.mParts[part] % by;
      }
    }
    return rule.mRanges.empty() ||
           std::any_of(rule.mRanges.begin(), rule.mRanges.end(),
                       [&](const NaiveRange& range) { return Holds(range, version); });
  }

  bool PassesNameTest(const std::string& ruleName, const std::string& name) {
    if (ruleName.empty() || name.empty()) return false;
    if (ruleName == name) return true;
    try {
      return MatchesExpression(ruleName, name);
    } catch (const std::regex_error&) {
      mLogged.emplace_back("qelsystemcompatibilityreport::SCRRule::FindMatchingOSComponents");
      return false;
    }
  }

  bool MatchesProperty(const NaiveRule& rule, const NaiveComponent& candidate) {
    if (candidate.mType != "Property" || candidate.mName != rule.mName) return false;
    const std::string& value = candidate.mValue;
    bool allHold = true;
    if (!rule.mTextComparisons.empty()) {
      for (const auto& [relation, operand] : rule.mTextComparisons) {
        try {
          const bool holds = relation == "regex" ? MatchesExpression(operand, value)
                                                 : Relates(relation, Bytes(value), Bytes(operand));
          allHold = allHold && holds;
        } catch (const std::regex_error&) {
          mLogged.emplace_back("qelsystemcompatibilityreport::SCRRule::MatchesPropertyComponent");
          return false;
        }
      }
      return allHold;
    }
    for (const auto& [relation, operand] : rule.mIntegerComparisons) {
      allHold = allHold && Relates(relation.substr(1), Number(value), Number(operand));
    }
    return allHold;
  }

  const NaiveMachine& mMachine;
  NaiveSwitches mSwitches;
};

}  // namespace

NaiveVersion ReadNaiveVersion(const std::string& text) {
  NaiveVersion version;
  std::size_t place = 0;
  for (std::size_t part = 0; part < 4; ++part) {
    if (place < text.size() && text[place] == '+') {
      for (; part < 4; ++part) version.mParts[part] = 0xFFFFFFFF;
      version.mIsSet = true;
      return version;
    }
    std::uint64_t number = 0;
    const std::size_t start = place;
    for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place) {
      number = number * 10 + static_cast<std::uint64_t>(text[place] - '0');
      if (number > 0xFFFFFFFF) return {};
    }
    if (place == start) return {};
    version.mParts[part] = static_cast<std::uint32_t>(number);
    if (place == text.size()) {
      version.mIsSet = true;
      return version;
    }
    if (text[place] != '.') return {};
    ++place;
  }
  return {};
}

NaiveRange ReadNaiveRange(const std::string& text) {
  std::string compact;
  for (const char character : text) {
    if (character != ' ') compact += character;
  }
  const std::size_t hyphen = compact.find('-');
  if (hyphen == std::string::npos) return {ReadNaiveVersion(compact), NaiveVersion()};
  return {ReadNaiveVersion(compact.substr(0, hyphen)), ReadNaiveVersion(compact.substr(hyphen + 1))};
}

NaiveComponent ReadNaiveComponent(const std::any& json) {
  const auto& object = std::any_cast<const Dictionary&>(json);
  return {TextOrEmpty(object, "type"), TextOrEmpty(object, "name"),
          ReadNaiveVersion(TextOrEmpty(object, "version")), TextOrEmpty(object, "value")};
}

bool ReadNaiveRule(const std::any& json, NaiveRule& rule) {
  rule = NaiveRule();
  rule.mLevel = "INFO";
  const auto* const object = std::any_cast<Dictionary>(&json);
  if (object == nullptr) return false;
  try {
    const auto type = MaybeText(*object, "type");
    const auto name = MaybeText(*object, "name");
    const NaiveVersion version = ReadNaiveVersion(TextOrEmpty(*object, "version"));
    static_cast<void>(MaybeText(*object, "value"));
    static_cast<void>(MaybeInteger(*object, "osc_version"));
    constexpr std::array kTypes{"OS", "Video", "Audio", "Network", "File", "Property"};
    if (!type || !name || std::find(kTypes.begin(), kTypes.end(), *type) == kTypes.end()) return false;
    const auto format = MaybeInteger(*object, "osblc_version");
    if (format && (*format & 0xFFFFFFFF) == 0) return false;

    rule.mType = *type;
    rule.mName = *name;
    if (*type == "Property") {
      ReadComparisons(*object, rule);
    } else {
      ReadVersionFields(*object, version, rule);
    }
    rule.mMessage = TextOrEmpty(*object, "info_message");
    rule.mLink = TextOrEmpty(*object, "info_url");
    if (const auto dependencies = MaybeArray(*object, "dependencies")) {
      for (const std::any& element : *dependencies) {
        NaiveRule dependency;
        if (!ReadNaiveRule(element, dependency)) dependency = NaiveRule();
        rule.mDependencies.push_back(dependency);
      }
    }
    const std::string level = TextOrEmpty(*object, "error_level");
    if (level == "WARN" || level == "ERROR" || level == "FATAL") rule.mLevel = level;
    return true;
  } catch (const WrongType&) {
    return false;
  }
}

NaiveOutcome MatchNaively(const NaiveRule& rule, const NaiveMachine& machine, const NaiveSwitches& switches) {
  Matching matching(machine, switches);
  NaiveOutcome outcome;
  outcome.mHits = matching.Find(rule);
  outcome.mLogged = std::move(matching.mLogged);
  return outcome;
}

}  // namespace testsupport
