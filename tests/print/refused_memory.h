#pragma once

#include <cstddef>

/// Blocks of at least this size can't be had from operator new.
extern std::size_t g_refusedFrom;
