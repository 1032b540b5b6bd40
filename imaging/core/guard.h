#pragma once

#include <exception>
#include <new>

#include "imaging/core/exception.h"

namespace imaging {

/// Runs an operation of the interface, which fails by CLeadtoolsException* and in no other way: what the
/// standard library throws (no memory for a scratch buffer, say) is turned into one.
template <typename Work>
auto Guarded(Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    Fail(kErrorNoMemory, "Not enough memory for the image");
  } catch (const std::exception& exception) {
    Fail(kErrorInternal, "Internal error: %s", exception.what());
  }
}

}  // namespace imaging
