// The pictures of the conventions show the angles that their texts name.
#include "host/correction/test_pictures.h"

#include "host/correction/transfer_pictures.h"
#include "host/engine/library.h"
#include "lens/electron.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace {

using namespace zentrix::host;
namespace lens = zentrix::lens;

/// The sum over all pixels of their brightness times a function of the place relative to the centre, y up.
double moment(const picture& shown, const std::function<double(double, double)>& of)
{
    double sum = 0;
    for (int y = 0; y < shown.height; ++y)
        for (int x = 0; x < shown.width; ++x)
            sum += shown.bytes[static_cast<std::size_t>(y * shown.width + x)] *
                   of(x - shown.width / 2, shown.height / 2 - y);
    return sum;
}

/// The correlation of a diffractogram with |sin chi| for C1 = -150 nm and A1 = 60 nm.
double correlation(engine& host, const picture& shown, double angle_of_A1)
{
    lens::optics setup;
    setup.wavelength_nm = lens::electron_wavelength(300);
    setup.pixel_nm = 0.05;
    setup.lens[lens::coefficient::C1] = {-150, 0};
    setup.lens[lens::coefficient::A1] = {60, angle_of_A1};
    const auto function = transfer_function_image(host, setup, 512, 512);
    const auto expected = [&](double x, double y) {
        return std::abs(function->at<float>(256 + static_cast<int>(x), 256 - static_cast<int>(y)));
    };
    const double pixels = 160.0 * 160, mean = moment(shown, [](double, double) { return 1; }) / pixels;
    double sum = 0, squares = 0, products = 0, brightness = 0;
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 160; ++x) {
            const double here = expected(x - 80, 80 - y),
                         grey = shown.bytes[static_cast<std::size_t>(160 * y + x)] - mean;
            sum += here;
            squares += here * here;
            products += here * grey;
            brightness += grey * grey;
        }
    return products / std::sqrt(brightness * (squares - sum * sum / pixels));
}

TEST(TestPictures, ShowTheAnglesThatTheirTextsName)
{
    engine_options options;
    options.file_exists = [](const std::string&) { return true; };
    engine host{options};
    library loaded{host, ZENTRIX_LIBRARY_FILE};
    const auto pictures = test_pictures(host);
    const auto degrees = [](double up, double right) { return std::atan2(up, right) * 180 / std::numbers::pi; };

    const picture &line = pictures.at(0).shown, &comet = pictures.at(1).shown, &rings = pictures.at(2).shown;
    const double across = moment(line, [](double x, double y) { return x * x - y * y; }),
                 diagonal = moment(line, [](double x, double y) { return 2 * x * y; });
    EXPECT_NEAR(degrees(diagonal, across) / 2, -60, 2) << "the axis at 120 degrees";
    const double right = moment(comet, [](double x, double) { return x; }),
                 up = moment(comet, [](double, double y) { return y; });
    EXPECT_NEAR(degrees(up, right), 60, 3);
    const double named = correlation(host, rings, 60);
    EXPECT_GT(named, 0.8);
    for (const double other : {-60.0, 150.0, 90.0}) EXPECT_LT(correlation(host, rings, other), named / 2) << other;
}

}  // namespace
