# The selected block of a page: what it holds, and its module.

namespace eval ::modules {
    # What is selected beside parts: kind (wires, buses, entries, junctions, labels, texts, lines) ->
    # items as the page holds them; only on the page that is named.
    variable block {}
    variable blockPage ""
    variable kinds {wires buses entries junctions labels texts lines}
}

# Selects everything about the named parts: what lies wholly within the rectangle around them.
proc ::modules::selectBlock {references} {
    variable kinds
    lassign [pages::need] path page
    set design [dict get $::designs::open $path]
    set drawing [dict get $design pages $page]
    pages::select $references
    set bounds [around [concat {*}[lmap id $::pages::selection {outline $design [dict get $design parts $id]}]]]
    set ids {}
    foreach id [dict get $drawing parts] {
        if {$id in $::pages::selection || [within $bounds [outline $design [dict get $design parts $id]]]} {
            lappend ids $id
        }
    }
    set found {}
    foreach kind $kinds {
        dict set found $kind [lmap item [dict get $drawing $kind] {
            if {![within $bounds [pointsOf $kind $item]]} continue
            set item
        }]
    }
    choose $page $ids $found
}

proc ::modules::choose {page ids items} {
    variable block $items
    variable blockPage $page
    set ::pages::selection $ids
}

# The smallest rectangle around points. A block of nothing has none.
proc ::modules::around {points} {
    if {$points eq ""} {
        error "nothing is selected on this page"
    }
    set xs [lmap {x y} $points {set x}]
    set ys [lmap {x y} $points {set y}]
    return [list [tcl::mathfunc::min {*}$xs] [tcl::mathfunc::min {*}$ys] \
        [tcl::mathfunc::max {*}$xs] [tcl::mathfunc::max {*}$ys]]
}

proc ::modules::within {bounds points} {
    lassign $bounds left top right bottom
    foreach {x y} $points {
        if {$x < $left || $x > $right || $y < $top || $y > $bottom} {
            return 0
        }
    }
    return 1
}

proc ::modules::outline {design part} {
    set symbol [dict get $design symbols [dict get $part symbol]]
    lassign [kicad::boundsOf $symbol [dict get $part unit] [dict get $part style]] x1 y1 x2 y2
    return [concat [kicad::onPage $x1 $y1 $part] [kicad::onPage $x2 $y2 $part]]
}

proc ::modules::pointsOf {kind item} {
    switch -exact -- $kind {
        labels - texts {return [list [dict get $item x] [dict get $item y]]}
        entries {
            lassign $item x y dx dy
            return [list $x $y [expr {$x + $dx}] [expr {$y + $dy}]]
        }
    }
    return $item
}

# Writes the selected block of a page as a module and offers it to the companion.
proc ::modules::share {path page} {
    variable block
    variable blockPage
    set design [dict get $::designs::open $path]
    set parts [lmap id $::pages::selection {
        set part [dict get $design parts $id]
        if {[dict get $part page] ne $page} continue
        set part
    }]
    set items [expr {$blockPage eq $page ? $block : {}}]
    lassign [size $design $parts $items] width height
    link::plugin initMarketFile
    foreach symbol [symbolsOf $design $parts $items] {
        foreach record [partRecords {*}$symbol] {
            link::plugin addMarketLibList $record
        }
    }
    foreach record [objectRecords $design $parts $items] {
        link::plugin addMarketPartList $record
    }
    set file [link::plugin outputMarketFile 0 $width $height 0]
    host::log "module of [llength $parts] parts in $file"
    offer $design $parts $items
}

# Symbol, unit, style and record type of everything that a block places, each once.
proc ::modules::symbolsOf {design parts items} {
    set symbols {}
    foreach part $parts {
        set symbol [dict get $design symbols [dict get $part symbol]]
        set type [expr {[dict get $part power] ? "Global" : "Part"}]
        dict set symbols [list [dict get $part symbol] [dict get $part unit] [dict get $part style]] \
            [list $symbol [dict get $part unit] [dict get $part style] $type]
    }
    if {[dict exists $items labels]} {
        foreach label [dict get $items labels] {
            if {[dict get $label kind] ne "label"} {
                set symbol [drawing::connector [dict get $label kind] [dict get $label shape]]
                dict set symbols [dict get $symbol name] \
                    [list $symbol 1 1 [drawing::connectorRecordType [dict get $label kind]]]
            }
        }
    }
    return [dict values $symbols]
}

# {width height} in units of all that is in a block.
proc ::modules::size {design parts items} {
    set points [concat {*}[lmap part $parts {outline $design $part}]]
    dict for {kind list} $items {
        lappend points {*}[concat {*}[lmap item $list {pointsOf $kind $item}]]
    }
    lassign [around $points] left top right bottom
    return [drawing::units [list [expr {$right - $left}] [expr {$bottom - $top}]]]
}

# Tells the companion what the module holds: pins, parts, nets, and words to find it by.
proc ::modules::offer {design parts items} {
    set pins 0
    set lines {}
    set nets {}
    set words {}
    foreach part $parts {
        foreach pin [dict get $part pins] {
            dict set nets [dict get $pin net] 1
        }
        if {![dict get $part power]} {
            incr pins [llength [dict get $part pins]]
            lappend lines [join [lmap field [list [expr {[llength $lines] + 1}] [dict get $part reference] \
                [dict get $part footprint]] {string map {, . ";" .} $field}] ,]
            dict set words [string map {";" ,} [dict get $part value]] 1
        }
    }
    set answer [link::plugin sendUploadMarket $pins $pins 0 [join $lines ";"] \
        [join [lsort [dict keys $nets]] ";"] [join [lsort [dict keys $words]] ";"]]
    if {$answer ne "0"} {
        host::log "the module was not offered: $answer"
    }
}
