#pragma once

#include <stdexcept>

/// Error messages that several script functions share, one sentence each, shown to the user as they are. A message of
/// one function is defined next to that function.
namespace qorv::dm::errors {

inline constexpr char different_size[] = "Images of different size cannot appear in this function.";
inline constexpr char invalid_data_type[] = "Invalid data type.";
inline constexpr char invalid_image_type[] = "Invalid image type.";
inline constexpr char invalid_image_size[] = "Invalid image size.";
inline constexpr char invalid_matrix_size[] = "Invalid matrix size.";
inline constexpr char invalid_mode[] = "Invalid mode.";
inline constexpr char out_of_place[] = "Output should be out-of-place.";
inline constexpr char parameters_invalid[] = "Parameters are invalid.";
inline constexpr char up_to_3d[] = "Dimension support is up to 3D now.";
inline constexpr char size_power_of_2[] = "Size of image should be power of 2.";
inline constexpr char unknown_data_type[] = "Unknown data type.";
inline constexpr char should_be_real[] = "Data type should be Real.";
inline constexpr char should_be_real4[] = "Data type should be Real 4.";
inline constexpr char should_be_real4_or_real8[] = "Data type should be Real 4 or Real 8.";
inline constexpr char all_real[] = "All data type should be Real.";
inline constexpr char all_real_or_complex[] = "All data type should be Real or Complex.";
inline constexpr char all_complex[] = "All data type should be Complex.";
inline constexpr char all_complex8[] = "All data type should be Complex 8.";
inline constexpr char all_same_complex[] = "All data type should be same Complex.";

}  // namespace qorv::dm::errors

namespace qorv::dm {

/// Fails the script function with `text` unless `holds`.
inline void require(bool holds, const char* text)
{
    if (!holds) throw std::runtime_error{text};
}

}  // namespace qorv::dm
