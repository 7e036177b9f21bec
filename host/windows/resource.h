#pragma once

/* Ids of windows.rc. Those of menu items are commands. */
#define IDR_PROGRAM_MENU 100
#define IDR_PROGRAM_KEYS 101
#define IDM_SAVE 110
#define IDM_QUIT 111
#define IDM_PANEL 112
#define IDM_MICROSCOPE 113
#define IDM_PHASE_COLOURS 114
#define IDM_SAVE_PARAMETERS 115
#define IDM_LOAD_PARAMETERS 116
#define IDM_ESTIMATE 117
#define IDM_UNDO 118
#define IDM_REDO 119
#define IDM_COPY_OPTIONS 120
#define IDM_COPY_PYTHON 121
#define IDM_COPY_SCRIPT 122
#define IDM_COPY_JSON 123
#define IDM_PASTE 124
#define IDM_TABLE 125
#define IDM_CONVENTIONS 126
#define IDM_KEYS 127
#define IDM_VERSION 128
#define IDM_NEXT_WINDOW 160
#define IDM_PREVIOUS_WINDOW 161

#define IDI_PROGRAM 102

/* Of the picture: image_window::view_command. */
#define IDM_ZOOM_IN 140
#define IDM_ZOOM_OUT 141
#define IDM_ZOOM_ONE 142
#define IDM_ZOOM_FIT 143
#define IDM_AUTOMATIC_LIMITS 144
#define IDM_ANNOTATIONS 145
#define IDM_HISTOGRAM 146
#define IDM_DIFFRACTOGRAM 150
#define IDM_DIFFRACTOGRAM_OF_DISPLAY 151

#define IDD_MICROSCOPE 200
#define IDC_KILOVOLTS 201
#define IDC_PIXEL 202
#define IDC_FOCUS_SPREAD 203
#define IDC_CONVERGENCE 204
#define IDC_VIBRATION 205
#define IDC_DAMPED 206
#define IDC_PROBLEM 207

#define IDD_ESTIMATE 300
#define IDC_ESTIMATE_BAR 301
#define IDC_ESTIMATE_TEXT 302
#define IDC_NO_ENVELOPE 303
#define IDC_FREE 310 /* and the following: one for each coefficient, in the order of lens::coefficient */
