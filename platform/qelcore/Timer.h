// Elapsed time.
#pragma once

#include <cstdint>

#include "platform/qelcore/Export.h"

namespace qelcore {

/// Tells how much time has passed since it was made. It never goes back, whatever happens to the clock on the
/// wall.
class QELCORE_EXPORT Timer {
 public:
  Timer();

  /// Begins anew.
  void Restart();

  [[nodiscard]] std::uint64_t GetElapsedMilliseconds() const;

 private:
  std::uint64_t mStart;
};

}  // namespace qelcore
