#include "tests/faults/misbehaving_host.h"

#include <new>
#include <utility>

#include "host/engine/contract_table.h"
#include "host/engine/engine_state.h"

namespace faults {
namespace {

using namespace zentrix::host;

struct planned_call
{
    misbehaviour how{};
    std::uint64_t number = 0;
    std::uint64_t made = 0;
    std::string prototype = {};
};
planned_call planned;
engine* current = nullptr;

script_value throw_as_planned(std::span<const script_value>)
{
    if (planned.how == misbehaviour::throws_number) throw 1;
    throw std::bad_alloc{};
}

void make_null(host_value& result, const prototype_type& type)
{
    if (type.kind == HOST_POINTER) result.as.pointer = nullptr;
    if (is_counted(type.kind)) current->state().handles.release(std::exchange(result.as.object, nullptr));
}

std::int32_t HOST_CALL call(host_link* link, host_object* callee, const host_value* values, std::uint32_t count,
                            host_value* result, host_object** error)
{
    const auto carry_out = contract_table().call;
    if (++planned.made != planned.number) return carry_out(link, callee, values, count, result, error);
    auto& handles = current->state().handles;
    const auto signature = std::dynamic_pointer_cast<function>(handles.get(callee))->signature();
    planned.prototype = signature.text;
    const bool gives_null = planned.how == misbehaviour::gives_null;
    if (gives_null || signature.name == "UnlockMemory") {  // which nobody could repeat
        const auto failed = carry_out(link, callee, values, count, result, error);
        if (gives_null && !failed && result) make_null(*result, signature.result);
        if (gives_null) return failed;
    }
    if (planned.how == misbehaviour::refuses) return 1;
    const auto throwing = handles.give(make_function(signature.text, throw_as_planned));
    const auto failed = carry_out(link, throwing, values, count, result, error);
    handles.release(throwing);
    return failed;
}

}  // namespace

void watch_calls(engine& host)
{
    static const host_table watching = [] {
        host_table table = contract_table();
        table.call = call;
        return table;
    }();
    current = &host;
    host.link()->table = &watching;
}

void plan_misbehaviour(misbehaviour how, std::uint64_t number) { planned = {how, number}; }
std::string end_misbehaviour() { return std::exchange(planned, {}).prototype; }
std::uint64_t watched_calls() { return planned.made; }

}  // namespace faults
