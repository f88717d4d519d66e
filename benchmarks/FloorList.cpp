#include "benchmarks/FloorList.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "platform/qelcore/Components.h"

namespace benchmarks {

namespace dom = simdjson::dom;

namespace {

constexpr std::array<std::string_view, 6> kKinds{"OS", "Video", "Audio", "Network", "File", "Property"};
constexpr std::array<std::string_view, 13> kOperators{"eq",  "ne",  "lt",   "lte", "gt",   "gte",  "ieq",
                                                      "ine", "ilt", "ilte", "igt", "igte", "regex"};
constexpr int kProperty = 5;

template <typename Table>
std::uint32_t Size(const Table& table) {
  return static_cast<std::uint32_t>(table.size());
}

int KindFrom(std::string_view text) {
  const auto found = std::find(kKinds.begin(), kKinds.end(), text);
  if (found == kKinds.end()) throw std::runtime_error("a rule has no known kind");
  return static_cast<int>(found - kKinds.begin());
}

std::int32_t LevelFrom(std::string_view text) {
  return text == "WARN" ? 1 : text == "ERROR" ? 2 : text == "FATAL" ? 3 : 0;
}

template <typename Number>
void AppendNumber(Number number, std::string& bytes) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void AppendHash(XXH128_hash_t hash, std::string& bytes) {
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, hash);
  bytes.append(reinterpret_cast<const char*>(canonical.digest), sizeof canonical.digest);
}

}  // namespace

void FloorList::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto length = static_cast<std::size_t>(file.tellg());
  mText.resize(length + simdjson::SIMDJSON_PADDING);
  file.seekg(0);
  if (!file.read(mText.data(), static_cast<std::streamsize>(length)))
    throw std::runtime_error("no such file");
  mRules.clear();
  mDependencies.clear();
  mRanges.clear();
  mComparisons.clear();
  mBytes.clear();
  mDefaults = {};
  mSecondWarning = {};
  const dom::object document = mParser.parse(mText.data(), length, false);
  dom::array rules;
  dom::object defaults;
  bool hasVersion = false;
  for (const auto [key, value] : document) {
    if (key == "blocklist_version") {
      hasVersion = std::uint64_t{value} != 0;
    } else if (key == "blocklist") {
      rules = value;
    } else if (key == "default_info") {
      ReadDefaults(value);
    } else if (key == "second_warning") {
      mSecondWarning = value;
    }
  }
  if (!hasVersion) return;
  mRules.reserve(rules.size());
  for (const dom::element element : rules) mRules.push_back(ReadRule(element));
  mBytes.clear();
}

void FloorList::ReadDefaults(dom::object defaults) {
  for (const auto [kind, texts] : defaults) {
    FloorTexts& entry = mDefaults[static_cast<std::size_t>(KindFrom(kind))];
    for (const auto [key, value] : dom::object(texts)) {
      if (key == "info_message") entry.mMessage = value;
      if (key == "info_url") entry.mURL = value;
    }
  }
}

void FloorList::ReadRanges(dom::array texts) {
  for (std::string_view text : texts) {
    if (text.find(' ') != std::string_view::npos) {
      mBytes.clear();
      std::copy_if(text.begin(), text.end(), std::back_inserter(mBytes), [](char one) { return one != ' '; });
      text = mBytes;
    }
    const std::size_t hyphen = text.find('-');
    FloorRange& range = mRanges.emplace_back();
    range.mMinimum = ReadFloorVersion(text.substr(0, hyphen));
    if (hyphen != std::string_view::npos) range.mMaximum = ReadFloorVersion(text.substr(hyphen + 1));
  }
}

