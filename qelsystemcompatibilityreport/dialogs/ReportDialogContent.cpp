#include "qelsystemcompatibilityreport/dialogs/ReportDialogContent.h"

#include <utility>

#include "platform/qelcore/Localisation.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/common/KindLabel.h"

namespace qelsystemcompatibilityreport {

using qelcore::Localise;
using qelcore::string::UTF8to16;

namespace {

std::u16string Heading(OSComponentType kind) {
  switch (kind) {
    case OSComponentType::kOS:
      return Localise("$$$/qel/scr/kUnsupportedOS=Unsupported Operating System");
    case OSComponentType::kVideo:
      return Localise("$$$/qel/scr/kUnsupportedVideoDriver=Unsupported Video Driver");
    case OSComponentType::kAudio:
      return Localise("$$$/qel/scr/kUnsupportedAudioDriver=Unsupported Audio Driver");
    case OSComponentType::kNetwork:
      return Localise("$$$/qel/scr/kUnsupportedNetworkDriver=Unsupported Network Driver");
    case OSComponentType::kFile:
      return Localise("$$$/qel/scr/kUnsupportedFile=Unsupported File or Directory");
    case OSComponentType::kProperty:
      return Localise("$$$/qel/scr/kUnsupportedPropertyText=Unsupported System Property");
    case OSComponentType::kInvalid:
      break;
  }
  return Localise("$$$/qel/scr/kUnsupportedUnknownDriver=Unsupported Driver");
}

/// The component as the text report names it.
std::u16string Component(const SCRIssue& issue) {
  std::u16string text = u"[" + KindLabel(issue.GetType()) + u"] " + UTF8to16(issue.GetName());
  if (issue.GetType() == OSComponentType::kProperty) {
    text += Localise("$$$/qel/scr/kPropertyValueSeparatorText= : ") + UTF8to16(issue.GetPropertyValue());
  } else if (issue.GetVersion()) {
    text += Localise("$$$/qel/scr/kVersionPrefixText= v.") + UTF8to16(issue.GetVersion().ToString());
  }
  return text;
}

qelui::IconKind IconOf(SCRRuleErrorLevel level) {
  switch (level) {
    case SCRRuleErrorLevel::INFO:
      return qelui::IconKind::kInformation;
    case SCRRuleErrorLevel::WARN:
      return qelui::IconKind::kWarning;
    case SCRRuleErrorLevel::ERROR:
    case SCRRuleErrorLevel::FATAL:
      break;
  }
  return qelui::IconKind::kError;
}

}  // namespace

ReportDialogContent MakeReportDialogContent(const std::u16string& applicationName,
                                            const std::vector<SCRIssue>& issues, bool blocklistIsMissing) {
  ReportDialogContent content;
  content.mTitle = Localise("$$$/qel/scr/kTitleText=System Compatibility Report");
  content.mIconName = Localise("$$$/qel/scr/kWarningIconText=Warning");
  content.mCaption = applicationName.empty() ? content.mTitle : applicationName;
  content.mNote = Localise(
      "$$$/qel/scr/kConflictNoteText=If you continue with known issues, you may experience performance "
      "degradation, instability and data loss.");
  content.mExportCaption = Localise("$$$/qel/scr/kExportReportText=Export Report...");
  content.mOkCaption = Localise("$$$/qel/scr/kOKButtonText=OK");
  content.mContinueCaption = Localise("$$$/qel/scr/kContinueHotText=Continue with known issues...");
  const std::u16string fix = Localise("$$$/qel/scr/kCTAFix=Fix...");
  const std::u16string info = Localise("$$$/qel/scr/kCTAInfo=Info...");
  content.mActionCaptions = {fix, info};

  if (blocklistIsMissing) {
    content.mInstead = Localise("$$$/qel/scr/kNoBlocklistText=Blocklist not present.");
    return content;
  }
  if (issues.empty()) content.mInstead = Localise("$$$/qel/scr/kNoConflictsText=No conflicts to report.");
  for (const SCRIssue& issue : issues) {
    content.mIsSerious = content.mIsSerious || issue.IsSeriousError();
    ReportDialogRow row;
    row.mIcon = IconOf(issue.GetErrorLevel());
    row.mLevel = UTF8to16(SCRRule::ErrorLevelToString(issue.GetErrorLevel()));
    row.mHeading = Heading(issue.GetType());
    row.mComponent = Component(issue);
    row.mMessage = UTF8to16(issue.GetInfoMessage());
    row.mActionCaption = issue.GetErrorLevel() == SCRRuleErrorLevel::INFO ? info : fix;
    const std::u16string number = UTF8to16(std::to_string(content.mRows.size() + 1)) + u". ";
    row.mAccessibleName = number + row.mLevel + u": " + row.mHeading + u", " + row.mComponent;
    // People who speak to their machine say what they see, so the caption comes first.
    row.mActionAccessibleName = row.mActionCaption + u" " + number + row.mComponent;
    content.mRows.push_back(std::move(row));
  }
  return content;
}

}  // namespace qelsystemcompatibilityreport
