// `scr check`: a blocklist matched against machines, without remembering anything.
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "app/BlocklistFile.h"
#include "app/Diagnostics.h"
#include "app/Output.h"
#include "app/Snapshot.h"
#include "app/Verbs.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"

namespace app {

namespace json = qelcore::json;
using qelcore::utility::ComponentTypeToString;
using qelcore::utility::OSComponent;
using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr const char* kThisMachine = "this machine";

/// What the blocklist says about one machine.
struct Verdict {
  std::string mMachine;
  qelcore::Guid mMatchID;
  std::vector<SCRIssue> mIssues;

  [[nodiscard]] bool IsSerious() const {
    return std::any_of(mIssues.begin(), mIssues.end(),
                       [](const SCRIssue& issue) { return issue.IsSeriousError(); });
  }
};

Verdict Judge(const SCRBlocklist& blocklist, std::string machine, const OSComponentRegistry& registry) {
  // Each machine is judged as if by a process of its own.
  SCRRule::ForgetFileComponents();
  Verdict verdict{std::move(machine), {}, {}};
  const Diagnostics diagnostics;
  verdict.mIssues = blocklist.MatchToOSComponents(registry, verdict.mMatchID);
  if (diagnostics.HasProblemIn("qelsystemcompatibilityreport::SCRBlocklist::MatchToOSComponents")) {
    throw UserError(verdict.mMachine + ": could not be judged: " + diagnostics.Summary());
  }
  diagnostics.PrintProblems();
  return verdict;
}

Verdict JudgeThisMachine(const SCRBlocklist& blocklist) {
  const auto registry = qelcore::host::ReadMachineWithoutKeeping();
  if (!registry) throw UserError("this machine's components cannot be read; --trace 1 tells why");
  return Judge(blocklist, kThisMachine, *registry);
}

Verdict JudgeSnapshot(const SCRBlocklist& blocklist, const std::string& path) {
  Snapshot snapshot = ReadSnapshot(path);
  const qelcore::host::RecordedFilesScope files(std::move(snapshot.mFileVersions));
  return Judge(blocklist, path, *snapshot.mRegistry);
}

std::string WriteJSON(const Verdict& verdict) {
  json::Array issues;
  for (const SCRIssue& issue : verdict.mIssues) {
    json::Dictionary object;
    json::Set(object, "level", SCRRule::ErrorLevelToString(issue.GetErrorLevel()));
    json::Set(object, "type", ComponentTypeToString(issue.GetType()));
    json::Set(object, "name", issue.GetName());
    json::Set(object, "version", issue.GetVersion().ToString());
    json::Set(object, "value", issue.GetPropertyValue());
    json::Set(object, "id", issue.GetID());
    json::Set(object, "info_message", issue.GetInfoMessage());
    json::Set(object, "info_url", issue.GetInfoURL());
    issues.emplace_back(std::move(object));
  }
  json::Dictionary object;
  json::Set(object, "machine", verdict.mMachine);
  json::Set(object, "match_id", verdict.mMatchID.AsUTF8String());
  json::Set(object, "issues", std::move(issues));
  return json::Serialise(object) + "\n";
}

std::string WriteText(const Verdict& verdict) {
  const std::size_t count = verdict.mIssues.size();
  std::string text = fmt::format("{}: {}\n", Printable(verdict.mMachine),
                                 count == 0   ? "no issues"
                                 : count == 1 ? "1 issue"
                                              : std::to_string(count) + " issues");
  for (const SCRIssue& issue : verdict.mIssues) {
    const bool isProperty = issue.GetType() == OSComponentType::kProperty;
    const std::string version = issue.GetVersion() ? " v." + issue.GetVersion().ToString() : std::string();
    const std::string detail = isProperty ? " : " + issue.GetPropertyValue() : version;
    text += fmt::format("\n  {:<5} [{}] {}\n", SCRRule::ErrorLevelToString(issue.GetErrorLevel()),
                        ComponentTypeToString(issue.GetType()), Printable(issue.GetName() + detail));
    for (const std::string& line : {issue.GetInfoMessage(), issue.GetInfoURL(), issue.GetID()}) {
      if (!line.empty()) text += "        " + Printable(line) + "\n";
    }
  }
  return text;
}

struct Arguments {
  std::string mBlocklist;
  std::vector<std::string> mMachines;
  bool mAsJSON = false;
};

ExitCode Check(const Arguments& arguments) {
  const SCRBlocklist blocklist = ReadBlocklist(arguments.mBlocklist);
  OSComponent::EnableSupportProperties(true);
  bool isSerious = false;
  const auto tell = [&](const Verdict& verdict) {
    isSerious |= verdict.IsSerious();
    Print(arguments.mAsJSON ? WriteJSON(verdict) : WriteText(verdict));
  };
  if (arguments.mMachines.empty()) tell(JudgeThisMachine(blocklist));
  for (std::size_t index = 0; index < arguments.mMachines.size(); ++index) {
    if (index > 0 && !arguments.mAsJSON) Print("\n");
    tell(JudgeSnapshot(blocklist, arguments.mMachines[index]));
  }
  return isSerious ? ExitCode::kSeriousIssues : ExitCode::kSuccess;
}

}  // namespace

void AddCheckVerb(CLI::App& application, ExitCode& exitCode) {
  CLI::App* const verb =
      application.add_subcommand("check", "Match a blocklist against this machine or recorded ones");
  verb->group("Verbs")->footer(
      "Matches a blocklist against this machine, or against recorded ones, and lists the issues.\n"
      "Nothing is remembered. Exit code: 0 nothing serious, 2 issues of level WARN, ERROR or FATAL,\n"
      "1 bad input or wrong use.\n"
      "\n"
      "  scr check mylist.json\n"
      "  scr check mylist.json --machine office.json --machine lab.json --json\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("BLOCKLIST", arguments->mBlocklist, "Blocklist file, JSON")->required()->type_name("");
  verb->add_option("-m,--machine", arguments->mMachines,
                   "Machine snapshot to check instead of this machine (may be repeated)")
      ->type_name("SNAPSHOT");
  verb->add_flag("--json", arguments->mAsJSON, "One JSON object for each machine, a line each");
  verb->callback([arguments, &exitCode] { exitCode = Check(*arguments); });
}

}  // namespace app
