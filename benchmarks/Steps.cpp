#include "benchmarks/Steps.h"

#include <simdjson.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <utility>

#include "benchmarks/GeneratedData.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Hash.h"
#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/IssueResolution.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"

namespace benchmarks {

namespace json = qelcore::json;
using qelcore::Guid;
using qelcore::filesupport::File;
using qelcore::utility::OSComponent;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;

namespace {

constexpr std::uint64_t kSeed = 1;

std::string ReadAll(const std::string& path) {
  return qelcore::filesupport::IPlatformByteStream(File(qelcore::string::UTF8to16(path))).ReadAll();
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

/// Where no step writes but the one that is to.
std::filesystem::path MakeDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "qelscr-steps-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  return name;
}

Machine MakeMachine(const std::filesystem::path& directory, std::size_t components) {
  const std::string path = (directory / "machine.json").string();
  WriteFile(path, GenerateMachine(components, kSeed));
  return ReadMachine(path);
}

std::vector<SCRRule> ReadRules(const std::any& root) {
  std::vector<SCRRule> rules;
  for (const std::any& element : *json::FindArray(json::AsDictionary(root), "blocklist")) {
    static_cast<void>(rules.emplace_back().FromJSON(element));
  }
  return rules;
}

Guid HashOf(const SCRBlocklist& blocklist) {
  Guid hash;
  qelcore::GetHashResult(blocklist.Hash(), hash);
  return hash;
}

std::size_t ReadFile(StepData& data) {
  return ReadAll(data.mBlocklistPath).size();
}

/// Into memory that is there already.
std::size_t ReadBytes(StepData& data) {
  std::ifstream file(data.mBlocklistPath, std::ios::binary);
  file.rdbuf()->pubsetbuf(nullptr, 0);
  static std::vector<char> content;
  content.resize(data.mText.size());
  file.read(content.data(), static_cast<std::streamsize>(content.size()));
  return static_cast<std::size_t>(file.gcount());
}

std::size_t ParseToDictionary(StepData& data) {
  return json::Parse(data.mText).has_value() ? 1 : 0;
}

std::size_t ParseBare(StepData& data) {
  simdjson::dom::parser parser;
  return parser.parse(data.mText).error() == simdjson::SUCCESS ? 1 : 0;
}

std::size_t RulesFromDictionary(StepData& data) {
  return ReadRules(data.mParsed).size();
}

std::size_t BlocklistFromText(StepData& data) {
  return SCRBlocklist(data.mText).GetSecondWarning().size();
}

std::size_t HashContent(StepData& data) {
  return HashOf(*data.mBlocklist).Bytes()[0];
}

std::size_t HashBytes(StepData& data) {
  qelcore::MixHashGuidT<qelcore::HashValueMixerState> state;
  qelcore::UpdateHashState(state, data.mText.data(), data.mText.size());
  Guid hash;
  qelcore::GetHashResult(state, hash);
  return hash.Bytes()[0];
}

std::size_t TestForRematch(StepData& data) {
  return data.mBlocklist->NeedsRematch(data.mRegistry, data.mMatchID) ? 1 : 0;
}

std::size_t Match(StepData& data) {
  SCRRule::ForgetFileComponents();
  Guid matchID;
  return data.mBlocklist->MatchToOSComponents(data.mRegistry, matchID).size();
}

std::size_t CompareEachOnce(StepData& data) {
  std::size_t hits = 0;
  for (const SCRRule& rule : data.mRules) {
    const std::string& name = rule.GetName();
    for (const auto& component : data.mRegistry.GetAllComponents()) {
      if (component->GetType() == rule.GetType() && component->GetName() == name) ++hits;
    }
  }
  return hits;
}

std::size_t SortIssues(StepData& data) {
  std::vector<qelsystemcompatibilityreport::Hit> hits = data.mHits;
  SortHits(hits, data.mRules);
  return hits.size();
}

std::size_t CopyIssues(StepData& data) {
  return std::vector<SCRIssue>(data.mIssues).size();
}

std::size_t Resolve(StepData& data) {
  qelsystemcompatibilityreport::SCRPriorState state;
  for (const auto level : qelsystemcompatibilityreport::kErrorLevels) {
    static_cast<void>(qelsystemcompatibilityreport::ResolveIssuesOfErrorLevel(
        level, data.mIssues, state.MatchesOfLevel(level), qelsystemcompatibilityreport::ResolutionLogger()));
  }
  data.mState = state;
  return state.mFatalMatches.size();
}

std::size_t SaveState(StepData& data) {
  return SavePriorStateToPrefsDir(data.mState) ? 1 : 0;
}

std::size_t WriteReport(StepData& data) {
  qelcore::UTF8StringStream stream;
  qelsystemcompatibilityreport::WriteTextReport(stream, data.mRegistry, data.mIssues, File(u""));
  return stream.Text().size();
}

std::size_t FindUnchanged(StepData& data) {
  const SCRBlocklist blocklist(ReadAll(data.mBlocklistPath));
  return blocklist.NeedsRematch(data.mRegistry, data.mMatchID) ? 0 : 1;
}

// The yardsticks, each a bare piece of the same work, are steps too; benchmarks/run knows which is whose.
constexpr Step kSteps[] = {
    {"read", false, ReadFile},
    {"bytes_read", false, ReadBytes},
    {"parse_to_dictionary", false, ParseToDictionary},
    {"rules_from_dictionary", false, RulesFromDictionary},
    {"blocklist_from_text", false, BlocklistFromText},
    {"bare_parse", false, ParseBare},
    {"hash", false, HashContent},
    {"bare_hash", false, HashBytes},
    {"rematch_test", false, TestForRematch},
    {"nothing_changed", false, FindUnchanged},
    {"match", true, Match},
    {"one_comparison_each", true, CompareEachOnce},
    {"sort", true, SortIssues},
    {"issues_copied", true, CopyIssues},
    {"resolution", true, Resolve},
    {"state_save", true, SaveState},
    {"text_report", true, WriteReport},
};

}  // namespace

StepData::StepData(std::size_t rules, std::size_t components)
    : mDirectory(MakeDirectory()),
      mBlocklistPath((mDirectory / "blocklist.json").string()),
      mRegistry(MakeRegistry(MakeMachine(mDirectory, components))) {
  qelcore::host::SetDirectories({.mPreferences = (mDirectory / "preferences").string(),
                                 .mApplication = mDirectory.string(),
                                 .mDocuments = {},
                                 .mState = (mDirectory / "state").string()});
  std::filesystem::create_directories(mDirectory / "preferences");
  OSComponent::EnableSupportProperties(true);
  WriteFile(mBlocklistPath, GenerateBlocklist(rules, kSeed));
  mText = ReadAll(mBlocklistPath);
  mParsed = json::Parse(mText);
  mBlocklist.emplace(mText);
  mRules = ReadRules(mParsed);
  mIssues = mBlocklist->MatchToOSComponents(mRegistry, mMatchID);
  // The first question of a process may be answered apart from all others.
  static_cast<void>(TestForRematch(*this));
  for (std::size_t rule = 0; rule < mRules.size(); ++rule) {
    for (const auto& component : mRules[rule].FindMatchingOSComponents(mRegistry))
      mHits.push_back({component, rule});
  }
  static_cast<void>(Resolve(*this));
}

StepData::~StepData() {
  std::error_code ignored;
  std::filesystem::remove_all(mDirectory, ignored);
}

std::span<const Step> AllSteps() {
  return kSteps;
}

}  // namespace benchmarks
