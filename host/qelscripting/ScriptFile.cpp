#include "host/qelscripting/ScriptFile.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "host/qelcore/files/FileContent.h"
#include "host/qelscripting/HostSetup.h"
#include "platform/qelcore/Files.h"
#include "platform/qelcore/Text.h"

namespace qelscripting {

namespace {

/// Takes away what the language does not know. The line feed of the first line stays, so that lines keep
/// their numbers.
void RemoveDecoration(std::string& text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) {
    text.erase(0, kByteOrderMark.size());
  }
  if (text.starts_with('#')) {
    text.erase(0, std::min(text.find('\n'), text.size()));
  }
}

}  // namespace

ScriptFile ReadScriptFile(const std::string& utf8Path, std::size_t largestSize) {
  try {
    const qelcore::filesupport::File file(qelcore::string::UTF8to16(utf8Path));
    const std::size_t limit = std::min(largestSize, qelcore::host::kLargestContent);
    ScriptFile script{qelcore::string::UTF16to8(file.GetName()), qelcore::host::ReadContent(utf8Path, limit)};
    RemoveDecoration(script.mText);
    return script;
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::file_too_large) {
      throw host::ScriptError("cannot read the script: " + utf8Path + ": it is larger than a script may be");
    }
    throw host::ScriptError("cannot read the script: " + std::string(error.what()));
  }
}

}  // namespace qelscripting
