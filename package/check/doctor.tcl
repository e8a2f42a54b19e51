# Looks at an installation and says what is wrong with it: doctor.tcl. It is the one that this file was unpacked into.
# Ends with 0 when nothing was found, else with 1.

set here [file dirname [file normalize [info script]]]
source -encoding utf-8 [file join $here begin.tcl]
set base [file dirname $here]
set dll [file join $base bin Vernoxa64.dll]
set found 0

# What is wrong, and what to do.
proc found {what do} {
  incr ::found
  puts "  ! $what\n      $do"
}

proc fine {what} {
  puts "    $what"
}

proc finish {} {
  puts [expr {$::found ? "\n$::found found. More by symptom: docs\\troubles.html"
                       : "\nNothing was found. If it does not work all the same: docs\\troubles.html"}]
  exit [expr {$::found > 0}]
}

if {[set why [begun {tables frames machine result doctor_files doctor_running}]] ne ""} {
  found $why $unpackAgain
  finish
}
puts "Vernoxa $version in [file nativename $base]:"
fine "Windows [lindex [windowsVersion] 0]; the plug-in needs no Visual C run-time library, and of Tcl the editor's own 8.6"
foreach look {looksAtFolder looksAtPackage looksAtSettings looksAtMark looksAtCodePage looksAtPorts looksAtEditors looksAtLogs
              looksAtTemporary} {
  if {[catch $look why]} {
    found "One thing could not be looked at ($look: $why)." "Please tell it on the page from which you downloaded the zip."
  }
}
finish
