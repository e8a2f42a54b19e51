# Bills of materials: lists of parts, and which parts are fitted.

namespace eval ::bom {
    # Property that holds the part number, as the last bill asked for it.
    variable numberKey "Part Number"
    variable stick {}
    variable notStick {}
    variable noNumber {}
}

host::procedure capGenerateBOMUtil::init {} {
    foreach list {stick notStick noNumber} {
        set ::bom::$list {}
    }
    host::log "BOM lists are ready"
}

# One line: part number, value, reference, part name, footprint, pin count. `missing` stands for a
# property that the part has not. The fields are joined by ";", so no field may hold one. `ids` are all units.
proc ::bom::line {path ids numberKey nameKey missing} {
    set part [dict get $::designs::open $path parts [lindex $ids 0]]
    set fields {}
    foreach field [list [parts::property $part $numberKey] [dict get $part value] [dict get $part reference] \
            [parts::property $part $nameKey] [dict get $part footprint] \
            [designs::pinsOf [dict get $::designs::open $path] $ids]] {
        lappend fields [expr {$field eq "" ? $missing : [string map {";" ","} $field]}]
    }
    return [join $fields ";"]
}

host::procedure generateBOMForPath {text numberKey nameKey} {
    capGenerateBOMUtil::init
    set path [designs::need $text]
    set ::bom::numberKey $numberKey
    foreach {name ids} [lsort -dictionary -stride 2 [dict get $::designs::open $path whole]] {
        set part [dict get $::designs::open $path parts [lindex $ids 0]]
        if {![dict get $part inBom]} {
            continue
        }
        set line [bom::line $path $ids $numberKey $nameKey NULL]
        lappend ::bom::[expr {[dict get $part fitted] ? "stick" : "notStick"}] $line
        if {[parts::property $part $numberKey] eq ""} {
            lappend ::bom::noNumber $line
        }
    }
    return 1
}

host::procedure capGenerateBOMUtil::getStickList {} {
    return $::bom::stick
}

host::procedure capGenerateBOMUtil::getNotStickList {} {
    return $::bom::notStick
}

host::procedure capGenerateBOMUtil::getNoPartNumberList {} {
    return $::bom::noNumber
}

proc ::bom::setFitted {path reference fitted} {
    foreach id [parts::ids $path $reference] {
        dict set ::designs::open $path parts $id fitted $fitted
    }
    dict set ::designs::open $path modified 1
}

host::procedure setRefToNotUse {text reference} {
    bom::setFitted [designs::need $text] $reference 0
    return 1
}

host::procedure setRefToUse {text reference} {
    bom::setFitted [designs::need $text] $reference 1
    return 1
}

host::procedure setAllNotStick {text} {
    set path [designs::need $text]
    foreach reference [dict keys [dict get $::designs::open $path references]] {
        bom::setFitted $path $reference 0
    }
    return 1
}

# Marks the listed parts as fitted: references joined by ",". Names that the design has not are
# logged, and the rest goes on.
host::procedure setEnterViewMode {text args} {
    set path [designs::need $text]
    foreach reference [split [join $args " "] ,] {
        if {$reference ne "" && [catch {bom::setFitted $path $reference 1} problem]} {
            host::log $problem
        }
    }
    return 1
}

# In BOM view the design is locked, and the action that switches parts is there.
host::procedure LockBomView {text locked} {
    set path [designs::need $text]
    dict set ::designs::open $path locked $locked
    link::plugin [expr {$locked ? "LoadAction" : "unloadAction"}]
    return 1
}

# Switches the selected parts between fitted and not fitted and tells the companion. With an
# argument the companion asks, and an empty selection is an answer, not a message box.
host::procedure switchStickOrNotStick {{asked ""}} {
    set path [dict get $::pages::active path]
    set references [expr {$path eq "" ? {} : [pages::selected $path]}]
    if {$references eq ""} {
        if {$asked ne ""} {
            return "no part is selected"
        }
        link::plugin outputWarming
        return
    }
    if {[link::plugin selectAddOrRemoveFromBom] ne "1"} {
        return
    }
    set lists [dict create 0 {} 1 {}]
    foreach reference $references {
        set id [lindex [parts::ids $path $reference] 0]
        set fitted [expr {![dict get $::designs::open $path parts $id fitted]}]
        bom::setFitted $path $reference $fitted
        dict for {name ids} [dict get $::designs::open $path whole] {
            if {[lindex $name 0] eq $reference} {
                dict lappend lists $fitted [bom::line $path $ids $::bom::numberKey "Part Name" x]
            }
        }
    }
    foreach {fitted command} {1 sendAddToBom 0 sendRemoveFromBom} {
        if {[dict get $lists $fitted] ne ""} {
            link::sendFrom $command [dict get $lists $fitted]
        }
    }
    return
}
