# Holds every row of both command tables many times and looks at the heaps: heaps.tcl DLL COUNTS-DLL ROWS TIMES. Prints a
# line "pass N bytes B" after each pass, for whoever judges them; a damaged heap or a wrong answer is an error.

lassign $argv dll counts rows times

namespace eval ::capGenerateBOMUtil {proc init {} {}}
foreach name {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu} {
    proc $name args {}
}
load $counts Counts
load $dll Vernoxa
set base [file nativename [file dirname [file dirname $dll]]]
set channel [open $rows]
fconfigure $channel -encoding utf-8
set script [read $channel]
close $channel
for {set pass 1} {$pass <= $times} {incr pass} {
    serverLinkBreak  ;# as each pass begins
    eval $script
    if {[llength $failures] > 0} {
        error "a row answered wrongly: [join $failures \n]"
    }
    puts "pass $pass bytes [processHeaps]"
}
puts "end"
