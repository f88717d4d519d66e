#include "platform/qelcore/ClassRef.h"

#include <array>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "platform/qelcore/Trace.h"

namespace qelcore {

RefCountedInterface::~RefCountedInterface() = default;
RefCountedObjectWithWeakPtr::~RefCountedObjectWithWeakPtr() = default;

namespace classref {

namespace {

constexpr std::string_view kChannel = "ClassRef";
constexpr int kWarningLevel = 5;

/// The text form is "e2b7a90d-64c8-4f1e-8d35-19f0c7b4a26e". Do not change: objects answer to it for ever.
constexpr std::array<std::uint8_t, 16> kUnknownBaseBytes = {0xe2, 0xb7, 0xa9, 0x0d, 0x64, 0xc8, 0x4f, 0x1e,
                                                            0x8d, 0x35, 0x19, 0xf0, 0xc7, 0xb4, 0xa2, 0x6e};

struct RegisteredClass {
  std::string mClassName;
  ClassFactory::Make mMake;
};

struct Classes {
  std::mutex mMutex;
  std::map<std::array<std::uint8_t, 16>, RegisteredClass> mByIdentifier;
};

Classes& TheClasses() {
  // Registrations may come from static objects of any library, so this is there before them and outlives
  // them.
  static Classes& classes = *new Classes;
  return classes;
}

/// A copy, because what it makes is made without the lock; an empty name when the class is not known.
RegisteredClass Find(const Guid& classId) {
  Classes& classes = TheClasses();
  const std::lock_guard lock(classes.mMutex);
  const auto place = classes.mByIdentifier.find(classId.Bytes());
  return place != classes.mByIdentifier.end() ? place->second : RegisteredClass{};
}

}  // namespace

const Guid& UnknownBase::InterfaceId() {
  static const Guid interfaceId(kUnknownBaseBytes);
  return interfaceId;
}

UnknownBase::~UnknownBase() = default;

void ClassFactory::Register(const Guid& classId, std::string_view label, std::string_view className,
                            Make make) {
  RegisteredClass replaced{std::string(className), std::move(make)};
  bool isNew = false;
  {
    Classes& classes = TheClasses();
    const std::lock_guard lock(classes.mMutex);
    RegisteredClass& registered = classes.mByIdentifier.try_emplace(classId.Bytes()).first->second;
    isNew = !registered.mMake;
    std::swap(registered, replaced);
  }
  // What was replaced is traced and destroyed here, without the lock.
  if (!isNew && TraceEnabled(kChannel, kWarningLevel)) {
    TraceOutput(kChannel, kWarningLevel,
                "The class \"" + std::string(className) + "\" takes the place of \"" + replaced.mClassName +
                    "\" under the " + std::string(label) + ' ' + classId.AsUTF8String() + '.');
  }
}

InterfaceRef<UnknownBase> ClassFactory::Create(const Guid& classId) {
  const RegisteredClass found = Find(classId);
  return found.mMake ? found.mMake() : nullptr;
}

std::string ClassFactory::GetClassName(const Guid& classId) {
  return Find(classId).mClassName;
}

}  // namespace classref
}  // namespace qelcore
