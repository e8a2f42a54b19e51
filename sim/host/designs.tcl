# The open designs: names, opening, saving, closing, and what is kept beside them.

namespace eval ::designs {
    # Path -> design as kicad::load gives it, with these added: guid, locked (BOM view), modified,
    # references (reference -> part ids), whole ({reference n} -> ids of one whole part: several may have one
    # reference, or none yet), dealt (values of AutoDeal).
    variable open {}
    # Every spelling under which a path may come back -> path.
    variable spellings {}
    variable stateFolder ""
}

# The name under which a schematic is opened: its own path with the editor's ending.
proc ::designs::nameFor {schematic} {
    set path [file normalize $schematic]
    if {![regexp {^[A-Za-z]:} $path]} {
        # Wine shows the root folder as this drive.
        set path Z:$path
    }
    return [string map {/ \\} [file rootname $path].dsn]
}

proc ::designs::paths {} {
    variable open
    return [dict keys $open]
}

# Opens a schematic under the name `path` and reports it; gives the name.
proc ::designs::load {schematic path} {
    variable open
    set started [clock milliseconds]
    set design [kicad::load $schematic]
    dict set design guid ""
    dict set design locked 0
    dict set design modified 0
    dict set design dealt {}
    dict set open $path [restored $path [withReferences $design]]
    rememberSpellings
    set seconds [format %.1f [expr {([clock milliseconds] - $started) / 1000.0}]]
    host::log "opened $path: [dict size [dict get $design pages]] pages,\
        [pinCount $path] pins, [dict size [dict get $design nets]] nets in $seconds s"
    foreach note [dict get $design notes] {
        host::log "note: $note"
    }
    pages::activate $path [lindex [dict keys [dict get $design pages]] 0]
    if {[checkSocketConnect]} {
        report $path
    }
    return $path
}

proc ::designs::report {path} {
    if {![link::sendFrom ReadOpenPath $path]} {
        host::log "$path is not reported: its name has characters that the code page lacks; give it a plain name"
    }
}

proc ::designs::reportAll {} {
    foreach path [paths] {
        report $path
    }
}

proc ::designs::close {path} {
    variable open
    if {![dict exists $open $path]} {
        return
    }
    dict unset open $path
    rememberSpellings
    pages::forget $path
    host::log "closed $path"
    if {[checkSocketConnect]} {
        link::sendFrom sendCloseFile $path
    }
    return
}

# Paths come back with "/" or "\", with doubled backslashes, or after Tcl has substituted their
# backslashes, because not every script that carries one doubles them.
proc ::designs::rememberSpellings {} {
    variable open
    variable spellings {}
    foreach path [dict keys $open] {
        dict set spellings [plain [subst -nocommands -novariables $path]] $path
    }
    foreach path [dict keys $open] {
        dict set spellings [plain $path] $path
    }
}

proc ::designs::plain {path} {
    return [string tolower [regsub -all {/+} [string map {\\ /} $path] /]]
}

# The open design meant by a text, or "".
proc ::designs::find {text} {
    variable spellings
    set key [plain $text]
    return [expr {[dict exists $spellings $key] ? [dict get $spellings $key] : ""}]
}

# The same for procedures that cannot go on without one.
proc ::designs::need {text} {
    set path [find $text]
    if {$path eq ""} {
        variable open
        error "the design is not open: $text; open are: [join [dict keys $open] {, }]"
    }
    return $path
}

proc ::designs::pinCount {path} {
    variable open
    set design [dict get $open $path]
    return [tcl::mathop::+ {*}[lmap ids [dict values [dict get $design whole]] {pinsOf $design $ids}]]
}

# Distinct pins: units of one part share the pins that belong to every unit.
proc ::designs::pinsOf {design ids} {
    set pins {}
    foreach id $ids {
        foreach pin [dict get $design parts $id pins] {
            dict set pins [dict get $pin number] 1
        }
    }
    return [dict size $pins]
}

proc ::designs::withReferences {design} {
    set references {}
    set whole {}
    set units {}
    dict for {id part} [dict get $design parts] {
        if {[dict get $part power]} {
            continue
        }
        set reference [dict get $part reference]
        dict lappend references $reference $id
        # A unit that a part has already is another part's; so is each one without a number.
        set unit [list $reference [expr {[string match {*[?]} $reference] ? "" : [dict get $part unit]}]]
        dict incr units $unit
        dict lappend whole [list $reference [dict get $units $unit]] $id
    }
    dict set design references $references
    dict set design whole $whole
    return $design
}

# Where the state of a design is kept: never beside the user's files.
proc ::designs::stateFile {path} {
    variable stateFolder
    return [file join $stateFolder [regsub -all {[^\w.-]+} $path _].state]
}

proc ::designs::restored {path design} {
    variable stateFolder
    if {$stateFolder eq "" || ![file isfile [stateFile $path]]} {
        return $design
    }
    set state [kicad::readFile [stateFile $path]]
    dict set design guid [dict get $state guid]
    dict for {id kept} [dict get $state parts] {
        if {[dict exists $design parts $id]} {
            lassign $kept reference fitted
            dict set design parts $id reference $reference
            dict set design parts $id properties Reference $reference
            dict set design parts $id fitted $fitted
        }
    }
    return [withReferences $design]
}

proc ::designs::keep {path} {
    variable open
    variable stateFolder
    dict set open $path modified 0
    if {$stateFolder eq ""} {
        return
    }
    set parts {}
    dict for {id part} [dict get $open $path parts] {
        dict set parts $id [list [dict get $part reference] [dict get $part fitted]]
    }
    file mkdir $stateFolder
    set channel [::open [stateFile $path] w]
    fconfigure $channel -encoding utf-8 -translation lf
    puts $channel [dict create guid [dict get $open $path guid] parts $parts]
    ::close $channel
}

host::procedure InitPath {} {
    set list ""
    foreach path [designs::paths] {
        append list $path ";"
    }
    return $list
}

host::procedure getDsnPinCount {text} {
    set path [designs::find $text]
    return [expr {$path eq "" ? -1 : [designs::pinCount $path]}]
}

host::procedure saveFile {text} {
    set path [designs::need $text]
    designs::keep $path
    host::log "saved $path"
    if {[checkSocketConnect]} {
        link::sendFrom sendSaveFile $path
    }
    return 1
}

# With `renew` 1 the design gets a new identifier.
host::procedure getGuid {text {renew 0}} {
    set path [designs::find $text]
    if {$path eq ""} {
        return "Invalid design path"
    }
    if {$renew || [dict get $::designs::open $path guid] eq ""} {
        dict set ::designs::open $path guid [link::plugin getGenerateGuid]
        dict set ::designs::open $path modified 1
    }
    return [dict get $::designs::open $path guid]
}

# The answer to the request still goes out before the host ends.
host::procedure Exit {} {
    after 200 ::host::finish
    return
}
