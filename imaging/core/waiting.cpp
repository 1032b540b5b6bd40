#include "imaging/core/waiting.h"

#include <utility>

namespace imaging {
namespace {

thread_local const WaitScope* t_innermost = nullptr;
thread_local bool t_asking = false;

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
}

WaitScope::~WaitScope() {
  t_innermost = m_outer;
}

bool IsEndWanted() {
  if (t_asking) return false;
  const Asking asking;
  for (const WaitScope* scope = t_innermost; scope != nullptr; scope = scope->m_outer)
    if (scope->m_wantsToEnd()) return true;
  return false;
}

}  // namespace imaging
