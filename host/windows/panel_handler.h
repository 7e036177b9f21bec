#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "host/correction/diffractogram_pictures.h"
#include "host/correction/live_pictures.h"
#include "host/correction/transfer_pictures.h"

namespace zentrix::host {

/// The parameters of a correction other than the coefficients.
struct microscope
{
    double kilovolts = 0;
    double pixel_nm = 0;
    lens::coherence spread;
    bool damped = false;  ///< damp by `spread`, see lens::damping::on

    bool operator==(const microscope&) const = default;
};

/// All that the user edits.
struct panel_state
{
    lens::aberrations lens;
    microscope scope;
    /// What was removed by OnApply so far, in this order.
    std::vector<std::pair<lens::aberrations, microscope>> applied;

    bool operator==(const panel_state&) const = default;
};

/// The initial state of the panel.
struct panel_start
{
    lens::aberrations lens;
    display_mode shown = display_mode::modulus;
};

/// The display of a panel_handler.
class panel_view
{
  public:
    virtual ~panel_view() = default;
    /// panel_handler::result, ::transfer_function and what ::pictures and ::transfer_function_pictures show have
    /// changed.
    virtual void pictures_changed() = 0;
    virtual void show_mode(display_mode mode) = 0;
    virtual void show_transfer_function(bool shown) = 0;
    /// Lets the user edit the parameters; nothing when cancelled.
    virtual std::optional<microscope> ask_microscope(const microscope& present) = 0;
    /// The panel was hidden.
    virtual void panel_closed() = 0;
};

/// The handler that the control panel calls: six methods, and the tags that panel and handler share. It removes the
/// aberrations in the tags from a wave.
class panel_handler : public script_object
{
  public:
    /// `wave` as for live_correction. `view` and `engine` must exist until `detach` is called; the library may hold the
    /// handler longer.
    /// Throws  std::invalid_argument for a voltage or pixel size that is not positive, and as lens::panel_tags
    static std::shared_ptr<panel_handler> make(engine& engine, const image_ref& wave, const microscope& scope,
                                               const panel_start& start, panel_view& view);

    const tag_group_ref& tags() const noexcept { return tags_; }
    /// Sets a listener, called before each method with its name and argument.
    void on_call(std::function<void(const std::string& call)> listener) { listener_ = std::move(listener); }

    /// The wave without the aberrations that the panel shows. Ends a preview. Throws as live_correction::result.
    const image_ref& result()
    {
        end_preview();
        return correction_.result();
    }
    /// sin(chi) of the present coefficients, damped by the envelope: real, of the wave's size, zero frequency at
    /// (width / 2, height / 2), from -1 to 1.
    image_ref transfer_function() const;
    /// Pictures of the corrected wave, and of the transfer function.
    live_pictures& pictures() noexcept { return pictures_; }
    transfer_pictures& transfer_function_pictures() noexcept { return transfer_pictures_; }
    diffractogram_pictures& diffractograms() noexcept { return diffractograms_; }

    int width() const noexcept { return correction_.width(); }
    int height() const noexcept { return correction_.height(); }

    const microscope& scope() const noexcept { return scope_; }
    /// The coefficients that the panel shows.
    lens::aberrations coefficients() const;
    /// Shows and corrects with other parameters. Angles are whole degrees.
    /// Throws  std::invalid_argument for parameters with which the wave cannot be corrected; all is then as it was
    void set(const lens::aberrations& lens, const microscope& scope);
    panel_state state() const { return {coefficients(), scope_, applied_}; }
    /// Returns to a former state, to the bit. The sources of all Applies are made again from the first one, which is
    /// kept, so that the memory does not grow with their number.
    /// wanted  what `state` has returned before; the wave can be corrected with it
    void restore(const panel_state& wanted);
    /// The optics of the coefficients that the panel shows.
    lens::optics optics() const;
    /// The spectrum of the wave that is corrected.
    std::shared_ptr<const lazy_spectrum> source() const { return correction_.spectrum(); }
    /// Shows the wave without these aberrations, until the next change; the panel stays as it is.
    void preview(const lens::aberrations& lens);
    bool previewing() const noexcept { return previewing_; }
    /// Ends a preview, if there is one.
    void end_preview()
    {
        if (previewing_) change();
    }
    /// What was removed by OnApply so far, in this order.
    const std::vector<std::pair<lens::aberrations, microscope>>& applied() const noexcept { return applied_; }

    /// The action of the panel's hidden button, for a menu.
    void edit_microscope();
    /// Shows or hides the transfer function and updates the panel's button.
    void set_transfer_function(bool shown);
    /// Makes all later calls do nothing. Returns when no other thread calls the library for this handler.
    void detach();

  private:
    panel_handler(engine& engine, const image_ref& wave, const microscope& scope, panel_view& view);
    void add_methods();
    void fill_tags(const panel_start& start);
    void write_coefficients(const lens::aberrations& lens);
    void change();
    void put_back_tags();
    void apply();
    void set_correction(const lens::aberrations& lens, const microscope& scope);
    void remake_source(const panel_state& wanted);
    void change_display(std::int64_t mode);
    void update_panel() { engine_.call("ZXZentrixPanelUpdate", {}); }

    engine& engine_;
    panel_view* view_;
    microscope scope_;
    lens::aberrations corrected_;  ///< the tags of the last `change` that did not fail
    bool asking_ = false, previewing_ = false;
    live_correction correction_;
    live_pictures pictures_{correction_};
    diffractogram_pictures diffractograms_{correction_};
    transfer_pictures transfer_pictures_{engine_, correction_.width(), correction_.height(),
                                         [this] { return optics(); }};
    tag_group_ref tags_ = memory_tag_group::make_group();
    std::function<void(const std::string&)> listener_;
    std::vector<std::pair<lens::aberrations, microscope>> applied_;
    std::shared_ptr<const lazy_spectrum> first_spectrum_;  ///< before the first Apply
};

}  // namespace zentrix::host
