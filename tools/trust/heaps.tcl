# Holds every row of both request tables many times and looks at the heaps: heaps.tcl DLL COUNTS-DLL REPOSITORY TIMES.
# Prints a line "pass N bytes B" after each pass, for whoever judges them; a damaged heap or a wrong answer is an error.

lassign $argv dll counts repository times

source [file join $repository tests plugin rows_host.tcl]
load $counts Counts
load $dll Vernoxa
set base [file nativename [file dirname [file dirname $dll]]]
set script [readUtf8 [file join $repository tests plugin rows.tcl]]
for {set pass 1} {$pass <= $times} {incr pass} {
    serverLinkBreak  ;# as each pass begins
    eval $script
    if {[llength $failures] > 0} {
        error "a row answered wrongly: [join $failures \n]"
    }
    set said {}  ;# what the host keeps in mind is not the plug-in's
    set replied {}
    set scripts {}
    puts "pass $pass bytes [processHeaps]"
}
puts "end"
exit 0
