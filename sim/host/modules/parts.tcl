# Library parts as module records: a header, its properties, its elements.

# The name under which a unit goes into a module: without the library's, and one for each unit, since
# placing takes each name once. Modules keep 31 characters of it.
proc ::modules::packageName {symbol unit style} {
    set name [lindex [split [dict get $symbol name] :] end]
    set ending [expr {$style == 1 ? "" : "-style$style"}]
    if {[drawing::unitCount $symbol] > 1} {
        append ending - [drawing::unitLetter $unit]
    }
    # What was placed from a module bears such a name already.
    if {$ending eq "" || [string match *$ending $name]} {
        return [string range $name 0 30]
    }
    return [string range $name 0 [expr {30 - [string length $ending]}]]$ending
}

# `type` is Part, Global, Port or OffPage.
proc ::modules::partRecords {symbol unit style type} {
    dict for {key shapes} [dict get $symbol graphics] {
        dict set symbol graphics $key [lmap shape $shapes {settled $shape}]
    }
    set several [expr {[drawing::unitCount $symbol] > 1}]
    set bounds [drawing::units [kicad::boundsOf $symbol $unit $style]]
    set designator [expr {$several ? [drawing::unitLetter $unit] : ""}]
    set records [list [list Name [packageName $symbol $unit $style] $type {*}$bounds [expr {$unit - 1}] $designator]]
    foreach {flag name} {pinNumbersHidden "Pin Numbers Visible" pinNamesHidden "Pin Names Visible"} {
        lappend records [list PartProperty $name [expr {[dict get $symbol $flag] ? "False" : "True"}]]
    }
    dict for {name value} [dict get $symbol properties] {
        lappend records [list PartProperty [parts::editorName $name] $value]
    }
    lassign $bounds left top
    foreach name {Reference Value} {
        if {[dict exists $symbol properties $name]} {
            lappend records [list DispProperty $left $top [parts::editorName $name] \
                [dict get $symbol properties $name] [drawing::colour part] 0 -9 0]
        }
    }
    foreach shape [kicad::partOf [dict get $symbol graphics] $unit $style] {
        lappend records [shapeRecord {*}$shape]
    }
    foreach pin [kicad::partOf [dict get $symbol pins] $unit $style] {
        lappend records {*}[pinRecords $pin]
    }
    return $records
}
