#pragma once

#include <string>
#include <vector>

#include "host/engine/engine.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// A picture of a known aberration, which shows signs and angles.
struct test_picture
{
    std::string title;    ///< "A1 = 20 nm at 60°, C1 = −20 nm"
    std::string meaning;  ///< a sentence
    picture shown;        ///< grey, 160 x 160
};

/// Three pictures, computed by the library: the modulus of a point with A1 and C1, that of a point with B2, and the
/// diffractogram of a weak amorphous object with C1 and A1.
/// Throws  script_error with the library's message; std::bad_alloc
std::vector<test_picture> test_pictures(engine& engine);

}  // namespace zentrix::host
