#include "host/qelcore/windows/SystemPath.h"

#include <gtest/gtest.h>

#include <string>
#include <system_error>

namespace qelcore::host {
namespace {

TEST(SystemPath, BecomesAbsoluteWithTheSystemsSeparators) {
  struct Row {
    const char* mPath;
    const wchar_t* mSystemPath;
  };
  for (const Row& row : {Row{"C:\\a\\b.txt", L"C:\\a\\b.txt"},
                         {"C:/a/b.txt", L"C:\\a\\b.txt"},
                         {"C:\\a\\.\\c\\..\\b.txt", L"C:\\a\\b.txt"},
                         {"C:\\", L"C:\\"},
                         {"C:\\\xC3\xA9\\\xF0\x9F\x98\x80", L"C:\\\u00E9\\\U0001F600"},
                         {"\\\\server\\share\\a", L"\\\\server\\share\\a"},
                         {"\\\\?\\C:\\a/b", L"\\\\?\\C:\\a/b"}}) {
    EXPECT_EQ(SystemPath(row.mPath), row.mSystemPath) << row.mPath;
  }
}

TEST(SystemPath, ALongOneGetsTheMarkThatLiftsTheLimit) {
  const std::string name(100, 'x');
  const std::wstring wideName(100, L'x');
  EXPECT_EQ(SystemPath("C:\\" + name + "/" + name + "\\" + name),
            L"\\\\?\\C:\\" + wideName + L"\\" + wideName + L"\\" + wideName);
  EXPECT_EQ(SystemPath("\\\\server\\share\\" + name + "\\" + name + "\\" + name),
            L"\\\\?\\UNC\\server\\share\\" + wideName + L"\\" + wideName + L"\\" + wideName);
}

TEST(SystemPath, WhatIsNoPathSaysWhy) {
  struct Row {
    std::string mPath;
    std::errc mCondition;
    const char* mMessage;
  };
  for (const Row& row :
       {Row{"", std::errc::no_such_file_or_directory, ": No such file or directory"},
        {std::string("C:\\a\0b", 6), std::errc::invalid_argument, "C:\\a: Invalid argument"},
        {"C:\\\xFF", std::errc::illegal_byte_sequence, "C:\\\xFF: The path is not valid UTF-8"},
        {"C:\\\xC3", std::errc::illegal_byte_sequence, "C:\\\xC3: The path is not valid UTF-8"},
        {"C:\\\xED\xA0\x80", std::errc::illegal_byte_sequence,
         "C:\\\xED\xA0\x80: The path is not valid UTF-8"}}) {
    EXPECT_EQ(TrySystemPath(row.mPath), std::nullopt) << row.mPath;
    try {
      static_cast<void>(SystemPath(row.mPath));
      ADD_FAILURE() << "nothing was thrown for " << row.mPath;
    } catch (const std::system_error& error) {
      EXPECT_TRUE(error.code() == row.mCondition) << error.what();
      EXPECT_EQ(std::string(error.what()), row.mMessage);
    }
  }
}

TEST(SystemPath, TellsDevicesAndPipesByTheirNames) {
  for (const char* const path :
       {"NUL", "nul", "CON", "CONIN$", "COM1", "LPT1", "AUX", "\\\\.\\PhysicalDrive0", "\\\\.\\pipe\\name",
        "\\\\?\\pipe\\name", "\\\\server\\pipe\\name", "\\\\server\\PIPE\\name", "\\\\server\\mailslot\\name",
        "\\\\?\\UNC\\server\\pipe\\name", "\\\\?\\GLOBALROOT\\Device\\Null"}) {
    EXPECT_TRUE(NamesDevice(SystemPath(path))) << path;
  }
  for (const char* const path : {"C:\\", "C:\\null", "C:\\pipe\\name", "\\\\server\\share\\pipe\\name",
                                 "\\\\server\\pipes\\name", "\\\\?\\C:\\a", "\\\\?\\UNC\\server\\share\\a",
                                 "\\\\?\\Volume{00000000-0000-0000-0000-000000000000}\\a", "relative"}) {
    EXPECT_FALSE(NamesDevice(SystemPath(path))) << path;
  }
}

}  // namespace
}  // namespace qelcore::host
