#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/registry/registry.h"

namespace platform::registry {

/// What a name holds.
struct Value {
  DWORD type = REG_NONE;
  std::string data;
};
/// As the file has it: a plain number for REG_DWORD, "type:bytes" for all else.
std::string Encode(const Value& value);
std::optional<Value> Decode(std::string_view text);

}  // namespace platform::registry
