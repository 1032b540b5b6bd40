#include "platform/base/object.h"

const CRuntimeClass CObject::classCObject = {"CObject", sizeof(CObject), 0xFFFF, nullptr, nullptr};

CRuntimeClass* CObject::GetRuntimeClass() const {
  return RUNTIME_CLASS(CObject);
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
  for (const CRuntimeClass* c = this; c != nullptr; c = c->m_pBaseClass)
    if (c == base) return true;
  return false;
}
