#include "host/files/dm_tags.h"

#include <algorithm>
#include <boost/nowide/utf/convert.hpp>

#include "host/files/header_error.h"

namespace zentrix::host {

namespace {

constexpr int deepest = 64;                // real files nest about ten groups
constexpr std::size_t most_tags = 500000;  // real files have some thousands
constexpr std::uint64_t longest_type = 4096;

/// Codes of a value's type.
enum value_type : std::uint64_t
{
    record = 15,
    text = 18,
    array = 20
};

/// Bytes of a number of that type; 0 if the code means something else.
std::uint64_t bytes_of_number(std::uint64_t type) noexcept
{
    switch (type) {
        case 8:             // truth value
        case 9:             // character
        case 10: return 1;  // byte
        case 2:             // signed
        case 4: return 2;   // unsigned
        case 3:             // signed
        case 5:             // unsigned
        case 6: return 4;   // real
        case 7:             // real
        case 11:            // signed
        case 12: return 8;  // unsigned
        default: return 0;
    }
}

class tree_reader
{
  public:
    explicit tree_reader(binary_input& from) : from_{from} {}

    dm_tree read()
    {
        dm_tree tree;
        tree.version = from_.number<std::int32_t>(std::endian::big);
        if (tree.version != 3 && tree.version != 4)
            throw header_error{"it is not a DM3 or DM4 file: its version is " + std::to_string(tree.version)};
        is_long_ = tree.version == 4;
        length();  // of the tree; files written in two passes have another one
        tree.order = from_.number<std::int32_t>(std::endian::big) != 0 ? std::endian::little : std::endian::big;
        order_ = tree.order;
        read_group(tree.root, 0);
        return tree;
    }

  private:
    std::uint64_t length()
    {
        return is_long_ ? from_.number<std::uint64_t>(std::endian::big) : from_.number<std::uint32_t>(std::endian::big);
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        throw header_error{"its tags are damaged: " + what + " at byte " + std::to_string(from_.position())};
    }

    void read_group(dm_tag& group, int depth)
    {
        if (depth > deepest) fail("more than " + std::to_string(deepest) + " groups within each other");
        group.kind = dm_tag::content::group;
        from_.skip(2);  // whether it is sorted and open
        const std::uint64_t count = length();
        // The smallest tag has three bytes. The entries are added one by one, so a false count allocates nothing.
        if (count > from_.remaining() / 3) fail(std::to_string(count) + " tags announced");
        for (std::uint64_t i = 0; i < count; ++i) {
            if (++tags_ > most_tags) fail("more than " + std::to_string(most_tags) + " tags");
            read_tag(group.children.emplace_back(), depth);
        }
    }

    void read_tag(dm_tag& tag, int depth)
    {
        const int kind = from_.number<std::uint8_t>(std::endian::big);
        tag.label = from_.text(from_.number<std::uint16_t>(std::endian::big));
        if (is_long_) length();  // of the rest of the tag
        if (kind == 20)
            read_group(tag, depth + 1);
        else if (kind == 21)
            read_value(tag);
        else
            fail("a tag of kind " + std::to_string(kind));
    }

    void read_value(dm_tag& tag)
    {
        if (from_.text(4) != "%%%%") fail("no value");
        const std::uint64_t words = length();
        if (words == 0 || words > longest_type) fail("a type of " + std::to_string(words) + " words");
        type_.resize(words);
        for (std::uint64_t& word : type_) word = length();

        if (type_[0] == text) {
            skip_elements(2, word_at(1));
        } else if (type_[0] == array) {
            std::size_t at = 1;
            tag.element_bytes = element_bytes(at, 0);
            tag.count = word_at(at);
            tag.kind = dm_tag::content::array;
            tag.position = from_.position();
            skip_elements(tag.element_bytes, tag.count);
        } else if (type_[0] == record) {
            std::size_t at = 0;
            from_.skip(element_bytes(at, 0));
        } else {
            tag.kind = dm_tag::content::number;
            tag.number = read_number();
        }
    }

    std::uint64_t word_at(std::size_t index) const
    {
        if (index >= type_.size()) fail("an incomplete type");
        return type_[index];
    }

