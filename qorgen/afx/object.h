#pragma once

// The root class of the foundation classes and its run-time class records.
//
// A record is constant data that lives as long as the library; it may be read from any thread. An object
// belongs to one thread at a time.

#include "qorgen/platform/types.h"

class CObject;

// Named by the published signatures of CObject; this library has neither archives nor dump streams, a host
// program may define them.
class CArchive;
class CDumpContext;

// What a class says about itself at run time. The base's record is reached through a function, so that
// records of different modules need no order of initialisation.
struct QORGEN_API CRuntimeClass {
  const char* m_lpszClassName;
  int m_nObjectSize;
  unsigned int m_wSchema;
  CObject* (*m_pfnCreateObject)();
  CRuntimeClass* (*m_pfnGetBaseClass)();
  CRuntimeClass* m_pNextClass;

  // A new object of the class, owned by the caller and ended with delete; null when the class cannot be
  // created from its record. Throws the memory exception when there is no memory.
  CObject* CreateObject() const;

  // 1 when the class is `pBaseClass` or derived from it, else 0. Null gives 0.
  int IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

class QORGEN_API CObject {
 public:
  // The record of the object's own class, never null.
  virtual CRuntimeClass* GetRuntimeClass() const;
  virtual ~CObject();
  // Stores or loads the object; does nothing here.
  virtual void Serialize(CArchive& archive);
  // Checks the object's state and describes it; both do nothing here.
  virtual void AssertValid() const;
  virtual void Dump(CDumpContext& context) const;

  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;

  // 1 when Serialize is meant to work for the class, that is when its schema isn't 0xFFFF; else 0.
  int IsSerializable() const;
  // 1 when the object is of the class or of one derived from it, else 0. Null gives 0.
  int IsKindOf(const CRuntimeClass* pClass) const;

  static CRuntimeClass* GetThisClass();
  static CRuntimeClass* _GetBaseClass();

  static const CRuntimeClass classCObject;

 protected:
  CObject() = default;
};

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

// Inside a class: the class answers GetRuntimeClass, GetThisClass and _GetBaseClass.
#define DECLARE_DYNAMIC(class_name)             \
 public:                                        \
  static const CRuntimeClass class##class_name; \
  static CRuntimeClass* _GetBaseClass();        \
  static CRuntimeClass* GetThisClass();         \
  CRuntimeClass* GetRuntimeClass() const override;

// The same, and an object can be made from the record; the class needs a default constructor.
#define DECLARE_DYNCREATE(class_name) \
  DECLARE_DYNAMIC(class_name)         \
  static CObject* CreateObject();

// In one source file for each class declared with one of the above.
#define QORGEN_IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, schema, create)          \
  CRuntimeClass* class_name::_GetBaseClass() {                                               \
    return RUNTIME_CLASS(base_class_name);                                                   \
  }                                                                                          \
  const CRuntimeClass class_name::class##class_name = {#class_name,                          \
                                                       static_cast<int>(sizeof(class_name)), \
                                                       schema,                               \
                                                       create,                               \
                                                       &class_name::_GetBaseClass,           \
                                                       nullptr};                             \
  CRuntimeClass* class_name::GetThisClass() {                                                \
    return const_cast<CRuntimeClass*>(&class##class_name);                                   \
  }                                                                                          \
  CRuntimeClass* class_name::GetRuntimeClass() const {                                       \
    return GetThisClass();                                                                   \
  }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
  QORGEN_IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name) \
  CObject* class_name::CreateObject() {                  \
    return new class_name;                               \
  }                                                      \
  QORGEN_IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, 0xFFFF, &class_name::CreateObject)

// The object as `class_name*` when it is of that class or derived from it, else null; null gives null.
template <typename Class>
Class* DynamicDownCast(CObject* object) {
  return object != nullptr && object->IsKindOf(Class::GetThisClass()) ? static_cast<Class*>(object) : nullptr;
}
template <typename Class>
const Class* DynamicDownCast(const CObject* object) {
  return object != nullptr && object->IsKindOf(Class::GetThisClass()) ? static_cast<const Class*>(object)
                                                                      : nullptr;
}
#define DYNAMIC_DOWNCAST(class_name, object) (DynamicDownCast<class_name>(object))
