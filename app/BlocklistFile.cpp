#include "app/BlocklistFile.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
#include "platform/qelcore/Json.h"

namespace app {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRRule;

namespace {

std::string TextOf(const json::Dictionary& object, std::string_view key) {
  const std::string* const text = json::FindText(object, key);
  return text == nullptr ? std::string() : *text;
}

/// A rule with the default texts of its kind, which it takes over only when it has no message of its own.
json::Dictionary Inform(json::Dictionary rule, const json::Dictionary* defaults) {
  const json::Dictionary* const texts =
      defaults == nullptr ? nullptr : json::FindDictionary(*defaults, TextOf(rule, "type"));
  if (texts == nullptr || !TextOf(rule, "info_message").empty()) return rule;
  json::Set(rule, "info_message", TextOf(*texts, "info_message"));
  if (TextOf(rule, "info_url").empty()) json::Set(rule, "info_url", TextOf(*texts, "info_url"));
  return rule;
}

}  // namespace

BlocklistFile ReadBlocklistFile(const std::string& path) {
  const std::string text = ReadInputFile(path);
  std::any root = ParseInputFile(path, text);
  const auto* const document = std::any_cast<json::Dictionary>(&root);
  if (document == nullptr) throw UserError(path + ": not a blocklist: it must be a JSON object");

  const Diagnostics diagnostics;
  SCRBlocklist blocklist(text);
  if (diagnostics.HasProblemIn("qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist")) {
    throw UserError(path + ": not a blocklist: " + diagnostics.Summary());
  }
  // A dependency that cannot be read is no failure of the list: the rule that has it hits nothing.
  diagnostics.PrintProblems();
  const auto version = json::FindInteger(*document, "blocklist_version");
  if (!version || static_cast<std::uint32_t>(*version) == 0) {
    throw UserError(path + ": \"blocklist_version\" is missing or 0, so nothing of it is read; write 1");
  }
  if (!blocklist.Verify()) {
    PrintDiagnostic(
        "note: " + path +
        ": \"default_info\" lacks a message or a link for one of OS, Video, Audio, Network, File and "
        "Property, so a download of this blocklist would be refused");
  }
  return {std::move(root), std::move(blocklist)};
}

std::vector<SCRRule> ReadBlocklistRules(const std::string& path) {
  const BlocklistFile file = ReadBlocklistFile(path);
  const json::Dictionary& document = json::AsDictionary(file.mDocument);
  std::vector<SCRRule> rules;
  const json::Array* const elements = json::FindArray(document, "blocklist");
  if (elements == nullptr) return rules;
  const json::Dictionary* const defaults = json::FindDictionary(document, "default_info");
  rules.reserve(elements->size());
  for (const std::any& element : *elements) {
    rules.emplace_back(std::any(Inform(json::AsDictionary(element), defaults)));
  }
  return rules;
}

}  // namespace app
