#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Text.h"

namespace qelscripting::host {

namespace {

/// A text that can be shown: what is no UTF-8, such as a name that Lua cut inside a character, and what would
/// end a C text become U+FFFD.
std::string Presentable(const std::string& text) {
  std::u16string wide = qelcore::string::UTF8to16(text);
  for (char16_t& unit : wide) {
    if (unit == u'\0') {
      unit = u'\uFFFD';
    }
  }
  return qelcore::string::UTF16to8(wide);
}

}  // namespace

ScriptError::ScriptError(const std::string& message, const std::string& traceback)
    : std::runtime_error(Presentable(message)), mTraceback(Presentable(traceback)) {}

ScriptError::~ScriptError() = default;
ScriptError::ScriptError(const ScriptError&) = default;
ScriptError& ScriptError::operator=(const ScriptError&) = default;

}  // namespace qelscripting::host
