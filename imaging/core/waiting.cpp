#include "imaging/core/waiting.h"

#include <chrono>
#include <utility>

#include "imaging/core/exception.h"

namespace imaging {
namespace {

thread_local const WaitScope* t_innermost = nullptr;
thread_local bool t_asking = false;
thread_local std::chrono::steady_clock::time_point t_asked;

class Asking {
 public:
  Asking() { t_asking = true; }
  ~Asking() { t_asking = false; }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;
};

}  // namespace

WaitScope::WaitScope(WantsToEnd wantsToEnd) : m_wantsToEnd(std::move(wantsToEnd)), m_outer(t_innermost) {
  t_innermost = this;
  t_asked = {};
}

WaitScope::~WaitScope() {
  t_innermost = m_outer;
}

bool IsAnybodyAsked() {
  return t_innermost != nullptr;
}

bool IsEndWanted() {
  if (t_asking) return false;
  const Asking asking;
  for (const WaitScope* scope = t_innermost; scope != nullptr; scope = scope->m_outer)
    if (scope->m_wantsToEnd()) return true;
  return false;
}

bool IsEndWantedByNow() {
  constexpr std::chrono::milliseconds kPause(50);
  if (t_innermost == nullptr) return false;
  const auto now = std::chrono::steady_clock::now();
  if (now - t_asked < kPause) return false;
  t_asked = now;
  return IsEndWanted();
}

void FailIfEndWanted() {
  if (IsEndWantedByNow()) Fail(kErrorUserAbort, "Ended by the user");
}

}  // namespace imaging
