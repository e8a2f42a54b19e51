# Drawings of a design, as the plug-in is told them; and what checks and reports find in them.
package require tcltest
namespace import ::tcltest::test
set sim [file join [file dirname [file normalize [info script]]] .. .. sim]
source -encoding utf-8 $sim/host/host.tcl

proc host::log {text} {}
foreach command {initSVGList addToPageList addToLibList outputSVGFile sendRefRepetition sendIllegalChar
        sendPinNC sendNetlist} {
    proc $command {args} "lappend ::told \[list $command {*}\$args\]"
}
proc checkCharIllegal {name} {
    return [expr {![string is ascii -strict $name]}]
}
proc openMicrophone {} {
    set ::told {}
    return [designs::load $::sim/designs/microphone/microphone.kicad_sch {Z:\microphone.dsn}]
}

# Where a point of a symbol lands: scaled, turned and moved as a reader of the drawing does it.
proc drawnAt {x y place} {
    lassign $place toX toY turns mirror
    lassign [dict get {0 {1 1} 1 {-1 1} 2 {1 -1}} $mirror] sx sy
    lassign [list [expr {$x * $sx}] [expr {$y * $sy}]] x y
    lassign [dict get {0 {1 0} 1 {0 -1} 2 {-1 0} 3 {0 1}} $turns] cos sin
    return [list [expr {round(10 * ($toX + $x * $cos - $y * $sin))}] \
        [expr {round(10 * ($toY + $x * $sin + $y * $cos))}]]
}

# Where something is drawn, as "page x,y" in mils; a pin at its outer end.
proc drawnPoints {calls} {
    set drawn {}
    foreach call $calls {
        lassign $call command record
        lassign $record kind x y
        switch -exact -- $kind {
            Page {set page $x; set symbols {}}
            Name {set symbol $x; dict set symbols $symbol {}}
            Pin {dict lappend symbols $symbol {*}[lrange $record 3 4]}
            Line - Junction {
                # Lines of symbols count from the symbol.
                if {$command eq "addToLibList"} continue
                dict set drawn "$page [drawing::mils $x],[drawing::mils $y]" 1
            }
            Alias {dict set drawn "$page alias [drawing::mils $x],[drawing::mils $y]" 1}
            Part - Global - Port - OffPage - TitleBlock {
                foreach {pinX pinY} [dict get $symbols [lindex $record 5]] {
                    dict set drawn "$page [join [drawnAt $pinX $pinY [lrange $record 1 4]] ,]" 1
                }
            }
        }
    }
    return $drawn
}

# What must be drawn, in the same words.
proc pointsOf {design} {
    set points {}
    dict for {name page} [dict get $design pages] {
        foreach id [dict get $page parts] {
            foreach pin [dict get $design parts $id pins] {
                if {[dict get $pin hidden]} continue
                lappend points "$name [dict get $pin x],[dict get $pin y]"
            }
        }
        foreach point [concat [dict get $page wires] [dict get $page buses] [dict get $page junctions]] {
            lappend points "$name [join [lrange $point 0 1] ,]"
        }
        foreach label [dict get $page labels] {
            if {[dict get $label kind] ne "label"} continue
            lappend points "$name alias [dict get $label x],[dict get $label y]"
        }
    }
    return $points
}

test drawn "every pin, wire and label is drawn where the design has it, and no symbol is missing" -body {
    set path [openMicrophone]
    set answers [list [convertToSVG $path] [convertToSVG nowhere]]
    set design [dict get $designs::open $path]
    set drawn [drawnPoints $told]
    set points [pointsOf $design]
    lappend answers [expr {[llength $points] > 500}] [lmap point $points {
        if {[dict exists $drawn $point]} continue
        set point
    }]
    set pages [lmap call $told {
        if {[lindex $call 1 0] ne "Page"} continue
        lindex $call 1 1
    }]
    lassign [lindex $told end 1] schematic page - - key
    lappend answers [expr {$pages eq [dict keys [dict get $design pages]] && $page eq [lindex $pages end]
        && $key == [llength $pages] && $schematic eq [dict get $design pages $page schematic]}]
} -result {1 {} 1 {} 1}

test texts "texts begin where they read from, and stay readable on turned and mirrored parts" -body {
    # A text of four characters of 70 mils: 160 mils wide, 70 high.
    set placed [lmap {rotation down} {0 bottom 180 bottom 90 bottom 270 bottom 0 center} {
        lassign [drawing::textFrom abcd 100 0 50 $rotation $down part] - left top - - - height upright
        list $left $top $upright $height
    }]
    lappend placed [lrange [drawing::textAt "一\n二二" 0 0 50 0 {left top} part] 1 3]
    foreach {rotation mirror} {0 "" 90 "" 0 y 270 x} {
        set part [dict create symbol s unit 1 rotation $rotation mirror $mirror x 0 y 0 properties {Value abcd}]
        set record [drawing::fieldRecord {symbols {s {graphics {} pins {}}}} $part Value {100 100 0 50 0 {left top}}]
        lappend placed "$rotation$mirror [lrange $record 1 2] [lindex $record 7]"
    }
    set placed
} -result [list {10 -7 0 -9} {-5.7 -7 0 -9} {3 0 1 -9} {3 15.7 1 -9} {10 -3.5 0 -9} [list 0 0 "一\r\n二二"] \
    "0 10 10 0" "90 10 10 1" "0y -5.7 10 0" "270x 3 10 1"]

