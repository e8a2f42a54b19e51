# Placed symbols: where a symbol's points land on the page, and the parts themselves.

# Turns a point of the symbol by the part's rotation, then mirrors it.
proc ::kicad::turned {x y part} {
    switch -exact -- [dict get $part rotation] {
        90  {lassign [list $y [expr {-$x}]] x y}
        180 {lassign [list [expr {-$x}] [expr {-$y}]] x y}
        270 {lassign [list [expr {-$y}] $x] x y}
    }
    switch -exact -- [dict get $part mirror] {
        x {set y [expr {-$y}]}
        y {set x [expr {-$x}]}
    }
    return [list $x $y]
}

proc ::kicad::onPage {x y part} {
    lassign [turned $x $y $part] x y
    return [list [expr {[dict get $part x] + $x}] [expr {[dict get $part y] + $y}]]
}

# Pins of a placed unit at their places on the page. Where part and pin know theirs in steps, what meets
# there meets here.
proc ::kicad::placedPins {symbol part} {
    set pins {}
    foreach pin [partOf [dict get $symbol pins] [dict get $part unit] [dict get $part style]] {
        lassign [onPage [dict get $pin x] [dict get $pin y] $part] x y
        lassign [onPage [dict get $pin bodyX] [dict get $pin bodyY] $part] bodyX bodyY
        if {[dict exists $part steps] && [dict exists $pin steps]} {
            lassign [turned {*}[dict get $pin steps] $part] right down
            lassign [dict get $part steps] partX partY
            set x [milsOfSteps [expr {$partX + $right}]]
            set y [milsOfSteps [expr {$partY + $down}]]
        }
        lappend pins [dict merge [dict remove $pin steps alternates] \
            [dict create x $x y $y bodyX $bodyX bodyY $bodyY noConnect 0 net ""]]
    }
    return $pins
}

# The symbol with the other names and functions that the placed one chose for its pins.
proc ::kicad::withAlternates {symbol node} {
    set chosen {}
    foreach pin [children $node pin] {
        if {[set alternate [value $pin alternate]] ne ""} {
            dict set chosen [lindex $pin 1] $alternate
        }
    }
    if {$chosen eq ""} {
        return $symbol
    }
    set unknown $chosen
    dict for {key pins} [dict get $symbol pins] {
        dict set symbol pins $key [lmap pin $pins {
            set number [dict get $pin number]
            if {[dict exists $chosen $number] && [dict exists $pin alternates [dict get $chosen $number]]} {
                set pin [dict merge $pin [dict get $pin alternates [dict get $chosen $number]]]
                dict unset unknown $number
            }
            set pin
        }]
    }
    dict for {number alternate} $unknown {
        unread "alternate $alternate of pin $number of [dict get $symbol name]"
    }
    return $symbol
}

# Whether a symbol has that unit, or that style: the place in its keys says which.
proc ::kicad::hasChoice {symbol chosen place} {
    set keys [concat [dict keys [dict get $symbol graphics]] [dict keys [dict get $symbol pins]]]
    return [expr {$chosen == 1 || $keys eq "" || ([string is digit -strict $chosen]
        && $chosen in [list 1 {*}[lmap key $keys {lindex $key $place}]])}]
}

# Where the file has no mark for parts that are left out, as in KiCad 6, people write it into a field.
proc ::kicad::isFitted {node properties} {
    if {[set mark [value $node dnp]] ne ""} {
        return [expr {$mark ne "yes"}]
    }
    set field [expr {[dict exists $properties DNP] ? [string tolower [dict get $properties DNP]] : ""}]
    return [expr {$field in {"" 0 no false}}]
}

# `instance` holds what this page's copy of the symbol overrides: reference, unit, value, footprint.
# `page` also says whether parts are in the bill and fitted at all; `variables` are those of the page.
proc ::kicad::partFrom {node id page symbol instance variables} {
    set at [child $node at]
    lassign $at - atX atY
    set properties {}
    set texts {}
    foreach property [children $node property] {
        lassign [nameAndValue $property] given value
        set name $given
        for {set copy 1} {[dict exists $properties $name]} {incr copy} {
            set name ${given}_$copy
        }
        dict set properties $name [plainText $value]
        set place [child $property at]
        dict set texts $name [list {*}[point $place] [quarters $place] {*}[styleOf $property]]
    }
    foreach {key name} {reference Reference value Value footprint Footprint} {
        if {[dict exists $instance $key] && [dict get $instance $key] ne ""} {
            dict set properties $name [dict get $instance $key]
        } elseif {![dict exists $properties $name]} {
            dict set properties $name ""
        }
    }
    set properties [resolvedProperties $properties $variables]
    set reference [dict get $properties Reference]
    set unit [expr {[dict exists $instance unit] ? [dict get $instance unit] : [value $node unit 1]}]
    set style [value $node body_style [value $node convert 1]]
    foreach {what chosen place} [list unit $unit 0 style $style 1] {
        if {![hasChoice $symbol $chosen $place]} {
            unread "$what $chosen of $reference"
            if {![string is digit -strict $chosen]} {
                set $what 1
            }
        }
    }
    set part [dict create id $id page [dict get $page name] reference $reference \
        value [dict get $properties Value] footprint [dict get $properties Footprint] \
        symbol [dict get $symbol name] unit $unit style $style \
        x [mils $atX] y [mils $atY] steps [list [steps $atX] [steps $atY]] \
        rotation [quarters $at] mirror [value $node mirror] \
        properties $properties texts $texts \
        power [expr {[dict get $symbol power] || [string match "#*" $reference]}] \
        inBom [expr {[dict get $page inBom] && [value $node in_bom yes] ne "no"}] \
        fitted [expr {[dict get $page fitted] && [isFitted $node $properties]}] \
        onBoard [expr {[dict get $page onBoard] && [value $node on_board yes] ne "no"}] \
        simulated [expr {[dict get $page simulated] && [value $node exclude_from_sim no] ne "yes"}]]
    dict set part pins [placedPins [withAlternates $symbol $node] $part]
    return $part
}
