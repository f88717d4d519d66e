#include "platform/qelcore/Messaging.h"

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::Guid;
using qelcore::messaging::AddListener;
using qelcore::messaging::HashMessageTypeNameToMessageID;
using qelcore::messaging::IMessageListener;
using qelcore::messaging::Message;
using qelcore::messaging::MessageID;
using qelcore::messaging::SendToListeners;
using qelcore::messaging::StationID;

using Texts = std::vector<std::string>;

const StationID kStation = Guid::FromUTF8String("00000000-0000-0000-0000-000000000001");
const StationID kOtherStation = Guid::FromUTF8String("01000000-0000-0000-0000-000000000000");
constexpr MessageID kType = 7;
constexpr MessageID kOtherType = 8;

/// A listener that runs a function.
class Listener final : public IMessageListener {
 public:
  explicit Listener(std::function<void(const Message&)> receive, StationID station = kStation,
                    MessageID messageID = kType)
      : mStation(station), mMessageID(messageID), mReceive(std::move(receive)) {}

  [[nodiscard]] StationID GetStationID() const override { return mStation; }
  [[nodiscard]] MessageID GetMessageID() const override { return mMessageID; }
  void Receive(const Message& message) override { mReceive(message); }

 private:
  StationID mStation;
  MessageID mMessageID;
  std::function<void(const Message&)> mReceive;
};

class Messaging : public testing::Test {
 protected:
  std::shared_ptr<Listener> AddNoting(const std::string& text, const StationID& station = kStation,
                                      MessageID messageID = kType) {
    auto listener = std::make_shared<Listener>([this, text](const Message&) { mReceived.push_back(text); },
                                               station, messageID);
    AddListener(listener);
    return listener;
  }

  Texts ReceivedOf(const StationID& station, MessageID messageID) {
    mReceived.clear();
    SendToListeners(station, Message(messageID));
    return mReceived;
  }

  Texts mReceived;
};

TEST(MessageIdentifier, IsTheSameInEveryProcess) {
  const struct {
    const char* mName;
    MessageID mExpected;
  } rows[] = {
      {"qelcore::appstatemanager::AppStateMessage", 0xe2921d97f00b6592U},
      {"a", 0xa96faf705af16834U},
      {"", 0x99aa06d3014798d8U},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(HashMessageTypeNameToMessageID(row.mName), row.mExpected) << row.mName;
  }
}

TEST_F(Messaging, AListenerReceivesWhatItsStationSendsOfItsType) {
  const auto one = AddNoting("one");
  const auto otherStation = AddNoting("other station", kOtherStation);
  const auto otherType = AddNoting("other type", kStation, kOtherType);
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts{"one"});
  EXPECT_EQ(ReceivedOf(kOtherStation, kType), Texts{"other station"});
  EXPECT_EQ(ReceivedOf(kStation, kOtherType), Texts{"other type"});
  EXPECT_EQ(ReceivedOf(kOtherStation, kOtherType), Texts());
  EXPECT_EQ(ReceivedOf(Guid(), 0), Texts());
}

TEST_F(Messaging, TheMessageItselfArrives) {
  const Message sent(kType);
  const Message* received = nullptr;
  const auto listener = std::make_shared<Listener>([&](const Message& message) { received = &message; });
  AddListener(listener);
  SendToListeners(kStation, sent);
  EXPECT_EQ(received, &sent);
}

TEST_F(Messaging, ListenersReceiveInTheOrderOfAdding) {
  std::vector<std::shared_ptr<Listener>> listeners;
  Texts expected;
  for (int index = 0; index < 20; ++index) {
    expected.push_back(std::to_string(index));
    listeners.push_back(AddNoting(expected.back()));
  }
  EXPECT_EQ(ReceivedOf(kStation, kType), expected);
  // One in the middle leaves, and comes again at the end.
  listeners.erase(listeners.begin() + 10);
  expected.erase(expected.begin() + 10);
  listeners.push_back(AddNoting("again"));
  expected.emplace_back("again");
  EXPECT_EQ(ReceivedOf(kStation, kType), expected);
}

TEST_F(Messaging, AddingTwiceDeliversOnce) {
  const auto listener = AddNoting("one");
  const auto other = AddNoting("two");
  AddListener(listener);
  EXPECT_EQ(ReceivedOf(kStation, kType), (Texts{"one", "two"}));
}

