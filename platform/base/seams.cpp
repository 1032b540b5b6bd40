#include "platform/base/seams.h"

// Never destroyed: boxes may still be shown while the process ends.
platform::Seams& platform::TheSeams() {
  static auto& seams = *new Seams;
  return seams;
}
