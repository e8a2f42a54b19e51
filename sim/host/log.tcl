# What the host says, and how host procedures are defined.

namespace eval ::host {
    variable procedures {}
    # Asking which there are takes milliseconds under Wine, for it looks into folders.
    variable hasCodePage [expr {"cp936" in [encoding names]}]
}

# One plain line on standard output, flushed.
proc ::host::log {text} {
    puts stdout "host: [string map {\n { } \r {}} [readable $text]]"
    flush stdout
}

# The plug-in hands its start-up script to Tcl as bytes of code page 936, so that Chinese texts
# arrive with one character a byte; they are put right for reading only.
proc ::host::readable {text} {
    if {![regexp {[\u0080-\u00ff]} $text] || [regexp {[^\u0000-\u07ff]} $text]} {
        return $text
    }
    set bytes ""
    foreach character [split $text ""] {
        # Such a character may still be its one stored byte, which only its number reads rightly.
        scan $character %c code
        if {$code <= 0xff} {
            append bytes [format %c $code]
        } else {
            append bytes [encoding convertto utf-8 $character]
        }
    }
    return [fromCodePage $bytes]
}

# Texts of the host that went into a message as they are stand in it in UTF-8. Text between two double
# quotes is taken for that when it is UTF-8 throughout and holds a three-byte sequence, which text of
# the code page is by the rarest accident only.
proc ::host::fromCodePage {bytes} {
    variable hasCodePage
    set texts {}
    foreach piece [split $bytes \"] {
        set text [encoding convertfrom utf-8 $piece]
        if {![regexp {[\u0800-\uffff]} $text] || [encoding convertto utf-8 $text] ne $piece} {
            set text [expr {$hasCodePage ? [encoding convertfrom cp936 $piece] : $piece}]
        }
        lappend texts $text
    }
    return [join $texts \"]
}

# Packet text as the message it carries, shortened for the log.
proc ::host::messageOf {packet} {
    if {[catch {binary decode hex $packet} bytes]} {
        set bytes $packet
    }
    # A long one takes long to read, and its beginning is all that is shown.
    set message [regsub -all {\s+} [fromCodePage [string range $bytes 0 1999]] " "]
    if {[string length $message] > 400} {
        set message "[string range $message 0 396]..."
    }
    return $message
}

# Defines a procedure that the plug-in or its scripts call by its global name. The plug-in answers
# an error with a word at most, so the reason is logged.
proc ::host::procedure {name arguments body} {
    variable procedures
    namespace eval ::[namespace qualifiers $name] {}
    proc ::$name $arguments $body
    trace add execution ::$name leave ::host::logFailure
    lappend procedures $name
}

proc ::host::logFailure {words code result operation} {
    if {$code == 1} {
        log "[string trimleft [lindex $words 0] :] failed: $result"
    }
}

# From now on every call of a host procedure is logged with its arguments.
proc ::host::traceAll {} {
    variable procedures
    foreach name $procedures {
        trace add execution ::$name enter ::host::traceCall
    }
}

proc ::host::traceCall {words operation} {
    set name [string trimleft [lindex $words 0] :]
    log "call [string trimright "$name [lrange $words 1 end]"]"
}
