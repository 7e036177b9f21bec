#include "host/program/function_name.h"

#include <algorithm>

#include "host/objects/value.h"
#include "host/program/help/near_word.h"

namespace zentrix::program {

std::vector<std::string> function_names(const host::function_table& functions)
{
    std::vector<std::string> names;
    for (const std::string& prototype : functions.prototypes(host::origin::library)) {
        const std::string head = prototype.substr(0, prototype.find('('));
        const std::string name = head.substr(head.find_last_of(' ') + 1);
        if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
    return names;
}

std::string full_function_name(const host::function_table& functions, const std::string& name)
{
    const std::string prefix = "ZX";
    for (const std::string& possible : {name, prefix + name})
        if (!functions.overloads(possible).empty()) return possible;
    const auto names = function_names(functions);
    std::string near = nearest_word(name, names);
    if (near.empty()) near = nearest_word(prefix + name, names);
    throw host::script_error{"there is no script function " + name +
                             (near.empty() ? "; \"zentrix functions\" lists them all" : did_you_mean(near))};
}

}  // namespace zentrix::program
