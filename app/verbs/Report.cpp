// `scr report`: the report of this machine, as text or JSON.
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <system_error>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
#include "app/Paths.h"
#include "app/ReportFacts.h"
#include "app/Verbs.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace app {

namespace {

/// A new file of the user's own, gone at the end of the scope.
class TemporaryFile {
 public:
  TemporaryFile() {
    std::random_device random;
    const std::string name = "scr-report-" + std::to_string(random()) + std::to_string(random()) + ".txt";
    mPath = ToUTF8(std::filesystem::temp_directory_path() / name);
    qelcore::filesupport::File(qelcore::string::UTF8to16(mPath)).Create(true);
  }
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(ToPath(mPath), ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& Path() const { return mPath; }

 private:
  std::string mPath;
};

/// Runs the report into the file. What went wrong is said on standard error.
void RunReport(const std::string& path) {
  const Diagnostics diagnostics;
  qelsystemcompatibilityreport::RunReportToFile(qelcore::GetApplicationName(),
                                                qelcore::string::UTF8to16(path));
  if (diagnostics.RunFailed()) throw UserError(diagnostics.DescribeFailedRun());
  diagnostics.PrintProblems();
}

struct Arguments {
  std::optional<std::string> mOutputPath;
  bool mAsJSON = false;
};

void WriteFile(const std::string& path, const std::string& content) {
  try {
    const qelcore::filesupport::File file(qelcore::string::UTF8to16(path));
    file.Create(false);
    qelcore::filesupport::OPlatformByteStream stream(file);
    stream.Write(content);
    stream.Close();
  } catch (const std::system_error& error) {
    throw UserError(error.what());
  }
}

/// The report's facts. The text is made as well and left aside: it is the run that remembers the issues.
std::string RunReportAsJSON() {
  const ReportFacts facts;
  const TemporaryFile text;
  RunReport(text.Path());
  return facts.WriteJSON();
}

void Report(const Arguments& arguments) {
  if (arguments.mOutputPath && arguments.mOutputPath->empty()) {
    throw UserError("--output: the name of a file is missing");
  }
  const std::string path = arguments.mOutputPath ? AbsolutePath(*arguments.mOutputPath) : std::string();
  if (arguments.mAsJSON) {
    const std::string document = RunReportAsJSON();
    path.empty() ? Print(document) : WriteFile(path, document);
  } else if (!path.empty()) {
    RunReport(path);
  } else {
    const TemporaryFile file;
    RunReport(file.Path());
    // A file keeps what the blocklist says byte for byte; a terminal would act upon it.
    Print(PrintableLines(ReadInputFile(file.Path())));
  }
}

}  // namespace

void AddReportVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("report", "The report of this machine as text");
  verb->group("Verbs")->footer(
      "The report of this machine as text: its components, the known issues of each, and what they mean.\n"
      "The issues are remembered, so that later runs can tell new ones from old.\n"
      "\n"
      "  scr report                       on standard output\n"
      "  scr report --output report.txt   into a file\n"
      "  scr report --json                the same facts as one JSON document\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("-o,--output", arguments->mOutputPath, "File to write, in place of what is there")
      ->type_name("FILE");
  verb->add_flag("--json", arguments->mAsJSON, "One JSON document instead of the text");
  verb->callback([arguments] { Report(*arguments); });
}

}  // namespace app
