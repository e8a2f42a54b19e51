# The built DLL for as long as an editor runs: soak.tcl DLL COUNTS-DLL PACKETS EXPORTS. Packets through both doors, page
# exports, placements of a module. Prints a line "WHAT N handles H threads T kilobytes K bytes B" after the first tenth
# and at the end of each, for whoever judges them.

lassign $argv dll counts packets exports

namespace eval ::capGenerateBOMUtil {
    proc init {} {}
    proc getStickList {} {return {{1;10k;R1;RES;0603;2} {2;1k;R2;RES;0603;2}}}
}
foreach name {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu placeLibPart setPinNum placePart UnSelectAll
        PlaceNew setPlaceMarketFlag sendPacketGlobalHandle generateBOMForPath ZoomIn ZoomOut saveFile} {
    proc $name args {return 1}
}
proc GetProductVersion {} {return 17.4}
proc InitPath {} {return {C:\a.dsn;C:\b.dsn}}
proc IsSchematicViewActive {} {return 1}

proc packet {json} {
    return [binary encode hex [encoding convertto cp936 $json]]
}

proc tell {what number} {
    lassign [processCounts] handles threads kilobytes
    puts "$what $number handles $handles threads $threads kilobytes $kilobytes bytes [processHeaps]"
}

# Runs a script, which does so many of what is counted, until all are done; the first tenth fills what is kept for good.
proc long {what times script {each 1}} {
    for {set number $each} {$number <= $times} {incr number $each} {
        uplevel #0 $script
        if {$number == $times / 10 || $number == $times} {
            tell $what $number
        }
    }
}

load $counts Counts
load $dll Vernoxa
set base [file dirname [file dirname $dll]]
file mkdir $base/Cache $base/config/Resource
foreach {name text} {config/Resource/Empty.olb OLB
        module.json {{"lib":[{"Name":"RES"}],"children":[{"name":"Wire"}],"BoundingBox":"30 20"}}} {
    set channel [open $base/$name w]
    puts -nonewline $channel $text
    close $channel
}

set doors [list packetParser [packet {{"Command":"GenerateBOM","Data":{"ProjectPath":"C:\\a.dsn"}}}] \
    packetParserForPthread [packet {{"Command":"GetNewOpenPath"}}] packetParser [packet {{"Command":"Nobody"}}] \
    packetParser [packet {{"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\b.dsn"}}}] packetParser [packet "\{"]]
long packets $packets {
    foreach {door text} $doors {
        $door $text
    }
} 5
set record {Text 1 2 电阻值 0 {} -9 0}
# A hundred pages a design: at the beginning of each the plug-in waits until the pages of the one before are removed.
set page 0
long exports $exports {
    if {$page % 100 == 0} {
        initSVGList
    }
    incr page
    addToPageList {Page P 1 2 K}
    addToPageList $record
    addToLibList {Name RES}
    addToLibList {Line 1 2 3 4 8 1 0}
    addToPageList {Part 1 2 0 0 RES INS1}
    outputSVGFile {S P - - K}
}
set place [packet "{\"Command\":\"PlaceDSNModule\",\"Data\":{\"dsnDatPath\":\"[string map {\\ \\\\} [file nativename $base/m.json]]\"}}"]
long placements $exports {
    file copy -force $base/module.json $base/m.json
    packetParser $place
    placeMarketPart
}
puts "left [glob -nocomplain -tails -directory $base *.olb m.json]"
puts "end"
exit 0
