#include "ui/picture_list.h"

#include "base/bitmap_header.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

namespace facetor {

namespace {

constexpr int pictureWidth = 96, pictureHeight = 72; // in pixels at 96 dots an inch
constexpr int plainResolution = 96;

HIMAGELIST picturesOf(HWND list)
{
    return reinterpret_cast<HIMAGELIST>(SendMessageA(list, LVM_GETIMAGELIST, LVSIL_SMALL, 0));
}

UniqueHandle<HBITMAP, DeleteObject> toBitmap(const SmallPicture& picture)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(picture.width); // a multiple of 4: no padding
    info.bmiHeader.biHeight = -static_cast<LONG>(picture.height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 16;
    const WindowDc screen(nullptr);
    return UniqueHandle<HBITMAP, DeleteObject>(CreateDIBitmap(
        screen.get(), &info.bmiHeader, CBM_INIT, picture.pixels.data(), &info, DIB_RGB_COLORS));
}

} // namespace

void preparePictureList(HWND list, std::initializer_list<ListColumn> columns)
{
    const int resolution = [] {
        const WindowDc screen(nullptr);
        return GetDeviceCaps(screen.get(), LOGPIXELSX);
    }();
    const auto scaled = [&](int pixels, std::uint32_t most) {
        return std::min(MulDiv(pixels, resolution, plainResolution), static_cast<int>(most)) & ~3;
    };
    // The list frees it at its end.
    SendMessageA(list, LVM_SETIMAGELIST, LVSIL_SMALL,
                 reinterpret_cast<LPARAM>(ImageList_Create(
                     scaled(pictureWidth, largestPictureWidth),
                     scaled(pictureHeight, largestPictureHeight), ILC_COLOR24, 10, 10)));
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    addListColumns(list, columns);
}

PictureSize pictureSizeOf(HWND list)
{
    int width = 0, height = 0;
    ImageList_GetIconSize(picturesOf(list), &width, &height);
    return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
}

void addPictureRow(HWND list, const SmallPicture& picture, const std::vector<std::string>& texts)
{
    LVITEMA item{};
    item.iItem = static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
    for (const std::string& text : texts) {
        item.mask = LVIF_TEXT | (item.iSubItem == 0 ? LVIF_IMAGE : 0u);
        item.pszText = const_cast<char*>(text.c_str()); // only read
        if (item.iSubItem == 0)
            item.iImage = ImageList_Add(picturesOf(list), toBitmap(picture).get(), nullptr);
        SendMessageA(list, item.iSubItem == 0 ? LVM_INSERTITEMA : LVM_SETITEMA, 0,
                     reinterpret_cast<LPARAM>(&item));
        ++item.iSubItem;
    }
}

void clearPictureList(HWND list)
{
    SendMessageA(list, LVM_DELETEALLITEMS, 0, 0);
    ImageList_RemoveAll(picturesOf(list));
}

void choosePictureRow(HWND list, int row)
{
    LVITEMA item{};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    SendMessageA(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

int chosenPictureRow(HWND list)
{
    return static_cast<int>(
        SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

std::string localTimeText(std::int64_t seconds)
{
    constexpr std::int64_t from1601 = 11644473600; // to 1970, in seconds
    ULARGE_INTEGER ticks{};
    ticks.QuadPart = static_cast<ULONGLONG>(seconds + from1601) * 10000000u;
    const FILETIME time{ticks.LowPart, ticks.HighPart};
    SYSTEMTIME universal{}, local{};
    if (!FileTimeToSystemTime(&time, &universal) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local))
        return {};
    std::array<char, 80> date{}, clock{};
    GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(),
                   static_cast<int>(date.size()));
    GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &local, nullptr, clock.data(),
                   static_cast<int>(clock.size()));
    return std::string(date.data()) + "  " + clock.data();
}

std::string sizeText(HWND window, std::uint64_t bytes)
{
    return expandPlaceholders(loadCatalogueText(window, Word::kilobytes),
                              std::to_string((bytes + 1023) / 1024), {});
}

} // namespace facetor
