#pragma once

#include <functional>
#include <memory>

#include "platform/base/export.h"

// Long work beside the thread that asks for it, so that this one can serve its windows meanwhile.

namespace platform {

/// While it lives, RunAside on this thread does its work on another one, and calls serve here before it and
/// again and again until it is done. Scopes are nested; the innermost one serves. Without a scope, and within
/// serve, work is done where it is asked for.
class PLATFORM_API AsideScope {
 public:
  /// False from serve asks the work to stop. What it throws does too, and comes out of RunAside then.
  explicit AsideScope(std::function<bool()> serve);
  ~AsideScope();
  AsideScope(const AsideScope&) = delete;
  AsideScope& operator=(const AsideScope&) = delete;

 private:
  friend PLATFORM_API bool RunAside(const std::function<void()>& work);
  friend PLATFORM_API bool HasAside();
  friend PLATFORM_API void AwaitAside();
  class Worker;

  bool Serve();

  std::function<bool()> m_serve;
  std::unique_ptr<Worker> m_worker;  ///< made by the first work
  bool m_serving = false;
  AsideScope* m_outer;
};

/// Whether RunAside would use another thread now.
PLATFORM_API bool HasAside();
/// Does the work and throws what it throws. False: it was asked to stop, and hasn't begun, or has thrown,
/// whatever that was. Work that comes to its end is done, even if it was asked to stop.
PLATFORM_API bool RunAside(const std::function<void()>& work);
/// For whoever takes away, within serve, what the work uses: asks it to stop and waits until it has ended.
PLATFORM_API void AwaitAside();
/// For the work, however deep in it: whether it has been asked to stop. False outside of RunAside.
PLATFORM_API bool IsWorkStopped();

}  // namespace platform
