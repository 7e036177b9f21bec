#pragma once

/// Root of the framework's classes: deleted through a base pointer, never copied.
class CObject
{
  public:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;
};
