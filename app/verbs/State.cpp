// `scr state`: what is remembered from earlier runs.
#include <fmt/format.h>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

namespace json = qelcore::json;

namespace {

/// Runs a change of the state and turns what went wrong into an error.
template <typename Change>
void ChangeState(Change&& change) {
  const Diagnostics diagnostics;
  change();
  if (!diagnostics.Problems().empty()) {
    throw UserError("the state could not be changed: " + diagnostics.Summary());
  }
}

std::string ListMatches(const json::Dictionary& state, const char* label, std::string_view key) {
  const std::vector<std::string> ids = json::FindTexts(state, key).value_or(std::vector<std::string>());
  std::string text = fmt::format("{} issues: {}\n", label, ids.size());
  for (const std::string& id : ids) text += "  " + Printable(id) + "\n";
  return text;
}

std::string Describe(const json::Dictionary& state) {
  const std::string* const job = json::FindText(state, "last_match_job");
  std::string text = "Last match: " + (job == nullptr ? std::string("none") : Printable(*job)) + "\n";
  text += ListMatches(state, "INFO", "info_matches");
  text += ListMatches(state, "WARN", "warn_matches");
  text += ListMatches(state, "ERROR", "error_matches");
  text += ListMatches(state, "FATAL", "fatal_matches");
  const bool isShown = qelsystemcompatibilityreport::GetAllowDisplayReportAtStartup();
  text += fmt::format("Report at launch: {}\n", isShown ? "shown when it matters" : "not shown");
  return text;
}

void ShowState() {
  const qelcore::filesupport::File file(qelcore::filesupport::Dir::PrefDir(), u"SCRPriorState.json");
  const std::string path = qelcore::string::UTF16to8(file.GetFullPath());
  if (!file.Exists()) {
    Print("Nothing is remembered. The first report remembers its issues in " + path + "\n");
    return;
  }
  const std::string hint = "; the next report starts afresh and replaces it";
  try {
    const Diagnostics diagnostics;
    const std::any value = ParseInputFile(path, ReadInputFile(path));
    const std::string text = Describe(json::AsDictionary(value));
    if (!diagnostics.Problems().empty()) throw UserError(path + ": " + diagnostics.Summary());
    Print(text);
  } catch (const UserError& error) {
    throw UserError(error.what() + hint);
  } catch (const json::TypeError& error) {
    throw UserError(path + ": " + error.what() + hint);
  }
}

}  // namespace

void AddStateVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("state", "What is remembered from earlier reports");
  verb->group("Verbs")->footer(
      "What is remembered from earlier reports: the issues that they found, and whether the report may come\n"
      "up at launch.\n"
      "\n"
      "  scr state show      shows it\n"
      "  scr state forget    deletes it, so that every issue is new again\n"
      "  scr state quiet     no report at launch\n"
      "  scr state loud      the report at launch, when it matters\n");
  verb->require_subcommand(1);
  verb->add_subcommand("show", "Show what is remembered")->group("Verbs")->callback(ShowState);
  verb->add_subcommand("forget", "Forget the issues, the setting and the saved properties")
      ->group("Verbs")
      ->callback([] { ChangeState(qelsystemcompatibilityreport::DeleteReportSavedState); });
  verb->add_subcommand("quiet", "Never show the report at launch")->group("Verbs")->callback([] {
    ChangeState([] { qelsystemcompatibilityreport::SetAllowDisplayReportAtStartup(false); });
  });
  verb->add_subcommand("loud", "Show the report at launch when it matters")->group("Verbs")->callback([] {
    ChangeState([] { qelsystemcompatibilityreport::SetAllowDisplayReportAtStartup(true); });
  });
}

}  // namespace app
