#include "windows/title.h"

#include "exchange/foreign_file.h"
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
    const Document& document = editor.document;
    if (!document.modelFile.empty()) return document.modelFile;
    return document.importedFrom.empty() ? loadCatalogueText(editor.mainWindow, Word::untitled)
                                         : titleOf(document.importedFrom);
}

std::optional<std::string> importedName(const Editor& editor)
{
    const std::string& source = editor.document.importedFrom;
    if (source.empty() || !editor.document.modelFile.empty()) return std::nullopt;
    return folderOf(source) + titleOf(source);
}

} // namespace facetor
