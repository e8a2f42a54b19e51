# Library symbols: graphics and pins, turned so that y points down like on the page.

proc ::kicad::flipped {flat} {
    set result {}
    foreach {x y} $flat {
        lappend result $x [expr {-$y}]
    }
    return $result
}

proc ::kicad::shapeOf {node} {
    set fill [value [child $node fill] type none]
    switch -exact -- [kind $node] {
        rectangle {
            set corners [concat [point [child $node start]] [point [child $node end]]]
            return [list rectangle [concat [flipped $corners] $fill]]
        }
        circle {
            set centre [flipped [point [child $node center]]]
            return [list circle [concat $centre [mils [value $node radius 0]] $fill]]
        }
        polyline - bezier {
            return [list [kind $node] [list [flipped [points $node]] $fill]]
        }
        arc {
            set flat [concat [point [child $node start]] [point [child $node mid]] \
                [point [child $node end]]]
            return [list arc [concat [flipped $flat] $fill]]
        }
        text {
            set at [child $node at]
            return [list text [concat [list [lindex $node 1]] [flipped [point $at]] \
                [expr {[number [expr {[llength $at] > 3 ? [lindex $at 3] : 0}]] / 10}] [lindex [styleOf $node] 0]]]
        }
        text_box {
            lassign [point [child $node at]] x y
            lassign [point [child $node size]] width height
            set middle [list [expr {$x + $width / 2}] [expr {$y + $height / 2}]]
            return [list text [concat [list [lindex $node 1]] [flipped $middle] 0 [lindex [styleOf $node] 0]]]
        }
    }
    return {}
}

proc ::kicad::pinOf {node} {
    set at [child $node at]
    lassign [flipped [point $at]] x y
    set length [mils [value $node length 0]]
    switch -exact -- [quarters $at] {
        0   {set bodyX [expr {$x + $length}]; set bodyY $y}
        90  {set bodyX $x; set bodyY [expr {$y - $length}]}
        180 {set bodyX [expr {$x - $length}]; set bodyY $y}
        default {set bodyX $x; set bodyY [expr {$y + $length}]}
    }
    set pin [dict create number [plainText [value $node number]] name [plainText [value $node name]] \
        type [lindex $node 1] shape [lindex $node 2] hidden [says $node hide] \
        x $x y $y bodyX $bodyX bodyY $bodyY steps [list [steps [lindex $at 1]] [expr {-[steps [lindex $at 2]]}]]]
    foreach alternate [children $node alternate] {
        lassign $alternate - name type shape
        dict set pin alternates $name [dict create name [plainText $name] type $type shape $shape]
    }
    return $pin
}

# Symbols of a file by name. One that extends another has what that one has and it has not itself. The
# dict `read` keeps what was read of a symbol, since the files of a design hold most of them again and again.
proc ::kicad::symbolsOf {readName nodes} {
    upvar 1 $readName read
    set known {}
    foreach node $nodes {
        if {![dict exists $read $node]} {
            dict set read $node [symbolOf $node]
        }
        dict set known [lindex $node 1] [dict get $read $node]
    }
    foreach name [dict keys $known] {
        set symbol [dict get $known $name]
        for {set depth 0} {$depth < 10 && [dict get $symbol extends] ne ""} {incr depth} {
            # It names the other without their library.
            set library [regsub {[^:]*$} $name ""]
            set base $library[dict get $symbol extends]
            if {![dict exists $known $base]} {
                break
            }
            set symbol [extended [dict get $known $base] $symbol]
        }
        dict set known $name $symbol
    }
    return $known
}

proc ::kicad::extended {base symbol} {
    foreach part {graphics pins properties} {
        dict set symbol $part [dict merge [dict get $base $part] [dict get $symbol $part]]
    }
    foreach part {power local pinNamesHidden pinNumbersHidden} {
        dict set symbol $part [expr {[dict get $symbol $part] || [dict get $base $part]}]
    }
    dict set symbol extends [dict get $base extends]
    return $symbol
}

# The children of a symbol are named NAME_unit_style; 0 stands for every unit or style.
proc ::kicad::symbolOf {node} {
    set graphics {}
    set pins {}
    foreach body [children $node symbol] {
        if {![regexp {_(\d+)_(\d+)$} [lindex $body 1] -> unit style]} {
            unread "symbol body \"[lindex $body 1]\""
            continue
        }
        set key [list $unit $style]
        foreach item [lrange $body 2 end] {
            if {[kind $item] eq "pin"} {
                dict lappend pins $key [pinOf $item]
            } elseif {[set shape [shapeOf $item]] ne ""} {
                dict lappend graphics $key $shape
            }
        }
    }
    set properties {}
    foreach property [children $node property] {
        dict set properties {*}[nameAndValue $property]
    }
    set power [child $node power]
    return [dict create name [plainText [lindex $node 1]] extends [value $node extends] properties $properties \
        power [expr {$power ne ""}] local [expr {[lindex $power 1] eq "local"}] \
        pinNamesHidden [says [child $node pin_names] hide] \
        pinNumbersHidden [says [child $node pin_numbers] hide] \
        graphics $graphics pins $pins]
}

# What stands for a symbol that the file does not hold.
proc ::kicad::unknownSymbol {name} {
    return [symbolOf [list \1symbol $name]]
}

# What a placed unit shows: the entries of its own unit and style and of "every one".
proc ::kicad::partOf {entries unit style} {
    set result {}
    dict for {key list} $entries {
        lassign $key ofUnit ofStyle
        if {$ofUnit in [list 0 $unit] && $ofStyle in [list 0 $style]} {
            lappend result {*}$list
        }
    }
    return $result
}

# The left, top, right and bottom of a unit's body and pins, in symbol coordinates.
proc ::kicad::boundsOf {symbol unit style} {
    set xs {}
    set ys {}
    foreach shape [partOf [dict get $symbol graphics] $unit $style] {
        lassign $shape kind data
        switch -exact -- $kind {
            rectangle {set flat [lrange $data 0 3]}
            arc {set flat [lrange $data 0 5]}
            polyline - bezier {set flat [lindex $data 0]}
            circle {
                lassign $data x y radius
                set flat [list [expr {$x - $radius}] [expr {$y - $radius}] \
                    [expr {$x + $radius}] [expr {$y + $radius}]]
            }
            default {set flat {}}
        }
        foreach {x y} $flat {
            lappend xs $x
            lappend ys $y
        }
    }
    foreach pin [partOf [dict get $symbol pins] $unit $style] {
        lappend xs [dict get $pin x] [dict get $pin bodyX]
        lappend ys [dict get $pin y] [dict get $pin bodyY]
    }
    if {$xs eq ""} {
        return {0 0 0 0}
    }
    return [list [tcl::mathfunc::min {*}$xs] [tcl::mathfunc::min {*}$ys] \
        [tcl::mathfunc::max {*}$xs] [tcl::mathfunc::max {*}$ys]]
}
