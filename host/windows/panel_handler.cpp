#include "host/windows/panel_handler.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "lens/electron.h"
#include "lens/panel_tags.h"

namespace zentrix::host {

namespace {

lens::optics optics_of(const lens::aberrations& lens, const microscope& scope)
{
    lens::optics setup;
    setup.wavelength_nm = lens::electron_wavelength(scope.kilovolts);
    setup.pixel_nm = scope.pixel_nm;
    setup.spread = scope.spread;
    setup.lens = lens;
    return setup;
}

}  // namespace

std::shared_ptr<panel_handler> panel_handler::make(engine& engine, const image_ref& wave, const microscope& scope,
                                                   const panel_start& start, panel_view& view)
{
    std::shared_ptr<panel_handler> made{new panel_handler{engine, wave, scope, view}};
    made->fill_tags(start);
    made->change();
    return made;
}

panel_handler::panel_handler(engine& engine, const image_ref& wave, const microscope& scope, panel_view& view)
    : script_object{"panel handler"}, engine_{engine}, view_{&view}, scope_{scope}, correction_{engine, wave}
{
    add_methods();
}

void panel_handler::fill_tags(const panel_start& start)
{
    for (const auto& [key, is_long, value] : lens::panel_tags(start.lens, static_cast<int>(start.shown) + 1))
        tags_->write(key, is_long ? tag{static_cast<std::int32_t>(value)} : tag{static_cast<float>(value)});
}

void panel_handler::add_methods()
{
    // The handler owns its methods, so a plain pointer to it is safe.
    const auto add = [this](const std::string& name, const char* parameters, auto body) {
        add_method("void " + name + "( ScriptObject self" + parameters + " )",
                   [this, name, body](std::span<const script_value> arguments) -> script_value {
                       if (!view_) return {};
                       const auto* const argument =
                           arguments.size() > 1 ? std::get_if<std::int64_t>(&arguments[1]) : nullptr;
                       if (listener_) listener_(argument ? name + " " + std::to_string(*argument) : name);
                       body(argument ? *argument : 0);
                       return {};
                   });
    };
    add("OnChange", "", [this](std::int64_t) { change(); });
    add("OnApply", "", [this](std::int64_t) { apply(); });
    add("OnChangeDisplay", ", uint32 nMode", [this](std::int64_t mode) { change_display(mode); });
    add("OnPCTF", "",
        [this](std::int64_t) { set_transfer_function(tags_->read_long(lens::has_pctf_key).value_or(0) == 0); });
    add("OnPreferences", "", [this](std::int64_t) { edit_microscope(); });
    add("OnClose", "", [this](std::int64_t) { view_->panel_closed(); });
}

lens::optics panel_handler::optics() const { return optics_of(coefficients(), scope_); }

lens::aberrations panel_handler::coefficients() const
{
    return lens::read_aberrations([&](const std::string& key) { return tags_->read_float(key).value_or(0.0F); });
}

void panel_handler::write_coefficients(const lens::aberrations& lens)
{
    for (const auto& about : lens::all_coefficients) {
        const lens::polar& value = lens[about.which];
        tags_->write(lens::modulus_key(about.which), static_cast<float>(value.modulus));
        if (about.symmetry != 0)
            tags_->write(lens::angle_key(about.which),
                         static_cast<std::int32_t>(lens::panel_angle(value.angle_degrees)));
    }
    update_panel();
}

void panel_handler::set(const lens::aberrations& lens, const microscope& scope)
{
    lens::panel_tags(lens, 1);  // throws for what the panel cannot show
    const lens::aberrations former_lens = coefficients();
    const microscope former_scope = std::exchange(scope_, scope);
    try {
        write_coefficients(lens);
        change();
    } catch (...) {
        scope_ = former_scope;
        write_coefficients(former_lens);
        change();
        throw;
    }
}

void panel_handler::set_correction(const lens::aberrations& lens, const microscope& scope)
{
    correction_.set(optics_of(lens, scope), scope.damped ? lens::damping::on : lens::damping::off);
}

void panel_handler::preview(const lens::aberrations& lens)
{
    set_correction(lens, scope_);
    previewing_ = true;
    view_->pictures_changed();
}

void panel_handler::change()
{
    const auto wanted = coefficients();
    try {
        set_correction(wanted, scope_);
    } catch (const std::invalid_argument&) {
        put_back_tags();
        throw;
    }
    corrected_ = wanted;
    previewing_ = false;
    view_->pictures_changed();
}

/// The panel sees by the tags that its number was refused.
void panel_handler::put_back_tags()
{
    for (const auto& about : lens::all_coefficients) {
        const auto former = static_cast<float>(corrected_[about.which].modulus);
        const auto key = lens::modulus_key(about.which);
        if (tags_->read_float(key) != former) tags_->write(key, former);
    }
}

void panel_handler::apply()
{
    end_preview();
    const auto former = correction_.spectrum();
    correction_.accept();
    if (applied_.empty()) first_spectrum_ = former;
    applied_.emplace_back(coefficients(), scope_);
    write_coefficients({});
    change();
}

void panel_handler::restore(const panel_state& wanted)
{
    if (wanted.applied != applied_) remake_source(wanted);
    scope_ = wanted.scope;
    write_coefficients(wanted.lens);
    change();
}

void panel_handler::remake_source(const panel_state& wanted)
{
    const auto former = correction_.spectrum();
    const bool continues =
        applied_.size() < wanted.applied.size() && std::equal(applied_.begin(), applied_.end(), wanted.applied.begin());
    try {
        if (!continues) correction_.use_spectrum(first_spectrum_);
        for (std::size_t i = continues ? applied_.size() : 0; i < wanted.applied.size(); ++i) {
            set_correction(wanted.applied[i].first, wanted.applied[i].second);
            correction_.accept();
        }
    } catch (...) {
        correction_.use_spectrum(former);
        change();
        throw;
    }
    if (applied_.empty()) first_spectrum_ = former;
    applied_ = wanted.applied;
    if (applied_.empty()) first_spectrum_.reset();
}

void panel_handler::change_display(std::int64_t mode)
{
    view_->show_mode(static_cast<display_mode>(std::clamp<std::int64_t>(mode, 1, 5) - 1));
}

void panel_handler::set_transfer_function(bool shown)
{
    tags_->write(lens::has_pctf_key, std::int32_t{shown});
    view_->show_transfer_function(shown);
    update_panel();
}

void panel_handler::edit_microscope()
{
    if (asking_) return;  // the panel can be used while the dialog is open
    asking_ = true;
    const auto edited = view_->ask_microscope(scope_);
    asking_ = false;
    if (!edited) return;
    const microscope former = std::exchange(scope_, *edited);
    try {
        change();
    } catch (...) {
        scope_ = former;
        change();
        throw;
    }
}

void panel_handler::detach()
{
    view_ = nullptr;
    queued_pictures* const all[] = {&pictures_, &transfer_pictures_, &diffractograms_};
    for (auto* const one : all) one->give_up();
    for (auto* const one : all) one->give_up_and_wait();
}

image_ref panel_handler::transfer_function() const
{
    return transfer_function_image(engine_, optics(), correction_.width(), correction_.height());
}

}  // namespace zentrix::host
