#pragma once

#include "contract/host_link.h"

#include <string>
#include <string_view>
#include <vector>

/// Parsing of prototype texts, shared by both sides of the contract.
namespace contract {

/// A type word of a prototype and the kind that it maps to.
struct prototype_type
{
    std::string word;                 ///< as written, without the star: "long", "ComplexImagePtr"
    host_kind kind = HOST_VOID;       ///< HOST_OUTPUT for output parameters
    host_kind cell_kind = HOST_VOID;  ///< of an output parameter's cell

    bool is_boolean() const { return word == "Boolean" || word == "bool"; }
    bool is_complex_image() const { return word == "ComplexImagePtr"; }
};

struct prototype_parameter
{
    prototype_type type;
    std::string name;       ///< may be empty
    bool variadic = false;  ///< "...": any number of arguments, including none; the last parameter only
};

/// A parsed prototype text, "long ZXPadSize(long n)".
struct prototype
{
    std::string text;  ///< exactly as written; the key by which functions are found
    prototype_type result;
    std::string name;
    std::vector<prototype_parameter> parameters;

    bool is_variadic() const { return !parameters.empty() && parameters.back().variadic; }
    /// Whether a call may have `count` arguments.
    bool takes(std::size_t count) const;
    /// The parameter of argument `index`. Requires that a call may have more than `index` arguments.
    const prototype_parameter& parameter_of(std::size_t index) const;
    /// Whether name, result kind and parameter kinds are the same. Blanks and parameter names do not matter.
    bool same_signature(const prototype& other) const;
};

/// Parses a prototype: result type, name, and a parameter list in parentheses. Blanks are allowed between all tokens.
/// "()", "( void )" and "(  )" are empty lists. A star may follow the type or precede the parameter's name.
/// Throws  std::invalid_argument with the text and the reason
prototype parse_prototype(std::string_view text);

/// "void", "32-bit integer", "image", ...: for messages.
const char* name_of(host_kind kind) noexcept;

}  // namespace contract
