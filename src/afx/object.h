#pragma once

#include <windows.h>

class CObject;

/// What a class knows about itself at run time: its name, its base, and how to make one where that is allowed.
struct CRuntimeClass
{
    const char* m_lpszClassName;
    CObject* (*m_pfnCreateObject)();  ///< null for a class that is not made by name
    const CRuntimeClass* m_pBaseClass;

    /// A new object that belongs to the caller; null for a class that is not made by name.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    BOOL IsDerivedFrom(const CRuntimeClass* base) const;
};

class CObject
{
  public:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;

    static const CRuntimeClass classCObject;
    virtual const CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
    BOOL IsKindOf(const CRuntimeClass* base) const { return GetRuntimeClass()->IsDerivedFrom(base); }
};

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)               \
  public:                                         \
    static const CRuntimeClass class##class_name; \
    const CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* CreateObject();

#define AFX_RUNTIME_CLASS(class_name, base_name, create) \
    const CRuntimeClass class_name::class##class_name    \
    {                                                    \
#class_name, create, RUNTIME_CLASS(base_name)    \
    };                                                   \
    const CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }

#define IMPLEMENT_DYNAMIC(class_name, base_name) AFX_RUNTIME_CLASS(class_name, base_name, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_name)                      \
    AFX_RUNTIME_CLASS(class_name, base_name, &class_name::CreateObject) \
    CObject* class_name::CreateObject() { return new class_name; }
