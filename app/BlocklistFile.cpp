#include "app/BlocklistFile.h"

#include <utility>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
#include "platform/qelcore/Json.h"

namespace app {

namespace json = qelcore::json;
using qelsystemcompatibilityreport::SCRBlocklist;

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

}  // namespace app
