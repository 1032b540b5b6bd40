#pragma once

#include <algorithm>
#include <list>

#include "platform/framework/position.h"

namespace platform {

/// The place of an entry: its address, which a list never changes.
template <typename T>
POSITION PlaceOf(typename std::list<T*>::const_iterator entry, const std::list<T*>& list) {
  return entry == list.end() ? nullptr : reinterpret_cast<POSITION>(const_cast<T**>(&*entry));
}

template <typename T>
POSITION FirstPlace(const std::list<T*>& list) {
  return PlaceOf<T>(list.begin(), list);
}

/// The entry there, and the place of the next. Null, and no further place, if it has left the list.
template <typename T>
T* NextEntry(const std::list<T*>& list, POSITION& place) {
  const auto entry = std::find_if(list.begin(), list.end(), [place](T* const& candidate) {
    return reinterpret_cast<POSITION>(const_cast<T**>(&candidate)) == place;
  });
  if (entry == list.end()) {
    place = nullptr;
    return nullptr;
  }
  place = PlaceOf<T>(std::next(entry), list);
  return *entry;
}

}  // namespace platform
