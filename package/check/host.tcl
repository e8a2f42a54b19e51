# The host that the check plays: every procedure that the plug-in calls is there, notes how it was called, and answers what
# stands here.

set calls {}         ;# since it was emptied: each a procedure's name and its arguments
set conversation {}  ;# of the companion: request, reply, calls, each three elements
set sent {}          ;# the messages that the plug-in had sent
set link ""          ;# the connection to the companion
set links 0          ;# how often there was one
set threads {}       ;# the connections to port 9610; the first is this process's own

array set answers {
  GetProductVersion 17.4-2019
  IsSchematicViewActive 1
  GetActiveProPages {{C:/a.dsn P1 {Page 2}}}
  ReplaceRefAndValue 1  RenameRef 1  KX_PlaceWirePort 1  KX_PlaceWireOffPage 1  switchStickOrNotStick {}
  convertToSVG done  getGuid ABC  getAllPropertyName {Value {Part Number}}  getDsnPinCount 12
  ::capGenerateBOMUtil::getStickList {{1;10k;R1;RES;0603;2}}
}

foreach name $procedures {
  namespace eval [namespace qualifiers $name] {}
  proc $name args [format {called %s $args} [list $name]]
}

proc called {name arguments} {
  lappend ::calls [list $name {*}$arguments]
  return [expr {[info exists ::answers($name)] ? $::answers($name) : ""}]
}

# Answers with those of the procedures that write a file themselves.
proc GetNetsList {design file} {
  called GetNetsList [list $design $file]
  writeFile $file nets
  return done
}

proc placeLibPart {library args} {
  called placeLibPart [list [file exists $library] {*}$args]
  return ""
}

# --- the two connections -------------------------------------------------------------------------------------------

proc creatServerForPthread {} {
  called creatServerForPthread {}
  set ::server [socket -server acceptThread -myaddr 127.0.0.1 9610]
}

# The thread of this process comes first; those of other processes that try to load the plug-in are sent away.
proc acceptThread {channel address port} {
  lappend ::threads $channel
  if {[llength $::threads] == 1} {
    onFrames $channel fromThread list
  } else {
    close $channel
  }
}

proc fromThread {channel packet} {
  sendFrame $channel [packetParserForPthread $packet]
}

# A companion that was just started takes a moment until it listens.
proc creatClient {renew} {
  called creatClient $renew
  for {set pause 0} {$pause < 100} {incr pause} {
    if {![catch {socket 127.0.0.1 9601} channel]} {
      set ::link $channel
      incr ::links
      onFrames $channel fromCompanion linkBroke
      return 0
    }
    after 100
  }
  return -1
}

proc fromCompanion {channel packet} {
  set ::calls {}
  set reply [packetParser $packet]
  lappend ::conversation [unhex $packet] [unhex $reply] $::calls
  if {$reply ne ""} {
    sendFrame $channel $reply
  }
}

proc linkBroke {channel} {
  set ::link ""
  serverLinkBreak
}

proc sendPacketGlobalHandle {packet} {
  called sendPacketGlobalHandle {}
  lappend ::sent [unhex $packet]
  if {$::link ne ""} {
    sendFrame $::link $packet
  }
  return 0
}
