#include "host/qelcore/linux/components/RootedFiles.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testsupport::TemporaryDirectory;

class RootedFilesTest : public ::testing::Test {
 protected:
  void Link(const std::string& path, const std::string& target) const {
    std::filesystem::create_directories((mDirectory.Path() / path).parent_path());
    std::filesystem::create_symlink(target, mDirectory.Path() / path);
  }

  TemporaryDirectory mDirectory;
  RootedFiles mFiles{mDirectory.Path()};
};

TEST_F(RootedFilesTest, ReadsAFile) {
  mDirectory.Write("a/b", "first \nsecond\n");
  EXPECT_EQ(mFiles.Read("a/b"), "first \nsecond\n");
  EXPECT_EQ(mFiles.Read("/a//./b"), "first \nsecond\n");
  EXPECT_EQ(mFiles.ReadLine("a/b"), "first");
  EXPECT_EQ(mFiles.Read("a/c"), std::nullopt);
  EXPECT_EQ(mFiles.ReadLine("a/c"), "");
  EXPECT_EQ(mFiles.Read(""), std::nullopt);
}

TEST_F(RootedFilesTest, FollowsRelativeLinks) {
  mDirectory.Write("sys/devices/pci/01/class", "0x030000\n");
  Link("sys/bus/pci/devices/01", "../../../devices/pci/01");
  EXPECT_EQ(mFiles.ReadLine("sys/bus/pci/devices/01/class"), "0x030000");
  EXPECT_EQ(mFiles.Resolve("sys/bus/pci/devices/01"), "sys/devices/pci/01");
  EXPECT_EQ(mFiles.Resolve("sys/bus/pci/devices/01/.."), "sys/devices/pci");
  EXPECT_EQ(mFiles.LinkName("sys/bus/pci/devices/01"), "01");
}

TEST_F(RootedFilesTest, AbsoluteLinksStartAtTheRoot) {
  const TemporaryDirectory outside;
  const std::string secret = outside.Write("secret", "outside").string();
  Link("etc/secret", secret);
  EXPECT_EQ(mFiles.Read("etc/secret"), std::nullopt);
  mDirectory.Write("var/inside", "inside");
  Link("etc/inside", "/var/inside");
  EXPECT_EQ(mFiles.Read("etc/inside"), "inside");
  Link("etc/whole", "/");
  EXPECT_EQ(mFiles.Read("etc/whole/etc/whole/var/inside"), "inside");
}

TEST_F(RootedFilesTest, NothingLeadsAboveTheRoot) {
  const TemporaryDirectory outside;
  outside.Write("secret", "outside");
  const std::string name = outside.Path().filename().string();
  mDirectory.Write("file", "inside");
  Link("up", "../../../../../../../..");
  EXPECT_EQ(mFiles.Read("../" + name + "/secret"), std::nullopt);
  EXPECT_EQ(mFiles.Read("up/" + name + "/secret"), std::nullopt);
  EXPECT_EQ(mFiles.Read("up" + outside.Path().string() + "/secret"), std::nullopt);
  EXPECT_EQ(mFiles.Read("../../file"), "inside");
  EXPECT_EQ(mFiles.Read("up/file"), "inside");
}

TEST_F(RootedFilesTest, LoopsAndDanglingLinksAreAbsent) {
  Link("a", "b");
  Link("b", "a");
  Link("self", "self");
  Link("deeper", "deeper/deeper");
  Link("nowhere", "missing/file");
  for (const char* path : {"a", "b", "self", "deeper", "nowhere", "self/x"}) {
    EXPECT_EQ(mFiles.Resolve(path), std::nullopt) << path;
    EXPECT_EQ(mFiles.Read(path), std::nullopt) << path;
    EXPECT_THAT(mFiles.List(path), IsEmpty()) << path;
  }
  EXPECT_EQ(mFiles.LinkName("nowhere"), "file");
}

TEST_F(RootedFilesTest, LongChainsOfLinksEnd) {
  mDirectory.Write("0", "end");
  for (int number = 1; number <= 60; ++number) Link(std::to_string(number), std::to_string(number - 1));
  EXPECT_EQ(mFiles.Read("40"), "end");
  EXPECT_EQ(mFiles.Read("41"), std::nullopt);
}

