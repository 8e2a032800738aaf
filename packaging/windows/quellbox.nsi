; The installer. /S installs and removes without a word, /D=folder chooses the place. The settings of users stay when
; the program is removed.
; The installer is a 64-bit program as well.
Target amd64-unicode
!include "MUI2.nsh"
!include "FileFunc.nsh"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quellbox"

Name "Quellbox"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Quellbox"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
BrandingText "Quellbox ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Quellbox"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "${COMPANY}"
VIAddVersionKey "FileDescription" "Installs Quellbox"
VIAddVersionKey "LegalCopyright" "${COMPANY}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\quellbox.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${SOURCE}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Function .onInit
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  ; A program that runs cannot be replaced.
  ClearErrors
  File "${SOURCE}\quellbox.exe"
  IfErrors 0 +4
    MessageBox MB_OK|MB_ICONSTOP "Quellbox could not be written. Close the program and try again." /SD IDOK
    SetErrorLevel 2
    Quit
  File "${SOURCE}\LICENSE.txt"
  File "${SOURCE}\Quellbox.chm"
  File /r "${SOURCE}\licenses"
  WriteUninstaller "$INSTDIR\uninstall.exe"
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

Section "Uninstall"
  SetShellVarContext all
  ; While the program runs it stays whole, and so does the entry that removes it.
  ClearErrors
  Delete "$INSTDIR\quellbox.exe"
  IfErrors 0 +4
    MessageBox MB_OK|MB_ICONSTOP "Quellbox could not be removed. Close the program and try again." /SD IDOK
    SetErrorLevel 2
    Quit
  Delete "$INSTDIR\LICENSE.txt"
  Delete "$INSTDIR\Quellbox.chm"
  Delete "$INSTDIR\uninstall.exe"
  RMDir /r "$INSTDIR\licenses"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Quellbox.lnk"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
