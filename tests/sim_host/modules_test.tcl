# Sharing and placing modules, with the plug-in's part played by fake_modules.tcl.
package require tcltest
namespace import ::tcltest::test ::tcltest::makeDirectory
set here [file dirname [file normalize [info script]]]
source -encoding utf-8 [file join $here .. .. sim host host.tcl]
source -encoding utf-8 [file join $here fake_modules.tcl]

set demos /usr/share/kicad/demos
if {![file isdirectory $demos]} {
    puts "skipped: kicad-demos is not installed"
    exit 0
}
set logged {}
proc host::log {text} {
    lappend ::logged $text
}
set fake::folder [makeDirectory modules]
proc open_ {demo} {
    return [designs::load $::demos/$demo.kicad_sch Z:\\[file tail $demo].dsn]
}

# A module and the same after it was placed into another design and shared from there.
proc travelled {own} {
    set ::told {}
    set ::fake::own $own
    set ::fake::toPlace [fake::plainModule]
    library::create $::fake::folder/new.olb
    pages::activate Z:\\ecc83-pp.dsn ecc83-pp
    UnSelectAll
    setPlaceMarketFlag 1
    PlaceNew $::fake::folder/new.olb ViewBox {10 10}
    vwait ::told
    getSelectPart ecc83-pp
    return [list $::fake::toPlace [fake::plainModule]]
}

proc different {one other} {
    set differing {}
    foreach section {parts objects size} {
        foreach a [dict get $one $section] b [dict get $other $section] {
            if {$a ne $b} {
                lappend differing $a $b
            }
        }
    }
    return [lrange $differing 0 3]
}

test travel "a block of each page comes back the same: parts, units, wires, names, texts, arcs" -setup {
    open_ ecc83/ecc83-pp
} -body {
    set answers {}
    foreach {demo page references} {
        complex_hierarchy/complex_hierarchy ampli_ht_vertical {P4 U3 Q1 RV1 P3 C3}
        video/video RAMS all
        video/video graphic all
        pic_programmer/pic_programmer pic_sockets all
    } {
        set path [open_ $demo]
        pages::activate $path $page
        if {$references eq "all"} {
            set references [lmap id [dict get $::designs::open $path pages $page parts] {
                set part [dict get $::designs::open $path parts $id]
                if {[dict get $part power]} continue
                dict get $part reference
            }]
        }
        modules::selectBlock [lsort -unique $references]
        set shared [llength [getSelectPart $page]]
        lassign [travelled 1] first second
        lappend answers [expr {$shared > 0}] [different $first $second] \
            [expr {[llength [dict get $first objects]] > 50}] $told
    }
    set answers
} -result [string trim [string repeat {1 {} 1 {placed cleaned} } 4]]

test foreign "of others' modules only the editor's own properties come along" -setup {
    open_ ecc83/ecc83-pp
    pages::activate [open_ complex_hierarchy/complex_hierarchy] ampli_ht_vertical
} -body {
    modules::selectBlock R6
    set id [lindex $::pages::selection 0]
    dict set ::designs::open Z:\\complex_hierarchy.dsn parts $id properties Value {国产 [exit] $x}
    dict set ::designs::open Z:\\complex_hierarchy.dsn parts $id properties Footprint "a@b"
    getSelectPart ampli_ht_vertical
    lassign [travelled 0] first second
    lmap module [list $first $second] {dict get [lindex [dict get $module objects] 0] properties}
} -result {{{Part Reference} R6 Reference R6 Value {} {PCB Footprint} a_b Datasheet {}}\
    {{Part Reference} R6 Reference R6 Value {} {PCB Footprint} a_b}}

test offer "the companion is told pins, parts, nets and words" -body {
    pages::activate [open_ complex_hierarchy/complex_hierarchy] complex_hierarchy
    modules::selectBlock {C9 C1}
    getSelectPart complex_hierarchy
    lassign $fake::offered pins own price parts nets words
    list [expr {$pins == $own}] $price [lrange [split $parts ";"] 0 1] [lrange [split $nets ";"] 0 2] $words
} -match glob -result {1 0 {1,C1,* 2,C9,*} {GND HT VCC} {47uF;47uF/63V}}

test single "a single part lands at its place under the next free number" -setup {
    set path [open_ complex_hierarchy/complex_hierarchy]
    pages::activate $path ampli_ht_vertical
    modules::selectBlock U3
    getSelectPart ampli_ht_vertical
    fake::placeLibrary [fake::module]
    set told {}
} -body {
    SetLibViewBox {10 20}
    setPlaceMarketFlag 2
    PlaceNew "a catalogue's name" $fake::folder/new.olb 1
    vwait told
    set part [dict get $designs::open $path parts [lindex $pages::selection 0]]
    list [dict get $part reference] [dict get $part unit] [dict get $part x] [dict get $part value] \
        [dict exists $designs::open $path references U5] [llength [dict get $part pins]]
} -result {U5 2 100 国产 1 5}

test wrong "what cannot be placed is told, and the rest stays" -body {
    set ::logged {}
    set before [dict get $::designs::open Z:\\complex_hierarchy.dsn pages ampli_ht_vertical]
    list [placePart Nonsense 0 {} {} {}] [catch {placePart Part 0 {} {{Location "1 2"} {Rotation x}} {}}] \
        [catch {placeLibPart /nowhere/a.olb n 0 Part {} {} {} {} {}}] [string match "*cannot place*" $::logged] \
        [expr {$before eq [dict get $::designs::open Z:\\complex_hierarchy.dsn pages ampli_ht_vertical]}]
} -result {1 1 1 1 1}

set failed $tcltest::numTests(Failed)
tcltest::cleanupTests
exit [expr {$failed > 0}]
