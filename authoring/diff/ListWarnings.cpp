// What users will notice of a change, or will not, where an author may expect something else.
#include <algorithm>
#include <array>
#include <utility>

#include "authoring/diff/ListDiff.h"

namespace authoring {

namespace {

constexpr std::array<std::string_view, 10> kNames = {"default-text-changes-identifier",
                                                     "notation-changes-identifier",
                                                     "text-changes-identifier",
                                                     "condition-changes-identifier",
                                                     "change-keeps-identifier",
                                                     "default-text-written-out",
                                                     "texts-run-together",
                                                     "list-change-is-not-seen",
                                                     "only-order-changed",
                                                     "download-is-refused"};

constexpr std::array<std::string_view, 2> kTextKeys = {"info_message", "info_url"};

constexpr const char* kToldAgain =
    "Users who have such an issue are told of it once more: it counts as new, and the one they know as "
    "resolved.";

constexpr const char* kNotToldAnew =
    "Users who have such an issue are not told anew, even if it is about another component now.";

bool IsText(const FieldChange& change) {
  return std::find(kTextKeys.begin(), kTextKeys.end(), change.mKey) != kTextKeys.end();
}

/// "1 rule takes", "3 rules take".
std::string Counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace

std::string_view NameOf(DiffWarning warning) {
  return kNames.at(static_cast<std::size_t>(warning));
}

void ListDiff::Warn() {
  std::vector<std::size_t> withDefaultText;
  std::vector<std::size_t> withNotation;
  std::vector<std::size_t> withText;
  std::vector<std::size_t> withCondition;
  std::vector<std::size_t> unseen;
  std::vector<std::size_t> writtenOut;
  std::vector<std::size_t> runTogether;
  for (const RuleChange& change : mChanges) {
    const std::size_t index = change.mPair.mNew;
    if (!change.mIsIdentifierChanged) {
      if (change.mKept.mHasUnknownChange) unseen.push_back(index);
      if (change.mKept.mHasDefaultTextChange) writtenOut.push_back(index);
      if (change.mKept.mHasRunTogether) runTogether.push_back(index);
    } else if (change.mIsNotationChanged) {
      withNotation.push_back(index);
    } else if (change.mFields.empty()) {
      withDefaultText.push_back(index);
    } else if (std::all_of(change.mFields.begin(), change.mFields.end(), IsText)) {
      withText.push_back(index);
    } else {
      withCondition.push_back(index);
    }
  }
  const auto warn = [this](DiffWarning kind, std::vector<std::size_t> rules, std::string what,
                           std::string consequence) {
    mWarnings.push_back({kind, std::move(rules), std::move(what), std::move(consequence)});
  };
  if (!withDefaultText.empty()) {
    const std::size_t count = withDefaultText.size();
    warn(DiffWarning::kDefaultTextChangesIdentifier, std::move(withDefaultText),
         Counted(count, "rule has", "rules have") +
             " another identifier, though nothing in the rule was changed: a default text is part of it",
         kToldAgain);
  }
  if (!withNotation.empty()) {
    const std::size_t count = withNotation.size();
    warn(DiffWarning::kNotationChangesIdentifier, std::move(withNotation),
         Counted(count, "rule has", "rules have") +
             " another identifier, though the rule means the same: \"version\" is part of it, even beside "
             "\"versions\"",
         kToldAgain);
  }
  if (!withText.empty()) {
    const std::size_t count = withText.size();
    warn(DiffWarning::kTextChangesIdentifier, std::move(withText),
         Counted(count, "rule has", "rules have") +
             " another identifier, though only texts were changed: message and link are part of it, and so a "
             "list in another language has others throughout",
         kToldAgain);
  }
  if (!withCondition.empty()) {
    const std::size_t count = withCondition.size();
    warn(DiffWarning::kConditionChangesIdentifier, std::move(withCondition),
         Counted(count, "changed rule has", "changed rules have") + " another identifier",
         "Where such a rule hit before and still hits, users are told of the issue once more: it counts as "
         "new, "
         "and the one they know as resolved.");
  }
  const bool isSeen = IsSeenAtLaunch();
  if (!unseen.empty()) {
    const std::size_t count = unseen.size();
    warn(DiffWarning::kChangeKeepsIdentifier, std::move(unseen),
         Counted(count, "changed rule keeps its", "changed rules keep their") +
             " identifier: mask, modulus and operands are not part of it, in dependencies neither",
         kNotToldAnew);
  }
  if (!writtenOut.empty()) {
    const std::size_t count = writtenOut.size();
    warn(DiffWarning::kDefaultTextIsWrittenOut, std::move(writtenOut),
         Counted(count, "changed rule keeps its", "changed rules keep their") +
             " identifier: a default text was written out in the rule, or left out of it, and the issue says "
             "the same",
         "Users notice nothing. A rule with texts of its own does not follow a later change of the default "
         "text.");
  }
  if (!runTogether.empty()) {
    const std::size_t count = runTogether.size();
    warn(DiffWarning::kTextsRunTogether, std::move(runTogether),
         Counted(count, "changed rule keeps its", "changed rules keep their") +
             " identifier: ranges, message and link enter it one behind the other with nothing between them, "
             "and read so they are as before",
         kNotToldAnew);
  }
  if (!isSeen && !IsEmpty()) {
    warn(DiffWarning::kListChangeIsNotSeen, {},
         "the nothing-changed test does not see that the list is another one",
         "Users without an issue of level WARN or higher are not told of new issues at launch, until "
         "something else changes in the list or on their machine, or they ask for the report. Change a text, "
         "too, to be seen.");
  }
  if (IsEmpty() && mOldList.ContentHash() != mNewList.ContentHash()) {
    warn(DiffWarning::kOnlyOrderChanged, {}, "only the order of the rules differs",
         "Every machine is matched once more at the next launch, with the same result.");
  }
  if (!mNewList.IsAcceptedAsDownload()) {
    warn(
        DiffWarning::kDownloadIsRefused, {},
        "\"default_info\" of the new list lacks a message or a link for one of the six kinds",
        "Users get this list only with an application that brings it along: a download of it is refused, and "
        "they keep the list that they have.");
  }
}

}  // namespace authoring
