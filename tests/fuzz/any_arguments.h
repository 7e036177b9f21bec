#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/objects/function.h"
#include "host/objects/image.h"
#include "tests/fuzz/fuzz.h"

namespace fuzz {

/// Random arguments of a script function: images of any type, size and layout, also null, the same one twice, and views
/// that overlap; numbers; texts; tag groups; output parameters. Sizes are small, and numbers that only make a call long
/// are bounded.
class any_arguments
{
  public:
    any_arguments(input& from, const zentrix::host::prototype& of);

    const std::vector<zentrix::host::script_value>& values() const { return values_; }
    /// The images among them.
    const std::vector<zentrix::host::image_ref>& images() const { return images_; }
    /// Whether two images share memory without being the same.
    bool overlap() const { return overlap_; }
    /// Numbers, texts and pixels, without the gaps between pixels.
    std::string value_bytes() const;
    /// All memory of the images with the gaps between pixels, and the outputs, as bytes.
    std::string state() const;
    /// Ends the process when memory around the images was written, or an image is still locked.
    void check_guards() const;

  private:
    /// The memory of an image, between guards.
    struct memory
    {
        std::vector<unsigned char> bytes;
    };

    zentrix::host::script_value any_value(input& from, const zentrix::host::prototype_type& type);
    zentrix::host::image_ref any_image(input& from);
    zentrix::host::image_ref new_image(input& from);
    zentrix::host::image_ref overlapping_view(input& from, std::size_t of);
    std::int64_t any_integer(input& from) const;

    std::string function_;
    std::vector<zentrix::host::script_value> values_;
    std::vector<zentrix::host::image_ref> images_;
    bool overlap_ = false;
    std::vector<std::shared_ptr<memory>> memories_;
};

/// A result as bytes that depend neither on addresses nor on payloads of NaNs.
std::string bytes_of(const zentrix::host::script_value& value);

}  // namespace fuzz
