#include "lens/aberration_basis.h"

#include <cmath>

namespace zentrix::lens {

int order_of(coefficient which) { return traits(which).name[1] - '0' + 1; }

bool is_even(coefficient which) { return order_of(which) % 2 == 0; }

std::complex<double> aberration_term(coefficient which, std::complex<double> w)
{
    const coefficient_traits& about = traits(which);
    std::complex<double> term = 1.0 / about.divisor;
    for (int i = 0; i < about.symmetry; ++i) term *= std::conj(w);
    for (int i = about.symmetry; i < order_of(which); i += 2) term *= std::norm(w);
    return term;
}

}  // namespace zentrix::lens
