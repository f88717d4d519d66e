#include "qelsystemcompatibilityreport/SeparateMatching.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "qelsystemcompatibilityreport/SCRRule.h"
#include "qelsystemcompatibilityreport/rules/ExpressionBudget.h"
#include "tests/support/Rules.h"
#include "tests/support/TestHost.h"

namespace {

using qelcore::host::RecordedFilesScope;
using qelsystemcompatibilityreport::ExpressionBudget;
using qelsystemcompatibilityreport::OSComponentRegistry;
using qelsystemcompatibilityreport::OSComponentType;
using qelsystemcompatibilityreport::SCRRule;
using qelsystemcompatibilityreport::SeparateMatching;

using VersionsByPath = std::map<std::string, std::string, std::less<>>;

bool Hits(const char* rule, const OSComponentRegistry& machine) {
  return !SCRRule(std::string(rule)).FindMatchingOSComponents(machine).empty();
}

constexpr const char* kFileRule = R"({"name": "/x", "type": "File"})";
constexpr const char* kOtherVersion = R"({"name": "Windows", "type": "OS", "version": "1"})";

class SeparateMatchingTest : public testing::Test {
 protected:
  testsupport::TestHost mHost;
  OSComponentRegistry mMachine{{testsupport::Component(OSComponentType::kOS, "Windows", "10")}};
};

TEST_F(SeparateMatchingTest, FilesAreRememberedForTheScopeAlone) {
  {
    const RecordedFilesScope files(VersionsByPath{{"/x", "1"}});
    EXPECT_TRUE(Hits(kFileRule, mMachine));
  }
  const RecordedFilesScope none(VersionsByPath{});
  EXPECT_TRUE(Hits(kFileRule, mMachine)) << "remembered for the process";
  {
    const SeparateMatching separate;
    EXPECT_FALSE(Hits(kFileRule, mMachine));
    {
      const SeparateMatching inner;
      const RecordedFilesScope files(VersionsByPath{{"/x", "1"}});
      EXPECT_TRUE(Hits(kFileRule, mMachine));
    }
    EXPECT_FALSE(Hits(kFileRule, mMachine)) << "the outer one's again";
  }
  EXPECT_TRUE(Hits(kFileRule, mMachine)) << "the process's again";
}

TEST_F(SeparateMatchingTest, TheForceSwitchesAreOffAtItsStart) {
  SCRRule::ForceMatchByNameForTesting(true);
  EXPECT_TRUE(Hits(kOtherVersion, mMachine));
  {
    const SeparateMatching separate;
    EXPECT_FALSE(Hits(kOtherVersion, mMachine));
    SCRRule::ForceMatchByTypeForTesting(true);
    EXPECT_TRUE(Hits(R"({"name": "Linux", "type": "OS"})", mMachine));
  }
  EXPECT_TRUE(Hits(kOtherVersion, mMachine));
  EXPECT_FALSE(Hits(R"({"name": "Linux", "type": "OS"})", mMachine));
}

TEST_F(SeparateMatchingTest, ExpressionsHaveABalanceOfTheirOwn) {
  constexpr std::size_t kAll = 200'000'000;
  ExpressionBudget::Start();
  EXPECT_TRUE(ExpressionBudget::Take(kAll));
  {
    const SeparateMatching separate;
    EXPECT_TRUE(ExpressionBudget::Take(kAll));
    EXPECT_FALSE(ExpressionBudget::Take(kAll));
  }
  EXPECT_FALSE(ExpressionBudget::Take(kAll));
}

/// The scope of one thread is none of another's.
TEST_F(SeparateMatchingTest, OtherThreadsGoOnSharing) {
  const RecordedFilesScope files(VersionsByPath{{"/x", "1"}});
  EXPECT_TRUE(Hits(kFileRule, mMachine));
  const SeparateMatching separate;
  bool isRemembered = false;
  bool isFoundSeparately = true;
  std::thread([&] {
    isRemembered = Hits(kFileRule, mMachine);
    const SeparateMatching another;
    isFoundSeparately = Hits(kFileRule, mMachine);
  }).join();
  EXPECT_TRUE(isRemembered) << "as the process remembers it";
  EXPECT_FALSE(isFoundSeparately) << "recorded files are those of one thread";
}

TEST_F(SeparateMatchingTest, ManyThreadsMatchAtOnce) {
  const SCRRule rule(
      std::string(R"({"name": "^W.*s$", "type": "OS", "dependencies": [{"name": "/x", "type": "File"}]})"));
  std::vector<int> hits(4, 0);
  std::vector<std::thread> threads;
  for (int& count : hits) {
    const bool hasFile = &count != hits.data();
    threads.emplace_back([&, hasFile] {
      for (int round = 0; round < 500; ++round) {
        const RecordedFilesScope files(hasFile ? VersionsByPath{{"/x", "1"}} : VersionsByPath{});
        const SeparateMatching separate;
        count += static_cast<int>(rule.FindMatchingOSComponents(mMachine).size());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(hits, (std::vector<int>{0, 500, 500, 500}));
}

}  // namespace
