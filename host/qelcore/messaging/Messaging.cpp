#include "platform/qelcore/Messaging.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <vector>

#include "platform/qelcore/Hash.h"
#include "platform/qelcore/Trace.h"

namespace qelcore::messaging {

namespace {

struct Entry {
  StationID mStation;
  MessageID mMessageID;
  /// Only compared, never followed: two listeners may share one owner, so the owner does not tell them apart.
  const IMessageListener* mAddress;
  std::weak_ptr<IMessageListener> mListener;
};

/// The listeners of all stations in the order in which they were added.
struct Listeners {
  std::mutex mMutex;
  std::vector<Entry> mEntries;
};

Listeners& TheListeners() {
  // Never destroyed, because static objects of other libraries may send while the process ends.
  static Listeners& listeners = *new Listeners;
  return listeners;
}

std::vector<std::weak_ptr<IMessageListener>> ListenersFor(const StationID& station, MessageID messageID) {
  Listeners& listeners = TheListeners();
  std::vector<std::weak_ptr<IMessageListener>> found;
  const std::lock_guard lock(listeners.mMutex);
  for (const Entry& entry : listeners.mEntries) {
    if (entry.mMessageID == messageID && entry.mStation == station) {
      found.push_back(entry.mListener);
    }
  }
  return found;
}

}  // namespace

MessageID HashMessageTypeNameToMessageID(std::string_view typeName) {
  MixHashGuidT<HashValueMixerState> state;
  UpdateHashState(state, typeName.data(), typeName.size());
  Guid hash;
  GetHashResult(state, hash);
  // Put together by value and not copied, so that the byte order of the machine does not matter.
  MessageID messageID = 0;
  for (std::size_t index = 0; index < sizeof(MessageID); ++index) {
    messageID = messageID << 8U | hash.Bytes()[index];
  }
  return messageID;
}

Message::~Message() = default;

// At once and not with the next message: the module that made the listener may be gone by then, and with it
// the code that frees what a weak reference leaves.
IMessageListener::~IMessageListener() {
  Listeners& listeners = TheListeners();
  const std::lock_guard lock(listeners.mMutex);
  std::erase_if(listeners.mEntries, [this](const Entry& entry) { return entry.mAddress == this; });
}

void AddListener(const std::shared_ptr<IMessageListener>& listener) {
  if (!listener) {
    return;
  }
  // The listener is asked before the lock is taken: its answers are its own code.
  Entry added{listener->GetStationID(), listener->GetMessageID(), listener.get(), listener};
  Listeners& listeners = TheListeners();
  const std::lock_guard lock(listeners.mMutex);
  const bool isKnown = std::any_of(listeners.mEntries.begin(), listeners.mEntries.end(),
                                   [&added](const Entry& entry) { return entry.mAddress == added.mAddress; });
  if (!isKnown) {
    listeners.mEntries.push_back(std::move(added));
  }
}

void SendToListeners(const StationID& station, const Message& message) {
  for (const auto& weakListener : ListenersFor(station, message.GetMessageID())) {
    // Asked only when its turn has come, because an earlier listener may have released this one.
    const std::shared_ptr<IMessageListener> listener = weakListener.lock();
    if (!listener) {
      continue;
    }
    try {
      listener->Receive(message);
    } catch (...) {
      LogException(std::current_exception(), "qelcore::messaging::SendToListeners");
    }
  }
}

}  // namespace qelcore::messaging
