// `scr report`: the text report of this machine.
#include <filesystem>
#include <memory>
#include <optional>
#include <random>

#include "app/Diagnostics.h"
#include "app/InputFile.h"
#include "app/Output.h"
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
    mPath = (std::filesystem::temp_directory_path() / name).string();
    qelcore::filesupport::File(qelcore::string::UTF8to16(mPath)).Create(true);
  }
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(mPath, ignored);
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

void Report(const std::optional<std::string>& outputPath) {
  if (outputPath) {
    if (outputPath->empty()) throw UserError("--output: the name of a file is missing");
    RunReport(std::filesystem::absolute(*outputPath).string());
    return;
  }
  const TemporaryFile file;
  RunReport(file.Path());
  // A file keeps what the blocklist says byte for byte; a terminal would act upon it.
  Print(PrintableLines(ReadInputFile(file.Path())));
}

}  // namespace

void AddReportVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("report", "The report of this machine as text");
  verb->group("Verbs")->footer(
      "The report of this machine as text: its components, the known issues of each, and what they mean.\n"
      "The issues are remembered, so that later runs can tell new ones from old.\n"
      "\n"
      "  scr report                       on standard output\n"
      "  scr report --output report.txt   into a file\n");
  const auto outputPath = std::make_shared<std::optional<std::string>>();
  verb->add_option("-o,--output", *outputPath, "File to write, in place of what is there")->type_name("FILE");
  verb->callback([outputPath] { Report(*outputPath); });
}

}  // namespace app
