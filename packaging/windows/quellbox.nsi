; The installer. /S installs and removes without a word, /D=folder chooses the place. The settings of users stay when
; the program is removed.
; The installer is a 64-bit program as well.
Target amd64-unicode
!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "LogicLib.nsh"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quellbox"

Name "Quellbox"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Quellbox"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
ManifestDPIAware true
SetCompressor /SOLID lzma
BrandingText "Quellbox ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Quellbox"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "${COMPANY}"
VIAddVersionKey "FileDescription" "Installs Quellbox"
VIAddVersionKey "LegalCopyright" "${COPYRIGHT}"

; The last page does not offer to start the program: it would run as the administrator who installs, with that
; person's settings and without the drives of the user.
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${SOURCE}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"

LangString NotWritten ${LANG_ENGLISH} "Quellbox could not be written. Close the program and try again."
LangString NotWritten ${LANG_GERMAN} "Quellbox konnte nicht geschrieben werden. Schließen Sie das Programm und versuchen Sie es noch einmal."
LangString NotRemoved ${LANG_ENGLISH} "Quellbox could not be removed. Close the program and its help, and try again."
LangString NotRemoved ${LANG_GERMAN} "Quellbox konnte nicht entfernt werden. Schließen Sie das Programm und seine Hilfe und versuchen Sie es noch einmal."

; A file that is in use is skipped, and that is told once, at the end.
SetOverwrite try

Function .onInit
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  ClearErrors
  File /r "${SOURCE}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "$(NotWritten)" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  CreateShortcut "$SMPROGRAMS\Quellbox.lnk" "$INSTDIR\quellbox.exe"

  WriteRegStr HKLM "${KEY}" "DisplayName" "Quellbox"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" "$INSTDIR\quellbox.exe"
  WriteRegStr HKLM "${KEY}" "Publisher" "${COMPANY}"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD HKLM "${KEY}" "EstimatedSize" "$0"
SectionEnd

Function un.Refuse
  MessageBox MB_OK|MB_ICONSTOP "$(NotRemoved)" /SD IDOK
  SetErrorLevel 2
  Quit
FunctionEnd

; Nothing is removed of a program that runs, or whose help is open: neither can be opened for writing then.
!macro RefuseInUse FILE
  ClearErrors
  FileOpen $0 "${FILE}" a
  ${If} ${Errors}
    Call un.Refuse
  ${EndIf}
  FileClose $0
!macroend

Section "Uninstall"
  SetShellVarContext all
  !insertmacro RefuseInUse "$INSTDIR\quellbox.exe"
  !insertmacro RefuseInUse "$INSTDIR\quellboxctl.exe"
  !insertmacro RefuseInUse "$INSTDIR\Quellbox.chm"
  ClearErrors
  !include "${FILES}"
  ${If} ${Errors}
    Call un.Refuse
  ${EndIf}
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR\licenses"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Quellbox.lnk"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
