// Content hashing, 128 bits, streaming.
//
//   MixHashGuidT<HashValueMixerState> state;
//   UpdateHashState(state, text.data(), text.size());
//   Guid result;
//   GetHashResult(state, result);
#pragma once

#include <array>
#include <cstddef>

#include "platform/qelcore/Export.h"
#include "platform/qelcore/Guid.h"

namespace qelcore {

/// Room for a mixer's state. Its layout belongs to the core library; callers copy it and nothing else.
struct HashValueMixerState {
  alignas(64) std::array<unsigned char, 576> mBytes;
  std::size_t mLength;
};

/// Brings a state to its start, in which nothing was mixed in.
QELCORE_EXPORT void StartHashState(HashValueMixerState& state);

/// A hash in the making. A plain value: a copy goes on from where the original stood, and both are
/// independent.
template <typename State>
class MixHashGuidT {
 public:
  MixHashGuidT() { StartHashState(mState); }

  State mState;
};

/// Mixes `length` raw bytes in. The result depends on the bytes alone, not on how they were split over calls.
/// The same bytes give the same result in every process and on every system.
QELCORE_EXPORT void UpdateHashState(MixHashGuidT<HashValueMixerState>& state, const void* bytes,
                                    std::size_t length);

/// Writes the hash of all that was mixed in so far to `result`. The state stays usable for further mixing.
QELCORE_EXPORT void GetHashResult(const MixHashGuidT<HashValueMixerState>& state, Guid& result);

}  // namespace qelcore
