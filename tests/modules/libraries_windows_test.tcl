# The library files that the built DLL makes for a placement, on a real disk: on_windows.tcl libraries_windows_test.tcl Vernoxa64.dll

set root [file join $env(TEMP) vernoxa-libraries]
catch {file attributes $root/Config/Resource/Empty.olb -readonly 0}
install $root [lindex $argv 0] Config/Resource Script/Log 模块
set base $root/Config/Resource/Empty.olb

# The host, which writes into the library as an editor does.
quiet {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread UnSelectAll setPlaceMarketFlag setPinNum
    IsSchematicViewActive placePart PlaceNew}
proc placeLibPart {library name args} {
  set channel [open $library a]
  puts -nonewline $channel "+$name"
  close $channel
}

# The module's folder, numbers drawn for libraries as N.
proc files {} {
  return [lmap name [names $::root/模块] {regsub {^\d+} $name N}]
}

load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
writeFile $root/模块/m.json {{"lib":[{"Name":"RES"}],"children":[{"name":"Wire"}],"BoundingBox":"3 4"}}
writeFile $base OLB
file attributes $base -readonly 1
set path [string map {\\ \\\\} [file nativename $root/模块/m.json]]
check "answer" [unhex [packetParser [hex "{\"Command\":\"PlaceDSNModule\",\"Data\":{\"dsnDatPath\":\"$path\",\"selfModule\":\"0\"}}"]]] \
    {{"Data":{},"Command":"PlaceDSNModule_EndResult","Result":"0"}}
check "only the new library stays" [files] {N.olb m.json}
check "what the host wrote into it" [readFile [lindex [glob -nocomplain -directory $root/模块 *.olb] 0]] OLB+RES+ViewBox
placeMarketPart
check "nothing stays" [files] {}
file attributes $base -readonly 0

finish
