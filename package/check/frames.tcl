# What goes over both connections: frames, each the length of a packet text in four bytes and the text; and how a packet
# text is made of a message, in this machine's code page.

proc hex {message} {
  return [binary encode hex [encoding convertto [encoding system] $message]]
}

proc unhex {packet} {
  return [encoding convertfrom [encoding system] [binary decode hex $packet]]
}

proc sendFrame {channel packet} {
  puts -nonewline $channel [binary format i [string length $packet]]$packet
  flush $channel
}

# Calls `taker CHANNEL PACKET` for each frame that arrives, and `ender CHANNEL` once when the other side has gone.
proc onFrames {channel taker ender} {
  fconfigure $channel -blocking 0 -translation binary
  set ::received($channel) ""
  fileevent $channel readable [list readFrames $channel $taker $ender]
}

proc readFrames {channel taker ender} {
  if {[catch {read $channel} bytes]} {
    set bytes ""
  }
  append ::received($channel) $bytes
  while {[info exists ::received($channel)] && [binary scan $::received($channel) iu length]
         && [string length $::received($channel)] >= 4 + $length} {
    set packet [string range $::received($channel) 4 3+$length]
    set ::received($channel) [string range $::received($channel) 4+$length end]
    {*}$taker $channel $packet
  }
  if {[info exists ::received($channel)] && [catch {eof $channel} ended] + $ended > 0} {
    unset ::received($channel)
    catch {close $channel}
    {*}$ender $channel
  }
}

proc writeFile {path bytes} {
  set channel [open $path wb]
  puts -nonewline $channel $bytes
  close $channel
}

# "" for a file that is not there.
proc readFile {path} {
  if {[catch {open $path rb} channel]} {
    return ""
  }
  set bytes [read $channel]
  close $channel
  return $bytes
}
