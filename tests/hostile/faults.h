#pragma once

/// Lets calls into the C library fail, in whatever made them: our code, the codec libraries, Qt. A program
/// that links this library first, or has it preloaded, goes through it.
namespace faults {

enum class Calls {
  kNone,
  kAllocations,
  kReads,
  kChanges,  ///< of files: written bytes, and whatever makes, names or ends a file
};
enum class Deed {
  kCount,      ///< nothing, but count
  kFail,       ///< with the error; an allocation gives null
  kInterrupt,  ///< EINTR, once
  kShort,      ///< every call moves one byte of those that it should, from the numbered one on
  kKill,       ///< the process ends as by kill -9 before the call, or in the midst of a write
};

/// Counts the calls of that kind by this thread, and does the deed at the one with the number, from 1.
void Arm(Calls calls, Deed deed, long number, int error = 0);
/// How many there were.
long Disarm();
/// Calls are neither counted nor spoiled while it is paused; what it was before.
bool Pause(bool paused);

/// Not paused while it lives.
class Watched {
 public:
  Watched() : m_before(Pause(false)) {}
  ~Watched() { Pause(m_before); }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

 private:
  bool m_before;
};

}  // namespace faults
