# Placing things on the active page.

namespace eval ::placing {}

# Points of the page where exactly one wire ends and nothing else is: list of {x y net}.
proc ::placing::openEnds {path page} {
    set design [dict get $::designs::open $path]
    set drawing [dict get $design pages $page]
    set met {}
    foreach wire [dict get $drawing wires] net [dict get $drawing wireNets] {
        foreach {x y} $wire {
            dict lappend met "$x $y" $net
        }
    }
    foreach label [dict get $drawing labels] {
        dict unset met "[dict get $label x] [dict get $label y]"
    }
    foreach point [concat [dict get $drawing junctions] [dict get $drawing noConnects]] {
        dict unset met $point
    }
    foreach entry [dict get $drawing entries] {
        lassign $entry x y dx dy
        dict unset met "$x $y"
        dict unset met "[expr {$x + $dx}] [expr {$y + $dy}]"
    }
    foreach sheet [dict get $drawing sheets] {
        foreach pin [dict get $sheet pins] {
            dict unset met "[dict get $pin x] [dict get $pin y]"
        }
    }
    foreach id [dict get $drawing parts] {
        foreach pin [dict get $design parts $id pins] {
            dict unset met "[dict get $pin x] [dict get $pin y]"
        }
    }
    set ends {}
    dict for {point nets} $met {
        if {[llength $nets] == 1} {
            lappend ends [list {*}$point [lindex $nets 0]]
        }
    }
    return $ends
}

# Puts a connector of the kind at each open wire end whose net has a name.
proc ::placing::connectors {kind type} {
    if {![string is integer -strict $type] || $type < 0} {
        return "no such type: $type"
    }
    if {![IsSchematicViewActive]} {
        return "no schematic page is active"
    }
    lassign [pages::need] path page
    set placed 0
    foreach end [openEnds $path $page] {
        lassign $end x y net
        if {$net eq ""} {
            continue
        }
        set label [dict create kind $kind text $net x $x y $y rotation 0 shape $type size 50]
        set labels [dict get $::designs::open $path pages $page labels]
        dict set ::designs::open $path pages $page labels [concat $labels [list $label]]
        incr placed
    }
    if {$placed == 0} {
        return "no open wire end"
    }
    dict set ::designs::open $path modified 1
    host::log "placed $placed connectors of kind $kind on page $page"
    return 1
}

host::procedure KX_PlaceWirePort {type nets} {
    return [placing::connectors hierarchical $type]
}

host::procedure KX_PlaceWireOffPage {type nets} {
    return [placing::connectors offpage $type]
}
