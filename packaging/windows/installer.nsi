; The installer: for one user, without an administrator. Called by tools/package-windows with VERSION, SOURCE and OUTPUT defined.
Unicode true
Target amd64-unicode ; as the program is: on a Windows of 32 bits it does not even start
!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "LogicLib.nsh"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Firmlane"

Name "Firmlane"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Firmlane"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
SetCompressor /SOLID lzma
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Firmlane"
VIAddVersionKey "FileDescription" "Firmlane installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright 2026 the Firmlane authors"
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"

!insertmacro MUI_PAGE_LICENSE "${SOURCE}/LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs cannot be replaced or removed, and half a set of files would not start.
!macro RefuseWhileItRuns
  ${ForEach} $0 1 2 + 1
    StrCpy $1 "firmlane.exe"
    ${If} $0 = 2
      StrCpy $1 "firmlane-demo.exe"
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR\$1"
      ClearErrors
      FileOpen $2 "$INSTDIR\$1" a
      ${If} ${Errors}
        MessageBox MB_OK|MB_ICONEXCLAMATION "Firmlane is running. Close it and start this again." /SD IDOK
        SetErrorLevel 3
        Quit
      ${EndIf}
      FileClose $2
    ${EndIf}
  ${Next}
!macroend

Section "Firmlane"
  !insertmacro RefuseWhileItRuns
  SetOutPath "$INSTDIR"
  !include "${FILES_IN}"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateDirectory "$SMPROGRAMS\Firmlane"
  SetOutPath "$INSTDIR"
  CreateShortcut "$SMPROGRAMS\Firmlane\Firmlane.lnk" "$INSTDIR\firmlane.exe"
  CreateShortcut "$SMPROGRAMS\Firmlane\Firmlane Demo.lnk" "$INSTDIR\firmlane-demo.exe"
  CreateShortcut "$SMPROGRAMS\Firmlane\Uninstall Firmlane.lnk" "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${KEY}" "DisplayName" "Firmlane"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\firmlane.exe"
  WriteRegStr HKCU "${KEY}" "Publisher" "the Firmlane authors"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${KEY}" "EstimatedSize" $0
SectionEnd

; Only what was installed goes: firmware and lists that the program has fetched stay in the user's data directory.
Section "Uninstall"
  !insertmacro RefuseWhileItRuns
  !include "${FILES_OUT}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  RMDir /r "$SMPROGRAMS\Firmlane"
  DeleteRegKey HKCU "${KEY}"
SectionEnd
