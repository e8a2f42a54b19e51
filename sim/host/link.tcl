# The two sockets of the host: the server for the plug-in's thread, the connection to the companion.

namespace eval ::link {
    variable serverPort 9610
    variable companionPort 9601
    variable server ""
    variable companion ""
    variable heard 0  ;# the companion has said something on this connection, and the plug-in took it in
}

host::procedure creatServerForPthread {} {
    if {$::link::server ne ""} {
        return 0
    }
    if {[catch {socket -server ::link::accept -myaddr 127.0.0.1 $::link::serverPort} channel]} {
        host::log "port $::link::serverPort is taken: $channel"
        return 1
    }
    set ::link::server $channel
    host::log "serving the plug-in's thread on port $::link::serverPort"
    return 0
}

proc ::link::accept {channel address port} {
    host::log "the plug-in's thread has connected"
    frames::attach $channel ::link::fromThread ::link::threadGone
}

# Every frame is answered, with an empty one when there is no reply: the thread waits for it.
proc ::link::fromThread {channel text} {
    host::log "thread asks: [host::messageOf $text]"
    set reply [plugin packetParserForPthread $text]
    host::log "thread gets: [host::messageOf $reply]"
    if {[catch {frames::send $channel $reply} problem]} {
        host::log "the answer could not be sent: $problem"
    }
}

proc ::link::threadGone {channel} {
    host::log "the plug-in's thread has gone"
}

# `renew` is 1 when the plug-in holds that there is no connection yet.
host::procedure creatClient {{renew 1}} {
    if {$::link::companion ne ""} {
        if {!$renew} {
            return 0
        }
        frames::detach $::link::companion
        set ::link::companion ""
    }
    if {[catch {socket 127.0.0.1 $::link::companionPort} channel]} {
        host::log "no companion on port $::link::companionPort: $channel"
        return 1
    }
    set ::link::companion $channel
    set ::link::heard 0
    frames::attach $channel ::link::fromCompanion ::link::companionGone
    host::log "connected to the companion"
    after 0 ::designs::reportAll
    return 0
}

proc ::link::fromCompanion {channel text} {
    host::log "companion asks: [host::messageOf $text]"
    set reply [plugin packetParser $text]
    set ::link::heard 1
    if {$reply eq ""} {
        return
    }
    host::log "companion gets: [host::messageOf $reply]"
    if {[catch {frames::send $channel $reply} problem]} {
        host::log "the answer could not be sent: $problem"
    }
}

proc ::link::companionGone {channel} {
    set ::link::companion ""
    host::log "the connection to the companion is broken"
    plugin serverLinkBreak
}

host::procedure sendPacketGlobalHandle {text} {
    if {$::link::companion eq ""} {
        error "no connection to the companion"
    }
    frames::send $::link::companion $text
    host::log "companion is told: [host::messageOf $text]"
    return 0
}

host::procedure checkSocketConnect {} {
    return [expr {$::link::companion ne ""}]
}

# Calls a plug-in command; one that is missing or fails is logged and answers "". At global level,
# because the scripts that the plug-in evaluates run where it was called.
proc ::link::plugin {command args} {
    set code [catch {uplevel #0 [list $command {*}$args]} result]
    if {$code != 0} {
        host::log "$command failed with code $code: $result"
        return ""
    }
    return $result
}

# Sends what a plug-in command answers, when it answers something, which it gives as 1 or 0.
proc ::link::sendFrom {command args} {
    set packet [plugin $command {*}$args]
    if {$packet ne "" && [catch {sendPacketGlobalHandle $packet} problem]} {
        host::log "$command was not sent: $problem"
    }
    return [expr {$packet ne ""}]
}

# Lets what was written leave, then closes all.
proc ::link::shut {} {
    variable companion
    variable server
    if {$companion ne ""} {
        catch {fconfigure $companion -blocking 1}
        frames::detach $companion
        set companion ""
    }
    if {$server ne ""} {
        close $server
        set server ""
    }
}
