#pragma once

#include <span>
#include <vector>

#include "host/estimation/band_model.h"
#include "host/estimation/search_run.h"

namespace zentrix::host {

/// Sharpness as a function of the variables of a model, of the whole wave or of one of its quarters: Tamura's
/// coefficient of the gradient of the modulus. By one thread at a time.
class sharpness
{
  public:
    enum area
    {
        whole,
        first_quarter,
        areas = first_quarter + 4
    };

    sharpness(search_run& run, const band_model& model);

    double operator()(std::span<const double> variables, int part = whole)
    {
        return at(variables, std::span{&part, 1})[0];
    }
    /// For several areas; costs one transform.
    std::vector<double> at(std::span<const double> variables, std::span<const int> of);

    /// How the sharpness of the whole wave depends on each of tiles x tiles tiles: its derivative for the weight of the
    /// tile, in first order what the tile adds to it. The sum is 0.
    std::vector<double> influences(std::span<const double> variables, std::ptrdiff_t tiles);

  private:
    search_run* run_;
    const band_model* model_;
    band_evaluator evaluate_;
    std::vector<std::vector<float>> weights_;  ///< for each area
};

/// The maximum near a start, of the whole wave or of one of its quarters.
/// step    of C1 and A1 to begin with [nm]
/// Throws  search_stopped
imaging sharpest_near(search_run& run, const band_model& band, const imaging& start, double step,
                      int part = sharpness::whole);

}  // namespace zentrix::host
