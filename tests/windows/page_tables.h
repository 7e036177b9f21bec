#pragma once

#include <span>

#include "tests/windows/panel_window.h"

namespace windows_tests {

/// One row of a page: control ids, label text, tags. Round coefficients have a unit and no knob.
struct row_table
{
    int modulus, modulus_spin, step, knob, angle_spin, label;
    const char *text, *key, *angle_key;
    int unit = 0;
    const char* unit_text = nullptr;

    std::string step_key() const { return std::string{key} + "Accel"; }
    std::string angle_step_key() const { return std::string{angle_key} + "Accel"; }
};

struct page_table
{
    int index;
    const char *tab, *modulus_header, *enable_key;
    std::span<const row_table> rows;
};

inline const row_table all_rows[] = {{5003, 5041, 5044, 0, 0, 5005, "C1(z)", "C1", nullptr, 5006, "nm"},
                                     {5008, 5042, 5045, 0, 0, 5009, "C3(Cs)", "C3", nullptr, 5010, "mm"},
                                     {5012, 5043, 5046, 0, 0, 5014, "C5", "C5", nullptr, 5015, "mm"},
                                     {5088, 5089, 5090, 5004, 5047, 5087, "A1(2-fold Astigma.)", "ModA1", "AngA1"},
                                     {5092, 5093, 5094, 5000, 5048, 5091, "B2(Coma)", "ModB2", "AngB2"},
                                     {5095, 5096, 5097, 5013, 5049, 5098, "A2(3-fold Astigma.)", "ModA2", "AngA2"},
                                     {5057, 5058, 5059, 5060, 5061, 5056, "S3", "ModS3", "AngS3"},
                                     {5062, 5063, 5064, 5065, 5066, 5067, "A3", "ModA3", "AngA3"},
                                     {5069, 5070, 5071, 5072, 5073, 5068, "B4", "ModB4", "AngB4"},
                                     {5075, 5077, 5078, 5079, 5080, 5074, "D4", "ModD4", "AngD4"},
                                     {5081, 5082, 5083, 5084, 5086, 5085, "A4", "ModA4", "AngA4"},
                                     {5101, 5103, 5102, 5104, 5105, 5106, "A5", "ModA5", "AngA5"},
                                     {5111, 5112, 5113, 5109, 5115, 5114, "R5", "ModR5", "AngR5"},
                                     {5117, 5118, 5045, 5110, 5121, 5119, "S5", "ModS5", "AngS5"}};
inline const row_table &row_A1 = all_rows[3], &row_B2 = all_rows[4], &row_A5 = all_rows[11];

inline const page_table pages[] = {{0, "Rotation", nullptr, "RotationPaneIsEnabled", std::span{all_rows}.subspan(0, 3)},
                                   {1, "Basic", "Modulus(nm)", "BasicPaneIsEnabled", std::span{all_rows}.subspan(3, 3)},
                                   {2, "3rd", "Modulus(um)", "ThirdPaneIsEnabled", std::span{all_rows}.subspan(6, 2)},
                                   {3, "4th", "Modulus(um)", "FourthPaneIsEnabled", std::span{all_rows}.subspan(8, 3)},
                                   {4, "5th", "Modulus(mm)", "FifthPaneIsEnabled", std::span{all_rows}.subspan(11, 3)}};

}  // namespace windows_tests
