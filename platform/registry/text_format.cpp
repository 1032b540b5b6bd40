#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/registry/detail/store.h"

// The text of the store:
//   Tessarel12 registry 1
//   [software\Some Program\Settings]
//   "Scale"=dword:00000064
//   "Name"="text"
//   "Blob"=hex(3):01,a0
// %XX stands for a byte that would be taken for something else.

namespace platform::registry {
namespace {

constexpr std::string_view kHeader = "Tessarel12 registry 1";
constexpr std::string_view kDigits = "0123456789abcdef";

std::string Escape(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = byte >= 0x20 && byte != 0x7f && c != '%' && c != '"' && c != '[' && c != ']';
    if (plain) {
      result += c;
    } else {
      result += '%';
      result += kDigits[byte >> 4];
      result += kDigits[byte & 15];
    }
  }
  return result;
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      result += text[i];
      continue;
    }
    const auto byte = ParseNumber<unsigned char>(text.substr(i + 1, 2), 16);
    if (!byte || i + 2 >= text.size()) return std::nullopt;
    result += static_cast<char>(*byte);
    i += 2;
  }
  return result;
}

std::string Hex(DWORD number) {
  std::string result(8, '0');
  for (std::size_t i = 0; i < result.size(); ++i) result[7 - i] = kDigits[number >> (4 * i) & 15];
  return result;
}

DWORD LittleEndian(const std::string& data) {
  DWORD number = 0;
  for (std::size_t i = 0; i < data.size(); ++i)
    number |= static_cast<DWORD>(static_cast<unsigned char>(data[i])) << (8 * i);
  return number;
}

std::string WriteData(const Value& value) {
  if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD))
    return "dword:" + Hex(LittleEndian(value.data));
  if (value.type == REG_SZ && value.data.find('\0') + 1 == value.data.size() && !value.data.empty())
    return '"' + Escape(std::string_view(value.data).substr(0, value.data.size() - 1)) + '"';
  std::string text = "hex(" + std::to_string(value.type) + "):";
  for (std::size_t i = 0; i < value.data.size(); ++i) {
    const auto byte = static_cast<unsigned char>(value.data[i]);
    if (i > 0) text += ',';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

bool ReadBytes(std::string_view text, std::string& data) {
  while (!text.empty()) {
    const auto byte = ParseNumber<unsigned char>(text.substr(0, 2), 16);
    if (!byte || text.size() < 2 || (text.size() > 2 && text[2] != ',') || text.size() == 3) return false;
    data += static_cast<char>(*byte);
    text.remove_prefix(std::min<std::size_t>(text.size(), 3));
  }
  return true;
}

bool ReadData(std::string_view text, Value& value) {
  if (text.starts_with("dword:")) {
    const auto number = ParseNumber<DWORD>(text.substr(6), 16);
    if (!number) return false;
    value.type = REG_DWORD;
    for (int shift = 0; shift < 32; shift += 8) value.data += static_cast<char>(*number >> shift & 0xff);
    return true;
  }
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    const auto content = Unescape(text.substr(1, text.size() - 2));
    if (!content) return false;
    value.type = REG_SZ;
    value.data = *content + '\0';
    return true;
  }
  const std::size_t close = text.find("):");
  if (!text.starts_with("hex(") || close == std::string_view::npos) return false;
  const auto type = ParseNumber<DWORD>(text.substr(4, close - 4), 10);
  if (!type) return false;
  value.type = *type;
  return ReadBytes(text.substr(close + 2), value.data);
}

// "name"=data. Names hold no quotation mark once escaped, so the first one behind the opening closes.
bool ReadValue(std::string_view line, Key& key) {
  const std::size_t close = line.find('"', 1);
  if (line.front() != '"' || close == std::string_view::npos || line.substr(close + 1, 1) != "=")
    return false;
  const auto name = Unescape(line.substr(1, close - 1));
  Value value;
  if (!name || !ReadData(line.substr(close + 2), value)) return false;
  value.name = *name;
  key.values[Fold(*name)] = std::move(value);
  return true;
}

Key* ReadKey(std::string_view line, Keys& keys) {
  const auto path = Unescape(line.substr(1, line.size() - 2));
  if (line.back() != ']' || !path) return nullptr;
  // A file written by hand may leave out the keys above.
  MakeKey(keys, *path);
  return &keys[Fold(*path)];
}

}  // namespace

Parsed Parse(std::string_view text) {
  Parsed parsed;
  if (text.empty()) return parsed;  // made, but never written: as good as new
  bool first = true;
  Key* key = nullptr;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (std::exchange(first, false)) {
      if (line == kHeader) continue;
      parsed.damaged = true;  // something else altogether, so nothing in it can be trusted
      return parsed;
    }
    if (line.empty() || line.front() == '#') continue;
    const bool understood = line.front() == '[' ? (key = ReadKey(line, parsed.keys)) != nullptr
                                                : key != nullptr && ReadValue(line, *key);
    parsed.damaged = parsed.damaged || !understood;
  }
  return parsed;
}

std::string Serialise(const Keys& keys) {
  std::string text(kHeader);
  text += '\n';
  for (const auto& [folded, key] : keys) {
    text += "\n[" + Escape(key.path) + "]\n";
    for (const auto& [name, value] : key.values)
      text += '"' + Escape(value.name) + "\"=" + WriteData(value) + '\n';
  }
  return text;
}

}  // namespace platform::registry
