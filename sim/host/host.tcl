# A stand-in for the schematic editor: loads the plug-in, opens real schematics and offers the
# procedures that the plug-in and its scripts call.
#
#   tclsh86.exe host.tcl -dll PATH -design FILE.kicad_sch ?-as NAME.dsn? ?options?
#
#   -dll PATH       the plug-in; without it the host runs alone
#   -design FILE    a schematic to open; may come several times
#   -as NAME        the name of the design before it; else its path, ending in .dsn
#   -state FOLDER   where saved designs keep what was changed; else it is lost at the end
#   -seconds N      end after N seconds
#   -follow FILE    carry out the lines that are added to a file
#   -commands FILE  a Tcl script to run once the designs are open; see commands.tcl for its words
#   -with FILE      a Tcl file to read before the plug-in is loaded
#   -trace          log every call of a host procedure
#   -serverPort N   another port than the fixed one, for tests
#
# Procedures live by topic: link (sockets), menu (actions), designs (open, save, close), pages (what
# is shown), parts (references, properties), bom, nets, drawing, modules, placing
# (connectors), checks, packages.

namespace eval ::host {
    # Tcl remembers of a normalized path that it is one, and finds what is joined to it without looking at each folder above.
    variable folder [file normalize [file dirname [info script]]]
    variable finishing 0
}
foreach topic {log kicad frames link menu designs pages parts bom nets drawing modules placing checks packages commands} {
    source -encoding utf-8 [file join $::host::folder $topic.tcl]
}
unset topic

proc ::host::options {arguments} {
    set options [dict create dll "" designs {} state "" seconds "" commands "" with {} follow "" \
        trace 0 serverPort 9610]
    while {$arguments ne ""} {
        set arguments [lassign $arguments option]
        if {$option eq "-trace"} {
            dict set options trace 1
            continue
        }
        if {$arguments eq ""} {
            error "$option needs a value"
        }
        set arguments [lassign $arguments value]
        switch -exact -- $option {
            -design {dict lappend options designs [list $value [designs::nameFor $value]]}
            -as {
                set designs [dict get $options designs]
                if {$designs eq ""} {
                    error "-as stands after its -design"
                }
                dict set options designs [lreplace $designs end end \
                    [list [lindex $designs end 0] $value]]
            }
            -with {dict lappend options with $value}
            -dll - -state - -seconds - -follow - -commands - -serverPort {
                dict set options [string range $option 1 end] $value
            }
            default {error "unknown option $option"}
        }
    }
    return $options
}

proc ::host::start {options} {
    set ::designs::stateFolder [dict get $options state]
    set ::link::serverPort [dict get $options serverPort]
    if {[dict get $options trace]} {
        traceAll
    }
    foreach file [dict get $options with] {
        uplevel #0 [list source -encoding utf-8 $file]
    }
    if {[dict get $options dll] ne ""} {
        # The plug-in's start-up script defines procedures where it is loaded.
        set module [file nativename [file normalize [dict get $options dll]]]
        uplevel #0 [list load $module Vernoxa]
        log "plug-in loaded"
    }
    foreach design [dict get $options designs] {
        designs::load {*}$design
    }
    if {[dict get $options commands] ne ""} {
        after 0 [list ::host::runScript [dict get $options commands]]
    }
    if {[dict get $options seconds] ne ""} {
        after [expr {int([dict get $options seconds] * 1000)}] ::host::finish
    }
    if {[dict get $options follow] ne ""} {
        followCommands [open [dict get $options follow]]
    }
}

# Ends as the editor does: its exit event first, then whatever is still open, then the process.
proc ::host::finish {{code 0}} {
    variable finishing
    if {$finishing} {
        return
    }
    set finishing 1
    if {[menu::invoke exitOpration] eq "no such action"} {
        exitOpration
    }
    link::shut
    log [expr {$code ? "end with $code" : "end"}]
    exit $code
}

proc ::host::backgroundError {message options} {
    log "error: $message"
}

# Tests read this file for its procedures and run nothing.
if {[file normalize [info script]] eq [file normalize $argv0]} {
    fconfigure stdout -encoding utf-8 -translation lf -buffering line
    interp bgerror {} ::host::backgroundError
    if {[catch {host::start [host::options $argv]} problem]} {
        host::log "cannot start: $problem"
        exit 1
    }
    vwait forever
}
