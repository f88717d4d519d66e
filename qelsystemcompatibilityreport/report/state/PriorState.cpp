// The remembered state's file.
#include "qelsystemcompatibilityreport/report/state/PriorState.h"

#include <utility>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Json.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"
#include "qelsystemcompatibilityreport/common/Boundary.h"
#include "qelsystemcompatibilityreport/common/TraceSite.h"
#include "qelsystemcompatibilityreport/report/analytics/AnalyticsEvents.h"

namespace qelsystemcompatibilityreport {

using qelcore::filesupport::Dir;
using qelcore::filesupport::File;

namespace {

File StateFile() {
  return {Dir::PrefDir(), u"SCRPriorState.json"};
}

}  // namespace

bool LoadPriorStateFromPrefsDir(SCRPriorState& state) {
  state = SCRPriorState();
  return AtBoundary("qelsystemcompatibilityreport::LoadPriorStateFromPrefsDir", false, [&] {
    const File file = StateFile();
    if (!file.Exists()) return false;
    const std::string text = qelcore::filesupport::IPlatformByteStream(file).ReadAll();
    if (text.empty()) return false;
    const std::any json = qelcore::json::Parse(text);
    if (!json.has_value()) {
      static TraceSite site(TraceSite::kWarning);
      site.Write([&] { return "Error parsing Prior State JSON:\n" + text; });
      return false;
    }
    state = PriorStateFromJSON(json);
    return true;
  });
}

bool SavePriorStateToPrefsDir(const SCRPriorState& state) {
  return AtBoundary("qelsystemcompatibilityreport::SavePriorStateToPrefsDir", false, [&] {
    const std::string text = qelcore::json::Serialise(PriorStateToJSON(state));
    qelcore::filesupport::SafeSave save(StateFile());
    save.Write(text);
    save.Commit();
    return true;
  });
}

void DeleteReportSavedState() {
  AtBoundary("qelsystemcompatibilityreport::DeleteReportSavedState", [] {
    const File file = StateFile();
    if (!file.Exists()) return;
    file.Delete();
    LogReinitializeEvent();
  });
  // Whatever became of the file.
  AtBoundary("qelsystemcompatibilityreport::DeleteReportSavedState",
             [] { OSComponentRegistry::DeletePropertiesFromPrefsDir(); });
}

}  // namespace qelsystemcompatibilityreport
