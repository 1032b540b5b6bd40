#include "imaging/core/coding.h"

namespace imaging {

// Never ended: a static object of the host may load a page last of all.
std::recursive_mutex& CodingLock::Mutex() {
  static auto& mutex = *new std::recursive_mutex;
  return mutex;
}

int& CodingLock::Depth() {
  static thread_local int depth = 0;
  return depth;
}

}  // namespace imaging
