#include "host/engine/function_table.h"

#include "host/objects/conversion.h"

#include <algorithm>

namespace zentrix::host {

namespace {

std::optional<int> call_cost(const prototype& signature, std::span<const script_value> arguments)
{
    if (!signature.takes(arguments.size())) return std::nullopt;
    int sum = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto cost = conversion_cost(arguments[i], signature.parameter_of(i).type);
        if (!cost) return std::nullopt;
        sum += *cost;
    }
    return sum;
}

[[noreturn]] void fail_to_resolve(std::string_view name, std::span<const script_value> arguments,
                                  const std::vector<function_ref>& candidates)
{
    if (candidates.empty()) throw script_error{"There is no script function \"" + std::string{name} + "\"."};
    std::string text = std::string{name} + " cannot be called with (";
    for (std::size_t i = 0; i < arguments.size(); ++i) text += (i ? ", " : "") + describe(arguments[i]);
    text += candidates.size() == 1 ? "). Its prototype is:" : "). Its prototypes are:";
    for (const auto& candidate : candidates) text += "\n    " + candidate->signature().text;
    throw script_error{text};
}

}  // namespace

void function_table::add(function_ref added, origin whose)
{
    const auto& text = added->signature().text;
    if (!by_text_.emplace(text, added).second)
        throw script_error{"The prototype \"" + text + "\" is already registered."};
    entries_.push_back({std::move(added), whose});
}

bool function_table::remove(std::string_view prototype_text, origin whose)
{
    const auto found = std::ranges::find_if(entries_, [&](const entry& one) {
        return one.whose == whose && one.callee->signature().text == prototype_text;
    });
    if (found == entries_.end()) return false;
    by_text_.erase(std::string{prototype_text});
    entries_.erase(found);
    return true;
}

function_ref function_table::find(std::string_view prototype_text) const
{
    const auto found = by_text_.find(std::string{prototype_text});
    return found == by_text_.end() ? nullptr : found->second;
}

std::vector<std::string> function_table::prototypes(origin whose) const
{
    std::vector<std::string> texts;
    for (const auto& one : entries_)
        if (one.whose == whose) texts.push_back(one.callee->signature().text);
    return texts;
}

std::vector<function_ref> function_table::overloads(std::string_view name) const
{
    std::vector<function_ref> found;
    for (const auto whose : {origin::library, origin::host})
        for (const auto& one : entries_)
            if (one.whose == whose && one.callee->signature().name == name) found.push_back(one.callee);
    return found;
}

function_ref function_table::resolve(std::string_view name, std::span<const script_value> arguments) const
{
    const auto candidates = overloads(name);
    function_ref best;
    std::optional<int> best_cost;
    for (const auto& candidate : candidates) {
        const auto cost = call_cost(candidate->signature(), arguments);
        if (cost && (!best_cost || *cost < *best_cost)) {
            best = candidate;
            best_cost = cost;
        }
    }
    if (!best) fail_to_resolve(name, arguments, candidates);
    return best;
}

}  // namespace zentrix::host
