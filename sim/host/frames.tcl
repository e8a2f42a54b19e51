# Frames on a socket: a 4-byte little-endian length, then that many characters of packet text.

namespace eval ::frames {
    variable buffers
    array set buffers {}
    # More than any message has; a header beyond it is noise, not a length.
    variable limit 67108864
}

# Calls `onFrame CHANNEL TEXT` for each whole frame and `onClose CHANNEL` once, after closing,
# when the other end is gone or sends what is no frame.
proc ::frames::attach {channel onFrame onClose} {
    variable buffers
    set buffers($channel) ""
    fconfigure $channel -blocking 0 -translation binary -buffering full
    fileevent $channel readable [list ::frames::readable $channel $onFrame $onClose]
}

proc ::frames::send {channel text} {
    puts -nonewline $channel [binary format i [string length $text]]
    puts -nonewline $channel $text
    flush $channel
}

proc ::frames::detach {channel} {
    variable buffers
    unset -nocomplain buffers($channel)
    catch {close $channel}
}

proc ::frames::readable {channel onFrame onClose} {
    variable buffers
    if {[catch {read $channel} bytes]} {
        set ended 1
    } else {
        append buffers($channel) $bytes
        set ended [eof $channel]
    }
    # A handler may close the channel, or come back here through the event loop.
    while {[info exists buffers($channel)]} {
        switch -- [take buffers($channel) text] {
            whole {{*}$onFrame $channel $text}
            part break
            bad {set ended 1; break}
        }
    }
    if {$ended && [info exists buffers($channel)]} {
        detach $channel
        {*}$onClose $channel
    }
}

# Takes one frame off the front of the buffer: whole, part (more must come) or bad.
proc ::frames::take {bufferName textName} {
    variable limit
    upvar 1 $bufferName buffer $textName text
    if {[binary scan $buffer iu length] != 1} {
        return part
    }
    if {$length > $limit} {
        return bad
    }
    if {[string length $buffer] < 4 + $length} {
        return part
    }
    set text [string range $buffer 4 [expr {3 + $length}]]
    set buffer [string range $buffer [expr {4 + $length}] end]
    return whole
}
