# The objects of a block as module records, and objects from the lists of a module that is placed.

proc ::modules::objectRecords {design parts items} {
    set records {}
    foreach part $parts {
        lappend records {*}[partObject $design $part]
    }
    dict for {kind list} $items {
        foreach item $list {
            lappend records {*}[itemObject $kind $item]
        }
    }
    return $records
}

proc ::modules::partObject {design part} {
    set symbol [dict get $design symbols [dict get $part symbol]]
    set power [dict get $part power]
    set records [list [list [expr {$power ? "Global" : "Part"}] \
        {*}[drawing::units [list [dict get $part x] [dict get $part y]]] \
        {*}[drawing::codes [dict get $part rotation] [dict get $part mirror]] \
        [packageName $symbol [dict get $part unit] [dict get $part style]]]]
    if {$power} {
        lappend records [list Property Name [dict get $part value]]
    } else {
        # The one tells the unit, the other does not.
        set designator [expr {[drawing::unitCount $symbol] > 1 ? [drawing::unitLetter [dict get $part unit]] : ""}]
        lappend records [list Property "Part Reference" [dict get $part reference]$designator] \
            [list Property Reference [dict get $part reference]]
    }
    dict for {name value} [dict get $part properties] {
        if {$name ne "Reference" && !($power && $name eq "Value")} {
            lappend records [list Property [parts::editorName $name] $value]
        }
    }
    dict for {name text} [dict get $part texts] {
        lassign $text x y rotation mils hidden
        if {!$hidden} {
            lappend records [list DispProperty {*}[drawing::units [list $x $y]] [parts::editorName $name] \
                [dict get $part properties $name] [drawing::colour part] 0 [drawing::fontHeight $mils] \
                [expr {$rotation / 90}]]
        }
    }
    return $records
}

proc ::modules::itemObject {kind item} {
    switch -exact -- $kind {
        wires {return [list [list Wire {*}[drawing::units $item] [drawing::colour wire] 0 0]]}
        buses {return [list [list BusWire {*}[drawing::units $item] [drawing::colour bus] 0 0]]}
        entries {return [list [list BusEntry {*}[drawing::units [pointsOf entries $item]] [drawing::colour bus]]]}
        junctions {return [list [list Junction {*}[drawing::units $item]]]}
        lines {return [list [list Polyline [drawing::pointList $item] [drawing::colour graphic] 2 0]]}
    }
    set place [drawing::units [list [dict get $item x] [dict get $item y]]]
    set turns [expr {[dict get $item rotation] / 90}]
    set text [dict get $item text]
    set height [drawing::fontHeight [dict get $item size]]
    if {$kind eq "texts"} {
        return [list [list Text {*}$place $text [drawing::colour graphic] "" $height $turns]]
    }
    set labelKind [dict get $item kind]
    if {$labelKind eq "label"} {
        return [list [list Alias {*}$place $text [drawing::colour label] "" $height $turns]]
    }
    set symbol [drawing::connector $labelKind [dict get $item shape]]
    return [list [list [drawing::connectorRecordType $labelKind] {*}$place $turns 0 [dict get $symbol name]] \
        [list Property Name $text]]
}

# What stands on the page for an object that is placed: {kind item}, or {} for what this host has not.
# `data` is its data as a dict, `points` those of its path.
proc ::modules::itemFrom {kind data points properties} {
    foreach {name default} {Location "0 0" Rotation 0 Font -9 Text "" Package ""} {
        if {![dict exists $data $name]} {
            dict set data $name $default
        }
    }
    lassign [milsOf [dict get $data Location]] x y
    set turned [expr {[string is integer -strict [dict get $data Rotation]] ? [dict get $data Rotation] * 90 : 0}]
    set size [drawing::fromFontHeight [dict get $data Font]]
    switch -exact -- $kind {
        Wire - BusWire {
            return [list [expr {$kind eq "Wire" ? "wires" : "buses"}] \
                [milsOf "[dict get $data WireStart] [dict get $data WireEndPos]"]]
        }
        BusEntry {
            lassign [milsOf "[dict get $data BusEntryStart] [dict get $data BusEntryEndPos]"] x y toX toY
            return [list entries [list $x $y [expr {$toX - $x}] [expr {$toY - $y}]]]
        }
        Junction {return [list junctions [milsOf "[dict get $data StartX] [dict get $data StartY]"]]}
        Polyline {return [list lines [milsOf [join $points " "]]]}
        Alias {
            return [list labels [dict create text [dict get $data Text] x $x y $y rotation $turned \
                size $size kind label shape ""]]
        }
        Text {
            lassign [milsOf "[dict get $data {Text Location X-Coordinate}]\
                [dict get $data {Text Location Y-Coordinate}]"] x y
            return [list texts [dict create text [dict get $data Text] x $x y $y rotation $turned size $size \
                justify [list [expr {$turned in {180 270} ? "right" : "left"}] bottom]]]
        }
        Port - OffPage {
            set name [expr {[dict exists $properties Name] ? [dict get $properties Name] : ""}]
            return [list labels [dict create text $name x $x y $y rotation $turned size $size \
                kind [expr {$kind eq "Port" ? "hierarchical" : "global"}] \
                shape [lindex [split [dict get $data Package] -] end]]]
        }
    }
    return {}
}
