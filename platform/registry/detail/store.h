#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/base/types.h"
#include "platform/registry/registry.h"

namespace platform::registry {

struct Value {
  std::string name;  ///< as first written
  DWORD type = REG_NONE;
  std::string data;  ///< bytes
  bool operator==(const Value&) const = default;
};

struct Key {
  std::string path;                     ///< as first written
  std::map<std::string, Value> values;  ///< by folded name
};

/// All keys by folded path. The root has none and always exists.
using Keys = std::map<std::string, Key>;

/// ASCII letters in lower case: what names are compared by.
std::string Fold(std::string_view name);

/// Makes the key and all above it. True if something was missing.
bool MakeKey(Keys& keys, const std::string& path);

struct Parsed {
  Keys keys;
  bool damaged = false;  ///< lines that couldn't be understood were passed over
};
Parsed Parse(std::string_view text);
std::string Serialise(const Keys& keys);

/// What is stored now. nullptr and the reason in error if it can't be read; the pointer is good until the
/// next call.
const Keys* Load(LSTATUS& error);
/// Whether Change may be expected to work.
bool IsWritable();
/// Reads, lets change alter, and writes, all under a lock that processes share. change returns an error,
/// which ends the matter without writing, and says in its argument whether there is something to write.
LSTATUS Change(const std::function<LSTATUS(Keys& keys, bool& altered)>& change);

}  // namespace platform::registry
