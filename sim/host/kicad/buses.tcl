# Buses: names that stand for several nets, and the nets that buses join.
#
# A member has a name and a key. Of two names on one bus the members with the same key are joined: in a
# range such as D[8..15] the key is the place, so that it can go on as D[0..7] on another page; in a
# group such as USB{D+ D-} it is the member's name without the prefix.

# Keys and names of a bus name's members: "D[8..9]" -> {0 D8 1 D9}; {} for a name that is no bus.
# `aliases` has the members of groups that the design names.
proc ::kicad::busMembers {name {aliases {}}} {
    if {[set range [rangeMembers $name]] ne ""} {
        return $range
    }
    if {[string index $name end] ne "\}" || ![regexp {^([^{}\s]*)\{(.*)\}$} $name -> prefix list]
            || [string index $prefix end] in {~ _ ^ $}} {
        return {}
    }
    if {$prefix ne ""} {
        append prefix .
    }
    set members {}
    foreach word [split $list] {
        set named [expr {[dict exists $aliases $word] ? [dict get $aliases $word] : [list $word]}]
        foreach member $named {
            set range [rangeMembers $member]
            if {$range eq "" && $member ne ""} {
                lappend members $member $prefix$member
            }
            foreach {index single} $range {
                lappend members $single $prefix$single
            }
        }
    }
    return $members
}

proc ::kicad::rangeMembers {name} {
    if {![regexp {^((?:[^\s{}]|[~_^]\{)*)\[(\d{1,4})\.\.(\d{1,4})\](\}?)$} $name -> prefix from to suffix]} {
        return {}
    }
    scan "$from $to" "%d %d" from to
    set members {}
    set place -1
    for {set i [expr {min($from, $to)}]} {$i <= max($from, $to)} {incr i} {
        lappend members [incr place] $prefix$i$suffix
    }
    return $members
}

# Joins what names on one bus have in common. Each entry of onBus: a node of the bus, and name, kind, page
# number and members of a name on it.
proc ::kicad::joinBusMembers {onBus} {
    set buses {}
    foreach entry [lsort -decreasing -command {apply {{a b} {
        expr {[llength [lindex $a 4]] - [llength [lindex $b 4]]}
    }}} $onBus] {
        set names [lassign $entry node]
        dict lappend buses [rootOf $node] $names
    }
    foreach names [dict values $buses] {
        # The widest one leads. Another of the same series is joined to it by its members' names.
        lassign [lindex $names 0] leading leadingKind leadingNumber members
        set series [lindex [split $leading \[] 0]
        foreach entry [lrange $names 1 end] {
            lassign $entry name kind number others
            if {$kind eq $leadingKind && $number == $leadingNumber && [lindex [split $name \[] 0] eq $series} {
                continue
            }
            foreach {key other} $others {
                if {[dict exists $members $key]} {
                    join2 [nameNode $leadingKind $leadingNumber [dict get $members $key]] \
                        [nameNode $kind $number $other]
                }
            }
        }
    }
}
