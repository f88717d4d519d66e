// Start-up, termination, and the parameters that an application hands to its libraries.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/qelcore/Export.h"

namespace qelcore::config {

// ---- Parameters -------------------------------------------------------------------------------------------

/// Names of parameters that every application delivers.
inline constexpr std::string_view kAppMajorVersion = "AppMajorVersion";
inline constexpr std::string_view kAppMinorVersion = "AppMinorVersion";

/// The application's configuration parameters, by name.
class QELCORE_EXPORT ConfigurationParameters {
 public:
  using Value = std::variant<std::int32_t, std::string>;

  ConfigurationParameters();
  explicit ConfigurationParameters(std::map<std::string, Value, std::less<>> values);
  ~ConfigurationParameters();
  ConfigurationParameters(const ConfigurationParameters&);
  ConfigurationParameters& operator=(const ConfigurationParameters&);

  /// The parameter's value when it is present and holds an integer, else nothing.
  [[nodiscard]] std::optional<std::int32_t> FindInteger(std::string_view name) const;

 private:
  std::map<std::string, Value, std::less<>> mValues;
};

/// A static object that asks for the parameters: the callback runs once when the host starts the process, or
/// at once when it already did. Static objects of one module are called in the order of their construction.
/// One that is destroyed before, because its module is unloaded, is not called.
class QELCORE_EXPORT ProcessBeginEndNotificationRegistrar {
 public:
  explicit ProcessBeginEndNotificationRegistrar(
      std::function<void(const ConfigurationParameters&)> onProcessBegin);
  ~ProcessBeginEndNotificationRegistrar();
  ProcessBeginEndNotificationRegistrar(const ProcessBeginEndNotificationRegistrar&) = delete;
  ProcessBeginEndNotificationRegistrar& operator=(const ProcessBeginEndNotificationRegistrar&) = delete;
};

// ---- Initializers -----------------------------------------------------------------------------------------

/// In which processes an initializer runs.
enum class EInitializerContextFlags : std::uint32_t {
  kDefault = 0,  ///< in every process that starts the host
};

/// A static object that names a piece of start-up work. The host runs each one once, after those that it
/// depends on; one that returns false has failed, and those that depend on it do not run. One that is
/// destroyed before, because its module is unloaded, does not run and is not known.
class QELCORE_EXPORT InitializerRegistrar {
 public:
  InitializerRegistrar(std::string name, std::function<bool()> initialize,
                       std::vector<std::string> dependencies,
                       EInitializerContextFlags flags = EInitializerContextFlags::kDefault);
  ~InitializerRegistrar();
  InitializerRegistrar(const InitializerRegistrar&) = delete;
  InitializerRegistrar& operator=(const InitializerRegistrar&) = delete;
};

// ---- Termination ------------------------------------------------------------------------------------------

/// Asks for `action` to run when the host ends the process, in the reverse order of registration. `name` is
/// what failures are logged under. An action that throws is logged and the others still run.
QELCORE_EXPORT void AddTerminationForSingleton(std::function<void()> action, std::string name);

// ---- Empty references -------------------------------------------------------------------------------------

/// A reference that had to hold an object is empty.
class QELCORE_EXPORT NullPointerException : public std::runtime_error {
 public:
  /// `interfaceName` is the type of the reference.
  explicit NullPointerException(std::string_view interfaceName);
  ~NullPointerException() override;
  NullPointerException(const NullPointerException&);
  NullPointerException& operator=(const NullPointerException&);
};

[[noreturn]] QELCORE_EXPORT void DoThrowNullPtrException(std::string_view interfaceName);

}  // namespace qelcore::config
