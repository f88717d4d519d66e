#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"

#include <string_view>
#include <utility>

#include "platform/qelcore/Localisation.h"
#include "qelsystemcompatibilityreport/common/KindLabel.h"
#include "qelsystemcompatibilityreport/report/text/DebugSettingsSection.h"
#include "qelsystemcompatibilityreport/report/text/TextReportSections.h"

namespace qelsystemcompatibilityreport {

using qelcore::UTF8StringStream;
using qelcore::filesupport::File;
using qelcore::string::UTF16to8;

namespace {

std::string LocaliseUTF8(std::string_view key) {
  return UTF16to8(qelcore::Localise(key));
}

/// The report's localised texts, looked up once for each report.
struct Texts {
  std::string mVersionPrefix = LocaliseUTF8("$$$/qel/scr/kVersionPrefixText= v.");
  std::string mValueSeparator = LocaliseUTF8("$$$/qel/scr/kPropertyValueSeparatorText= : ");
  std::string mIssues = LocaliseUTF8("$$$/qel/scr/kIssuesLabelText=ISSUES");
  std::string mURL = LocaliseUTF8("$$$/qel/scr/kURL=URL:");
  std::string mID = LocaliseUTF8("$$$/qel/scr/kID=ID:");
};

class ReportText {
 public:
  explicit ReportText(UTF8StringStream& stream) : mStream(stream) {}

  void WriteComponents(const OSComponentRegistry& registry, const std::vector<SCRIssue>& issues) {
    mStream << LocaliseUTF8("$$$/qel/scr/kSystemComponentsText=System Components:\n\n");
    // A report whose first component is no operating system begins with a separator. That is intended.
    OSComponentType kind = OSComponentType::kOS;
    std::string label = UTF16to8(KindLabel(kind));
    for (const auto& component : registry.GetAllComponents()) {
      if (component->GetType() != kind) {
        kind = component->GetType();
        label = UTF16to8(KindLabel(kind));
        WriteKindSeparator();
      }
      WriteComponent(*component, label);
      WriteIssuesOf(*component, issues);
    }
  }

  /// Every issue on a file makes a block of its own, even where several concern one file. That is intended.
  void WriteFileIssues(const std::vector<SCRIssue>& issues) {
    static const std::string label = UTF16to8(KindLabel(OSComponentType::kFile));
    bool isFirst = true;
    for (const SCRIssue& issue : issues) {
      if (issue.GetType() != OSComponentType::kFile) continue;
      if (std::exchange(isFirst, false)) WriteKindSeparator();
      mStream << '[' << label << "] " << issue.GetName();
      if (issue.GetVersion()) mStream << mTexts.mVersionPrefix << issue.GetVersion().ToString();
      mStream << '\n';
      WriteIssuesLabel();
      WriteIssue(1, issue);
    }
  }

  void WriteSections(File& target) {
    for (const TextReportSection& section : GetTextReportSections()) {
      mStream << '\n' << std::string(kSeparatorLength, '_') << "\n\n";
      section.mCallback(mStream, target);
    }
  }

 private:
  static constexpr std::size_t kSeparatorLength = 76;

  void WriteKindSeparator() { mStream << '\n' << std::string(kSeparatorLength, '-') << '\n'; }

  void WriteComponent(const OSComponent& component, const std::string& label) {
    mStream << '[' << label << "] " << component.GetName();
    if (component.GetType() == OSComponentType::kProperty) {
      mStream << mTexts.mValueSeparator << component.GetPropertyValue();
    } else {
      mStream << mTexts.mVersionPrefix << component.GetVersion().ToString();
    }
    mStream << '\n';
  }

  void WriteIssuesOf(const OSComponent& component, const std::vector<SCRIssue>& issues) {
    int number = 0;
    for (const SCRIssue& issue : issues) {
      if (!issue.IsOSComponent(component)) continue;
      if (number == 0) WriteIssuesLabel();
      WriteIssue(++number, issue);
    }
  }

  void WriteIssuesLabel() { mStream << mTexts.mIssues << ":\n"; }

  void WriteIssue(int number, const SCRIssue& issue) {
    mStream << number << ".\t" << issue.GetInfoMessage() << '\n';
    const std::string url = issue.GetInfoURL();
    if (!url.empty()) mStream << '\t' << mTexts.mURL << ' ' << url << '\n';
    const std::string id = issue.GetID();
    if (!id.empty()) mStream << '\t' << mTexts.mID << "  " << id << '\n';
  }

  UTF8StringStream& mStream;
  Texts mTexts;
};

}  // namespace

void WriteTextReport(UTF8StringStream& stream, const OSComponentRegistry& registry,
                     const std::vector<SCRIssue>& issues, File target) {
  RegisterDebugSettingsSection();
  ReportText text(stream);
  text.WriteComponents(registry, issues);
  text.WriteFileIssues(issues);
  text.WriteSections(target);
}

TextReportWriter::TextReportWriter(std::shared_ptr<const OSComponentRegistry> registry,
                                   std::vector<SCRIssue> issues)
    : mRegistry(std::move(registry)), mIssues(std::move(issues)) {}

void TextReportWriter::operator()(const File& target) const {
  UTF8StringStream stream;
  WriteTextReport(stream, *mRegistry, mIssues, target);
  const std::string text = stream.Text();
  if (text.empty()) return;
  qelcore::filesupport::OPlatformByteStream output(target);
  if (target.Exists()) output.Write(text);
  output.Close();
}

}  // namespace qelsystemcompatibilityreport
