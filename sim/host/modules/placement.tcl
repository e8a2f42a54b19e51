# What the plug-in has placed: library parts are dragged and dropped, modules come object by object.
# Nobody holds the mouse here, so what is dragged is dropped at once, where it was taken from.

namespace eval ::modules {
    # 1 while a module is placed, 2 while a single library part is.
    variable flag 0
    variable viewBox {}
    # Since the last drop: part ids and items by kind, on which the nets wait.
    variable placedIds {}
    variable placedItems {}
    variable placedCount 0
}

host::procedure SetLibViewBox {size} {
    set ::modules::viewBox $size
    return 1
}

host::procedure setPlaceMarketFlag {flag} {
    set ::modules::flag $flag
    return 1
}

# Begins to drag. For a module: its library, the name of its picture's part and the size of that; for a
# library part: its name, the library and the part's index.
host::procedure PlaceNew {first second {third ""}} {
    if {$::modules::flag == 1} {
        lassign [list $first $second 0] path name index
    } else {
        lassign [list $second $first $third] path name index
    }
    if {[library::symbol $path $name] eq "" && $::modules::flag == 1} {
        host::log "the module has no picture to drag"
    }
    host::log "dragging $name of $path"
    after 100 [list ::modules::drop $path $name $index]
    return 1
}

proc ::modules::drop {path name index} {
    variable flag
    variable placedIds {}
    variable placedItems {}
    if {$flag == 1} {
        link::plugin placeMarketPart
    } else {
        dropPart $path $name $index
        link::plugin PlacePartProperty
    }
    settle
    link::plugin afterPlace
    link::plugin removeDatFile
    host::log "placed [llength $placedIds] parts and\
        [tcl::mathop::+ 0 {*}[lmap list [dict values $placedItems] {llength $list}]] other objects"
}

# A catalogue's name for a part need not be the library's, which then has but the one.
proc ::modules::dropPart {path name index} {
    if {[library::symbol $path $name] eq ""} {
        set keys [dict keys [library::parts $path]]
        set name [lindex [concat [lsearch -inline -index 1 $keys $index] [lindex $keys 0]] 0]
    }
    set data [dict create Location "10 10" Rotation 0 Mirror 0 Package $name PartIndex $index]
    addPart Part $data {} {} $path
}

# Nets and references are made again once, and what was placed is selected.
proc ::modules::settle {} {
    variable placedIds
    variable placedItems
    lassign [pages::need] path page
    set design [kicad::connect [dict get $::designs::open $path]]
    dict set design modified 1
    dict set ::designs::open $path [designs::withReferences $design]
    choose $page $placedIds $placedItems
}

# Puts an object on the active page. `designator` -1 marks the single part, whose lists come the other
# way round: first where it is, then its properties. SetProperty changes the part placed last.
host::procedure placePart {kind designator first second displayed} {
    if {$designator eq "-1"} {
        lassign [list $second $first] first second
    }
    set properties [library::items $first]
    set data [library::items $second]
    set points [lmap item $second {
        if {[lindex $item 0] ne "NewPoint"} continue
        lindex $item 1
    }]
    if {$kind eq "SetProperty"} {
        modules::setProperties [lindex $::modules::placedIds end] $properties
    } elseif {$kind in {Part Global}} {
        modules::addPart $kind $data $properties $displayed [link::plugin getNewOlbPath]
    } else {
        modules::addItem $kind $data $points $properties
    }
    if {$designator eq "-1"} {
        modules::renumber [lindex $::modules::placedIds end]
    }
    return 1
}

proc ::modules::addItem {kind data points properties} {
    variable placedItems
    set found [itemFrom $kind $data $points $properties]
    if {$found eq ""} {
        host::log "cannot place a $kind"
        return
    }
    lassign $found list item
    lassign [pages::need] path page
    dict update ::designs::open $path design {
        set items [dict get $design pages $page $list]
        lappend items $item
        dict set design pages $page $list $items
    }
    dict lappend placedItems $list $item
}

