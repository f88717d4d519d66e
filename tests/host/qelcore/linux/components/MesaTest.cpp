#include "host/qelcore/linux/components/Mesa.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using testsupport::TemporaryDirectory;

class MesaTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string Version() const { return MesaVersion(RootedFiles(mDirectory.Path())).ToString(); }

  TemporaryDirectory mDirectory;
};

TEST_F(MesaTest, NotInstalled) {
  EXPECT_EQ(Version(), "");
}

TEST_F(MesaTest, FromTheLibrarysName) {
  mDirectory.Write("usr/lib/libgallium-25.0.5-arch1.1.so", "");
  EXPECT_EQ(Version(), "25.0.5.0");
  mDirectory.Write("usr/lib64/libgallium-24.1.7.so", "");
  mDirectory.Write("usr/lib64/libgallium-24.10.0.so", "");
  mDirectory.Write("usr/lib64/libgallium-24.2.4.so", "");
  EXPECT_EQ(Version(), "24.10.0.0") << "the greatest of several";
  mDirectory.Write("usr/lib/aarch64-linux-gnu/libgallium-24.2.8-1~bpo12+rpt3.so", "");
  EXPECT_EQ(Version(), "24.2.8.0");
}

TEST_F(MesaTest, LibrariesOf32BitsComeLast) {
  mDirectory.Write("usr/lib/i386-linux-gnu/libgallium-30.0.0-1.so", "");
  EXPECT_EQ(Version(), "30.0.0.0");
  mDirectory.Write("usr/lib/x86_64-linux-gnu/libgallium-25.0.7-2.so", "");
  EXPECT_EQ(Version(), "25.0.7.0");
}

TEST_F(MesaTest, OtherLibrariesAreNotMesa) {
  mDirectory.Write("usr/lib64/libgallium-.so", "");
  mDirectory.Write("usr/lib64/libgallium-x.so", "");
  mDirectory.Write("usr/lib64/libgallium-25.0.7.so.debug", "");
  mDirectory.Write("usr/lib64/xlibgallium-25.0.7.so", "");
  EXPECT_EQ(Version(), "");
}

TEST_F(MesaTest, FromPacman) {
  mDirectory.Write("var/lib/pacman/local/mesa-utils-9.0.0-3/desc", "");
  mDirectory.Write("var/lib/pacman/local/lib32-mesa-1:23.3.5-1/desc", "");
  EXPECT_EQ(Version(), "");
  mDirectory.Write("var/lib/pacman/local/mesa-1:24.3.4-1/desc", "");
  EXPECT_EQ(Version(), "24.3.4.0");
}

TEST_F(MesaTest, FromDpkg) {
  mDirectory.Write(
      "var/lib/dpkg/status",
      "Package: libgl1-mesa-dri\nStatus: install ok installed\nVersion: 1:20.2.6-0ubuntu0.20.10.1\n\n");
  EXPECT_EQ(Version(), "20.2.6.0");
  mDirectory.Write("var/lib/dpkg/status",
                   "Package: libgl1-mesa-dri\nStatus: install ok installed\nVersion: 24.3.1-1\n\n"
                   "Package: mesa-libgallium\nStatus: install ok installed\nVersion: 25.0.7-2");
  EXPECT_EQ(Version(), "25.0.7.0");
}

TEST_F(MesaTest, OnlyInstalledPackagesCount) {
  mDirectory.Write(
      "var/lib/dpkg/status",
      "Package: libgl1-mesa-dri\nStatus: deinstall ok config-files\nVersion: 19.0.0-1\n\n"
      "Package: libgl1-mesa-dri\nStatus: install ok unpacked\nVersion: 19.0.1-1\n\n"
      "Package: libgl1-mesa-dri\nArchitecture: i386\nStatus: hold ok installed\nVersion: 19.0.2-1\n\n"
      "Package: libgl1-mesa-dri\nStatus: install ok not-installed\nVersion: 19.0.3-1\n");
  EXPECT_EQ(Version(), "19.0.2.0");
}

TEST_F(MesaTest, NamesInsideOtherFieldsAreNoPackages) {
  mDirectory.Write(
      "var/lib/dpkg/status",
      "Package: other\nX-Package: libgl1-mesa-dri\nStatus: install ok installed\nVersion: 1.0\n\n"
      "Package: more\nDescription: x\n Package: libgl1-mesa-dri\nStatus: install ok installed\n"
      "Version: 2.0\n\nPackage: libgl1-mesa-dri-extra\nStatus: install ok installed\nVersion: 3.0\n");
  EXPECT_EQ(Version(), "");
}

}  // namespace
}  // namespace qelcore::host::components
