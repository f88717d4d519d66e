#include "host/qelcore/files/PEVersion.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/host/qelcore/files/ProgramImage.h"

namespace {

using testsupport::MakeProgramImage;
using testsupport::ProgramImage;

std::string VersionOf(const std::string& bytes) {
  std::istringstream stream(bytes);
  return qelcore::host::ReadPEFileVersion(stream);
}

TEST(PEVersion, ReadsTheFileVersion) {
  EXPECT_EQ(VersionOf(MakeProgramImage().mBytes), "24.21.14.1195");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mIs64Bit = false}).mBytes), "24.21.14.1195");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mParts = {0, 0, 0, 0}}).mBytes), "0.0.0.0");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mParts = {65535, 65535, 65535, 65535}}).mBytes),
            "65535.65535.65535.65535");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mOtherResources = 0}).mBytes), "24.21.14.1195");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mOtherResources = 20}).mBytes), "24.21.14.1195");
}

TEST(PEVersion, OtherFilesHaveNone) {
  EXPECT_EQ(VersionOf(""), "");
  EXPECT_EQ(VersionOf("MZ"), "");
  EXPECT_EQ(VersionOf("plain text"), "");
  EXPECT_EQ(VersionOf("\x7F"
                      "ELF" +
                      std::string(1000, '\0')),
            "");
  EXPECT_EQ(VersionOf("MZ" + std::string(1000, '\xFF')), "");
  EXPECT_EQ(VersionOf("MZ" + std::string(1000, '\0')), "");
  EXPECT_EQ(VersionOf(MakeProgramImage({.mHasVersion = false}).mBytes), "");
}

TEST(PEVersion, CutOffAnywhereBeforeTheVersionThereIsNone) {
  for (const bool is64Bit : {true, false}) {
    const ProgramImage image = MakeProgramImage({.mIs64Bit = is64Bit});
    ASSERT_LT(image.mVersionEnd, image.mBytes.size());
    for (std::size_t length = 0; length < image.mBytes.size(); ++length) {
      EXPECT_EQ(VersionOf(image.mBytes.substr(0, length)), length < image.mVersionEnd ? "" : "24.21.14.1195")
          << length;
    }
  }
}

TEST(PEVersion, NoByteCanLeadOutOfTheFile) {
  const ProgramImage image = MakeProgramImage();
  for (std::size_t place = 0; place < image.mBytes.size(); ++place) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      std::string bytes = image.mBytes;
      bytes[place] = static_cast<char>(value);
      const std::string version = VersionOf(bytes);
      EXPECT_LE(version.size(), 23U) << place;
      EXPECT_EQ(version.find_first_not_of("0123456789."), std::string::npos) << place;
    }
  }
}

TEST(PEVersion, ADirectoryThatLeadsBackToItselfEnds) {
  ProgramImage image = MakeProgramImage({.mOtherResources = 0});
  // The only entry's value: a directory at the root's own offset.
  image.mBytes.replace(0x400 + 20, 4, std::string("\0\0\0\x80", 4));
  EXPECT_EQ(VersionOf(image.mBytes), "");
}

TEST(PEVersion, CountsThatLieAreBounded) {
  ProgramImage image = MakeProgramImage();
  std::string manyEntries = image.mBytes;
  manyEntries.replace(0x400 + 12, 4, "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(VersionOf(manyEntries), "24.21.14.1195");
  std::string manySections = image.mBytes;
  manySections.replace(0x80 + 6, 2, "\xFF\xFF");
  EXPECT_EQ(VersionOf(manySections), "");
}

}  // namespace
