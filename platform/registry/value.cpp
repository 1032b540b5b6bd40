#include "platform/registry/detail/value.h"

#include <charconv>
#include <cstdint>

namespace platform::registry {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

template <typename Number>
bool Parse(std::string_view text, int base, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

// The lowest byte first, as programs have it in memory.
std::string BytesOf(DWORD number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift);
  return bytes;
}

DWORD NumberOf(std::string_view bytes) {
  DWORD number = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
  return number;
}

}  // namespace

std::string Encode(const Value& value) {
  if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD))
    return std::to_string(NumberOf(value.data));
  std::string text = std::to_string(value.type) + ':';
  for (const char letter : value.data) {
    const auto byte = static_cast<unsigned char>(letter);
    text.append({kDigits[byte >> 4], kDigits[byte & 15]});
  }
  return text;
}

std::optional<Value> Decode(std::string_view text) {
  const std::size_t colon = text.find(':');
  DWORD number = 0;
  if (!Parse(text.substr(0, colon), 10, number)) return std::nullopt;
  if (colon == text.npos) return Value{REG_DWORD, BytesOf(number)};
  Value value{number, {}};
  for (text.remove_prefix(colon + 1); !text.empty(); text.remove_prefix(2)) {
    std::uint8_t byte = 0;
    if (text.size() < 2 || !Parse(text.substr(0, 2), 16, byte)) return std::nullopt;
    value.data += static_cast<char>(byte);
  }
  return value;
}

}  // namespace platform::registry
