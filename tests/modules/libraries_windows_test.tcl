# The library files that the built DLL makes for a placement, on a real disk: libraries_windows_test.tcl Vernoxa64.dll

if {![info exists reread]} {
  set reread 1  ;# Tcl took this file for a text in the code page
  source -encoding utf-8 [info script]
  return
}
set root [file join $env(TEMP) vernoxa-libraries]
catch {file attributes $root/Config/Resource/Empty.olb -readonly 0}
catch {file delete -force $root}  ;# of a former run: a DLL cannot go while it is loaded
file mkdir $root/bin $root/Config/Resource $root/Script/Log $root/模块
file copy [lindex $argv 0] $root/bin/Vernoxa64.dll
set base $root/Config/Resource/Empty.olb
set failures 0

proc check {what got expected} {
  if {$got ne $expected} {
    incr ::failures
    puts stderr "$what\n  got      $got\n  expected $expected"
  }
}

proc writeFile {path text} {
  set channel [open $path w]
  fconfigure $channel -encoding utf-8
  puts -nonewline $channel $text
  close $channel
}

# The host: notes what it is asked, and writes into the library as an editor does.
foreach name {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread MenuCommand UnSelectAll SetLibViewBox
    setPlaceMarketFlag setPinNum} {
  proc $name args {}
}
proc placeLibPart {library name args} {
  set channel [open $library a]
  puts -nonewline $channel "+$name"
  close $channel
  lappend ::asked placeLibPart
}
proc placePart {kind args} {
  lappend ::asked "placePart $kind"
}
proc PlaceNew args {
  lappend ::asked PlaceNew
}
proc IsSchematicViewActive {} {
  return $::active
}

# A request of the companion; "Result" of its answer, or "refused".
proc ask {command members} {
  set path [string map {\\ \\\\} [file nativename $::root/模块/m.json]]
  set request [format {{"Command":"%s","Data":{"dsnDatPath":"%s",%s}}} $command $path $members]
  set reply [encoding convertfrom cp936 [binary decode hex \
      [packetParser [binary encode hex [encoding convertto cp936 $request]]]]]
  return [expr {[regexp {"Result":\s*"(\d)"} $reply all result] && ![string match "*command error*" $reply]
      ? $result : "refused"}]
}

# The module's folder, numbers drawn for libraries as N.
proc files {} {
  return [lmap name [lsort [glob -nocomplain -tails -directory $::root/模块 *]] {regsub {^\d+} $name N}]
}

proc begin {} {
  set ::asked {}
  writeFile $::root/模块/m.json {{"lib":[{"Name":"RES"}],"children":[{"name":"Wire"},{"name":["x"]}],"BoundingBox":"3 4"}}
}

load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
set active 1
set part {"PartIndex":"1","ViewBoxWidth":1,"ViewBoxHeight":2,"PartName":"R"}

writeFile $base OLB
file attributes $base -readonly 1
begin
check "answer" [ask PlaceDSNModule {"selfModule":"0"}] 0
check "what the host was asked" $asked {placeLibPart placeLibPart PlaceNew}
check "only the new library stays" [files] {N.olb m.json}
placeMarketPart
check "placed" [lrange $asked 3 end] {placeLibPart {placePart Wire} {placePart }}
check "nothing stays" [files] {}

begin
set active 0
check "no page" [ask PlaceDsnLibPartModule $part] 1
set active 1
check "accepted" [ask PlaceDsnLibPartModule $part] 0
check "refused" [ask PlaceDsnLibPartModule {"PartIndex":"1"}] refused
set asked {}
placeMarketPart
check "no part is placed after a refusal" $asked {placeLibPart {placePart Wire} {placePart }}

file attributes $base -readonly 0
file delete $base
begin
check "answer without a base library" [ask PlaceDSNModule {"selfModule":"0"}] 0
placeMarketPart
check "no library is named that is not there" $asked PlaceNew
check "the module stays for another try" [files] m.json
set channel [open $root/Script/Log/schLog.txt r]
fconfigure $channel -encoding cp936
check "each try says why" [regexp -all -line {\.library not made: \S+/模块/\d+\.olb: no \S+\\config\\Resource\\Empty\.olb$} [read $channel]] 2
close $channel

puts "[expr {$failures ? "$failures checks failed" : "all checks passed"}]"
exit [expr {$failures > 0}]
