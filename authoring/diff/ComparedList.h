// A blocklist as the report reads it, in a form in which two can be compared.
#pragma once

#include <any>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/qelcore/Guid.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace authoring {

/// One key and its value as JSON.
struct ListField {
  std::string mKey;
  std::string mValue;

  friend bool operator==(const ListField&, const ListField&) = default;
};

using ListFields = std::vector<ListField>;

/// The value of a key; empty when there is none.
[[nodiscard]] std::string_view ValueOf(const ListFields& fields, std::string_view key);

/// A rule with what the library reads of it: remarks, examples and slips of the pen are not there, "version"
/// and "max_version" have become "versions".
struct ComparedRule {
  std::string mKind;
  std::string mName;
  ListFields mFields;  ///< in order of keys
  std::string mText;   ///< all fields; equal for equal rules
  std::string mOwnID;  ///< its identifier without the default texts
  std::string mID;     ///< by which its issues are remembered, with the default texts

  [[nodiscard]] bool IsFileRule() const { return mKind == "File"; }
};

/// What there is to compare of a list.
class ComparedList {
 public:
  /// `document` is what the blocklist was read from, all of it readable.
  ComparedList(const std::any& document, const qelsystemcompatibilityreport::SCRBlocklist& blocklist);

  [[nodiscard]] const std::vector<ComparedRule>& Rules() const { return mRules; }

  /// The default texts, such as "default_info.Video.info_url", and "second_warning".
  [[nodiscard]] const ListFields& Texts() const { return mTexts; }

  /// "blocklist_version", which only decides whether a list is read.
  [[nodiscard]] const std::string& Version() const { return mVersion; }

  /// What the nothing-changed test sees of the list.
  [[nodiscard]] const qelcore::Guid& ContentHash() const { return mContentHash; }

  [[nodiscard]] bool HasFileRules() const { return mHasFileRules; }

  /// Whether an application would accept it as a download.
  [[nodiscard]] bool IsAcceptedAsDownload() const { return mIsAcceptedAsDownload; }

  /// The first rule whose issues have this identifier; the number of rules when there is none.
  [[nodiscard]] std::size_t FindRule(const std::string& id) const;

 private:
  std::vector<ComparedRule> mRules;
  ListFields mTexts;
  std::string mVersion;
  qelcore::Guid mContentHash;
  bool mHasFileRules = false;
  bool mIsAcceptedAsDownload = false;
  std::unordered_map<std::string, std::size_t> mRuleByID;
};

}  // namespace authoring
