#include "host/correction/live_pictures.h"

#include <algorithm>
#include <utility>

#include "host/correction/multiply_spectrum.h"
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
    spectrum_size size;       ///< of the plan
    image_ref part, part_of;  ///< the kept part of a spectrum, and that spectrum
    spectrum_cut part_cut;

    fft_plan& plan_for(spectrum_size wanted)
    {
        if (plan && size == wanted) return *plan;
        plan = nullptr;
        plan = std::make_unique<fft_plan>(wanted.width, wanted.height);
        size = wanted;
        return *plan;
    }

    /// The part of the spectrum that is multiplied.
    const image_ref& part_for(const image_ref& whole, const spectrum_cut& cut)
    {
        if (cut.transformed == size_of(*whole)) return whole;
        if (part_of == whole && part_cut == cut) return part;
        part_of = part = nullptr;
        part = middle_of(*whole, cut);
        part_of = whole;
        part_cut = cut;
        return part;
    }
};

/// A picture that the worker makes.
struct live_pictures::product
{
    picture_request wanted;
    spectrum_cut cut;
    present_correction correction;
    image_ref values;  ///< spectrum, then wave; null: not allocated yet
    bool is_full = false, is_computed = false;
    std::chrono::duration<double> transfer{}, transform{}, shades{};

    rendered_picture render(tools& with, const std::atomic<bool>& given_up)
    {
        rendered_picture picture;
        if (!is_computed && !compute(with, given_up)) return picture;
        const auto start = clock::now();
        picture.is_full = is_full;
        picture.values = values;
        if (!given_up) show_values(wanted, given_up, picture);
        shades = clock::now() - start;
        return picture;
    }

  private:
    /// Returns whether it was not given up.
    bool compute(tools& with, const std::atomic<bool>& given_up)
    {
        const auto spectrum = correction.spectrum->get(&given_up);
        if (!spectrum) return false;
        const auto start = clock::now();
        multiply(with.part_for(spectrum, cut));
        const auto multiplied = clock::now();
        if (!given_up) transform_back(with, given_up);
        transfer = multiplied - start;
        transform = clock::now() - multiplied;
        return !given_up;
    }

    void multiply(const image_ref& part)
    {
        if (!values) values = wave_of(cut.multiplied);
        if (wanted.uncorrected)
            copy_middle(*part, *values);
        else
            correction.multiply(part, values);
    }

    void transform_back(tools& with, const std::atomic<bool>& given_up)
    {
        if (size_of(*values) != cut.transformed) {
            const auto smaller = wave_of(cut.transformed);
            copy_middle(*values, *smaller);
            values = smaller;
        }
        auto& plan = with.plan_for(cut.transformed);
        plan.give_up_on(&given_up);
        const bool is_finite = plan.backward(static_cast<std::complex<float>*>(values->data()));
        require_finite_result(true, is_finite || given_up);
    }
};

live_pictures::live_pictures(live_correction& corrected) : corrected_{corrected}, tools_{std::make_shared<tools>()} {}

queued_pictures::task live_pictures::begin(const picture_request& wanted)
{
    if (!wanted.uncorrected && !corrected_.failure().empty()) throw known_failure{corrected_.failure()};
    const spectrum_size whole{width(), height()};
    const auto cut = wanted.full ? spectrum_cut{whole, whole} : cut_for(whole, wanted.zoom);
    const bool is_full = cut.transformed == whole,
               is_known = is_full && !wanted.uncorrected && corrected_.known_result();
    const auto made = std::make_shared<product>(
        product{wanted, cut, corrected_.present(), is_known ? corrected_.known_result() : unused_image(cut.multiplied),
                is_full, is_known});
    last_ = made;

    task next;
    next.is_slow = wanted.full;
    next.work = [made, with = tools_](const std::atomic<bool>& given_up) { return made->render(*with, given_up); };
    next.taken = [this, made, version = corrected_.version()] {
        ++spent_.computed;
        spent_.transfer += made->transfer;
        spent_.transform += made->transform;
        spent_.shades += made->shades;
        if (made->is_full && !made->wanted.uncorrected) corrected_.adopt(version, made->values);
    };
    next.failed = [this, made, version = corrected_.version()](const std::string& failure) {
        if (!made->wanted.uncorrected && version == corrected_.version()) corrected_.set_failure(failure);
    };
    return next;
}

/// Memory of a former product that nobody uses any more; null if there is none of this size.
image_ref live_pictures::unused_image(spectrum_size size)
{
    if (last_ && last_->values && std::ranges::find(memory_, last_->values) == memory_.end())
        memory_.push_back(last_->values);
    last_ = nullptr;
    const spectrum_size whole{width(), height()};  // kept for the next rest of the knob
    std::erase_if(memory_, [&](const image_ref& one) {
        return one.use_count() == 1 && size_of(*one) != size && size_of(*one) != whole;
    });
    for (const auto& one : memory_)
        if (one.use_count() == 1 && size_of(*one) == size) return one;
    return nullptr;
}

}  // namespace zentrix::host
