# Broken metafiles on the clipboard: metafiles_windows_test.tcl Vernoxa64.dll ?TIMES? ?FIRST-SEED?
# Each becomes a whole picture, or is refused with a line in the traffic log; the process lives on. Prints a line with
# what was counted at the end, and what the process held after the first tenth and at the end.

lassign $argv built times seed
if {$times eq ""} {
    set times 300
}
if {$seed eq ""} {
    set seed 1
}
set folder [file join $env(TEMP) vernoxa-metafiles-[pid]]
file mkdir [file join $folder bin] [file join $folder Script Log]
foreach name {Vernoxa64.dll counts.dll} {
    file copy -force [file join [file dirname $built] $name] [file join $folder bin $name]
}
namespace eval ::capGenerateBOMUtil {proc init {} {}}
foreach name {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu} {
    proc $name args {}
}
load [file join $folder bin counts.dll] Counts
load [file join $folder bin Vernoxa64.dll] Vernoxa
set log [file join $folder Script Log schLog.txt]
set failures {}

# Lines of the log that tell of metafiles, since the last time.
proc newLines {} {
    if {![file exists $::log]} {
        return {}
    }
    set channel [open $::log rb]
    seek $channel $::seen
    set text [read $channel]
    set ::seen [tell $channel]
    close $channel
    return [lsearch -all -inline [split $text \n] *metafile:*]
}
set seen 0

# The picture is there to its last byte, as its own header counts them.
proc isWhole {path} {
    set channel [open $path rb]
    set header [read $channel 26]
    close $channel
    return [expr {[binary scan $header a2i@14iii mark bytes length width height] == 5 && $mark eq "BM"
                  && $bytes == [file size $path] && $bytes == 54 + 4 * $width * $height}]
}

# One picture: answers "picture", "refused", or "untaken" when the system itself takes it for no metafile.
proc try {kind number} {
    set name [putMetafile $kind $number]
    if {$name eq ""} {
        return untaken
    }
    set began [clock milliseconds]
    set path [GetClipBoardPic]
    set took [expr {[clock milliseconds] - $began}]
    set lines [newLines]
    set what "$kind $number ($name): \"$path\", log: $lines"
    if {$took > 10000} {
        lappend ::failures "$took ms for $what"
    }
    if {[file exists C:/Temp/test.emf]} {
        lappend ::failures "the metafile was left by $what"
    }
    if {[llength $lines] != ($path eq "")} {
        lappend ::failures "lines for $what"
    }
    if {$path ne "" && ![isWhole $path]} {
        lappend ::failures "no whole picture for $what"
    }
    return [expr {$path eq "" ? "refused" : "picture"}]
}

proc hold {} {
    lassign [processCounts] handles threads kilobytes
    return [list handles $handles drawing [drawingHandles] bytes [processHeaps] kilobytes $kilobytes]
}

for {set number 0} {[set result [try sound $number]] ne "untaken"} {incr number} {
    if {$result ne "picture"} {
        lappend failures "a sound metafile was $result: $number"
    }
}
array set counted {picture 0 refused 0 untaken 0}
for {set done 0} {$done < $times} {incr done} {
    if {$done == $times / 10} {
        set before [hold]
    }
    incr counted([try spoilt [expr {$seed + $done}]])
}
try spoilt 3347  ;# a font so large that the system would take a gigabyte for one letter
set after [hold]
puts "sound $number spoilt $times pictures $counted(picture) refused $counted(refused) untaken $counted(untaken)"
puts "before $before"
puts "after $after"
# Wine 8 itself keeps the kilobyte that it reads the clipboard into.
set own [expr {1100 * $times}]
foreach {what most} [list handles 8 drawing 8 kilobytes [expr {8192 + $own / 1024}] bytes [expr {65536 + $own}]] {
    if {[dict get $after $what] > [dict get $before $what] + $most} {
        lappend failures "$what grow"
    }
}
if {$number == 0} {
    lappend failures "no sound metafile was tried"
}
puts stderr [join $failures \n]
exit [expr {[llength $failures] > 0}]
