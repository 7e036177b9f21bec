#include "host/files/npy_header.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <string_view>

#include "host/files/header_error.h"

// The format is described in the documentation of numpy.lib.format.
namespace zentrix::host {

namespace {

constexpr std::string_view magic{"\x93NUMPY", 6};
constexpr std::uint32_t longest_header = 65536;  // a few hundred bytes are usual

/// Reads the dictionary, a Python literal such as {'descr': '<f4', 'fortran_order': False, 'shape': (3, 4), }.
class literal_reader
{
  public:
    explicit literal_reader(std::string_view text) : rest_{text} {}

    bool skip(char expected)
    {
        skip_blanks();
        if (rest_.empty() || rest_.front() != expected) return false;
        rest_.remove_prefix(1);
        return true;
    }
    void expect(char expected)
    {
        if (!skip(expected)) fail();
    }
    std::string quoted()
    {
        const char quote = skip('\'') ? '\'' : '"';
        if (quote == '"') expect('"');
        const auto end = rest_.find(quote);
        if (end == std::string_view::npos) fail();
        std::string text{rest_.substr(0, end)};
        if (text.find('\0') != std::string::npos) fail();  // it would end the message that shows it
        rest_.remove_prefix(end + 1);
        return text;
    }
    bool truth()
    {
        skip_blanks();
        if (skip_word("True")) return true;
        if (!skip_word("False")) fail();
        return false;
    }
    std::vector<std::uint64_t> tuple()
    {
        std::vector<std::uint64_t> values;
        expect('(');
        while (!skip(')')) {
            values.push_back(number());
            if (skip(',')) continue;
            expect(')');
            break;
        }
        return values;
    }
    [[noreturn]] static void fail()
    {
        throw header_error{"its header is damaged; expected {'descr': ..., 'fortran_order': ..., 'shape': ...}"};
    }

  private:
    void skip_blanks()
    {
        while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_.front()))) rest_.remove_prefix(1);
    }
    bool skip_word(std::string_view word)
    {
        if (!rest_.starts_with(word)) return false;
        rest_.remove_prefix(word.size());
        return true;
    }
    std::uint64_t number()
    {
        skip_blanks();
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        if (error == std::errc::result_out_of_range)
            throw header_error{"one of its dimensions has more than 64 bits; expected 1 to 2147483647"};
        if (error != std::errc{}) fail();
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        skip_word("L");  // written by Python 2
        return value;
    }

    std::string_view rest_;
};

npy_header parse(std::string_view text)
{
    literal_reader reader{text};
    npy_header header;
    bool has_descr = false, has_order = false, has_shape = false;
    reader.expect('{');
    while (!reader.skip('}')) {
        const std::string key = reader.quoted();
        reader.expect(':');
        if (key == "descr") {
            if (reader.skip('[')) throw header_error{"it holds records with several fields; expected plain numbers"};
            header.descr = reader.quoted(), has_descr = true;
        } else if (key == "fortran_order")
            header.fortran_order = reader.truth(), has_order = true;
        else if (key == "shape")
            header.shape = reader.tuple(), has_shape = true;
        else
            literal_reader::fail();
        if (reader.skip(',')) continue;
        reader.expect('}');
        break;
    }
    if (!has_descr || header.descr.empty() || !has_order || !has_shape) literal_reader::fail();
    return header;
}

}  // namespace

npy_header read_npy_header(binary_input& from)
{
    if (from.remaining() < magic.size() + 2 || from.text(magic.size()) != magic)
        throw header_error{"it is not a .npy file: expected the first bytes \\x93NUMPY"};
    const int version = from.number<std::uint8_t>(std::endian::little);
    if (version < 1 || version > 3)
        throw header_error{"it has .npy format version " + std::to_string(version) + "; expected 1, 2 or 3"};
    from.skip(1);  // minor version

    const std::uint32_t length = version == 1 ? from.number<std::uint16_t>(std::endian::little)
                                              : from.number<std::uint32_t>(std::endian::little);
    if (length > longest_header)
        throw header_error{"its header is " + std::to_string(length) + " bytes long; expected at most " +
                           std::to_string(longest_header)};
    return parse(from.text(length));
}

std::string npy_header_text(const npy_header& header)
{
    std::string text = "{'descr': '" + header.descr +
                       "', 'fortran_order': " + (header.fortran_order ? "True" : "False") + ", 'shape': (";
    for (const std::uint64_t length : header.shape) text += std::to_string(length) + ",";
    text += "), }";
    constexpr std::size_t before = 10, alignment = 64;  // before: magic, version, length; a line feed is last
    text.resize((before + text.size() + 1 + alignment - 1) / alignment * alignment - before - 1, ' ');
    text += '\n';
    const std::string start{'\x01', '\x00', static_cast<char>(text.size() % 256), static_cast<char>(text.size() / 256)};
    return std::string{magic} + start + text;
}

}  // namespace zentrix::host
