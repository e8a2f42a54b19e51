# The rows of both command tables on the built DLL: rows_windows_test.tcl Vernoxa64.dll
set folder [file join [expr {[info exists env(TEMP)] ? $env(TEMP) : "C:/"}] vernoxa-rows-[pid]]
file mkdir [file join $folder bin]
file copy -force [lindex $argv 0] [file join $folder bin Vernoxa64.dll]
namespace eval ::capGenerateBOMUtil {}
load [file join $folder bin Vernoxa64.dll] Vernoxa
set base [file nativename $folder]
set channel [open [file join [file dirname [info script]] rows.tcl]]
fconfigure $channel -encoding utf-8
set script [read $channel]
close $channel
eval $script
exit [expr {[llength $failures] > 0}]
