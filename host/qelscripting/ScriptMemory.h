// The memory of one Lua state: bounded, and given back as a whole.
#pragma once

#include <cstddef>

namespace qelscripting {

/// Everything that a Lua state allocates. It goes with this object, so a state that was left in the middle of
/// its work needs no closing.
class ScriptMemory {
 public:
  /// `limit` is the most memory in bytes.
  explicit ScriptMemory(std::size_t limit) : mLeft(limit), mBlocks{&mBlocks, &mBlocks} {}
  ~ScriptMemory();
  ScriptMemory(const ScriptMemory&) = delete;
  ScriptMemory& operator=(const ScriptMemory&) = delete;

  /// The allocation function of a Lua state whose user data is a `ScriptMemory`.
  static void* Reallocate(void* memory, void* block, std::size_t oldSize, std::size_t newSize) noexcept;

 private:
  /// What stands in front of every block, and links it with the others in a ring.
  struct alignas(std::max_align_t) Header {
    Header* mPrevious;
    Header* mNext;
  };

  void Release(void* block, std::size_t size) noexcept;
  [[nodiscard]] void* Resize(void* block, std::size_t oldSize, std::size_t newSize) noexcept;

  std::size_t mLeft;
  Header mBlocks;
};

}  // namespace qelscripting
