#include "tests/print/refused_memory.h"

#include <cstdint>
#include <cstdlib>
#include <new>

// In a file of their own: inlined into their callers they would look mismatched to the compiler.

std::size_t g_refusedFrom = SIZE_MAX;

// What the imaging library asks for only to see whether a file can be opened at all, and gives back at once.
constexpr std::size_t kLookForRoom = std::size_t{1} << 18;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return size >= g_refusedFrom && size != kLookForRoom ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
  void* block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
