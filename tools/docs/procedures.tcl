# Notes how the procedures of the stand-in host are called, each with the script as it was evaluated and what it answered,
# as lines of ::procedures::file. Read before the plug-in is loaded, which calls some of them.

namespace eval ::procedures {
    variable channel [open $file w]
    variable counts {}
    fconfigure $channel -encoding utf-8 -translation lf -buffering line
}

proc ::procedures::note {kind name text} {
    puts $::procedures::channel "$kind $name [string map [list \\ {\\} \n {\n} \r {\r}] [host::readable $text]]"
}

proc ::procedures::entered {words operation} {
    set name [string trimleft [lindex $words 0] :]
    dict incr ::procedures::counts $name
    if {[dict get $::procedures::counts $name] <= 20} {
        ::procedures::note called $name [string trim [dict get [info frame -2] cmd]]
    }
}

proc ::procedures::left {words code result operation} {
    set name [string trimleft [lindex $words 0] :]
    if {[dict get $::procedures::counts $name] <= 20} {
        ::procedures::note [expr {$code == 0 ? "answered" : "failed"}] $name $result
    }
}

# Of two traces on the end of a procedure Tcl gives the result to one alone.
foreach name $::host::procedures {
    trace remove execution ::$name leave ::host::logFailure
    trace add execution ::$name enter ::procedures::entered
    trace add execution ::$name leave ::procedures::left
}
