#include "qelsystemcompatibilityreport/report/startup/Registrar.h"

#include "platform/qelcore/Config.h"
#include "qelsystemcompatibilityreport/report/startup/AppStateListener.h"

namespace qelsystemcompatibilityreport {

namespace classref = qelcore::classref;
namespace config = qelcore::config;
using qelcore::Guid;

namespace {

bool Initialize() {
  classref::ClassFactory::Register(SystemCompatibilityReportRegistrar::ClassId(), "classID",
                                   "qelsystemcompatibilityreport::SystemCompatibilityReportRegistrar",
                                   [] { return std::make_shared<SystemCompatibilityReportRegistrar>(); });
  ListenToAppStates();
  return true;
}

// The initializer's name is misspelt and the class's is not. That is intended: others depend on the
// initializer by name.
const config::InitializerRegistrar gInitializer(
    "qelsystemcompatibilityreport::SystemCompatilityReportRegistrar", Initialize, {});

}  // namespace

const Guid& ISystemCompatibilityReportRegistrar::InterfaceId() {
  static const Guid id(
      {0x3c, 0x99, 0x62, 0xf6, 0x4c, 0x5b, 0x4e, 0x3d, 0x90, 0x02, 0x8d, 0x9e, 0x93, 0xae, 0x4d, 0xf2});
  return id;
}

const Guid& SystemCompatibilityReportRegistrar::ClassId() {
  static const Guid id(
      {0x53, 0xd5, 0x52, 0x3a, 0x70, 0x22, 0x45, 0xcb, 0x9f, 0xb1, 0xff, 0xc9, 0xe8, 0x38, 0x05, 0x65});
  return id;
}

void* SystemCompatibilityReportRegistrar::QueryInterface(const Guid& interfaceId) {
  if (interfaceId == ISystemCompatibilityReportRegistrar::InterfaceId())
    return static_cast<ISystemCompatibilityReportRegistrar*>(this);
  if (interfaceId == UnknownBase::InterfaceId()) return static_cast<UnknownBase*>(this);
  return nullptr;
}

}  // namespace qelsystemcompatibilityreport
