#include "host/engine/native_function.h"

#include "host/engine/marshalling.h"
#include "host/objects/conversion.h"

#include <cstring>

namespace zentrix::host {

namespace {

/// The plain arguments of one call into the library. Lent objects and cells are released at the end of the call.
class native_arguments
{
  public:
    native_arguments(const prototype& signature, std::span<const script_value> values, handle_table& handles)
        : native_arguments{signature, values.size(), handles}  // so that the destructor cleans up when this one throws
    {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto& type = signature.parameter_of(i).type;
            if (type.kind == HOST_OUTPUT)
                add_cell(i, std::get<cell_ref>(values[i]), cell_type_of(type));
            else
                add_value(i, values[i], type);
        }
    }

    ~native_arguments()
    {
        for (std::size_t i = 0; i < plain_.size(); ++i) {
            if (lent_object(i)) handles_.end_loan(plain_[i].as.object);
            if (cell_object(i)) handles_.release(cells_[i].as.object);
        }
    }
    native_arguments(const native_arguments&) = delete;
    native_arguments& operator=(const native_arguments&) = delete;

    std::span<const host_value> plain() const { return plain_; }

    /// True when the library wrote to a cell.
    bool changed() const
    {
        return !cells_.empty() && std::memcmp(cells_.data(), before_.data(), cells_.size() * sizeof(host_value)) != 0;
    }

    /// The values in the cells after the call, in a script's form, by argument.
    std::vector<script_value> outputs(journal& records) const
    {
        std::vector<script_value> found(cells_.size());
        for (std::size_t i = 0; i < cells_.size(); ++i)
            if (has_cell(i))
                found[i] = from_library(handles_, records, cells_[i], cell_type_of(signature_.parameter_of(i).type));
        return found;
    }

    bool has_cell(std::size_t i) const { return plain_[i].kind == HOST_OUTPUT && plain_[i].as.cell; }

  private:
    native_arguments(const prototype& signature, std::size_t count, handle_table& handles)
        : signature_{signature}, handles_{handles}, plain_(count), cells_(count), before_(count)
    {}

    void add_value(std::size_t i, const script_value& value, const prototype_type& type)
    {
        const auto kind = static_cast<std::uint32_t>(type.kind);
        if (type.kind == HOST_STRING)
            plain_[i].as.object = handles_.lend(string_for_library(std::get<std::string>(value)));
        else if (is_counted(type.kind))
            plain_[i].as.object = handles_.lend(std::get<object_ref>(value));
        else
            plain_[i] = counted_for_library(handles_, value, type);
        plain_[i].kind = kind;
    }

    void add_cell(std::size_t i, const cell_ref& cell, const prototype_type& type)
    {
        plain_[i].kind = HOST_OUTPUT;
        if (!cell) return;
        const bool fits = conversion_cost(cell->value, type).has_value();
        cells_[i] = counted_for_library(handles_, fits ? cell->value : default_value(type), type);
        plain_[i].as.cell = &cells_[i];
        before_[i] = cells_[i];
    }

    bool lent_object(std::size_t i) const { return is_counted(static_cast<host_kind>(plain_[i].kind)); }
    bool cell_object(std::size_t i) const { return has_cell(i) && is_counted(static_cast<host_kind>(cells_[i].kind)); }

    const prototype& signature_;
    handle_table& handles_;
    std::vector<host_value> plain_;
    std::vector<host_value> cells_;   // by argument, used for outputs; never resized, since plain_ points into it
    std::vector<host_value> before_;  // the cells before the call
};

class native_function : public function
{
  public:
    native_function(prototype signature, host_native native, void* context, handle_table& handles, journal& records)
        : function{std::move(signature)}, native_{native}, context_{context}, handles_{handles}, records_{records}
    {}

    script_value call(std::span<const script_value> values) override
    {
        native_arguments arguments{signature(), values, handles_};
        host_value result{};
        host_object* error = nullptr;
        const auto plain = arguments.plain();
        const auto failed = native_(context_, plain.data(), static_cast<std::uint32_t>(plain.size()), &result, &error);
        if (failed) fail(arguments, error);
        auto answer = take_result(result);
        auto outputs = arguments.outputs(records_);
        for (std::size_t i = 0; i < outputs.size(); ++i)
            if (arguments.has_cell(i)) std::get<cell_ref>(values[i])->value = std::move(outputs[i]);
        return answer;
    }

  private:
    [[noreturn]] void fail(const native_arguments& arguments, host_object* error) const
    {
        if (arguments.changed())
            records_.add_violation("\"" + signature().text + "\" failed but wrote to an output parameter.");
        const auto thrown = std::dynamic_pointer_cast<throwable>(handles_.take(error));
        throw script_error{thrown ? thrown->text() : signature().name + " failed and gave no reason."};
    }

    script_value take_result(const host_value& result) const
    {
        auto answer = from_library(handles_, records_, result, signature().result);
        if (is_counted(signature().result.kind)) handles_.take(result.as.object);
        return answer;
    }

    host_native native_;
    void* context_;
    handle_table& handles_;
    journal& records_;
};

}  // namespace

function_ref make_native_function(prototype signature, host_native native, void* context, handle_table& handles,
                                  journal& records)
{
    return std::make_shared<native_function>(std::move(signature), native, context, handles, records);
}

}  // namespace zentrix::host