TEST_F(RootedFilesTest, BoundsWhatIsRead) {
  mDirectory.Write("big", std::string(200'000, 'x'));
  EXPECT_EQ(mFiles.Read("big")->size(), 65'536u);
  EXPECT_EQ(mFiles.Read("big", 10), "xxxxxxxxxx");
  EXPECT_EQ(mFiles.Read("big", 1'000'000)->size(), 200'000u);
  EXPECT_EQ(mFiles.Read("big", 0), "");
  mDirectory.Write("empty", "");
  EXPECT_EQ(mFiles.Read("empty"), "");
}

TEST_F(RootedFilesTest, AHugeSparseFileCostsNoMoreThanTheBound) {
  const std::string path = mDirectory.Write("sparse", "").string();
  ASSERT_EQ(truncate(path.c_str(), off_t{1} << 40), 0);
  EXPECT_EQ(mFiles.Read("sparse")->size(), 65'536u);
  EXPECT_EQ(mFiles.ReadLine("sparse").size(), 65'536u);
}

TEST_F(RootedFilesTest, ReadsFilesThatDoNotTellTheirLength) {
  const RootedFiles files("/");
  EXPECT_FALSE(files.ReadLine("proc/sys/kernel/osrelease").empty());
  EXPECT_GT(files.Read("proc/cpuinfo").value_or("").size(), 0u);
}

TEST_F(RootedFilesTest, OnlyRegularFilesAreRead) {
  mDirectory.Write("directory/file", "");
  ASSERT_EQ(mkfifo((mDirectory.Path() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(mFiles.Read("directory"), std::nullopt);
  EXPECT_EQ(mFiles.Read("pipe"), std::nullopt);
  EXPECT_EQ(mFiles.Read("directory/file/deeper"), std::nullopt);
  EXPECT_EQ(RootedFiles("/").Read("dev/zero"), std::nullopt);
}

TEST_F(RootedFilesTest, ListsInNaturalOrder) {
  mDirectory.Write("net/eth10", "");
  mDirectory.Write("net/eth9", "");
  mDirectory.Write("net/.hidden", "");
  EXPECT_THAT(mFiles.List("net"), ElementsAre(".hidden", "eth9", "eth10"));
  EXPECT_THAT(mFiles.List(""), ElementsAre("net"));
  EXPECT_THAT(mFiles.List("net/eth9"), IsEmpty());
  EXPECT_THAT(mFiles.List("nothing"), IsEmpty());
}

TEST_F(RootedFilesTest, LinkNameIsTheTargetsLastName) {
  Link("driver", "../../bus/pci/drivers/nvidia");
  Link("slash", "a/b//");
  Link("root", "/");
  mDirectory.Write("plain", "");
  EXPECT_EQ(mFiles.LinkName("driver"), "nvidia");
  EXPECT_EQ(mFiles.LinkName("slash"), "b");
  for (const char* path : {"root", "plain", "missing", "missing/driver", "", ".", "..", "driver/"}) {
    EXPECT_EQ(mFiles.LinkName(path), "") << path;
  }
}

TEST_F(RootedFilesTest, PathsWithZeroBytesAndEndlessNamesAreAbsent) {
  mDirectory.Write("file", "content");
  EXPECT_EQ(mFiles.Read(std::string_view("file\0x", 6)), std::nullopt);
  EXPECT_EQ(mFiles.Read(std::string(100'000, 'a')), std::nullopt);
  std::string deep;
  for (int count = 0; count < 5'000; ++count) deep += "a/";
  EXPECT_EQ(mFiles.Read(deep), std::nullopt);
}

TEST(RootedFilesWithoutRootTest, HasNoFiles) {
  const TemporaryDirectory directory;
  const RootedFiles files(directory.Path() / "missing");
  EXPECT_FALSE(files.Exists("etc"));
  EXPECT_EQ(files.Read("etc/os-release"), std::nullopt);
  EXPECT_THAT(files.List(""), IsEmpty());
  EXPECT_EQ(files.LinkName("a"), "");
}

}  // namespace
}  // namespace qelcore::host::components
