# Nets: everything that wires, junctions, labels, sheet pins and supply symbols join.
#
# A node is a text: "W page x y" a point of a wire or a pin, "B page x y" a point of a bus,
# "L page name" a label, "H page name" a sheet's port seen from inside, "G name" a global name.
# Nodes that are joined end up under one root. As in KiCad a global name, a supply's too, is also
# that of the labels on its own page.

namespace eval ::kicad {
    variable parent
}

proc ::kicad::rootOf {node} {
    variable parent
    if {![info exists parent($node)]} {
        set parent($node) $node
        return $node
    }
    while {$parent($node) ne $node} {
        set parent($node) $parent($parent($node))
        set node $parent($node)
    }
    return $node
}

proc ::kicad::join2 {first second} {
    variable parent
    set first [rootOf $first]
    set second [rootOf $second]
    if {$first ne $second} {
        set parent($second) $first
    }
}

proc ::kicad::connect {design} {
    variable parent
    array unset parent
    set numberOf {}
    set number 0
    dict for {name page} [dict get $design pages] {
        dict set numberOf $name [incr number]
    }
    dict for {name page} [dict get $design pages] {
        connectPage $page [dict get $numberOf $name] $numberOf [dict get $design aliases]
    }
    foreach part [dict values [dict get $design parts]] {
        connectPins $part [dict get $design symbols [dict get $part symbol]] \
            [dict get $numberOf [dict get $part page]]
    }
    set design [nameNets $design $numberOf]
    array unset parent
    return $design
}

# Joins both ends of each line and gives an index for finding the lines through a point.
proc ::kicad::joinLines {lines letter number} {
    set index [dict create across {} down {} slanted {}]
    foreach line $lines {
        lassign $line x1 y1 x2 y2
        set node "$letter $number $x1 $y1"
        join2 $node "$letter $number $x2 $y2"
        if {$y1 == $y2} {
            dict update index across across {
                dict lappend across $y1 [list [expr {min($x1, $x2)}] [expr {max($x1, $x2)}] $node]
            }
        } elseif {$x1 == $x2} {
            dict update index down down {
                dict lappend down $x1 [list [expr {min($y1, $y2)}] [expr {max($y1, $y2)}] $node]
            }
        } else {
            dict lappend index slanted [list $x1 $y1 $x2 $y2 $node]
        }
    }
    return $index
}

# Nodes of the lines that pass through a point.
proc ::kicad::linesThrough {index x y} {
    set nodes {}
    foreach {direction key along} [list across $y $x down $x $y] {
        if {[dict exists $index $direction $key]} {
            foreach line [dict get $index $direction $key] {
                lassign $line from to node
                if {$from <= $along && $along <= $to} {
                    lappend nodes $node
                }
            }
        }
    }
    foreach line [dict get $index slanted] {
        lassign $line x1 y1 x2 y2 node
        # Within a mil, since all points are rounded.
        if {abs(($x - $x1) * ($y2 - $y1) - ($y - $y1) * ($x2 - $x1)) <= hypot($x2 - $x1, $y2 - $y1)
                && min($x1, $x2) <= $x && $x <= max($x1, $x2)} {
            lappend nodes $node
        }
    }
    return $nodes
}

proc ::kicad::connectPage {page number numberOf aliases} {
    set wires [joinLines [dict get $page wires] W $number]
    set buses [joinLines [dict get $page buses] B $number]
    foreach junction [dict get $page junctions] {
        lassign $junction x y
        foreach {index letter} [list $wires W $buses B] {
            foreach node [linesThrough $index $x $y] {
                join2 $node "$letter $number $x $y"
            }
        }
    }
    # An entry that is on no bus joins wires.
    foreach entry [dict get $page entries] {
        lassign $entry x y dx dy
        set ends [list $x $y [expr {$x + $dx}] [expr {$y + $dy}]]
        if {[concat {*}[lmap {endX endY} $ends {linesThrough $buses $endX $endY}]] eq ""} {
            set wiresThere [concat {*}[lmap {endX endY} $ends {linesThrough $wires $endX $endY}]]
            foreach node [lrange $wiresThere 1 end] {
                join2 [lindex $wiresThere 0] $node
            }
        }
    }
    # Names on buses are joined member by member once every bus of the page is whole.
    set onBus {}
    foreach label [dict get $page labels] {
        dict with label {
            set kinds [dict get {
                label {L} hierarchical {L H} global {G L}
            } $kind]
            attachName $wires $buses onBus $aliases $number $x $y $text $kinds $number
        }
    }
    foreach sheet [dict get $page sheets] {
        if {[dict get $sheet page] eq ""} {
            continue
        }
        set below [dict get $numberOf [dict get $sheet page]]
        foreach pin [dict get $sheet pins] {
            attachName $wires $buses onBus $aliases $number [dict get $pin x] [dict get $pin y] \
                [dict get $pin name] H $below
        }
    }
    joinBusMembers $onBus
}

# The node of a name of the given kind; global names belong to no page.
proc ::kicad::nameNode {kind number name} {
    return [expr {$kind eq "G" ? "G $name" : "$kind $number $name"}]
}

