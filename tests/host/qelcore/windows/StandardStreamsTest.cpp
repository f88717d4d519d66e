#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <array>
#include <cstdio>

#include "host/qelcore/HostSetup.h"
#include "host/qelcore/windows/Handle.h"
#include "host/qelcore/windows/SystemHeaders.h"

namespace {

using qelcore::host::Handle;
using qelcore::host::IsStandardErrorATerminal;
using qelcore::host::ReserveStandardStreams;

/// Puts a handle in the place of a standard stream, and brings the old one back.
class StandInStream {
 public:
  StandInStream(DWORD stream, HANDLE handle) : mStream(stream), mBefore(::GetStdHandle(stream)) {
    ::SetStdHandle(stream, handle);
  }
  ~StandInStream() { ::SetStdHandle(mStream, mBefore); }
  StandInStream(const StandInStream&) = delete;
  StandInStream& operator=(const StandInStream&) = delete;

 private:
  DWORD mStream;
  HANDLE mBefore;
};

TEST(StandardStreams, LineEndsAreWrittenAsTheyAre) {
  ReserveStandardStreams();
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    const int mode = ::_setmode(::_fileno(stream), _O_BINARY);
    EXPECT_TRUE((mode & _O_BINARY) != 0) << mode;
  }
}

TEST(StandardStreams, AMissingOneIsTakenByWhatCannotBeWritten) {
  const StandInStream output(STD_OUTPUT_HANDLE, nullptr);
  ReserveStandardStreams();
  const HANDLE handle = ::GetStdHandle(STD_OUTPUT_HANDLE);
  ASSERT_NE(handle, nullptr);
  ASSERT_NE(handle, INVALID_HANDLE_VALUE);
  DWORD count = 0;
  EXPECT_EQ(::WriteFile(handle, "x", 1, &count, nullptr), 0);
}

TEST(StandardStreams, AnOpenOneIsLeftAlone) {
  std::array<HANDLE, 2> pipe{};
  ASSERT_NE(::CreatePipe(&pipe[0], &pipe[1], nullptr, 0), 0);
  const Handle reading(pipe[0]);
  const Handle writing(pipe[1]);
  const StandInStream output(STD_OUTPUT_HANDLE, writing.Get());
  ReserveStandardStreams();
  EXPECT_EQ(::GetStdHandle(STD_OUTPUT_HANDLE), writing.Get());
}

TEST(StandardStreams, APipeAndTheNullDeviceAreNoTerminals) {
  std::array<HANDLE, 2> pipe{};
  ASSERT_NE(::CreatePipe(&pipe[0], &pipe[1], nullptr, 0), 0);
  const Handle reading(pipe[0]);
  const Handle writing(pipe[1]);
  const Handle null(::CreateFileW(L"NUL", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  for (const HANDLE handle : {writing.Get(), null.Get(), HANDLE{nullptr}}) {
    const StandInStream errors(STD_ERROR_HANDLE, handle);
    EXPECT_FALSE(IsStandardErrorATerminal());
  }
}

}  // namespace
