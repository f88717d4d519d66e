#include "tests/fuzz/support/Require.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {

void Require(bool holds, std::string_view promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %.*s\n", static_cast<int>(promise.size()), promise.data());
  std::abort();
}

}  // namespace fuzz
