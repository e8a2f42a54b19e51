# Everything on a page but its parts and sheets.

proc ::kicad::drawingsOf {root} {
    set page [dict create wires {} buses {} entries {} junctions {} noConnects {} \
        labels {} texts {} lines {} aliases {}]
    foreach item $root {
        set kind [kind $item]
        switch -exact -- $kind {
            wire {dict lappend page wires {*}[linesOf $item]}
            bus {dict lappend page buses {*}[linesOf $item]}
            bus_entry {
                dict lappend page entries \
                    [concat [point [child $item at]] [point [child $item size]]]
            }
            junction {dict lappend page junctions [point [child $item at]]}
            no_connect {dict lappend page noConnects [point [child $item at]]}
            polyline - rectangle - circle - arc - bezier {dict lappend page lines [outlineOf $kind $item]}
            label - global_label - hierarchical_label {
                dict lappend page labels [dict merge [textOf $item] \
                    [dict create kind [string map {_label ""} $kind] shape [value $item shape]]]
            }
            text {dict lappend page texts [textOf $item]}
            text_box {addBox page $item}
            table {
                foreach cell [children [child $item cells] table_cell] {
                    addBox page $cell
                }
            }
            bus_alias {dict set page aliases [lindex $item 1] [lrange [child $item members] 1 end]}
        }
    }
    return $page
}

# The straight lines {x1 y1 x2 y2} of a wire or bus.
proc ::kicad::linesOf {node} {
    set flat [points $node]
    set lines {}
    foreach {x1 y1} [lrange $flat 0 end-2] {x2 y2} [lrange $flat 2 end] {
        lappend lines [list $x1 $y1 $x2 $y2]
    }
    return $lines
}

proc ::kicad::textOf {node} {
    set at [child $node at]
    lassign [point $at] x y
    lassign [styleOf $node] size - justify
    return [dict create text [plainText [lindex $node 1]] x $x y $y \
        rotation [quarters $at] size $size justify $justify]
}

# A text in a box: the box as a line, the text where it lies in it.
proc ::kicad::addBox {pageName node} {
    upvar 1 $pageName page
    set item [textOf $node]
    lassign [point [child $node size]] width height
    dict with item {
        lassign $justify across down
        dict lappend page lines [list $x $y [expr {$x + $width}] $y [expr {$x + $width}] [expr {$y + $height}] \
            $x [expr {$y + $height}] $x $y]
        if {$rotation % 180 == 0} {
            set x [expr {$x + [inset $across $width $size]}]
            set y [expr {$y + [inset $down $height $size]}]
        } else {
            set x [expr {$x + [inset $down $width $size]}]
            set y [expr {$y + $height - [inset $across $height $size]}]
        }
    }
    dict lappend page texts $item
}

# How far into a room of that length a text stands, by where it is set in it.
proc ::kicad::inset {justify length margin} {
    switch -exact -- $justify {
        left - top {return $margin}
        center {return [expr {$length / 2}]}
    }
    return [expr {$length - $margin}]
}

# A shape as a line of points: x y x y ...
proc ::kicad::outlineOf {kind node} {
    switch -exact -- $kind {
        rectangle {
            lassign [concat [point [child $node start]] [point [child $node end]]] x1 y1 x2 y2
            return [list $x1 $y1 $x2 $y1 $x2 $y2 $x1 $y2 $x1 $y1]
        }
        circle {
            lassign [point [child $node center]] x y
            return [turnAbout $x $y [mils [value $node radius 0]] 0 [expr {2 * acos(-1)}]]
        }
        arc {
            return [arcOutline {*}[point [child $node start]] {*}[point [child $node mid]] \
                {*}[point [child $node end]]]
        }
        bezier {return [bezierOutline [points $node]]}
    }
    return [points $node]
}

# Points of a circle about x y, from one angle to another.
proc ::kicad::turnAbout {x y radius from to} {
    set flat {}
    for {set step 0} {$step <= 24} {incr step} {
        set angle [expr {$from + ($to - $from) * $step / 24}]
        lappend flat [expr {round($x + $radius * cos($angle))}] [expr {round($y + $radius * sin($angle))}]
    }
    return $flat
}

proc ::kicad::arcOutline {x1 y1 x2 y2 x3 y3} {
    set d [expr {2.0 * ($x1 * ($y2 - $y3) + $x2 * ($y3 - $y1) + $x3 * ($y1 - $y2))}]
    if {$d == 0} {
        return [list $x1 $y1 $x2 $y2 $x3 $y3]
    }
    lassign [list [expr {$x1**2 + $y1**2}] [expr {$x2**2 + $y2**2}] [expr {$x3**2 + $y3**2}]] s1 s2 s3
    set x [expr {($s1 * ($y2 - $y3) + $s2 * ($y3 - $y1) + $s3 * ($y1 - $y2)) / $d}]
    set y [expr {($s1 * ($x3 - $x2) + $s2 * ($x1 - $x3) + $s3 * ($x2 - $x1)) / $d}]
    set from [expr {atan2($y1 - $y, $x1 - $x)}]
    set to [expr {atan2($y3 - $y, $x3 - $x)}]
    # Which way round it goes through its middle.
    set turn [expr {2 * acos(-1)}]
    if {$d > 0 && $to < $from} {
        set to [expr {$to + $turn}]
    } elseif {$d < 0 && $to > $from} {
        set to [expr {$to - $turn}]
    }
    return [turnAbout $x $y [expr {hypot($x1 - $x, $y1 - $y)}] $from $to]
}

proc ::kicad::bezierOutline {points} {
    if {[llength $points] != 8} {
        return $points
    }
    set flat {}
    for {set step 0} {$step <= 12} {incr step} {
        set t [expr {$step / 12.0}]
        set weights [list [expr {(1 - $t)**3}] [expr {3 * $t * (1 - $t)**2}] \
            [expr {3 * $t**2 * (1 - $t)}] [expr {$t**3}]]
        set x 0
        set y 0
        foreach {px py} $points weight $weights {
            set x [expr {$x + $px * $weight}]
            set y [expr {$y + $py * $weight}]
        }
        lappend flat [expr {round($x)}] [expr {round($y)}]
    }
    return $flat
}
