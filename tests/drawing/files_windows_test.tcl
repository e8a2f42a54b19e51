# The files that the built DLL makes, on a real file system: on_windows.tcl files_windows_test.tcl Vernoxa64.dll

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
file mkdir $root/Cache

proc page {record} {
  initSVGList
  addToPageList {Schematic S}
  addToPageList {Page P 1 1 K}
  addToPageList $record
  outputSVGFile {S P - - K}
}

# --- a file that does not let itself be replaced -------------------------------------------------------------------

page {Text 1 2 FIRST 0 {} -12 0}
set reader [open $output/S@!@P@!@K.json rb]
page {Text 1 2 LATER 0 {} -12 0}
close $reader
check "a page that somebody reads" [string match *LATER* [readFile $output/S@!@P@!@K.json]] 1
check "nothing left beside" [names $output] S@!@P@!@K.json

# --- links ----------------------------------------------------------------------------------------------------------

writeFile $root/elsewhere/kept.txt "kept"
writeFile $output/folder/deep/old.txt "old"
system {[file exists $output/link/kept.txt]} /bin/ln -s ../../elsewhere $unixRoot/Cache/Output/link
check "the link leads there" [readFile $output/link/kept.txt] kept
initSVGList
check "behind a link nothing is lost" [readFile $root/elsewhere/kept.txt] kept
check "a folder goes with what it holds" [file exists $output/folder] 0

finish
