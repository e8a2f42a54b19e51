# Modules between the stand-in host and the built DLL: a block of a design is shared, placed into another design and
# shared from there: on_windows.tcl modules_windows_test.tcl Vernoxa64.dll

set built [lindex $argv 0]
set argv {}  ;# would be options of the test package
package require tcltest
namespace import ::tcltest::test
set sim [file join [file dirname [file normalize [info script]]] .. .. sim]
source -encoding utf-8 $sim/host/host.tcl

proc host::log {text} {
    lappend ::logged $text
    if {[string match "placed *" $text]} {
        set ::dropped $text
    }
}
proc sendPacketGlobalHandle {packet} {return 0}
# What a module holds is what the host gives for it.
trace add execution link::plugin enter {apply {{words operation} {
    lassign $words - command record
    if {$command in {addMarketLibList addMarketPartList}} {
        lappend ::records [list $command $record]
    }
}}}
set root [file join $env(TEMP) vernoxa-modules]
install $root $built Config/Resource module
library::create $root/Config/Resource/Empty.olb
set link::serverPort 0  ;# any: nobody is to find this host
load [file nativename $root/bin/Vernoxa64.dll] Vernoxa

proc ask {command members} {
    set reply [unhex [packetParser [hex "{\"Command\":\"$command\",\"Data\":{$members}}"]]]
    if {![string match {*"Result":"0"*} $reply]} {
        error "$command was answered with $reply"
    }
}

proc openPage {page {sheet microphone}} {
    set path [designs::load $::sim/designs/microphone/$sheet.kicad_sch Z:\\$sheet.dsn]
    pages::activate $path $page
    return $path
}

# Gives the records of what is selected.
proc share {} {
    set ::records {}
    ask SelectModule "\"Page\":\"[lindex [pages::need] 1]\""
    return $::records
}

# Places the module that was shared last. Gives the files that are left where the plug-in found it.
proc place {command members} {
    file copy -force $::root/Cache/Share/ModuleLib.json $::root/module
    set path [string map {\\ \\\\} [file nativename $::root/module/ModuleLib.json]]
    ask $command "\"dsnDatPath\":\"$path\",$members"
    set waiting [after 20000 {set ::dropped never}]
    vwait ::dropped
    after cancel $waiting
    return [names $::root/module]
}

# The first record that comes back otherwise, but for the marks that placing puts on every object, placeholders, which
# come back empty, and @, which comes back as _.
proc different {first second} {
    set second [lsearch -all -inline -not -regexp $second {Property (NimbMarket|MarketResID|MarketUserID) }]
    foreach one $first other $second {
        if {[lindex $one 1 0] in {Property PartProperty}} {
            set value [lindex $one 1 2]
            lset one 1 2 [expr {[string match *$* $value] ? "" : [string map {@ _} $value]}]
        }
        if {$one ne $other} {
            return [list $one $other]
        }
    }
}

openPage filter filter
test travel "a block of each page comes back the same: parts, units, wires, names, texts, arcs, Chinese" -body {
    set answers {}
    foreach {page references chinese} {
        microphone all 驻极体话筒 Power all 稳压器 左声道 all 滤波后 右声道/Filter\ 2 {R231 C231 U202} MCP
    } {
        set path [openPage $page]
        if {$references eq "all"} {
            set references [lmap part [dict values [dict get $designs::open $path parts]] {
                if {[dict get $part page] ne $page || [dict get $part power]} continue
                dict get $part reference
            }]
        }
        modules::selectBlock [lsort -unique $references]
        set first [share]
        pages::activate Z:\\filter.dsn filter
        set left [place PlaceDSNModule {"uploadResId":"7","uploadUserId":"8","selfModule":"1"}]
        set second [share]
        lappend answers [different $first $second] $left [expr {[llength $first] > 140}] [string match *$chinese* $first]
    }
    set answers
} -result [string trim [string repeat {{} {} 1 1 } 4]]

test single "a single part lands at its place under the next free number" -body {
    set path [openPage 左声道]
    modules::selectBlock U103
    share
    set left [place PlaceDsnLibPartModule {"PartIndex":"1","Designator":"B","ViewBoxWidth":10,"ViewBoxHeight":20,
        "PartName":"a-catalogue's-name","prefix":"U","value":"国产"}]
    set part [dict get $designs::open $path parts [lindex $pages::selection 0]]
    list {*}[lmap field {reference unit x value} {dict get $part $field}] \
        [dict exists $designs::open $path references U3] [llength [dict get $part pins]] $left
} -result {U3 2 100 国产 1 3 {}}

test wrong "what cannot be placed is told, and the rest stays" -body {
    set logged {}
    set before $designs::open
    list [placePart Nonsense 0 {} {} {}] [catch {placePart Part 0 {} {{Location "1 2"} {Rotation x}} {}}] \
        [catch {placeLibPart /nowhere/a.olb n 0 Part {} {} {} {} {}}] [string match "*cannot place*" $logged] \
        [expr {$before eq $designs::open}]
} -result {1 1 1 1 1}

set failed $tcltest::numTests(Failed)
tcltest::cleanupTests
exit [expr {$failed > 0}]
