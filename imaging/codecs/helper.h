#pragma once

#include <vector>

#include "imaging/codecs/codec.h"

namespace imaging {

/// A family that a module of the helper reads.
struct HelperFamily {
  const char* name;
  const char* module;
  bool (*recognise)(const Candidate& candidate);
  Evidence evidence;
};

/// A kind of files that is read, or would be if its module were there.
struct ReadableKind {
  const char* name;
  const char* module;  ///< of the helper; null: read in process
  bool installed;
};
std::vector<ReadableKind> ListReadableKinds();

}  // namespace imaging