test shapes "arcs turn the way they run, and long pins are drawn out" -body {
    list [drawing::arcPath 100 0 70.7107 -70.7107 0 -100] [drawing::arcPath 0 -100 70.7107 -70.7107 100 0] \
        [drawing::arcPath 100 0 -70.7107 -70.7107 0 100] [drawing::arcPath 0 0 50 0 100 0] \
        [drawing::pinRecords {number 1 name A type input shape inverted_clock hidden 0 x -200 y 0 bodyX 0 bodyY 0}] \
        [drawing::pinRecords {number 1 name A type input shape line hidden 0 x 0 y 300 bodyX 0 bodyY 0}]
} -result {{M 10 0 A 10 10 0 0 0 0 -10} {M 0 -10 A 10 10 0 0 1 10 0} {M 10 0 A 10 10 0 1 0 0 10}\
    {M 0 0 L 10 0} {{Pin 0 0 -20 0 8 0 {SHORT CLOCK DOT} LEFT} {Line -10 0 -20 0 8 0 0}}\
    {{Pin 0 0 0 30 8 0 LONG BOTTOM}}}

test units "codes and sizes come back as they went" -body {
    set wrong {}
    foreach place {{0 {}} {0 x} {0 y} {90 {}} {90 x} {90 y} {180 {}} {180 x} {180 y} {270 {}} {270 x} {270 y}} {
        if {[drawing::fromCodes {*}[drawing::codes {*}$place]] eq $place} continue
        lappend wrong $place
    }
    for {set mils -205} {$mils < 205} {incr mils} {
        set height [drawing::fontHeight [expr {abs($mils)}]]
        if {[drawing::mils [drawing::unit $mils]] == $mils
            && [drawing::fontHeight [drawing::fromFontHeight $height]] eq $height} continue
        lappend wrong $mils $height
    }
    list $wrong [drawing::unit -25] [lmap unit {1 2 26 27 28} {drawing::unitLetter $unit}]
} -result {{} -2.5 {A B Z AA AB}}

# What the checks told, but for their closing messages.
proc checked {path} {
    set ::told {}
    RunCheck $path
    return [lmap call $::told {
        if {[llength $call] == 1} continue
        lrange $call 0 end-4
    }]
}

test checks "the mistakes that are drawn are found, and where; so is what is broken then" -setup {
    set path [openMicrophone]
    proc break_ {reference args} {
        foreach id [parts::ids $::path $reference] {
            dict set ::designs::open $::path parts $id {*}$args
        }
    }
} -body {
    set drawn [checked $path]
    set closed [lsearch -all -inline -exact $told sendNetlist]
    set answers [list $drawn $closed [lsearch -inline $told "sendRefRepetition RefRepe*"]]
    break_ C1 footprint ""
    break_ R2 properties Value 国产
    break_ C2 footprint F1
    break_ C3 footprint F2
    foreach {reference to} {C3 C2 R5 R?} {
        break_ $reference reference $to
    }
    set unit [lindex [parts::ids $path U2] 0]
    dict set designs::open $path parts $unit value OTHER
    set pin [lindex [dict get $designs::open $path parts $unit pins] 0]
    dict set designs::open $path parts $unit pins \
        [list [dict merge $pin {net "" number 9 noConnect 0 type input name A}] \
            [dict merge $pin {net x number 8 type input name A}] [dict merge $pin {net x number 8 name B}] \
            [dict merge $pin {net x number "" name C}]]
    dict set designs::open $path [designs::withReferences [dict get $designs::open $path]]
    lappend answers [lmap finding [checked $path] {
        if {$finding in $drawn} continue
        set finding
    }]
    set all $told
    set told {}
    RunCheckActiveProj $path
    lappend answers [expr {$told eq $all}] [catch {RunCheck nowhere}]
} -result {{{sendRefRepetition RefRepe C4 C4} {sendIllegalChar Value 国产100uF} {sendIllegalChar Value 绿色}\
    {sendIllegalChar Value 驻极体话筒} {sendIllegalChar Value 驻极体话筒} {sendIllegalChar Value 1k!}\
    {sendIllegalChar Value 国产78L05} {sendPinNC J2 3} {sendNetlist ValueDiff C4 100uF/10uF}\
    {sendNetlist NoFootprint D1 {}}} sendNetlist {sendRefRepetition RefRepe C4 C4 power Power 180 545}\
    {{sendRefRepetition RefRepe C2 C2} {sendRefRepetition NoRefNum R? {}} {sendIllegalChar Value 国产}\
    {sendPinNC U2 9} {sendNetlist NoFootprint C1 {}} {sendNetlist FootprintDiff C2 F1/F2}\
    {sendNetlist ValueDiff U2 MCP6022/OTHER} {sendNetlist RepePinName U2 A} {sendNetlist RepePinNum U2 8}\
    {sendNetlist NoPinNumber U2 C}} 1 1}

tcltest::cleanupTests
