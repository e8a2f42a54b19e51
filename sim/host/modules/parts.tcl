# Library parts as module records: a header, its properties, its elements.

# The name under which a unit's package goes into a module: without the library's.
proc ::modules::packageName {symbol style} {
    set name [lindex [split [dict get $symbol name] :] end]
    return [expr {$style == 1 ? $name : "$name-style$style"}]
}

# Modules keep so many characters of a package's name.
proc ::modules::keptName {name} {
    return [string range $name 0 30]
}

# `type` is Part, Global, Port or OffPage.
proc ::modules::partRecords {symbol unit style type} {
    dict for {key shapes} [dict get $symbol graphics] {
        dict set symbol graphics $key [lmap shape $shapes {settled $shape}]
    }
    set several [expr {[drawing::unitCount $symbol] > 1}]
    set bounds [drawing::units [kicad::boundsOf $symbol $unit $style]]
    set designator [expr {$several ? [drawing::unitLetter $unit] : ""}]
    set records [list [list Name [packageName $symbol $style] $type {*}$bounds [expr {$unit - 1}] $designator]]
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
