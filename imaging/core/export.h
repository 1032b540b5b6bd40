#pragma once

// Marks what LTWrap12 offers to the libraries above it; everything else stays hidden.
#define LTWRAP_API __attribute__((visibility("default")))
