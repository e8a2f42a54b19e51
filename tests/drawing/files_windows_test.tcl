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

proc page {record} {
  initSVGList
  addToPageList {Schematic S}
  addToPageList {Page P 1 1 K}
  addToPageList $record
  outputSVGFile {S P - - K}
}

proc graphics {record} {
  initGraphicFile
  addGraphicLibList $record
  outputGraphicFile symbols
}

# --- whole files ----------------------------------------------------------------------------------------------------

page {Text 1 2 FIRST 0 {} -12 0}
graphics {Name RES}
initMarketFile
addMarketLibList {Name RES Part}
outputMarketFile 0 1 2 3
check "a module" [holds $root/Cache/Share/ModuleLib.json RES] 1
set whole [bytes $library/symbols.json]
foreach left [list "" [string range $whole 0 end-1] [string repeat \0 500]] {
  writeFile $library/symbols.json $left iso8859-1
  graphics {Name RES}
  check "a library that a crash left" [expr {[bytes $library/symbols.json] eq $whole}] 1
}
graphics {Name CAP}
check "a whole library stays" [expr {[bytes $library/symbols.json] eq $whole}] 1

set reader [open $output/S@!@P@!@K.json rb]  ;# does not let it be replaced
page {Text 1 2 LATER 0 {} -12 0}
close $reader
check "a page that somebody reads" [holds $output/S@!@P@!@K.json LATER] 1
initMarketFile
outputMarketFile 0 1 2 3
check "a module once more" [holds $root/Cache/Share/ModuleLib.json RES] 0
check "nothing left beside" [concat {*}[lmap folder [list $output $library $root/Cache/Share] {names $folder}]] \
    {S@!@P@!@K.json symbols.json ModuleLib.json}

# --- links ----------------------------------------------------------------------------------------------------------

writeFile $root/elsewhere/kept.txt "kept"
writeFile $output/folder/deep/old.txt "old"
system {[file exists $output/link/kept.txt]} /bin/ln -s ../../elsewhere $unixRoot/Cache/Output/link
check "the link leads there" [bytes $output/link/kept.txt] kept
initSVGList
check "behind a link nothing is lost" [bytes $root/elsewhere/kept.txt] kept
check "a folder goes with what it holds" [file exists $output/folder] 0

finish
