# Design checks on what is really there. Each finding goes to the plug-in as it is found, and each check
# ends with a call without one.

namespace eval ::checks {
    # Characters that netlist formats keep for themselves.
    variable forbidden {[\u0000-\u001f'"!;]}
}

host::procedure RunCheck {text} {
    checks::run [designs::need $text]
    return 1
}

# The project in front; the path says which one the companion believes that to be.
host::procedure RunCheckActiveProj {text} {
    lassign [pages::need] path
    checks::run $path
    return 1
}

proc ::checks::run {path} {
    set design [dict get $::designs::open $path]
    set counts {}
    foreach {command find} {
        sendRefRepetition references sendIllegalChar characters sendPinNC pins sendNetlist netlist
    } {
        set findings [$find $design]
        foreach finding $findings {
            link::plugin $command {*}$finding
        }
        link::plugin $command
        lappend counts [llength $findings]
    }
    host::log "checked $path: [join $counts {, }] findings"
}

# Schematic, page and position of a part, which end every finding.
proc ::checks::place {design part} {
    set page [dict get $part page]
    return [list [dict get $design pages $page schematic] $page \
        {*}[drawing::units [list [dict get $part x] [dict get $part y]]]]
}

proc ::checks::numbered {reference} {
    return [regexp {[0-9]$} $reference]
}

# The design's parts but those that only name nets, with their ids, by reference.
proc ::checks::partsOf {design} {
    set parts {}
    foreach {reference ids} [lsort -dictionary -stride 2 [dict get $design references]] {
        lappend parts $reference [lmap id $ids {dict get $design parts $id}]
    }
    return $parts
}

# Units that came with a module have symbols of their own, named after the unit.
proc ::checks::packageOf {part} {
    return [regsub -- {-[A-Z]+$} [dict get $part symbol] ""]
}

# A reference may be there twice only for two units of one part.
proc ::checks::references {design} {
    set findings {}
    foreach {reference parts} [partsOf $design] {
        set seen {}
        foreach part $parts {
            if {![numbered $reference]} {
                lappend findings [list NoRefNum $reference "" {*}[place $design $part]]
                continue
            }
            set unit [dict get $part unit]
            if {[dict exists $seen $unit] || [packageOf $part] ne [packageOf [lindex $parts 0]]} {
                lappend findings [list RefRepe $reference $reference {*}[place $design $part]]
            }
            dict set seen $unit 1
        }
    }
    return $findings
}

proc ::checks::characters {design} {
    variable forbidden
    set findings {}
    foreach {reference parts} [partsOf $design] {
        set part [lindex $parts 0]
        foreach name {Reference Value Footprint} {
            set value [dict get $part properties $name]
            if {$value ne "" && ([regexp $forbidden $value] || [link::plugin checkCharIllegal $value] eq "1")} {
                lappend findings [list [parts::editorName $name] $value {*}[place $design $part]]
            }
        }
    }
    return $findings
}

# A pin that several units share is connected when one of them is.
proc ::checks::pins {design} {
    set findings {}
    foreach {reference parts} [partsOf $design] {
        set open {}
        set connected {}
        foreach part $parts {
            foreach pin [dict get $part pins] {
                set number [dict get $pin number]
                if {[dict get $pin net] ne "" || [dict get $pin noConnect]
                        || [dict get $pin type] in {no_connect unconnected free}} {
                    dict set connected $number 1
                } elseif {![dict exists $open $number]} {
                    set at [dict merge $part [dict create x [dict get $pin x] y [dict get $pin y]]]
                    dict set open $number [place $design $at]
                }
            }
        }
        foreach number [lsort -dictionary [dict keys $open]] {
            if {![dict exists $connected $number]} {
                lappend findings [list $reference $number {*}[dict get $open $number]]
            }
        }
    }
    return $findings
}

proc ::checks::netlist {design} {
    set findings {}
    foreach {reference parts} [partsOf $design] {
        set part [lindex $parts 0]
        set at [place $design $part]
        if {[dict get $part footprint] eq ""} {
            lappend findings [list NoFootprint $reference "" {*}$at]
        }
        foreach {kind field} {FootprintDiff footprint ValueDiff value} {
            set values [lsort -unique [lmap unit $parts {dict get $unit $field}]]
            if {[llength $values] > 1} {
                lappend findings [list $kind $reference [join $values /] {*}$at]
            }
        }
        foreach unit $parts {
            foreach finding [pinProblems $unit] {
                lassign $finding kind second
                lappend findings [list $kind $reference $second {*}[place $design $unit]]
            }
        }
    }
    return $findings
}

# {kind text} of what is wrong with the pins of a unit. Names may repeat where pins are joined anyway.
proc ::checks::pinProblems {part} {
    set problems {}
    set numbers {}
    set names {}
    foreach pin [dict get $part pins] {
        set number [dict get $pin number]
        set name [dict get $pin name]
        if {$number eq ""} {
            lappend problems [list NoPinNumber $name]
        } elseif {[dict exists $numbers $number]} {
            lappend problems [list RepePinNum $number]
        }
        if {$name ne "" && [dict get $pin type] in {input output bidirectional tri_state}
                && [dict exists $names $name]} {
            lappend problems [list RepePinName $name]
        }
        dict set numbers $number 1
        dict set names $name 1
    }
    return $problems
}
