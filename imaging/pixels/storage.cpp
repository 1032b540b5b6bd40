#include "imaging/pixels/storage.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <unordered_set>
#include <utility>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/missing_rows.h"
#include "imaging/pixels/view_cache.h"

namespace imaging {
namespace {

constexpr int kRowAlignment = 64;
constexpr std::size_t kHugePage = 2U << 20;
// Blocks below this size come from and go back to the system each time.
constexpr std::size_t kRecycledFrom = 256U << 10;
// Sizes of such blocks below a huge page, in steps so that pages of nearly one size share them. Rounded up to
// a huge page, a bilevel page would take twice its memory.
constexpr std::size_t kStep = 64U << 10;
constexpr std::size_t kMaxRecycled = 4;
constexpr std::size_t kMaxRecycledBytes = 128U << 20;

/// Page-sized blocks for reuse: mapping and touching fresh memory takes longer than filling it.
class BlockPool {
 public:
  /// Rounds size up to what was taken; null if there isn't enough memory.
  std::uint8_t* Take(std::size_t& size) {
    const std::lock_guard lock(m_mutex);
    std::size_t unit = 4096;
    if (size >= kRecycledFrom) unit = size >= kHugePage ? kHugePage : kStep;
    size = (size + unit - 1) / unit * unit;
    for (std::size_t i = 0; i < m_count; ++i) {
      if (m_free[i].size < size || m_free[i].size > size * 2) continue;
      const Block block = Remove(i);
      size = block.size;
      return block.data;
    }
    return Map(size, unit == kHugePage ? kHugePage : 4096);
  }

  /// Called by destructors, so nothing is allocated.
  void Give(std::uint8_t* data, std::size_t size) {
    const std::lock_guard lock(m_mutex);
    if (size < kRecycledFrom || size > kMaxRecycledBytes) {
      munmap(data, size);
      return;
    }
    m_free[m_count++] = {data, size};
    m_held += size;
    while (m_count > kMaxRecycled || m_held > kMaxRecycledBytes) {
      const Block oldest = Remove(0);
      munmap(oldest.data, oldest.size);
    }
  }

 private:
  struct Block {
    std::uint8_t* data;
    std::size_t size;
  };

  Block Remove(std::size_t index) {
    const Block block = m_free[index];
    std::copy(m_free.begin() + index + 1, m_free.begin() + m_count, m_free.begin() + index);
    --m_count;
    m_held -= block.size;
    return block;
  }

  static std::uint8_t* Map(std::size_t size, std::size_t alignment) {
    const std::size_t slack = alignment > 4096 ? alignment : 0;
    void* map = mmap(nullptr, size + slack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) return nullptr;
    auto* start = static_cast<std::uint8_t*>(map);
    if (slack == 0) return start;
    const auto address = reinterpret_cast<std::uintptr_t>(start);
    const std::size_t head = (alignment - address % alignment) % alignment;
    if (head != 0) munmap(start, head);
    if (slack - head != 0) munmap(start + head + size, slack - head);
    madvise(start + head, size, MADV_HUGEPAGE);
    return start + head;
  }

