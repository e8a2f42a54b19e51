# The files that the built DLL makes, on a real file system: on_windows.tcl files_windows_test.tcl Vernoxa64.dll

proc bytes {path} {
  return [readFile $path iso8859-1]
}

proc holds {path text} {
  return [expr {[string first $text [bytes $path]] >= 0}]
}

# Runs a program of the system that Wine runs on, and waits until the condition holds.
proc system {condition args} {
  exec start.exe /unix {*}$args
  for {set wait 0} {$wait < 200 && ![uplevel #0 [list expr $condition]]} {incr wait} {
    after 50
  }
}

# Of a former run; Wine removes no link.
set root [file join $env(TEMP) vernoxa-files]
set unixRoot [exec winepath.exe -u [file nativename $root]]
system {![file exists $root]} /bin/rm -rf $unixRoot
install $root [lindex $argv 0]
namespace eval ::capGenerateBOMUtil {}
load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
set output $root/Cache/Output
set library $root/Cache/Library
file mkdir $root/Cache
set smile \ud83d\ude00
set smileBytes \xF0\x9F\x98\x80

proc page {schematic records} {
  initSVGList
  addToPageList [list Schematic $schematic]
  addToPageList {Page P 1 1 K}
  foreach record $records {
    addToPageList $record
  }
  outputSVGFile [list $schematic P - - K]
}

proc graphics {name records} {
  initGraphicFile
  foreach record $records {
    addGraphicLibList $record
  }
  return [outputGraphicFile $name]
}

# --- names and texts ------------------------------------------------------------------------------------------------

page con.1 {}
check "a page named as a device" [names $output] {_con.1@!@P@!@K.json}
page S [list [list Text 1 1e3 "A\r\nB" 0 {} -12 0]]
check "an exponent" [holds $output/S@!@P@!@K.json "translate(1,1011)"] 1

check "a library named as a device" [graphics NUL {}] [file join [file normalize $root] Cache Library _NUL.json]
graphics a:b {}
graphics texts [list [list Name $smile] [list Name a\u0000b]]
check "libraries" [names $library] {_NUL.json a-b.json texts.json}
check "a character of two surrogates" [holds $library/texts.json "\"$smileBytes\""] 1
check "a text with a NUL" [holds $library/texts.json "\"id\":\t\"a\"\r\n"] 1

initMarketFile
addMarketLibList [list Name $smile Part]
outputMarketFile 0 1 2 3
check "the same in a module" [holds $root/Cache/Share/ModuleLib.json "\"Name\":\t\"$smileBytes\""] 1

# --- whole files ----------------------------------------------------------------------------------------------------

set whole [bytes $library/texts.json]
foreach left [list "" [string range $whole 0 end-1] [string repeat \0 500]] {
  writeFile $library/texts.json $left iso8859-1
  graphics texts [list [list Name $smile] [list Name a\u0000b]]
  check "a library that a crash left" [expr {[bytes $library/texts.json] eq $whole}] 1
}
graphics texts {}
check "a whole library stays" [expr {[bytes $library/texts.json] eq $whole}] 1

set reader [open $output/S@!@P@!@K.json rb]  ;# does not let it be replaced
page S {{Text 1 2 LATER 0 {} -12 0}}
close $reader
check "a page that somebody reads" [holds $output/S@!@P@!@K.json LATER] 1
initMarketFile
outputMarketFile 0 1 2 3
check "a module once more" [holds $root/Cache/Share/ModuleLib.json $smileBytes] 0
check "nothing left beside" [concat {*}[lmap folder [list $output $library $root/Cache/Share] {names $folder}]] \
    {S@!@P@!@K.json _NUL.json a-b.json texts.json ModuleLib.json}

# --- links ----------------------------------------------------------------------------------------------------------

writeFile $root/elsewhere/kept.txt "kept"
writeFile $output/folder/deep/old.txt "old"
system {[file exists $output/link/kept.txt]} /bin/ln -s ../../elsewhere $unixRoot/Cache/Output/link
check "the link leads there" [bytes $output/link/kept.txt] kept
initSVGList
check "behind a link nothing is lost" [bytes $root/elsewhere/kept.txt] kept
check "a folder goes with what it holds" [file exists $output/folder] 0

finish
