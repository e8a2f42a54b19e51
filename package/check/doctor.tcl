# Looks at an installation and says what is wrong with it: doctor.tcl. It is the one that this file was unpacked into.
# Ends with 0 when nothing was found, else with 1.

set here [file dirname [file normalize [info script]]]
foreach file {tables frames machine doctor_files doctor_running} {
  source -encoding utf-8 [file join $here $file.tcl]
}
load [file join $here helper.dll] Helper
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

puts "Vernoxa $version in [file nativename $base]:"
fine "Windows [lindex [windowsVersion] 0]; the plug-in needs no Visual C run-time library, and of Tcl the editor's own 8.6"
foreach look {looksAtFolder looksAtPackage looksAtSettings looksAtMark looksAtCodePage looksAtPorts looksAtEditors looksAtLogs
              looksAtEditorsAnswer} {
  if {[catch $look why]} {
    fine "($look: $why)"
  }
}
puts [expr {$found ? "\n$found found. More by symptom: docs\\troubles.html" : "\nNothing was found. If it does not work all the same: docs\\troubles.html"}]
exit [expr {$found > 0}]
