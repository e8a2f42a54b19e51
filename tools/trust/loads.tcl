# Loads and unloads the plug-in many times in one process: loads.tcl DLL COUNTS-DLL TIMES MILLISECONDS. Prints a line
# "load N handles H threads T kilobytes K" after each load, and once more so much later, when all threads have seen that
# their clients are retired; for whoever judges them.

lassign $argv dll counts times settling

# What the plug-in's start-up script calls.
namespace eval ::capGenerateBOMUtil {proc init {} {}}
foreach name {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu} {
    proc $name args {}
}

proc tell {number} {
    lassign [processCounts] handles threads kilobytes
    puts "load $number handles $handles threads $threads kilobytes $kilobytes"
}

load $counts Counts
tell 0
for {set number 1} {$number <= $times} {incr number} {
    load $dll Vernoxa
    if {[string length [getGenerateGuid]] != 36} {
        error "the commands do not answer after load $number"
    }
    unload $dll Vernoxa
    # the new thread has reached its first pause
    after 100
    tell $number
}
after $settling
tell settled
puts "end"
exit 0
