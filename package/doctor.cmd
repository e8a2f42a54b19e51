@echo off
rem Looks for what keeps Vernoxa from working here, and says it in words. Nothing is changed. With /quiet behind it, it does
rem not wait for a key at the end.
setlocal
set "wait=yes"
if /i "%~1"=="/quiet" set "wait="
"%~dp0check\tcl\bin\tclsh86.exe" "%~dp0check\doctor.tcl"
set "result=%errorlevel%"
if not exist "%~dp0check\tcl\bin\tclsh86.exe" echo The folder "check" is not beside doctor.cmd: unpack the whole zip. & set "result=3"
if defined wait pause
exit /b %result%
