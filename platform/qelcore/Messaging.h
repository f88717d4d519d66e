// Messages: stations send them, listeners receive those of one station and one type.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Guid.h"

namespace qelcore::messaging {

/// A place that sends messages, such as the application-state manager.
using StationID = Guid;

/// A type of messages: the hash of its name.
using MessageID = std::uint64_t;

/// The same number for the same name in every process and version.
[[nodiscard]] QELCORE_EXPORT MessageID HashMessageTypeNameToMessageID(std::string_view typeName);

/// The base of all messages. A message lives as long as its delivery.
class QELCORE_EXPORT Message {
 public:
  explicit Message(MessageID messageID) : mMessageID(messageID) {}
  virtual ~Message();
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;

  [[nodiscard]] MessageID GetMessageID() const { return mMessageID; }

 private:
  MessageID mMessageID;
};

/// Receives the messages of one station and one type. The two identifiers never change.
class QELCORE_EXPORT IMessageListener {
 public:
  virtual ~IMessageListener();

  [[nodiscard]] virtual StationID GetStationID() const = 0;
  [[nodiscard]] virtual MessageID GetMessageID() const = 0;

  /// Called on the thread that sends, and so on several threads at once when several send. May send, add
  /// listeners and release this listener. What it throws is logged, and the other listeners still receive.
  virtual void Receive(const Message& message) = 0;
};

/// Makes a listener receive messages until it is released. Nothing here keeps it alive, but for the time of a
/// call of `Receive`. Adding it a second time does nothing, nor does an empty reference. Any thread may call.
QELCORE_EXPORT void AddListener(const std::shared_ptr<IMessageListener>& listener);

/// Delivers a message to the listeners that the station has at this moment, in the order in which they were
/// added, on the calling thread, and returns when all have received it. Nothing is locked meanwhile. Any
/// thread may call.
QELCORE_EXPORT void SendToListeners(const StationID& station, const Message& message);

}  // namespace qelcore::messaging
