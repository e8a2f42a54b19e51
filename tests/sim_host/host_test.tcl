# The host's procedures, alone and with a fake plug-in: tclsh8.6 host_test.tcl
package require tcltest
namespace import ::tcltest::test ::tcltest::makeDirectory
set sim [file join [file dirname [file normalize [info script]]] .. .. sim]
source -encoding utf-8 $sim/host/host.tcl

set schematic $sim/designs/microphone/microphone.kicad_sch
proc host::log {text} {}

# A plug-in that puts readable words where packets go.
set told {}
foreach command {ReadOpenPath sendSaveFile sendCloseFile sendAddToBom sendRemoveFromBom} {
    proc $command {value} "return \"$command \$value\""
}
proc selectAddOrRemoveFromBom {} {return 1}
proc getGenerateGuid {} {return GUID[incr ::guids]}
proc outputWarming {} {lappend ::told warned}
proc sendPacketGlobalHandle {text} {lappend ::told $text; return 0}

# Opens the design under a name.
proc opened {name} {
    foreach path [designs::paths] {
        designs::close $path
    }
    set ::told {}
    designs::load $::schematic $name
}
set name {Z:\tmp\newdir\设计 文件\a[1].dsn}

test paths "a design is found under every spelling of its path, and no other is" -setup {opened $name} -body {
    set spellings [list $name [string map {\\ /} $name] [string map {\\ \\\\} $name] [string toupper $name] \
        [subst -nocommands -novariables $name] {Z:\tmp\newdir\a[1].dsn} a.dsn "" "\u0000\{" {[exit]}]
    list [lmap text $spellings {getDsnPinCount $text}] [InitPath] \
        [getGuid nowhere 1] [getGuid $name 1] [getGuid $name] [getGuid $name 1]
} -result [list {223 223 223 223 223 -1 -1 -1 -1 -1} "$name;" "Invalid design path" GUID1 GUID1 GUID2]

test options "designs take their names, and mistakes are told" -body {
    set given [host::options {-design /d/a.kicad_sch -design /d/b.kicad_sch -as C:\\b.DSN -trace}]
    list [dict get $given designs] [dict get $given trace] [catch {host::options {-as x}}] \
        [catch {host::options {-design}}] [catch {host::options {-nonsense 1}}]
} -result [list [list [list /d/a.kicad_sch {Z:\d\a.dsn}] [list /d/b.kicad_sch {C:\b.DSN}]] 1 1 1 1]

test switching "the selection changes sides; the companion's question shows no box" -setup {opened $name} -body {
    lappend told [switchStickOrNotStick 0] [switchStickOrNotStick]
    setRefToNotUse $name C2
    pages::select {C1 C2}
    lappend told [switchStickOrNotStick]
    lmap line $told {string range $line 0 25}
} -result [list warned "no part is selected" "" "sendAddToBom {CAP-0603-100" \
    "sendRemoveFromBom {x\;国产100" ""]

test pages "what is shown, selected and renamed" -setup {opened $name} -body {
    set answers [list [GetActiveProPages] [IsSchematicViewActive]]
    lappend answers [catch {JumpToDsn $name s nopage {1 2}}] [JumpToDsn $name s 左声道 {1 2}]
    lappend answers [catch {gotoLocation $name C999}] [gotoLocation $name C1] [UnSelectAll]
    pages::select {C1 R1}
    lappend answers [pages::selected $name] [getSelectPart Power]
    ClearCurrentDesign
    lappend answers [IsSchematicViewActive] [catch {RenameRef 0}] [KX_PlaceWirePort 1 {}]
} -result [list [list [list $name microphone Power 左声道 {左声道/Filter 1} {左声道/Filter 2} \
    右声道 {右声道/Filter 1} {右声道/Filter 2}]] \
    1 1 1 1 1 1 {C1 R1} C1 0 1 "no schematic page is active"]

test rename "references are numbered in reading order and units stay together" -setup {opened $name} -body {
    RenameRef 0
    set numbers {}
    foreach page [dict values [dict get $designs::open $name pages]] {
        set places {}
        foreach id [dict get $page parts] {
            set part [dict get $designs::open $name parts $id]
            if {[regexp {^R(\d+)$} [dict get $part reference] -> number]} {
                lappend places [list [dict get $part y] [dict get $part x] $number]
            }
        }
        lappend numbers {*}[lmap place [lsort -integer -index 0 [lsort -integer -index 1 $places]] {lindex $place 2}]
    }
    set units [lmap ids [dict values [dict get $designs::open $name references]] {llength $ids}]
    set last 0
    list [expr {$numbers eq [lmap number $numbers {incr last}]}] $last [lsort -unique $units] [getDsnPinCount $name]
} -result {1 36 {1 3 5} 223}

test nets "the nets file names every net and pin, and the bill both parts of one reference" -setup {
    opened $name
    set folder [makeDirectory host_nets]
} -body {
    set data [GetNetsList $name $folder/Nets.txt]
    set lines [split [string trim [kicad::readFile $folder/Nets.txt]] \n]
    list [llength $lines] [lsearch -inline -glob $lines "GND\t*C1.2 *"] \
        [string match "C1\t国产100uF\t*" [kicad::readFile $data]] \
        [string match Error* [GetNetsList $name $folder/none/Nets.txt]] \
        [string match Error* [GetNetsList nowhere $folder/Nets.txt]] [generateBOMForPath $name x x] \
        [lmap line [lsearch -all -inline [capGenerateBOMUtil::getStickList] "*;C4;*"] {lindex [split $line \;] 1}]
} -match glob -result {48 {GND*} 1 1 1 1 {100uF 10uF}}

test readable "the start-up script's bytes are shown as the Chinese that they are" -body {
    set bytes [encoding convertto cp936 澜图助手]
    list [host::readable "menu [encoding convertfrom utf-8 $bytes]"] [host::readable 设计é] \
        [host::messageOf d6fa0a22e59bbde4baa7343775462222cebb22] [host::messageOf zz]
} -result {{menu 澜图助手} 设计é {助 "国产47uF""位"} zz}

tcltest::cleanupTests
