#include "qelsystemcompatibilityreport/report/text/TextReportWriter.h"

#include <string>
#include <string_view>
#include <unordered_map>
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

/// The issues by their component's name, in their order: with many of both, not every issue is to be compared
/// with every component.
class IssuesByName {
 public:
  explicit IssuesByName(const std::vector<SCRIssue>& issues) {
    for (const SCRIssue& issue : issues) mIssues[issue.GetName()].push_back(&issue);
  }

  /// The issues on components of this name, whatever their kind, version and value.
  [[nodiscard]] const std::vector<const SCRIssue*>& Find(const std::string& name) const {
    static const std::vector<const SCRIssue*> none;
    const auto found = mIssues.find(name);
    return found == mIssues.end() ? none : found->second;
  }

 private:
  std::unordered_map<std::string, std::vector<const SCRIssue*>> mIssues;
};

class ReportText {
 public:
  explicit ReportText(UTF8StringStream& stream) : mStream(stream) {}

  void WriteComponents(const OSComponentRegistry& registry, const std::vector<SCRIssue>& issues) {
    mStream << LocaliseUTF8("$$$/qel/scr/kSystemComponentsText=System Components:\n\n");
    // A report whose first component is no operating system begins with a separator. That is intended.
    OSComponentType kind = OSComponentType::kOS;
    std::string label = UTF16to8(KindLabel(kind));
    const IssuesByName byName(issues);
    for (const auto& component : registry.GetAllComponents()) {
      if (component->GetType() != kind) {
        kind = component->GetType();
        label = UTF16to8(KindLabel(kind));
        WriteKindSeparator();
      }
      WriteComponent(*component, label);
      WriteIssuesOf(*component, byName.Find(component->GetName()));
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

  void WriteIssuesOf(const OSComponent& component, const std::vector<const SCRIssue*>& issues) {
    int number = 0;
    for (const SCRIssue* const issue : issues) {
      if (!issue->IsOSComponent(component)) continue;
      if (number == 0) WriteIssuesLabel();
      WriteIssue(++number, *issue);
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
