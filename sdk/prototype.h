#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sdk/host_link.h"

/// Reading of prototype texts such as "ImageRef ZXPow(ImageRef imgA, ImageRef imgB, ImageRef imgDst)". Both sides of
/// the contract read them by this one rule.
namespace Gatan::PlugIn {

struct prototype_parameter
{
    host_kind kind;              ///< HOST_OUTPUT for "T *"
    host_kind cell = HOST_VOID;  ///< kind of an output's cell
    bool repeated = false;       ///< "T...": any number of further arguments
    std::string name;            ///< may be empty
};

struct prototype
{
    host_kind result;
    std::string name;
    std::vector<prototype_parameter> parameters;
};

/// Reads a prototype: a type, a name, and a parameter list in parentheses, blanks anywhere between words. "( )" and
/// "( void )" are empty lists.
/// Throws  std::invalid_argument, quoting the text, when it is not of this form or names an unknown type
prototype read_prototype(std::string_view text);

}  // namespace Gatan::PlugIn
