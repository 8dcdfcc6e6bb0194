; The installer. scripts/package compiles it once for each kind of Windows, with these definitions:
;
;   TARGET     amd64-unicode or x86-unicode: the kind of system that the installer itself runs on
;   VERSION    as in CMakeLists.txt, three numbers
;   CONTENT    the folder with what is installed, exactly
;   REMOVE     a script that deletes just that from $INSTDIR
;   SIZE       of the content, in KiB
;   ART        the folder with the pictures of its windows, which it unpacks with their times
;   OUTPUT     the installer
;
; It installs for the user who runs it and asks for no administrator: into the user's own program folder
; and below HKEY_CURRENT_USER. So it works on a machine where the user may not write to "Program
; Files", and nobody else's settings change. An administrator can name any folder on the directory page
; or with /D=; file types and start menu are then still those of the user who ran it.
;
;   facetor-VERSION-win64-setup.exe [/S] [/D=FOLDER]     /S asks nothing; /D= comes last, without quotes
;   Uninstall.exe [/S]
;
; Both exit with 0 when done, 1 when the user cancelled and 2 when they could not do it.

Unicode true
Target ${TARGET}
SetCompressor /SOLID lzma

!include MUI2.nsh
!include LogicLib.nsh
!include Integration.nsh

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Facetor"
!define CLASSES "Software\Classes"
!define MENU "$SMPROGRAMS\Facetor"

Name "Facetor"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Facetor"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation" ; an upgrade goes where the older one is
RequestExecutionLevel user
ManifestSupportedOS all
ManifestDPIAware true
BrandingText "Facetor ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Facetor"
VIAddVersionKey CompanyName "The Facetor developers"
VIAddVersionKey FileDescription "Facetor Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The Facetor developers"

!define MUI_ICON "src/editor/resources/facetor.ico"
!define MUI_UNICON "src/editor/resources/facetor.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${ART}/side.bmp"
!define MUI_WELCOMEFINISHPAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${ART}/header.bmp"
!define MUI_HEADERIMAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_ABORTWARNING

!define MUI_WELCOMEPAGE_TITLE "Facetor ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "Facetor is an editor for the polygon models and texture lists of a game \
    console's graphics library.$\r$\n$\r$\nIt is installed for you alone and needs no administrator. \
    Models (.mx3) and texture lists (.mxt) will open in it with a double click.$\r$\n$\r$\n\
    An older version is replaced; your settings and files stay.$\r$\n$\r$\n$_CLICK"
!define MUI_FINISHPAGE_TITLE "Facetor is installed"
!define MUI_FINISHPAGE_TEXT "The start menu has Facetor, its manual and its samples.$\r$\n$\r$\n\
    Your first five minutes lead from a sample to a C file."
!define MUI_FINISHPAGE_RUN "$INSTDIR\facetor.exe"
!define MUI_FINISHPAGE_RUN_TEXT "&Run Facetor"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\Help\first-five-minutes.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "&Open the first five minutes"
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Facetor will be removed from the folder below. Your own files there, \
    samples that you changed and your settings stay."
!define MUI_UNCONFIRMPAGE_TEXT_LOCATION "Folder:"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Gives up with the text. The exit code is 2.
!macro GiveUp TEXT
    MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
    SetErrorLevel 2
    Quit
!macroend

; Waits until no program in the folder runs: Windows lets nobody write to a running program.
!macro WaitForEnd FOLDER PROGRAM
    ${Do}
        ${IfNotThen} ${FileExists} "${FOLDER}\${PROGRAM}" ${|} ${ExitDo} ${|}
        ClearErrors
        FileOpen $9 "${FOLDER}\${PROGRAM}" a
        ${IfNot} ${Errors}
            FileClose $9
            ${ExitDo}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Facetor is still running, or \
                this file may not be changed:$\r$\n$\r$\n${FOLDER}\${PROGRAM}$\r$\n$\r$\n\
                Close Facetor, then choose Retry." /SD IDCANCEL IDCANCEL`
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${Loop}
!macroend

; A type of file: how the Explorer shows and opens it. ICON is a number of src/editor/resources/resource_ids.h.
; What the extension stood for before is kept, so that it can be given back.
!macro AddFileType EXTENSION CLASS NAME ICON
    WriteRegStr HKCU "${CLASSES}\${CLASS}" "" "${NAME}"
    WriteRegStr HKCU "${CLASSES}\${CLASS}\DefaultIcon" "" "$INSTDIR\facetor.exe,-${ICON}"
    WriteRegStr HKCU "${CLASSES}\${CLASS}\shell\open" "" "&Open"
    WriteRegStr HKCU "${CLASSES}\${CLASS}\shell\open\command" "" '"$INSTDIR\facetor.exe" "%1"'
    ReadRegStr $0 HKCU "${CLASSES}\${EXTENSION}" ""
    ${If} $0 != ""
    ${AndIf} $0 != "${CLASS}"
        WriteRegStr HKCU "${CLASSES}\${CLASS}" "Replaced" $0
    ${EndIf}
    WriteRegStr HKCU "${CLASSES}\${EXTENSION}" "" "${CLASS}"
    WriteRegStr HKCU "${CLASSES}\${EXTENSION}\OpenWithProgids" "${CLASS}" ""
!macroend

