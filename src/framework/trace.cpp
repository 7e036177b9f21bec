#include "framework/trace.h"

#include "framework/link.h"

void ipu::DLLTraceAddCounter(const char* name, std::int64_t ticks) noexcept
{
    if (host_link* link = Gatan::PlugIn::current_link()) link->table->trace_add(link, name, ticks);
}
