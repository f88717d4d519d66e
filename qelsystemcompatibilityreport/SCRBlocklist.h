// The blocklist document: rules, default texts, and the second warning.
//
//   const SCRBlocklist blocklist(text);
//   Guid matchID;
//   for (const SCRIssue& issue : blocklist.MatchToOSComponents(registry, matchID)) { ... }
//
// docs/formats/blocklist.md describes the document.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Guid.h"
#include "platform/qelcore/Hash.h"
#include "platform/qelcore/JsonView.h"
#include "qelsystemcompatibilityreport/Export.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"
#include "qelsystemcompatibilityreport/SCRRule.h"

namespace qelsystemcompatibilityreport {

using qelcore::Guid;

class RuleList;

/// A blocklist, read once from its text and not changed afterwards. A value; copies share its rules.
class QELSCR_EXPORT SCRBlocklist {
 public:
  /// The texts that an issue of a kind takes when its rule has no message.
  struct DefaultInfoAndURL {
    std::string info_message;
    std::string info_url;
  };

  /// Reads a document. Does not throw: a failure is logged, and what was read before it stays. Text that is
  /// no JSON object, or has no "blocklist_version" other than 0, gives an empty blocklist; one rule that
  /// cannot be read leaves no rules, and the keys after "blocklist" are then not read; a wrong default leaves
  /// the rules. Whether the blocklist is complete is for `Verify` to say.
  explicit SCRBlocklist(const std::string& json);
  /// The same, without a copy of the text.
  explicit SCRBlocklist(std::string&& json);

  SCRBlocklist(const SCRBlocklist&);
  SCRBlocklist(SCRBlocklist&&) noexcept;
  SCRBlocklist& operator=(const SCRBlocklist&);
  SCRBlocklist& operator=(SCRBlocklist&&) noexcept;
  ~SCRBlocklist();

  /// The text that is shown after the report when there are warnings or errors; empty when the document has
  /// none.
  [[nodiscard]] const std::string& GetSecondWarning() const { return mSecondWarning; }

  /// Whether every kind has a default message and a default link. Nothing else is looked at.
  [[nodiscard]] bool Verify() const;

  /// A hash state into which the default texts, the rules in their order, and the second warning were mixed.
  [[nodiscard]] qelcore::MixHashGuidT<qelcore::HashValueMixerState> Hash() const;

  /// Matches every rule against the machine and returns the issues in the order in which they are shown.
  /// Nothing is merged: a component hit by two rules gives two issues. `matchID` receives the identifier of
  /// this blocklist's content and this registry's. Does not throw; after a failure, which is logged, there
  /// are no issues.
  ///
  /// The debug settings "qelsystemcompatibilityreport.force_blocklist_match" and
  /// "qelsystemcompatibilityreport.force_blocklist_match_by_name" loosen this match.
  [[nodiscard]] std::vector<SCRIssue> MatchToOSComponents(const OSComponentRegistry& registry,
                                                          Guid& matchID) const;

  /// Whether a match that gave `matchID` may no longer hold: the content or the machine has changed, nothing
  /// was ever matched (null identifier), a match is forced, or this is the first question in the process and
  /// there are file rules, since files can change unnoticed. Does not throw; true after a failure, which is
  /// logged.
  [[nodiscard]] bool NeedsRematch(const OSComponentRegistry& registry, const Guid& matchID) const;

 private:
  friend struct SCRBlocklistTestAccess;

  [[nodiscard]] const RuleList& Rules() const;
  void Read(std::string json);
  /// Without a dictionary. False, and nothing logged, when anything is not as it should be.
  [[nodiscard]] bool ReadDirectly(const std::shared_ptr<const qelcore::json::Document>& document);
  void ReadFromDictionary(const std::string& json);
  /// Whether there is a version, without which nothing is read. `document` is what `root` is part of, or
  /// null.
  bool ReadDocument(const qelcore::json::View& root,
                    const std::shared_ptr<const qelcore::json::Document>& document);
  void ReadDefaults(const qelcore::json::View& defaults);
  [[nodiscard]] const DefaultInfoAndURL& GetDefaultInfoAndURL(OSComponentType kind) const;
  [[nodiscard]] Guid IdentifyMatch(const OSComponentRegistry& registry) const;
  [[nodiscard]] std::vector<SCRIssue> FindIssues(const OSComponentRegistry& registry) const;

  DefaultInfoAndURL mFallback;
  std::shared_ptr<const RuleList> mRules;  ///< shared with copies, since it does not change; null is none
  std::vector<DefaultInfoAndURL> mDefaults;
  std::string mSecondWarning;
};

}  // namespace qelsystemcompatibilityreport
