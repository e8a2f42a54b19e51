# Symbol libraries: files into which parts are placed and from which they are taken.
#
# A library of this host is a text: one Tcl list a line, "part NAME INDEX TYPE SYMBOL" or
# "numbers NAME INDEX NUMBERS" for the pin numbers of a part that stands before it.

namespace eval ::library {
    # The library read last: path, size and time of its file, and its parts.
    variable read {}
}

proc ::library::create {path} {
    close [open $path w]
    addLine $path "# a library of the stand-in host"
}

proc ::library::addLine {path line} {
    set channel [open $path a]
    try {
        fconfigure $channel -encoding utf-8 -translation lf
        # A line end inside a list would end the line.
        puts $channel [string map {\\ \\\\ \n \\n} $line]
    } finally {
        close $channel
    }
}

# Part names and indices -> dict: type symbol.
proc ::library::parts {path} {
    variable read
    set stamp [list $path [file size $path] [file mtime $path]]
    if {[lindex $read 0] ne $stamp} {
        set parts {}
        foreach line [split [kicad::readFile $path] \n] {
            if {[string index $line 0] eq "#" || $line eq ""} {
                continue
            }
            lassign [string map {\\\\ \\ \\n \n} $line] word name index rest symbol
            if {$word eq "part"} {
                dict set parts [list $name $index] [dict create type $rest symbol $symbol]
            } elseif {[dict exists $parts [list $name $index]]} {
                dict set parts [list $name $index] symbol \
                    [numbered [dict get $parts [list $name $index] symbol] $rest]
            }
        }
        set read [list $stamp $parts]
    }
    return [lindex $read 1]
}

proc ::library::numbered {symbol numbers} {
    dict for {key pins} [dict get $symbol pins] {
        dict set symbol pins $key [lmap pin $pins number $numbers {dict replace $pin number $number}]
    }
    return $symbol
}

# All units of a package as one symbol, or {} when the library has it not.
proc ::library::symbol {path name} {
    set whole {}
    dict for {key part} [parts $path] {
        if {[lindex $key 0] ne $name} {
            continue
        }
        set symbol [dict get $part symbol]
        if {$whole eq ""} {
            set whole $symbol
        } else {
            dict set whole units [expr {max([dict get $whole units], [dict get $symbol units])}]
            foreach kind {graphics pins} {
                dict set whole $kind [dict merge [dict get $whole $kind] [dict get $symbol $kind]]
            }
        }
    }
    return $whole
}

# A list of {name value} items as a dict; the last of equal names counts.
proc ::library::items {list} {
    set items {}
    foreach item $list {
        dict set items [lindex $item 0] [lindex $item 1]
    }
    return $items
}

# The symbol of one unit from the lists of a placed library part.
proc ::library::unitSymbol {name index properties graphics designator} {
    set unit [expr {[string is integer -strict $index] ? $index + 1 : 1}]
    set known [items $properties]
    set hidden {}
    foreach {flag property} {pinNumbersHidden "Pin Numbers Visible" pinNamesHidden "Pin Names Visible"} {
        lappend hidden $flag [expr {[dict exists $known $property] && [dict get $known $property] eq "False"}]
        set known [dict remove $known $property]
    }
    set shapes {}
    set pins {}
    foreach element $graphics {
        lassign $element kind data elementProperties
        set points [lmap item $data {
            if {[lindex $item 0] ne "NewPoint"} continue
            lindex $item 1
        }]
        if {$kind eq "Pin"} {
            lappend pins [modules::pinFrom [items $data] [items $elementProperties]]
        } elseif {[set shape [modules::shapeFrom $kind [items $data] $points]] ne ""} {
            lappend shapes $shape
        }
    }
    set kept {}
    dict for {property value} $known {
        if {$property ne ""} {
            dict set kept [parts::schematicName $property] $value
        }
    }
    # A part with a designator is one of several units, whether the others are here or not.
    set units [expr {$designator eq "" ? 1 : max($unit, 2)}]
    return [dict create name $name units $units properties $kept power 0 local 0 {*}$hidden \
        graphics [dict create [list $unit 1] $shapes] pins [dict create [list $unit 1] $pins]]
}

# Puts one unit of a part into a library. `displayed` follows from the properties.
host::procedure placeLibPart {path name index type box properties graphics displayed designator} {
    if {![file isfile $path]} {
        error "no such library: $path"
    }
    # What a part has not comes as a list of one empty text.
    foreach argument {index type designator} {
        set $argument [lindex [set $argument] 0]
    }
    set symbol [library::unitSymbol $name $index $properties $graphics $designator]
    dict set symbol power [expr {$type eq "Global"}]
    library::addLine $path [list part $name $index $type $symbol]
    host::log "library part $name ($type)"
    return 1
}

# Gives the pins of a part that was put there their numbers.
host::procedure setPinNum {path name index type box properties graphics displayed designator} {
    set numbers {}
    foreach element $graphics {
        lassign $element kind data
        if {$kind eq "Pin"} {
            lappend numbers [dict get [library::items $data] PinNum]
        }
    }
    library::addLine $path [list numbers $name [lindex $index 0] $numbers]
    return 1
}
