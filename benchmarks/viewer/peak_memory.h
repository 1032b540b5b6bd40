#pragma once

#include <cstdio>

/// Of this process, in KiB.
inline long PeakMemory() {
  long peak = 0;
  if (std::FILE* status = std::fopen("/proc/self/status", "r")) {
    char line[256];
    while (std::fgets(line, sizeof line, status) != nullptr)
      if (std::sscanf(line, "VmHWM: %ld", &peak) == 1) break;
    std::fclose(status);
  }
  return peak;
}
