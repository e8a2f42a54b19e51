# What a place where a sheet is used says about it and the symbols on it.
#
# Since KiCad 7 each symbol lists what it is called, by project and path; before, the root did so for
# all. Paths are made of the identifiers of the sheets on the way; the newer ones begin with the root's.

# The entry of a symbol or sheet for a path below the root, of our own project rather than of another; {} without
# one. A root that was made again or copied has another identifier: what our project says first below an old one holds.
proc ::kicad::instanceFor {node path context} {
    set found {}
    set moved {}
    foreach theirs [children [child $node instances] project] {
        set own [expr {[lindex $theirs 1] eq [dict get $context project]}]
        foreach entry [children $theirs path] {
            if {[lindex $entry 1] eq "[dict get $context rootPath]$path"} {
                set found $entry
                if {$own} {
                    return $entry
                }
            } elseif {$own && $moved eq "" && $path ne "" && [regsub {^/[^/]*} [lindex $entry 1] ""] eq $path} {
                set moved $entry
            }
        }
    }
    if {$found eq "" && $moved ne ""} {
        unread "another root, whose references are taken"
        return $moved
    }
    return $found
}

# What overrides a symbol's own fields on the page with that path below the root: a dict of reference and
# unit, in older files also of value and footprint.
proc ::kicad::overridesFor {node path context} {
    set key $path/[value $node uuid]
    set entry [instanceFor $node $path $context]
    if {$entry eq "" && [dict exists $context overrides $key]} {
        return [dict get $context overrides $key]
    }
    # A sheet that is shown without its project goes by its first use, as in KiCad.
    if {$entry eq "" && [set entry [child [child [child $node instances] project] path]] eq ""} {
        return {}
    }
    set overrides [dict create reference [value $entry reference]]
    if {[set unit [value $entry unit]] ne ""} {
        dict set overrides unit $unit
    }
    return $overrides
}

# The root's own table of them: symbol path -> overrides.
proc ::kicad::rootOverrides {root} {
    set overrides {}
    foreach entry [children [child $root symbol_instances] path] {
        dict set overrides [lindex $entry 1] [dict create reference [value $entry reference] \
            unit [value $entry unit 1] value [plainText [value $entry value]] \
            footprint [plainText [value $entry footprint]]]
    }
    return $overrides
}

# The root's own table of page numbers: sheet path -> page number.
proc ::kicad::rootPageNumbers {root} {
    set numbers {}
    foreach entry [children [child $root sheet_instances] path] {
        dict set numbers [lindex $entry 1] [value $entry page]
    }
    return $numbers
}

# The page number of a sheet on the page with the path `above`.
proc ::kicad::pageNumberFor {node above context} {
    set key $above/[value $node uuid]
    if {[dict exists $context numbers $key]} {
        return [dict get $context numbers $key]
    }
    return [value [instanceFor $node $above $context] page]
}
