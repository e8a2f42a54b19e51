# Library symbols as drawing records, each in its own frame.

# The name of what a placed unit shows; units and styles of one symbol are symbols of their own.
proc ::drawing::symbolName {symbol unit style} {
    set name [dict get $symbol name]
    if {[unitCount $symbol] > 1} {
        append name - [unitLetter $unit]
    }
    return [expr {$style == 1 ? $name : "$name-style$style"}]
}

proc ::drawing::unitCount {symbol} {
    set count [expr {[dict exists $symbol units] ? [dict get $symbol units] : 1}]
    foreach key [concat [dict keys [dict get $symbol graphics]] [dict keys [dict get $symbol pins]]] {
        set count [expr {max($count, [lindex $key 0])}]
    }
    return $count
}

# 1 is A; beyond the alphabet the letters go on as two.
proc ::drawing::unitLetter {unit} {
    set letters ""
    for {set rest $unit} {$rest > 0} {set rest [expr {($rest - 1) / 26}]} {
        set letters [format %c [expr {65 + ($rest - 1) % 26}]]$letters
    }
    return $letters
}

proc ::drawing::symbolRecords {symbol unit style} {
    set records [list [list Name [symbolName $symbol $unit $style]]]
    foreach shape [kicad::partOf [dict get $symbol graphics] $unit $style] {
        lappend records [shapeRecord {*}$shape]
    }
    foreach pin [kicad::partOf [dict get $symbol pins] $unit $style] {
        if {![dict get $pin hidden]} {
            lappend records {*}[pinRecords $pin]
        }
    }
    return $records
}

# Line style, line width, fill style, hatch style: only an outlined fill takes the line's colour.
proc ::drawing::styles {fill} {
    return [list 0 0 [expr {$fill eq "outline" ? 0 : 1}] 0]
}

proc ::drawing::shapeRecord {kind data} {
    set colour [colour part]
    switch -exact -- $kind {
        rectangle {
            lassign $data x1 y1 x2 y2 fill
            set box [list [expr {min($x1, $x2)}] [expr {min($y1, $y2)}] [expr {abs($x2 - $x1)}] \
                [expr {abs($y2 - $y1)}]]
            return [list Box {*}[units $box] $colour {*}[styles $fill]]
        }
        circle {
            lassign $data x y radius fill
            return [list Ellipse {*}[units [list $x $y $radius $radius]] $colour {*}[styles $fill]]
        }
        arc {return [list Arc [arcPath {*}[lrange $data 0 5]] $colour 0 0]}
        polyline {
            lassign $data points fill
            if {$fill eq "outline"} {
                return [list Polygon [path $points]Z $colour {*}[styles $fill]]
            }
            return [list Polyline [pointList $points] $colour 0 0]
        }
        bezier {
            lassign [units [lindex $data 0]] x y
            return [list Bezier "M $x $y C [lrange [units [lindex $data 0]] 2 end]" $colour 0 0]
        }
        text {
            lassign $data text x y rotation mils
            return [list {*}[textAt $text $x $y $mils [expr {$rotation in {90 270}}] {center center} part] 0]
        }
    }
    error "no such shape: $kind"
}

proc ::drawing::pointList {points} {
    set list {}
    foreach {x y} [units $points] {
        lappend list $x,$y
    }
    return [join $list " "]
}

proc ::drawing::path {points} {
    set path ""
    foreach {x y} [units $points] {
        append path [expr {$path eq "" ? "M" : "L"}] " $x $y "
    }
    return $path
}

# {x y radius} of the circle through three points; {} when they lie on a line.
proc ::drawing::circleThrough {x1 y1 x2 y2 x3 y3} {
    set d [expr {2.0 * ($x1 * ($y2 - $y3) + $x2 * ($y3 - $y1) + $x3 * ($y1 - $y2))}]
    if {$d == 0} {
        return {}
    }
    set s1 [expr {$x1 * $x1 + $y1 * $y1}]
    set s2 [expr {$x2 * $x2 + $y2 * $y2}]
    set s3 [expr {$x3 * $x3 + $y3 * $y3}]
    set x [expr {($s1 * ($y2 - $y3) + $s2 * ($y3 - $y1) + $s3 * ($y1 - $y2)) / $d}]
    set y [expr {($s1 * ($x3 - $x2) + $s2 * ($x1 - $x3) + $s3 * ($x2 - $x1)) / $d}]
    return [list $x $y [expr {hypot($x1 - $x, $y1 - $y)}]]
}

# The path from the first point through the second to the third.
proc ::drawing::arcPath {x1 y1 x2 y2 x3 y3} {
    set circle [circleThrough $x1 $y1 $x2 $y2 $x3 $y3]
    if {$circle eq ""} {
        return [string trimright [path [list $x1 $y1 $x3 $y3]]]
    }
    lassign $circle x y radius
    # With y down a positive turn goes clockwise, which is what the path calls a sweep.
    set clockwise [expr {($x2 - $x1) * ($y3 - $y1) - ($y2 - $y1) * ($x3 - $x1) > 0}]
    # More than half of the circle when its centre and the middle point are on one side of the chord.
    set ofMiddle [expr {($x3 - $x1) * ($y2 - $y1) - ($y3 - $y1) * ($x2 - $x1)}]
    set ofCentre [expr {($x3 - $x1) * ($y - $y1) - ($y3 - $y1) * ($x - $x1)}]
    set large [expr {$ofMiddle * $ofCentre > 0}]
    set radius [unit $radius]
    return "M [units [list $x1 $y1]] A $radius $radius 0 $large $clockwise [units [list $x3 $y3]]"
}

# A pin's shape has a length of 0, 10 or 30 units; the rest of another length is a line of its own.
proc ::drawing::pinRecords {pin} {
    dict with pin {}
    set length [expr {abs($x - $bodyX) + abs($y - $bodyY)}]
    set drawn [expr {$length == 300 ? 300 : $length >= 100 ? 100 : 0}]
    set shapeText [dict get {0 ZERO 100 SHORT 300 LONG} $drawn]
    append shapeText [expr {[string match *clock* $shape] ? " CLOCK" : ""}] \
        [expr {[string match *inverted* $shape] || [string match *_low $shape] ? " DOT" : ""}]
    set records [list [list Pin {*}[units [list $bodyX $bodyY $x $y]] [colour pin] 0 $shapeText [pinSide $pin]]]
    if {$length > $drawn} {
        set fromX [expr {$bodyX + ($x - $bodyX) * $drawn / $length}]
        set fromY [expr {$bodyY + ($y - $bodyY) * $drawn / $length}]
        lappend records [list Line {*}[units [list $fromX $fromY $x $y]] [colour pin] 0 0]
    }
    return $records
}

# On which side of its body a pin is.
proc ::drawing::pinSide {pin} {
    dict with pin {}
    if {$x != $bodyX} {
        return [expr {$x < $bodyX ? "LEFT" : "RIGHT"}]
    }
    return [expr {$y < $bodyY ? "TOP" : "BOTTOM"}]
}
