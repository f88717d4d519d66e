// Interfaces that objects are asked for by number, and the factory that makes objects by class.
//
//   auto registrar = classref::ClassFactory::Create(kClassId);
//   if (void* found = registrar ? registrar->QueryInterface(kInterfaceId) : nullptr) { ... }
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Guid.h"

namespace qelcore {

/// The base of every interface whose objects are held by counted references.
class QELCORE_EXPORT RefCountedInterface {
 public:
  RefCountedInterface() = default;
  virtual ~RefCountedInterface();
  RefCountedInterface(const RefCountedInterface&) = delete;
  RefCountedInterface& operator=(const RefCountedInterface&) = delete;
};

/// A counted object that can hand out references to itself, weak ones included, once it is held by one.
class QELCORE_EXPORT RefCountedObjectWithWeakPtr
    : public RefCountedInterface,
      public std::enable_shared_from_this<RefCountedObjectWithWeakPtr> {
 public:
  ~RefCountedObjectWithWeakPtr() override;
};

namespace classref {

/// A counted reference to an interface. May be empty. Two references are equal when they hold the same
/// object.
template <typename Interface>
using InterfaceRef = std::shared_ptr<Interface>;

/// The base of all interfaces that can be asked for by number. The numbers are stable 128-bit values.
class QELCORE_EXPORT UnknownBase : public std::enable_shared_from_this<UnknownBase> {
 public:
  /// The identifier of this base itself, to which every object answers.
  [[nodiscard]] static const Guid& InterfaceId();

  UnknownBase() = default;
  virtual ~UnknownBase();
  UnknownBase(const UnknownBase&) = delete;
  UnknownBase& operator=(const UnknownBase&) = delete;

  /// The object as the interface of that identifier, to be cast to it, or null when it is no such thing. It
  /// lives as long as the object. Any thread may call. Does not throw.
  [[nodiscard]] virtual void* QueryInterface(const Guid& interfaceId) = 0;
};

/// The classes of this process. Any thread may call.
class QELCORE_EXPORT ClassFactory {
 public:
  using Make = std::function<InterfaceRef<UnknownBase>()>;

  /// Makes a class known. `label` says what kind of identifier `classId` is, usually "classID"; `className`
  /// is the qualified name that a log shows. Registering an identifier again replaces the class; it is
  /// traced.
  static void Register(const Guid& classId, std::string_view label, std::string_view className, Make make);

  /// A new object of the class; empty when the class is not known. What making it throws passes through.
  [[nodiscard]] static InterfaceRef<UnknownBase> Create(const Guid& classId);

  /// The name under which a class was registered; empty when it is not known.
  [[nodiscard]] static std::string GetClassName(const Guid& classId);
};

}  // namespace classref
}  // namespace qelcore
