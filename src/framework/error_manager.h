#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace Gatan {

/// Codes of the host's error manager.
enum class error_code : std::uint32_t
{
    message = 28802,            ///< an error with a text
    unknown_exception = 28803,  ///< an exception without a text
    com_error = 28811,          ///< a COM error without usable description
};

/// An error of the host: a call of a host function failed, or the host has no such function.
class gatan_exception : public std::exception
{
  public:
    explicit gatan_exception(std::string text, error_code code = error_code::message)
        : text_{std::move(text)}, code_{code}
    {}
    const char* what() const noexcept override { return text_.c_str(); }
    error_code code() const noexcept { return code_; }

  private:
    std::string text_;
    error_code code_;
};

/// Receives the errors of the lifecycle entries and passes them to the host or, without a host, to the debugger output.
class ErrorManager
{
  public:
    virtual ~ErrorManager() = default;
    virtual void HandleExceptionError(error_code code, const char* text) noexcept;
    /// Passes an exception with its text; the code is that of a gatan_exception, or `message`.
    void HandleExceptionError(const std::exception& error) noexcept;
};

/// The host's error manager; null when the host has none or there is no host.
ErrorManager* GetErrorManager() noexcept;

/// Passes an error to the host's error manager, or to a temporary one created for this report when the host has none.
void report_error(error_code code, const char* text) noexcept;

/// Reports the exception being handled: a standard exception with its text, a COM error with its description, anything
/// else with its code. Call it inside a catch block only.
void report_current_exception() noexcept;

}  // namespace Gatan
