#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

class CObject;

/// What is known of a class at run time: its name, its base, and how to make an object of it.
struct PLATFORM_API CRuntimeClass {
  LPCSTR m_lpszClassName;
  int m_nObjectSize;
  UINT m_wSchema;                     ///< 0xFFFF: not serialised
  CObject* (*m_pfnCreateObject)();    ///< null: no dynamic creation
  const CRuntimeClass* m_pBaseClass;  ///< null for CObject

  /// A new object, owned by the caller; null if the class can't be created dynamically.
  CObject* CreateObject() const { return m_pfnCreateObject == nullptr ? nullptr : m_pfnCreateObject(); }
  bool IsDerivedFrom(const CRuntimeClass* base) const;
};

/// Root of the framework's classes.
class PLATFORM_API CObject {
 public:
  static const CRuntimeClass classCObject;

  virtual ~CObject() = default;
  virtual CRuntimeClass* GetRuntimeClass() const;
  /// True if this object is of the given class or of one derived from it.
  BOOL IsKindOf(const CRuntimeClass* runtimeClass) const {
    return GetRuntimeClass()->IsDerivedFrom(runtimeClass);
  }

 protected:
  CObject() = default;
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
};

#define RUNTIME_CLASS(class_name) (const_cast<CRuntimeClass*>(&class_name::class##class_name))

#define DECLARE_DYNAMIC(class_name)             \
 public:                                        \
  static const CRuntimeClass class##class_name; \
  CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
  DECLARE_DYNAMIC(class_name)         \
  static CObject* CreateObject();

#define PLATFORM_RUNTIME_CLASS(class_name, base_name, create)                                           \
  const CRuntimeClass class_name::class##class_name = {#class_name, sizeof(class_name), 0xFFFF, create, \
                                                       RUNTIME_CLASS(base_name)};                       \
  CRuntimeClass* class_name::GetRuntimeClass() const {                                                  \
    return RUNTIME_CLASS(class_name);                                                                   \
  }

#define IMPLEMENT_DYNAMIC(class_name, base_name) PLATFORM_RUNTIME_CLASS(class_name, base_name, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_name) \
  CObject* class_name::CreateObject() {            \
    return new class_name;                         \
  }                                                \
  PLATFORM_RUNTIME_CLASS(class_name, base_name, &class_name::CreateObject)

/// The object as the derived class, or null.
template <typename T>
T* DynamicDownCast(const CRuntimeClass* runtimeClass, CObject* object) {
  return object != nullptr && object->IsKindOf(runtimeClass) ? static_cast<T*>(object) : nullptr;
}
#define DYNAMIC_DOWNCAST(class_name, object) (DynamicDownCast<class_name>(RUNTIME_CLASS(class_name), object))
