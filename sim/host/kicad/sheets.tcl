# Sheets: each file is parsed once, and each place where it is used becomes a page.

namespace eval ::kicad {
    # Sheet widths and heights in millimetres, landscape (ISO 216 and ANSI/ASME Y14.1).
    variable paperSizes {
        A5 {210 148} A4 {297 210} A3 {420 297} A2 {594 420} A1 {841 594} A0 {1189 841}
        A {279.4 215.9} B {431.8 279.4} C {558.8 431.8} D {863.6 558.8} E {1117.6 863.6}
        USLetter {279.4 215.9} USLegal {355.6 215.9} USLedger {431.8 279.4}
    }
}

proc ::kicad::readSheets {file} {
    set root [parse [readFile $file]]
    if {[lindex $root 0] ne "kicad_sch"} {
        error "not a KiCad schematic: $file"
    }
    set design [dict create file $file title [titleOf $root] pages {} parts {} symbols {} nets {}]
    set context [dict create parsed [dict create $file $root] \
        instances [instancesOf $root] numbers [pageNumbersOf $root]]
    addPage design context $file [file rootname [file tail $file]] / {}
    dict set design pages [inPageOrder [dict get $design pages] [dict get $context numbers]]
    return $design
}

proc ::kicad::inPageOrder {pages numbers} {
    set keyed {}
    dict for {name page} $pages {
        set path [dict get $page path]
        set number [expr {[dict exists $numbers $path] ? [dict get $numbers $path] : "~"}]
        lappend keyed [list [expr {$path eq "/" ? "" : $number}] $name]
    }
    set ordered {}
    foreach item [lsort -dictionary -index 0 $keyed] {
        set name [lindex $item 1]
        dict set ordered $name [dict get $pages $name]
    }
    return $ordered
}

proc ::kicad::titleOf {root} {
    set block [child $root title_block]
    set comments {}
    foreach comment [children $block comment] {
        lappend comments [lindex $comment 2]
    }
    return [dict create title [value $block title] date [value $block date] \
        rev [value $block rev] company [value $block company] comments $comments]
}

# Symbol path -> what that instance of the symbol is called.
proc ::kicad::instancesOf {root} {
    set instances {}
    foreach entry [children [child $root symbol_instances] path] {
        dict set instances [lindex $entry 1] [dict create reference [value $entry reference] \
            unit [value $entry unit 1] value [value $entry value] \
            footprint [value $entry footprint]]
    }
    return $instances
}

proc ::kicad::pageNumbersOf {root} {
    set numbers {}
    foreach entry [children [child $root sheet_instances] path] {
        dict set numbers [lindex $entry 1] [value $entry page]
    }
    return $numbers
}

proc ::kicad::paperOf {root} {
    variable paperSizes
    lassign [child $root paper] - name first second
    if {$name eq "User" && $second ne ""} {
        lassign [list $first $second] width height
    } elseif {[dict exists $paperSizes $name]} {
        lassign [dict get $paperSizes $name] width height
        if {$first eq "portrait"} {
            lassign [list $height $width] width height
        }
    } else {
        lassign [dict get $paperSizes A4] width height
    }
    return [dict create paper $name width [mils $width] height [mils $height]]
}

# Adds the page that shows `file` under the sheet path `path`, then the pages below it.
# `above` lists the files on the way down: a sheet that contains itself is left out.
proc ::kicad::addPage {designName contextName file name path above} {
    upvar 1 $designName design $contextName context
    if {![dict exists $context parsed $file]} {
        dict set context parsed $file [parse [readFile $file]]
    }
    set root [dict get $context parsed $file]
    set page [drawingsOf $root]
    set page [dict merge $page [paperOf $root] [dict create name $name path $path \
        schematic [file rootname [file tail $file]] title [titleOf $root]]]
    dict set page parts [addParts design $root $page [dict get $context instances]]
    dict set page sheets {}
    dict set design pages $name $page

    set sheets {}
    foreach node [children $root sheet] {
        set sheet [sheetOf $node]
        set below [file normalize [file join [file dirname $file] [dict get $sheet file]]]
        set pageName [freeName [dict get $design pages] $name $path [dict get $sheet name]]
        dict set sheet page ""
        if {$below ne $file && $below ni $above && [file isfile $below]} {
            dict set sheet page $pageName
            set pathBelow [string trimright $path /]/[dict get $sheet uuid]
            addPage design context $below $pageName $pathBelow [concat $above [list $file]]
        }
        lappend sheets $sheet
    }
    dict set design pages $name sheets $sheets
}

