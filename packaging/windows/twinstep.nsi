; The installer, for one user and without administrator rights. Defined outside: VERSION, FOLDER (the staged files),
; OUTPUT.
Target amd64-unicode
!include MUI2.nsh

Name "Twinstep"
OutFile "${OUTPUT}"
SetCompressor /SOLID lzma
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Twinstep"
InstallDirRegKey HKCU "Software\Twinstep" "Folder"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Twinstep"
VIAddVersionKey "FileDescription" "Twinstep installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "GNU General Public License, version 3"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Twinstep"
!define MENU "$SMPROGRAMS\Twinstep"
!define MUI_ICON "${FOLDER}\..\twinstep.ico"
!define MUI_UNICON "${FOLDER}\..\twinstep.ico"

!insertmacro MUI_PAGE_LICENSE "${FOLDER}\LICENSE.txt"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\twinstep.exe"
!define MUI_FINISHPAGE_RUN_NOTCHECKED
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs cannot be replaced or removed.
!macro RefuseWhileRunning PROGRAM
  ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "${PROGRAM} is running. End it, then start this again." /SD IDOK
      SetErrorLevel 2
      Abort
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section "Twinstep"
  SectionIn RO
  !insertmacro RefuseWhileRunning twinstep.exe
  !insertmacro RefuseWhileRunning twinstep-bridge.exe
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateDirectory "${MENU}"
  CreateShortcut "${MENU}\Twinstep.lnk" "$INSTDIR\twinstep.exe"
  CreateShortcut "${MENU}\Twinstep help.lnk" "$INSTDIR\docs\help.html"
  CreateShortcut "${MENU}\Uninstall Twinstep.lnk" "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "Software\Twinstep" "Folder" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Twinstep"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\twinstep.exe"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "The Twinstep developers"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section /o "Start the bridge when I log in" bridge
  CreateShortcut "$SMSTARTUP\Twinstep bridge.lnk" "$INSTDIR\twinstep-bridge.exe"
SectionEnd

LangString bridgeText ${LANG_ENGLISH} "Only for a Twinstep on another computer: the bridge gives it the links of this one."
!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${bridge} $(bridgeText)
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Leaves the user's settings alone, and the user's own libraries beside the program.
Section "Uninstall"
  !insertmacro RefuseWhileRunning twinstep.exe
  !insertmacro RefuseWhileRunning twinstep-bridge.exe
  Delete "$SMSTARTUP\Twinstep bridge.lnk"
  Delete "${MENU}\*.lnk"
  RMDir "${MENU}"
  Delete "$INSTDIR\*.exe"
  Delete "$INSTDIR\LICENSE.txt"
  Delete "$INSTDIR\README.md"
  RMDir /r "$INSTDIR\docs"
  RMDir /r "$INSTDIR\assets"
  RMDir /r "$INSTDIR\licences"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL}"
  DeleteRegKey HKCU "Software\Twinstep"
SectionEnd
