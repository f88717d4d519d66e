// The class through which the host's class factory knows the report service.
#pragma once

#include "platform/qelcore/ClassRef.h"

namespace qelsystemcompatibilityreport {

/// The interface of the service's registrar. It has no operations: that it can be made says that the service
/// is there.
class ISystemCompatibilityReportRegistrar : public qelcore::classref::UnknownBase {
 public:
  [[nodiscard]] static const qelcore::Guid& InterfaceId();
};

class SystemCompatibilityReportRegistrar final : public ISystemCompatibilityReportRegistrar {
 public:
  [[nodiscard]] static const qelcore::Guid& ClassId();

  /// Answers to its own interface and to the base, with null to any other.
  [[nodiscard]] void* QueryInterface(const qelcore::Guid& interfaceId) override;
};

}  // namespace qelsystemcompatibilityreport
