# A packet through the doors of the built DLL: door_bench.tcl Vernoxa64.dll
proc InitPath {} {
  return {C:\projects\other\side.dsn;C:\projects\board\main board.dsn;C:\projects\board\old.dsn;}
}
namespace eval ::capGenerateBOMUtil {}
load [file normalize [lindex $argv 0]] Vernoxa
set packet [binary encode hex {{"Command":"CheckOpenState","Data":{"ProjectPath":"c:/projects/board/main board.dsn"},"Result":"0"}}]
packetParser $packet
set medians {}
for {set run 0} {$run < 5} {incr run} {
  lappend medians [lindex [time {packetParser $packet} 200] 0]
}
puts "packet through the door of the DLL: [format %.0f [lindex [lsort -real $medians] 2]] us (median of 5 runs of 200, log off)"
