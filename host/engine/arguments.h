#pragma once

#include "host/objects/function.h"
#include "host/objects/image.h"
#include "host/objects/tag_group.h"

#include <boost/numeric/conversion/cast.hpp>

namespace zentrix::host {

/// A host function's converted arguments, by position from 0, with the checks that all host functions share.
class arguments
{
  public:
    explicit arguments(std::span<const script_value> values) : values_{values} {}

    std::size_t size() const { return values_.size(); }
    std::int64_t integer(std::size_t i) const { return std::get<std::int64_t>(values_[i]); }
    /// An integer that the prototype's type has limited to T's range.
    template <class T>
    T integer_as(std::size_t i) const
    {
        return boost::numeric_cast<T>(integer(i));
    }
    double real(std::size_t i) const { return std::get<double>(values_[i]); }
    const std::string& text(std::size_t i) const { return std::get<std::string>(values_[i]); }
    void* pointer(std::size_t i) const { return std::get<void*>(values_[i]); }

    /// The object of class T. Throws  script_error for a null reference or another class
    template <class T>
    std::shared_ptr<T> object(std::size_t i) const
    {
        if (auto held = object_in<T>(values_[i])) return held;
        throw script_error{is_null(values_[i]) ? "A null reference was passed where an object is needed."
                                               : describe(values_[i]) + " was passed where another object is needed."};
    }
    image_ref picture(std::size_t i) const { return object<image>(i); }
    tag_group_ref tags(std::size_t i) const { return object<tag_group>(i); }

    /// Stores an output, if the caller wants it.
    void set(std::size_t i, script_value value) const
    {
        if (const auto& wanted = std::get<cell_ref>(values_[i])) wanted->value = std::move(value);
    }

  private:
    std::span<const script_value> values_;
};

}  // namespace zentrix::host
