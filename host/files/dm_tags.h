#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/binary_input.h"

/// The tags of a DM3 or DM4 file: a tree of groups with numbers and arrays.
namespace zentrix::host {

/// A tag. Arrays stay in the file.
struct dm_tag
{
    enum class content
    {
        group,
        number,
        array,
        other  ///< a record or a text that no reader needs
    };

    std::string label;  ///< empty for the entries of a list
    content kind = content::other;
    std::vector<dm_tag> children;     ///< of a group
    double number = 0;                ///< exact for integers of up to 53 bits
    std::uint64_t position = 0;       ///< of an array in the file
    std::uint64_t count = 0;          ///< of its elements
    std::uint64_t element_bytes = 0;  ///< of one element

    /// The child with that label; a tag without content if there is none.
    const dm_tag& operator[](std::string_view name) const noexcept;
    /// The child with that number; likewise.
    const dm_tag& operator[](std::size_t index) const noexcept;
    /// The number, or `otherwise` if this is none.
    double number_or(double otherwise) const noexcept { return kind == content::number ? number : otherwise; }
};

/// What a DM file has before its first tag, and its tags.
struct dm_tree
{
    int version = 0;                          ///< 3 or 4
    std::endian order = std::endian::little;  ///< of the values; the tree itself is big-endian
    dm_tag root;
};

/// Reads the whole tree. Groups may be nested 64 deep, and there may be 500000 tags.
/// Throws  header_error
dm_tree read_dm_tags(binary_input& from);

/// The text of an array of 16-bit characters, as UTF-8; empty for other tags and for more than 4096 characters.
std::string dm_text(binary_input& from, const dm_tree& tree, const dm_tag& tag);

/// Whether a file that starts with these bytes is a DM3 or DM4 file.
bool is_dm(std::string_view start) noexcept;

}  // namespace zentrix::host
