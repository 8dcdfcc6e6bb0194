#include "dialogs/versions_dialog.h"

#include "base/text.h"
#include "model/model_file.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "texture/texture_file.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/picture_list.h"
#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

namespace facetor {

namespace {

/// A document of which versions are kept.
struct KeptDocument {
    std::string path;
    KeptKind kind;
};

struct VersionsDialog {
    Editor& editor;
    Versions versions;
    std::vector<KeptDocument> documents; ///< in the order of the box
    std::vector<Version> shown;          ///< in the order of the list
    Engine engine;                       ///< of the pictures
    Model model;                         ///< a version's, while its picture is drawn
    std::optional<Version> chosen;
};

bool isOf(const Version& version, const KeptDocument& document)
{
    return version.kind == document.kind && equalIgnoringCase(version.document, document.path);
}

/// The documents with versions: the open ones first, then those that were saved last.
std::vector<KeptDocument> documentsOf(const Versions& versions, const Document& open)
{
    std::vector<KeptDocument> all;
    const auto hasVersion = [&](const KeptDocument& document) {
        return std::ranges::any_of(versions.all,
                                   [&](const Version& v) { return isOf(v, document); });
    };
    for (const KeptDocument& document :
         {KeptDocument{open.modelFile, KeptKind::model}, {open.textureFile, KeptKind::textures}})
        if (!document.path.empty() && hasVersion(document)) all.push_back(document);
    for (const Version& version : versions.all)
        if (std::ranges::none_of(all, [&](const KeptDocument& d) { return isOf(version, d); }))
            all.push_back({version.document, version.kind});
    return all;
}

/// Empty for what cannot be read.
SmallPicture pictureOf(VersionsDialog& state, const Version& version, PictureSize size)
{
    const Editor& editor = state.editor;
    const Rgb555 colour = editor.view.backgroundColour;
    SmallPicture picture{size.width, size.height, {}};
    picture.pixels.assign(std::size_t{size.width} * size.height, colour);
    std::string reason;
    const auto bytes = readVersion(editor.versions, version, reason);
    if (!bytes) return picture;
    if (version.kind == KeptKind::textures) {
        TextureList list;
        if (list.create() == Message::none && readTextures(list, *bytes) == Message::none)
            return drawTexturesPicture(list, colour, size.width, size.height);
        return picture;
    }
    if (state.engine.entries.size() == 0 || state.model.objects.size() == 0 ||
        readModel(state.model, *bytes) != Message::none)
        return picture;
    return drawModelPicture(state.engine, state.model, editor.document.textures.slots(), colour,
                            size.width, size.height);
}

void enableOpen(HWND dialog)
{
    EnableWindow(GetDlgItem(dialog, IDOK),
                 chosenPictureRow(GetDlgItem(dialog, IDC_VERSIONS_LIST)) >= 0);
}

void showVersions(HWND dialog, VersionsDialog& state)
{
    const WaitCursor waiting;
    const HWND list = GetDlgItem(dialog, IDC_VERSIONS_LIST);
    clearPictureList(list);
    state.shown.clear();
    const auto index = static_cast<std::size_t>(
        SendDlgItemMessageA(dialog, IDC_VERSIONS_DOCUMENT, CB_GETCURSEL, 0, 0));
    if (index < state.documents.size())
        for (const Version& version : state.versions.all)
            if (isOf(version, state.documents[index])) state.shown.push_back(version);
    for (const Version& version : state.shown)
        addPictureRow(list, pictureOf(state, version, pictureSizeOf(list)),
                      {localTimeText(version.savedAt), sizeText(dialog, version.size)});
    if (!state.shown.empty()) choosePictureRow(list, 0);
    enableOpen(dialog);
}

/// The file's name first: the box has no room for a long path.
std::string nameOf(HWND dialog, const KeptDocument& document)
{
    if (document.path.empty())
        return loadCatalogueText(dialog, document.kind == KeptKind::model ? Word::unknownModel
                                                                          : Word::unknownTextures);
    const std::size_t end = document.path.find_last_of("\\/");
    if (end == std::string::npos) return document.path;
    return document.path.substr(end + 1) + "  (" + document.path.substr(0, end) + ")";
}

void fillDialog(HWND dialog, VersionsDialog& state)
{
    const HWND box = GetDlgItem(dialog, IDC_VERSIONS_DOCUMENT);
    for (const KeptDocument& document : state.documents) {
        const std::string name = nameOf(dialog, document);
        SendMessageA(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    SendMessageA(box, CB_SETCURSEL, 0, 0);
    EnableWindow(box, !state.documents.empty());
    const Word note = state.versions.damaged    ? Word::versionsDamaged
                      : state.documents.empty() ? Word::noVersions
                                                : Word::versionsNote;
    SetDlgItemTextA(dialog, IDC_VERSIONS_NOTE, loadCatalogueText(dialog, note).c_str());
    CheckDlgButton(dialog, IDC_VERSIONS_KEEP,
                   state.editor.keepsVersions ? BST_CHECKED : BST_UNCHECKED);
    preparePictureList(GetDlgItem(dialog, IDC_VERSIONS_LIST),
                       {{Word::columnSaved, 170}, {Word::columnSize, 50}});
    showVersions(dialog, state);
}

void onCommand(HWND dialog, VersionsDialog& state, int control, int notification)
{
    if (control == IDC_VERSIONS_DOCUMENT && notification == CBN_SELCHANGE)
        showVersions(dialog, state);
    if (control == IDC_VERSIONS_KEEP)
        state.editor.keepsVersions = IsDlgButtonChecked(dialog, IDC_VERSIONS_KEEP) == BST_CHECKED;
    const int row = chosenPictureRow(GetDlgItem(dialog, IDC_VERSIONS_LIST));
    if (control == IDOK && row >= 0) state.chosen = state.shown[static_cast<std::size_t>(row)];
    if ((control == IDOK && state.chosen) || control == IDCANCEL) EndDialog(dialog, control);
}

INT_PTR CALLBACK versionsProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        fillDialog(dialog, dialogState<VersionsDialog>(dialog));
        SetFocus(GetDlgItem(dialog, IDC_VERSIONS_LIST));
        return FALSE;
    case WM_COMMAND:
        onCommand(dialog, dialogState<VersionsDialog>(dialog), LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_NOTIFY: {
        const auto& notice = *reinterpret_cast<const NMHDR*>(lParam);
        if (notice.idFrom != IDC_VERSIONS_LIST) return FALSE;
        if (notice.code == LVN_ITEMCHANGED) enableOpen(dialog);
        if (notice.code == NM_DBLCLK) PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        return TRUE;
    }
    default: return FALSE;
    }
}

} // namespace

std::optional<Version> askVersion(Editor& editor)
{
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    VersionsDialog state{editor, readVersions(editor.versions), {}, {}, {}, {}, {}};
    state.documents = documentsOf(state.versions, editor.document);
    (void)startEngine(state.engine); // without memory the pictures are empty
    (void)createModelStore(state.model);
    runDialog(editor.mainWindow, "IDD_VERSIONS", versionsProcedure,
              reinterpret_cast<LPARAM>(&state));
    stopEngine(state.engine);
    return state.chosen;
}

} // namespace facetor
