#include "tests/faults/allocations.h"

#include <atomic>
#include <cstdlib>
#include <deque>
#include <new>
#include <stdexcept>

#include "host/engine/contract_table.h"
#ifdef _WIN32
#include "tests/faults/replaced_imports.h"
#endif

namespace faults {
namespace {

// Atomic, because the threads of a parallel loop allocate, too.
std::atomic<bool> library_runs = false;
std::atomic<std::uint64_t> made = 0, refused = 0, first_to_fail = 0;
std::atomic<bool> all_later_fail = false;

bool may_allocate() noexcept
{
#ifndef _WIN32
    if (!library_runs) return true;
#endif
    const std::uint64_t number = ++made, first = first_to_fail;
    const bool fails = first != 0 && (number == first || (all_later_fail && number > first));
    if (fails) ++refused;
    return !fails;
}

#ifdef _WIN32
void* malloc_for_library(std::size_t bytes) { return may_allocate() ? std::malloc(bytes) : nullptr; }
void* aligned_malloc_for_library(std::size_t bytes, std::size_t alignment)
{
    return may_allocate() ? _aligned_malloc(bytes, alignment) : nullptr;
}
#else
void* allocated(std::size_t bytes, std::size_t alignment) noexcept
{
    if (!may_allocate()) return nullptr;
    if (bytes == 0) bytes = 1;
    return alignment ? std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment)
                     : std::malloc(bytes);
}

void* allocated_or_thrown(std::size_t bytes, std::size_t alignment)
{
    void* memory = allocated(bytes, alignment);
    return memory ? memory : throw std::bad_alloc{};
}
#endif

/// An operation of the contract's table that marks the host as running.
template <auto operation>
struct in_host;
template <class Result, class... Arguments, Result (HOST_CALL* host_table::*operation)(Arguments...)>
struct in_host<operation>
{
    static Result HOST_CALL run(Arguments... arguments)
    {
        const in_library host_runs{false};
        return (zentrix::host::contract_table().*operation)(arguments...);
    }
};

struct registered_native
{
    host_native native;
    void* context;
};

std::int32_t HOST_CALL run_native(void* context, const host_value* arguments, std::uint32_t count, host_value* result,
                                  host_object** error)
{
    const auto& [native, own_context] = *static_cast<const registered_native*>(context);
    const in_library runs;
    return native(own_context, arguments, count, result, error);
}

std::int32_t HOST_CALL register_function(host_link* link, const char* prototype, host_native native, void* context,
                                         host_object** error)
{
    const in_library host_runs{false};
    static std::deque<registered_native> all;  // of all hosts, since a host may still call after its library ended
    return zentrix::host::contract_table().register_function(link, prototype, run_native,
                                                             &all.emplace_back(native, context), error);
}

template <auto... operations>
host_table marking()
{
    host_table table = zentrix::host::contract_table();
    ((table.*operations = in_host<operations>::run), ...);
    table.register_function = register_function;
    return table;
}

}  // namespace

in_library::in_library(bool runs) noexcept : before_{library_runs.exchange(runs)} {}
in_library::~in_library() { library_runs = before_; }

void watch(zentrix::host::engine& host)
{
    using table = host_table;
    static const host_table marked =
        marking<&table::add_reference, &table::release, &table::object_add_reference, &table::object_release,
                &table::string_new, &table::string_text, &table::version, &table::find_function, &table::find_method,
                &table::call, &table::throwable_text, &table::withdraw_function, &table::has_error_manager,
                &table::report_error, &table::trace_add, &table::register_floating_window,
                &table::withdraw_floating_window, &table::is_interrupted>();
    host.link()->table = &marked;
}

void plan_allocations(allocation_plan plan)
{
#ifdef _WIN32
    static const bool is_replaced = replace_imports(
        ZENTRIX_LIBRARY_FILE, {{"malloc", reinterpret_cast<void (*)()>(malloc_for_library)},
                               {"_aligned_malloc", reinterpret_cast<void (*)()>(aligned_malloc_for_library)}});
    if (!is_replaced) throw std::logic_error{"The library calls no malloc."};
#endif
    first_to_fail = plan.first;
    all_later_fail = plan.all_later;
    made = refused = 0;
}

std::uint64_t allocations() { return made; }
std::uint64_t failed_allocations() { return refused; }

}  // namespace faults

#ifndef _WIN32
// The forms without alignment that a sanitizer would define by itself, and all that release memory.
void* operator new(std::size_t bytes) { return faults::allocated_or_thrown(bytes, 0); }
void* operator new[](std::size_t bytes) { return faults::allocated_or_thrown(bytes, 0); }
void* operator new(std::size_t bytes, std::align_val_t alignment)
{
    return faults::allocated_or_thrown(bytes, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return faults::allocated(bytes, 0); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
#endif
