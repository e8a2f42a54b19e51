# S-expressions as Tcl lists: (at 1 2) becomes {at 1 2}.

# Rewriting the text into one Tcl list leaves all parsing to Tcl, which reads each level only
# when it is looked at. Inside quotes Tcl and KiCad escape alike; only braces need help, since
# Tcl counts them wherever they stand.
proc ::kicad::parse {text} {
    set pieces {}
    foreach piece [regexp -all -inline {"(?:[^"\\]|\\.)*"|[^"]+|"} $text] {
        if {[string index $piece 0] eq "\""} {
            lappend pieces [string map {\\\{ \\173 \\\} \\175 \{ \\173 \} \\175} $piece]
        } else {
            lappend pieces [string map {\\ \\\\ \{ \\173 \} \\175 ( " \{" ) "\} "} $piece]
        }
    }
    return [lindex [join $pieces ""] 0]
}

proc ::kicad::readFile {path} {
    set channel [open $path r]
    fconfigure $channel -encoding utf-8
    try {
        return [read $channel]
    } finally {
        close $channel
    }
}

# The first child list named `name`, or {} when there is none.
proc ::kicad::child {node name} {
    foreach item $node {
        if {[string match $name* $item] && [lindex $item 0] eq $name} {
            return $item
        }
    }
    return {}
}

# Value `index` of the first child named `name`, else the default.
proc ::kicad::value {node name {default ""} {index 1}} {
    set found [child $node $name]
    if {[llength $found] > $index} {
        return [lindex $found $index]
    }
    return $default
}

proc ::kicad::children {node name} {
    set found {}
    foreach item $node {
        if {[string match $name* $item] && [lindex $item 0] eq $name} {
            lappend found $item
        }
    }
    return $found
}

# A bare word of a list, such as `hide`.
proc ::kicad::flag {node word} {
    return [expr {[lsearch -exact $node $word] >= 0}]
}

# Millimetres to whole mils.
proc ::kicad::mils {millimetres} {
    return [expr {round($millimetres / 0.0254)}]
}

# {x y} in mils of a node such as {xy 1.27 2.54} or {start 0 0}.
proc ::kicad::point {node} {
    if {[llength $node] < 3} {
        return {0 0}
    }
    return [list [mils [lindex $node 1]] [mils [lindex $node 2]]]
}

# x y x y ... of the node's points.
proc ::kicad::points {node} {
    set flat {}
    foreach xy [children [child $node pts] xy] {
        lappend flat {*}[point $xy]
    }
    return $flat
}

proc ::kicad::textSize {node} {
    return [mils [value [child [child $node effects] font] size 1.27]]
}

# Where a text lies about its point: {left, center or right} {top, center or bottom}.
proc ::kicad::justifyOf {node} {
    set words [child [child $node effects] justify]
    set across center
    set down center
    foreach word $words {
        switch -exact -- $word {
            left - right {set across $word}
            top - bottom {set down $word}
        }
    }
    return [list $across $down]
}

proc ::kicad::isHidden {node} {
    return [flag [child $node effects] hide]
}
