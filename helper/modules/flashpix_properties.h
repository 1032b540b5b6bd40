#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace helper {

/// A set of numbered properties, as compound files hold them.
class PropertySet {
 public:
  explicit PropertySet(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {}
  /// The bytes of a property that is a block of them; empty if there is no such one.
  std::span<const std::uint8_t> Block(std::uint32_t id) const;

 private:
  std::vector<std::uint8_t> m_bytes;
};

}  // namespace helper
