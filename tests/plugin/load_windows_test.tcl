# The built DLL in a real Windows Tcl, on real files and sockets: on_windows.tcl load_windows_test.tcl Vernoxa64.dll
# The plug-in keeps its pauses of ten seconds here, so that everything else runs while its link thread waits.

set built [lindex $argv 0]
set root [file join $env(TEMP) vernoxa-load]
catch {file delete -force $root}

# --- frames, apart from the plug-in's own code ----------------------------------------------------------------------

# The text of a JSON message in one line.
proc flat {json} {
  return [string map {"\n" "" "\t" ""} $json]
}

proc sendFrame {channel packet} {
  puts -nonewline $channel [binary format i [string length $packet]]$packet
  flush $channel
}

# Calls `handler CHANNEL PACKET` for each frame.
proc readFrames {channel handler} {
  append ::received($channel) [read $channel]
  if {[eof $channel]} {
    close $channel
    return
  }
  while {[binary scan $::received($channel) iu length] && [string length $::received($channel)] >= 4 + $length} {
    set packet [string range $::received($channel) 4 [expr {3 + $length}]]
    set ::received($channel) [string range $::received($channel) [expr {4 + $length}] end]
    {*}$handler $channel $packet
  }
}

proc serve {port accept} {
  if {[catch {socket -server $accept -myaddr 127.0.0.1 $port} server]} {
    puts stderr "port $port is taken: another host, companion or test is running ($server)"
    exit 1
  }
}

# --- installations and hosts ----------------------------------------------------------------------------------------

# The DLL in an installation of that name.
proc installed {name {configuration ""}} {
  set base [install [file join $::root $name] $::built]
  if {$configuration ne ""} {
    writeFile [file join $base Config App.txt] $configuration
  }
  return $base
}

# An interpreter with the host procedures that are named; each call is recorded in ::calls.
proc host {names} {
  set host [interp create]
  foreach name $names {
    $host eval {namespace eval ::capGenerateBOMUtil {}}
    $host alias $name record $host $name
  }
  return $host
}

proc record {host name args} {
  lappend ::calls($host) $name
  return [expr {[info exists ::answers($name)] ? $::answers($name) : ""}]
}

set startUp {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread ::capGenerateBOMUtil::init}

# --- the link, which takes its time: begun first, looked at last ----------------------------------------------------

# The first connection is the conversation's; those of the other copies are answered with what is no packet text.
set connections {}
proc acceptHost {channel address port} {
  fconfigure $channel -translation binary -blocking 0
  lappend ::connections $channel
  fileevent $channel readable [list readFrames $channel [expr {[llength $::connections] == 1 ? "converse" : "confuse"}]]
}

proc converse {channel packet} {
  lappend ::requests [flat [unhex $packet]]
  sendFrame $channel [$::linked eval [list packetParserForPthread $packet]]
}

proc confuse {channel packet} {
  sendFrame $channel "zz"
  set ::confused 1
}

proc acceptCompanion {channel address port} {
  incr ::probes
  close $channel
}

set requests {}
set probes 0
serve 9610 acceptHost
serve 9601 acceptCompanion
set base [installed "设计 a" {{"AlgMenuLang":"CN"}}]
file mkdir [file join $base Script Log]
writeFile [file join $base Script Log schLog.txt] "a former run"
set linked [host [concat $startUp {InitPath getDsnPinCount creatClient sendPacketGlobalHandle GetNetsList}]]
# The code page bytes of the first two names are UTF-8 of other names.
set designs {D:\\娴嬭瘯\\a.dsn C:\\鏀惧ぇ.dsn D:\\原理图\\a.dsn}
array set answers [list creatClient 0 getDsnPinCount 128 InitPath "[join $designs {;}];" GetNetsList done]
set before [llength [$linked eval {info commands}]]
load [file join $base bin Vernoxa64.dll] Vernoxa $linked
check "commands" [expr {[llength [$linked eval {info commands}]] - $before - 2}] 48 ;# and the script's two procedures
check "package" [$linked eval {package present Vernoxa}] 1.0
check "start-up calls" $calls($linked) \
    {::capGenerateBOMUtil::init RegisterAction creatServerForPthread RegisterAction InsertXMLMenu RegisterAction RegisterAction}
while {[llength $connections] == 0} {
  vwait connections
}

# --- commands on the real system ------------------------------------------------------------------------------------

set stamp {\[Time\]:\d{4}-\d{1,2}-\d{1,2} \d{1,2}:\d{1,2}:\d{1,2}:\d{1,3}\.}
check "GUID" [regexp {^[0-9A-F]{8}-[0-9A-F]{4}-[0-9a-f]{4}-[0-9A-F]{4}-[0-9A-F]{12}$} [$linked eval getGenerateGuid]] 1
check "close message" [unhex [$linked eval [list sendCloseFile "D:\\原理图\\a.dsn"]]] \
    {{"Command":"FileStatus","Result":"0","Data":{"Status":"Close","FileName":"D:\\原理图\\a.dsn"}}}
