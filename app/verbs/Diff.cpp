// `scr diff`: what a change of a blocklist does to users.
#include <algorithm>
#include <any>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/BlocklistFile.h"
#include "app/InputFile.h"
#include "app/MachineSource.h"
#include "app/OrderedWork.h"
#include "app/Output.h"
#include "app/Progress.h"
#include "app/Snapshot.h"
#include "app/Verbs.h"
#include "authoring/diff/DiffOutputs.h"
#include "host/qelcore/HostSetup.h"
#include "qelsystemcompatibilityreport/SeparateMatching.h"

namespace app {

using authoring::ComparedList;
using authoring::ListDiff;
using authoring::MachineCounts;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SeparateMatching;

namespace {

constexpr const char* kStandardInput = "-";

/// More than any machine has. Its bound is what keeps a line from filling the memory with issues.
constexpr std::size_t kMostComponents = 10'000;

struct Arguments {
  std::string mOld;
  std::string mNew;
  std::vector<std::string> mMachines;
  std::string mMachineList;
  std::size_t mThreads = 0;
  bool mAsJSON = false;

  [[nodiscard]] bool AreLines() const {
    return std::find(mMachines.begin(), mMachines.end(), kStandardInput) != mMachines.end();
  }
  [[nodiscard]] bool HasMachines() const { return !mMachines.empty() || !mMachineList.empty(); }
};

/// One machine that is still to be read.
struct MachineInput {
  std::string mName;      ///< the file's path, or "line 17"
  std::size_t mLine = 0;  ///< from 1 on, of one that came as a line; else 0
  std::string mText{};    ///< the line
  bool mIsTooLong = false;
};

/// What is said about one machine.
struct MachineOutput {
  std::string mText;
  std::string mProblem{};  ///< why it could not be read; else empty
  MachineCounts mCounts{};
};

/// What matching logs while several threads match: expressions that are malformed or refused.
class MatchProblems {
 public:
  MatchProblems() {
    qelcore::host::SetExceptionSink([this](const std::exception_ptr& exception, std::string_view) {
      const std::lock_guard lock(mMutex);
      if (mTexts.size() < kMostTold) mTexts.insert(qelcore::host::DescribeException(exception));
    });
  }
  ~MatchProblems() { qelcore::host::SetExceptionSink({}); }
  MatchProblems(const MatchProblems&) = delete;
  MatchProblems& operator=(const MatchProblems&) = delete;

  void Print() const {
    for (const std::string& text : mTexts) PrintDiagnostic("warning: " + text);
    if (mTexts.size() == kMostTold) PrintDiagnostic("warning: perhaps more of this kind; scr lint tells all");
  }

 private:
  static constexpr std::size_t kMostTold = 10;

  std::mutex mMutex;
  std::set<std::string> mTexts;
};

/// Both lists and their differences.
class Comparison {
 public:
  explicit Comparison(const Arguments& arguments)
      : Comparison({arguments.mOld, arguments.mNew}, ReadBlocklistFile(arguments.mOld),
                   ReadBlocklistFile(arguments.mNew)) {}

  [[nodiscard]] const ListDiff& Lists() const { return mDiff; }
  [[nodiscard]] const authoring::ListNames& Names() const { return mNames; }

  /// Any thread.
  [[nodiscard]] authoring::MachineDiff OnMachine(Snapshot snapshot) const {
    if (snapshot.mRegistry->GetAllComponents().size() > kMostComponents) {
      throw UserError("has more than " + std::to_string(kMostComponents) + " components");
    }
    const qelcore::host::RecordedFilesScope files(std::move(snapshot.mFileVersions));
    const SeparateMatching separate;
    return authoring::CompareOnMachine({mOldBlocklist, mNewBlocklist}, mDiff, *snapshot.mRegistry);
  }

 private:
  Comparison(authoring::ListNames names, BlocklistFile oldFile, BlocklistFile newFile)
      : mNames(std::move(names)),
        mOldBlocklist(std::move(oldFile.mBlocklist)),
        mNewBlocklist(std::move(newFile.mBlocklist)),
        mOldList(oldFile.mDocument, mOldBlocklist),
        mNewList(newFile.mDocument, mNewBlocklist),
        mDiff(mOldList, mNewList) {}

  authoring::ListNames mNames;
  SCRBlocklist mOldBlocklist;
  SCRBlocklist mNewBlocklist;
  ComparedList mOldList;
  ComparedList mNewList;
  ListDiff mDiff;
};

Snapshot Read(const MachineInput& input) {
  if (input.mLine == 0) return ReadSnapshot(input.mName);
  if (input.mIsTooLong) {
    throw UserError(input.mName + ": longer than " + std::to_string(kLongestLine) + " bytes");
  }
  return ParseSnapshot(input.mName, input.mText);
}

/// Matches one machine and writes down what there is to say. Any thread; whatever is wrong with the machine
/// goes into the output.
MachineOutput Judge(const Comparison& comparison, const MachineInput& input, bool asJSON) {
  MachineOutput output;
  const authoring::MachineName name{input.mName, input.mLine};
  try {
    Snapshot snapshot = Read(input);
    const authoring::MachineName given{
        input.mLine != 0 && !snapshot.mName.empty() ? snapshot.mName : input.mName, input.mLine};
    const authoring::MachineDiff diff = comparison.OnMachine(std::move(snapshot));
    output.mCounts.Add(diff);
    output.mText =
        asJSON ? WriteJson(diff, given) : PrintableLines(DescribeAsText(diff, Printable(given.mName)));
  } catch (const std::exception& error) {
    output.mProblem = error.what();
    if (!output.mProblem.starts_with(input.mName)) output.mProblem = input.mName + ": " + output.mProblem;
    output.mCounts.mMachines = 1;
    output.mCounts.mUnreadable = 1;
    if (asJSON) output.mText = WriteErrorJson(name, output.mProblem);
  }
  return output;
}

/// Judges machines on all cores and prints what is said about them in their order.
class MachineRun {
 public:
  MachineRun(const Comparison& comparison, const Arguments& arguments, std::size_t count)
      : mAsJSON(arguments.mAsJSON || arguments.AreLines()),
        mProgress("machines", count),
        mWork(
            arguments.mThreads == 0 ? std::max(1U, std::thread::hardware_concurrency()) : arguments.mThreads,
            [&comparison, this](const MachineInput& input) { return Judge(comparison, input, mAsJSON); },
            [this](const MachineOutput& output) { Take(output); }) {}

