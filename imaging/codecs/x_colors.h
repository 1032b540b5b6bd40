#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace imaging {

/// A colour as X programs write it, as 0xrrggbb: a number sign with one to four hexadecimal digits a channel,
/// or a name without spaces, in letters of either size.
std::optional<std::uint32_t> XColor(std::string_view text);

}  // namespace imaging
