#include <windows.h>

/// Stands for a colour module that another has written. Its answer has bits above the 16.
extern "C" DWORD WINAPI GetColor(HWND, WORD colour)
{
    return 0xABCD0000u | (colour ^ 0xFFFFu);
}
