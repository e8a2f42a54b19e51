# Words for the scripts that drive the host (-commands FILE, or lines added to -follow FILE), beside
# every host procedure and plug-in command:
#
#   pause SECONDS            waitLink ?SECONDS?    (until the companion has answered what it was told)
#   openDesign FILE ?NAME?   saveDesign ?NAME?     closeDesign ?NAME?   (default: the active design)
#   showPage PAGE ?NAME?     pageNames ?NAME?      select REFERENCE ...  selectBlock REFERENCE ...
#   resourcePath ID          userId                writeLibrary FILE
#   libraryParts FILE        action HANDLER        quit

# Only inside a coroutine, which is where scripts run; events go on meanwhile.
proc pause {seconds} {
    after [expr {int($seconds * 1000)}] [info coroutine]
    yield
}

proc waitLink {{seconds 180}} {
    for {set tenths 0} {![checkSocketConnect] || !$::link::heard} {incr tenths} {
        if {$tenths >= $seconds * 10} {
            error "no word of the companion after $seconds s"
        }
        pause 0.1
    }
}

proc openDesign {schematic {name ""}} {
    if {$name eq ""} {
        set name [designs::nameFor $schematic]
    }
    return [designs::load $schematic $name]
}

proc saveDesign {{name ""}} {
    saveFile [expr {$name eq "" ? [dict get $::pages::active path] : $name}]
}

proc closeDesign {{name ""}} {
    designs::close [designs::need [expr {$name eq "" ? [dict get $::pages::active path] : $name}]]
}

proc select {args} {
    pages::select $args
}

proc showPage {page {name ""}} {
    set path [designs::need [expr {$name eq "" ? [dict get $::pages::active path] : $name}]]
    pages::require $path $page
    pages::activate $path $page
    host::log "showing $page of $path"
}

proc pageNames {{name ""}} {
    set path [designs::need [expr {$name eq "" ? [dict get $::pages::active path] : $name}]]
    set number 0
    foreach page [dict keys [dict get $::designs::open $path pages]] {
        host::log "page [incr number]: $page"
    }
}

# Everything about the named parts, as with the mouse around them.
proc selectBlock {args} {
    modules::selectBlock $args
    host::log "selected [llength $::pages::selection] parts and what lies about them"
}

# Who is signed in there.
proc userId {} {
    host::log "user: [link::plugin getSelfUserId]"
}

# Where the companion keeps a shared module.
proc resourcePath {id} {
    host::log "resource $id: [link::plugin GetResPath $id]"
}

# The symbols of the active design as a library.
proc writeLibrary {file} {
    if {[file exists $file]} {
        error "$file is there already: give another name"
    }
    packages::write [dict get $::pages::active path] $file
    host::log "wrote the library $file"
}

proc libraryParts {file} {
    host::log "library parts: [packages::names $file]"
}

proc action {handler} {
    return [menu::invoke $handler]
}

proc quit {} {
    ::host::finish
}

namespace eval ::host {}

# Runs a script file; an error in it is logged and ends the host with a failure.
proc ::host::runScript {file} {
    set script [kicad::readFile $file]
    coroutine ::host::script apply {{script} {
        if {[catch {uplevel #0 $script} result options]} {
            host::log "script failed: $result"
            host::finish 1
        }
    }} $script
}

# A file has no events, so it is looked at now and then.
proc ::host::followCommands {channel {number 0}} {
    fconfigure $channel -encoding utf-8
    while {[gets $channel line] >= 0} {
        runLine $line [incr number]
    }
    after 100 [list ::host::followCommands $channel $number]
}

# `tell` is the number of the line, whose writer waits for its end.
proc ::host::runLine {line tell} {
    if {[string trim $line] ne ""} {
        coroutine ::host::line$tell apply {{line tell} {
            set failed [expr {[catch {uplevel #0 $line} result] == 1}]
            if {$result ne ""} {
                host::log $result
            }
            host::log "line $tell [expr {$failed ? "failed" : "is done"}]"
        }} $line $tell
    }
}
