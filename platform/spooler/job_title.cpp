#include "platform/spooler/detail/job_title.h"

#include <cstdint>

namespace platform {
namespace {

constexpr std::size_t kLongest = 255;

/// Bytes of the character that begins there; 0 for none that UTF-8 has (RFC 3629).
std::size_t CharacterAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) -> unsigned {
    return at + i < text.size() ? static_cast<std::uint8_t>(text[at + i]) : 0U;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return 0;
  for (std::size_t i = 1; i < size; ++i)
    if ((byte(i) & 0xc0) != 0x80) return 0;
  const unsigned second = byte(1);
  const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
  const bool outside = (first == 0xed && second > 0x9f) || (first == 0xf4 && second > 0x8f);
  return overlong || outside ? 0 : size;
}

}  // namespace

std::string JobTitle(std::string_view name) {
  std::string title;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t size = CharacterAt(name, at);
    std::string_view character = size == 0 ? "?" : name.substr(at, size);
    const auto first = static_cast<std::uint8_t>(character.front());
    if (first < 0x20 || first == 0x7f) character = " ";
    if (title.size() + character.size() > kLongest) break;
    title += character;
    at += size == 0 ? 1 : size;
  }
  return title;
}

}  // namespace platform
