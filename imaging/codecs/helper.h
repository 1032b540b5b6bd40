#pragma once

#include <span>

#include "imaging/codecs/codec.h"

namespace imaging {

/// A family that a module of the helper reads.
struct HelperFamily {
  const char* name;
  const char* module;
  bool (*recognise)(const Candidate& candidate);
  Evidence evidence;
};

std::span<const HelperFamily> HelperFamilies();

}  // namespace imaging
