// What this library and the native toolkit, which is loaded only when windows are wanted, say to each other.
#pragma once

#include <memory>
#include <string>

#include "host/qelui/DesktopWindow.h"
#include "platform/qelui.h"

namespace qelui::host {

class NativeToolkit {
 public:
  NativeToolkit() = default;
  virtual ~NativeToolkit() = default;
  NativeToolkit(const NativeToolkit&) = delete;
  NativeToolkit& operator=(const NativeToolkit&) = delete;

  [[nodiscard]] virtual NodeManager& GetNodeManager() = 0;
  [[nodiscard]] virtual std::unique_ptr<DesktopWindow> MakeDesktopWindow() = 0;
};

/// The one function that the native toolkit exports, under the name `kStartFunction`. Returns null and sets
/// `reason` when there cannot be windows. The caller deletes the toolkit to end it.
using StartFunction = NativeToolkit* (*)(std::string& reason);

inline constexpr const char* kStartFunction = "qelui_native_Start";

/// Loads the library of the native toolkit from the directory of this one, once; it stays until the process
/// ends. Throws `std::runtime_error` when that fails.
[[nodiscard]] StartFunction LoadNativeToolkit();

}  // namespace qelui::host
