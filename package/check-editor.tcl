# To be read in the editor's own command window:  source {X:/path/check-editor.tcl}
# Asks only what changes nothing: which commands and procedures there are, and versions. Writes editor.html and editor.zip,
# and says where. No name of a design is asked for.

namespace eval ::vernoxaCheck {
    variable here [file dirname [file normalize [info script]]]
    variable results {}
    # Declared, so that none of the editor's own variables of these names is touched.
    variable file
    variable version
    variable commands
    variable procedures
    variable proceduresAtLoading
    variable companionRequests
    variable why

    proc judge {what why} {
        variable results
        lappend results [list $what [expr {$why eq "" ? "passed" : "failed"}] $why 0]
        puts [format "  %-52s %s" $what [expr {$why eq "" ? "passed" : "failed: $why"}]]
    }

    proc missing {names} {
        set none {}
        foreach name $names {
            set name [string trimleft $name :]
            # Tcl reads those in its index when they are called.
            if {[namespace which -command ::$name] eq "" && ![info exists ::auto_index($name)]
                && ![info exists ::auto_index(::$name)]} {
                lappend none $name
            }
        }
        return [expr {[llength $none] ? "missing: [join $none {, }]" : ""}]
    }

    proc loadedFrom {} {
        set paths {}
        foreach each [info loaded {}] {
            if {[string equal -nocase [lindex $each 1] Vernoxa]} {
                lappend paths [lindex $each 0]
            }
        }
        return $paths
    }

    proc run {} {
        variable results {}
        variable here
        variable version
        variable commands
        variable procedures
        variable proceduresAtLoading
        set facts [list "Vernoxa" $version "Tcl" [info patchlevel] "code page" [encoding system]]
        lappend facts "bits" [expr {8 * $::tcl_platform(pointerSize)}]
        catch {lappend facts "editor's version" [uplevel #0 GetProductVersion]}
        puts "Vernoxa $version: asking the editor"
        judge "Tcl is 8.6" [expr {[package vsatisfies [info patchlevel] 8.6] ? "" : "it is [info patchlevel]"}]
        judge "the editor is a 64-bit program" [expr {$::tcl_platform(pointerSize) == 8 ? "" : "it is a 32-bit program"}]
        judge "procedures that loading the plug-in calls" [missing $proceduresAtLoading]
        judge "procedures that the plug-in calls later" [missing $procedures]
        judge "procedures that its menu and actions call" \
            [missing {exitOpration MouseClick ShowMainForm checkSocketConnect switchStickOrNotStick}]
        if {[catch {package present Vernoxa}]} {
            judge "the plug-in is loaded" "it is not"
        } else {
            judge "the plug-in is loaded" ""
            judge "commands of the plug-in" [missing $commands]
            set mine [file normalize [file join $here bin Vernoxa64.dll]]
            set from [file normalize [lindex [loadedFrom] 0]]
            judge "it is the one beside this script" [expr {[string equal -nocase $from $mine] ? "" : "it is $from"}]
            catch {judge "its commands answer" [expr {[string length [uplevel #0 getGenerateGuid]] == 36 ? "" : "they do not"}]}
        }
        set folder [writeResult editor "Vernoxa: what the editor says" $facts $results {} [list $here %PACKAGE%]]
        puts "What was found: [file nativename [file join $folder editor.html]]"
        puts "To be sent:     [file nativename [file join $folder editor.zip]]"
    }

    if {[catch {
        foreach file {tables result} {
            source -encoding utf-8 [file join $here check $file.tcl]
        }
        run
    } why]} {
        puts "This could not be asked: $why"
    }
}
namespace delete ::vernoxaCheck
