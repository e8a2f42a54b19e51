@echo off
rem Tries Vernoxa on this machine, in a minute, and writes result.html and result.zip. Nothing is installed or changed;
rem end the editor and its companion first. With /quiet behind it, it does not wait for a key at the end.
setlocal
set "wait=yes"
if /i "%~1"=="/quiet" set "wait=" & shift /1
"%~dp0check\tcl\bin\tclsh86.exe" "%~dp0check\check.tcl" %1 %2 %3 %4
set "result=%errorlevel%"
if not exist "%~dp0check\tcl\bin\tclsh86.exe" echo The folder "check" is not beside check.cmd: unpack the whole zip. & set "result=3"
if defined wait pause
exit /b %result%
