#pragma once

#include "host/objects/function.h"
#include "host/objects/image.h"
#include "host/objects/tag_group.h"

#include <boost/numeric/conversion/cast.hpp>

namespace zentrix::host {

/// The converted arguments of a host function, by position from 0. The getters of plain values require the kind that
/// the prototype has at that position.
class arguments
{
  public:
    explicit arguments(std::span<const script_value> values) : values_{values} {}

    std::size_t size() const { return values_.size(); }
    const script_value& value(std::size_t i) const { return values_[i]; }
    std::int64_t integer(std::size_t i) const { return std::get<std::int64_t>(values_[i]); }
    /// An integer that the prototype limits to the range of T.
    template <class T>
    T integer_as(std::size_t i) const
    {
        return boost::numeric_cast<T>(integer(i));
    }
    double real(std::size_t i) const { return std::get<double>(values_[i]); }
    const std::string& text(std::size_t i) const { return std::get<std::string>(values_[i]); }
    void* pointer(std::size_t i) const { return std::get<void*>(values_[i]); }

    /// The object of class T. Throws  script_error for a null reference or an object of another class
    template <class T>
    std::shared_ptr<T> object(std::size_t i) const
    {
        if (auto found = object_in<T>(values_[i])) return found;
        throw script_error{is_null(values_[i]) ? "A null reference was passed where an object is needed."
                                               : describe(values_[i]) + " was passed where another object is needed."};
    }
    image_ref picture(std::size_t i) const { return object<image>(i); }
    tag_group_ref tags(std::size_t i) const { return object<tag_group>(i); }

    /// Stores an output; does nothing where the caller passed no cell for it.
    void set(std::size_t i, script_value output) const
    {
        if (const auto& cell = std::get<cell_ref>(values_[i])) cell->value = std::move(output);
    }

  private:
    std::span<const script_value> values_;
};

}  // namespace zentrix::host
