#pragma once

#include <functional>
#include <string>

#include "tests/hostile/faults.h"

namespace hostile {

struct Outcome {
  int signal = 0;       ///< that ended the process
  bool failed = false;  ///< it told so
  std::string result;   ///< what it told: the result, or the error; the file whose code crashed
  long counted = 0;     ///< calls of the armed kind
};

/// Throws the error's text as a std::string.
using Work = std::function<std::string()>;

struct Fault {
  faults::Calls calls = faults::Calls::kNone;
  faults::Deed deed = faults::Deed::kCount;
  int error = 0;
};

/// Does the work in a process of its own with the fault at the numbered call. Allocations count while they
/// are faults::Watched.
Outcome RunWith(const Fault& fault, long number, const Work& work);

/// A line of the report.
void PrintFigure(const char* what, long count, const char* unit);

}  // namespace hostile
