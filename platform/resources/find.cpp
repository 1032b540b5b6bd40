#include <algorithm>
#include <map>
#include <string_view>

#include "platform/resources/detail/find.h"
#include "platform/resources/extension.h"

namespace platform {
namespace {

std::map<HMODULE, ResourceTables>& Modules() {
  static auto* modules =
      new std::map<HMODULE, ResourceTables>;  // libraries come and go beyond static teardown
  return *modules;
}

/// A number made by MAKEINTRESOURCE, 0 for a name.
UINT NumberOf(LPCSTR name) {
  const auto value = reinterpret_cast<std::uintptr_t>(name);
  return value <= 0xffff ? static_cast<UINT>(value) : 0;
}

template <typename Resource>
bool Fits(const Resource& resource, LPCSTR name) {
  const UINT number = NumberOf(name);
  return number != 0 && resource.id == number;
}

bool Fits(const DialogResource& resource, LPCSTR name) {
  const UINT number = NumberOf(name);
  if (number != 0 || name == nullptr) return number != 0 && resource.id == number;
  return resource.name != nullptr && std::string_view(resource.name) == name;
}

template <typename Resource>
struct Found {
  HMODULE module = nullptr;
  const Resource* resource = nullptr;
};

template <typename Resource>
Found<Resource> Find(HMODULE module, LPCSTR name, std::span<const Resource> ResourceTables::*table) {
  for (const auto& [owner, tables] : Modules()) {
    if ((module != nullptr && owner != module) || !AfxIsLibraryLinked(owner)) continue;
    const auto& resources = tables.*table;
    const auto found =
        std::find_if(resources.begin(), resources.end(), [name](const auto& r) { return Fits(r, name); });
    if (found != resources.end()) return {owner, &*found};
  }
  return {};
}

}  // namespace

void RegisterResources(HMODULE module, const ResourceTables& tables) {
  Modules()[module] = tables;
}

const StringResource* FindStringResource(HMODULE module, UINT id) {
  if (const StringResource* translated = FindTranslation(id)) return translated;
  return Find(module, MAKEINTRESOURCE(id), &ResourceTables::strings).resource;
}

const MenuResource* FindMenuResource(HMODULE module, LPCSTR name) {
  return Find(module, name, &ResourceTables::menus).resource;
}

const DialogResource* FindDialogResource(HMODULE module, LPCSTR name) {
  return Find(module, name, &ResourceTables::dialogs).resource;
}

const CursorResource* FindCursorResource(HMODULE module, LPCSTR name) {
  return Find(module, name, &ResourceTables::cursors).resource;
}

const IconResource* FindIconResource(HMODULE module, LPCSTR name) {
  return Find(module, name, &ResourceTables::icons).resource;
}

const BitmapResource* FindBitmapResource(HMODULE module, LPCSTR name) {
  return Find(module, name, &ResourceTables::bitmaps).resource;
}

}  // namespace platform

HINSTANCE AfxFindResourceHandle(LPCSTR name, UINT type) {
  using platform::ResourceTables;
  switch (type) {
    case RT_BITMAP:
      return platform::Find(nullptr, name, &ResourceTables::bitmaps).module;
    case RT_MENU:
      return platform::Find(nullptr, name, &ResourceTables::menus).module;
    case RT_DIALOG:
      return platform::Find(nullptr, name, &ResourceTables::dialogs).module;
    case RT_STRING:
      return platform::Find(nullptr, name, &ResourceTables::strings).module;
    case RT_GROUP_CURSOR:
      return platform::Find(nullptr, name, &ResourceTables::cursors).module;
    case RT_GROUP_ICON:
      return platform::Find(nullptr, name, &ResourceTables::icons).module;
    default:
      return nullptr;
  }
}
