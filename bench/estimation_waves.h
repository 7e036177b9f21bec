#pragma once

#include <complex>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/objects/image.h"
#include "lens/transfer.h"

/// Waves with known aberrations, to estimate them.
namespace zentrix::bench {

enum class specimen
{
    crystal,      ///< pairs of atom columns with a dislocation, an edge and adatoms; phases up to 0.9 rad
    amorphous,    ///< a Gaussian random phase, 0.25 rad rms
    target,       ///< bars that absorb, all alike: turned by a constant angle, this is a phase object
    grey_target,  ///< bars in all directions, each group with a modulus of its own: no phase object
    vacuum        ///< nothing
};

struct simulation
{
    specimen object = specimen::crystal;
    int size = 512;  ///< of the recorded wave, square
    double pixel_nm = 0.02;
    double wavelength_nm = 0;
    lens::aberrations lens;
    lens::coherence spread;
    double strength = 1;      ///< factor of the crystal's phase; negative: columns advance the phase the other way
    double absorption = 0;    ///< the modulus is exp(-absorption * phase)
    double noise = 0;         ///< rms of the complex noise of a pixel; the vacuum has modulus 1
    double aperture = 0;      ///< highest frequency that passes [1/nm]; 0: all of them
    double widest_bar = 9;    ///< of the grey target [pixels]
    bool is_cropped = false;  ///< from a wave of 3/2 the size, so that the edges do not meet
    std::uint32_t seed = 1;   ///< of object and noise
};

/// The wave at the detector, complex of two floats.
host::image_ref simulate(const simulation& how);

/// A microscope out of trim: C1 within 100 nm, A1 to 30 nm, B2 to 500 nm, A2 to 400 nm, C3 within 0.2 mm, S3 to 3 um;
/// all angles.
lens::aberrations random_lens(std::uint32_t seed);
/// The same for light of 405 nm: C1 within 50 mm, A1 to 15 mm, nothing else.
lens::aberrations light_lens(const lens::aberrations& electrons);

}  // namespace zentrix::bench
