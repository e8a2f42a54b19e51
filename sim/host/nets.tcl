# The nets of a design as a file.

# Writes one line a net, name and then the pins as reference.number, and beside it the parts, one
# line each: reference, value, footprint. Gives the path of the second file.
host::procedure GetNetsList {text file} {
    set path [designs::find $text]
    if {$path eq ""} {
        return "Error: the design is not open: $text"
    }
    set design [dict get $::designs::open $path]
    set dataFile [file rootname $file].dat
    if {[catch {
        nets::write $file [nets::netLines $design]
        nets::write $dataFile [nets::partLines $design]
    } problem]} {
        return "Error: $problem"
    }
    return $dataFile
}

namespace eval ::nets {}

proc ::nets::netLines {design} {
    set wholeOf {}
    dict for {name ids} [dict get $design whole] {
        foreach id $ids {
            dict set wholeOf $id $name
        }
    }
    set lines {}
    dict for {net members} [dict get $design nets] {
        set pins {}
        foreach member $members {
            lassign $member id number
            dict set pins [list [dict get $wholeOf $id] $number] [dict get $design parts $id reference].$number
        }
        lappend lines "$net\t[join [lsort -dictionary [dict values $pins]] " "]"
    }
    return [lsort -dictionary $lines]
}

proc ::nets::partLines {design} {
    set lines {}
    foreach {name ids} [lsort -dictionary -stride 2 [dict get $design whole]] {
        set part [dict get $design parts [lindex $ids 0]]
        lappend lines "[dict get $part reference]\t[dict get $part value]\t[dict get $part footprint]"
    }
    return $lines
}

proc ::nets::write {file lines} {
    set channel [open $file w]
    try {
        fconfigure $channel -encoding utf-8 -translation crlf
        puts $channel [join $lines \n]
    } finally {
        close $channel
    }
}