!macro RemoveFileType EXTENSION CLASS
    ReadRegStr $0 HKCU "${CLASSES}\${EXTENSION}" ""
    ${If} $0 == "${CLASS}"
        ReadRegStr $0 HKCU "${CLASSES}\${CLASS}" "Replaced"
        ${If} $0 == ""
            DeleteRegValue HKCU "${CLASSES}\${EXTENSION}" ""
        ${Else}
            WriteRegStr HKCU "${CLASSES}\${EXTENSION}" "" $0
        ${EndIf}
    ${EndIf}
    DeleteRegValue HKCU "${CLASSES}\${EXTENSION}\OpenWithProgids" "${CLASS}"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${EXTENSION}\OpenWithProgids"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${EXTENSION}"
    DeleteRegKey HKCU "${CLASSES}\${CLASS}"
!macroend

Section
    ReadRegStr $R0 HKCU "${UNINSTALL}" "InstallLocation"
    ${If} $R0 != ""
        !insertmacro WaitForEnd "$R0" facetor.exe
        !insertmacro WaitForEnd "$R0" facetor-cli.exe
        !insertmacro WaitForEnd "$R0" FacetorMonitor.exe
    ${EndIf}
    !insertmacro WaitForEnd "$INSTDIR" facetor.exe
    !insertmacro WaitForEnd "$INSTDIR" facetor-cli.exe
    !insertmacro WaitForEnd "$INSTDIR" FacetorMonitor.exe

    ; Before the older version is removed: can the new one be written?
    SetOutPath "$INSTDIR"
    ClearErrors
    FileOpen $0 "$INSTDIR\setup.tmp" w
    ${If} ${Errors}
        !insertmacro GiveUp "Nothing can be written to this folder. Start again and choose another \
            one.$\r$\n$\r$\n$INSTDIR"
    ${EndIf}
    FileClose $0
    Delete "$INSTDIR\setup.tmp"

    ; What an older version installed and this one does not is known to its uninstaller alone. Started
    ; with _?=, it works in place, so that it can be waited for, and leaves itself.
    ${If} $R0 != ""
    ${AndIf} ${FileExists} "$R0\Uninstall.exe"
        ExecWait '"$R0\Uninstall.exe" /S _?=$R0' $0
        ${If} $0 != 0
            !insertmacro GiveUp "The older version could not be removed.$\r$\n$\r$\n$R0"
        ${EndIf}
        Delete "$R0\Uninstall.exe"
        SetOutPath "$TEMP" ; a current folder cannot be removed
        RMDir "$R0"
    ${EndIf}

    SetOutPath "$INSTDIR"
    File /r /x Samples "${CONTENT}/*"
    SetOutPath "$INSTDIR\Samples"
    SetOverwrite off ; what is still there, the user has changed
    File "${CONTENT}/Samples/*"
    SetOverwrite on
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\Uninstall.exe"

    CreateDirectory "${MENU}"
    CreateShortcut "${MENU}\Facetor.lnk" "$INSTDIR\facetor.exe" "" "" 0 "" "" \
        "Edit polygon models and texture lists"
    CreateShortcut "${MENU}\Facetor manual.lnk" "$INSTDIR\Help\Facetor.html"
    CreateShortcut "${MENU}\Facetor samples.lnk" "$INSTDIR\Samples"
    CreateShortcut "${MENU}\Uninstall Facetor.lnk" "$INSTDIR\Uninstall.exe"

    !insertmacro AddFileType .mx3 Facetor.Model "Facetor model" 201
    !insertmacro AddFileType .mxt Facetor.TextureList "Facetor texture list" 202
    ${NotifyShell_AssocChanged}

    WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Facetor"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\facetor.exe"
    WriteRegStr HKCU "${UNINSTALL}" "Publisher" "The Facetor developers"
    WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; Deletes a sample unless it was written to: it still has the time that it was installed with.
!macro DeleteUnchangedSample NAME
    ${If} ${FileExists} "$INSTDIR\Samples\${NAME}"
        GetFileTime "$INSTDIR\Samples\${NAME}" $0 $1
        GetFileTimeLocal "${CONTENT}/Samples/${NAME}" $2 $3
        IntOp $0 $0 ^ $2 ; as numbers: one side has signs, the other has none
        IntOp $1 $1 ^ $3
        IntOp $0 $0 | $1
        ${If} $0 = 0
            Delete "$INSTDIR\Samples\${NAME}"
        ${EndIf}
    ${EndIf}
!macroend

Section Uninstall
    !insertmacro WaitForEnd "$INSTDIR" facetor.exe
    !insertmacro WaitForEnd "$INSTDIR" facetor-cli.exe
    !insertmacro WaitForEnd "$INSTDIR" FacetorMonitor.exe
    SetOutPath "$TEMP" ; a current folder cannot be removed

    !include "${REMOVE}"
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR" ; only when it is empty

    ; A copy that was left behind by hand does not unregister the one that is installed.
    ReadRegStr $0 HKCU "${UNINSTALL}" "InstallLocation"
    ${If} $0 == $INSTDIR
        Delete "${MENU}\Facetor.lnk"
        Delete "${MENU}\Facetor manual.lnk"
        Delete "${MENU}\Facetor samples.lnk"
        Delete "${MENU}\Uninstall Facetor.lnk"
        RMDir "${MENU}"
        !insertmacro RemoveFileType .mx3 Facetor.Model
        !insertmacro RemoveFileType .mxt Facetor.TextureList
        ${NotifyShell_AssocChanged}
        DeleteRegKey HKCU "${UNINSTALL}"
    ${EndIf}
SectionEnd
