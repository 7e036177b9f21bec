#include "contract/prototype.h"

#include <algorithm>
#include <optional>
#include <span>
#include <stdexcept>

namespace contract {

namespace {

struct word_kind
{
    std::string_view word;
    host_kind kind;
};

constexpr word_kind words[] = {{"void", HOST_VOID},          {"long", HOST_INT32},
                               {"short", HOST_INT32},        {"sint32", HOST_INT32},
                               {"Boolean", HOST_INT32},      {"bool", HOST_INT32},
                               {"uint32", HOST_UINT32},      {"ulong", HOST_UINT32},
                               {"uint64", HOST_UINT64},      {"float", HOST_FLOAT32},
                               {"double", HOST_FLOAT64},     {"complex", HOST_COMPLEX},
                               {"string", HOST_STRING},      {"dm_string", HOST_STRING},
                               {"ImageRef", HOST_IMAGE},     {"BasicImage", HOST_IMAGE},
                               {"RealImagePtr", HOST_IMAGE}, {"ComplexImagePtr", HOST_IMAGE},
                               {"TagGroup", HOST_TAG_GROUP}, {"ScriptObject", HOST_SCRIPT_OBJECT},
                               {"Function", HOST_FUNCTION},  {"ScriptClass", HOST_SCRIPT_CLASS},
                               {"Throwable", HOST_THROWABLE}};

/// Types that end in a star. For these, only a second star denotes an output parameter.
constexpr word_kind starred_words[] = {{"void", HOST_POINTER}, {"char", HOST_STRING}, {"Image", HOST_IMAGE}};

std::optional<host_kind> kind_in(std::span<const word_kind> table, std::string_view word)
{
    const auto found = std::ranges::find(table, word, &word_kind::word);
    if (found == table.end()) return std::nullopt;
    return found->kind;
}

bool is_word_character(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

class parser
{
  public:
    explicit parser(std::string_view text) : text_{text}, rest_{text} {}

    prototype parse()
    {
        prototype parsed;
        parsed.text = text_;
        parsed.result = type();
        if (parsed.result.kind == HOST_OUTPUT) fail("a result cannot be an output parameter");
        parsed.name = word();
        if (parsed.name.empty()) fail("the name is missing");
        if (!take("(")) fail("\"(\" is missing");
        parsed.parameters = parameters();
        if (!take(")")) fail("\")\" or \",\" is missing");
        if (blanks(); !rest_.empty()) fail("text follows the parameter list");
        return parsed;
    }

  private:
    [[noreturn]] void fail(const std::string& what) const
    {
        throw std::invalid_argument{"The prototype \"" + std::string{text_} + "\" cannot be read: " + what + "."};
    }

    void blanks()
    {
        while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t')) rest_.remove_prefix(1);
    }

    bool take(std::string_view mark)
    {
        blanks();
        if (!rest_.starts_with(mark)) return false;
        rest_.remove_prefix(mark.size());
        return true;
    }

    std::string word()
    {
        blanks();
        const auto end = std::ranges::find_if_not(rest_, is_word_character);
        std::string found{rest_.begin(), end};
        rest_.remove_prefix(found.size());
        return found;
    }

    prototype_type type()
    {
        prototype_type found;
        found.word = word();
        if (found.word.empty()) fail("a type is missing");
        bool is_output = take("*");
        auto kind = is_output ? kind_in(starred_words, found.word) : kind_in(words, found.word);
        if (kind && is_output)
            is_output = take("*");  // a second star denotes an output parameter
        else if (is_output)
            kind = kind_in(words, found.word);
        if (!kind) fail("the type \"" + found.word + "\" is unknown");
        found.kind = is_output ? HOST_OUTPUT : *kind;
        if (is_output) found.cell_kind = *kind;
        return found;
    }

    std::vector<prototype_parameter> parameters()
    {
        std::vector<prototype_parameter> list;
        blanks();
        if (rest_.starts_with(")")) return list;
        do {
            if (list.size() > 0 && list.back().variadic) fail("\"...\" is allowed for the last parameter only");
            prototype_parameter one;
            one.type = type();
            one.variadic = take("...");  // before or after the name
            one.name = word();
            one.variadic = one.variadic || take("...");
            list.push_back(std::move(one));
        } while (take(","));
        if (list.size() == 1 && list[0].type.kind == HOST_VOID && list[0].name.empty()) return {};
        if (std::ranges::any_of(list, [](const auto& one) { return one.type.kind == HOST_VOID; }))
            fail("a parameter is void");
        return list;
    }

    std::string_view text_;
    std::string_view rest_;
};

}  // namespace

bool prototype::takes(std::size_t count) const
{
    return is_variadic() ? count + 1 >= parameters.size() : count == parameters.size();
}

const prototype_parameter& prototype::parameter_of(std::size_t index) const
{
    return parameters[std::min(index, parameters.size() - 1)];
}

bool prototype::same_signature(const prototype& other) const
{
    const auto same = [](const prototype_type& a, const prototype_type& b) {
        return a.kind == b.kind && a.cell_kind == b.cell_kind;
    };
    return name == other.name && same(result, other.result) &&
           std::ranges::equal(parameters, other.parameters, [&](const auto& a, const auto& b) {
               return same(a.type, b.type) && a.variadic == b.variadic;
           });
}

prototype parse_prototype(std::string_view text) { return parser{text}.parse(); }

const char* name_of(host_kind kind) noexcept
{
    switch (kind) {
        case HOST_VOID: return "void";
        case HOST_INT32: return "32-bit integer";
        case HOST_UINT32: return "32-bit unsigned integer";
        case HOST_UINT64: return "64-bit unsigned integer";
        case HOST_FLOAT32: return "float";
        case HOST_FLOAT64: return "double";
        case HOST_COMPLEX: return "complex number";
        case HOST_STRING: return "string";
        case HOST_IMAGE: return "image";
        case HOST_TAG_GROUP: return "tag group";
        case HOST_SCRIPT_OBJECT: return "script object";
        case HOST_FUNCTION: return "function";
        case HOST_SCRIPT_CLASS: return "script class";
        case HOST_THROWABLE: return "throwable";
        case HOST_POINTER: return "pointer";
        case HOST_OUTPUT: return "output parameter";
    }
    return "unknown kind";
}

}  // namespace contract
