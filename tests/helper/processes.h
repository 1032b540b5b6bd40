#pragma once

#include <unistd.h>

#include <fstream>
#include <string>

namespace codec_test {

/// The children of this process, living or dead.
inline std::string Children() {
  std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/children");
  std::string text;
  std::getline(file, text);
  return text;
}

}  // namespace codec_test
