#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/objects/image.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// How an image that changes is to be shown.
struct picture_request
{
    display_mode mode = display_mode::modulus;
    palette shades = palette::grey;
    std::optional<grey_limits> limits = {};  ///< of grey; nothing: sampled_limits of the rendered values
    bool uncorrected = false;                ///< the source instead of the corrected wave
    double zoom = 1;                         ///< screen pixels for each pixel of the image, more than 0
    bool full = false;                       ///< full resolution, whatever the zoom. May take long
};

/// How many of the displayed values are where. Bin i has those from black + i * width to black + (i + 1) * width, width
/// = (white - black) / 256; the first and the last bin also have those beyond.
struct value_histogram
{
    grey_limits range;  ///< black < white; wider than the limits that the picture has by itself
    std::array<std::uint32_t, 256> counts{};
};

/// A picture of a whole image, as large as the image or smaller.
struct rendered_picture
{
    std::uint64_t number = 0;  ///< what `request` returned for it
    std::string failure;       ///< the reason why there is no picture; everything below is empty then
    bool is_known = false;     ///< that failure was reported to the user before
    picture shades;
    /// What the picture shows: complex or real, of the picture's size. Pixel (i, j) is at the middle of its part of the
    /// image, ((i + 0.5) / columns, (j + 0.5) / rows) of its width and height.
    std::shared_ptr<const image> values;
    grey_limits limits;         ///< black and white of `shades`
    grey_limits automatic;      ///< what `limits` are unless they are requested
    value_histogram histogram;  ///< of a sample of the displayed values
    bool is_full = false;       ///< of the image's own size
};

/// Makes pictures of an image without letting its user wait. For one thread, the user's.
class picture_supply
{
  public:
    virtual ~picture_supply() = default;

    /// Sets what is called when `take` may have something; on any thread, so that it only posts a message or the like.
    /// Returns when a call that is running has ended.
    virtual void on_ready(std::function<void()> ready) = 0;

    /// Requests a picture of the present image. A former request that is not met yet is given up, unless its picture is
    /// nearly finished. Returns a number that is larger for each request.
    virtual std::uint64_t request(const picture_request& wanted) = 0;

    /// The newest picture since the last call; nothing if there is none. To be called whenever on_ready's function was:
    /// it also starts the work on the request that waits.
    virtual std::optional<rendered_picture> take() = 0;

    /// As `request` and `take`, but waits for the picture.
    virtual rendered_picture wait_for(const picture_request& wanted) = 0;

    /// Of the image [pixels].
    virtual int width() const = 0;
    virtual int height() const = 0;
};

}  // namespace zentrix::host
