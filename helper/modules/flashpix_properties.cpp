#include "helper/modules/flashpix_properties.h"

#include <algorithm>

#include "helper/modules/compound_file.h"

namespace helper {

std::span<const std::uint8_t> PropertySet::Block(std::uint32_t id) const {
  constexpr std::size_t kSectionAt = 44;
  constexpr std::uint32_t kTypeBlock = 0x41;
  const std::span<const std::uint8_t> bytes = m_bytes;
  if (bytes.size() < kSectionAt + 4) return {};
  const std::size_t start = LittleU32(&bytes[kSectionAt]);
  if (start >= bytes.size()) return {};
  const auto section = bytes.subspan(start);
  if (section.size() < 8) return {};
  // Its size, how many properties, and for each its number and place.
  const std::size_t count = std::min<std::size_t>(LittleU32(&section[4]), (section.size() - 8) / 8);
  for (std::size_t i = 0; i < count; ++i) {
    if (LittleU32(&section[8 + 8 * i]) != id) continue;
    const std::size_t at = LittleU32(&section[12 + 8 * i]);
    if (at >= section.size()) return {};
    const auto value = section.subspan(at);
    if (value.size() < 8 || LittleU32(value.data()) != kTypeBlock) return {};
    const auto block = value.subspan(8);
    return block.first(std::min<std::size_t>(LittleU32(&value[4]), block.size()));
  }
  return {};
}

}  // namespace helper
