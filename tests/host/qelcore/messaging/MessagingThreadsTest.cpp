// Messages that several threads send while listeners come and go.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "host/qelcore/HostSetup.h"
#include "platform/qelcore/AppState.h"
#include "platform/qelcore/Messaging.h"
#include "platform/qelcore/Threads.h"

namespace {

using qelcore::appstatemanager::AppState;
using qelcore::appstatemanager::AppStateMessage;
using qelcore::messaging::AddListener;
using qelcore::messaging::IMessageListener;
using qelcore::messaging::Message;
using qelcore::messaging::MessageID;
using qelcore::messaging::SendToListeners;
using qelcore::messaging::StationID;
using qelcore::threads::OpenOnceGate;

constexpr int kThreads = 4;
constexpr int kRounds = 2000;

/// Counts, and shows whether it is called after its end: its own memory is written on every call.
class Counter final : public IMessageListener {
 public:
  explicit Counter(std::atomic<int>& total) : mTotal(total) {}
  ~Counter() override { mIsAlive = false; }
  Counter(const Counter&) = delete;
  Counter& operator=(const Counter&) = delete;

  [[nodiscard]] StationID GetStationID() const override { return qelcore::appstatemanager::GetStationID(); }
  [[nodiscard]] MessageID GetMessageID() const override {
    return qelcore::messaging::HashMessageTypeNameToMessageID(AppStateMessage::kTypeName);
  }

  void Receive(const Message& message) override {
    EXPECT_TRUE(mIsAlive);
    EXPECT_EQ(static_cast<const AppStateMessage&>(message).GetState(), AppState::kStarted);
    ++mReceived;
    ++mTotal;
  }

  [[nodiscard]] int Received() const { return mReceived; }

 private:
  std::atomic<bool> mIsAlive{true};
  std::atomic<int> mReceived{0};
  std::atomic<int>& mTotal;
};

TEST(MessagingThreads, EveryMessageReachesAListenerThatStays) {
  std::atomic<int> total{0};
  const auto staying = std::make_shared<Counter>(total);
  AddListener(staying);
  {
    std::vector<std::jthread> senders;
    for (int index = 0; index < kThreads; ++index) {
      senders.emplace_back([] {
        for (int round = 0; round < kRounds; ++round) {
          qelcore::host::SetAppState(AppState::kStarted);
        }
      });
    }
    std::vector<std::jthread> guests;
    for (int index = 0; index < kThreads; ++index) {
      guests.emplace_back([&total] {
        for (int round = 0; round < kRounds; ++round) {
          auto listener = std::make_shared<Counter>(total);
          AddListener(listener);
          AddListener(listener);
          qelcore::host::SetAppState(AppState::kStarted);
          // Its own message at least, and it was there for it.
          EXPECT_GE(listener->Received(), 1);
        }
      });
    }
  }
  EXPECT_EQ(staying->Received(), 2 * kThreads * kRounds);
  EXPECT_GE(total, 3 * kThreads * kRounds);
}

TEST(MessagingThreads, AListenerReleasedWhileItReceivesEndsAfterwards) {
  for (int round = 0; round < 200; ++round) {
    struct Waiting final : IMessageListener {
      Waiting(OpenOnceGate& entered, OpenOnceGate& released, std::atomic<bool>& isDone)
          : mEntered(entered), mReleased(released), mIsDone(isDone) {}
      ~Waiting() override { mIsDone = mHasLeft; }
      Waiting(const Waiting&) = delete;
      Waiting& operator=(const Waiting&) = delete;

      [[nodiscard]] StationID GetStationID() const override { return StationID(); }
      [[nodiscard]] MessageID GetMessageID() const override { return 1; }
      void Receive(const Message&) override {
        mEntered.Open();
        EXPECT_TRUE(mReleased.PassThroughUntil(std::chrono::steady_clock::now() + std::chrono::hours(1)));
        mHasLeft = true;
      }

      OpenOnceGate& mEntered;
      OpenOnceGate& mReleased;
      std::atomic<bool>& mIsDone;
      bool mHasLeft = false;
    };
    OpenOnceGate entered;
    OpenOnceGate released;
    std::atomic<bool> isDone{false};
    auto listener = std::make_shared<Waiting>(entered, released, isDone);
    AddListener(listener);
    {
      std::jthread sender([] { SendToListeners(StationID(), Message(1)); });
      ASSERT_TRUE(entered.PassThroughUntil(std::chrono::steady_clock::now() + std::chrono::hours(1)));
      listener.reset();
      EXPECT_FALSE(isDone);
      released.Open();
    }
    EXPECT_TRUE(isDone);
  }
}

}  // namespace