  std::mutex m_mutex;
  std::array<Block, kMaxRecycled + 1> m_free{};  ///< the oldest first
  std::size_t m_count = 0;
  std::size_t m_held = 0;
};

// Pages are also made and freed by the thread that decodes while another one paints.
std::mutex& LiveMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

// All live until the process ends: a static object of the host may free its bitmap last of all.
BlockPool& Pool() {
  static auto& pool = *new BlockPool;
  return pool;
}

std::unordered_set<const PixelStorage*>& Live() {
  static auto& live = *new std::unordered_set<const PixelStorage*>;
  return live;
}

/// Bytes from row to row.
std::int64_t PitchOf(int width, int bits) {
  const std::int64_t bytes = (std::int64_t{width} * bits + 7) / 8;
  return (bytes + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
}

void CheckSize(int width, int height, int bits) {
  if (width < 1 || height < 1)
    Fail(kErrorInvalidParameter, "An image of %d by %d pixels can't be held", width, height);
  if (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32)
    Fail(kErrorInvalidParameter, "An image of %d bits per pixel can't be held", bits);
  if (width > Limit().side || height > Limit().side ||
      static_cast<std::int64_t>(width) * height > Limit().pagePixels ||
      PitchOf(width, bits) * height > Limit().bitmapBytes)
    Fail(kErrorLimit, "An image of %d by %d pixels is too large", width, height);
}

struct Room {
  std::uint8_t* pixels;
  std::size_t capacity;
};

Room TakeRoom(int width, int height, int bits) {
  CheckSize(width, height, bits);
  // Room for whole vectors at the end.
  std::size_t size = static_cast<std::size_t>(PitchOf(width, bits) * height + kRowAlignment);
  std::uint8_t* const pixels = Pool().Take(size);
  if (pixels == nullptr)
    Fail(kErrorNoMemory, "Not enough memory for an image of %d by %d pixels", width, height);
  return {pixels, size};
}

}  // namespace

std::unique_ptr<PixelStorage> PixelStorage::Create(int width, int height, int bits) {
  std::unique_ptr<PixelStorage> storage(new PixelStorage);
  const Room room = TakeRoom(width, height, bits);
  storage->m_pixels = room.pixels;
  storage->m_capacity = room.capacity;
  storage->m_width = width;
  storage->m_height = height;
  storage->m_bits = storage->m_heldBits = bits;
  storage->m_pitch = static_cast<std::ptrdiff_t>(PitchOf(width, bits));
  const int colors = bits <= 8 ? 1 << bits : 256;
  for (int i = 0; i < 256; ++i) {
    const auto level = static_cast<BYTE>(i * 255 / (colors - 1));
    storage->m_palette[static_cast<std::size_t>(i)] = {level, level, level, 0};
  }
  return storage;
}

std::unique_ptr<PixelStorage> PixelStorage::CreateAlike(int width, int height) const {
  auto storage = Create(width, height, m_heldBits);
  if (m_heldBits != m_bits) storage->ShowAsBytes(m_twoBytes[0], m_twoBytes[1]);
  storage->m_palette = m_palette;
  return storage;
}

void PixelStorage::ShowAsBytes(std::uint8_t zero, std::uint8_t one) {
  Change();
  m_bits = 8;
  m_twoBytes = {zero, one};
}

void PixelStorage::CopyRow(int y, std::uint8_t* out) const {
  if (m_heldBits == m_bits)
    std::memcpy(out, HeldRow(y), RowBytes());
  else
    FastKernels().expandBits(out, HeldRow(y), 0, static_cast<std::size_t>(m_width), m_twoBytes[0],
                             m_twoBytes[1]);
}

void PixelStorage::Expand() const {
  const Room room = TakeRoom(m_width, m_height, m_bits);
  const auto pitch = static_cast<std::ptrdiff_t>(PitchOf(m_width, m_bits));
  for (int y = 0; y < m_height; ++y) CopyRow(y, room.pixels + y * pitch);
  Pool().Give(m_pixels, m_capacity);
  m_pixels = room.pixels;
  m_capacity = room.capacity;
  m_pitch = pitch;
  m_heldBits = m_bits;
}

PixelStorage::PixelStorage() {
  static std::uint64_t serial = 0;
  const std::lock_guard lock(LiveMutex());
  m_serial = ++serial;
  Live().insert(this);
}

bool PixelStorage::IsLive(const PixelStorage* storage) {
  const std::lock_guard lock(LiveMutex());
  return Live().contains(storage);
}

PixelStorage::~PixelStorage() {
  {
    const std::lock_guard lock(LiveMutex());
    Live().erase(this);
  }
  ViewCache::Drop(m_serial);
  if (m_missing != nullptr) ForgetMissing();
  if (m_reduced != nullptr) LeaveToReduced();
  GiveBlock(m_pixels, m_capacity);
}

void PixelStorage::GiveBlock(std::uint8_t* pixels, std::size_t capacity) noexcept {
  if (pixels != nullptr) Pool().Give(pixels, capacity);
}

void PixelStorage::Exchange(PixelStorage& other) noexcept {
  std::swap(m_width, other.m_width);
  std::swap(m_height, other.m_height);
  std::swap(m_bits, other.m_bits);
  std::swap(m_heldBits, other.m_heldBits);
  std::swap(m_twoBytes, other.m_twoBytes);
  std::swap(m_pitch, other.m_pitch);
  std::swap(m_pixels, other.m_pixels);
  std::swap(m_capacity, other.m_capacity);
  std::swap(m_palette, other.m_palette);
  ExchangeTies(other);
  for (PixelStorage* storage : {this, &other}) {
    ++storage->m_revision;
    storage->m_region.reset();
    ViewCache::Drop(storage->m_serial);
  }
}

bool PixelStorage::IsLinearGray() const {
  if (m_bits != 8) return false;
  for (unsigned i = 0; i < 256; ++i)
    if (m_palette[i].rgbBlue != i || m_palette[i].rgbGreen != i || m_palette[i].rgbRed != i) return false;
  return true;
}

void PixelStorage::SetLinearGray() {
  for (unsigned i = 0; i < 256; ++i) {
    const auto level = static_cast<BYTE>(i);
    Palette()[i] = {level, level, level, 0};
  }
}

}  // namespace imaging
