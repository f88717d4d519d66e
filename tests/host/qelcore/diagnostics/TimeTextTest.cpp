#include "host/qelcore/diagnostics/TimeText.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::system_clock;

struct Case {
  long long mMicroseconds;  ///< since the beginning of 1970, UTC
  const char* mText;
};

TEST(TimeText, IsUtcWithMilliseconds) {
  const Case cases[] = {
      {0, "1970-01-01T00:00:00.000Z"},
      {1'999, "1970-01-01T00:00:00.001Z"},
      {-1, "1969-12-31T23:59:59.999Z"},
      {951'827'696'007'000, "2000-02-29T12:34:56.007Z"},
      {1'709'251'199'999'999, "2024-02-29T23:59:59.999Z"},
      {1'735'689'600'050'000, "2025-01-01T00:00:00.050Z"},
      {7'258'118'399'000'000, "2199-12-31T23:59:59.000Z"},
  };
  for (const Case& row : cases) {
    const auto time = system_clock::time_point(
        std::chrono::duration_cast<system_clock::duration>(std::chrono::microseconds(row.mMicroseconds)));
    EXPECT_EQ(qelcore::host::TimeText(time), row.mText);
  }
}

}  // namespace
