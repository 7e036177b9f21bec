#pragma once

#include "image/image.h"
#include "image/processor.h"

#include <cstddef>
#include <cstdint>

/// The median along Z of a stack of planes, position by position, formed by `median_of` (median.h), whose rules for
/// even counts, NaN and zeros apply column by column. All variants return the same bits. Instantiated for float and
/// double.
namespace qorv::functions {

/// stack        width x height x planes, at least one plane
/// destination  width x height x 1; may be one of the stack's planes, must not overlap the stack otherwise
/// Throws  errors::parameters_invalid for null data or an empty stack; errors::invalid_image_size for a destination of
///         another shape
template <class T>
void median_z(const dm::image<const T>& stack, const dm::image<T>& destination);

/// Parameters of `median_z`, checked.
template <class T>
using median_z_kernel = void(const dm::image<const T>& stack, const dm::image<T>& destination);

/// The plain form copies the values of each position and selects their median. The fast ones pass neighbouring
/// positions together through a sorting network.
template <class T>
dm::variants<median_z_kernel<T>> median_z_variants();

/// Columns of a stack that are sorted together: one row of `columns` values for each plane.
template <class T>
struct column_block
{
    T* rows;
    std::ptrdiff_t depth;
    std::ptrdiff_t columns;  ///< a multiple of 64 bytes, thereby of every vector
};

struct comparator
{
    std::int32_t low, high;  ///< rows that receive the smaller and the larger value
};

/// Merge exchange of the rows begin .. end - 1 of a block (K. E. Batcher; D. E. Knuth, The Art of Computer Programming
/// 3, 5.2.2, algorithm M). The passes over the longest distances are replaced by sorting every stride-th row, at most
/// eight, which fit in registers. The comparators do the rest.
struct sorting_network
{
    std::ptrdiff_t begin, end, stride;
    const comparator *first, *last;
};

/// Sorts the rows of the network, column by column. Compiled for each instruction set (median_z_simd.h). The block
/// holds no NaN and no -0.
template <class Arch, class T>
void sort_columns(const column_block<T>& block, const sorting_network& network);

/// The medians of the first `count` columns. The rows 0 .. (depth + 1) / 2 - 1 are sorted, and so are the others.
template <class Arch, class T>
void medians_of_halves(const column_block<T>& block, std::ptrdiff_t count, T* out);

}  // namespace qorv::functions
