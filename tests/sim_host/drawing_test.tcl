# Drawings of real designs, as the plug-in is told them; and what checks and reports find in them.
package require tcltest
namespace import ::tcltest::test ::tcltest::makeFile ::tcltest::makeDirectory
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] \
    .. .. sim host host.tcl]

set demos /usr/share/kicad/demos
if {![file isdirectory $demos]} {
    puts "skipped: kicad-demos is not installed"
    exit 0
}
proc host::log {text} {}
foreach command {initSVGList addToPageList addToLibList outputSVGFile sendRefRepetition sendIllegalChar
        sendPinNC sendNetlist sendDsnPackageInfo sendOlbPackageInfo sendOlbObjectPackageInfo} {
    proc $command {args} "lappend ::told \[list $command {*}\$args\]"
}
proc checkCharIllegal {name} {
    return [expr {![string is ascii -strict $name]}]
}
proc open_ {demo} {
    set ::told {}
    return [designs::load $::demos/$demo.kicad_sch Z:\\[file tail $demo].dsn]
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
                set name [lindex $record 5]
                if {![dict exists $symbols $name]} {
                    error "$page has no $name"
                }
                foreach {pinX pinY} [dict get $symbols $name] {
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
                if {![dict get $pin hidden]} {
                    lappend points "$name [dict get $pin x],[dict get $pin y]"
                }
            }
        }
        foreach point [concat [dict get $page wires] [dict get $page buses] [dict get $page junctions]] {
            lappend points "$name [join [lrange $point 0 1] ,]"
        }
        foreach label [dict get $page labels] {
            if {[dict get $label kind] eq "label"} {
                lappend points "$name alias [dict get $label x],[dict get $label y]"
            }
        }
    }
    return $points
}

test drawn "every pin, wire and label is drawn where the design has it, and no symbol is missing" -body {
    set answers {}
    foreach demo {complex_hierarchy/complex_hierarchy video/video pic_programmer/pic_programmer} {
        set path [open_ $demo]
        lappend answers [convertToSVG $path]
        set design [dict get $designs::open $path]
        set drawn [drawnPoints $told]
        set points [pointsOf $design]
        lappend answers [expr {[llength $points] > 250}] \
            [lrange [lmap point $points {
                if {[dict exists $drawn $point]} continue
                set point
            }] 0 3]
        set pages [lmap call $told {
            if {[lindex $call 1 0] ne "Page"} continue
            lindex $call 1 1
        }]
        lassign [lindex $told end 1] schematic page - - key
        lappend answers [expr {$pages eq [dict keys [dict get $design pages]] && $page eq [lindex $pages end]
            && $key == [llength $pages] && $schematic eq [dict get $design pages $page schematic]}]
    }
    lappend answers [convertToSVG nowhere]
} -result {1 1 {} 1 1 1 {} 1 1 1 {} 1 {}}

test texts "texts begin where they read from, and stay readable on turned and mirrored parts" -body {
    set wrong {}
    # A text of four characters of 70 mils: 160 mils wide, 70 high.
    foreach {rotation down expected} {
        0 bottom {10 -7 0} 180 bottom {-5.7 -7 0} 90 bottom {3 0 1} 270 bottom {3 15.7 1} 0 center {10 -3.5 0}
    } {
        lassign [drawing::textFrom abcd 100 0 50 $rotation $down part] - left top text colour - height upright
        if {[list $left $top $upright] ne $expected || $height ne "-9"} {
            lappend wrong $rotation [list $left $top $upright]
        }
    }
    lappend wrong [lrange [drawing::textAt "一\n二二" 0 0 50 0 {left top} part] 1 3]
    set symbol {graphics {} pins {}}
    foreach {rotation mirror expected} {0 "" {10 10 0} 90 "" {10 10 1} 0 y {-5.7 10 0} 270 x {10 10 1}} {
        set part [dict create symbol s unit 1 rotation $rotation mirror $mirror x 0 y 0 properties {Value abcd}]
        set record [drawing::fieldRecord [dict create symbols [dict create s $symbol]] $part Value \
            {100 100 0 50 0 {left top}}]
        lappend wrong "$rotation$mirror [lrange $record 1 2] [lindex $record 7]"
    }
    set wrong
} -result [list [list 0 0 "一\r\n二二"] "0 10 10 0" "90 10 10 1" "0y -5.7 10 0" "270x 3 10 1"]

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
    foreach rotation {0 90 180 270} {
        foreach mirror {"" x y} {
            if {[drawing::fromCodes {*}[drawing::codes $rotation $mirror]] ne [list $rotation $mirror]} {
                lappend wrong $rotation $mirror
            }
        }
    }
    for {set mils -205} {$mils < 205} {incr mils} {
        if {[drawing::mils [drawing::unit $mils]] != $mils} {
            lappend wrong $mils
        }
        set height [drawing::fontHeight [expr {abs($mils)}]]
        if {[drawing::fontHeight [drawing::fromFontHeight $height]] ne $height} {
            lappend wrong $mils $height
        }
    }
    list $wrong [drawing::unit -25] [lmap unit {1 2 26 27 28} {drawing::unitLetter $unit}]
} -result {{} -2.5 {A B Z AA AB}}

