#pragma once

#include <complex>
#include <vector>

#include "lens/transfer.h"

/// The phase contrast transfer function: the sine of chi times the damping envelope, by which a lens transfers weak
/// phases to contrast.
namespace zentrix::lens {

/// At one frequency, as transfer_value.
double contrast_transfer(const transfer_arguments& arguments, std::complex<double> frequency);

/// The largest change [rad] of chi from a frequency to the neighbours right and above of it at this distance. A
/// function that is sampled at this distance is undersampled where it is more than pi.
/// distance  [1/nm]
double largest_phase_step(const transfer_arguments& arguments, std::complex<double> frequency, double distance);

/// Along the radius; means over 72 directions unless all terms are round. Frequencies in 1/nm.
struct contrast_profile
{
    double step = 0;               ///< from one element to the next; the first is at zero
    std::vector<double> contrast;  ///< means
    std::vector<double> envelope;  ///< means
    std::vector<double> zeros;     ///< where the mean contrast changes its sign, up to the two limits below
    double information_limit = 0;  ///< where the envelope falls below exp(-2); 0: not up to the last element
    double undersampled_from = 0;  ///< of the distance; 0: nowhere
};

/// arguments  as of transfer_value
/// limit      the last frequency
/// count      of elements, 2 or more
/// distance   from one frequency to the next in the image for which undersampling is judged
contrast_profile profile_of(const transfer_arguments& arguments, double limit, std::size_t count, double distance);

}  // namespace zentrix::lens