proc ::kicad::freeName {pages parent parentPath name} {
    set full [expr {$parentPath eq "/" ? $name : "$parent/$name"}]
    set free $full
    for {set copy 2} {[dict exists $pages $free]} {incr copy} {
        set free "$full ($copy)"
    }
    return $free
}

proc ::kicad::sheetOf {node} {
    set properties [children $node property]
    lassign [point [child $node at]] x y
    lassign [point [child $node size]] width height
    set pins {}
    foreach pin [children $node pin] {
        set at [child $pin at]
        lassign [point $at] pinX pinY
        lappend pins [dict create name [lindex $pin 1] type [lindex $pin 2] \
            x $pinX y $pinY rotation [lindex $at 3]]
    }
    # The first two properties are the sheet's name and file, whatever language names them.
    return [dict create name [lindex $properties 0 2] file [lindex $properties 1 2] \
        uuid [value $node uuid] x $x y $y width $width height $height pins $pins]
}

# Everything on a page but its parts and sheets.
proc ::kicad::drawingsOf {root} {
    set page [dict create wires {} buses {} entries {} junctions {} noConnects {} \
        labels {} texts {} lines {}]
    foreach item $root {
        switch -exact -- [lindex $item 0] {
            wire {dict lappend page wires [points $item]}
            bus {dict lappend page buses [points $item]}
            bus_entry {
                dict lappend page entries \
                    [concat [point [child $item at]] [point [child $item size]]]
            }
            junction {dict lappend page junctions [point [child $item at]]}
            no_connect {dict lappend page noConnects [point [child $item at]]}
            polyline {dict lappend page lines [points $item]}
            label - global_label - hierarchical_label {
                set kind [string map {_label ""} [lindex $item 0]]
                dict lappend page labels [dict merge [textOf $item] \
                    [dict create kind $kind shape [value $item shape]]]
            }
            text {dict lappend page texts [textOf $item]}
        }
    }
    return $page
}

proc ::kicad::textOf {node} {
    set at [child $node at]
    lassign [point $at] x y
    return [dict create text [lindex $node 1] x $x y $y \
        rotation [expr {round([lindex $at 3])}] size [textSize $node]]
}

# Adds the page's parts to the design and gives their ids.
proc ::kicad::addParts {designName root page instances} {
    upvar 1 $designName design
    set known {}
    foreach node [children [child $root lib_symbols] symbol] {
        dict set known [lindex $node 1] [keepSymbol design [symbolOf $node] $page]
    }
    set prefix [string trimright [dict get $page path] /]
    set ids {}
    foreach node [children $root symbol] {
        set library [value $node lib_name [value $node lib_id]]
        if {![dict exists $known $library]} {
            continue
        }
        set symbol [dict get $design symbols [dict get $known $library]]
        set path $prefix/[value $node uuid]
        set instance [expr {[dict exists $instances $path] ? [dict get $instances $path] : {}}]
        set id $path
        for {set copy 2} {[dict exists $design parts $id]} {incr copy} {
            set id "$path ($copy)"
        }
        dict set design parts $id [partFrom $node $id [dict get $page name] $symbol $instance]
        lappend ids $id
    }
    return $ids
}

# Files carry their own copies of the symbols; copies that differ get the schematic's name added.
proc ::kicad::keepSymbol {designName symbol page} {
    upvar 1 $designName design
    set name [dict get $symbol name]
    if {[dict exists $design symbols $name] && [dict get $design symbols $name] ne $symbol} {
        append name @ [dict get $page schematic]
        dict set symbol name $name
    }
    dict set design symbols $name $symbol
    return $name
}
