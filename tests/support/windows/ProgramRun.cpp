#include "tests/support/ProgramRun.h"

#include <gtest/gtest.h>

#include <cwchar>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/windows/SystemHeaders.h"

namespace testsupport {

namespace {

struct LessWithoutCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const {
    return _wcsicmp(left.c_str(), right.c_str()) < 0;
  }
};

std::wstring Wide(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

/// The argument so that the program's own start finds it again.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : argument) {
    // Backslashes stand for themselves, except before a quotation mark.
    if (character == L'"') text.append(backslashes + 1, L'\\');
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    text += character;
  }
  return text.append(backslashes, L'\\') + L"\"";
}

std::wstring CommandLine(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::wstring line = Quoted(program.wstring());
  for (const std::string& argument : arguments) line += L" " + Quoted(Wide(argument));
  return line;
}

/// This process's environment with additions, as the system takes it: sorted, each with a null behind it.
std::wstring EnvironmentBlock(const std::map<std::string, std::string>& additions) {
  std::map<std::wstring, std::wstring, LessWithoutCase> all;
  wchar_t* const own = GetEnvironmentStringsW();
  for (const wchar_t* entry = own; *entry != L'\0'; entry += std::wcslen(entry) + 1) {
    const std::wstring text = entry;
    // The names of some begin with the sign that ends the others.
    const std::size_t end = text.find(L'=', 1);
    all[text.substr(0, end)] = text.substr(end + 1);
  }
  FreeEnvironmentStringsW(own);
  for (const auto& [name, value] : additions) all[Wide(name)] = Wide(value);
  std::wstring block;
  for (const auto& [name, value] : all) block += name + L"=" + value + L'\0';
  return block + L'\0';
}

/// A file that a program inherits.
HANDLE Open(const std::filesystem::path& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const HANDLE file = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                  disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE) << path;
  return file;
}

}  // namespace

ProgramResult RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         const std::filesystem::path& workingDirectory,
                         const std::filesystem::path& scratch) {
  const std::filesystem::path output = scratch / "output.txt";
  const std::filesystem::path errors = scratch / "errors.txt";
  std::wstring commandLine = CommandLine(program, arguments);
  std::wstring environmentBlock = EnvironmentBlock(environment);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = Open("NUL", GENERIC_READ, OPEN_EXISTING);
  start.hStdOutput = Open(output, GENERIC_WRITE, CREATE_ALWAYS);
  start.hStdError = Open(errors, GENERIC_WRITE, CREATE_ALWAYS);
  PROCESS_INFORMATION process{};
  const BOOL isStarted =
      CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                     environmentBlock.data(), workingDirectory.c_str(), &start, &process);
  EXPECT_NE(isStarted, FALSE) << program;
  DWORD exitCode = 0;
  if (isStarted != FALSE) {
    EXPECT_EQ(WaitForSingleObject(process.hProcess, INFINITE), WAIT_OBJECT_0);
    EXPECT_NE(GetExitCodeProcess(process.hProcess, &exitCode), FALSE);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  for (const HANDLE file : {start.hStdInput, start.hStdOutput, start.hStdError}) CloseHandle(file);
  return {static_cast<int>(exitCode), ReadWholeFile(output), ReadWholeFile(errors)};
}

}  // namespace testsupport
