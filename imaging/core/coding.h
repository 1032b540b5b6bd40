#pragma once

#include <mutex>

#include "imaging/core/exception.h"
#include "imaging/core/waiting.h"
#include "platform/base/aside.h"

namespace imaging {

/// Codecs and writers work for one thread at a time, and what they remember of files is for all: who serves
/// windows while a page is decoded aside may be asked for another page by them, which then waits its turn.
class CodingLock {
 public:
  CodingLock() : m_lock(Mutex()) { ++Depth(); }
  ~CodingLock() { --Depth(); }
  CodingLock(const CodingLock&) = delete;
  CodingLock& operator=(const CodingLock&) = delete;
  static bool IsHeldHere() { return Depth() > 0; }

 private:
  static std::recursive_mutex& Mutex();
  static int& Depth();

  std::lock_guard<std::recursive_mutex> m_lock;
};

/// Reads or writes, aside where the thread serves its windows meanwhile (platform/base/aside.h). Throws
/// kErrorUserAbort if it was stopped.
template <typename Work>
void RunCoding(Work work) {
  // Within a callback of a load this thread has the lock, for which another would wait; and who is asked
  // whether the work is to go on expects that on his thread.
  if (CodingLock::IsHeldHere() || IsAnybodyAsked()) {
    const CodingLock lock;
    return work();
  }
  const bool done = platform::RunAside([&] {
    const WaitScope stop([] { return platform::IsWorkStopped(); });
    const CodingLock lock;
    work();
  });
  if (!done) Fail(kErrorUserAbort, "Ended by the user");
}

}  // namespace imaging
