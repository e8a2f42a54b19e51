# Elements of library parts: from a symbol's shapes and pins to module records, and back from the
# lists of a module that is placed.

namespace eval ::modules {}

# "x y" of a point in mils.
proc ::modules::place {x y} {
    return "[drawing::unit $x] [drawing::unit $y]"
}

# The way back, from a text of any number of coordinates.
proc ::modules::milsOf {text} {
    return [lmap unit [split [string map {, " "} $text]] {
        if {$unit eq ""} continue
        drawing::mils $unit
    }]
}

proc ::modules::shapeRecord {kind data} {
    set colour [drawing::colour part]
    switch -exact -- $kind {
        rectangle {
            lassign $data x1 y1 x2 y2 fill
            return [list Box {*}[drawing::units [list $x1 $y1 $x2 $y2]] $colour {*}[drawing::styles $fill]]
        }
        circle {
            lassign $data x y radius fill
            set box [list [expr {$x - $radius}] [expr {$y - $radius}] [expr {$x + $radius}] [expr {$y + $radius}]]
            return [list Ellipse {*}[drawing::units $box] $colour {*}[drawing::styles $fill]]
        }
        arc {
            lassign $data x1 y1 x2 y2 x3 y3 fill box
            return [list Arc {*}[drawing::units [list {*}$box $x1 $y1 $x3 $y3]] $colour 0 0]
        }
        polyline - bezier {
            lassign $data points fill
            set start [lrange [drawing::units $points] 0 1]
            set path [drawing::pointList $points]
            if {$kind eq "bezier"} {
                return [list Bezier {*}$start $colour 0 0 $path]
            }
            if {$fill eq "outline"} {
                return [list Polygon {*}$start $colour {*}[drawing::styles $fill] $path]
            }
            return [list Polyline {*}$start $colour 0 0 $path]
        }
        text {
            lassign $data text x y rotation mils
            lassign [drawing::room $text [drawing::fontSize $mils]] width height
            set box [list $x $y [expr {$x + $width * 10}] [expr {$y + $height * 10}]]
            return [list Text {*}[drawing::units $box] $text $colour]
        }
    }
    error "no such shape: $kind"
}

# An arc as it will be when it comes back: counter-clockwise, in its box, its middle where that puts it.
proc ::modules::settled {shape} {
    lassign $shape kind data
    if {$kind ne "arc" || [llength $data] == 8} {
        return $shape
    }
    lassign $data x1 y1 x2 y2 x3 y3
    set box [arcBox $x1 $y1 $x2 $y2 $x3 $y3]
    if {[turnsClockwise $x1 $y1 $x2 $y2 $x3 $y3]} {
        lassign [list $x1 $y1 $x3 $y3] x3 y3 x1 y1
    }
    return [list arc [list $x1 $y1 {*}[arcMiddle $box $x1 $y1 $x3 $y3] $x3 $y3 none $box]]
}

proc ::modules::turnsClockwise {x1 y1 x2 y2 x3 y3} {
    return [expr {($x2 - $x1) * ($y3 - $y1) - ($y2 - $y1) * ($x3 - $x1) > 0}]
}

proc ::modules::arcBox {x1 y1 x2 y2 x3 y3} {
    lassign [drawing::circleThrough $x1 $y1 $x2 $y2 $x3 $y3] x y radius
    if {$radius eq ""} {
        return [list $x1 $y1 $x3 $y3]
    }
    return [lmap edge [list [expr {$x - $radius}] [expr {$y - $radius}] [expr {$x + $radius}] \
        [expr {$y + $radius}]] {expr {round($edge)}}]
}

# The middle of the arc that runs counter-clockwise, with y down, from one point to another.
proc ::modules::arcMiddle {box x1 y1 x2 y2} {
    lassign $box left top right bottom
    set x [expr {($left + $right) / 2.0}]
    set y [expr {($top + $bottom) / 2.0}]
    set radius [expr {abs($right - $left) / 2.0}]
    set from [expr {atan2($y - $y1, $x1 - $x)}]
    set to [expr {atan2($y - $y2, $x2 - $x)}]
    if {$to <= $from} {
        set to [expr {$to + 2 * acos(-1)}]
    }
    set angle [expr {($from + $to) / 2}]
    return [list [expr {$x + $radius * cos($angle)}] [expr {$y - $radius * sin($angle)}]]
}

proc ::modules::pinRecords {pin} {
    dict with pin {}
    return [list [list Pin {*}[drawing::units [list $bodyX $bodyY $x $y]] $number $name $type] \
        [list Property "Pin Shape" $shape] [list Property "Is Hidden" $hidden]]
}

# A shape from an element of a placed library part: its kind, and its data as a dict. Points of a path
# come as items of their own, so `points` holds them. {} for a kind that is no shape.
proc ::modules::shapeFrom {kind data points} {
    set fill [expr {[dict exists $data FillStyle] && [dict get $data FillStyle] eq "0" ? "outline" : "none"}]
    switch -exact -- $kind {
        Box {
            return [list rectangle [concat [milsOf [dict get $data UpperLeft]] [milsOf [dict get $data LowerRight]] \
                [list $fill]]]
        }
        line {
            return [list polyline [list [concat [milsOf [dict get $data Start]] [milsOf [dict get $data EndPos]]] none]]
        }
        Ellipse {
            lassign [milsOf [dict get $data BoundingBox]] x1 y1 x2 y2
            return [list circle [list [expr {($x1 + $x2) / 2}] [expr {($y1 + $y2) / 2}] \
                [expr {abs($x2 - $x1) / 2}] $fill]]
        }
        Arc {
            set box [milsOf [dict get $data BoundingBox]]
            set start [milsOf [dict get $data Start]]
            set end [milsOf [dict get $data EndPos]]
            return [list arc [list {*}$start {*}[arcMiddle $box {*}$start {*}$end] {*}$end none $box]]
        }
        Polyline {return [list polyline [list [milsOf [join $points " "]] none]]}
        Polygon {return [list polyline [list [milsOf [join $points " "]] $fill]]}
        Bezier {return [list bezier [list [milsOf [join $points " "]] none]]}
        Text {
            lassign [milsOf [dict get $data BoundingBox]] x y right bottom
            set lines [llength [split [dict get $data Text] \n]]
            set size [expr {(($bottom - $y) / 10.0 + 2) / $lines - 2}]
            return [list text [list [dict get $data Text] $x $y 0 \
                [expr {round($size * 10 / $::drawing::emOfCapitals)}]]]
        }
    }
    return {}
}

# A pin of a placed library part; its number comes later.
proc ::modules::pinFrom {data properties} {
    lassign [milsOf "[dict get $data StartPoint] [dict get $data HotSpot]"] bodyX bodyY x y
    set shape [expr {[dict exists $properties "Pin Shape"] ? [dict get $properties "Pin Shape"] : "line"}]
    set hidden [expr {[dict exists $properties "Is Hidden"] && [dict get $properties "Is Hidden"] eq "1"}]
    return [dict create number "" name [dict get $data PinName] type [dict get $data PinType] \
        shape $shape hidden $hidden x $x y $y bodyX $bodyX bodyY $bodyY]
}
