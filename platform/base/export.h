#pragma once

// Marks what TessarelPlatform offers to the libraries above it; everything else stays hidden.
#define PLATFORM_API __attribute__((visibility("default")))
