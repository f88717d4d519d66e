#include "authoring/checks/Keys.h"

#include <algorithm>
#include <unordered_set>

#include "authoring/model/KnownKeys.h"
#include "authoring/model/Words.h"

namespace authoring {

namespace {

/// What was meant by a key, as far as can be said.
std::string Suggestion(std::span<const std::string_view> known, std::string_view key) {
  // The lower end beside "max_version" has the name that a component's version has.
  if (key == "min_version" && Contains(known, "max_version"))
    return "Did you mean \"version\", the lower end beside \"max_version\"?";
  return DidYouMean(known, key);
}

}  // namespace

void CheckKeys(Document& document, std::optional<std::size_t> rule, const JsonNode& object,
               std::span<const std::string_view> known) {
  const auto add = [&](Code code, const JsonMember& member, const std::string& what,
                       const std::string& mend) {
    if (rule) {
      document.AddToRule(*rule, code, member.mKeyOffset, what, mend);
    } else {
      document.Add(code, member.mKeyOffset, what, mend);
    }
  };
  std::unordered_set<std::string_view> later;
  const auto check = [&](const JsonMember& member) {
    const std::string key = Quoted(member.mKey);
    if (!later.insert(member.mKey).second) {
      add(Code::kDuplicateKey, member,
          "the key " + key + " stands in this object again, and only the last one counts",
          "Keep one of them.");
    } else if (!Contains(known, member.mKey)) {
      add(Code::kUnknownKey, member, "the key " + key + " is unknown and ignored",
          Suggestion(known, member.mKey) + " Remarks belong under \"comment\".");
    }
  };
  // From the last on, which is the one that counts.
  std::for_each(object.mMembers.rbegin(), object.mMembers.rend(), check);
}

}  // namespace authoring
