// What the library asks of the host's application-support library: feature switches and analytics events.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#if defined(_WIN32)
#if defined(QELAPPSUPPORT_BUILDING)
#define QELAPPSUPPORT_EXPORT __declspec(dllexport)
#else
#define QELAPPSUPPORT_EXPORT __declspec(dllimport)
#endif
#else
#define QELAPPSUPPORT_EXPORT __attribute__((visibility("default")))
#endif

namespace qelappsupport {

// ---- Feature switches -------------------------------------------------------------------------------------

/// Whether the host switched a feature on. Features are asked for by name; one that nobody knows is off. Any
/// thread may call. Does not throw.
[[nodiscard]] QELAPPSUPPORT_EXPORT bool IsFeatureEnabled(std::string_view name);

namespace feature {

/// How far a feature has come. The number is fixed: do not renumber.
enum class Stage : std::uint32_t { kBeta = 1 };

/// A static object that declares a feature which can be switched on and off by its name. `description` is a
/// localisable text with a key of its own; `ticket` names the work item that the feature belongs to.
/// Declaring a name a second time is ignored.
class QELAPPSUPPORT_EXPORT BetaFeature {
 public:
  BetaFeature(std::string name, Stage stage, std::string description, std::string ticket);
};

}  // namespace feature

// ---- Analytics events -------------------------------------------------------------------------------------

namespace analytics {

/// What becomes of an error while an event is built or sent. The number is fixed: do not renumber.
enum class ErrorHandlingPolicy : std::uint32_t { kDefault = 0 };

/// Who may see a data item. The number is fixed: do not renumber.
enum class Privacy : std::uint32_t { kDefault = 0 };

/// One structured event: four texts that name it, and data items in the order in which they were added.
class QELAPPSUPPORT_EXPORT SDMEvent {
 public:
  /// What an item holds: a value, the statement that there is none, or the statement that it is not known.
  enum class ItemKind : std::uint32_t { kValue, kNone, kUnknown };

  struct Item {
    std::string mGroup;
    std::string mKey;
    ItemKind mKind = ItemKind::kValue;
    std::string mValue;  ///< UTF-8; empty unless the kind is `kValue`
    Privacy mPrivacy = Privacy::kDefault;

    friend bool operator==(const Item&, const Item&) = default;
  };

  /// `workflow`, `category`, `subtype` and `name` are the event's four texts, in this order.
  SDMEvent(std::string workflow, std::string category, std::string subtype, std::string name,
           ErrorHandlingPolicy policy);
  ~SDMEvent();
  SDMEvent(const SDMEvent&);
  SDMEvent& operator=(const SDMEvent&);

  void AddSDMData(std::string group, std::string key, std::string value, Privacy privacy);
  void AddSDMDataNone(std::string group, std::string key);
  void AddSDMDataUnknown(std::string group, std::string key);

  /// The four texts, in the constructor's order.
  [[nodiscard]] const std::vector<std::string>& GetTexts() const { return mTexts; }
  [[nodiscard]] const std::vector<Item>& GetItems() const { return mItems; }
  [[nodiscard]] ErrorHandlingPolicy GetPolicy() const { return mPolicy; }

 private:
  std::vector<std::string> mTexts;
  std::vector<Item> mItems;
  ErrorHandlingPolicy mPolicy;
};

/// Delivers events. The library owns delivery: nobody waits, and nothing is tried again by the caller.
class QELAPPSUPPORT_EXPORT SDMUsageLogger {
 public:
  /// Hands an event over. Any thread may call. Does not throw.
  static void LogEvent(const SDMEvent& event);
};

}  // namespace analytics
}  // namespace qelappsupport
