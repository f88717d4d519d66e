#include "platform/qelcore/ClassRef.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::Guid;
using qelcore::RefCountedInterface;
using qelcore::RefCountedObjectWithWeakPtr;
using qelcore::classref::ClassFactory;
using qelcore::classref::InterfaceRef;
using qelcore::classref::UnknownBase;

const Guid kClassId = Guid::FromUTF8String("7e4c2a10-95d3-4b60-8f2e-d1b6a90c3357");
const Guid kOtherClassId = Guid::FromUTF8String("7e4c2a10-95d3-4b60-8f2e-d1b6a90c3358");
const Guid kCounterInterfaceId = Guid::FromUTF8String("a0f3c6d2-1b48-4e97-b5c1-0264f8e7d913");

class ICounter {
 public:
  virtual ~ICounter() = default;
  virtual int Next() = 0;
};

/// An object of two interfaces. The second base makes the addresses of the two differ.
class Counter final : public UnknownBase, public ICounter {
 public:
  void* QueryInterface(const Guid& interfaceId) override {
    if (interfaceId == UnknownBase::InterfaceId()) {
      return static_cast<UnknownBase*>(this);
    }
    return interfaceId == kCounterInterfaceId ? static_cast<ICounter*>(this) : nullptr;
  }

  int Next() override { return ++mCount; }

 private:
  int mCount = 0;
};

/// What the warnings said.
class Classes : public testing::Test {
 protected:
  void SetUp() override {
    qelcore::host::SetTraceSink([this](std::string_view channel, int level, std::string_view text) {
      mTraced.push_back(std::string(channel) + ' ' + std::to_string(level) + ' ' + std::string(text));
    });
    qelcore::host::SetTraceLevel(5);
  }

  void TearDown() override { qelcore::host::SetTraceSink(nullptr); }

  std::vector<std::string> mTraced;
};

TEST_F(Classes, ARegisteredClassIsMadeAnewEachTime) {
  ClassFactory::Register(kClassId, "classID", "tests::Counter", [] { return std::make_shared<Counter>(); });
  const InterfaceRef<UnknownBase> first = ClassFactory::Create(kClassId);
  const InterfaceRef<UnknownBase> second = ClassFactory::Create(kClassId);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(first, first->shared_from_this());
  EXPECT_EQ(ClassFactory::GetClassName(kClassId), "tests::Counter");
  EXPECT_EQ(mTraced, std::vector<std::string>());
}

TEST_F(Classes, AnObjectAnswersToItsInterfaces) {
  ClassFactory::Register(kClassId, "classID", "tests::Counter", [] { return std::make_shared<Counter>(); });
  const InterfaceRef<UnknownBase> object = ClassFactory::Create(kClassId);
  ASSERT_TRUE(object);
  EXPECT_EQ(object->QueryInterface(UnknownBase::InterfaceId()), object.get());
  EXPECT_EQ(object->QueryInterface(kClassId), nullptr);
  EXPECT_EQ(object->QueryInterface(Guid()), nullptr);
  auto* const counter = static_cast<ICounter*>(object->QueryInterface(kCounterInterfaceId));
  ASSERT_NE(counter, nullptr);
  EXPECT_EQ(counter->Next(), 1);
  EXPECT_EQ(counter->Next(), 2);
}

TEST_F(Classes, TheBaseHasAFixedIdentifier) {
  EXPECT_EQ(UnknownBase::InterfaceId().AsUTF8String(), "e2b7a90d-64c8-4f1e-8d35-19f0c7b4a26e");
}

TEST_F(Classes, AnUnknownClassIsNotMade) {
  ClassFactory::Register(kClassId, "classID", "tests::Counter", [] { return std::make_shared<Counter>(); });
  EXPECT_FALSE(ClassFactory::Create(kOtherClassId));
  EXPECT_FALSE(ClassFactory::Create(Guid()));
  EXPECT_EQ(ClassFactory::GetClassName(kOtherClassId), "");
}

TEST_F(Classes, ALaterRegistrationReplacesAndIsTraced) {
  ClassFactory::Register(kClassId, "classID", "tests::Counter", [] { return std::make_shared<Counter>(); });
  const auto fixed = std::make_shared<Counter>();
  ClassFactory::Register(kClassId, "classID", "tests::Fixed", [fixed] { return fixed; });
  EXPECT_EQ(ClassFactory::Create(kClassId), fixed);
  EXPECT_EQ(ClassFactory::GetClassName(kClassId), "tests::Fixed");
  EXPECT_EQ(mTraced,
            (std::vector<std::string>{
                "ClassRef 5 The class \"tests::Fixed\" takes the place of \"tests::Counter\" under the "
                "classID 7e4c2a10-95d3-4b60-8f2e-d1b6a90c3357."}));
}

TEST_F(Classes, WhatMakingThrowsPassesThrough) {
  ClassFactory::Register(kClassId, "classID", "tests::Faulty",
                         []() -> InterfaceRef<UnknownBase> { throw std::runtime_error("from a factory"); });
  EXPECT_THROW(static_cast<void>(ClassFactory::Create(kClassId)), std::runtime_error);
  EXPECT_THROW(static_cast<void>(ClassFactory::Create(kClassId)), std::runtime_error);
}

TEST_F(Classes, MakingOneMayRegisterAnother) {
  ClassFactory::Register(kClassId, "classID", "tests::Outer", [] {
    ClassFactory::Register(kOtherClassId, "classID", "tests::Inner",
                           [] { return std::make_shared<Counter>(); });
    return ClassFactory::Create(kOtherClassId);
  });
  EXPECT_TRUE(ClassFactory::Create(kClassId));
  EXPECT_EQ(ClassFactory::GetClassName(kOtherClassId), "tests::Inner");
}

TEST(RefCountedObjectWithWeakPtr, HandsOutReferencesToItself) {
  class Object final : public RefCountedObjectWithWeakPtr {};
  auto object = std::make_shared<Object>();
  const std::weak_ptr<RefCountedObjectWithWeakPtr> weak = object->weak_from_this();
  EXPECT_EQ(object->shared_from_this(), object);
  const std::shared_ptr<RefCountedInterface> asInterface = object;
  object.reset();
  EXPECT_FALSE(weak.expired());
}

TEST(RefCountedObjectWithWeakPtr, EndsWithItsLastReference) {
  class Object final : public RefCountedObjectWithWeakPtr {
   public:
    explicit Object(bool& hasEnded) : mHasEnded(hasEnded) {}
    ~Object() override { mHasEnded = true; }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

   private:
    bool& mHasEnded;
  };
  bool hasEnded = false;
  std::shared_ptr<RefCountedInterface> object = std::make_shared<Object>(hasEnded);
  EXPECT_FALSE(hasEnded);
  object.reset();
  EXPECT_TRUE(hasEnded);
}

}  // namespace
