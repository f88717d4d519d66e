#include "host/qelscripting/ScriptMemory.h"

#include <cstdlib>

namespace qelscripting {

ScriptMemory::~ScriptMemory() {
  for (Header* header = mBlocks.mNext; header != &mBlocks;) {
    Header* const next = header->mNext;
    std::free(header);
    header = next;
  }
}

void* ScriptMemory::Reallocate(void* memory, void* block, std::size_t oldSize, std::size_t newSize) noexcept {
  auto& self = *static_cast<ScriptMemory*>(memory);
  if (newSize != 0) {
    // Without a block the old size is no size but tells what the memory is for.
    return self.Resize(block, block != nullptr ? oldSize : 0, newSize);
  }
  if (block != nullptr) {
    self.Release(block, oldSize);
  }
  return nullptr;
}

void ScriptMemory::Release(void* block, std::size_t size) noexcept {
  Header* const header = static_cast<Header*>(block) - 1;
  header->mPrevious->mNext = header->mNext;
  header->mNext->mPrevious = header->mPrevious;
  mLeft += sizeof(Header) + size;
  std::free(header);
}

/// Null, with the block as it was, when there is not enough memory.
void* ScriptMemory::Resize(void* block, std::size_t oldSize, std::size_t newSize) noexcept {
  const std::size_t headerSize = block == nullptr ? sizeof(Header) : 0;
  if (newSize > oldSize && (newSize - oldSize > mLeft || headerSize > mLeft - (newSize - oldSize))) {
    return nullptr;
  }
  Header* const old = block != nullptr ? static_cast<Header*>(block) - 1 : nullptr;
  auto* const header = static_cast<Header*>(std::realloc(old, sizeof(Header) + newSize));
  if (header == nullptr) {
    return nullptr;
  }
  mLeft -= headerSize + newSize - oldSize;
  if (old == nullptr) {
    header->mPrevious = &mBlocks;
    header->mNext = mBlocks.mNext;
  }
  header->mPrevious->mNext = header;
  header->mNext->mPrevious = header;
  return header + 1;
}

}  // namespace qelscripting
