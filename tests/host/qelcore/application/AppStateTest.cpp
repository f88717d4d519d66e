#include "platform/qelcore/AppState.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::appstatemanager::AppState;
using qelcore::appstatemanager::AppStateMessage;
using qelcore::appstatemanager::GetAppState;
using qelcore::appstatemanager::GetStationID;
using qelcore::host::SetAppState;
using qelcore::messaging::AddListener;
using qelcore::messaging::HashMessageTypeNameToMessageID;
using qelcore::messaging::IMessageListener;
using qelcore::messaging::Message;
using qelcore::messaging::MessageID;
using qelcore::messaging::StationID;

class StateListener final : public IMessageListener {
 public:
  explicit StateListener(std::function<void(AppState)> receive) : mReceive(std::move(receive)) {}

  [[nodiscard]] StationID GetStationID() const override { return qelcore::appstatemanager::GetStationID(); }
  [[nodiscard]] MessageID GetMessageID() const override {
    return HashMessageTypeNameToMessageID("qelcore::appstatemanager::AppStateMessage");
  }
  void Receive(const Message& message) override {
    mReceive(dynamic_cast<const AppStateMessage&>(message).GetState());
  }

 private:
  std::function<void(AppState)> mReceive;
};

TEST(AppState, IsWhatTheHostSaid) {
  EXPECT_EQ(GetAppState(), AppState::kLoaded);
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(GetAppState(), AppState::kPostStartup);
  EXPECT_EQ(static_cast<int>(GetAppState()), 5);
}

TEST(AppState, TheStationNeverChanges) {
  EXPECT_EQ(GetStationID().AsUTF8String(), "5c1f0e6b-3a57-4d02-9b8e-7741d2a6c0f3");
}

TEST(AppState, TheMessageCarriesItsTypeAndTheState) {
  const AppStateMessage message(AppState::kInitialized);
  EXPECT_EQ(message.GetMessageID(),
            HashMessageTypeNameToMessageID("qelcore::appstatemanager::AppStateMessage"));
  EXPECT_EQ(message.GetState(), AppState::kInitialized);
}

TEST(AppState, EachCallIsAnnouncedOnTheCallingThreadAfterTheStateIsThere) {
  std::vector<std::pair<AppState, AppState>> received;
  std::thread::id thread;
  const auto listener = std::make_shared<StateListener>([&](AppState state) {
    received.emplace_back(state, GetAppState());
    thread = std::this_thread::get_id();
  });
  AddListener(listener);
  SetAppState(AppState::kInitializing);
  EXPECT_EQ(thread, std::this_thread::get_id());
  SetAppState(AppState::kPostStartup);
  SetAppState(AppState::kPostStartup);
  EXPECT_EQ(received,
            (std::vector<std::pair<AppState, AppState>>{{AppState::kInitializing, AppState::kInitializing},
                                                        {AppState::kPostStartup, AppState::kPostStartup},
                                                        {AppState::kPostStartup, AppState::kPostStartup}}));
}

TEST(AppState, AListenerMaySetTheNextState) {
  std::vector<AppState> received;
  const auto listener = std::make_shared<StateListener>([&](AppState state) {
    received.push_back(state);
    if (state == AppState::kStarted) {
      SetAppState(AppState::kPostStartup);
    }
  });
  AddListener(listener);
  SetAppState(AppState::kStarted);
  EXPECT_EQ(received, (std::vector<AppState>{AppState::kStarted, AppState::kPostStartup}));
  EXPECT_EQ(GetAppState(), AppState::kPostStartup);
}

}  // namespace
