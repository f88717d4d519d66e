#include "host/qelcore/linux/components/OperatingSystem.h"

#include <gtest/gtest.h>

#include <ostream>

#include "tests/host/qelcore/components/RowName.h"
#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using testsupport::TemporaryDirectory;

struct ReleaseRow {
  std::string_view mContent;
  std::string_view mName;
  std::string_view mVersion;
  std::string_view mTitle;
  friend void PrintTo(const ReleaseRow& row, std::ostream* stream) {
    *stream << testsupport::RowName(row.mContent);
  }
};

class ReleaseFileTest : public ::testing::TestWithParam<ReleaseRow> {};

TEST_P(ReleaseFileTest, GivesNameVersionAndTitle) {
  const TemporaryDirectory directory;
  directory.Write("etc/os-release", GetParam().mContent);
  const OperatingSystem system = ReadOperatingSystem(RootedFiles(directory.Path()));
  EXPECT_EQ(system.mDistribution, GetParam().mName);
  EXPECT_EQ(system.mDistributionVersion, GetParam().mVersion);
  EXPECT_EQ(system.mDistributionTitle, GetParam().mTitle);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ReleaseFileTest,
    ::testing::Values(
        ReleaseRow{
            "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n",
            "Debian GNU/Linux", "12", "Debian GNU/Linux 12 (bookworm)"},
        ReleaseRow{"NAME=Fedora\nVERSION_ID=39\n", "Fedora", "39", "Fedora"},
        ReleaseRow{"NAME='Arch Linux'\n", "Arch Linux", "", "Arch Linux"},
        ReleaseRow{"  NAME=\"With blanks\"  \r\n# NAME=Comment\n", "With blanks", "", "With blanks"},
        ReleaseRow{"NAME=\"A \\\"quoted\\\" \\$name\"\n", "A \"quoted\" $name", "", "A \"quoted\" $name"},
        ReleaseRow{"NAME='No \\ escape'\n", "No \\ escape", "", "No \\ escape"},
        ReleaseRow{"NAME=First\nNAME=Last\n", "Last", "", "Last"}, ReleaseRow{"NAME=\"\n", "\"", "", "\""},
        ReleaseRow{"NAME=\\\n", "\\", "", "\\"}, ReleaseRow{"NAME", "", "", ""},
        ReleaseRow{"=x\n==\n", "", "", ""}, ReleaseRow{"", "", "", ""}));

TEST(OperatingSystemTest, TheSecondPlaceIsTakenWhenTheFirstIsMissing) {
  const TemporaryDirectory directory;
  directory.Write("usr/lib/os-release", "NAME=Vendor\n");
  EXPECT_EQ(ReadOperatingSystem(RootedFiles(directory.Path())).mDistribution, "Vendor");
  directory.Write("etc/os-release", "NAME=Administrator\n");
  EXPECT_EQ(ReadOperatingSystem(RootedFiles(directory.Path())).mDistribution, "Administrator");
}

TEST(OperatingSystemTest, TheKernelStandsBeforeTheDistribution) {
  const TemporaryDirectory directory;
  directory.Write("proc/sys/kernel/osrelease", "5.15.0-91-generic\n");
  directory.Write("etc/os-release", "NAME=Ubuntu\nVERSION_ID=\"22.04\"\n");
  const auto components = ComponentsOf(ReadOperatingSystem(RootedFiles(directory.Path())));
  ASSERT_EQ(components.size(), 2u);
  EXPECT_EQ(components[0].GetName(), "Linux");
  EXPECT_EQ(components[0].GetVersion().ToString(), "5.15.0.91");
  EXPECT_EQ(components[1].GetName(), "Ubuntu");
  EXPECT_EQ(components[1].GetVersion().ToString(), "22.4.0.0");
}

TEST(OperatingSystemTest, AnEmptyMachineIsLinuxOfUnknownVersion) {
  const TemporaryDirectory directory;
  const auto components = ComponentsOf(ReadOperatingSystem(RootedFiles(directory.Path())));
  ASSERT_EQ(components.size(), 1u);
  EXPECT_EQ(components[0].GetName(), "Linux");
  EXPECT_FALSE(static_cast<bool>(components[0].GetVersion()));
}

TEST(OperatingSystemTest, ADistributionCalledLikeTheKernelIsLeftOut) {
  const TemporaryDirectory directory;
  directory.Write("etc/os-release", "NAME=Linux\nVERSION_ID=9\n");
  EXPECT_EQ(ComponentsOf(ReadOperatingSystem(RootedFiles(directory.Path()))).size(), 1u);
}

}  // namespace
}  // namespace qelcore::host::components
