# Tries the plug-in on this machine: check.tcl ?-loads TIMES? ?-keep 1?. What is tried runs in a process of its own, run.tcl, so that
# one that ends or hangs is told too. Ends with 0 when all passed, 1 when something failed, 2 when it cannot begin.

proc say {text} {
  puts $text
  flush stdout
}

proc refuse {why do} {
  say "This cannot begin: $why\n$do"
  exit 2
}

set here [file dirname [file normalize [info script]]]
source -encoding utf-8 [file join $here begin.tcl]
if {[set why [begun {tables frames machine result}]] ne ""} {
  refuse $why $unpackAgain
}
if {[llength [set missing [missingFiles {bin/* check/*}]]]} {
  refuse "[file nativename [join $missing {, }]] [expr {[llength $missing] == 1 ? "is" : "are"}] missing." $unpackAgain
}
array set options {-loads 1000 -keep 0}  ;# how often it is loaded; 1: the folder of the check stays
foreach {option value} $argv {
  if {![info exists options($option)] || ![string is digit -strict $value]} {
    refuse "\"$option $value\" means nothing here." "There are: /quiet (first), -loads TIMES, -keep 1."
  }
  set options($option) $value
}

set silent 180   ;# seconds without a word after which a process counts as hanging
set results {}   ;# each a step's name, result, what was wrong, milliseconds
set facts [machineFacts]
set step ""      ;# the one that is under way
set over 0       ;# 1 once the last one was
set hung 0       ;# 1 once it was ended for its silence
set said {}      ;# the last lines that it printed besides

# The installation that is tried, in the folder `root`.
proc install {root} {
  file mkdir [file join $root lib] [file join $root j bin]
  foreach folder {bin Config/Resource Script/Log project} {
    file mkdir [file join $root i $folder]
  }
  # A Tcl plays the companion, and finds its library where it looks for it: beside its folder. Programs are written again,
  # since a copy would keep the mark of a file from the internet, and Windows would ask before it starts one.
  file copy $::tcl_library [file join $root lib tcl8.6]
  set programs [file dirname [info nameofexecutable]]
  foreach library [glob -directory $programs *.dll] {
    writeFile [file join $root i [file tail $library]] [readFile $library]
  }
  writeFile [file join $root i LanTuZS.exe] [readFile [info nameofexecutable]]
  foreach {from to} {companion.tcl AutoLogin frames.tcl frames.tcl requests.tcl requests.tcl} {
    file copy [file join $::here $from] [file join $root i $to]
  }
  foreach folder {i j} {
    writeFile [file join $root $folder bin Vernoxa64.dll] [readFile [file join [file dirname $::here] bin Vernoxa64.dll]]
  }
  writeFile [file join $root i Config App.txt] {{"AlgMenuLang":"EN","StartWithCadence":"1"}}
  writeFile [file join $root i base.txt] [encoding convertto utf-8 $root/i]
  writeFile [file join $root i Config Resource Empty.olb] OLB
}

proc hear {channel} {
  while {[gets $channel line] >= 0} {
    watch
    if {[string index $line 0] ne "@"} {
      if {$line ne ""} {
        set ::said [lrange [list {*}$::said $line] end-20 end]
      }
      continue
    }
    set line [string range $line 1 end]
    switch [lindex $line 0] {
      begin {set ::step [lindex $line 1]}
      end {
        lassign $line - name result why took
        lappend ::results [list $name $result $why $took]
        set ::step ""
        say [format "  %-40s %-9s %6d ms" $name $result $took]
        if {$why ne ""} {
          say "      $why"
        }
      }
      fact {lappend ::facts {*}[lrange $line 1 2]}
      over {set ::over 1}
      alive {}
    }
  }
  if {[eof $channel]} {
    set ::ended 1
  }
}

proc watch {} {
  after cancel hang
  after [expr {1000 * $::silent}] hang
}

# A line that this process adds to the table.
proc judge {name why {took 0}} {
  lappend ::results [list $name failed $why $took]
  say [format "  %-40s %-9s %6d ms\n      %s" $name failed $took $why]
}

proc hang {} {
  set ::hung 1
  judge [expr {$::step ne "" ? $::step : "the next step"}] "no word for $::silent s: ended" [expr {1000 * $::silent}]
  catch {exec taskkill /f /t /pid [pid $::running]}
  set ::ended 1
}

# For the companion, which must not outlive this program.
proc beat {} {
  close [open [file join $::root i alive] w]
  after 2000 beat
}

# Who has the plug-in's ports has an editor or a companion under way, which this must not meet.
proc portsTaken {} {
  set taken {}
  foreach port {9601 9610} {
    if {[isTaken $port]} {
      lappend taken "port $port is taken by [ownerOf $port]"
    }
  }
  return $taken
}

say "Vernoxa $version: trying the plug-in on this machine. It shows a few boxes, and closes them itself."
if {[set why [socketFault]] ne ""} {
  refuse "no program may listen on 127.0.0.1 here ($why), so the plug-in has no link." "Does a firewall forbid it?"
}
set taken [portsTaken]
if {[llength $taken]} {
  refuse "[join $taken {, }]. The plug-in has no other ports." "End the editor and its companion, and try again."
}
set anotherTemp "Open a command window (cmd), and type: set TEMP=X:\\FOLDER, with a folder that you may write in; then: [file nativename [file join [file dirname $here] check.cmd]]"
if {[catch workFolder place]} {
  refuse $place $anotherTemp
}
lassign $place root why
if {$root eq ""} {
  refuse "there is no folder with a short and plain path in which this may write: $why." \
      "The host's scripts need a path without spaces. $anotherTemp"
}
if {$why ne ""} {
  say "It works in [file nativename $root], not below TEMP: $why."
  lappend facts "folder of the check" "not below TEMP, whose path is too long or has a space or another character, and no short name"
}
set began [clock milliseconds]
if {[catch {install $root} why]} {
  removeFolder $root
  refuse "what it tries could not be made in [file nativename $root]: $why." "Is the disk full, or does a virus scanner stop it?"
}
beat
set running [open "|[list [info nameofexecutable] [file join $here run.tcl] [file join $root i] $options(-loads)] 2>@1"]
fconfigure $running -encoding utf-8 -translation auto -blocking 0
fileevent $running readable [list hear $running]
watch
vwait ended
after cancel hang
fconfigure $running -blocking 1
set status [expr {[catch {close $running} why ended] ? [dict get $ended -errorcode] : "its status was 0"}]
if {$over && $status ne "its status was 0"} {
  judge "the process of host and plug-in ends" "[lrange $status 0 2]"
} elseif {!$over && !$hung} {
  set where [expr {$step ne "" ? "there" : [llength $results] ? "after \"[lindex $results end 0]\"" : "before the first step"}]
  judge [expr {$step ne "" ? $step : "the next step"}] \
      "the process of host and plug-in ended $where: $status[join [linsert $said 0 {}] { | }]"
}
lappend facts "whole time" "[expr {([clock milliseconds] - $began) / 1000}] s"
close [open [file join $root i leave] w]  ;# for a companion that was left
set logs {}
foreach {name path} {schLog.txt i/Script/Log/schLog.txt crash-log.txt i/bin/catchLog/log.txt} {
  if {[file exists [file join $root $path]]} {
    lappend logs $name [readFile [file join $root $path]]
  }
}
if {[catch {writeResult result "Vernoxa: result of the check" $facts $results $logs \
    [list $root %CHECK% [file dirname $here] %PACKAGE%]} folder]} {
  judge "the result is written" $folder
  set folder ""
}
set bad [llength [lsearch -all -index 1 $results failed]]
say ""
say [expr {$bad == 0 && $over ? "All passed." : "$bad of [llength $results] steps failed."}]
if {$folder ne ""} {
  say "What was found: [file nativename [file join $folder result.html]]"
  say "To be sent:     [file nativename [file join $folder result.zip]]"
}
if {$options(-keep)} {
  say "Its folder:     [file nativename $root]"
} else {
  removeFolder $root
}
exit [expr {$bad > 0 || !$over}]
