// What the library declares by being loaded.
#include "qelsystemcompatibilityreport/report/startup/Registrar.h"

#include <gmock/gmock.h>

#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/report/download/ApplicationVersion.h"
#include "tests/support/TestHost.h"

namespace {

namespace classref = qelcore::classref;
using qelcore::Guid;
using qelsystemcompatibilityreport::ISystemCompatibilityReportRegistrar;
using qelsystemcompatibilityreport::SystemCompatibilityReportRegistrar;

TEST(Registrar, TheClassIsKnownOnceTheHostHasStarted) {
  const Guid classId = SystemCompatibilityReportRegistrar::ClassId();
  EXPECT_EQ(classref::ClassFactory::Create(classId), nullptr);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  EXPECT_EQ(classref::ClassFactory::GetClassName(classId),
            "qelsystemcompatibilityreport::SystemCompatibilityReportRegistrar");
  const auto first = classref::ClassFactory::Create(classId);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(classref::ClassFactory::Create(classId), first);
}

TEST(Registrar, AnswersToItsOwnInterfaceAndTheBase) {
  const auto registrar = std::make_shared<SystemCompatibilityReportRegistrar>();
  ISystemCompatibilityReportRegistrar* const own = registrar.get();
  classref::UnknownBase* const base = registrar.get();
  EXPECT_EQ(registrar->QueryInterface(ISystemCompatibilityReportRegistrar::InterfaceId()), own);
  EXPECT_EQ(registrar->QueryInterface(classref::UnknownBase::InterfaceId()), base);
  for (const Guid& other : {Guid(), Guid::CreateUnique(), SystemCompatibilityReportRegistrar::ClassId()}) {
    EXPECT_EQ(registrar->QueryInterface(other), nullptr);
  }
}

TEST(Registrar, TheIdentifiersNeverChange) {
  EXPECT_EQ(ISystemCompatibilityReportRegistrar::InterfaceId().AsUTF8String(),
            "3c9962f6-4c5b-4e3d-9002-8d9e93ae4df2");
  EXPECT_EQ(SystemCompatibilityReportRegistrar::ClassId().AsUTF8String(),
            "53d5523a-7022-45cb-9fb1-ffc9e8380565");
}

TEST(Registrar, TheInitializerIsKnownUnderItsMisspeltName) {
  bool hasRun = false;
  const qelcore::config::InitializerRegistrar dependent(
      "a part that needs the report",
      [&] {
        // What it depends on is done before.
        hasRun = classref::ClassFactory::Create(SystemCompatibilityReportRegistrar::ClassId()) != nullptr;
        return true;
      },
      {"qelsystemcompatibilityreport::SystemCompatilityReportRegistrar"});
  EXPECT_TRUE(qelcore::host::BeginProcess());
  EXPECT_TRUE(hasRun);
}

TEST(Features, ThePropertiesAreDeclared) {
  const auto features = qelappsupport::host::GetBetaFeatures();
  ASSERT_EQ(features.size(), 1U);
  EXPECT_EQ(features[0].mName, "qelsystemcompatibilityreport.properties");
  EXPECT_EQ(static_cast<int>(features[0].mStage), 1);
  EXPECT_EQ(features[0].mDescription,
            "$$$/scr/properties/Feature=System Compatibility Report system property "
            "support.#{comment}QELAP-2087 Allow "
            "the System Compatibility Report to test various system properties.");
  EXPECT_EQ(features[0].mTicket, "QELAP-2087");
}

TEST(ApplicationVersion, ComesWithTheStartOfTheProcess) {
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMajor, -1);
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMinor, -1);
  qelcore::host::SetApplicationVersion(7, 3);
  ASSERT_TRUE(qelcore::host::BeginProcess());
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMajor, 7);
  EXPECT_EQ(qelsystemcompatibilityreport::GetApplicationVersion().mMinor, 3);
}

}  // namespace
