#include "afx/controls.h"

IMPLEMENT_DYNAMIC(CSliderCtrl, CWnd)
