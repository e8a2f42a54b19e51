@echo off
rem Looks for what keeps Vernoxa from working here, and says it in words. Nothing is changed. With /quiet behind it, it does
rem not wait for a key at the end.
setlocal DisableDelayedExpansion
set "wait=yes"
if /i "%~1"=="/quiet" set "wait="
set "result=3"
set "missing="
rem Another program's Tcl is none of this one's.
set "TCL_LIBRARY="
set "TCLLIBPATH="
rem Names below this folder: a "%" in its own would be read as a variable.
pushd "%~dp0"
for %%f in (tcl\bin\tclsh86.exe tcl\bin\tcl86.dll tcl\bin\zlib1.dll tcl\lib\tcl8.6\init.tcl begin.tcl doctor.tcl) do if not exist "check\%%f" set "missing=check\%%f"
if defined missing echo %missing% is missing: unpack the whole zip once more, with its folders.
if not defined missing check\tcl\bin\tclsh86.exe check\doctor.tcl
if not defined missing set "result=%errorlevel%"
if not defined missing if not "%result%"=="0" if not "%result%"=="1" if not "%result%"=="2" echo check\tcl\bin\tclsh86.exe does not run here but ends with %result%: unpack the whole zip once more, into a folder with a plain name.
popd
if defined wait pause
exit /b %result%
