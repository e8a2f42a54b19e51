# The built DLL in a real Windows Tcl, on real files and sockets: on_windows.tcl load_windows_test.tcl Vernoxa64.dll

set built [lindex $argv 0]
set root [file join $env(TEMP) vernoxa-load]
catch {file delete -force $root}

# --- the link, which takes its time: begun first, answered last -----------------------------------------------------

proc serve {port accept} {
  if {[catch {socket -server $accept -myaddr 127.0.0.1 $port} server]} {
    puts stderr "port $port is taken: another host, companion or test is running ($server)"
    exit 1
  }
}

set connections {}
serve 9610 {apply {{channel address port} {lappend ::connections $channel}}}
serve 9601 {apply {{channel address port} {close $channel}}}
set base [install [file join $root "设计 a"] $built]
writeFile [file join $base Script Log schLog.txt] "a former run"
set linked [interp create]
$linked eval {
  namespace eval capGenerateBOMUtil {proc init {} {}}
  foreach name {RegisterAction InsertXMLMenu creatServerForPthread GetNetsList} {
    proc $name args {}
  }
}
load [file join $base bin Vernoxa64.dll] Vernoxa $linked
while {[llength $connections] == 0} {
  vwait connections
}

# --- commands on the real system ------------------------------------------------------------------------------------

set stamp {\[Time\]:\d{4}-\d{1,2}-\d{1,2} \d{1,2}:\d{1,2}:\d{1,2}:\d{1,3}\.}
check "GUID" [regexp {^[0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-[0-9A-F]{12}$} [$linked eval getGenerateGuid]] 1
$linked eval [list sendCloseFile "D:\\原理图\\a.dsn"]
set log [readFile [file join $base Script Log schLog.txt]]
check "traffic log: a fresh one" [string first "former" $log] -1
check "traffic log" [regexp [string map [list @ $stamp] {^@GetACP 936\r\n@6073 Close\r\n@return data:\{[^\r]*原理图[^\r]*\r\n@7b22}] $log] 1

# The companion's answer moves the cache folders, here to folders with Chinese names, told in either encoding. The code
# page bytes of the last one are UTF-8 of another name.
foreach {name encoding} {工程 cp936 项目 utf-8 鏀惧ぇ cp936} {
  set project [file nativename [file join $root $name]]
  file mkdir $project
  set message [format {{"Command":"FileStatus_EndResult","Data":{"Path":"%s"}}} [string map {\\ \\\\} $project]]
  $linked eval [list packetParser [binary encode hex [encoding convertto $encoding $message]]]
  $linked eval [list packetParserForPthread [hex {{"Command":"GetNetsList","Data":{"ProjectPath":"a.dsn"}}}]]
  check "cache folder in $name" [file isdirectory [file join $project Cache]] 1
}

# --- other loads ----------------------------------------------------------------------------------------------------

# By package require, beside a broken configuration, in a host without its procedures.
set base2 [install [file join $root pkg] $built]
writeFile [file join $base2 Config App.txt] "broken {"
writeFile [file join $base2 bin pkgIndex.tcl] \
    {package ifneeded Vernoxa 1.0 [list load [file join $dir Vernoxa64.dll]]}
set bare [interp create]
$bare eval [list lappend auto_path [file join $base2 bin]]
check "package require" [$bare eval {package require Vernoxa}] 1.0
check "without the host's procedures" [$bare eval getOpenFileCount] 0
check "traffic log without its folder" [file exists [file join $base2 Script]] 0
check "crash log of quiet loads" [glob -nocomplain -directory $root */bin/catchLog] {}

# Twice, then unloaded: the commands go on.
set second [interp create]
load [file join $base2 bin Vernoxa64.dll] Vernoxa $second
check "second load" [list [$second eval getOpenFileCount] [$bare eval getOpenFileCount]] {0 0}
check "unload" [catch {unload [file join $base2 bin Vernoxa64.dll] Vernoxa $second} text] 0
check "after unload" [list [catch {$bare eval getGenerateGuid} text] [string length $text]] {0 36}
interp delete $second

# A process that has loaded the plug-in ends by itself, whatever its link thread does: that one pauses for ten seconds at a
# time and never ends. The start of Wine and Tcl is not measured: on a busy machine it takes as long. What the thread prints
# when the end comes upon it in the middle of a connection comes after the time.
foreach {name ending} {
  "end of the script" {}
  "exit" {exit 0}
  "unload and exit" {unload [lindex $argv 0]; exit 0}
} {
  writeFile [file join $root ends.tcl] "puts \[clock milliseconds\]\nflush stdout\nload \[lindex \$argv 0\]\n$ending"
  set status [catch {exec [info nameofexecutable] [file join $root ends.tcl] [file join $base2 bin Vernoxa64.dll]} text]
  set ended [clock milliseconds]
  set began 0
  set right [regexp {^(\d+)\s*(?:invalid socket!|connect error !)?$} $text all began]
  check "$name" [list $status [expr {$right ? "" : $text}]] {0 {}}
  check "$name in time" [expr {$ended - $began < 9000}] 1
}

# --- the link again -------------------------------------------------------------------------------------------------

# What is no packet text, in a frame.
foreach channel $connections {
  fconfigure $channel -translation binary
  puts -nonewline $channel "\2\0\0\0zz"
  flush $channel
}
for {set pause 0} {$pause < 300 && [set crashLog [glob -nocomplain -directory $root */bin/catchLog/log.txt]] eq ""} {incr pause} {
  after 100 {set paused 1}
  vwait paused
}
set crash [readFile [lindex $crashLog 0]]
check "crash log" [regexp "^(${stamp}creatClient\r\n)+$" $crash] 1
finish
