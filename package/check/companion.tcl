# The companion that the check plays: started by the plug-in as the real one is, in a process of its own. The first time
# it sends every request of the table and notes the answers; the second time it only hears which designs are open.
# What it notes goes to heard.txt beside it, a Tcl list a line.

set here [file dirname [file normalize [info nameofexecutable]]]
source -encoding utf-8 [file join $here frames.tcl]
set base [encoding convertfrom utf-8 [readFile [file join $here base.txt]]]  ;# as the check calls it, a short name maybe
source -encoding utf-8 [file join $here requests.tcl]

proc note {args} {
  set channel [open [file join $::here heard.txt] a]
  fconfigure $channel -encoding utf-8
  puts $channel $args
  close $channel
}

proc member {message name} {
  return [expr {[regexp "\"$name\":\\s*\"((?:\[^\"\\\\\]|\\\\.)*)\"" $message - text] ? $text : ""}]
}

proc message {command data} {
  return [hex "{\"Command\":\"$command\",\"Data\":$data,\"Result\":\"0\"}"]
}

# The plug-in waits for the answers to its queries; nothing waits for the others.
proc take {channel packet} {
  set text [unhex $packet]
  switch [set command [member $text Command]] {
    GetSelfId {sendFrame $channel [message GetSelfId_EndResult {{"UserId":"1001"}}]}
    GetMarketResPath {
      sendFrame $channel [message GetMarketResPath_EndResult "{\"ResId\":\"[member $text ResId]\",\"DatPath\":\"$::kept\"}"]
    }
    FileStatus {
      if {![isOurs [member $text FileName]]} {
        exit  ;# an editor that people work with
      }
      note status [member $text Status] [member $text FileName]
      sendFrame $channel [message FileStatus_EndResult "{\"Path\":\"$::project\"}"]
      if {$::first && ![info exists ::row]} {
        set ::row -1
        nextRow $channel
      }
    }
    default {
      note answer $command $text
      if {[info exists ::row] && $command eq "[lindex $::requests $::row 0]_EndResult"} {
        nextRow $channel
      }
    }
  }
}

proc nextRow {channel} {
  while {[incr ::row] < [llength $::requests]} {
    lassign [lindex $::requests $::row] command data reply
    sendFrame $channel [message $command $data]
    if {$reply ne ""} {
      return
    }
  }
  note sent all
}

# Nothing is asked of an editor but the check's own, whose design lies below the folder of this program.
proc isOurs {design} {
  return [string match -nocase */[file tail [file dirname $::here]]/[file tail $::here]/* [regsub -all {[\\/]+} $design /]]
}

# Ends at the word of the check that this one is no longer needed, and without it when the check's sign of life is old:
# whoever closes its window leaves no program that holds the port of the real companion.
proc look {} {
  if {[file exists [file join $::here leave]] || [catch {file mtime [file join $::here alive]} time]
      || abs([clock seconds] - $time) > 60} {
    exit
  }
  after 50 look
}

set first [expr {![file exists [file join $here heard.txt]]}]
note started [file normalize [pwd]] $argv
socket -server {apply {{channel args} {onFrames $channel take list}}} -myaddr 127.0.0.1 9601
look
vwait forever
