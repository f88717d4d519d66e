; The installer for 64-bit Windows: for the user who runs it, without asking for an administrator.
; VERSION, FILES (the directory to install), UNINSTALL (what removes it) and OUTPUT come from the command line.
; "/S" installs or uninstalls without a window, "/D=PATH" at the end of the line names another directory.
Target amd64-unicode
!include LogicLib.nsh
!include MUI2.nsh
!include WinVer.nsh

!define TITLE "System Compatibility Report"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\scr"

Name "${TITLE}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\scr"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
SetCompressor /SOLID lzma
ManifestDPIAware true

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "${TITLE}"
VIAddVersionKey "FileDescription" "${TITLE} installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" ""

!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\scr.exe"
!define MUI_FINISHPAGE_RUN_PARAMETERS "show"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"
!insertmacro MUI_LANGUAGE "Japanese"

LangString NEEDS10 ${LANG_ENGLISH} "${TITLE} needs Windows 10 or later."
LangString NEEDS10 ${LANG_GERMAN} "${TITLE} braucht Windows 10 oder neuer."
LangString NEEDS10 ${LANG_JAPANESE} "${TITLE} には Windows 10 以降が必要です。"
LangString OPTIMIZER ${LANG_ENGLISH} "Application Optimizer"
LangString OPTIMIZER ${LANG_GERMAN} "Anwendungsoptimierung"
LangString OPTIMIZER ${LANG_JAPANESE} "アプリケーションの最適化"
LangString FORGET ${LANG_ENGLISH} "Also delete what the program remembers: settings, known issues and records?"
LangString FORGET ${LANG_GERMAN} "Auch löschen, was das Programm sich gemerkt hat: Einstellungen, bekannte Probleme und Aufzeichnungen?"
LangString FORGET ${LANG_JAPANESE} "プログラムが記憶している内容（設定、既知の問題、記録）も削除しますか？"

Function .onInit
  ${IfNot} ${AtLeastWin10}
    MessageBox MB_OK|MB_ICONSTOP "$(NEEDS10)" /SD IDOK
    SetErrorLevel 1
    Quit
  ${EndIf}
FunctionEnd

Section
  SetOutPath "$INSTDIR"
  File /r "${FILES}/*.*"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\${TITLE}"
  CreateShortcut "$SMPROGRAMS\${TITLE}\${TITLE}.lnk" "$INSTDIR\scr.exe" "show"
  CreateShortcut "$SMPROGRAMS\${TITLE}\$(OPTIMIZER).lnk" "$INSTDIR\scr.exe" "optimize"

  WriteRegStr HKCU "${KEY}" "DisplayName" "${TITLE}"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\scr.exe"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
SectionEnd

Section Uninstall
!include "${UNINSTALL}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ; If nothing else is installed there.
  RMDir "$LOCALAPPDATA\Programs"
  Delete "$SMPROGRAMS\${TITLE}\*.lnk"
  RMDir "$SMPROGRAMS\${TITLE}"
  DeleteRegKey HKCU "${KEY}"

  MessageBox MB_YESNO|MB_ICONQUESTION "$(FORGET)" /SD IDYES IDNO keep
  RMDir /r "$APPDATA\scr"
  RMDir /r "$LOCALAPPDATA\scr"
keep:
SectionEnd
