// `scr explain`: why rules hit the components of a machine, or do not.
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/BlocklistFile.h"
#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Snapshot.h"
#include "app/Verbs.h"
#include "authoring/explain/Explain.h"
#include "authoring/explain/Outputs.h"
#include "authoring/explain/Targets.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/DebugDatabase.h"
#include "qelsystemcompatibilityreport/DebugSettings.h"

namespace app {

using authoring::FileSource;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRRule;

namespace {

struct Arguments {
  std::string mBlocklist;
  std::optional<std::string> mMachine;
  std::optional<std::string> mRule;
  std::optional<std::string> mComponent;
  bool mAsJSON = false;
};

using Rules = std::vector<SCRRule>;

/// What was chosen. Throws `UserError` that names the option when nothing was.
template <typename Key>
std::set<Key> Require(const char* option, authoring::Choice<Key> choice) {
  if (choice.mChosen.empty()) throw UserError(std::string(option) + ": " + choice.mProblem);
  if (!choice.mNote.empty()) PrintDiagnostic("note: " + std::string(option) + ": " + choice.mNote);
  return std::move(choice.mChosen);
}

authoring::ExplainQuestion Ask(const Arguments& arguments, const Rules& rules,
                               const OSComponentRegistry& registry, FileSource files) {
  authoring::ExplainQuestion question;
  question.mFiles = files;
  if (arguments.mRule) question.mRules = Require("--rule", authoring::ChooseRules(rules, *arguments.mRule));
  if (arguments.mComponent) {
    const auto names = authoring::NamesOfCandidates(rules, registry);
    question.mComponents = Require("--component", authoring::ChooseComponents(names, *arguments.mComponent));
  }
  qelcore::DebugDatabase& settings = qelcore::DebugDatabase::Instance();
  question.mForcesByType = settings.GetBoolEntry(qelsystemcompatibilityreport::kForceBlocklistMatch.mKey);
  question.mForcesByName =
      settings.GetBoolEntry(qelsystemcompatibilityreport::kForceBlocklistMatchByName.mKey);
  return question;
}

void ExplainMachine(const Arguments& arguments, const Rules& rules, const OSComponentRegistry& registry,
                    FileSource files) {
  const authoring::ExplainQuestion question = Ask(arguments, rules, registry, files);
  const Diagnostics diagnostics;
  const authoring::Explained explained = authoring::Explain(rules, registry, question);
  diagnostics.PrintProblems();
  const authoring::ExplainHead head{arguments.mBlocklist, arguments.mMachine.value_or("this machine")};
  if (arguments.mAsJSON) {
    Print(authoring::WriteJson(explained, head));
    return;
  }
  for (const std::string& line : authoring::DescribeAsText(explained, head)) Print(Printable(line) + "\n");
}

void Explain(const Arguments& arguments) {
  const Rules rules = ReadBlocklistRules(arguments.mBlocklist);
  OSComponent::EnableSupportProperties(true);
  if (arguments.mMachine) {
    Snapshot snapshot = ReadSnapshot(*arguments.mMachine);
    const qelcore::host::RecordedFilesScope files(std::move(snapshot.mFileVersions));
    ExplainMachine(arguments, rules, *snapshot.mRegistry,
                   snapshot.mHasFiles ? FileSource::kRecorded : FileSource::kNotRecorded);
    return;
  }
  const auto registry = qelcore::host::ReadMachineWithoutKeeping();
  if (!registry) throw UserError("this machine's components cannot be read; --trace 1 tells why");
  ExplainMachine(arguments, rules, *registry, FileSource::kDisk);
}

}  // namespace

void AddExplainVerb(CLI::App& application, ExitCode& exitCode) {
  CLI::App* const verb =
      application.add_subcommand("explain", "Tell why a blocklist's rules hit a machine, or do not");
  verb->group("Verbs")->footer(
      "Matches a blocklist as \"scr check\" does, and tells each step: versions with their mask, modulus "
      "and\n"
      "ranges, names, comparisons, files and dependencies, and for a miss what would make it a hit. Without\n"
      "--rule and --component it tells the hits and the nearest misses.\n"
      "Exit code: 0 explained, 1 bad input or wrong use.\n"
      "\n"
      "  scr explain mylist.json\n"
      "  scr explain mylist.json --machine office.json --rule 4\n"
      "  scr explain mylist.json --component \"GeForce RTX 3060\"\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("BLOCKLIST", arguments->mBlocklist, "Blocklist file, JSON")->required()->type_name("");
  verb->add_option("-m,--machine", arguments->mMachine, "Machine snapshot to take instead of this machine")
      ->type_name("SNAPSHOT");
  verb->add_option("--rule", arguments->mRule,
                   "Only this rule: its number as \"scr lint\" tells it, from 0, or its identifier")
      ->type_name("N");
  verb->add_option("--component", arguments->mComponent, "Only the component of this name, or part of a name")
      ->type_name("NAME");
  verb->add_flag("--json", arguments->mAsJSON, "One JSON document");
  verb->callback([arguments, &exitCode] {
    Explain(*arguments);
    exitCode = ExitCode::kSuccess;
  });
}

}  // namespace app
