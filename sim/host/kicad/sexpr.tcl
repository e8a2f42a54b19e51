# S-expressions as Tcl lists: (at 1 "2 mm") becomes {\1at 1 {2 mm}}.
#
# The mark \1 before a list's name tells the list from a text of the same words. Rewriting a file into
# one Tcl list leaves all parsing to Tcl, which reads each level only when it is looked at.

namespace eval ::kicad {
    # Inside quotes Tcl and KiCad escape alike. Braces need help, since Tcl counts them wherever they
    # stand, and parentheses must not be taken for those of lists.
    variable insideQuotes {\\\\ \\\\ \\\{ \\173 \\\} \\175 \{ \\173 \} \\175 ( \\050 ) \\051}
    variable outsideQuotes {\\ \\\\ \{ \\173 \} \\175}
    # What styleOf found, by the list that says it.
    variable styles
    array set styles {}
}

proc ::kicad::parse {text} {
    variable insideQuotes
    variable outsideQuotes
    set safe {}
    set quoted 0
    foreach piece [split [string map {\1 {} \\\\ \\\\ \\\" \\042} $text] \"] {
        if {[string match {*[\\(){}]*} $piece]} {
            if {$quoted} {
                set piece [string map $insideQuotes $piece]
            } elseif {[regexp {[\\{}]} $piece]} {
                set piece [string map $outsideQuotes $piece]
            }
        }
        # What touches a quoted text is a word of its own.
        lappend safe [expr {$quoted ? "\"$piece\"" : $piece}]
        set quoted [expr {!$quoted}]
    }
    set lists [string map [list ( " \{\1" ) " \} "] [join $safe " "]]
    if {[catch {llength $lists} count] || ($count > 1 && [kind [lindex $lists 0]] ne "")} {
        error "its parentheses do not match: it is cut off or damaged"
    }
    return [lindex $lists 0]
}

proc ::kicad::readFile {path} {
    set channel [open $path r]
    fconfigure $channel -encoding utf-8
    try {
        return [string trimleft [read $channel] \ufeff]
    } finally {
        close $channel
    }
}

# The name of a list, or "" for a text.
proc ::kicad::kind {item} {
    return [expr {[string index $item 0] eq "\1" ? [string range [lindex $item 0] 1 end] : ""}]
}

# The first child list named `name`, or {} when there is none.
proc ::kicad::child {node name} {
    return [lsearch -inline -glob $node "\1$name\[ \n\r\t\]*"]
}

proc ::kicad::children {node name} {
    return [lsearch -all -inline -glob $node "\1$name\[ \n\r\t\]*"]
}

# Value `index` of the first child named `name`, else the default.
proc ::kicad::value {node name {default ""} {index 1}} {
    set found [child $node $name]
    return [expr {[llength $found] > $index ? [lindex $found $index] : $default}]
}

# Whether a list says `name`: as a bare word, which KiCad wrote first, or as (name yes).
proc ::kicad::says {node name} {
    if {$name in $node} {
        return 1
    }
    set found [child $node $name]
    return [expr {$found ne "" && [lindex $found 1] in {"" yes}}]
}

# A text as its reader sees it: "~" stands for none, and words in braces for some characters.
proc ::kicad::plainText {text} {
    if {$text eq "~"} {
        return ""
    }
    if {[string first \{ $text] < 0} {
        return $text
    }
    return [string map {\{slash\} / \{backslash\} \\ \{colon\} : \{dblquote\} \" \{quote\} ' \{lt\} < \{gt\} >
        \{bar\} | \{comma\} , \{space\} " " \{dollar\} \$ \{tab\} \t \{return\} \n \{brace\} \{} $text]
}

# Name and value of a property. What is not for export has a word before them.
proc ::kicad::nameAndValue {property} {
    lassign $property - name value more
    if {$name eq "private" && $more ne "" && [kind $more] eq ""} {
        return [list $value $more]
    }
    return [list $name $value]
}

# A number of a file, which may hold anything. No page is as large as the largest one.
proc ::kicad::number {text} {
    if {[scan $text %f%c number rest] != 1 || !($number >= -1e5 && $number <= 1e5)} {
        error "\"$text\" is not a number that can be used"
    }
    return $number
}

# The angle of what stands at (at x y angle): 0, 90, 180 or 270. Another one is noted and set right.
proc ::kicad::quarters {node} {
    set angle [number [expr {[llength $node] > 3 ? [lindex $node 3] : 0}]]
    set right [expr {round($angle / 90) * 90 % 360}]
    if {round($angle) % 360 != $right} {
        unread "angle [format %g $angle]"
    }
    return $right
}

# Millimetres to whole steps of KiCad's own grid, of which 254 are a mil. What meets in KiCad meets
# there; sums of rounded mils may differ by one.
proc ::kicad::steps {millimetres} {
    return [expr {round([number $millimetres] * 10000)}]
}

proc ::kicad::milsOfSteps {steps} {
    return [expr {round($steps / 254.0)}]
}

proc ::kicad::mils {millimetres} {
    return [milsOfSteps [steps $millimetres]]
}

# {x y} in mils of a list such as (xy 1.27 2.54) or (start 0 0).
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

# How a text looks: {size hidden justify}. justify says where it lies about its point:
# {left, center or right} {top, center or bottom}.
proc ::kicad::styleOf {node} {
    variable styles
    set effects [child $node effects]
    # Thousands of texts look alike.
    if {![info exists styles($effects)]} {
        set across center
        set down center
        foreach word [lrange [child $effects justify] 1 end] {
            switch -exact -- $word {
                left - right {set across $word}
                top - bottom {set down $word}
            }
        }
        set styles($effects) [list [mils [value [child $effects font] size 1.27]] [says $effects hide] \
            [list $across $down]]
    }
    if {[value $node hide] eq "yes"} {
        return [lreplace $styles($effects) 1 1 1]
    }
    return $styles($effects)
}
