# The objects of a page as drawing records.

# All of a page's records in drawing order: the Page record, then what it shows.
proc ::drawing::pageRecords {design page number} {
    set count [dict size [dict get $design pages]]
    set records [list [list Page [dict get $page name] {*}[units [list [dict get $page height] [dict get $page width]]] $number]]
    lappend records {*}[framePage $page $number $count]
    foreach part {wireRecords graphicRecords sheetRecords labelRecords} {
        lappend records {*}[$part $page]
    }
    foreach id [dict get $page parts] {
        lappend records {*}[partRecords $design [dict get $design parts $id]]
    }
    return $records
}

proc ::drawing::lineRecord {flat of {width 0} {style 0}} {
    return [list Line {*}[units $flat] [colour $of] $style $width]
}

proc ::drawing::wireRecords {page} {
    set records {}
    foreach wire [dict get $page wires] {
        lappend records [lineRecord $wire wire]
    }
    foreach bus [dict get $page buses] {
        lappend records [lineRecord $bus bus BusWire]
    }
    foreach entry [dict get $page entries] {
        # The record itself draws nothing, so its line is drawn as such.
        lassign $entry x y dx dy
        set flat [list $x $y [expr {$x + $dx}] [expr {$y + $dy}]]
        lappend records [list BusEntry {*}[units $flat] [colour bus]] [lineRecord $flat bus]
    }
    foreach junction [dict get $page junctions] {
        lappend records [list Junction {*}[units $junction] 2 [colour wire] 0]
    }
    foreach point [dict get $page noConnects] {
        lassign $point x y
        lassign [list [expr {$x - 25}] [expr {$y - 25}] [expr {$x + 25}] [expr {$y + 25}]] x1 y1 x2 y2
        lappend records [lineRecord [list $x1 $y1 $x2 $y2] mark] [lineRecord [list $x1 $y2 $x2 $y1] mark]
    }
    return $records
}

proc ::drawing::graphicRecords {page} {
    set records {}
    foreach points [dict get $page lines] {
        lappend records [list Polyline [pointList $points] [colour graphic] 2 0]
    }
    foreach text [dict get $page texts] {
        lappend records [textAt [dict get $text text] [dict get $text x] [dict get $text y] \
            [dict get $text size] [expr {[dict get $text rotation] in {90 270}}] [dict get $text justify] graphic]
    }
    return $records
}

proc ::drawing::labelRecords {page} {
    variable connectorLength
    set records {}
    foreach label [dict get $page labels] {
        dict with label {}
        if {$kind eq "label"} {
            # The alias draws nothing either.
            # What is read keeps clear of its line, and a bus is broad.
            set clear [expr {[kicad::busMembers $text] eq "" ? 15 : 45}]
            lassign [expr {$rotation in {90 270} ? [list $clear 0] : [list 0 $clear]}] left up
            lappend records [list Alias {*}[units [list $x $y]] $text [colour label] "" [fontHeight $size]] \
                [textFrom $text [expr {$x - $left}] [expr {$y - $up}] $size $rotation bottom label]
            continue
        }
        lappend records {*}[connectorRecords $kind $shape $text $x $y $rotation $size]
    }
    return $records
}

proc ::drawing::connectorRecords {kind shape text x y rotation mils} {
    variable connectorLength
    set name [symbolName [connector $kind $shape] 1 1]
    set away [expr {$connectorLength + 20}]
    lassign [dict get {0 {1 0} 90 {0 -1} 180 {-1 0} 270 {0 1}} $rotation] dx dy
    return [list [list [connectorRecordType $kind] {*}[units [list $x $y]] {*}[codes $rotation ""] $name] \
        [textFrom $text [expr {$x + $dx * $away}] [expr {$y + $dy * $away}] $mils $rotation center port]]
}

proc ::drawing::sheetRecords {page} {
    set records {}
    foreach sheet [dict get $page sheets] {
        dict with sheet {}
        lappend records [list Box {*}[units [list $x $y $width $height]] [colour title] 0 1 1 0] \
            [textAt $name $x [expr {$y - 20}] 60 0 {left bottom} title] \
            [textAt $file $x [expr {$y + $height + 20}] 60 0 {left top} title]
        foreach pin $pins {
            # It is met from outside, and its connector stands inside.
            set inwards [expr {(int([dict get $pin rotation]) + 180) % 360}]
            lappend records {*}[connectorRecords hierarchical [dict get $pin type] [dict get $pin name] \
                [dict get $pin x] [dict get $pin y] $inwards 50]
        }
    }
    return $records
}

proc ::drawing::partRecords {design part} {
    set symbol [dict get $design symbols [dict get $part symbol]]
    set id [expr {[dict get $part power] ? "" : [dict get $part reference]}]
    set type [expr {[dict get $part power] ? "Global" : "Part"}]
    set place [list {*}[units [list [dict get $part x] [dict get $part y]]] \
        {*}[codes [dict get $part rotation] [dict get $part mirror]]]
    set records [list [list $type {*}$place [symbolName $symbol [dict get $part unit] [dict get $part style]] $id]]
    dict for {name text} [dict get $part texts] {
        if {![lindex $text 4] && [dict get $part properties $name] ne ""} {
            lappend records [fieldRecord $design $part $name $text]
        }
    }
    foreach pin [dict get $part pins] {
        lappend records {*}[pinTexts $symbol $part $pin]
    }
    return $records
}

# A text that belongs to a part turns and mirrors with it about its own point, but stays readable.
proc ::drawing::fieldRecord {design part name text} {
    lassign $text x y rotation mils hidden justify
    if {$justify eq ""} {
        set justify {center center}
    }
    set value [dict get $part properties $name]
    if {$name eq "Reference" && [unitCount [dict get $design symbols [dict get $part symbol]]] > 1} {
        append value [unitLetter [dict get $part unit]]
    }
    lassign [middle [room $value [fontSize $mils]] $justify] right down
    set upright [expr {$rotation in {90 270}}]
    if {$upright} {
        lassign [list $down [expr {-$right}]] right down
    }
    lassign [kicad::onPage [expr {$right * 10}] [expr {$down * 10}] [dict merge $part {x 0 y 0}]] right down
    if {[dict get $part rotation] in {90 270}} {
        set upright [expr {!$upright}]
    }
    return [textAbout $value [expr {$x + $right}] [expr {$y + $down}] $mils $upright part]
}

# A pin's name inside the body and its number above the pin. They are texts of the page, since in the
# symbol they would be mirrored with it.
proc ::drawing::pinTexts {symbol part pin} {
    if {[dict get $pin hidden] || [dict get $part power]} {
        return {}
    }
    dict with pin {}
    if {$x == $bodyX && $y == $bodyY} {
        return {}
    }
    set upright [expr {$x == $bodyX}]
    set records {}
    if {$name ne "" && ![dict get $symbol pinNamesHidden]} {
        # It runs from the pin's end on into the body.
        set rotation [expr {$upright ? ($y > $bodyY ? 90 : 270) : ($x > $bodyX ? 180 : 0)}]
        lassign [dict get {0 {20 0} 90 {0 -20} 180 {-20 0} 270 {0 20}} $rotation] dx dy
        lappend records [textFrom $name [expr {$bodyX + $dx}] [expr {$bodyY + $dy}] 40 $rotation center pin]
    }
    if {$number ne "" && ![dict get $symbol pinNumbersHidden]} {
        lappend records [textAt $number [expr {($x + $bodyX) / 2}] [expr {($y + $bodyY) / 2}] 35 $upright {center bottom} pin]
    }
    return $records
}
