#include "platform/framework/object_hold.h"

#include <algorithm>
#include <vector>

#include "platform/framework/wnd.h"

namespace platform {
namespace {

struct Held {
  CCmdTarget* object;  // null once it is gone
  bool doomed;         // to be deleted with this hold, the outermost one of its object
};

std::vector<Held>& Holds() {
  static thread_local std::vector<Held> holds;
  return holds;
}

}  // namespace

ObjectHold::ObjectHold(CCmdTarget* object) : m_from(Holds().size()) {
  Holds().push_back({object, false});
}

ObjectHold::ObjectHold(HWND window) : m_from(Holds().size()) {
  for (; window != nullptr; window = ::GetParent(window))
    if (CWnd* object = CWnd::FromHandlePermanent(window)) Holds().push_back({object, false});
}

ObjectHold::~ObjectHold() {
  std::vector<Held>& holds = Holds();
  while (holds.size() > m_from) {
    const Held held = holds.back();
    holds.pop_back();
    if (held.doomed) delete held.object;  // NOLINT(cppcoreguidelines-owning-memory): it has ended itself
  }
}

bool ObjectHold::Exists() const {
  const std::vector<Held>& holds = Holds();
  // A window without an object holds nothing.
  const CCmdTarget* const object = m_from < holds.size() ? holds[m_from].object : nullptr;
  return object != nullptr && std::none_of(holds.begin(), holds.end(), [object](const Held& held) {
           return held.object == object && held.doomed;
         });
}

void DeleteWhenFree(CCmdTarget* object) {
  for (Held& held : Holds())
    if (held.object == object) {
      held.doomed = true;
      return;
    }
  delete object;  // NOLINT(cppcoreguidelines-owning-memory): objects that end themselves
}

void ForgetHeld(const CCmdTarget* object) {
  for (Held& held : Holds())
    if (held.object == object) held = {nullptr, false};
}

}  // namespace platform
