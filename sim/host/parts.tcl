# Parts: finding them, their properties, references and texts.

namespace eval ::parts {
    # Property names of the editor -> names under which schematics hold the same.
    variable aliases {
        "Part Reference" {Reference} "PCB Footprint" {Footprint}
        "Part Number" {PartNumber MPN}
    }
    # Distance of reference and value texts from the part's body, in mils.
    variable textGap 50
}

# Ids of all units of a part; an error when there is no such part.
proc ::parts::ids {path reference} {
    if {![dict exists $::designs::open $path references $reference]} {
        error "no such part: $reference"
    }
    return [dict get $::designs::open $path references $reference]
}

# A property of a part, "" when it has none.
proc ::parts::property {part name} {
    variable aliases
    set names [list $name]
    if {[dict exists $aliases $name]} {
        lappend names {*}[dict get $aliases $name]
    }
    foreach candidate $names {
        if {[dict exists $part properties $candidate]} {
            return [dict get $part properties $candidate]
        }
    }
    if {$name eq "Part Name"} {
        return [lindex [split [dict get $part symbol] :] end]
    }
    return ""
}

# The name by which the editor knows a property of a schematic, and the way back.
proc ::parts::editorName {name} {
    return [expr {$name eq "Footprint" ? "PCB Footprint" : $name eq "Reference" ? "Part Reference" : $name}]
}

proc ::parts::schematicName {name} {
    return [expr {$name eq "PCB Footprint" ? "Footprint" : $name eq "Part Reference" ? "Reference" : $name}]
}

host::procedure getAllPropertyName {text} {
    set path [designs::need $text]
    set names {}
    foreach name {"Part Reference" Value "PCB Footprint" "Part Number" "Part Name"} {
        dict set names $name 1
    }
    dict for {id part} [dict get $::designs::open $path parts] {
        if {![dict get $part power]} {
            foreach name [dict keys [dict get $part properties]] {
                dict set names $name 1
            }
        }
    }
    foreach name {Reference Footprint} {
        dict unset names $name
    }
    return [dict keys $names]
}

# Numbers the references of the active design again, prefix by prefix and page by page: type 0 from
# left to right and then down, any other type down and then to the right.
host::procedure RenameRef {type} {
    lassign [pages::need] path
    set order {}
    set number 0
    foreach page [dict keys [dict get $::designs::open $path pages]] {
        dict set order $page [incr number]
    }
    set keyed {}
    foreach ids [dict values [dict get $::designs::open $path whole]] {
        set part [dict get $::designs::open $path parts [lindex $ids 0]]
        set place [list [dict get $part y] [dict get $part x]]
        if {$type != 0} {
            set place [lreverse $place]
        }
        lappend keyed [list [dict get $order [dict get $part page]] {*}$place $ids]
    }
    set used {}
    foreach entry [lsort -integer -index 0 [lsort -integer -index 1 [lsort -integer -index 2 $keyed]]] {
        set ids [lindex $entry 3]
        set reference [dict get $::designs::open $path parts [lindex $ids 0] reference]
        set prefix [regsub {[0-9?]+$} $reference ""]
        dict incr used $prefix
        foreach id $ids {
            dict set ::designs::open $path parts $id reference $prefix[dict get $used $prefix]
            dict set ::designs::open $path parts $id properties Reference \
                $prefix[dict get $used $prefix]
        }
    }
    dict set ::designs::open $path modified 1
    dict set ::designs::open $path [designs::withReferences [dict get $::designs::open $path]]
    return 1
}

# Puts the reference above and the value below each part of the active page.
host::procedure ReplaceRefAndValue {} {
    lassign [pages::need] path page
    foreach id [dict get $::designs::open $path pages $page parts] {
        set part [dict get $::designs::open $path parts $id]
        set symbol [dict get $::designs::open $path symbols [dict get $part symbol]]
        lassign [kicad::boundsOf $symbol [dict get $part unit] [dict get $part style]] x1 y1 x2 y2
        lassign [kicad::onPage $x1 $y1 $part] ax ay
        lassign [kicad::onPage $x2 $y2 $part] bx by
        set x [expr {($ax + $bx) / 2}]
        foreach {name y} [list Reference [expr {min($ay, $by) - $::parts::textGap}] \
                Value [expr {max($ay, $by) + $::parts::textGap}]] {
            if {[dict exists $part texts $name]} {
                set text [lreplace [dict get $part texts $name] 0 2 $x $y 0]
                dict set ::designs::open $path parts $id texts $name $text
            }
        }
    }
    dict set ::designs::open $path modified 1
    return 1
}

# What the user decided about check findings; the design remembers it.
host::procedure AutoDeal {text values} {
    set path [designs::need $text]
    dict set ::designs::open $path dealt $values
    host::log "dealing with: $values"
    return 1
}
