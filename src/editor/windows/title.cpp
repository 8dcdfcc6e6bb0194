#include "windows/title.h"

#include "state/editor.h"
#include "ui/window_data.h"

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

void showTitle(Editor& editor)
{
    setTitle(editor, editor.mainWindow, shownModelFile(editor));
}

void setWindowTitle(const Editor& editor, HWND window, Word word)
{
    setTitle(editor, window, loadCatalogueText(editor.mainWindow, word));
}

std::string shownModelFile(const Editor& editor)
{
    const std::string& file = editor.document.modelFile;
    return file.empty() ? loadCatalogueText(editor.mainWindow, Word::untitled) : file;
}

} // namespace facetor
