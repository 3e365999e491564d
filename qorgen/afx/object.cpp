#include "qorgen/afx/object.h"

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF,
                                             nullptr,   &CObject::_GetBaseClass,           nullptr};

CObject* CRuntimeClass::CreateObject() const {
  return m_pfnCreateObject != nullptr ? m_pfnCreateObject() : nullptr;
}

int CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const {
  if (pBaseClass == nullptr) return 0;
  for (const CRuntimeClass* record = this; record != nullptr; record = record->m_pfnGetBaseClass()) {
    if (record == pBaseClass) return 1;
    if (record->m_pfnGetBaseClass == nullptr) break;
  }
  return 0;
}

CObject::~CObject() = default;

CRuntimeClass* CObject::GetRuntimeClass() const {
  return GetThisClass();
}
CRuntimeClass* CObject::GetThisClass() {
  return const_cast<CRuntimeClass*>(&classCObject);
}
CRuntimeClass* CObject::_GetBaseClass() {
  return nullptr;
}

void CObject::Serialize(CArchive&) {}
void CObject::AssertValid() const {}
void CObject::Dump(CDumpContext&) const {}

int CObject::IsSerializable() const {
  return GetRuntimeClass()->m_wSchema != 0xFFFF;
}

int CObject::IsKindOf(const CRuntimeClass* pClass) const {
  return GetRuntimeClass()->IsDerivedFrom(pClass);
}
