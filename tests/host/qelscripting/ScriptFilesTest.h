// Script files in a directory of their own.
#pragma once

#include <filesystem>
#include <string>

#include "tests/host/qelscripting/ScriptTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace scripttest {

inline std::string AsText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

class ScriptFiles : public Script {
 protected:
  /// Writes a script and runs it; returns the message with which it failed, or nothing.
  std::string RunFile(const std::u8string& name, const std::string& text) {
    static_cast<void>(mDirectory.Write("placeholder", text));
    const std::filesystem::path path = mDirectory.Path() / name;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::rename(mDirectory.Path() / "placeholder", path);
    return MessageOfFile(AsText(path));
  }

  static std::string MessageOfFile(const std::string& path) {
    try {
      qelscripting::host::RunScriptFile(path);
      return {};
    } catch (const qelscripting::host::ScriptError& error) {
      return error.what();
    }
  }

  testsupport::TemporaryDirectory mDirectory;
};

}  // namespace scripttest
