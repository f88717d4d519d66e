#include <utility>

#include "host/qelscripting/HostSetup.h"
#include "host/qelscripting/Interpreter.h"
#include "host/qelscripting/ScriptFile.h"

namespace qelscripting::host {

namespace {

Options& TheOptions() {
  static Options& options = *new Options;
  return options;
}

}  // namespace

void SetOptions(Options options) {
  TheOptions() = std::move(options);
}

ScriptSession::ScriptSession() : mInterpreter(std::make_unique<Interpreter>(TheOptions())) {}
ScriptSession::~ScriptSession() = default;

void ScriptSession::RunFile(const std::string& utf8Path) {
  const ScriptFile script = ReadScriptFile(utf8Path, mInterpreter->GetOptions().mMemoryLimit);
  mInterpreter->Run({.mName = script.mName, .mText = script.mText, .mExpression = {}});
}

std::vector<std::string> ScriptSession::RunText(std::string_view text, const std::string& chunkName) {
  return mInterpreter->Run(
      {.mName = chunkName, .mText = std::string(text), .mExpression = "return " + std::string(text)});
}

void RunScriptFile(const std::string& utf8Path) {
  ScriptSession().RunFile(utf8Path);
}

std::vector<std::string> RunScriptText(std::string_view text, const std::string& chunkName) {
  return ScriptSession().RunText(text, chunkName);
}

}  // namespace qelscripting::host