  [[nodiscard]] bool Add(MachineInput input) { return mWork.Add(std::move(input)); }

  /// Waits for the last machine.
  const MachineCounts& Finish() {
    mWork.Finish();
    mProgress.Clear();
    mProblems.Print();
    return mCounts;
  }

 private:
  void Take(const MachineOutput& output) {
    mCounts += output.mCounts;
    const bool isDiagnosed = !mAsJSON && !output.mProblem.empty();
    if (!output.mText.empty() || isDiagnosed) mProgress.Clear();
    if (!output.mText.empty()) Print(mAsJSON ? output.mText : "\n" + output.mText);
    if (isDiagnosed) PrintDiagnostic(output.mProblem);
    mProgress.Show(mCounts.mMachines);
  }

  const bool mAsJSON;
  MatchProblems mProblems;
  Progress mProgress;
  MachineCounts mCounts;
  OrderedWork<MachineInput, MachineOutput> mWork;
};

/// Standard input to standard output, a line for each line and nothing else.
ExitCode CompareOnLines(const Comparison& comparison, const Arguments& arguments) {
  InputLines lines;
  MachineRun run(comparison, arguments, 0);
  std::size_t number = 0;
  while (auto line = lines.Next()) {
    ++number;
    if (!run.Add({"line " + std::to_string(number), number, std::move(line->mText), line->mIsTooLong})) break;
  }
  return run.Finish().mUnreadable > 0 ? ExitCode::kFailure : ExitCode::kSuccess;
}

MachineCounts CompareOnFiles(const Comparison& comparison, const Arguments& arguments, MachineFiles& files) {
  MachineRun run(comparison, arguments, files.Count());
  while (auto path = files.Next()) {
    if (!run.Add({std::move(*path)})) break;
  }
  return run.Finish();
}

ExitCode Diff(const Arguments& arguments) {
  if (arguments.AreLines() && (arguments.mMachines.size() > 1 || !arguments.mMachineList.empty())) {
    throw UserError("--machine -: standard input stands alone, without other machines");
  }
  const Comparison comparison(arguments);
  qelcore::utility::OSComponent::EnableSupportProperties(true);
  if (arguments.AreLines()) return CompareOnLines(comparison, arguments);

  MachineFiles files(arguments.mMachines, arguments.mMachineList);
  const ListDiff& lists = comparison.Lists();
  Print(arguments.mAsJSON ? WriteJson(lists, comparison.Names())
                          : PrintableLines(DescribeAsText(lists, comparison.Names())));
  MachineCounts counts;
  if (arguments.HasMachines()) {
    counts = CompareOnFiles(comparison, arguments, files);
    Print(arguments.mAsJSON ? WriteJson(counts) : "\n" + DescribeAsText(counts));
  }
  if (counts.mUnreadable > 0) return ExitCode::kFailure;
  return lists.IsEmpty() && counts.mChanged == 0 ? ExitCode::kSuccess : ExitCode::kDifferences;
}

}  // namespace

void AddDiffVerb(CLI::App& application, ExitCode& exitCode) {
  CLI::App* const verb =
      application.add_subcommand("diff", "What a change of a blocklist does to users and machines");
  verb->group("Verbs")->footer(
      "Compares two blocklists, rule by rule, and says what users will notice; with recorded machines also\n"
      "which issues become new, go on, or are resolved on each. Nothing is remembered.\n"
      "A directory stands for all *.json files in it. With \"--machine -\" each line of standard input is a\n"
      "snapshot and each line of standard output what becomes of it: nothing else is printed.\n"
      "Exit code: 0 no difference that a user would notice, 2 differences, 1 bad input or wrong use;\n"
      "with \"--machine -\" 0 when all lines could be read, else 1.\n"
      "\n"
      "  scr diff shipped.json edited.json\n"
      "  scr diff shipped.json edited.json --machine office.json --machine lab.json\n"
      "  scr diff shipped.json edited.json --machine fleet/ --json\n"
      "  scr diff shipped.json edited.json --machine - < fleet.jsonl\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_option("OLD", arguments->mOld, "Blocklist file, JSON, that users have")
      ->required()
      ->type_name("");
  verb->add_option("NEW", arguments->mNew, "Blocklist file, JSON, that they will get")
      ->required()
      ->type_name("");
  verb->add_option("-m,--machine", arguments->mMachines,
                   "Machine snapshot, directory of snapshots, or - (may be repeated)")
      ->type_name("SNAPSHOT");
  verb->add_option("--machines-from", arguments->mMachineList,
                   "File with the path of a snapshot on each line; - is standard input")
      ->type_name("FILE");
  verb->add_option("--threads", arguments->mThreads,
                   "Machines at once; as many as there are cores if not given")
      ->type_name("COUNT")
      ->check(CLI::Range(std::size_t{1}, std::size_t{256}));
  verb->add_flag("--json", arguments->mAsJSON, "JSON objects, one on each line");
  verb->callback([arguments, &exitCode] { exitCode = Diff(*arguments); });
}

}  // namespace app
