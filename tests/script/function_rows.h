#pragma once

#include "tests/script/destinations.h"

/// Tables of script functions with the arguments of a typical call.
namespace script {

/// The functions with a source and a destination.
std::vector<destination_row> destination_rows();

/// A function of statistics, windows and masks, with the arguments after the source or sources.
struct source_row
{
    const char* name;
    const char* counter;
    std::vector<std::uint32_t> types;
    const char* refusal;  ///< of other types
    std::size_t sources;
    arguments others;

    /// The arguments of a call, with new outputs.
    arguments operator()(const image_ref& source) const;
};

std::vector<source_row> source_rows();

}  // namespace script
