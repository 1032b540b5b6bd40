#pragma once

#include <functional>

// Work that keeps its caller waiting without a word, as reading by the helper or the decoding of a large page
// does, asks here again and again whether it is to go on.
namespace imaging {

/// True once the work is to end; may throw, which ends it as well.
using WantsToEnd = std::function<bool()>;

/// While it lives this thread's work asks the function, beside those of the scopes around it.
class WaitScope {
 public:
  explicit WaitScope(WantsToEnd wantsToEnd);
  ~WaitScope();
  WaitScope(const WaitScope&) = delete;
  WaitScope& operator=(const WaitScope&) = delete;

 private:
  friend bool IsEndWanted();
  WantsToEnd m_wantsToEnd;
  const WaitScope* m_outer;
};

/// Whether this thread has such a scope.
bool IsAnybodyAsked();
/// Asks all scopes of this thread; what those who are asked do themselves asks nobody.
bool IsEndWanted();
/// The same for loops with short steps: asks when a scope is new and then every 50 ms.
bool IsEndWantedByNow();
/// Throws kErrorUserAbort if that is so.
void FailIfEndWanted();

}  // namespace imaging
