// What becomes of an answer: verified, stored whole or not at all, and told.
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "tests/report/download/BlocklistDownloadFixture.h"

namespace {

using qelcore::host::FileOperation;
using qelsystemcompatibilityreport::DownloadResult;
using qelsystemcompatibilityreport::OnBlocklistDownloaded;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::ScriptedResponse;

using BlocklistStoreTest = testsupport::BlocklistDownloadFixture;

constexpr const char* kContext = "qelsystemcompatibilityreport::OnBlocklistDownloaded";

TEST_F(BlocklistStoreTest, EveryStatusButOneIsAnError) {
  for (const int status : {0, 100, 199, 201, 204, 206, 301, 304, 404, 500, -200, 2'000}) {
    SCOPED_TRACE(status);
    OnBlocklistDownloaded(ScriptedResponse(status, GoodBlocklist()), Callback());
    EXPECT_EQ(mResults.Now().back(), DownloadResult::DownloadHttpError);
    EXPECT_EQ(mHost.Traced(6).back(), "System Compatibility Report HTTP GET returned status " +
                                          std::to_string(status) +
                                          ". Usually no web update since installed version.");
  }
  EXPECT_EQ(Downloaded(), "-");
}

TEST_F(BlocklistStoreTest, ABodyIsStoredByteForByte) {
  // White space, an order of its own and keys that nobody knows stay as they came.
  const std::string body = "\n\t{ \"unknown\" : 1.50,\r\n" + GoodBlocklist().substr(1) + "\n\n";
  OnBlocklistDownloaded(ScriptedResponse(200, body), Callback());
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadSucceeded));
  EXPECT_EQ(Downloaded(), body);
}

TEST_F(BlocklistStoreTest, AShorterListReplacesALongerOne) {
  mHost.Files().Write(kDownloaded, std::string(1'000'000, 'x'));
  OnBlocklistDownloaded(ScriptedResponse(200, GoodBlocklist()), {});
  EXPECT_EQ(Downloaded(), GoodBlocklist());
}

TEST_F(BlocklistStoreTest, ACorruptBodyIsTracedAndNotStored) {
  mHost.Files().Write(kDownloaded, "old");
  OnBlocklistDownloaded(ScriptedResponse(200, "{}"), Callback());
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadCorrupted));
  EXPECT_THAT(mHost.Traced(5),
              ElementsAre("System Compatibility Report downloaded Blocklist appears corrupted."));
  EXPECT_EQ(Downloaded(), "old");
}

TEST_F(BlocklistStoreTest, WithoutAPlaceNothingIsTraced) {
  qelcore::host::SetFileOperationHook([](FileOperation operation, const std::string&) {
    if (operation == FileOperation::kCreateDirectory) throw std::runtime_error("read-only");
  });
  OnBlocklistDownloaded(ScriptedResponse(200, GoodBlocklist()), Callback());
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadNoLocation));
  EXPECT_THAT(mHost.Traced(5), IsEmpty());
  EXPECT_THAT(mHost.Traced(1), IsEmpty());
}

TEST_F(BlocklistStoreTest, EveryFileOperationThatFailsLeavesTheOldListWhole) {
  for (const FileOperation failing : {FileOperation::kOpenForWriting, FileOperation::kWrite,
                                      FileOperation::kFlush, FileOperation::kReplace}) {
    SCOPED_TRACE(static_cast<int>(failing));
    mHost.mExceptionContexts.clear();
    mHost.Files().Write(kDownloaded, "old");
    bool hasFailed = false;
    qelcore::host::SetFileOperationHook([&](FileOperation operation, const std::string&) {
      if (operation != failing) return;
      hasFailed = true;
      throw std::runtime_error("disk full");
    });
    OnBlocklistDownloaded(ScriptedResponse(200, GoodBlocklist()), Callback());
    qelcore::host::SetFileOperationHook({});
    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(mResults.Now().back(), DownloadResult::DownloadNoLocation);
    EXPECT_THAT(mHost.mExceptionContexts, ElementsAre(kContext));
    EXPECT_EQ(Downloaded(), "old");
    // No half of a file stays behind.
    const auto directory = (mHost.Files().Path() / kDownloaded).parent_path();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 1);
  }
}

TEST_F(BlocklistStoreTest, ADirectoryInTheFilesPlaceIsAFailure) {
  std::filesystem::create_directories(mHost.Files().Path() / kDownloaded / "inside");
  OnBlocklistDownloaded(ScriptedResponse(200, GoodBlocklist()), Callback());
  EXPECT_THAT(mResults.Now(), ElementsAre(DownloadResult::DownloadNoLocation));
  EXPECT_THAT(mHost.mExceptionContexts, Contains(kContext));
}

TEST_F(BlocklistStoreTest, ACallbackThatThrowsIsLogged) {
  EXPECT_NO_THROW(OnBlocklistDownloaded(ScriptedResponse(200, GoodBlocklist()),
                                        [](DownloadResult) { throw std::runtime_error("host"); }));
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre(kContext));
  EXPECT_EQ(Downloaded(), GoodBlocklist());
}

TEST_F(BlocklistStoreTest, AnAnswerThatThrowsIsToldAsAFailure) {
  class BrokenResponse final : public qelnet::Response {
    [[nodiscard]] int GetStatus() const override { return 200; }
    [[nodiscard]] std::string GetPayloadAsUTF8String() const override {
      throw std::runtime_error("no memory");
    }
  };
  OnBlocklistDownloaded(BrokenResponse(), Callback());
  ASSERT_EQ(mResults.Now().size(), 1U);
  EXPECT_LT(static_cast<int>(mResults.Now()[0]), 0);
  EXPECT_THAT(mHost.mExceptionContexts, ElementsAre(kContext));
}

TEST(DownloadResults, HaveFixedNumbers) {
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadRequested), 1);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadSucceeded), 0);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadRequestFailed), -1);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadHttpError), -3);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadCorrupted), -4);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadNoLocation), -5);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadNoURL), -6);
  EXPECT_EQ(static_cast<int>(DownloadResult::DownloadReportsDisabled), -7);
}

}  // namespace
