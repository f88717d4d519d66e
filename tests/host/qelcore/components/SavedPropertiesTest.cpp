#include "host/qelcore/components/SavedProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "tests/support/TemporaryDirectory.h"

namespace qelcore::host::components {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;
using ::testing::Pair;
using testsupport::TemporaryDirectory;

constexpr std::int64_t kNow = 1'700'000'000;

class SavedPropertiesTest : public ::testing::Test {
 protected:
  SavedPropertiesTest() {
    mSystem.mKernelRelease = "6.1.0-18-amd64";
    mSystem.mProperties = {{"os.distribution", "Ubuntu 22.04.3 LTS"}};
  }

  TemporaryDirectory mTemporary;
  filesupport::Dir mDirectory{mTemporary.Path().u16string()};
  SystemIdentity mSystem;
  Properties mProperties{{"memory.mb", "7949"}, {"os.distribution", "Ubuntu 22.04.3 LTS"}};
};

TEST_F(SavedPropertiesTest, NothingWasSaved) {
  EXPECT_EQ(LoadProperties(mDirectory, mSystem, kNow), std::nullopt);
}

TEST_F(SavedPropertiesTest, WhatWasSavedIsLoaded) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_THAT(LoadProperties(mDirectory, mSystem, kNow), Optional(mProperties));
  EXPECT_THAT(LoadProperties(mDirectory, mSystem, kNow + 60), Optional(mProperties));
}

TEST_F(SavedPropertiesTest, TheFileHasThisForm) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_EQ(mTemporary.Read("SystemProperties.json"),
            R"({"kernel_release":"6.1.0-18-amd64","memory.mb":"7949",)"
            R"("os.distribution":"Ubuntu 22.04.3 LTS","saved_at":1700000000})");
}

TEST_F(SavedPropertiesTest, SavingReplacesWhatWasSaved) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  mProperties.erase("memory.mb");
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_THAT(LoadProperties(mDirectory, mSystem, kNow), Optional(mProperties));
}

TEST_F(SavedPropertiesTest, TheyLastADay) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_TRUE(LoadProperties(mDirectory, mSystem, kNow + 86'399).has_value());
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow + 86'400).has_value());
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow + 1'000'000'000).has_value());
}

TEST_F(SavedPropertiesTest, ThoseFromTheFutureAreNotTaken) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow - 1).has_value());
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, -1).has_value());
}

TEST_F(SavedPropertiesTest, ThoseOfAnotherKernelAreNotTaken) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  mSystem.mKernelRelease = "6.1.0-19-amd64";
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow).has_value());
}

TEST_F(SavedPropertiesTest, ThoseOfAnotherDistributionAreNotTaken) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  mSystem.mProperties["os.distribution"] = "Ubuntu 24.04 LTS";
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow).has_value());
  mSystem.mProperties["os.distribution"] = "";
  EXPECT_FALSE(LoadProperties(mDirectory, mSystem, kNow).has_value());
}

TEST_F(SavedPropertiesTest, ASystemWithoutADistributionHasPropertiesToo) {
  mSystem.mProperties["os.distribution"] = "";
  mProperties.erase("os.distribution");
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  EXPECT_THAT(LoadProperties(mDirectory, mSystem, kNow), Optional(ElementsAre(Pair("memory.mb", "7949"))));
}

TEST_F(SavedPropertiesTest, DeletesThem) {
  SaveProperties(mDirectory, mProperties, mSystem, kNow);
  DeleteProperties(mDirectory);
  EXPECT_FALSE(std::filesystem::exists(mTemporary.Path() / "SystemProperties.json"));
  EXPECT_NO_THROW(DeleteProperties(mDirectory));
}

struct BrokenRow {
  const char* mName;
  const char* mContent;
  friend void PrintTo(const BrokenRow& row, std::ostream* stream) { *stream << row.mName; }
};

class BrokenSavedPropertiesTest : public SavedPropertiesTest,
                                  public ::testing::WithParamInterface<BrokenRow> {};

TEST_P(BrokenSavedPropertiesTest, Throws) {
  mTemporary.Write("SystemProperties.json", GetParam().mContent);
  EXPECT_ANY_THROW(static_cast<void>(LoadProperties(mDirectory, mSystem, kNow)));
}

constexpr const char* kGoodButForOne =
    R"({"kernel_release":"6.1.0-18-amd64","memory.mb":7949,"os.distribution":"Ubuntu 22.04.3 LTS",)"
    R"("saved_at":1700000000})";

INSTANTIATE_TEST_SUITE_P(
    Table, BrokenSavedPropertiesTest,
    ::testing::Values(
        BrokenRow{"Empty", ""}, BrokenRow{"NotJson", "memory.mb=7949"}, BrokenRow{"CutOff", "{\"a\":"},
        BrokenRow{"AnArray", "[]"}, BrokenRow{"ReleaseOfAnotherType", R"({"kernel_release":6})"},
        BrokenRow{"DistributionOfAnotherType", R"({"kernel_release":"6.1.0-18-amd64","os.distribution":[]})"},
        BrokenRow{"TimeOfAnotherType",
                  R"({"kernel_release":"6.1.0-18-amd64","os.distribution":"Ubuntu 22.04.3 LTS",)"
                  R"("saved_at":"now"})"},
        BrokenRow{"ValueOfAnotherType", kGoodButForOne}),
    [](const auto& row) { return std::string(row.param.mName); });

struct UnfitRow {
  const char* mName;
  const char* mContent;
  friend void PrintTo(const UnfitRow& row, std::ostream* stream) { *stream << row.mName; }
};

class UnfitSavedPropertiesTest : public SavedPropertiesTest,
                                 public ::testing::WithParamInterface<UnfitRow> {};

TEST_P(UnfitSavedPropertiesTest, AreNotTaken) {
  mTemporary.Write("SystemProperties.json", GetParam().mContent);
  EXPECT_EQ(LoadProperties(mDirectory, mSystem, kNow), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Table, UnfitSavedPropertiesTest,
    ::testing::Values(
        UnfitRow{"NoMember", "{}"},
        UnfitRow{"NoTime", R"({"kernel_release":"6.1.0-18-amd64","os.distribution":"Ubuntu 22.04.3 LTS"})"},
        UnfitRow{"NegativeTime", R"({"kernel_release":"6.1.0-18-amd64","saved_at":-1,)"
                                 R"("os.distribution":"Ubuntu 22.04.3 LTS"})"},
        UnfitRow{"NoRelease", R"({"os.distribution":"Ubuntu 22.04.3 LTS","saved_at":1700000000})"}),
    [](const auto& row) { return std::string(row.param.mName); });

TEST_F(SavedPropertiesTest, AnEndlessFileIsNotRead) {
  mTemporary.Write("SystemProperties.json", std::string((std::size_t{1} << 20) + 1, ' '));
  EXPECT_ANY_THROW(static_cast<void>(LoadProperties(mDirectory, mSystem, kNow)));
}

TEST_F(SavedPropertiesTest, LoadedTextsAreCleaned) {
  mTemporary.Write(
      "SystemProperties.json",
      R"({"kernel_release":"6.1.0-18-amd64","saved_at":1700000000,"memory.mb":" 7949\n\u001b","swap.mb":"",)"
      R"("os.distribution":"Ubuntu 22.04.3 LTS"})");
  EXPECT_THAT(LoadProperties(mDirectory, mSystem, kNow), Optional(mProperties));
}

}  // namespace
}  // namespace qelcore::host::components
