#include "sdk/prototype.h"

#include <cctype>
#include <stdexcept>
#include <utility>

namespace Gatan::PlugIn {
namespace {

struct type_word
{
    std::string_view word;
    host_kind kind;
};

constexpr type_word type_words[] = {
    {"void", HOST_VOID},           {"long", HOST_INT32},
    {"short", HOST_INT32},         {"sint32", HOST_INT32},
    {"Boolean", HOST_INT32},       {"bool", HOST_INT32},
    {"uint32", HOST_UINT32},       {"ulong", HOST_UINT32},
    {"uint64", HOST_UINT64},       {"float", HOST_FLOAT32},
    {"double", HOST_FLOAT64},      {"complex", HOST_COMPLEX},
    {"string", HOST_STRING},       {"dm_string", HOST_STRING},
    {"char", HOST_STRING},  // only as char*
    {"ImageRef", HOST_IMAGE},      {"BasicImage", HOST_IMAGE},
    {"RealImagePtr", HOST_IMAGE},  {"ComplexImagePtr", HOST_IMAGE},
    {"Image", HOST_IMAGE},  // only as Image*
    {"TagGroup", HOST_TAG_GROUP},  {"ScriptObject", HOST_SCRIPT_OBJECT},
    {"Function", HOST_FUNCTION},   {"ScriptClass", HOST_SCRIPT_CLASS},
    {"Throwable", HOST_THROWABLE},
};

class reader
{
  public:
    explicit reader(std::string_view text) : text_{text} {}

    prototype read()
    {
        prototype found;
        const prototype_parameter result = type();
        if (result.kind == HOST_OUTPUT || result.repeated) fail("a result cannot be an output");
        found.result = result.kind;
        found.name = word();
        if (found.name.empty()) fail("a name is missing");
        expect('(');
        if (!take(')')) read_parameters(found.parameters);
        skip_blanks();
        if (at_ != text_.size()) fail("something follows the parameter list");
        return found;
    }

  private:
    void read_parameters(std::vector<prototype_parameter>& parameters)
    {
        do {
            prototype_parameter parameter = type();
            if (take_text("...")) parameter.repeated = true;
            parameter.name = word();
            if (take_text("...")) parameter.repeated = true;
            if (parameter.kind == HOST_VOID) {
                if (!parameters.empty()) fail("void stands among parameters");
                expect(')');
                return;
            }
            parameters.push_back(std::move(parameter));
        } while (take(','));
        expect(')');
    }

    prototype_parameter type()
    {
        const std::string name = word();
        const type_word* known = nullptr;
        for (const auto& row : type_words)
            if (row.word == name) known = &row;
        if (!known) fail("an unknown type: '" + name + "'");
        prototype_parameter parameter{known->kind, HOST_VOID, false, {}};
        const bool star = take('*');
        if (name == "char" || name == "Image") {
            if (!star) fail("'" + name + "' is known with a '*' only");
        } else if (star && known->kind == HOST_VOID)
            parameter.kind = HOST_POINTER;
        else if (star) {
            parameter.cell = known->kind;
            parameter.kind = HOST_OUTPUT;
        }
        return parameter;
    }

    std::string word()
    {
        skip_blanks();
        const std::size_t begin = at_;
        while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '_')) ++at_;
        return std::string{text_.substr(begin, at_ - begin)};
    }

    bool take_text(std::string_view wanted)
    {
        skip_blanks();
        if (text_.substr(at_, wanted.size()) != wanted) return false;
        at_ += wanted.size();
        return true;
    }
    bool take(char wanted) { return take_text({&wanted, 1}); }
    void expect(char wanted)
    {
        if (!take(wanted)) fail(std::string{"'"} + wanted + "' is missing");
    }
    void skip_blanks()
    {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    }

    [[noreturn]] void fail(const std::string& why) const
    {
        throw std::invalid_argument{"The prototype \"" + std::string{text_} + "\" cannot be read: " + why + "."};
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace

prototype read_prototype(std::string_view text) { return reader{text}.read(); }

}  // namespace Gatan::PlugIn
