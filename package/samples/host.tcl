# A host script to begin with: tclsh86.exe host.tcl Vernoxa64.dll FOLDER
#
# It offers the plug-in what that needs to report designs and their bills of materials. The designs are the files NAME.bom
# of a folder, a line for each part, six fields with ; between them; "-" before a part that is not fitted. In the editor the
# same procedures would ask the editor. What each is given and has to answer is told in docs/host-procedures.md.

set companion ""  ;# the connection, while there is one

# --- frames: four bytes of length, then the packet text ------------------------------------------------------------

proc sendFrame {channel text} {
    puts -nonewline $channel [binary format i [string length $text]]$text
    flush $channel
}

# Hands each packet that came to a command of the plug-in, and sends back what that answers.
proc receive {channel command} {
    append ::received($channel) [read $channel]
    while {[binary scan $::received($channel) i length] == 1
            && [string length $::received($channel)] >= 4 + $length} {
        set packet [string range $::received($channel) 4 3+$length]
        set ::received($channel) [string range $::received($channel) 4+$length end]
        set reply [$command $packet]
        if {$reply ne ""} {
            sendFrame $channel $reply
        }
    }
    if {[eof $channel]} {
        hangUp $channel
    }
}

proc listenTo {channel command args} {
    fconfigure $channel -blocking 0 -translation binary
    set ::received($channel) ""
    fileevent $channel readable [list receive $channel $command]
}

proc hangUp {channel} {
    close $channel
    if {$channel eq $::companion} {
        set ::companion ""
        serverLinkBreak
    }
}

# --- the link ------------------------------------------------------------------------------------------------------

proc creatServerForPthread {} {
    socket -server {apply {{channel args} {listenTo $channel packetParserForPthread}}} -myaddr 127.0.0.1 9610
}

proc creatClient {renew} {
    if {$renew && $::companion ne ""} {  ;# the plug-in knows, so it is told of no break
        close $::companion
        set ::companion ""
    }
    if {$::companion eq ""} {
        if {[catch {socket 127.0.0.1 9601} channel]} {return -1}
        set ::companion $channel
        listenTo $channel packetParser
    }
    return 0
}

proc sendPacketGlobalHandle {packet} {
    if {$::companion eq ""} {error "no companion"}
    sendFrame $::companion $packet
    return 0
}

# --- designs and their bills ---------------------------------------------------------------------------------------

proc GetProductVersion {} {
    return 17.4
}

proc InitPath {} {
    set paths {}
    foreach file [lsort [glob -nocomplain -directory $::folder *.bom]] {
        append paths [file rootname $file].dsn ";"
    }
    return $paths
}

proc linesOf {design} {
    set channel [open [file rootname $design].bom]
    fconfigure $channel -encoding utf-8
    set lines [lsearch -all -inline -not -exact [split [read $channel] \n] ""]
    close $channel
    return $lines
}

proc getDsnPinCount {design} {
    set count 0
    foreach line [linesOf $design] {
        incr count [lindex [split $line ";"] 5]
    }
    return $count
}

namespace eval ::capGenerateBOMUtil {
    proc init {} {}
    proc getStickList {} {return [lsearch -all -inline -not $::bill -*]}
    proc getNotStickList {} {return [lmap line [lsearch -all -inline $::bill -*] {string range $line 1 end}]}
    proc getNoPartNumberList {} {return [lsearch -all -inline $::bill NULL\;*]}
}

proc generateBOMForPath {design numberKey nameKey} {
    set ::bill [linesOf $design]
}

proc RegisterAction args {}  ;# there are no menus here
proc InsertXMLMenu args {}

lassign $argv module folder
set folder [file normalize $folder]
load $module Vernoxa
vwait forever
