# Broken metafiles on the clipboard: metafiles_windows_test.tcl Vernoxa64.dll ?TIMES? ?FIRST-SEED?
# Each becomes a whole picture, or is refused with a line in the traffic log; the process lives on. Prints a line with
# what was counted at the end, and what the process held after the first tenth and at the end.

lassign [concat $argv [lrange {300 1} [expr {$argc - 1}] end]] built times seed
set folder [install [file join $env(TEMP) vernoxa-metafiles-[pid]] $built Script/Log]
file copy [file join [file dirname $built] counts.dll] [file join $folder bin]
quiet {RegisterAction UnregisterAction creatServerForPthread InsertXMLMenu}
load [file join $folder bin counts.dll] Counts
load [file join $folder bin Vernoxa64.dll] Vernoxa

# Lines of the log that tell of metafiles, since the last time.
proc newLines {} {
    set log [file join $::folder Script Log schLog.txt]
    set lines [lsearch -all -inline [split [readFile $log] \n] *metafile:*]
    file delete $log
    return $lines
}

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
    check "tens of seconds for $what" [expr {$took / 10000}] 0
    check "the metafile left by $what" [file exists C:/Temp/test.emf] 0
    check "lines for $what" [llength $lines] [expr {$path eq ""}]
    check "a whole picture or none for $what" [expr {$path eq "" || [isWhole $path]}] 1
    return [expr {$path eq "" ? "refused" : "picture"}]
}

proc hold {} {
    lassign [processCounts] handles threads kilobytes
    return [list handles $handles drawing [drawingHandles] bytes [processHeaps] kilobytes $kilobytes]
}

for {set number 0} {[set result [try sound $number]] ne "untaken"} {incr number} {
    check "sound metafile $number" $result picture
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
    check "$what grow" [expr {[dict get $after $what] > [dict get $before $what] + $most}] 0
}
check "sound metafiles" [expr {$number > 0}] 1
finish
