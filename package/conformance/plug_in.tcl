# Plays the plug-in to the scripts of a host: plug_in.tcl CONTROL SCRIPT ARGUMENT...
#
# check_host.py listens on the port CONTROL. First it says what the plug-in evaluates at its start, what its commands
# answer, and which port stands for which here; then scripts. It is told what the host called, what each script came to,
# and when SCRIPT was read. A line is a word and its arguments, each in digits of its UTF-8.

proc tell {word args} {
    puts $::control [join [list $word {*}[lmap each $args {binary encode hex [encoding convertto utf-8 $each]}]]]
    flush $::control
}

proc heard {} {
    if {[gets $::control line] < 0} {
        exit
    }
    return [lmap each [split $line] {encoding convertfrom utf-8 [binary decode hex $each]}]
}

proc evaluate {script} {
    set code [catch {interp eval host [list uplevel #0 $script]} result]
    set isList [string is list $result]
    tell result $code $result $isList {*}[expr {$isList ? $result : ""}]
}

# A command of the plug-in. What answers a message of the plug-in is not answered again.
proc plugIn {name args} {
    tell called $name {*}$args
    if {[string match *5f456e64526573756c74* [lindex $args 0]]} {
        return ""
    }
    return [dict get $::answers $name]
}

proc loadPlugIn {args} {
    if {![string match -nocase *vernoxa* $args]} {
        return [interp invokehidden host load {*}$args]
    }
    incr ::loaded
    foreach name [dict keys $::answers] {
        interp alias host $name {} plugIn $name
    }
    interp eval host {
        proc LoadAction {} {}
        proc unloadAction {} {}
    }
    foreach script $::startUp {
        evaluate $script
    }
}

set loaded 0
set arguments [lassign $argv port script]
set control [socket 127.0.0.1 $port]
fconfigure $control -translation lf
set startUp [heard]
set answers [heard]
set ports [heard]

interp create host
interp hide host load
interp alias host load {} loadPlugIn
interp alias host exit {} tell exited
interp alias host tellBackgroundError {} tell failed
interp eval host [list set ::argv $arguments]
interp eval host [list set ::argv0 $script]
interp eval host [list namespace eval ::conformance [list variable ports $ports]]
interp eval host {
    interp bgerror {} tellBackgroundError
    rename ::socket ::conformance::socket
    proc ::socket {args} {
        set port [lindex $args end]
        if {[dict exists $::conformance::ports $port]} {
            set args [lreplace $args end end [dict get $::conformance::ports $port]]
        }
        return [uplevel 1 [list ::conformance::socket {*}$args]]
    }
}
fileevent $control readable {evaluate {*}[heard]}
set code [catch {interp eval host [list source -encoding utf-8 $script]} result]
if {$code == 0 && !$loaded} {
    loadPlugIn Vernoxa
}
tell read $code $result
vwait forever
