#include "host/engine/handle_table.h"

#include "host/objects/value.h"

#include <algorithm>

namespace zentrix::host {

namespace {

// Handles count up from an address that no process can map, so that following one by mistake fails at once. They
// contain the object's kind, for messages about objects that no longer exist.
constexpr std::uint64_t handle_base = 0x5A00'0000'0000'0000u;
constexpr std::uint64_t base_mask = 0xFF00'0000'0000'0000u;
constexpr int kind_bits = 8;

std::uint64_t number_of(host_object* handle) { return reinterpret_cast<std::uintptr_t>(handle); }

host_object* handle_from(std::uint64_t number) { return reinterpret_cast<host_object*>(number); }

std::string label_of(std::uint64_t number)
{
    const auto kind = static_cast<object_kind>(number & ((1u << kind_bits) - 1));
    return std::string{name_of(kind)} + " #" + std::to_string((number & ~base_mask) >> kind_bits);
}

}  // namespace

host_object* handle_table::handle_of(const object_ref& object)
{
    const auto found = handles_.find(object.get());
    if (found != handles_.end()) return handle_from(found->second);
    const auto number = handle_base | (next_++ << kind_bits) | static_cast<std::uint64_t>(object->kind());
    entries_[number].held = object;
    handles_[object.get()] = number;
    return handle_from(number);
}

handle_table::entry* handle_table::find(host_object* handle, const char* action)
{
    const auto number = number_of(handle);
    const auto found = entries_.find(number);
    if (found != entries_.end()) return &found->second;
    const bool was_valid = (number & base_mask) == handle_base && (number & ~base_mask) >> kind_bits < next_;
    records_.add_violation(was_valid ? label_of(number) + " is " + action + " after its last release."
                                     : std::string{"A pointer that is not a host object is "} + action + ".");
    return nullptr;
}

handle_table::entry& handle_table::require(host_object* handle, const char* action)
{
    auto* found = find(handle, action);
    if (!found) throw script_error{"An object that is not alive is " + std::string{action} + "."};
    return *found;
}

object_ref handle_table::drop_if_unused(host_object* handle)
{
    const auto found = entries_.find(number_of(handle));
    if (found == entries_.end() || found->second.references + found->second.loans > 0) return nullptr;
    handles_.erase(found->second.held.get());
    auto dying = std::move(found->second.held);
    entries_.erase(found);
    return dying;
}

host_object* handle_table::give(const object_ref& object)
{
    if (!object) return nullptr;
    const std::lock_guard guard{access_};
    auto* handle = handle_of(object);
    ++entries_[number_of(handle)].references;
    return handle;
}

object_ref handle_table::take(host_object* handle)
{
    if (!handle) return nullptr;
    const std::lock_guard guard{access_};
    auto held = require(handle, "handed over").held;
    static_cast<void>(release_one(handle));  // `held` keeps it
    return held;
}

object_ref handle_table::get(host_object* handle)
{
    if (!handle) return nullptr;
    const std::lock_guard guard{access_};
    return require(handle, "used").held;
}

void handle_table::add_reference(host_object* handle)
{
    if (!handle) return;
    const std::lock_guard guard{access_};
    if (auto* found = find(handle, "referenced")) ++found->references;
}

void handle_table::release(host_object* handle)
{
    if (!handle) return;
    object_ref dying;
    const std::lock_guard guard{access_};
    dying = release_one(handle);
}

object_ref handle_table::release_one(host_object* handle)
{
    auto* found = find(handle, "released");
    if (!found) return nullptr;
    if (found->references == 0) {
        records_.add_violation(label_of(number_of(handle)) + ", which was only lent, is released.");
        return nullptr;
    }
    --found->references;
    return drop_if_unused(handle);
}

host_object* handle_table::lend(const object_ref& object)
{
    if (!object) return nullptr;
    const std::lock_guard guard{access_};
    auto* handle = handle_of(object);
    ++entries_[number_of(handle)].loans;
    return handle;
}

void handle_table::end_loan(host_object* handle)
{
    if (!handle) return;
    object_ref dying;
    const std::lock_guard guard{access_};
    --entries_[number_of(handle)].loans;
    dying = drop_if_unused(handle);
}

std::vector<std::string> handle_table::held() const
{
    // Copies, because describe() may run foreign code that changes the table.
    std::vector<std::pair<std::uint64_t, entry>> ordered;
    {
        const std::lock_guard guard{access_};
        for (const auto& [number, one] : entries_)
            if (one.references > 0) ordered.emplace_back(number & ~base_mask, one);
    }
    std::ranges::sort(ordered, {}, [](const auto& one) { return one.first; });
    std::vector<std::string> lines;
    lines.reserve(ordered.size());
    for (const auto& [number, one] : ordered)
        lines.push_back(one.held->describe() + ": " + std::to_string(one.references) +
                        (one.references == 1 ? " reference" : " references"));
    return lines;
}

void handle_table::forget()
{
    std::vector<std::uint64_t> numbers;
    std::vector<object_ref> dying;
    const std::lock_guard guard{access_};
    for (auto& [number, one] : entries_) {
        one.references = 0;
        numbers.push_back(number);
    }
    for (const auto number : numbers) dying.push_back(drop_if_unused(handle_from(number)));
}

}  // namespace zentrix::host
