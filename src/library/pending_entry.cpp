// Script functions that are registered but cannot be computed yet; each fails with one text that says so. A function
// leaves this file when its own entry arrives.
#include <stdexcept>

#include "library/files_entry.h"
#include "library/reciprocal_entry.h"
#include "library/statistics_entry.h"
#include "library/window_entry.h"

namespace qorv::library {
namespace {

[[noreturn]] void not_available_yet() { throw std::runtime_error{"This function is not available yet."}; }

}  // namespace

// files_entry.h
tag_group_ref SelectImageFilesDM(output<std::string>, const std::string&, output<std::int32_t>, output<std::int32_t>,
                                 output<std::int32_t>)
{
    not_available_yet();
}
tag_group_ref SelectImageFilesOwnedDM(output<std::string>, const std::string&, output<std::int32_t>,
                                      output<std::int32_t>, output<std::int32_t>, const std::string&)
{
    not_available_yet();
}
image_ref OpenImageDM(const std::string&, std::int32_t, std::int32_t, std::int32_t, std::int32_t)
{
    not_available_yet();
}
void SortNumberedNameDM(tag_group_ref) { not_available_yet(); }

// statistics_entry.h
void SurveyDifferenceDM(image_ref, image_ref, output<double>, output<double>, output<double>, output<double>,
                        output<double>, output<double>, output<double>)
{
    not_available_yet();
}
void MinMaxStableDM(image_ref, output<std::int32_t>, output<std::int32_t>, output<std::int32_t>, output<double>,
                    output<std::int32_t>, output<std::int32_t>, output<std::int32_t>, output<double>)
{
    not_available_yet();
}
void MinMaxDM(image_ref, output<std::int32_t>, output<std::int32_t>, output<std::int32_t>, output<double>,
              output<std::int32_t>, output<std::int32_t>, output<std::int32_t>, output<double>)
{
    not_available_yet();
}
double MinDM(image_ref, output<std::int32_t>, output<std::int32_t>, output<std::int32_t>) { not_available_yet(); }
double MaxDM(image_ref, output<std::int32_t>, output<std::int32_t>, output<std::int32_t>) { not_available_yet(); }
image_ref RadialSurveyDM(image_ref, std::int32_t, std::int32_t, double, double) { not_available_yet(); }
image_ref WeightDM(image_ref, image_ref, std::int32_t, std::int32_t, float, float, std::int32_t, image_ref)
{
    not_available_yet();
}
std::int32_t GetCenterOfMassDM(image_ref, output<double>, output<double>, double, std::int32_t, double)
{
    not_available_yet();
}

// window_entry.h
image_ref FTWindowDM(image_ref, std::int32_t, image_ref) { not_available_yet(); }
image_ref HanningWindowDM(image_ref, double, double, double, image_ref) { not_available_yet(); }
image_ref HanningWindowComplexDM(image_ref, std::complex<double>, std::complex<double>, std::complex<double>, image_ref)
{
    not_available_yet();
}
image_ref SineWindowDM(image_ref, double, double, double, image_ref) { not_available_yet(); }
image_ref SineWindowComplexDM(image_ref, std::complex<double>, std::complex<double>, std::complex<double>, image_ref)
{
    not_available_yet();
}
image_ref VorbisWindowDM(image_ref, double, double, double, image_ref) { not_available_yet(); }
image_ref VorbisWindowComplexDM(image_ref, std::complex<double>, std::complex<double>, std::complex<double>, image_ref)
{
    not_available_yet();
}

// reciprocal_entry.h
image_ref MaskDM(image_ref, image_ref, image_ref, float, float, image_ref) { not_available_yet(); }
image_ref CrossCorrelationMaskWithDefocusDM(image_ref, image_ref, std::int32_t, std::int32_t, float, float, float,
                                            float, std::int32_t, output<double>, image_ref)
{
    not_available_yet();
}

}  // namespace qorv::library