set log [readFile [file join $base Script Log schLog.txt]]
check "traffic log: a fresh one" [string first "former" $log] -1
check "traffic log" [regexp [string map [list @ $stamp] {^@GetACP 936\r\n@6073 Close\r\n@return data:\{[^\r]*原理图[^\r]*\r\n@7b22}] $log] 1
check "no argument" [list [$linked eval packetParser] [$linked eval packetParserForPthread]] {{} {}}

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

# Nothing waits for a companion before there is a link to one, even where the system would.
set began [clock milliseconds]
check "queries without a link" [list [$linked eval getSelfUserId] [$linked eval {GetResPath 1}]] {{} {}}
check "queries without a link in time" [expr {[clock milliseconds] - $began < 1000}] 1

# --- other loads ----------------------------------------------------------------------------------------------------

# By package require, beside a broken configuration, in a host without its procedures.
set base2 [installed pkg "broken {"]
writeFile [file join $base2 bin pkgIndex.tcl] \
    {package ifneeded Vernoxa 1.0 [list load [file join $dir Vernoxa64.dll]]}
set bare [host {}]
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

# The companion is started in the base directory, with its one argument. A Tcl stands in for it.
set base3 [installed run {{"StartWithCadence":"1"}}]
set tcl [file dirname [info nameofexecutable]]
file copy [info nameofexecutable] [file join $base3 LanTuZS.exe]
foreach library [glob -directory $tcl *.dll] {
  file copy $library $base3
}
writeFile [file join $base3 AutoLogin] {set f [open started.txt w]; puts -nonewline $f "$argc [file tail [pwd]]"; close $f; exit}
set env(TCL_LIBRARY) $tcl_library
set folder [pwd]
load [file join $base3 bin Vernoxa64.dll] Vernoxa [host {}]
check "current folder" [pwd] $folder

# A process that has loaded the plug-in ends by itself, whatever its link thread does.
foreach {name ending} {
  "end of the script" {}
  "exit" {exit 0}
  "unload and exit" {unload [lindex $argv 0]; exit 0}
} {
  writeFile [file join $root ends.tcl] "load \[lindex \$argv 0\]\nputs loaded\n$ending"
  set began [clock milliseconds]
  set status [catch {exec [info nameofexecutable] [file join $root ends.tcl] [file join $base2 bin Vernoxa64.dll]} text]
  check "$name" [list $status [string match "*loaded*" $text]] {0 1}
  check "$name in time" [expr {[clock milliseconds] - $began < 9000}] 1
}

# --- the conversation -----------------------------------------------------------------------------------------------

after 40000 {lappend requests "(no more requests came)"}
while {[llength $requests] < 4} {
  vwait requests
}
# A path that came from the host goes back to it in the host's own encoding, and to the companion in the code page.
set hostPath [encoding convertfrom cp936 [encoding convertto utf-8 "D:\\\\娴嬭瘯\\\\a.dsn"]]
check "requests" [lrange $requests 0 3] [list {{"Command":"creatClient"}} {{"Command":"GetNewOpenPath"}} \
    "{\"Command\":\"getDsnPinCount\",\"ProjectPath\":\"$hostPath\"}" \
    [format {{"Command":"FileStatus","Result":"0","Data":{"Status":"Open","FileName":"D:\\娴嬭瘯\\a.dsn","Pid":"%s","AllegroPath":"","PinCount":"128"}}} [pid]]]
check "probed the companion" [expr {$probes > 0}] 1
check "host procedures of the link" [lrange $calls($linked) end-4 end] \
    {creatClient InitPath getDsnPinCount sendPacketGlobalHandle InitPath}
check "open designs" [$linked eval getOpenFileCount] 3

set log [readFile [file join $base Script Log schLog.txt]]
check "frames in the traffic log" [regexp [string map [list @ $stamp] {@revData\[3\]:0\r\n@len:\d+\r\n}] $log] 1
check "waits for replies in the traffic log" [regexp [string map [list @ $stamp] {@ret:0\r\n}] $log] 1
check "the traffic log is in the code page" [regexp {"ProjectPath":"D:\\\\娴嬭瘯\\\\a.dsn"} $log] 1

while {![info exists confused]} {
  vwait confused
}
after 200 {set settled 1}
vwait settled
set crash [readFile [lindex [glob -nocomplain -directory $root */bin/catchLog/log.txt] 0]]
check "crash log" [regexp "^(${stamp}creatClient\r\n)+$" $crash] 1
check "companion started" [readFile [file join $base3 started.txt]] "0 run"

cd $folder
finish
