#pragma once

#include "contract/host_link.h"

#include <string>
#include <string_view>
#include <vector>

/// Reading of prototype texts. Both sides of the contract read them by this one rule.
namespace contract {

/// A type word of a prototype and what it maps to in the contract.
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
    std::string name;       ///< may be empty: host prototypes name few parameters
    bool variadic = false;  ///< "...": any number of further arguments, none included; the last parameter only
};

/// A parsed prototype text, "long ZXPadSize(long n)".
struct prototype
{
    std::string text;  ///< exactly as written; functions are found by it
    prototype_type result;
    std::string name;
    std::vector<prototype_parameter> parameters;

    bool is_variadic() const { return !parameters.empty() && parameters.back().variadic; }
    /// Whether a call may have `count` arguments.
    bool takes(std::size_t count) const;
    /// The parameter that argument `index` belongs to; `takes` has to hold for some count above index.
    const prototype_parameter& parameter_of(std::size_t index) const;
    /// Same name, result and parameter kinds: blanks and parameter names do not matter.
    bool same_signature(const prototype& other) const;
};

/// Reads a prototype text: return type, name, parameter list in parentheses. Blanks may stand anywhere between words;
/// "()", "( void )" and "(  )" are empty lists; the star of an output parameter or a picture type may stand at the type
/// or at the name.
/// Throws  std::invalid_argument naming the text and what is wrong with it
prototype parse_prototype(std::string_view text);

/// "void", "32-bit integer", "image", ...: for messages.
const char* name_of(host_kind kind) noexcept;

}  // namespace contract
