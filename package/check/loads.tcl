# Loads and unloads the plug-in many times in one process: loads.tcl DLL TIMES. Says how often at the end.
namespace eval ::capGenerateBOMUtil {proc init {} {}}
foreach name {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu GetProductVersion} {
  proc $name args {}
}
lassign $argv dll times
for {set number 0} {$number < $times} {incr number} {
  load $dll Vernoxa
  if {[string length [getGenerateGuid]] != 36} {
    error "the commands do not answer after load [expr {$number + 1}]"
  }
  unload $dll Vernoxa
}
puts "\n@loaded $number"  ;# the plug-in prints lines of its own
exit 0
