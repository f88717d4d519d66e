#include "host/qelcore/linux/components/Versions.h"

#include <gtest/gtest.h>

#include <ostream>

#include "tests/host/qelcore/components/RowName.h"

namespace qelcore::host::components {
namespace {

struct VersionRow {
  std::string_view mText;
  std::string_view mVersion;
  friend void PrintTo(const VersionRow& row, std::ostream* stream) {
    *stream << testsupport::RowName(row.mText);
  }
};

class ReadVersionTest : public ::testing::TestWithParam<VersionRow> {};

TEST_P(ReadVersionTest, TakesTheFirstNumbers) {
  EXPECT_EQ(ReadVersion(GetParam().mText).ToString(), GetParam().mVersion) << GetParam().mText;
}

INSTANTIATE_TEST_SUITE_P(
    KernelReleases, ReadVersionTest,
    ::testing::Values(VersionRow{"5.15.0-91-generic", "5.15.0.91"}, VersionRow{"4.16.10-1-ARCH", "4.16.10.1"},
                      VersionRow{"6.6.119-09226-gd21866c9e0f4", "6.6.119.9226"},
                      VersionRow{"4.8.11-040811-generic", "4.8.11.40811"},
                      VersionRow{"6.6.67-gentoo", "6.6.67.0"},
                      VersionRow{"5.15.80-gentoo-x86_64", "5.15.80.0"},
                      VersionRow{"5.3.0-3-amd64", "5.3.0.3"}, VersionRow{"3.16.0-37-lowlatency", "3.16.0.37"},
                      VersionRow{"5.14.0-362.8.1.el9_3.x86_64", "5.14.0.362"},
                      VersionRow{"5.15.153.1-microsoft-standard-WSL2", "5.15.153.1"},
                      VersionRow{"6.6.31+rpt-rpi-v8", "6.6.31.0"}, VersionRow{"6.6.67_1", "6.6.67.1"},
                      VersionRow{"6.18.44-fc-v657", "6.18.44.0"}, VersionRow{"6.9-rc1", "6.9.0.0"}));

INSTANTIATE_TEST_SUITE_P(
    Drivers, ReadVersionTest,
    ::testing::Values(VersionRow{"535.113.01", "535.113.1.0"}, VersionRow{"396.24", "396.24.0.0"},
                      VersionRow{"3.2.6-k", "3.2.6.0"}, VersionRow{"2.3LK-NAPI", "2.3.0.0"},
                      VersionRow{"1.5.0.0-k-NAPI", "1.5.0.0"}, VersionRow{"v1.12.12", "1.12.12.0"},
                      VersionRow{"V5", "5.0.0.0"}, VersionRow{"  7.1\n", "7.1.0.0"},
                      VersionRow{"23.10-1.1.9", "23.10.1.1"}, VersionRow{"1.2.3.4.5", "1.2.3.4"},
                      VersionRow{"0", "0.0.0.0"}));

INSTANTIATE_TEST_SUITE_P(Odd, ReadVersionTest,
                         ::testing::Values(VersionRow{"", ""}, VersionRow{"N/A", ""}, VersionRow{"v", ""},
                                           VersionRow{"vv1", ""}, VersionRow{"-1", ""}, VersionRow{".5", ""},
                                           VersionRow{"+", ""}, VersionRow{"4294967296", ""},
                                           VersionRow{"1.4294967296.7", "1.0.0.0"},
                                           VersionRow{"4294967294.1", "4294967294.1.0.0"},
                                           VersionRow{"1..2", "1.0.0.0"}, VersionRow{"1.-2", "1.0.0.0"},
                                           VersionRow{"1.", "1.0.0.0"}, VersionRow{"1.+", "1.0.0.0"}));

TEST(ReadVersionTest, AZeroVersionIsAVersion) {
  EXPECT_TRUE(static_cast<bool>(ReadVersion("0.0.0.0")));
  EXPECT_FALSE(static_cast<bool>(ReadVersion("none")));
}

TEST(UpstreamVersionTest, LeavesEpochAndRevisionOut) {
  EXPECT_EQ(UpstreamVersion("1:23.2.1-1ubuntu3.1~22.04.3"), "23.2.1");
  EXPECT_EQ(UpstreamVersion("22.3.6-1+deb12u1"), "22.3.6");
  EXPECT_EQ(UpstreamVersion("24.0.0~rc3-1"), "24.0.0");
  EXPECT_EQ(UpstreamVersion(" 20.2.6\n"), "20.2.6");
  EXPECT_EQ(UpstreamVersion("25.0.5"), "25.0.5");
  EXPECT_EQ(UpstreamVersion(""), "");
}

}  // namespace
}  // namespace qelcore::host::components
