#pragma once

#include <map>
#include <memory>
#include <utility>

namespace platform {

/// Which framework object stands for a handle: the one that holds it, or a temporary one.
template <typename Wrapper, typename Handle>
class WrapperMap {
 public:
  Wrapper* Find(Handle handle) const {
    const auto permanent = m_permanent.find(handle);
    if (permanent != m_permanent.end()) return permanent->second;
    const auto temporary = m_temporary.find(handle);
    return temporary == m_temporary.end() ? nullptr : temporary->second.get();
  }
  void AddPermanent(Handle handle, Wrapper* wrapper) { m_permanent[handle] = wrapper; }
  Wrapper* AddTemporary(Handle handle, std::unique_ptr<Wrapper> wrapper) {
    return (m_temporary[handle] = std::move(wrapper)).get();
  }
  /// Forgets a permanent wrapper; another one for the same handle stays.
  void Remove(Handle handle, const Wrapper* wrapper) {
    const auto found = m_permanent.find(handle);
    if (found != m_permanent.end() && found->second == wrapper) m_permanent.erase(found);
  }
  /// Ends all temporary wrappers, each after release has taken its handle away.
  template <typename Release>
  void DropTemporary(Release release) {
    const auto dropped = std::exchange(m_temporary, {});
    for (const auto& [handle, wrapper] : dropped) release(*wrapper);
  }

 private:
  std::map<Handle, Wrapper*> m_permanent;
  std::map<Handle, std::unique_ptr<Wrapper>> m_temporary;
};

}  // namespace platform
