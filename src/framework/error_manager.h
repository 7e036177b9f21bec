#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace Gatan {

/// Codes of the host's error manager.
enum class error_code : std::uint32_t
{
    message = 28802,            ///< an error with a text
    unknown_exception = 28803,  ///< something was thrown that tells nothing
    com_error = 28811,          ///< a COM error without usable description
};

/// An error of the host: a call of a host function failed, or the function does not exist.
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

/// Where errors of the lifecycle entries go: to the host's error manager, or, without a host, to the debugger output.
class ErrorManager
{
  public:
    virtual ~ErrorManager() = default;
    virtual void HandleExceptionError(error_code code, const char* text) noexcept;
    void HandleExceptionError(const std::exception& error) noexcept;
};

/// The host's error manager; null when the host has none (or there is no host).
ErrorManager* GetErrorManager() noexcept;

/// Hands an error to the host's error manager, or to a temporary one made for this report when the host has none.
void report_error(error_code code, const char* text) noexcept;

/// Reports the exception being handled: a standard exception by its text, a COM error by its description, anything else
/// by its code. Call it inside a catch block.
void report_current_exception() noexcept;

}  // namespace Gatan
