# A page of many records through the built DLL: export_bench.tcl Vernoxa64.dll
set dll [file normalize [lindex $argv 0]]
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] drawing_records.tcl]
namespace eval ::capGenerateBOMUtil {}
set root [file join $env(TEMP) vernoxa-bench]
file delete -force $root
file mkdir $root/bin $root/Cache
file copy $dll $root/bin/Vernoxa64.dll
load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
set count 100000
for {set run 0} {$run < 5} {incr run} {
  lappend loops [lindex [time {sendRecords llength $count}] 0]
  beginPage
  lappend exports [lindex [time {sendRecords addToPageList $count; endPage}] 0]
}
lassign [lmap times [list $loops $exports] {expr {1000.0 * [lindex [lsort -real $times] 2] / $count}}] loop export
set file [lindex [glob $root/Cache/Output/*.json] 0]
puts [format {page of %d records through the DLL into a file of %d bytes: %.0f ns a record, %.0f of them Tcl's own loop (median of 5 runs)} \
  $count [file size $file] $export $loop]
exit