    /// Bytes of the type at `at` of the type's words; moves `at` past it.
    std::uint64_t element_bytes(std::size_t& at, int depth) const
    {
        const std::uint64_t type = word_at(at++);
        if (const std::uint64_t bytes = bytes_of_number(type)) return bytes;
        if (depth > 8) fail("a type within too many others");
        if (type == record) {
            ++at;  // length of its name
            std::uint64_t bytes = 0;
            for (std::uint64_t fields = word_at(at++); fields > 0; --fields) {
                ++at;  // length of the field's name
                bytes = sum(bytes, element_bytes(at, depth + 1));
            }
            return bytes;
        }
        if (type == array) {
            const std::uint64_t bytes = element_bytes(at, depth + 1);
            const std::uint64_t count = word_at(at++);
            if (bytes > 0 && count > from_.size() / bytes) cut_short(bytes, count);
            return bytes * count;
        }
        fail("a value of type " + std::to_string(type));
    }

    /// No value is longer than the file.
    std::uint64_t sum(std::uint64_t a, std::uint64_t b) const
    {
        if (b > from_.size() || a > from_.size() - b) fail("a record longer than the file");
        return a + b;
    }

    [[noreturn]] void cut_short(std::uint64_t bytes, std::uint64_t count) const
    {
        throw header_error{"it is cut short: " + std::to_string(count) + " elements of " + std::to_string(bytes) +
                           " bytes are announced, but only " + std::to_string(from_.remaining()) + " bytes follow"};
    }

    void skip_elements(std::uint64_t bytes, std::uint64_t count)
    {
        if (bytes > 0 && count > from_.remaining() / bytes) cut_short(bytes, count);
        from_.skip(bytes * count);
    }

    double read_number()
    {
        switch (type_[0]) {
            case 2: return from_.number<std::int16_t>(order_);
            case 3: return from_.number<std::int32_t>(order_);
            case 4: return from_.number<std::uint16_t>(order_);
            case 5: return from_.number<std::uint32_t>(order_);
            case 6: return from_.number<float>(order_);
            case 7: return from_.number<double>(order_);
            case 8:
            case 9:
            case 10: return from_.number<std::uint8_t>(order_);
            case 11: return static_cast<double>(from_.number<std::int64_t>(order_));
            case 12: return static_cast<double>(from_.number<std::uint64_t>(order_));
            default: fail("a value of type " + std::to_string(type_[0]));
        }
    }

    binary_input& from_;
    bool is_long_ = false;  ///< lengths have 8 bytes
    std::endian order_ = std::endian::little;
    std::size_t tags_ = 0;
    std::vector<std::uint64_t> type_;  ///< of the present value
};

const dm_tag nothing;

}  // namespace

const dm_tag& dm_tag::operator[](std::string_view name) const noexcept
{
    const auto found = std::ranges::find(children, name, &dm_tag::label);
    return found == children.end() ? nothing : *found;
}

const dm_tag& dm_tag::operator[](std::size_t index) const noexcept
{
    return index < children.size() ? children[index] : nothing;
}

dm_tree read_dm_tags(binary_input& from) { return tree_reader{from}.read(); }

std::string dm_text(binary_input& from, const dm_tree& tree, const dm_tag& tag)
{
    constexpr std::uint64_t longest = 4096;
    if (tag.kind != dm_tag::content::array || tag.element_bytes != 2 || tag.count > longest) return "";
    from.seek(tag.position);
    std::u16string characters(tag.count, u'\0');
    for (char16_t& c : characters) c = from.number<std::uint16_t>(tree.order);
    characters.resize(std::min(characters.find(u'\0'), characters.size()));
    return boost::nowide::utf::convert_string<char>(characters.data(), characters.data() + characters.size());
}

bool is_dm(std::string_view start) noexcept
{
    if (start.size() < 16 || start[0] != 0 || start[1] != 0 || start[2] != 0) return false;
    const std::size_t order = start[3] == 3 ? 8 : start[3] == 4 ? 12 : 0;
    return order > 0 && start.substr(order, 3) == std::string_view{"\0\0\0", 3} &&
           (start[order + 3] == 0 || start[order + 3] == 1);
}

}  // namespace zentrix::host
