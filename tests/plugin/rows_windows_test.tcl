# The rows of both request tables on the built DLL, and protocol.json against it: rows_windows_test.tcl Vernoxa64.dll
set base [file nativename [install [file join $env(TEMP) vernoxa-rows] [lindex $argv 0]]]
writeFile [file join $base config Resource Empty.olb] OLB
writeFile [file join $base module.json] {{"children":[{"name":"Part"}],"lib":[{"Name":"RES"}]}}
set here [file dirname [file normalize [info script]]]
set repository [file dirname [file dirname $here]]
source [file join $here rows_host.tcl]
load [file join $base bin Vernoxa64.dll] Vernoxa
eval [readUtf8 [file join $here rows.tcl]]
eval [readUtf8 [file join $here rows_protocol.tcl]]
puts stderr [join $failures \n]
puts "$passed passed, [llength $failures] failed"
exit [expr {[llength $failures] > 0}]