TEST_F(Messaging, AnEmptyReferenceIsIgnored) {
  AddListener(nullptr);
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts());
}

TEST_F(Messaging, TwoListenersOfOneOwnerBothReceive) {
  struct Owner {
    explicit Owner(Texts& received)
        : mFirst([&received](const Message&) { received.emplace_back("first"); }),
          mSecond([&received](const Message&) { received.emplace_back("second"); }) {}
    Listener mFirst;
    Listener mSecond;
  };
  const auto owner = std::make_shared<Owner>(mReceived);
  AddListener(std::shared_ptr<IMessageListener>(owner, &owner->mFirst));
  AddListener(std::shared_ptr<IMessageListener>(owner, &owner->mSecond));
  EXPECT_EQ(ReceivedOf(kStation, kType), (Texts{"first", "second"}));
}

TEST_F(Messaging, NothingKeepsAListenerAlive) {
  auto listener = AddNoting("one");
  const std::weak_ptr<Listener> observer = listener;
  EXPECT_EQ(listener.use_count(), 1);
  listener.reset();
  EXPECT_TRUE(observer.expired());
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts());
}

TEST_F(Messaging, ANewListenerAtTheAddressOfAReleasedOneReceives) {
  alignas(Listener) unsigned char place[sizeof(Listener)];
  const auto make = [&](const std::string& text) {
    return std::shared_ptr<Listener>(
        new (place) Listener([this, text](const Message&) { mReceived.push_back(text); }),
        [](Listener* listener) { listener->~Listener(); });
  };
  auto listener = make("first");
  AddListener(listener);
  listener.reset();
  listener = make("second");
  AddListener(listener);
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts{"second"});
}

TEST_F(Messaging, AListenerMayReleaseItself) {
  std::shared_ptr<Listener> listener;
  listener = std::make_shared<Listener>([&](const Message&) {
    const std::weak_ptr<Listener> observer = listener;
    listener.reset();
    // It lives until the call is over.
    mReceived.emplace_back(observer.expired() ? "gone" : "alive");
  });
  AddListener(listener);
  const auto after = AddNoting("after");
  EXPECT_EQ(ReceivedOf(kStation, kType), (Texts{"alive", "after"}));
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts{"after"});
}

TEST_F(Messaging, AListenerReleasedByAnEarlierOneReceivesNoMore) {
  std::shared_ptr<Listener> second;
  const auto first = std::make_shared<Listener>([&](const Message&) { second.reset(); });
  AddListener(first);
  second = AddNoting("second");
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts());
}

TEST_F(Messaging, AListenerAddedDuringDeliveryReceivesTheNextMessage) {
  std::shared_ptr<Listener> added;
  const auto first = std::make_shared<Listener>([&](const Message&) {
    mReceived.emplace_back("first");
    if (!added) {
      added = AddNoting("added");
    }
  });
  AddListener(first);
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts{"first"});
  EXPECT_EQ(ReceivedOf(kStation, kType), (Texts{"first", "added"}));
}

TEST_F(Messaging, AListenerMaySendAgain) {
  int depth = 0;
  const auto first = std::make_shared<Listener>([&](const Message& message) {
    mReceived.push_back("first " + std::to_string(depth));
    if (++depth < 3) {
      SendToListeners(kStation, message);
    }
  });
  AddListener(first);
  const auto second = AddNoting("second");
  EXPECT_EQ(ReceivedOf(kStation, kType),
            (Texts{"first 0", "first 1", "first 2", "second", "second", "second"}));
}

TEST_F(Messaging, WhatAListenerThrowsIsLoggedAndTheOthersReceive) {
  Texts logged;
  qelcore::host::SetExceptionSink([&](const std::exception_ptr& exception, std::string_view context) {
    logged.push_back(std::string(context) + ": " + qelcore::host::DescribeException(exception));
  });
  const auto first =
      std::make_shared<Listener>([](const Message&) { throw std::runtime_error("from a listener"); });
  const auto second = std::make_shared<Listener>([](const Message&) { throw 5; });
  AddListener(first);
  AddListener(second);
  const auto third = AddNoting("third");
  EXPECT_EQ(ReceivedOf(kStation, kType), Texts{"third"});
  EXPECT_EQ(logged, (Texts{"qelcore::messaging::SendToListeners: from a listener",
                           "qelcore::messaging::SendToListeners: unknown exception"}));
  qelcore::host::SetExceptionSink(nullptr);
}

}  // namespace
