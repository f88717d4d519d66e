#include "app/BlocklistFile.h"

#include <cstdint>
#include <utility>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
#include "authoring/model/InformedRule.h"
#include "platform/qelcore/Json.h"

namespace app {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr const char* kReading = "qelsystemcompatibilityreport::SCRBlocklist::SCRBlocklist";

/// Refuses a document of which nothing, or not all, could be read, and says why. For that it makes the whole
/// document, which takes longer than all that is done with a list that is in order.
void RefuseUnreadable(const std::string& path, const std::string& text, const Diagnostics& diagnostics) {
  const std::any root = ParseInputFile(path, text);
  const auto* const document = std::any_cast<json::Dictionary>(&root);
  if (document == nullptr) throw UserError(path + ": not a blocklist: it must be a JSON object");
  if (diagnostics.HasProblemIn(kReading)) {
    throw UserError(path + ": not a blocklist: " + diagnostics.Summary() +
                    "; an application would read an empty list");
  }
  const auto version = json::FindInteger(*document, "blocklist_version");
  if (!version || static_cast<std::uint32_t>(*version) == 0) {
    throw UserError(path + ": \"blocklist_version\" is missing or 0, so nothing of it is read; write 1");
  }
}

SCRBlocklist ReadText(const std::string& path, const std::string& text) {
  const Diagnostics diagnostics;
  SCRBlocklist blocklist(text);
  const bool isVerified = blocklist.Verify();
  if (!isVerified || diagnostics.HasProblemIn(kReading)) RefuseUnreadable(path, text, diagnostics);
  // A dependency that cannot be read is no failure of the list: the rule that has it hits nothing.
  diagnostics.PrintProblems();
  if (!isVerified) {
    PrintDiagnostic(
        "note: " + path +
        ": \"default_info\" lacks a message or a link for one of OS, Video, Audio, Network, File and "
        "Property, so a download of this blocklist would be refused");
  }
  return blocklist;
}

}  // namespace

SCRBlocklist ReadBlocklist(const std::string& path) {
  return ReadText(path, ReadInputFile(path));
}

BlocklistFile ReadBlocklistFile(const std::string& path) {
  const std::string text = ReadInputFile(path);
  SCRBlocklist blocklist = ReadText(path, text);
  return {ParseInputFile(path, text), std::move(blocklist)};
}

std::vector<SCRRule> ReadBlocklistRules(const std::string& path) {
  const BlocklistFile file = ReadBlocklistFile(path);
  const json::Dictionary& document = json::AsDictionary(file.mDocument);
  std::vector<SCRRule> rules;
  const json::Array* const elements = json::FindArray(document, "blocklist");
  if (elements == nullptr) return rules;
  const authoring::DefaultTextsOfKinds defaults = authoring::ReadDefaultTexts(document);
  rules.reserve(elements->size());
  for (const std::any& element : *elements) {
    const auto kind = static_cast<std::size_t>(SCRRule(element).GetType());
    rules.push_back(authoring::InformedRule(element, defaults.at(kind)));
  }
  return rules;
}

}  // namespace app
