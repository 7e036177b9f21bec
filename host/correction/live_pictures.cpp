#include "host/correction/live_pictures.h"

#include <utility>

#include "host/correction/picture_values.h"

namespace zentrix::host {

namespace {

using clock = std::chrono::steady_clock;

spectrum_size size_of(const image& pixels)
{
    return {static_cast<int>(pixels.size(0)), static_cast<int>(pixels.size(1))};
}

image_ref wave_of(spectrum_size size)
{
    const std::uint32_t sizes[] = {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height)};
    return image::create("corrected wave", HOST_ELEMENT_COMPLEX64, sizes);
}

}  // namespace

/// What the worker uses for one picture after the other.
struct live_pictures::tools
{
    std::unique_ptr<fft_plan> plan;
    spectrum_size size;  ///< of the plan

    fft_plan& plan_for(spectrum_size wanted)
    {
        if (plan && size == wanted) return *plan;
        plan = nullptr;
        plan = std::make_unique<fft_plan>(wanted.width, wanted.height);
        size = wanted;
        return *plan;
    }
};

/// What the first stage passes to the second.
struct live_pictures::product
{
    picture_request wanted;
    spectrum_size transformed;
    bool is_full;
    image_ref values;  ///< spectrum, then wave
    std::chrono::duration<double> transform{}, shades{};

    rendered_picture render(tools& with, const std::atomic<bool>& given_up)
    {
        const auto start = clock::now();
        if (size_of(*values) != transformed) {
            const auto smaller = wave_of(transformed);
            copy_middle(*values, *smaller);
            values = smaller;
        }
        auto& plan = with.plan_for(transformed);
        plan.give_up_on(&given_up);
        plan.backward(static_cast<std::complex<float>*>(values->data()));
        const auto end = clock::now();
        transform = end - start;
        rendered_picture picture;
        picture.is_full = is_full;
        picture.values = values;
        if (!given_up) show_values(wanted, given_up, picture);
        shades = clock::now() - end;
        return picture;
    }
};

live_pictures::live_pictures(live_correction& corrected) : corrected_{corrected}, tools_{std::make_shared<tools>()} {}

staged_pictures::second_stage live_pictures::begin(const picture_request& wanted)
{
    if (!wanted.uncorrected && !corrected_.failure().empty()) throw known_failure{corrected_.failure()};
    const auto start = clock::now();
    const spectrum_size whole{width(), height()};
    const auto cut = wanted.full ? spectrum_cut{whole, whole} : cut_for(whole, wanted.zoom);
    const image_ref& part = part_for(cut);
    const auto made = std::make_shared<product>(
        product{wanted, cut.transformed, cut.transformed == whole, unused_image(cut.multiplied)});
    if (wanted.uncorrected)
        copy_middle(*part, *made->values);
    else
        corrected_.multiply(part, made->values);
    spent_.transfer += clock::now() - start;

    second_stage next;
    next.is_slow = wanted.full;
    next.work = [made, with = tools_](const std::atomic<bool>& given_up) { return made->render(*with, given_up); };
    next.taken = [this, made, version = corrected_.version()] {
        ++spent_.computed;
        spent_.transform += made->transform;
        spent_.shades += made->shades;
        if (made->is_full && !made->wanted.uncorrected) corrected_.adopt(version, made->values);
    };
    return next;
}

/// The part of the spectrum that is multiplied.
const image_ref& live_pictures::part_for(const spectrum_cut& cut)
{
    const image_ref& whole = corrected_.spectrum();
    if (cut.transformed == size_of(*whole)) return whole;
    if (part_of_ == whole && part_cut_ == cut) return part_;
    part_ = nullptr;
    part_ = middle_of(*whole, cut);
    part_of_ = whole;
    part_cut_ = cut;
    return part_;
}

image_ref live_pictures::unused_image(spectrum_size size)
{
    const spectrum_size whole{width(), height()};  // kept for the next rest of the knob
    std::erase_if(memory_, [&](const image_ref& one) {
        return one.use_count() == 1 && size_of(*one) != size && size_of(*one) != whole;
    });
    for (const auto& one : memory_)
        if (one.use_count() == 1 && size_of(*one) == size) return one;
    return memory_.emplace_back(wave_of(size));
}

}  // namespace zentrix::host
