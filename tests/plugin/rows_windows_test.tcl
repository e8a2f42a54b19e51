# The rows of both request tables on the built DLL, and protocol.json against it: rows_windows_test.tcl Vernoxa64.dll
set folder [file join [expr {[info exists env(TEMP)] ? $env(TEMP) : "C:/"}] vernoxa-rows-[pid]]
file mkdir [file join $folder bin] [file join $folder config Resource]
file copy -force [lindex $argv 0] [file join $folder bin Vernoxa64.dll]
foreach {name text} {config/Resource/Empty.olb OLB module.json {{"children":[{"name":"Part"}],"lib":[{"Name":"RES"}]}}} {
  set channel [open [file join $folder $name] w]
  puts -nonewline $channel $text
  close $channel
}
set base [file nativename $folder]
set here [file dirname [file normalize [info script]]]
set repository [file dirname [file dirname $here]]
source [file join $here rows_host.tcl]
load [file join $folder bin Vernoxa64.dll] Vernoxa
eval [readUtf8 [file join $here rows.tcl]]
eval [readUtf8 [file join $here rows_protocol.tcl]]
foreach failure $failures {
  puts stderr $failure
}
puts "$passed passed, [llength $failures] failed"
exit [expr {[llength $failures] > 0}]
