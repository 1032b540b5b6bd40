#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry/registry.h"

namespace platform::registry {

/// Settings are a few hundred bytes; what goes beyond this is something else.
constexpr std::size_t kMostBytes = 1 << 20;

/// Tells the contents of a file from others it may get; empty if only a look into it can.
std::string StateOf(const std::string& file);

/// The whole file. Nothing is in one that isn't there, nor in one of more than kMostBytes, which is moved
/// aside. No value: it can't be read.
std::optional<std::string> ReadWhole(const std::string& file);
/// Replaces the file once all is on the disk.
LSTATUS WriteWhole(const std::string& file, std::string_view text);

/// What is damaged may hold what its owner can still mend, so it is kept under another name too.
bool CopyAside(const std::string& file);

}  // namespace platform::registry
