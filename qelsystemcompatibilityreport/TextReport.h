// Sections that other modules add to the text report.
//
//   RegisterTextReportCallback(
//       [](qelcore::UTF8StringStream& stream, qelcore::filesupport::File&) { stream << "    Plug-ins: 3\n";
//       }, DisplayPriority::kApplication);
//
// docs/formats/text-report.md describes the report.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"
#include "qelsystemcompatibilityreport/Export.h"

namespace qelsystemcompatibilityreport {

/// Where a section stands: lower numbers come first. Any number may be used, not only the named ones.
enum class DisplayPriority : std::int32_t {
  kFirst = 0,
  kApplication = 4096,    ///< what the application and its plug-ins add
  kDebugSettings = 4864,  ///< the report's own section of debug settings
  kLast = 65536,
};

/// Appends a section to the report. Gets the stream in which the report is built and the file that it will be
/// written to. Lines end with a line feed.
using TextReportCallback =
    std::function<void(qelcore::UTF8StringStream& stream, qelcore::filesupport::File& target)>;

/// Adds a section to every text report of this process. Sections of equal priority come in no defined order.
/// An empty callback is a mistake that ends the writing of every report. Takes no lock: register on the
/// thread that reports are written on, and not while one is written. Does not throw.
QELSCR_EXPORT void RegisterTextReportCallback(TextReportCallback callback, DisplayPriority priority);

}  // namespace qelsystemcompatibilityreport
