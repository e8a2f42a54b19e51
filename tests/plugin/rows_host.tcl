# A host that has every procedure of docs/protocol.json, notes how it was called, and answers what a test tells it to.
# Sourced before the plug-in is loaded, with ::repository naming the folder of this repository.

set passed 0
set failures {}
set answers {}   ;# by the procedure's name; "error TEXT" ends in an error
set scripts {}   ;# as they were evaluated, before Tcl substituted anything
set caller load  ;# what is under way
set called {}    ;# by caller: the procedures, each once
set said {}      ;# packets: what was asked and the reply, or two times what the plug-in said unasked

proc check {what got expected} {
  if {$got eq $expected} {
    incr ::passed
  } else {
    lappend ::failures "$what\n  got      $got\n  expected $expected"
  }
}

# A request through its door.
proc asked {door packet} {
  set reply [$door $packet]
  lappend ::said $packet $reply
  return $reply
}

proc readUtf8 {file} {
  set channel [open $file]
  fconfigure $channel -encoding utf-8
  set text [read $channel]
  close $channel
  return $text
}

source [lindex [glob {/usr/share/tcltk/tcllib*/json/json.tcl}] 0]
set protocol [::json::json2dict [readUtf8 $repository/docs/protocol.json]]

# How a script is written: the quotes of its words, and whether the path that comes first has its backslashes doubled.
proc formOf {script} {
  set words {}
  set word ""
  foreach piece [lrange [split [string trim $script] " "] 1 end] {
    append word $piece
    if {$word ne "" && [info complete $word]} {
      set quote [string index $word 0]
      set kind [expr {$quote in {\" \{ \[} ? $quote : "bare"}]
      if {$kind ne [lindex $words end]} {
        lappend words $kind
      }
      set word ""
    } elseif {$word ne ""} {
      append word " "
    }
  }
  regexp {^[:\w]+} $script name
  return [list [string trimleft $name :] $words [lindex [regexp -inline {^\w+ "\w:(\\+)} $script] 1]]
}

proc called {name} {
  # A text that joins the procedure's name and its argument is that procedure's.
  dict set ::called $::caller [lindex [split $name \"] 0] 1
  lappend ::scripts [dict get [info frame -2] cmd]
  set form [formOf [lindex $::scripts end]]
  dict set ::forms $form 1
  dict set ::forms [lreplace $form 2 2 {}] 1
}

proc answerTo {name} {
  set answer [expr {[dict exists $::answers $name] ? [dict get $::answers $name] : ""}]
  if {[string match "error *" $answer]} {
    return -code error [string range $answer 6 end]
  }
  return $answer
}

foreach procedure [dict get $protocol procedures] {
  set name [dict get $procedure name]
  namespace eval [namespace qualifiers $name] {}
  proc $name args [format {called %s; answerTo %s} [list $name] [list $name]]
}

# The three joined texts name commands that do not exist.
proc unknown args {
  called [lindex $args 0]
  return -code error "invalid command name"
}
