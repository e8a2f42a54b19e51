# What the user looks at: the active page, its place and scale, the selection.

namespace eval ::pages {
    variable active [dict create path "" page "" x 0 y 0 scale 1.0]
    # Ids of the selected parts of the active design.
    variable selection {}
}

proc ::pages::activate {path page {x 0} {y 0}} {
    variable active
    variable selection
    if {$path ne [dict get $active path]} {
        set selection {}
    }
    set active [dict merge $active [dict create path $path page $page x $x y $y]]
}

proc ::pages::require {path page} {
    set pages [dict get $::designs::open $path pages]
    if {![dict exists $pages $page]} {
        error "no page $page; there are: [join [dict keys $pages] {, }]"
    }
}

proc ::pages::forget {path} {
    variable active
    if {[dict get $active path] eq $path} {
        activate "" ""
    }
}

# {path page} of the active page; an error when there is none.
proc ::pages::need {} {
    variable active
    if {[dict get $active page] eq ""} {
        error "no schematic page is active"
    }
    return [list [dict get $active path] [dict get $active page]]
}

# Selects parts of the active design by their references.
proc ::pages::select {references} {
    variable selection
    lassign [need] path
    set ::modules::block {}
    set selection {}
    foreach reference $references {
        lappend selection {*}[parts::ids $path $reference]
    }
}

# References of the selected parts, on one page or on all.
proc ::pages::selected {path {page *}} {
    variable active
    variable selection
    set references {}
    if {$path eq [dict get $active path]} {
        foreach id $selection {
            set part [dict get $::designs::open $path parts $id]
            if {[dict get $part power]} {
                continue
            }
            if {$page in [list * [dict get $part page]]} {
                dict set references [dict get $part reference] 1
            }
        }
    }
    return [dict keys $references]
}

# One list a design: its path, then the names of its pages.
host::procedure GetActiveProPages {} {
    set projects {}
    dict for {path design} $::designs::open {
        lappend projects [list $path {*}[dict keys [dict get $design pages]]]
    }
    return $projects
}

host::procedure JumpToDsn {text schematic page position} {
    set path [designs::need $text]
    pages::require $path $page
    lassign $position x y
    pages::activate $path $page $x $y
    host::log "showing $page of $schematic at {$position}"
    return 1
}

host::procedure gotoLocation {text reference} {
    set path [designs::need $text]
    set part [dict get $::designs::open $path parts [lindex [parts::ids $path $reference] 0]]
    pages::activate $path [dict get $part page] [dict get $part x] [dict get $part y]
    pages::select [list $reference]
    host::log "showing $reference on page [dict get $part page]"
    return 1
}

host::procedure IsSchematicViewActive {} {
    return [expr {[dict get $::pages::active page] ne ""}]
}

host::procedure UnSelectAll {} {
    set ::pages::selection {}
    set ::modules::block {}
    return 1
}

# No design is the current one until a page is shown again.
host::procedure ClearCurrentDesign {} {
    pages::activate "" ""
    return 1
}

host::procedure ZoomIn {} {
    dict set ::pages::active scale [expr {[dict get $::pages::active scale] * 2}]
    return 1
}

host::procedure ZoomOut {} {
    dict set ::pages::active scale [expr {[dict get $::pages::active scale] / 2}]
    return 1
}
