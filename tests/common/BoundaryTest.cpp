#include "qelsystemcompatibilityreport/common/Boundary.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/common/RecordingTrace.h"

namespace {

using qelsystemcompatibilityreport::AtBoundary;
using testing::ElementsAre;
using testing::IsEmpty;

class BoundaryTest : public testing::Test {
 protected:
  BoundaryTest() { mTrace = {}; }

  testsupport::RecordingTrace& mTrace = testsupport::RecordingTrace::Instance();
};

TEST_F(BoundaryTest, WithoutAnExceptionTheBodysResultIsReturned) {
  bool hasRun = false;
  AtBoundary("here", [&] { hasRun = true; });
  EXPECT_TRUE(hasRun);
  EXPECT_EQ(AtBoundary("here", 1, [] { return 2; }), 2);
  EXPECT_EQ(AtBoundary("here", std::string("fallback"), [] { return "result"; }), "result");
  EXPECT_THAT(mTrace.mLogged, IsEmpty());
}

TEST_F(BoundaryTest, AnExceptionIsLoggedAndGoesNoFurther) {
  AtBoundary("here::One", [] { throw std::runtime_error("broken"); });
  EXPECT_EQ(AtBoundary("here::Two", 1, []() -> int { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(AtBoundary("here::Three", std::string("fallback"), []() -> std::string { throw 5; }), "fallback");
  EXPECT_THAT(mTrace.mLogged,
              ElementsAre("here::One: broken", "here::Two: std::bad_alloc", "here::Three: unknown"));
}

}  // namespace
