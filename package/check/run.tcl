# The check itself, in a process of its own: run.tcl BASE LOADS. BASE is the installation that was made for it. What
# happens is told on the standard output, a Tcl list a line, so that whoever started this one knows where it ended.

lassign $argv base loads
set here [file dirname [file normalize [info script]]]
fconfigure stderr -encoding utf-8
fconfigure stdout -encoding utf-8 -translation lf -buffering full
foreach file {frames tables requests host steps drawing desktop} {
  source -encoding utf-8 [file join $here $file.tcl]
}
load [file join $here helper.dll] Helper

# The loads go on beside the steps, which mostly wait, a hundred in each process, from a copy that starts no companion.
set loading ""
set loadingBegan 0
set loadingEnded 0
set loaded 0
set loadingSaid ""

proc loadMore {} {
  set times [expr {min(100, $::loads - $::loaded)}]
  if {$times == 0} {
    set ::loading over
    set ::loadingEnded [clock milliseconds]
    return
  }
  set copy [file join [file dirname $::base] j bin Vernoxa64.dll]
  set channel [open "|[list [info nameofexecutable] [file join $::here loads.tcl] $copy $times] 2>@1"]
  fconfigure $channel -blocking 0
  fileevent $channel readable [list countLoads $channel [expr {$::loaded + $times}]]
}

proc countLoads {channel goal} {
  while {[gets $channel line] >= 0} {
    if {[scan $line "@loaded %d" times] == 1} {
      incr ::loaded $times
    } else {
      set ::loadingSaid [string range $::loadingSaid$line end-300 end]
    }
  }
  if {![eof $channel]} {
    return
  }
  tell alive
  fconfigure $channel -blocking 1
  if {[catch {close $channel} why] || $::loaded != $goal} {
    set ::loading "ended after $::loaded: $why, $::loadingSaid"
    set ::loadingEnded [clock milliseconds]
  } else {
    loadMore
  }
}

foreach {name body} $steps {
  step $name $body
  if {$loading eq "" && $threads ne ""} {
    set loading begun
    set loadingBegan [clock milliseconds]
    loadMore
  }
}
tell over
# The thread of the plug-in ends with the process; its module stays loaded until then.
exit 0