# Attaches a name to what lies under its point; a bus name is put down in onBus for later.
proc ::kicad::attachName {wires buses onBusName aliases number x y name kinds nameNumber} {
    upvar 1 $onBusName onBus
    set members [busMembers $name $aliases]
    if {$members ne ""} {
        lassign $kinds kind port
        lappend onBus [list "B $number $x $y" $name $kind $nameNumber $members]
        foreach node [linesThrough $buses $x $y] {
            join2 $node "B $number $x $y"
        }
        if {$port ne ""} {
            foreach {- member} $members {
                join2 [nameNode $kind $nameNumber $member] [nameNode $port $nameNumber $member]
            }
        }
        return
    }
    if {$name ne ""} {
        foreach kind $kinds {
            join2 "W $number $x $y" [nameNode $kind $nameNumber $name]
        }
    }
    foreach node [linesThrough $wires $x $y] {
        join2 $node "W $number $x $y"
    }
}

# The node of a pin. One that must not be connected is alone, whatever it touches.
proc ::kicad::pinNode {part pin number} {
    if {[dict get $pin type] eq "no_connect"} {
        return "U [dict get $part id] [dict get $pin number]"
    }
    return "W $number [dict get $pin x] [dict get $pin y]"
}

# A supply symbol's pin joins the net that its value names, everywhere or, if it is a local one, on its
# page. A hidden supply pin of any other part joins the net of its own name. No name joins nothing.
proc ::kicad::connectPins {part symbol number} {
    foreach pin [dict get $part pins] {
        set node [pinNode $part $pin $number]
        rootOf $node
        if {[dict get $pin type] ne "power_in"} {
            continue
        }
        lassign [expr {[dict get $symbol power] ? [list [dict get $part value] [dict get $symbol local]] :
            [dict get $pin hidden] ? [list [dict get $pin name] 0] : ""}] name local
        if {$name ne ""} {
            foreach kind [expr {$local ? {L} : {L G}}] {
                join2 $node [nameNode $kind $number $name]
            }
        }
    }
}

# Root node -> name. Global names come first, then labels, those of upper pages before lower ones.
proc ::kicad::netNames {numberOf} {
    variable parent
    set pageOf {}
    dict for {page number} $numberOf {
        dict set pageOf $number $page
    }
    set candidates {}
    foreach node [lsort [array names parent]] {
        if {![regexp {^(?:G (.*)|([LH]) (\d+) (.*))$} $node -> global kind number local]} {
            continue
        }
        if {$kind eq ""} {
            lappend candidates [list 0 $global [rootOf $node]]
        } elseif {$number == 1} {
            lappend candidates [list 1 $local [rootOf $node]]
        } else {
            set page [dict get $pageOf $number]
            lappend candidates [list [expr {2 + [regexp -all / $page]}] $page/$local [rootOf $node]]
        }
    }
    set names {}
    set used {}
    foreach candidate [lsort -integer -index 0 [lsort -dictionary -index 1 $candidates]] {
        lassign $candidate - name root
        if {![dict exists $names $root]} {
            set free $name
            for {set copy 1} {[dict exists $used $free]} {incr copy} {
                set free ${name}_$copy
            }
            dict set names $root $free
            dict set used $free 1
        }
    }
    return $names
}

proc ::kicad::nameNets {design numberOf} {
    set names [netNames $numberOf]
    set members {}
    set noConnect {}
    dict for {name page} [dict get $design pages] {
        foreach point [dict get $page noConnects] {
            dict set noConnect "W [dict get $numberOf $name] $point" 1
        }
    }
    set connected {}
    dict for {id part} [dict get $design parts] {
        set number [dict get $numberOf [dict get $part page]]
        foreach pin [dict get $part pins] {
            set root [rootOf [pinNode $part $pin $number]]
            dict lappend connected $id [list $pin $root]
            dict incr members $root
        }
    }
    # Somebody's label may look like a number of ours.
    set taken {}
    foreach name [dict values $names] {
        dict set taken $name 1
    }
    set unnamed 0
    dict for {root count} $members {
        if {![dict exists $names $root] && $count > 1} {
            while {[dict exists $taken [set name [format N%05d [incr unnamed]]]]} {}
            dict set names $root $name
        }
    }
    set nets {}
    dict for {id list} $connected {
        set power [dict get $design parts $id power]
        set number [dict get $numberOf [dict get $design parts $id page]]
        set pins {}
        foreach pair $list {
            lassign $pair pin root
            set net [expr {[dict exists $names $root] ? [dict get $names $root] : ""}]
            if {$net ne "" && !$power} {
                dict lappend nets $net [list $id [dict get $pin number]]
            }
            dict set pin net $net
            dict set pin noConnect [dict exists $noConnect "W $number [dict get $pin x] [dict get $pin y]"]
            lappend pins $pin
        }
        dict set design parts $id pins $pins
    }
    dict set design nets $nets
    dict for {name page} [dict get $design pages] {
        set wireNets {}
        foreach wire [dict get $page wires] {
            set root [rootOf "W [dict get $numberOf $name] [lrange $wire 0 1]"]
            lappend wireNets [expr {[dict exists $names $root] ? [dict get $names $root] : ""}]
        }
        dict set design pages $name wireNets $wireNets
    }
    return $design
}
