#include "plugin/core.h"

#include "binding/native.h"
#include "entry/timing_scope.h"
#include "functions/registration.h"
#include "image/processor.h"
#include "optics/shifter_entry.h"
#include "optics/unwrap/goldstein_entry.h"
#include "optics/wave_transfer_entry.h"
#include "plugin/handler.h"
#include "plugin/panel_functions.h"

namespace QORV::DM {
namespace {

using qorv::binding::add_function;

constexpr char prefix_zx[] = "ZX";

constexpr char wave_transfer_prototype[] =
    "ComplexImagePtr ZXWTFMulDLL(ComplexImagePtr cimSrc, float lambda, float step, float c20, complex c22, float c40, "
    "float c60, complex c31, complex c33, complex c42, complex c44, complex c51, complex c53, complex c55, "
    "complex c62, complex c64, complex c66, float c2s, float bdiv, float vib, long  lEnvelope, complex tilt, "
    "ComplexImagePtr cimDst)";
constexpr char goldstein_prototype[] = "ImageRef ZXGoldstain(Image * imgSrc, long nMaxBoxSize)";
constexpr char shifter_prototype[] =
    "ComplexImagePtr ZXImageShifterForSemper(ComplexImagePtr cimSrc, long nCX, long nCY, double fShiftX, "
    "double fShiftY, double fSign, ComplexImagePtr cimDst)";

/// Script function ZXSetUseSIMD: 0 selects the plain variant of every kernel that has one; any other value selects what
/// the processor supports.
void SetUseSIMDDM(std::int32_t isUseSIMD)
{
    const qorv::dm::timing_scope timing{"SetUseSIMDDM"};
    qorv::dm::set_use_simd(isUseSIMD);
}

/// Registers the switch. Also reads the processor's features, so that vector kernels are enabled from the start.
void register_switch(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix)
{
    qorv::dm::read_processor_features();
    add_function<SetUseSIMDDM>(plug_in, "void " + prefix + "SetUseSIMD(long isUseSIMD)");
}

}  // namespace

CZenkor::CZenkor(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prefix)
{
    register_switch(plug_in, prefix_zx);
    qorv::functions::register_functions(plug_in, prefix_zx);
    add_function<qorv::optics::WTFMulDM>(plug_in, wave_transfer_prototype);
    add_function<qorv::optics::GoldstainDM>(plug_in, goldstein_prototype);
    // The panel's functions take their prefix from the caller. Blanks and parameter names are part of the prototypes.
    add_function<qorv::dm::SetZentrixHandlerDM>(
        plug_in, "void " + prefix + "SetZentrixHandler( ScriptObject hander, TagGroup tag )");
    add_function<qorv::dm::ZentrixPanelUpdateDM>(plug_in, "void " + prefix + "ZentrixPanelUpdate( void )");
    add_function<qorv::optics::ImageShifterForSemperDM>(plug_in, shifter_prototype);
    add_function<qorv::dm::IsPaletteOpenDM>(plug_in, "long " + prefix + "IsPaletteOpen(void )");
    add_function<qorv::dm::IsWindowVisibleDM>(plug_in, "long " + prefix + "IsWindowVisible(void )");
    qorv::dm::register_panel(plug_in);
}

}  // namespace QORV::DM
