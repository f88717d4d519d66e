// The text report's own section: debug settings that differ from their defaults.
#pragma once

#include "platform/qelcore/Text.h"

namespace qelsystemcompatibilityreport {

/// Registers the section, once in a process however often it is called. Any thread may call.
void RegisterDebugSettingsSection();

/// Writes the section.
void WriteDebugSettings(qelcore::UTF8StringStream& stream);

}  // namespace qelsystemcompatibilityreport
