# Symbols that schematics have no library for: connectors between pages, and the title block.

namespace eval ::drawing {
    # The body of a connector by what its net does, in mils; it is met at 0,0 and runs to the right.
    variable connectorBodies {
        input {0 0 50 -30 100 -30 100 30 50 30 0 0}
        output {0 -30 50 -30 100 0 50 30 0 30 0 -30}
        bidirectional {0 0 50 -30 100 0 50 30 0 0}
        tri_state {0 0 50 -30 100 0 50 30 0 0}
        passive {0 -30 100 -30 100 30 0 30 0 -30}
    }
    variable connectorLength 100
    # Width and height of the title block, and how far it and the frame keep from the paper's edge.
    variable titleWidth 4000
    variable titleHeight 700
    variable margin 400
}

proc ::drawing::connectorRecordType {kind} {
    return [dict get {hierarchical Port global OffPage} $kind]
}

# The symbol of a hierarchical or global label.
proc ::drawing::connector {kind shape} {
    variable connectorBodies
    if {![dict exists $connectorBodies $shape]} {
        set shape passive
    }
    set body [list [list polyline [list [dict get $connectorBodies $shape] none]]]
    return [dict create name [connectorRecordType $kind]-$shape properties {} power 0 \
        pinNamesHidden 1 pinNumbersHidden 1 graphics [dict create {1 1} $body] pins {}]
}

proc ::drawing::titleSymbol {} {
    variable titleWidth
    variable titleHeight
    set third [expr {$titleHeight / 3}]
    return [list [list Name TitleBlock] \
        [list Box 0 0 {*}[units [list $titleWidth $titleHeight]] [colour title] 0 0 1 0] \
        [list Line {*}[units [list 0 $third $titleWidth $third]] [colour title] 0 0] \
        [list Line {*}[units [list 0 [expr {2 * $third}] $titleWidth [expr {2 * $third}]]] [colour title] 0 0]]
}

# The frame of a page, its title block and what is written in it.
proc ::drawing::framePage {page number count} {
    variable titleWidth
    variable titleHeight
    variable margin
    dict with page {}
    set corner [list [expr {$width - $margin - $titleWidth}] [expr {$height - $margin - $titleHeight}]]
    set inside [list $margin $margin [expr {$width - 2 * $margin}] [expr {$height - 2 * $margin}]]
    set records [list [list Box {*}[units $inside] [colour title] 0 0 1 0] \
        [list TitleBlock {*}[units $corner] 0 0 TitleBlock]]
    set rows [list [list "Title: [dict get $title title]"] \
        [list "Page: $name" "Sheet: $schematic"] \
        [list "Date: [dict get $title date]" "Rev: [dict get $title rev]" "Size: $paper" "$number of $count"]]
    lassign $corner left top
    foreach row $rows line {0 1 2} {
        set y [expr {$top + ($line + 0.5) * $titleHeight / 3}]
        set step [expr {$titleWidth / [llength $row]}]
        set x [expr {$left + 60}]
        foreach text $row {
            lappend records [textAt $text $x $y 60 0 {left center} title]
            incr x $step
        }
    }
    return $records
}
