#pragma once

#include <span>

#include "platform/resources/resources.h"

/// The string table of this library.
std::span<const platform::StringResource> LibraryStrings();
