#pragma once

/// What the library needs of the application framework's base class.
class CWinApp
{
  public:
    virtual ~CWinApp() = default;
    virtual int InitInstance() { return 1; }
};

/// The library's application object. Its start stores the module's handle, which the rest of the program asks for.
class CZXApp : public CWinApp
{
  public:
    int InitInstance() override;
};
