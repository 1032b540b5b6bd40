#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace platform {

/// Owns records and gives out handles for them. A handle is a slot number with the slot's generation, so a
/// handle of a record that is gone is told from one of a record that took its place. Not thread-safe.
template <typename Record, typename Handle>
class HandleTable {
 public:
  Handle Add(std::unique_ptr<Record> record) {
    std::size_t slot = 0;
    if (m_free.empty()) {
      slot = m_slots.size();
      m_slots.emplace_back();
    } else {
      slot = m_free.back();
      m_free.pop_back();
    }
    m_slots[slot].record = std::move(record);
    return Encode(slot);
  }

  /// Null for a handle that is null, dead or was never given out.
  Record* Get(Handle handle) const {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t slot = (value & kSlotMask) - 1;
    if (value == 0 || slot >= m_slots.size() || m_slots[slot].generation != value >> kSlotBits)
      return nullptr;
    return m_slots[slot].record.get();
  }

  /// Takes the record out; the handle is dead from here on. Null if it was dead already.
  std::unique_ptr<Record> Remove(Handle handle) {
    if (Get(handle) == nullptr) return nullptr;
    const std::size_t slot = (reinterpret_cast<std::uintptr_t>(handle) & kSlotMask) - 1;
    m_slots[slot].generation = (m_slots[slot].generation + 1) & 0x7ff;
    m_free.insert(m_free.begin(), slot);
    return std::move(m_slots[slot].record);
  }

  template <typename Visit>
  void ForEach(Visit visit) const {
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot)
      if (m_slots[slot].record) visit(Encode(slot), *m_slots[slot].record);
  }

 private:
  static constexpr unsigned kSlotBits = 20;
  static constexpr std::uintptr_t kSlotMask = (1U << kSlotBits) - 1;
  struct Slot {
    std::unique_ptr<Record> record;
    std::uintptr_t generation = 0;
  };

  Handle Encode(std::size_t slot) const {
    return reinterpret_cast<Handle>(m_slots[slot].generation << kSlotBits | (slot + 1));
  }

  std::vector<Slot> m_slots;
  std::vector<std::size_t> m_free;
};

}  // namespace platform
