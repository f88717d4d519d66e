#include "qelsystemcompatibilityreport/AppOptimization.h"

namespace qelsystemcompatibilityreport {

using qelcore::Guid;

const Guid& IAppOptimization::InterfaceId() {
  static const Guid id(
      {0x9b, 0x1e, 0x0c, 0x52, 0x6d, 0x3a, 0x4f, 0x08, 0xa5, 0x71, 0x3e, 0xc4, 0x20, 0x97, 0xd8, 0x16});
  return id;
}

IAppOptimization::~IAppOptimization() = default;

void* IAppOptimization::QueryInterface(const Guid& interfaceId) {
  if (interfaceId == InterfaceId()) return this;
  if (interfaceId == UnknownBase::InterfaceId()) return static_cast<UnknownBase*>(this);
  return nullptr;
}

IAppOptimization::Ref IAppOptimization::GetSelf() {
  return std::static_pointer_cast<IAppOptimization>(shared_from_this());
}

}  // namespace qelsystemcompatibilityreport
