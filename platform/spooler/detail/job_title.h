#pragma once

#include <string>
#include <string_view>

namespace platform {

/// A document's name as a print service takes it (RFC 8011, "name": at most 255 bytes of UTF-8 without
/// control characters): what is wrong becomes a blank or a question mark, and the rest is cut off between two
/// characters.
std::string JobTitle(std::string_view name);

}  // namespace platform
