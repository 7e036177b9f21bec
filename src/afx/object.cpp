#include "afx/object.h"

const CRuntimeClass CObject::classCObject{"CObject", nullptr, nullptr};

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const
{
    for (const CRuntimeClass* present = this; present; present = present->m_pBaseClass) {
        if (present == base) return TRUE;
    }
    return FALSE;
}
