; The installer for 64-bit Windows: for the user who runs it, without asking for an administrator.
; VERSION, FOUR_NUMBERS (the same with four), FILES (the directory to install), LIST (the names of what is in it),
; UNINSTALL (what removes it) and OUTPUT come from the command line.
; "/S" installs or uninstalls without a window, "/D=PATH" at the end of the line names another directory.
Target amd64-unicode
!include LogicLib.nsh
!include MUI2.nsh
!include TextFunc.nsh
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

VIProductVersion "${FOUR_NUMBERS}"
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
LangString RUNNING ${LANG_ENGLISH} "${TITLE} is running. Close it and try again."
LangString RUNNING ${LANG_GERMAN} "${TITLE} läuft gerade. Bitte schließen und noch einmal versuchen."
LangString RUNNING ${LANG_JAPANESE} "${TITLE} は実行中です。終了してからやり直してください。"
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

; A program that runs cannot be written to, nor be replaced or removed.
!macro RequireThatNothingRuns
  ${If} ${FileExists} "$INSTDIR\scr.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\scr.exe" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "$(RUNNING)" /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; What an earlier version installed, so that nothing of it stays that this one lacks.
Function RemoveEarlierVersion
  ClearErrors
  FileOpen $0 "$INSTDIR\installed-files.txt" r
  ${If} ${Errors}
    Return
  ${EndIf}
next:
  FileRead $0 $1
  ${IfNot} ${Errors}
    ${TrimNewLines} "$1" $1
    Delete "$INSTDIR\$1"
    Goto next
  ${EndIf}
  FileClose $0
FunctionEnd

Section
  !insertmacro RequireThatNothingRuns
  Call RemoveEarlierVersion
  SetOutPath "$INSTDIR"
  File /r "${FILES}/*.*"
  File "/oname=installed-files.txt" "${LIST}"
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
  !insertmacro RequireThatNothingRuns
!include "${UNINSTALL}"
  Delete "$INSTDIR\installed-files.txt"
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
