// The text report of one run.
#pragma once

#include <memory>
#include <vector>

#include "platform/qelcore/Components.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/SCRIssue.h"

namespace qelsystemcompatibilityreport {

/// Appends the whole report to the stream: every component with its issues, the issues on files, the
/// registered sections. `issues` is sorted. Throws what a section throws, and `std::bad_function_call` for an
/// empty one.
void WriteTextReport(qelcore::UTF8StringStream& stream, const OSComponentRegistry& registry,
                     const std::vector<SCRIssue>& issues, qelcore::filesupport::File target);

/// Writes the report of one run to whichever file somebody chooses. It owns what the report is made of, so it
/// may outlive the run.
class TextReportWriter {
 public:
  TextReportWriter(std::shared_ptr<const OSComponentRegistry> registry, std::vector<SCRIssue> issues);

  /// Builds the text and puts it into the file in place of what is there. Throws when the text cannot be
  /// built, and the file is then untouched, or when it cannot be written.
  void operator()(const qelcore::filesupport::File& target) const;

 private:
  std::shared_ptr<const OSComponentRegistry> mRegistry;
  std::vector<SCRIssue> mIssues;
};

}  // namespace qelsystemcompatibilityreport
