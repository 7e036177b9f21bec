// Prints a hash of what each script function does with random arguments, for the comparison of platforms by
// tools/check-same-bits: same_bits LIBRARY [CALLS]. A line has the number of calls, the hash of results, written pixels
// and error texts, the precision, and the prototype. Calls that involve an image of 8-byte reals have a line of their
// own, since double precision uses the C library's functions.
#include <algorithm>
#include <iostream>

#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "tests/fuzz/any_arguments.h"
#include "tests/support/digest.h"

using namespace zentrix::host;

namespace {

/// Functions of the platform, with side effects, or about the state of the process.
bool is_compared(const std::string& prototype)
{
    constexpr const char* others[] = {
        "Exec(",        "ExecWait(",      "OpenImage(",       "SelectImageFiles(", "SpecialDirectory(", "Handler(",
        "PanelUpdate(", "IsPaletteOpen(", "IsWindowVisible(", "SetUseSIMD(",       "NumThreads(",       "MaxThreads("};
    return std::none_of(std::begin(others), std::end(others),
                        [&](const char* name) { return prototype.find(name) != std::string::npos; });
}

struct digest
{
    support::fnv1a hash;
    unsigned calls = 0;

    void add(const std::string& bytes)
    {
        ++calls;
        for (const char byte : bytes) hash.add(static_cast<unsigned char>(byte));
    }
};

std::string outcome_of(function& callee, const fuzz::any_arguments& arguments)
{
    try {
        return fuzz::bytes_of(call_converted(callee, arguments.values())) + arguments.value_bytes();
    } catch (const std::exception& error) {
        return error.what();
    }
}

bool has_doubles(const fuzz::any_arguments& arguments)
{
    return std::ranges::any_of(arguments.images(), [](const image_ref& one) {
        return one && (one->code() == HOST_ELEMENT_FLOAT64 || one->code() == HOST_ELEMENT_COMPLEX128);
    });
}

void print_digests(function& callee, unsigned calls)
{
    digest single, twice;
    fuzz::generator random{1};
    for (unsigned i = 0; i < calls; ++i) {
        std::vector<std::uint8_t> bytes(200);
        for (std::uint8_t& one : bytes) one = static_cast<std::uint8_t>(random());
        fuzz::input from{bytes.data(), bytes.size()};
        const fuzz::any_arguments arguments{from, callee.signature()};
        (has_doubles(arguments) ? twice : single).add(outcome_of(callee, arguments));
    }
    for (const auto& [one, name] : {std::pair{&single, "float"}, {&twice, "double"}})
        if (one->calls > 0)
            std::cout << std::dec << one->calls << " " << std::hex << one->hash.value() << " " << name << " "
                      << callee.signature().text << "\n";
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) return 2;
    engine host;
    const library running{host, argv[1]};
    const unsigned calls = argc > 2 ? static_cast<unsigned>(std::stoul(argv[2])) : 200;
    for (const std::string& text : host.functions().prototypes(origin::library))
        if (is_compared(text)) print_digests(*host.functions().find(text), calls);
}
