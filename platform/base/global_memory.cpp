#include "platform/base/global_memory.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/base/detail/handle_table.h"

namespace {

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<void, FreeBlock>;

struct GlobalBlock {
  Block data;
  std::size_t size = 0;
  int locks = 0;
};

// Never destroyed: an application object with static storage frees its blocks while the process ends.
platform::HandleTable<GlobalBlock, HGLOBAL>& Blocks() {
  static auto& table = *new platform::HandleTable<GlobalBlock, HGLOBAL>;
  return table;
}

}  // namespace

HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes) {
  const std::size_t room = std::max<std::size_t>(bytes, 1);
  Block data((flags & GMEM_ZEROINIT) != 0 ? std::calloc(room, 1) : std::malloc(room));
  if (!data) return nullptr;
  auto block = std::make_unique<GlobalBlock>();
  block->data = std::move(data);
  block->size = bytes;
  return Blocks().Add(std::move(block));
}

HGLOBAL GlobalFree(HGLOBAL memory) {
  return Blocks().Remove(memory) ? nullptr : memory;
}

void* GlobalLock(HGLOBAL memory) {
  GlobalBlock* block = Blocks().Get(memory);
  if (block == nullptr) return nullptr;
  ++block->locks;
  return block->data.get();
}

BOOL GlobalUnlock(HGLOBAL memory) {
  GlobalBlock* block = Blocks().Get(memory);
  if (block == nullptr || block->locks == 0) return FALSE;
  return --block->locks > 0;
}

std::size_t GlobalSize(HGLOBAL memory) {
  const GlobalBlock* block = Blocks().Get(memory);
  return block == nullptr ? 0 : block->size;
}

HGLOBAL GlobalReAlloc(HGLOBAL memory, std::size_t bytes, UINT flags) {
  GlobalBlock* block = Blocks().Get(memory);
  if (block == nullptr) return nullptr;
  void* moved = std::realloc(block->data.get(), std::max<std::size_t>(bytes, 1));
  if (moved == nullptr) return nullptr;
  (void)block->data.release();  // NOLINT: realloc has taken it over
  block->data.reset(moved);
  if ((flags & GMEM_ZEROINIT) != 0 && bytes > block->size)
    std::fill_n(static_cast<unsigned char*>(moved) + block->size, bytes - block->size, 0);
  block->size = bytes;
  return memory;
}
