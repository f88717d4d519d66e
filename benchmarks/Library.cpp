// The library, as a report run calls it.
#include <optional>
#include <utility>

#include "benchmarks/Judge.h"
#include "benchmarks/LoggedExceptions.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SCRBlocklist.h"
#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"

namespace benchmarks {

namespace {

using qelcore::Guid;
using qelcore::filesupport::File;
using qelsystemcompatibilityreport::OSComponent;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::SCRBlocklist;
using qelsystemcompatibilityreport::SCRIssue;
using qelsystemcompatibilityreport::SCRRule;

class LibraryJudge : public Judge {
 public:
  explicit LibraryJudge(const Machine& machine)
      : mRegistry(MakeRegistry(machine)), mFiles(machine.mFileVersions) {
    OSComponent::EnableSupportProperties(true);
  }

  Verdict JudgeMachine(const std::string& blocklistPath) override {
    SCRRule::ForgetFileComponents();
    const LoggedExceptions logged;
    const SCRBlocklist blocklist(Read(blocklistPath));
    Guid matchID;
    const std::vector<SCRIssue> issues = blocklist.MatchToOSComponents(mRegistry, matchID);
    qelcore::UTF8StringStream stream;
    qelsystemcompatibilityreport::WriteTextReport(stream, mRegistry, issues, File(u""));
    return {matchID.AsUTF8String(), stream.Text(), logged.Count()};
  }

  bool IsUnchanged(const std::string& blocklistPath, const std::string& matchID) override {
    const SCRBlocklist blocklist(Read(blocklistPath));
    return !blocklist.NeedsRematch(mRegistry, Guid::FromUTF8String(matchID));
  }

 private:
  static std::string Read(const std::string& path) {
    return qelcore::filesupport::IPlatformByteStream(File(qelcore::string::UTF8to16(path))).ReadAll();
  }

  OSComponentRegistry mRegistry;
  qelcore::host::RecordedFilesScope mFiles;
};

}  // namespace

std::unique_ptr<Judge> MakeLibraryJudge(const Machine& machine) {
  return std::make_unique<LibraryJudge>(machine);
}

}  // namespace benchmarks
