# The library files that the built DLL makes for a placement, on a real disk: on_windows.tcl libraries_windows_test.tcl Vernoxa64.dll

set root [file join $env(TEMP) vernoxa-libraries]
catch {file attributes $root/Config/Resource/Empty.olb -readonly 0}
install $root [lindex $argv 0] Config/Resource Script/Log 模块
set base $root/Config/Resource/Empty.olb

# The host: notes what it is asked, and writes into the library as an editor does.
quiet {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread MenuCommand UnSelectAll SetLibViewBox
    setPlaceMarketFlag setPinNum}
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
  set reply [unhex [packetParser [hex $request]]]
  return [expr {[regexp {"Result":\s*"(\d)"} $reply all result] && ![string match "*command error*" $reply]
      ? $result : "refused"}]
}

# The module's folder, numbers drawn for libraries as N.
proc files {} {
  return [lmap name [names $::root/模块] {regsub {^\d+} $name N}]
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
check "each try says why" [regexp -all -line {\.library not made: \S+/模块/\d+\.olb: no \S+\\config\\Resource\\Empty\.olb\r$} \
    [readFile $root/Script/Log/schLog.txt]] 2

finish
