#include "platform/qelcore/Hash.h"

#include <array>
#include <cstring>
#include <new>
#include <utility>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace qelcore {

namespace {

static_assert(sizeof(XXH3_state_t) <= sizeof(HashValueMixerState::mBytes));
static_assert(alignof(XXH3_state_t) <= alignof(HashValueMixerState));

XXH3_state_t* AsXXH3(HashValueMixerState& state) {
  return std::launder(reinterpret_cast<XXH3_state_t*>(state.mBytes.data()));
}

const XXH3_state_t* AsXXH3(const HashValueMixerState& state) {
  return std::launder(reinterpret_cast<const XXH3_state_t*>(state.mBytes.data()));
}

// Most hashes are of a few short fields. The bytes are only gathered, and hashed together at the end, until
// there are too many for the room that the mixer's state will take.
constexpr std::size_t kIsMixing = static_cast<std::size_t>(-1);

void StartMixing(HashValueMixerState& state) {
  const std::array<unsigned char, sizeof state.mBytes> gathered = state.mBytes;
  // Value initialisation, because the reset leaves the input buffer as it finds it and copies read all of it.
  auto* const xxh3 = new (state.mBytes.data()) XXH3_state_t{};
  XXH3_128bits_reset(xxh3);
  XXH3_128bits_update(xxh3, gathered.data(), std::exchange(state.mLength, kIsMixing));
}

}  // namespace

void StartHashState(HashValueMixerState& state) {
  state.mLength = 0;
}

void UpdateHashState(MixHashGuidT<HashValueMixerState>& state, const void* bytes, std::size_t length) {
  if (length == 0) return;
  HashValueMixerState& mixer = state.mState;
  if (mixer.mLength <= mixer.mBytes.size() && length <= mixer.mBytes.size() - mixer.mLength) {
    std::memcpy(mixer.mBytes.data() + mixer.mLength, bytes, length);
    mixer.mLength += length;
    return;
  }
  if (mixer.mLength != kIsMixing) StartMixing(mixer);
  XXH3_128bits_update(AsXXH3(mixer), bytes, length);
}

void GetHashResult(const MixHashGuidT<HashValueMixerState>& state, Guid& result) {
  const HashValueMixerState& mixer = state.mState;
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, mixer.mLength == kIsMixing
                                           ? XXH3_128bits_digest(AsXXH3(mixer))
                                           : XXH3_128bits(mixer.mBytes.data(), mixer.mLength));
  std::array<std::uint8_t, 16> bytes{};
  static_assert(sizeof(canonical.digest) == sizeof(bytes));
  std::memcpy(bytes.data(), canonical.digest, bytes.size());
  result = Guid(bytes);
}

}  // namespace qelcore
