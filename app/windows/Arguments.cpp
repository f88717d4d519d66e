#include "app/Arguments.h"

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#define NOGDI
#include <windows.h>

#include <shellapi.h>

#include <memory>
#include <string_view>

namespace app {

namespace {

struct LocalDeleter {
  void operator()(wchar_t** memory) const { ::LocalFree(memory); }
};

std::string ToUTF8(std::wstring_view text) {
  const auto convert = [text](char* bytes, int size) {
    return ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes, size, nullptr,
                                 nullptr);
  };
  std::string result(static_cast<std::size_t>(text.empty() ? 0 : convert(nullptr, 0)), '\0');
  if (!result.empty()) convert(result.data(), static_cast<int>(result.size()));
  return result;
}

}  // namespace

std::vector<std::string> ProgramArguments(int, char**) {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalDeleter> words(::CommandLineToArgvW(::GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int index = 1; words && index < count; ++index) arguments.push_back(ToUTF8(words.get()[index]));
  return arguments;
}

}  // namespace app