# What the checks told: the count of each command's calls, closing ones included, and the findings.
proc checked {path} {
    set ::told {}
    RunCheck $path
    set findings [lmap call $::told {
        if {[llength $call] == 1} continue
        lrange $call 0 end-4
    }]
    return [list [llength [lsearch -all -exact $::told sendNetlist]] $findings]
}

test checks "a clean design has but its closing messages; what is broken in it is found, and where" -setup {
    set path [open_ complex_hierarchy/complex_hierarchy]
    proc break_ {reference args} {
        foreach id [parts::ids $::path $reference] {
            dict set ::designs::open $::path parts $id {*}$args
        }
    }
} -body {
    set answers [list [checked $path]]
    break_ C1 footprint ""
    break_ C2 properties Value 国产
    break_ U1 pins {}
    break_ C9 footprint F1
    break_ C10 footprint F2
    foreach {reference to} {C9 C10 R5 R?} {
        break_ $reference reference $to
    }
    set unit [lindex [parts::ids $path U3] 0]
    dict set designs::open $path parts $unit value OTHER
    set pin [lindex [dict get $designs::open $path parts $unit pins] 0]
    dict set designs::open $path parts $unit pins \
        [list [dict merge $pin {net "" number 7 noConnect 0 type input name A}] \
            [dict merge $pin {net x number 8 type input name A}] [dict merge $pin {net x number 8 name B}] \
            [dict merge $pin {net x number "" name C}]]
    dict set designs::open $path [designs::withReferences [dict get $designs::open $path]]
    lappend answers [lindex [checked $path] 1]
    set told {}
    RunCheckActiveProj $path
    lappend answers [lsearch -inline $told "sendRefRepetition RefRepe*"] [catch {RunCheck nowhere}]
} -result {{1 {}} {{sendRefRepetition RefRepe C10 C10} {sendRefRepetition NoRefNum R? {}}\
    {sendIllegalChar Value 国产} {sendPinNC U3 7} {sendNetlist NoFootprint C1 {}}\
    {sendNetlist FootprintDiff C10 F1/F2} {sendNetlist ValueDiff C10 10uF/47uF/63V} {sendNetlist ValueDiff U3 LM358N/OTHER} {sendNetlist RepePinName U3 A} {sendNetlist RepePinNum U3 8}\
    {sendNetlist NoPinNumber U3 C}}\
    {sendRefRepetition RefRepe C10 C10 complex_hierarchy complex_hierarchy 665 275} 1}

test packages "designs, libraries and their parts tell their properties once each" -setup {
    set path [open_ complex_hierarchy/complex_hierarchy]
    set library [makeDirectory packages]/a.olb
    packages::write $path $library
} -body {
    set told {}
    list [GetAllPackage $path] [GetOlbAllPackage $library] [GetOlbObjectPackage $library LM358N] \
        [GetAllPackage nowhere] [GetOlbAllPackage nowhere] [GetOlbObjectPackage $library NONE] \
        [lmap call $told {list [lindex $call 0] [lmap item [lindex $call 1] {lindex $item 0}]}] \
        [lsearch -inline -index 0 [lindex $told 2 1] "Pin Count"]
} -result {1 1 1 {Path error} {Path error} {Path error}\
    {{sendDsnPackageInfo {{Part Reference} Value {PCB Footprint} Datasheet}}\
    {sendOlbPackageInfo {Name {Pin Numbers Visible} {Pin Names Visible} {Pin Count} {Part Reference} Value {PCB Footprint} Datasheet ki_fp_filters}}\
    {sendOlbObjectPackageInfo {Name {Pin Numbers Visible} {Pin Names Visible} {Pin Count} {Part Reference} Value {PCB Footprint} Datasheet}}}\
    {{Pin Count} 8}}

set failed $tcltest::numTests(Failed)
tcltest::cleanupTests
exit [expr {$failed > 0}]