FloorRule FloorList::ReadRule(dom::object object) {
  FloorRule rule;
  std::string_view version;
  std::string_view mostVersion;
  std::string_view value;
  dom::array dependencies;
  bool hasDependencies = false;
  rule.mRanges.mBegin = Size(mRanges);
  rule.mComparisons.mBegin = Size(mComparisons);
  for (const auto [key, member] : object) {
    if (key == "name") {
      rule.mName = member;
    } else if (key == "type") {
      rule.mKind = KindFrom(member);
    } else if (key == "version") {
      version = member;
    } else if (key == "max_version") {
      mostVersion = member;
    } else if (key == "versions") {
      ReadRanges(member);
    } else if (key == "version_mask") {
      rule.mMask = ReadFloorVersion(member);
    } else if (key == "version_mod") {
      rule.mModulus = ReadFloorVersion(member);
    } else if (key == "info_message") {
      rule.mTexts.mMessage = member;
    } else if (key == "info_url") {
      rule.mTexts.mURL = member;
    } else if (key == "error_level") {
      rule.mLevel = LevelFrom(member);
    } else if (key == "value") {
      value = member;
    } else if (key == "dependencies") {
      dependencies = member;
      hasDependencies = true;
    } else if (key != "osc_version" && key != "osblc_version" && key != "comment") {
      const auto found = std::find(kOperators.begin(), kOperators.end(), key);
      if (found != kOperators.end()) {
        mComparisons.push_back({static_cast<int>(found - kOperators.begin()), member});
      }
    }
  }
  rule.mVersion = ReadFloorVersion(version);
  if (rule.mKind == kProperty) {
    rule.mValue = value;
    mRanges.resize(rule.mRanges.mBegin);
    rule.mMask = rule.mModulus = {};
  } else {
    mComparisons.resize(rule.mComparisons.mBegin);
    if (Size(mRanges) == rule.mRanges.mBegin) {
      if (!mostVersion.empty()) {
        mRanges.push_back({rule.mVersion, ReadFloorVersion(mostVersion)});
      } else if (rule.mVersion.mIsSet) {
        mRanges.push_back({rule.mVersion, {}});
      }
    }
  }
  rule.mRanges.mEnd = Size(mRanges);
  rule.mComparisons.mEnd = Size(mComparisons);
  if (hasDependencies) {
    std::vector<FloorRule> read;
    for (const dom::element dependency : dependencies) read.push_back(ReadRule(dependency));
    rule.mDependencies.mBegin = Size(mDependencies);
    mDependencies.insert(mDependencies.end(), read.begin(), read.end());
    rule.mDependencies.mEnd = Size(mDependencies);
  }
  return rule;
}

XXH128_hash_t FloorList::Hash(const FloorRule& rule, const FloorTexts& texts) {
  const std::size_t begin = mBytes.size();
  AppendComponentBytes(rule.mKind, rule.mName, rule.mVersion, rule.mValue, mBytes);
  for (std::uint32_t index = rule.mRanges.mBegin; index < rule.mRanges.mEnd; ++index) {
    AppendFloorVersion(mRanges[index].mMinimum, mBytes);
    if (mRanges[index].mMaximum.mIsSet) {
      mBytes += '-';
      AppendFloorVersion(mRanges[index].mMaximum, mBytes);
    }
  }
  mBytes.append(texts.mMessage).append(texts.mURL);
  for (std::uint32_t index = rule.mDependencies.mBegin; index < rule.mDependencies.mEnd; ++index) {
    const XXH128_hash_t hash = Hash(mDependencies[index], mDependencies[index].mTexts);
    AppendHash(hash, mBytes);
  }
  AppendNumber(rule.mLevel, mBytes);
  const XXH128_hash_t hash = XXH3_128bits(mBytes.data() + begin, mBytes.size() - begin);
  mBytes.resize(begin);
  return hash;
}

XXH128_hash_t FloorList::Identify(const XXH128_canonical_t& registry) {
  std::string bytes;
  bytes.reserve(mRules.size() * sizeof(XXH128_canonical_t) + 4096);
  for (const FloorTexts& texts : mDefaults) bytes.append(texts.mMessage).append(texts.mURL);
  for (const FloorRule& rule : mRules) AppendHash(Hash(rule, rule.mTexts), bytes);
  bytes.append(mSecondWarning);
  bytes.append(reinterpret_cast<const char*>(registry.digest), sizeof registry.digest);
  return XXH3_128bits(bytes.data(), bytes.size());
}

void AppendComponentBytes(int kind, std::string_view name, const FloorVersion& version,
                          std::string_view value, std::string& bytes) {
  AppendNumber(static_cast<std::int32_t>(kind), bytes);
  AppendNumber(std::uint64_t{name.size()}, bytes);
  bytes.append(name);
  AppendNumber(std::uint32_t{version.mIsSet ? 1u : 0u}, bytes);
  for (int part = 0; part < 4; ++part) AppendNumber(version.Part(part), bytes);
  AppendNumber(std::uint64_t{value.size()}, bytes);
  bytes.append(value);
}

std::string FloorGuidText(XXH128_hash_t hash) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, hash);
  std::string text;
  for (const unsigned char byte : canonical.digest) {
    if (text.size() == 8 || text.size() == 13 || text.size() == 18 || text.size() == 23) text += '-';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace benchmarks
