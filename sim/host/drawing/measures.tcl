# What drawings and modules are written in: units, codes of colours and turns, texts and their room.
#
# A unit is 10 mils, so that the plug-in's pins of 10 and 30 units are 100 and 300 mils long. The host
# itself counts in whole mils; a number of units has one decimal at most, so that it can come back.

namespace eval ::drawing {
    # Entries of the plug-in's colour table.
    variable colours {wire 26 bus 28 part 24 pin 8 text 40 label 40 port 24 title 43 graphic 28 mark 28}
    # Font heights whose size is not simply the height without its sign: size -> height.
    variable heights {5 -7 6 -8 7 -9 8 -10 9 -12 22 -21}
    # The em of a font is this much more than the height of its capitals, which schematics give.
    variable emOfCapitals 1.4
}

proc ::drawing::unit {mils} {
    set mils [expr {round($mils)}]
    return [expr {$mils % 10 == 0 ? $mils / 10 : $mils / 10.0}]
}

proc ::drawing::units {flat} {
    return [lmap mils $flat {unit $mils}]
}

# The way back; what is no number stands at 0.
proc ::drawing::mils {unit} {
    return [expr {[string is double -strict $unit] ? round($unit * 10) : 0}]
}

proc ::drawing::colour {of} {
    variable colours
    return [dict get $colours $of]
}

# {rotation mirror} codes of a placed symbol. Drawings mirror first and turn then, schematics the other
# way about, which turns a mirrored symbol in the opposite sense.
proc ::drawing::codes {rotation mirror} {
    set turns [expr {$rotation / 90 % 4}]
    if {$mirror ne ""} {
        set turns [expr {(4 - $turns) % 4}]
    }
    return [list $turns [dict get {"" 0 y 1 x 2} $mirror]]
}

# The way back: {rotation mirror} of a schematic.
proc ::drawing::fromCodes {turns mirror} {
    set turns [expr {[string is integer -strict $turns] ? $turns % 4 : 0}]
    if {$mirror in {1 2}} {
        set turns [expr {(4 - $turns) % 4}]
    }
    set mirrors {1 y 2 x}
    return [list [expr {$turns * 90}] [expr {[dict exists $mirrors $mirror] ? [dict get $mirrors $mirror] : ""}]]
}

# Font size in units of a text whose capitals are so many mils high.
proc ::drawing::fontSize {mils} {
    variable emOfCapitals
    return [expr {max(1, round($mils * $emOfCapitals / 10))}]
}

# The height by which the plug-in is told a font size.
proc ::drawing::fontHeight {mils} {
    variable heights
    set size [fontSize $mils]
    # No height stands for this one.
    if {$size == 10} {
        set size 11
    }
    return [expr {[dict exists $heights $size] ? [dict get $heights $size] : -$size}]
}

# The way back.
proc ::drawing::fromFontHeight {height} {
    variable heights
    variable emOfCapitals
    if {![string is integer -strict $height]} {
        return 50
    }
    set size [expr {abs($height)}]
    dict for {known code} $heights {
        if {$code == $height} {
            set size $known
        }
    }
    return [expr {round($size * 10 / $emOfCapitals)}]
}

# {width height} in units of a text of one or more lines.
proc ::drawing::room {text size} {
    set widest 0
    set lines [split $text \n]
    foreach line $lines {
        set width 0
        foreach character [split $line ""] {
            # Chinese characters take a whole square, Latin capitals two thirds of it, others a good half.
            set share [expr {[scan $character %c] >= 0x2e80 ? 1.0 : [string is upper $character] ? 0.66 : 0.56}]
            set width [expr {$width + $size * $share}]
        }
        set widest [expr {max($widest, $width)}]
    }
    set count [llength $lines]
    return [list $widest [expr {$count * $size + ($count - 1) * 2}]]
}

# From a text's point to the middle of the room it takes, as {right down} along the text.
proc ::drawing::middle {room justify} {
    lassign $room width height
    lassign $justify across down
    return [list [expr {$width * [dict get {left 0.5 center 0 right -0.5} $across]}] \
        [expr {$height * [dict get {top 0.5 center 0 bottom -0.5} $down]}]]
}

# A Text record with the middle of its room at a place in mils. `upright` is 1 for a text that reads
# upwards. Records give the upper left corner, as the text reads.
proc ::drawing::textAbout {text x y mils upright of} {
    set size [fontSize $mils]
    lassign [room $text $size] width height
    set x [expr {$x / 10.0}]
    set y [expr {$y / 10.0}]
    if {$upright} {
        set corner [list [expr {$x - $height / 2.0}] [expr {$y + $width / 2.0}]]
    } else {
        set corner [list [expr {$x - $width / 2.0}] [expr {$y - $height / 2.0}]]
    }
    lassign $corner left top
    return [list Text [unit [expr {$left * 10}]] [unit [expr {$top * 10}]] \
        [string map {\n \r\n} $text] [colour $of] "" [fontHeight $mils] $upright]
}

# A Text record for a text at its point, in mils.
proc ::drawing::textAt {text x y mils upright justify of} {
    lassign [middle [room $text [fontSize $mils]] $justify] right down
    if {$upright} {
        lassign [list $down [expr {-$right}]] right down
    }
    return [textAbout $text [expr {$x + $right * 10}] [expr {$y + $down * 10}] $mils $upright $of]
}

# The same for a text that runs away from its point: 0 to the right, 90 up, 180 to the left, 270 down.
# `down` is where it lies about the line on which it runs.
proc ::drawing::textFrom {text x y mils rotation down of} {
    set across [expr {$rotation in {180 270} ? "right" : "left"}]
    return [textAt $text $x $y $mils [expr {$rotation in {90 270}}] [list $across $down] $of]
}
