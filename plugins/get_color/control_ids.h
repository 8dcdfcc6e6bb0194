// The controls of the colour dialog, for the C++ compiler and the resource compiler alike.
#pragma once

#define IDC_FIELD 101
#define IDC_VALUE 102
#define IDC_SAMPLE 103
#define IDC_RECENT 104
#define IDC_RED_STRIP 110
#define IDC_GREEN_STRIP 111
#define IDC_BLUE_STRIP 112
#define IDC_RED_NUMBER 120
#define IDC_GREEN_NUMBER 121
#define IDC_BLUE_NUMBER 122
#define IDC_RED_SPIN 130
#define IDC_GREEN_SPIN 131
#define IDC_BLUE_SPIN 132
#define IDC_WORD 140
#define IDC_HEX 141
