# Placed symbols: where a symbol's points land on the page, and the parts themselves.

# Turns a point of the symbol by the part's rotation, then mirrors it, then moves it to the part.
proc ::kicad::onPage {x y part} {
    switch -exact -- [dict get $part rotation] {
        90  {lassign [list $y [expr {-$x}]] x y}
        180 {lassign [list [expr {-$x}] [expr {-$y}]] x y}
        270 {lassign [list [expr {-$y}] $x] x y}
    }
    switch -exact -- [dict get $part mirror] {
        x {set y [expr {-$y}]}
        y {set x [expr {-$x}]}
    }
    return [list [expr {[dict get $part x] + $x}] [expr {[dict get $part y] + $y}]]
}

# Pins of a placed unit at their places on the page.
proc ::kicad::placedPins {symbol part} {
    set pins {}
    foreach pin [partOf [dict get $symbol pins] [dict get $part unit] [dict get $part style]] {
        lassign [onPage [dict get $pin x] [dict get $pin y] $part] x y
        lassign [onPage [dict get $pin bodyX] [dict get $pin bodyY] $part] bodyX bodyY
        lappend pins [dict merge $pin \
            [dict create x $x y $y bodyX $bodyX bodyY $bodyY noConnect 0 net ""]]
    }
    return $pins
}

# `instance` holds what this page's copy of the symbol overrides: reference, unit, value, footprint.
proc ::kicad::partFrom {node id page symbol instance} {
    set at [child $node at]
    lassign [point $at] x y
    set properties {}
    set texts {}
    foreach property [children $node property] {
        lassign $property - name value
        dict set properties $name $value
        set place [child $property at]
        dict set texts $name [list {*}[point $place] [expr {round([lindex $place 3])}] \
            [textSize $property] [isHidden $property] [justifyOf $property]]
    }
    foreach {key name} {reference Reference value Value footprint Footprint} {
        if {[dict exists $instance $key] && [dict get $instance $key] ne ""} {
            dict set properties $name [dict get $instance $key]
        } elseif {![dict exists $properties $name]} {
            dict set properties $name ""
        }
    }
    set unit [value $node unit 1]
    if {[dict exists $instance unit]} {
        set unit [dict get $instance unit]
    }
    set reference [dict get $properties Reference]
    set part [dict create id $id page $page reference $reference \
        value [dict get $properties Value] footprint [dict get $properties Footprint] \
        symbol [dict get $symbol name] unit $unit style [value $node convert 1] \
        x $x y $y rotation [expr {round([lindex $at 3])}] mirror [value $node mirror] \
        properties $properties texts $texts \
        power [expr {[dict get $symbol power] || [string match "#*" $reference]}] \
        inBom [expr {[value $node in_bom yes] eq "yes" && [dict get $symbol inBom]}] \
        fitted [expr {[value $node dnp no] ne "yes"}]]
    dict set part pins [placedPins $symbol $part]
    return $part
}
