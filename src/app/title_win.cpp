#include "app/title_win.h"

#include "app/editor_win.h"
#include "ui/window_data_win.h"

#include <windows.h>

#include <string_view>

namespace facetor {

namespace {

constexpr std::string_view separator = " - ";

std::string programTitle(const Editor& editor)
{
    return loadCatalogueText(editor.mainWindow, editor.platform == Platform::consumer
                                                    ? Word::programTitleConsumer
                                                    : Word::programTitleNt);
}

void setTitle(const Editor& editor, HWND window, std::string_view text)
{
    std::string title = programTitle(editor);
    title += separator;
    title += text;
    SetWindowTextA(window, title.c_str());
}

} // namespace

void setTitleFile(Editor& editor, const char* path)
{
    if (!path) return setTitleText(editor, Word::untitled);
    setTitle(editor, editor.mainWindow, path);
}

void setTitleText(Editor& editor, Word word)
{
    setWindowTitle(editor, editor.mainWindow, word);
}

void setWindowTitle(const Editor& editor, HWND window, Word word)
{
    setTitle(editor, window, loadCatalogueText(editor.mainWindow, word));
}

std::string titleFile(const Editor& editor)
{
    const std::string title = windowText(editor.mainWindow);
    const std::size_t skipped = programTitle(editor).size() + separator.size();
    return title.size() > skipped ? title.substr(skipped) : std::string{};
}

} // namespace facetor