proc ::modules::addPart {kind data properties displayed libraryPath} {
    variable placedIds
    variable placedCount
    lassign [pages::need] path page
    set symbol [symbolFor $path $libraryPath [dict get $data Package]]
    lassign [milsOf [dict get $data Location]] x y
    lassign [drawing::fromCodes [dict get $data Rotation] [dict get $data Mirror]] rotation mirror
    set id placed/[incr placedCount]
    set unit [unitOf $properties [expr {[dict exists $data PartIndex] ? [dict get $data PartIndex] : 0}]]
    set part [dict create id $id page $page reference "" value "" footprint "" symbol [dict get $symbol name] \
        unit $unit style 1 x $x y $y rotation $rotation mirror $mirror \
        properties {Reference "" Value "" Footprint ""} texts [textsFrom $displayed] \
        power [expr {$kind eq "Global"}] inBom [expr {$kind ne "Global"}] fitted 1 onBoard 1 simulated 1]
    dict set part pins [kicad::placedPins $symbol $part]
    dict set ::designs::open $path parts $id $part
    dict set ::designs::open $path pages $page parts \
        [concat [dict get $::designs::open $path pages $page parts] [list $id]]
    lappend placedIds $id
    setProperties $id $properties
}

# The design's own copy of a package, taken from the library when it has none.
proc ::modules::symbolFor {path libraryPath name} {
    set known [expr {[dict exists $::designs::open $path symbols $name] \
        ? [dict get $::designs::open $path symbols $name] : ""}]
    set symbol [library::symbol $libraryPath $name]
    if {$symbol eq "" && $known eq ""} {
        error "the library has no $name"
    }
    if {$symbol eq ""} {
        return $known
    }
    if {$known ne ""} {
        # Other units of it may be in use.
        foreach kind {graphics pins} {
            dict set symbol $kind [dict merge [dict get $known $kind] [dict get $symbol $kind]]
        }
    }
    dict set ::designs::open $path symbols $name $symbol
    return $symbol
}

# The unit is what the part's full reference has beyond the plain one; else the index tells it.
proc ::modules::unitOf {properties index} {
    if {[dict exists $properties Reference] && [dict exists $properties "Part Reference"]} {
        set reference [dict get $properties Reference]
        set letters [string range [dict get $properties "Part Reference"] [string length $reference] end]
        set unit 0
        foreach letter [split $letters ""] {
            scan $letter %c code
            set unit [expr {$unit * 26 + $code - 64}]
        }
        return [expr {max(1, $unit)}]
    }
    return [expr {[string is integer -strict $index] ? $index + 1 : 1}]
}

# Members of displayed properties follow one another; each Name begins the next one.
proc ::modules::textsFrom {displayed} {
    set texts {}
    set name ""
    foreach item $displayed {
        lassign $item key value
        switch -exact -- $key {
            Name {
                set name [parts::schematicName $value]
                dict set texts $name {0 0 0 50 0 {center center}}
            }
            Start {dict set texts $name [lreplace [dict get $texts $name] 0 1 {*}[milsOf $value]]}
            Rotation {dict set texts $name [lreplace [dict get $texts $name] 2 2 [expr {$value * 90}]]}
            Size {dict set texts $name [lreplace [dict get $texts $name] 3 3 [drawing::fromFontHeight $value]]}
        }
    }
    return $texts
}

proc ::modules::setProperties {id properties} {
    lassign [pages::need] path
    set part [dict get $::designs::open $path parts $id]
    if {[dict get $part power] && [dict exists $properties Name]} {
        dict set properties Value [dict get $properties Name]
        dict unset properties Name
    }
    dict for {name value} $properties {
        if {$name ne "Part Reference"} {
            dict set part properties [parts::schematicName $name] $value
        } elseif {![dict exists $properties Reference]} {
            dict set part properties Reference $value
        }
    }
    foreach {field name} {reference Reference value Value footprint Footprint} {
        dict set part $field [dict get $part properties $name]
    }
    # Texts of properties that did not come along have nothing to show.
    foreach name [dict keys [dict get $part texts]] {
        if {![dict exists $part properties $name]} {
            dict unset part texts $name
        }
    }
    dict set ::designs::open $path parts $id $part
}

# A single part comes as number 1 with its unit's letters, and takes the first number that is free.
proc ::modules::renumber {id} {
    lassign [pages::need] path
    set reference [dict get $::designs::open $path parts $id reference]
    if {![regexp {^(.*?)1([A-Z?]*)$} $reference -> prefix letters]} {
        return
    }
    for {set number 1} {[dict exists $::designs::open $path references $prefix$number]} {incr number} {}
    setProperties $id [dict create Reference $prefix$number]
}
