# Runs a script for the built DLL, with what such scripts share: on_windows.tcl SCRIPT.tcl [ARGUMENT...]

set failures 0

# What the process ends with is told first: Wine may end it by a death of its own.
rename exit endProcess
proc exit {{status 1}} {
  if {[info exists ::env(VERNOXA_ENDED)]} {
    writeFile $::env(VERNOXA_ENDED) $status
  }
  endProcess $status
}

proc check {what got expected} {
  if {$got ne $expected} {
    incr ::failures
    puts stderr "$what\n  got      $got\n  expected $expected"
  }
}

proc finish {} {
  puts "[expr {$::failures ? "$::failures checks failed" : "all checks passed"}]"
  exit [expr {$::failures > 0}]
}

# A message in the code page as a packet, and back.
proc hex {text {encoding cp936}} {
  return [binary encode hex [encoding convertto $encoding $text]]
}

proc unhex {packet {encoding cp936}} {
  return [encoding convertfrom $encoding [binary decode hex $packet]]
}

proc writeFile {path text {encoding utf-8}} {
  file mkdir [file dirname $path]
  set channel [open $path w]
  fconfigure $channel -encoding $encoding -translation lf
  puts -nonewline $channel $text
  close $channel
}

proc readFile {path {encoding cp936}} {
  if {[catch {open $path r} channel]} {
    return "(no file)"
  }
  fconfigure $channel -encoding $encoding -translation lf -eofchar {}
  set text [read $channel]
  close $channel
  return $text
}

proc names {folder} {
  return [lsort [glob -nocomplain -tails -directory $folder *]]
}

# An installation of the DLL in a folder without anything of a former run: a DLL cannot go while it is loaded.
proc install {base built args} {
  catch {file delete -force $base}
  file mkdir $base/bin {*}[lmap folder $args {file join $base $folder}]
  file copy -force $built $base/bin/Vernoxa64.dll
  return $base
}

# Procedures of a host that do nothing.
proc quiet {names} {
  foreach name $names {
    proc ::$name args {return 1}
  }
}

# Left to itself, Tcl takes a script for a text in the code page.
set argv [lassign $argv argv0]
incr argc -1
source -encoding utf-8 $argv0
puts stderr "$argv0 does not say how it ended"
exit
