#pragma once

/* Ids of the panel's resources and controls. Also read by the resource compiler, so it contains numbers only. */

#define IDD_PANEL 5004
#define IDD_BASIC 5007
#define IDD_FIFTH 5008
#define IDD_FOURTH 5009
#define IDD_ROTATION 5010
#define IDD_THIRD 5011

#define IDB_RING 5005
#define IDB_PCTF 5006

/* The panel's own controls; Apply is IDOK. */
#define IDC_PREFERENCES 5099
#define IDC_PCTF 5100
#define IDC_DISPLAY 5111
#define IDC_DISPLAY_LABEL 5113

/* Headers, the same on every page. */
#define IDC_MODULUS_HEADER 5001
#define IDC_ANGLE_HEADER 5002
#define IDC_VALUE_HEADER 5053
#define IDC_STEP_HEADER 5017
#define IDC_MESSAGE 5109

/* Rows: modulus edit, its spin, step edit, knob, angle spin, label. */
#define ROW_A1 5088, 5089, 5090, 5004, 5047, 5087
#define ROW_B2 5092, 5093, 5094, 5000, 5048, 5091
#define ROW_A2 5095, 5096, 5097, 5013, 5049, 5098
#define ROW_S3 5057, 5058, 5059, 5060, 5061, 5056
#define ROW_A3 5062, 5063, 5064, 5065, 5066, 5067
#define ROW_B4 5069, 5070, 5071, 5072, 5073, 5068
#define ROW_D4 5075, 5077, 5078, 5079, 5080, 5074
#define ROW_A4 5081, 5082, 5083, 5084, 5086, 5085
#define ROW_A5 5101, 5103, 5102, 5104, 5105, 5106
#define ROW_R5 5111, 5112, 5113, 5109, 5115, 5114
#define ROW_S5 5117, 5118, 5045, 5110, 5121, 5119
/* Round coefficients: value edit, spin, step edit, unit, label. */
#define ROW_C1 5003, 5041, 5044, 5006, 5005
#define ROW_C3 5008, 5042, 5045, 5010, 5009
#define ROW_C5 5012, 5043, 5046, 5015, 5014
