#include "platform/qelcore/Hash.h"

#include <new>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace qelcore {

namespace {

static_assert(sizeof(XXH3_state_t) <= sizeof(HashValueMixerState));
static_assert(alignof(XXH3_state_t) <= alignof(HashValueMixerState));

XXH3_state_t* AsXXH3(HashValueMixerState& state) {
  return std::launder(reinterpret_cast<XXH3_state_t*>(state.mBytes.data()));
}

const XXH3_state_t* AsXXH3(const HashValueMixerState& state) {
  return std::launder(reinterpret_cast<const XXH3_state_t*>(state.mBytes.data()));
}

}  // namespace

void StartHashState(HashValueMixerState& state) {
  // Value initialisation, because the reset leaves the input buffer as it finds it and copies read all of it.
  auto* const xxh3 = new (state.mBytes.data()) XXH3_state_t{};
  XXH3_128bits_reset(xxh3);
}

void UpdateHashState(MixHashGuidT<HashValueMixerState>& state, const void* bytes, std::size_t length) {
  if (length != 0) {
    XXH3_128bits_update(AsXXH3(state.mState), bytes, length);
  }
}

void GetHashResult(const MixHashGuidT<HashValueMixerState>& state, Guid& result) {
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(AsXXH3(state.mState)));
  std::array<std::uint8_t, 16> bytes{};
  static_assert(sizeof(canonical.digest) == sizeof(bytes));
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    bytes[index] = canonical.digest[index];
  }
  result = Guid(bytes);
}

}  // namespace qelcore
