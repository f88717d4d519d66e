// `scr lint`: what is wrong with blocklists.
#include <memory>
#include <string>
#include <vector>

#include "app/InputFile.h"
#include "app/Output.h"
#include "app/Verbs.h"
#include "authoring/Lint.h"
#include "authoring/output/Outputs.h"

namespace app {

namespace {

struct Arguments {
  std::vector<std::string> mFiles;
  bool mAsJSON = false;
  bool mAsSARIF = false;
};

void PrintText(const authoring::Findings& findings) {
  std::string text;
  for (const authoring::Finding& finding : findings) {
    for (const std::string& line : authoring::DescribeAsText(finding)) text += Printable(line) + "\n";
  }
  Print(text + authoring::Summarise(findings) + "\n");
}

ExitCode Lint(const Arguments& arguments) {
  std::vector<authoring::InputText> files;
  for (const std::string& path : arguments.mFiles) files.push_back({path, ReadInputFile(path)});
  const authoring::Findings findings = authoring::Lint(std::move(files));
  if (arguments.mAsSARIF) {
    const std::string version =
        std::to_string(QELSCR_VERSION_MAJOR) + "." + std::to_string(QELSCR_VERSION_MINOR);
    Print(authoring::WriteSarif(findings, version));
  } else if (arguments.mAsJSON) {
    Print(authoring::WriteJson(findings));
  } else {
    PrintText(findings);
  }
  return authoring::HasErrors(findings) ? ExitCode::kSeriousIssues : ExitCode::kSuccess;
}

}  // namespace

void AddLintVerb(CLI::App& application, ExitCode& exitCode) {
  CLI::App* const verb = application.add_subcommand("lint", "Find what is wrong with blocklists");
  verb->group("Verbs")->footer(
      "Reads blocklists as the report does, and tells of every place that is not read as it is written,\n"
      "can never match, or hardly means what it says. docs/lint.md describes each code. Files that differ\n"
      "in their language only, such as list.en_US.json and list.de_DE.json, are compared.\n"
      "Exit code: 0 no errors, 2 errors, 1 a file cannot be read, or wrong use.\n"
      "\n"
      "  scr lint mylist.json\n"
      "  scr lint mylist.en_US.json mylist.de_DE.json --sarif\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("FILE", arguments->mFiles, "Blocklist files, JSON")->required()->type_name("");
  CLI::Option* const asJSON = verb->add_flag("--json", arguments->mAsJSON, "One JSON document");
  verb->add_flag("--sarif", arguments->mAsSARIF, "One SARIF 2.1.0 log, as code hosts and editors read it")
      ->excludes(asJSON);
  verb->callback([arguments, &exitCode] { exitCode = Lint(*arguments); });
}

}  // namespace app
