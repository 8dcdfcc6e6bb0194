// The numbers of commands and resources, for the C++ compiler and the resource compiler alike; only
// macros, because the latter reads nothing else. Resources with names ("IDR_MENU1", "GENERIC") have
// no number and stand in the code as texts.
#pragma once

// Commands of the main window.
#define IDM_FILE_EXIT 40003
#define IDM_FILE_OPEN_PATH 40006 // no menu item: its argument is the path
#define IDM_FILE_SAVE_AS 40016
#define IDM_TEXTURE_SAVE 40027
#define IDM_CAMERA_FORWARD 40044
#define IDM_CAMERA_BACK 40045
#define IDM_CAMERA_LEFT 40046
#define IDM_CAMERA_RIGHT 40047
#define IDM_CAMERA_TOP 40048
#define IDM_CAMERA_BOTTOM 40049
